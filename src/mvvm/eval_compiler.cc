#include <memory>
#include <string>
#include <unordered_map>

#include "mvvm/eval_internal.h"

namespace vm {

using namespace eval_internal;

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

}  // namespace vm
