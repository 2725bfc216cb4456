#ifndef OVUI_BASE_LOG_H_
#define OVUI_BASE_LOG_H_

namespace base {

// Log levels: the library logs failed checks at 2 and allocation failures at 3.
using LogLevel = int;

// Opens the process-wide log: standard output when `file` is null or empty (or
// cannot be opened), otherwise `file` in append mode. Lines below `min_level`
// are dropped.
void LogInit(const char* file, LogLevel min_level);
// Closes the log; nothing is written until the next LogInit.
void LogDeinit();
// Writes "<base name of file>:<line>[<level>] " and the formatted message.
// Does nothing while the log is closed. The caller supplies the line break.
void Log(const char* file, int line, LogLevel level, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));

}  // namespace base

// Logs a failed precondition the library's way: "<function>:<line> <condition>\n"
// at level 2, with the caller's own function name and line.
#define OVUI_LOG_FAILED(condition_text) \
  ::base::Log(__FILE__, __LINE__, 2, "%s:%d %s\n", __func__, __LINE__, condition_text)

// Checks `cond`; when false, logs it as written and returns `ret` (leave `ret`
// empty in a void function).
#define OVUI_CHECK(cond, ret) \
  do {                        \
    if (!(cond)) {            \
      OVUI_LOG_FAILED(#cond); \
      return ret;             \
    }                         \
  } while (0)

namespace base {
// Reports a failed assertion on standard error and in the log, then aborts.
[[noreturn]] void AssertFailed(const char* condition, const char* file, int line);
}  // namespace base

// A programming error that must stop the program, in every build type: a
// property stored with the wrong size would otherwise corrupt memory.
#define OVUI_ASSERT(cond) \
  ((cond) ? static_cast<void>(0) : ::base::AssertFailed(#cond, __FILE__, __LINE__))

#endif  // OVUI_BASE_LOG_H_
