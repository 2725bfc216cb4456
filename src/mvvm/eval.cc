#include "mvvm/eval.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <unordered_map>

#include "base/file_utils.h"
#include "base/str_utils.h"
#include "base/value.h"

namespace vm {

namespace {

constexpr int kMaxNameLength = 63;
constexpr int kMaxNesting = 8;
// Every nesting level holds at most two pending operands (the left side of a
// sum and of a product) besides the operand being computed.
constexpr int kStackSize = 2 * (kMaxNesting + 1) + 1;
// Exponent digits past this only push the value further out of range.
constexpr int kExponentCap = 100000;

enum Token : int {
  kNone = -1,  // before the first token
  kEnd = 0,
  kPlus = 1,
  kGreater = 2,
  kGreaterEqual = 3,
  kLess = 4,
  kLessEqual = 5,
  kNotEqual = 6,
  kEqual = 7,
  kNot = 8,
  kOrOr = 9,
  kAndAnd = 10,
  kTilde = 11,
  kBar = 12,
  kAmp = 13,
  kMinus = 14,
  kStar = 15,
  kSlash = 16,
  kOpen = 17,
  kClose = 18,
  kNumber = 19,
  kFunction = 20,
  kString = 21,
  kVariable = 22,
};

const char* const kBuiltins[] = {"strlen", "path", "string", "toupper", "tolower", "cos", "sin",
                                 "tan",    "acos", "asin",   "atan",    "exp",     "log", "log10",
                                 "sqrt",   "ceil", "floor",  "int",     "round"};
constexpr int kBuiltinCount = sizeof(kBuiltins) / sizeof(kBuiltins[0]);

int FindBuiltin(const std::string& name) {
  for (int i = 0; i < kBuiltinCount; ++i) {
    if (name == kBuiltins[i]) return i;
  }
  return -1;
}

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

uint32_t ToU32(double d) {
  return static_cast<uint32_t>(static_cast<uint64_t>(base::TruncToI64(d)));
}

using TextBuffer = char[64];

int NumberText(double d, TextBuffer& buf) {
  if (std::isfinite(d) && d == std::trunc(d))
    return std::snprintf(buf, sizeof(buf), "%u", ToU32(d));
  return std::snprintf(buf, sizeof(buf), "%lf", d);
}

// The operand's text as a C string: its own for a string, else written to `buf`.
const char* TextOf(const EvalValue& v, TextBuffer& buf) {
  if (v.IsString()) return v.Str().c_str();
  NumberText(v.Number(), buf);
  return buf;
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

class Lexer {
 public:
  explicit Lexer(const char* p) : p(p) {}

  // Reads the next token; 0 or an error code.
  int Next() {
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

  int token = kNone;
  double number = 0;
  std::string text;  // a name or a string literal

 private:
  int Set(int t) {
    this->token = t;
    return EVAL_OK;
  }

  bool Follow(char c) {
    if (*this->p != c) return false;
    ++this->p;
    return true;
  }

  char NextNonBlank() const {
    const char* q = this->p;
    while (IsBlank(*q))
      ++q;
    return *q;
  }

  int ReadName() {
    const char* start = this->p;
    while (IsNameChar(*this->p))
      ++this->p;
    if (this->p - start > kMaxNameLength) return EVAL_NAME_TOO_LONG;
    this->text.assign(start, this->p);
    return EVAL_OK;
  }

  int ReadNumber() {
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

  int ReadString() {
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

  const char* p;
};

std::string CurrentDirectory() {
  std::string dir = base::FileUtils::GetCWD();
  dir.pop_back();  // the helper's trailing backslash
  std::replace(dir.begin(), dir.end(), '\\', '/');
  if (dir.empty() || dir.back() != '/') dir += '/';
  return dir;
}

int CallBuiltin(int index, EvalValue& v) {
  TextBuffer buf;
  switch (index) {
    case 0:  // strlen
      v.SetNumber(static_cast<double>(std::strlen(TextOf(v, buf))));
      return EVAL_OK;
    case 1: {  // path
      std::string path = TextOf(v, buf);
      std::replace(path.begin(), path.end(), '\\', '/');
      if (path.empty() || path[0] != '/') path.insert(0, CurrentDirectory());
      v.SetString(std::move(path));
      return EVAL_OK;
    }
    case 2:  // string
      if (v.IsNumber()) v.SetString(TextOf(v, buf));
      return EVAL_OK;
    case 3:    // toupper
    case 4: {  // tolower
      const std::string s = TextOf(v, buf);
      v.SetString(index == 3 ? base::StrUtils::ToUpper(s) : base::StrUtils::ToLower(s));
      return EVAL_OK;
    }
    default:
      break;
  }
  const double x = v.ToNumber();
  double y = 0;
  switch (index) {
    case 5:
      y = std::cos(x);
      break;
    case 6:
      y = std::sin(x);
      break;
    case 7:
      y = std::tan(x);
      break;
    case 8:
      y = std::acos(x);
      break;
    case 9:
      y = std::asin(x);
      break;
    case 10:
      y = std::atan(x);
      break;
    case 11:
      y = std::exp(x);
      break;
    case 12:
      y = std::log(x);
      break;
    case 13:
      y = std::log10(x);
      break;
    case 14:
      y = std::sqrt(x);
      break;
    case 15:
      y = std::ceil(x);
      break;
    case 16:
      y = std::floor(x);
      break;
    case 17:
      y = std::trunc(x);
      break;
    case 18:
      y = std::round(x);
      break;
    default:
      return EVAL_UNDEFINED_FUNCTION;
  }
  v.SetNumber(y);
  return EVAL_OK;
}

}  // namespace

enum class EvalProgram::Op : unsigned char {
  kNumber,    // push `number`
  kString,    // push strings[arg]
  kVariable,  // push the variable strings[arg]
  kCall,      // apply the function strings[arg] (built-in index `builtin`) to the top
  kNegate,
  kComplement,
  kNot,
  kFail,  // a syntax error found while compiling: return `arg`
  // Binary operators: pop the right operand and combine it into the left one.
  kAdd,
  kSubtract,
  kGreater,
  kGreaterEqual,
  kLess,
  kLessEqual,
  kNotEqual,
  kEqual,
  kOr,
  kAnd,
  kBitOr,
  kBitAnd,
  kMultiply,
  kDivide,
};

// A recursive-descent parser that emits postfix code in the order a
// single-pass evaluator would evaluate, so Run reports errors in text order.
class EvalProgram::Compiler {
 public:
  Compiler(const std::string& expr, EvalProgram& program) : lexer(expr.c_str()), program(program) {}

  void Compile() {
    if (!Next() || !Expression()) return;
    if (this->lexer.token != kEnd) Fail(EVAL_UNEXPECTED_CHARACTER);
  }

 private:
  // expression := level1 { ("+" | "-") level1 }
  bool Expression() {
    if (!Level1()) return false;
    while (this->lexer.token == kPlus || this->lexer.token == kMinus) {
      const Op op = this->lexer.token == kPlus ? Op::kAdd : Op::kSubtract;
      if (!Next() || !Level1()) return false;
      Binary(op);
    }
    return true;
  }

  // level1 := term { op term } over every other binary operator
  bool Level1() {
    if (!Term()) return false;
    for (Op op; Level1Op(this->lexer.token, op);) {
      if (!Next() || !Term()) return false;
      Binary(op);
    }
    return true;
  }

  static bool Level1Op(int token, Op& op) {
    switch (token) {
      case kGreater:
        op = Op::kGreater;
        return true;
      case kGreaterEqual:
        op = Op::kGreaterEqual;
        return true;
      case kLess:
        op = Op::kLess;
        return true;
      case kLessEqual:
        op = Op::kLessEqual;
        return true;
      case kNotEqual:
        op = Op::kNotEqual;
        return true;
      case kEqual:
        op = Op::kEqual;
        return true;
      case kOrOr:
        op = Op::kOr;
        return true;
      case kAndAnd:
        op = Op::kAnd;
        return true;
      case kBar:
        op = Op::kBitOr;
        return true;
      case kAmp:
        op = Op::kBitAnd;
        return true;
      case kStar:
        op = Op::kMultiply;
        return true;
      case kSlash:
        op = Op::kDivide;
        return true;
      default:
        return false;
    }
  }

  // term := { "-" | "~" | "!" } primary, each prefix a toggle
  bool Term() {
    bool negate = false, complement = false, invert = false;
    for (;;) {
      if (this->lexer.token == kMinus) {
        negate = !negate;
      } else if (this->lexer.token == kTilde) {
        complement = !complement;
      } else if (this->lexer.token == kNot) {
        invert = !invert;
      } else {
        break;
      }
      if (!Next()) return false;
    }
    if (!Primary()) return false;
    if (negate) Emit(Op::kNegate);
    if (complement) Emit(Op::kComplement);
    if (invert) Emit(Op::kNot);
    return true;
  }

  bool Primary() {
    switch (this->lexer.token) {
      case kNumber:
        return Push(Op::kNumber, 0, this->lexer.number) && Next();
      case kString:
        return Push(Op::kString, AddString()) && Next();
      case kVariable:
        return Push(Op::kVariable, AddString()) && Next();
      case kOpen:
        return Nested() && Next();
      case kFunction: {
        const int name = AddString();
        const int builtin = FindBuiltin(this->lexer.text);
        if (!Next()) return false;
        if (this->lexer.token != kOpen) return Fail(EVAL_EXPECTED_OPEN);
        if (!Nested()) return false;
        Emit(Op::kCall, name, builtin);
        return Next();
      }
      default:
        return Fail(EVAL_EXPECTED_TERM);
    }
  }

  // "(" expression ")" from the "(" up to, not past, the ")".
  bool Nested() {
    if (this->depth == kMaxNesting) return Fail(EVAL_STACK_OVERFLOW);
    ++this->depth;
    if (!Next() || !Expression()) return false;
    if (this->lexer.token != kClose) return Fail(EVAL_EXPECTED_CLOSE);
    --this->depth;
    return true;
  }

  bool Next() {
    const int err = this->lexer.Next();
    return err == EVAL_OK || Fail(err);
  }

  bool Fail(int code) {
    Emit(Op::kFail, code);
    return false;
  }

  int AddString() {
    this->program.strings.push_back(this->lexer.text);
    return static_cast<int>(this->program.strings.size() - 1);
  }

  bool Push(Op op, int arg, double number = 0) {
    // The nesting limit already bounds the stack; this keeps Run's fixed array
    // safe should the grammar ever grow.
    if (this->stack == kStackSize) return Fail(EVAL_STACK_OVERFLOW);
    ++this->stack;
    Emit(op, arg, -1, number);
    return true;
  }

  void Binary(Op op) {
    --this->stack;
    Emit(op);
  }

  void Emit(Op op, int arg = 0, int builtin = -1, double number = 0) {
    this->program.code.push_back(Instr{op, arg, builtin, number});
  }

  Lexer lexer;
  EvalProgram& program;
  int depth = 0;
  int stack = 0;
};

// The operand stack of one run: fixed storage, values constructed on push, so
// a run over numbers never touches the heap.
class EvalProgram::Machine {
 public:
  Machine() = default;
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;
  ~Machine() {
    while (this->size > 0)
      Pop();
  }

  EvalValue& Push(double number) { return *new (&this->slots[this->size++]) EvalValue(number); }
  EvalValue& Push(const std::string& text) {
    return *new (&this->slots[this->size++]) EvalValue(text);
  }
  EvalValue& At(int i) { return *std::launder(reinterpret_cast<EvalValue*>(&this->slots[i])); }
  EvalValue& Top() { return At(this->size - 1); }
  EvalValue& Below() { return At(this->size - 2); }
  void Pop() { At(--this->size).~EvalValue(); }

  static double Numbers(Op op, double a, double b) {
    switch (op) {
      case Op::kAdd:
        return a + b;
      case Op::kSubtract:
        return a - b;
      case Op::kMultiply:
        return a * b;
      case Op::kDivide:
        return a / b;
      case Op::kGreater:
        return a > b;
      case Op::kGreaterEqual:
        return a >= b;
      case Op::kLess:
        return a < b;
      case Op::kLessEqual:
        return a <= b;
      case Op::kNotEqual:
        return a != b;
      case Op::kEqual:
        return a == b;
      case Op::kOr:
        return a != 0 || b != 0;
      case Op::kAnd:
        return a != 0 && b != 0;
      case Op::kBitOr:
        return ToU32(a) | ToU32(b);
      case Op::kBitAnd:
        return ToU32(a) & ToU32(b);
      default:
        return 0;
    }
  }

  // At least one operand is a string.
  static void Mixed(Op op, EvalValue& left, const EvalValue& right) {
    TextBuffer lbuf, rbuf;
    if (op == Op::kAdd) {
      if (left.IsNumber()) left.SetString(TextOf(left, lbuf));
      left.text += TextOf(right, rbuf);
      return;
    }
    const char* l = TextOf(left, lbuf);
    const char* r = TextOf(right, rbuf);
    switch (op) {
      case Op::kGreater:
        left.SetNumber(std::strcmp(l, r) > 0);
        return;
      case Op::kGreaterEqual:
        left.SetNumber(std::strcmp(l, r) >= 0);
        return;
      case Op::kLess:
        left.SetNumber(std::strcmp(l, r) < 0);
        return;
      case Op::kLessEqual:
        left.SetNumber(std::strcmp(l, r) <= 0);
        return;
      case Op::kNotEqual:
        left.SetNumber(std::strcmp(l, r) != 0);
        return;
      case Op::kEqual:
        left.SetNumber(std::strcmp(l, r) == 0);
        return;
      case Op::kOr:
        left.SetNumber(*l != '\0' || *r != '\0');
        return;
      case Op::kAnd:
        left.SetNumber(*l != '\0' && *r != '\0');
        return;
      default:
        left.SetNumber(Numbers(op, left.ToNumber(), right.ToNumber()));
        return;
    }
  }

 private:
  struct alignas(EvalValue) Slot {
    unsigned char bytes[sizeof(EvalValue)];
  };
  Slot slots[kStackSize];
  int size = 0;
};

double EvalValue::ToNumber() const {
  return this->is_string ? std::atof(this->text.c_str()) : this->number;
}

std::string EvalValue::ToText() const {
  TextBuffer buf;
  return TextOf(*this, buf);
}

std::shared_ptr<const EvalProgram> EvalProgram::Compile(const std::string& expr) {
  std::shared_ptr<EvalProgram> program(new EvalProgram);
  Compiler(expr, *program).Compile();
  return program;
}

std::shared_ptr<const EvalProgram> EvalProgram::Cached(const std::string& expr) {
  constexpr size_t kMaxCached = 4096;
  thread_local std::unordered_map<std::string, std::shared_ptr<const EvalProgram>> cache;
  auto iter = cache.find(expr);
  if (iter != cache.end()) return iter->second;
  // Bounded crudely: expressions come from forms, so a full cache means
  // texts built at run time; starting afresh is cheap.
  if (cache.size() >= kMaxCached) cache.clear();
  return cache.emplace(expr, Compile(expr)).first->second;
}

int EvalProgram::Run(EvalVariableHandler variables, EvalFunctionHandler functions, void* ctx,
                     EvalValue& result) const {
  if (!variables) variables = EvalDefaultVariable;
  // Built-ins are called by index unless the caller brings its own handler.
  const bool builtins = !functions || functions == EvalDefaultFunction;
  Machine m;
  for (const Instr& in : this->code) {
    switch (in.op) {
      case Op::kNumber:
        m.Push(in.number);
        break;
      case Op::kString:
        m.Push(this->strings[in.arg]);
        break;
      case Op::kVariable:
        if (int err = variables(ctx, this->strings[in.arg], m.Push(0.0))) return err;
        break;
      case Op::kCall: {
        EvalValue& v = m.Top();
        const int err =
            builtins ? CallBuiltin(in.builtin, v) : functions(ctx, this->strings[in.arg], v);
        if (err) return err;
        break;
      }
      case Op::kNegate: {
        EvalValue& v = m.Top();
        v.SetNumber(-v.ToNumber());
        break;
      }
      case Op::kComplement: {
        EvalValue& v = m.Top();
        v.SetNumber(~ToU32(v.ToNumber()));
        break;
      }
      case Op::kNot: {
        EvalValue& v = m.Top();
        v.SetNumber(v.is_string ? v.text.c_str()[0] == '\0' : v.number == 0);
        break;
      }
      case Op::kFail:
        return in.arg;
      default: {
        EvalValue& right = m.Top();
        EvalValue& left = m.Below();
        if (!left.is_string && !right.is_string) {
          left.number = Machine::Numbers(in.op, left.number, right.number);
        } else {
          Machine::Mixed(in.op, left, right);
        }
        m.Pop();
        break;
      }
    }
  }
  EvalValue& top = m.Top();
  if (top.is_string) {
    result.SetString(std::move(top.text));
  } else {
    result.SetNumber(top.number);
  }
  return EVAL_OK;
}

int Eval(const std::string& expr, EvalVariableHandler variables, void* ctx, EvalValue& result) {
  return EvalProgram::Compile(expr)->Run(variables, ctx, result);
}

int EvalDefaultVariable(void*, const std::string& name, EvalValue& out) {
  if (name == "PI") {
    // Deliberately pi at single precision, widened; not M_PI.
    out.SetNumber(static_cast<double>(3.14159265358979323846f));
  } else if (name == "INFINITY") {
    out.SetNumber(std::numeric_limits<double>::infinity());
  } else if (name == "NAN") {
    out.SetNumber(std::numeric_limits<double>::quiet_NaN());
  } else {
    return EVAL_UNDEFINED_VARIABLE;
  }
  return EVAL_OK;
}

int EvalDefaultFunction(void*, const std::string& name, EvalValue& value) {
  const int index = FindBuiltin(name);
  return index < 0 ? EVAL_UNDEFINED_FUNCTION : CallBuiltin(index, value);
}

const char* EvalErrorText(int code) {
  static const char* const kTexts[] = {"ok",
                                       "illegal character",
                                       "invalid literal",
                                       "literal out-of-range",
                                       "name too long",
                                       "unexpected character",
                                       "expected term",
                                       "stack overflow",
                                       "undefined function",
                                       "undefined variable",
                                       "expected open bracket",
                                       "expected close bracket",
                                       ""};
  if (code < 0 || code >= static_cast<int>(sizeof(kTexts) / sizeof(kTexts[0])))
    return "undefined error";
  return kTexts[code];
}

void EvalResultToValue(const EvalValue& result, base::Value& out) {
  if (result.IsString()) {
    out.Str(result.Str().c_str());
    return;
  }
  const double d = result.Number();
  const double whole = std::trunc(d);
  if (d > whole) {
    out.F64(d);
  } else {
    out.I64(base::TruncToI64(whole));
  }
}

}  // namespace vm
