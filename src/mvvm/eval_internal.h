#ifndef OVUI_MVVM_EVAL_INTERNAL_H_
#define OVUI_MVVM_EVAL_INTERNAL_H_

// What the evaluator's lexer (eval_lexer.cc), compiler (eval_compiler.cc) and
// runtime (eval_runtime.cc) share. Not part of the API and not installed.

#include <string>

#include "mvvm/eval.h"

namespace vm {

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

namespace eval_internal {

inline constexpr int kMaxNesting = 8;
// Every nesting level holds at most two pending operands (the left side of a
// sum and of a product) besides the operand being computed.
inline constexpr int kStackSize = 2 * (kMaxNesting + 1) + 1;

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

// Splits NUL-terminated text into tokens, one per Next.
class Lexer {
 public:
  explicit Lexer(const char* p) : p(p) {}

  // Reads the next token; 0 or an error code.
  int Next();

  int token = kNone;
  double number = 0;
  std::string text;  // a name or a string literal

 private:
  int Set(int t);
  bool Follow(char c);
  char NextNonBlank() const;
  int ReadName();
  int ReadNumber();
  int ReadString();

  const char* p;
};

// The index of the built-in function `name`, or -1.
int FindBuiltin(const std::string& name);

// Applies the built-in function at `index` to `value` in place; 0, or
// EVAL_UNDEFINED_FUNCTION for an index FindBuiltin does not give.
int CallBuiltin(int index, EvalValue& value);

}  // namespace eval_internal

}  // namespace vm

#endif  // OVUI_MVVM_EVAL_INTERNAL_H_
