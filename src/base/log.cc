#include "base/log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace base {

namespace {

FILE* g_log_stream = nullptr;
LogLevel g_min_level = 0;

const char* BaseName(const char* file) {
  if (!file) return "";
  if (const char* slash = std::strrchr(file, '/')) return slash + 1;
  if (const char* backslash = std::strrchr(file, '\\')) return backslash + 1;
  return file;
}

}  // namespace

void LogInit(const char* file, LogLevel min_level) {
  LogDeinit();  // a second LogInit must not leak the first file
  FILE* stream = nullptr;
  if (file && *file) stream = std::fopen(file, "a+");
  g_log_stream = stream ? stream : stdout;
  g_min_level = min_level;
}

void LogDeinit() {
  if (g_log_stream && g_log_stream != stdout) std::fclose(g_log_stream);
  g_log_stream = nullptr;
}

void Log(const char* file, int line, LogLevel level, const char* fmt, ...) {
  FILE* stream = g_log_stream;
  if (!stream || level < g_min_level) return;
  std::fprintf(stream, "%s:%d[%d] ", BaseName(file), line, level);
  va_list args;
  va_start(args, fmt);
  std::vfprintf(stream, fmt, args);
  va_end(args);
}

void AssertFailed(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", condition, BaseName(file), line);
  Log(file, line, 3, "Assertion failed: %s\n", condition);
  std::abort();
}

}  // namespace base
