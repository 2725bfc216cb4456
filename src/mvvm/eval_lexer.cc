#include <cmath>
#include <string>

#include "mvvm/eval_internal.h"

namespace vm::eval_internal {

namespace {

constexpr int kMaxNameLength = 63;
// Exponent digits past this only push the value further out of range.
constexpr int kExponentCap = 100000;

// Locale-independent on purpose: the language is ASCII whatever the host's locale.
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsAlpha(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsNameChar(char c) {
  return IsAlpha(c) || IsDigit(c) || c == '_' || c == '/';
}
bool IsBlank(char c) {
  return c != '\0' && static_cast<unsigned char>(c) < '!';
}

// 10^n by repeated squaring.
double Pow10(int n) {
  double result = 1;
  double base = 10;
  for (; n > 0; n >>= 1) {
    if (n & 1) result *= base;
    base *= base;
  }
  return result;
}

}  // namespace

int Lexer::Next() {
  // "/" starts a name only where an operand is expected; after one it divides.
  const bool operand_expected = this->token != kNumber && this->token != kString &&
                                this->token != kVariable && this->token != kFunction &&
                                this->token != kClose;
  while (IsBlank(*this->p))
    ++this->p;
  const char c = *this->p;
  if (c == '\0') return Set(kEnd);
  if (c == '$') {
    ++this->p;
    this->token = kVariable;
    return ReadName();
  }
  if (IsAlpha(c) || c == '_' || (c == '/' && operand_expected)) {
    if (int err = ReadName()) return err;
    return Set(FindBuiltin(this->text) >= 0 || NextNonBlank() == '(' ? kFunction : kVariable);
  }
  if (IsDigit(c) || c == '.') return ReadNumber();
  if (c == '"') return ReadString();
  ++this->p;
  switch (c) {
    case '+':
      return Set(kPlus);
    case '>':
      return Set(Follow('=') ? kGreaterEqual : kGreater);
    case '<':
      return Set(Follow('=') ? kLessEqual : kLess);
    case '!':
      return Set(Follow('=') ? kNotEqual : kNot);
    case '=':
      Follow('=');
      return Set(kEqual);
    case '|':
      return Set(Follow('|') ? kOrOr : kBar);
    case '&':
      return Set(Follow('&') ? kAndAnd : kAmp);
    case '~':
      return Set(kTilde);
    case '-':
      return Set(kMinus);
    case '*':
      return Set(kStar);
    case '/':
      return Set(kSlash);
    case '(':
      return Set(kOpen);
    case ')':
      return Set(kClose);
    default:
      return EVAL_ILLEGAL_CHARACTER;
  }
}

int Lexer::Set(int t) {
  this->token = t;
  return EVAL_OK;
}

bool Lexer::Follow(char c) {
  if (*this->p != c) return false;
  ++this->p;
  return true;
}

char Lexer::NextNonBlank() const {
  const char* q = this->p;
  while (IsBlank(*q))
    ++q;
  return *q;
}

int Lexer::ReadName() {
  const char* start = this->p;
  while (IsNameChar(*this->p))
    ++this->p;
  if (this->p - start > kMaxNameLength) return EVAL_NAME_TOO_LONG;
  this->text.assign(start, this->p);
  return EVAL_OK;
}

int Lexer::ReadNumber() {
  double mantissa = 0;
  int exponent = 0;
  while (IsDigit(*this->p))
    mantissa = mantissa * 10 + (*this->p++ - '0');
  if (*this->p == '.') {
    ++this->p;
    if (!IsDigit(*this->p)) return EVAL_INVALID_LITERAL;
    for (; IsDigit(*this->p); --exponent)
      mantissa = mantissa * 10 + (*this->p++ - '0');
  }
  if (*this->p == 'e' || *this->p == 'E') {
    ++this->p;
    const bool negative = *this->p == '-';
    if (*this->p == '-' || *this->p == '+') ++this->p;
    if (!IsDigit(*this->p)) return EVAL_INVALID_LITERAL;
    int e = 0;
    for (; IsDigit(*this->p); ++this->p) {
      if (e < kExponentCap) e = e * 10 + (*this->p - '0');
    }
    exponent += negative ? -e : e;
  }
  // Dividing by an exact power of ten keeps short decimals such as 0.1 exact.
  double value = mantissa;
  if (mantissa != 0 && exponent > 0) value = mantissa * Pow10(exponent);
  if (mantissa != 0 && exponent < 0) value = mantissa / Pow10(-exponent);
  if (!std::isfinite(value)) return EVAL_LITERAL_OUT_OF_RANGE;
  this->number = value;
  return Set(kNumber);
}

int Lexer::ReadString() {
  ++this->p;
  this->text.clear();
  for (;;) {
    char c = *this->p;
    if (c == '\0') return EVAL_INVALID_LITERAL;
    ++this->p;
    if (c == '"') break;
    if (c == '\\') {
      c = *this->p;
      if (c == '\0') return EVAL_INVALID_LITERAL;
      ++this->p;
    }
    this->text += c;
  }
  return Set(kString);
}

}  // namespace vm::eval_internal
