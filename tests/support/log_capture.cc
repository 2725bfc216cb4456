#include "support/log_capture.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "base/log.h"

namespace ovui_test {

LogCapture::LogCapture(int min_level) : min_level(min_level) {
  char name[] = "/tmp/ovui-log-XXXXXX";
  close(mkstemp(name));  // only the unique name is needed
  path = name;
  base::LogInit(path.c_str(), min_level);
}

LogCapture::~LogCapture() {
  base::LogDeinit();
  std::remove(path.c_str());
}

std::string LogCapture::Text() const {
  base::LogInit(path.c_str(), min_level);  // reopening flushes what was written so far
  return std::string(std::istreambuf_iterator<char>(std::ifstream(path).rdbuf()), {});
}

bool LogCapture::HasFailedCheck(const std::string& function, const std::string& condition,
                                size_t* from) const {
  static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
  const auto quote = [](const std::string& s) { return std::regex_replace(s, special, R"(\$&)"); };
  // The line number appears twice: in the prefix and after the function name.
  const std::regex line("(?:^|\n)[^:\n]+:(\\d+)\\[2\\] " + quote(function) + ":\\1 " +
                        quote(condition) + "(?:\n|$)");
  const std::string text = Text();
  const size_t start = from ? std::min(*from, text.size()) : 0;
  std::smatch found;
  if (!std::regex_search(text.begin() + start, text.end(), found, line)) return false;
  if (from) *from = start + found.position(0) + found.length(0);
  return true;
}

void LogCapture::Clear() {
  std::remove(path.c_str());  // reopening flushes into the removed file and starts a new one
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
