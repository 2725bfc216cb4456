#include "base/str_utils.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"

namespace base {

std::string StrUtils::FromInt(int v) {
  char buf[64];
  std::snprintf(buf, sizeof(buf), "%d", v);
  return buf;
}

std::string StrUtils::FromFloat(float v) {
  char buf[64];
  std::snprintf(buf, sizeof(buf), "%f", static_cast<double>(v));
  return buf;
}

int StrUtils::ToInt(const std::string& s) {
  if (s.find("0x") != std::string::npos || s.find("0X") != std::string::npos) {
    return static_cast<int>(std::strtol(s.c_str() + 2, nullptr, 16));
  }
  return static_cast<int>(std::strtol(s.c_str(), nullptr, 10));
}

int StrUtils::ToInt(const char* s) {
  return s ? ToInt(std::string(s)) : 0;
}

float StrUtils::ToFloat(const std::string& s) {
  return static_cast<float>(std::atof(s.c_str()));
}

bool StrUtils::StartWith(const std::string& s, const std::string& prefix) {
  return s.rfind(prefix, 0) == 0;
}

std::string& StrUtils::Replace(std::string& s, const std::string& from, const std::string& to) {
  if (from.empty()) return s;
  for (size_t pos = s.find(from); pos != std::string::npos; pos = s.find(from, pos + to.size())) {
    s.replace(pos, from.size(), to);
  }
  return s;
}

char* StrUtils::Dup(const char* str, unsigned n) {
  OVUI_CHECK(str != NULL, nullptr);
  const size_t len = std::strlen(str);
  const size_t count = (n == 0 || n > len) ? len : n;
  char* copy = static_cast<char*>(std::malloc(count + 1));
  if (!copy) return nullptr;
  std::memcpy(copy, str, count);
  copy[count] = '\0';
  return copy;
}

std::string StrUtils::ToLower(const std::string& s) {
  std::string out(s);
  for (char& c : out)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

std::string StrUtils::ToUpper(const std::string& s) {
  std::string out(s);
  for (char& c : out)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

}  // namespace base
