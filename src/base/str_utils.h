#ifndef OVUI_BASE_STR_UTILS_H_
#define OVUI_BASE_STR_UTILS_H_

#include <string>

namespace base {

// Stateless string helpers over 8-bit text.
class StrUtils {
 public:
  static std::string FromInt(int v);
  // Six decimals, as "%f".
  static std::string FromFloat(float v);
  // Hexadecimal when "0x" or "0X" occurs anywhere in `s`, in which case the
  // first two characters are skipped (so "10x5" reads 0); decimal otherwise.
  static int ToInt(const std::string& s);
  static int ToInt(const char* s);
  static float ToFloat(const std::string& s);
  // True when the first occurrence of `prefix` is at position 0.
  static bool StartWith(const std::string& s, const std::string& prefix);
  // Replaces every occurrence of `from` in place; an empty `from` changes nothing.
  static std::string& Replace(std::string& s, const std::string& from, const std::string& to);
  // malloc'd copy of the first `n` bytes of `str` (0, or more than its length,
  // copies all of it); free() it. Null `str` is logged and gives null.
  static char* Dup(const char* str, unsigned n);
  static std::string ToLower(const std::string& s);
  static std::string ToUpper(const std::string& s);
};

}  // namespace base

#endif  // OVUI_BASE_STR_UTILS_H_
