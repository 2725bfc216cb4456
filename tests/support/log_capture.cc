#include "support/log_capture.h"

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "base/log.h"

namespace ovui_test {

LogCapture::LogCapture(int min_level) : min_level(min_level) {
  char name[] = "/tmp/ovui-log-XXXXXX";
  int fd = mkstemp(name);
  if (fd >= 0) close(fd);
  path = name;
  base::LogInit(path.c_str(), min_level);
}

LogCapture::~LogCapture() {
  base::LogDeinit();
  std::remove(path.c_str());
}

std::string LogCapture::Text() const {
  base::LogDeinit();  // flushes; reopened below so later lines still land
  std::ifstream in(path);
  std::stringstream ss;
  ss << in.rdbuf();
  base::LogInit(path.c_str(), min_level);
  return ss.str();
}

bool LogCapture::HasFailedCheck(const std::string& function, const std::string& condition) const {
  static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
  const auto quote = [](const std::string& s) { return std::regex_replace(s, special, R"(\$&)"); };
  // The line number appears twice: in the prefix and after the function name.
  const std::regex line_re("^[^:]+:(\\d+)\\[2\\] " + quote(function) + ":\\1 " + quote(condition) +
                           "$");
  std::istringstream lines(Text());
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, line_re)) return true;
  }
  return false;
}

void LogCapture::Clear() {
  base::LogDeinit();
  std::ofstream(path, std::ios::trunc);
  base::LogInit(path.c_str(), min_level);
}

TempDir::TempDir() {
  char name[] = "/tmp/ovui-test-XXXXXX";
  if (mkdtemp(name)) path = name;
}

TempDir::~TempDir() {
  std::error_code ec;
  if (!path.empty()) std::filesystem::remove_all(path, ec);
}

}  // namespace ovui_test
