#include "base/str_token.h"

#include <cstring>

#include "base/log.h"

namespace base {

namespace {

// strchr would also find the terminating NUL, which must not match.
bool InSet(const char* set, char c) {
  return c != '\0' && std::strchr(set, c) != nullptr;
}

void Tokenize(const char* p, size_t n, TokenCallback on_token, void* ctx, const char* separators,
              const char* delimiters) {
  if (!separators) separators = " ";
  if (!delimiters) delimiters = "";

  size_t start = 0;
  bool in_word = false;
  for (size_t i = 0; i < n; ++i) {
    const char c = p[i];
    if (InSet(delimiters, c)) {
      if (in_word) on_token(ctx, std::string(p + start, i - start));
      on_token(ctx, std::string(1, c));
      in_word = false;
    } else if (InSet(separators, c)) {
      if (in_word) on_token(ctx, std::string(p + start, i - start));
      in_word = false;
    } else if (!in_word) {
      start = i;
      in_word = true;
    }
  }
  if (in_word) on_token(ctx, std::string(p + start, n - start));
}

}  // namespace

bool StrToTokens(const char* str, TokenCallback on_token, void* ctx, const char* separators,
                 const char* delimiters) {
  const char* p = str;
  OVUI_CHECK(p != NULL && on_token != NULL, false);
  Tokenize(p, std::strlen(p), on_token, ctx, separators, delimiters);
  return true;
}

bool StrToTokens(const std::string& str, TokenCallback on_token, void* ctx, const char* separators,
                 const char* delimiters) {
  const char* p = str.data();
  OVUI_CHECK(p != NULL && on_token != NULL, false);
  Tokenize(p, str.size(), on_token, ctx, separators, delimiters);
  return true;
}

}  // namespace base
