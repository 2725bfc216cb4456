#ifndef OVUI_TESTS_SUPPORT_LSAN_OPTIONS_H_
#define OVUI_TESTS_SUPPORT_LSAN_OPTIONS_H_

// Included by the test mains only. LeakSanitizer asks for these defaults
// before main runs, so the suppressions for Qt's own start-up allocations
// hold everywhere a test binary runs, also when the build lists the tests.
extern "C" const char* __lsan_default_options() {
  return "suppressions=" OVUI_LSAN_SUPPRESSIONS ":print_suppressions=0";
}

#endif  // OVUI_TESTS_SUPPORT_LSAN_OPTIONS_H_
