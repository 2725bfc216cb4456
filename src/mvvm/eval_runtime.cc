#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "base/file_utils.h"
#include "base/str_utils.h"
#include "base/value.h"
#include "mvvm/eval_internal.h"

namespace vm {

using namespace eval_internal;

namespace {

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

std::string CurrentDirectory() {
  std::string dir = base::FileUtils::GetCWD();
  dir.pop_back();  // the helper's trailing backslash
  std::replace(dir.begin(), dir.end(), '\\', '/');
  if (dir.empty() || dir.back() != '/') dir += '/';
  return dir;
}

void Path(EvalValue& v) {
  TextBuffer buf;
  std::string path = TextOf(v, buf);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (path.empty() || path[0] != '/') path.insert(0, CurrentDirectory());
  v.SetString(std::move(path));
}

// A built-in function turns its argument, in `value`, into its result.
struct Builtin {
  const char* name;
  void (*apply)(EvalValue& value);
};

// The built-ins in their documented order. The lexer and compiler look names
// up here and compiled code calls an entry by its index.
const Builtin kBuiltins[] = {
    {"strlen",
     [](EvalValue& v) {
       TextBuffer buf;
       v.SetNumber(static_cast<double>(std::strlen(TextOf(v, buf))));
     }},
    {"path", Path},
    {"string",
     [](EvalValue& v) {
       if (v.IsNumber()) v.SetString(v.ToText());
     }},
    {"toupper", [](EvalValue& v) { v.SetString(base::StrUtils::ToUpper(v.ToText())); }},
    {"tolower", [](EvalValue& v) { v.SetString(base::StrUtils::ToLower(v.ToText())); }},
    {"cos", [](EvalValue& v) { v.SetNumber(std::cos(v.ToNumber())); }},
    {"sin", [](EvalValue& v) { v.SetNumber(std::sin(v.ToNumber())); }},
    {"tan", [](EvalValue& v) { v.SetNumber(std::tan(v.ToNumber())); }},
    {"acos", [](EvalValue& v) { v.SetNumber(std::acos(v.ToNumber())); }},
    {"asin", [](EvalValue& v) { v.SetNumber(std::asin(v.ToNumber())); }},
    {"atan", [](EvalValue& v) { v.SetNumber(std::atan(v.ToNumber())); }},
    {"exp", [](EvalValue& v) { v.SetNumber(std::exp(v.ToNumber())); }},
    {"log", [](EvalValue& v) { v.SetNumber(std::log(v.ToNumber())); }},
    {"log10", [](EvalValue& v) { v.SetNumber(std::log10(v.ToNumber())); }},
    {"sqrt", [](EvalValue& v) { v.SetNumber(std::sqrt(v.ToNumber())); }},
    {"ceil", [](EvalValue& v) { v.SetNumber(std::ceil(v.ToNumber())); }},
    {"floor", [](EvalValue& v) { v.SetNumber(std::floor(v.ToNumber())); }},
    {"int", [](EvalValue& v) { v.SetNumber(std::trunc(v.ToNumber())); }},
    {"round", [](EvalValue& v) { v.SetNumber(std::round(v.ToNumber())); }},
};
constexpr int kBuiltinCount = sizeof(kBuiltins) / sizeof(kBuiltins[0]);

}  // namespace

namespace eval_internal {

int FindBuiltin(const std::string& name) {
  for (int i = 0; i < kBuiltinCount; ++i) {
    if (name == kBuiltins[i].name) return i;
  }
  return -1;
}

int CallBuiltin(int index, EvalValue& value) {
  if (index < 0 || index >= kBuiltinCount) return EVAL_UNDEFINED_FUNCTION;
  kBuiltins[index].apply(value);
  return EVAL_OK;
}

}  // namespace eval_internal

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
