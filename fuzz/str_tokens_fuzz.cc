// StrToTokens over arbitrary bytes and arbitrary separator and delimiter
// sets. The first byte says how many of the following bytes are separators,
// the second how many are delimiters; the rest is the text.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "base/str_token.h"
#include "fuzz_check.h"

namespace {

struct Split {
  Split(std::string separators, std::string delimiters)
      : separators(std::move(separators)), delimiters(std::move(delimiters)) {}
  std::string separators;
  std::string delimiters;
  size_t bytes = 0;  // token bytes delivered
  std::string joined;

  static bool OnToken(void* ctx, const std::string& token) {
    auto* self = static_cast<Split*>(ctx);
    FUZZ_EXPECT(!token.empty());
    const bool delimiter =
        token.size() == 1 && self->delimiters.find(token[0]) != std::string::npos;
    if (!delimiter) {
      // A word never holds a separator or a delimiter.
      FUZZ_EXPECT(token.find_first_of(self->separators) == std::string::npos);
      FUZZ_EXPECT(token.find_first_of(self->delimiters) == std::string::npos);
    }
    self->bytes += token.size();
    self->joined += token;
    return true;
  }
};

// `s` up to its first NUL: the C-string forms see no further.
std::string CString(const std::string& s) {
  return s.substr(0, std::strlen(s.c_str()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const size_t nsep = data[0] % 8, ndelim = data[1] % 8;
  if (size < 2 + nsep + ndelim) return 0;
  const char* p = reinterpret_cast<const char*>(data) + 2;
  const std::string seps = CString(std::string(p, nsep));
  const std::string delims = CString(std::string(p + nsep, ndelim));
  const std::string text(p + nsep + ndelim, size - 2 - nsep - ndelim);

  Split split{seps, delims};
  FUZZ_EXPECT(base::StrToTokens(text, &Split::OnToken, &split, seps.c_str(), delims.c_str()));
  FUZZ_EXPECT(split.bytes <= text.size());
  // Dropping separators and nothing else: the tokens spell the text without them.
  std::string expected;
  for (char c : text) {
    if (delims.find(c) != std::string::npos || seps.find(c) == std::string::npos) expected += c;
  }
  FUZZ_EXPECT(split.joined == expected);

  // The C-string form stops at the first NUL.
  Split c_split{seps, delims};
  FUZZ_EXPECT(
      base::StrToTokens(text.c_str(), &Split::OnToken, &c_split, seps.c_str(), delims.c_str()));
  FUZZ_EXPECT(c_split.bytes <= CString(text).size());
  return 0;
}
