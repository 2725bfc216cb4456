#ifndef OVUI_FUZZ_FUZZ_CHECK_H_
#define OVUI_FUZZ_FUZZ_CHECK_H_

#include <cstdio>
#include <cstdlib>

// A property every input must keep; a violation is a finding, so it aborts
// and libFuzzer saves the input.
#define FUZZ_EXPECT(cond)                                                                 \
  do {                                                                                    \
    if (!(cond)) {                                                                        \
      std::fprintf(stderr, "%s:%d: expectation failed: %s\n", __FILE__, __LINE__, #cond); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (0)

#endif  // OVUI_FUZZ_FUZZ_CHECK_H_
