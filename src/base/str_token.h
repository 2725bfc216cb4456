#ifndef OVUI_BASE_STR_TOKEN_H_
#define OVUI_BASE_STR_TOKEN_H_

#include <string>

namespace base {

// Receives one token of StrToTokens; `ctx` is the caller's pointer, passed
// through. The result is ignored: every token is delivered.
using TokenCallback = bool (*)(void* ctx, const std::string& token);

// Splits `str` into words. A byte in `separators` ends the open word; a byte
// in `delimiters` ends it too and is then delivered as a one-character token
// of its own. Null `separators` means " ", null `delimiters` means none.
// There is no quoting. False (and a log line) only for a null `str` or
// `on_token`.
bool StrToTokens(const char* str, TokenCallback on_token, void* ctx, const char* separators = " ",
                 const char* delimiters = "");
// The same over a std::string, embedded NUL bytes included.
bool StrToTokens(const std::string& str, TokenCallback on_token, void* ctx,
                 const char* separators = " ", const char* delimiters = "");

}  // namespace base

#endif  // OVUI_BASE_STR_TOKEN_H_
