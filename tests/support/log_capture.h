#ifndef OVUI_TESTS_SUPPORT_LOG_CAPTURE_H_
#define OVUI_TESTS_SUPPORT_LOG_CAPTURE_H_

#include <cstddef>
#include <string>

namespace ovui_test {

// Opens the library log onto a private temporary file for the lifetime of the
// object, and reads back what was written.
class LogCapture {
 public:
  explicit LogCapture(int min_level = 0);
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::string Text() const;
  // True when a failed check of `condition` in `function` was logged at level 2,
  // as "<file>:<n>[2] <function>:<n> <condition>". With `from`, searches from that offset
  // and moves it past the line found, so that lines can be matched in order.
  bool HasFailedCheck(const std::string& function, const std::string& condition,
                      size_t* from = nullptr) const;
  void Clear();

 private:
  std::string path;
  int min_level;
};

// A unique temporary directory, removed with everything in it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& Path() const { return path; }
  std::string File(const std::string& name) const { return path + "/" + name; }

 private:
  std::string path;
};

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_LOG_CAPTURE_H_
