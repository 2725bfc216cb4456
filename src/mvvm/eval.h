#ifndef OVUI_MVVM_EVAL_H_
#define OVUI_MVVM_EVAL_H_

// The expression language of computed properties: small expressions over
// numbers (double) and 8-bit strings whose variables a caller resolves.
//
// Literals
//   number   digits with an optional "." and digits (".5" is allowed, "1." is
//            not) and an optional "e"/"E", sign and digits: 42  .5  2.5e-3.
//            A number that overflows to infinity is error 3.
//   string   "text" in double quotes. A backslash is dropped and the byte after
//            it is taken as it is: "a\"b" is a"b, "a\\b" is a\b, "\n" is n.
//
// Names (at most 63 characters of letters, digits, "_" and "/")
//   $name    always a variable; the "$" is not part of the name and the name
//            runs on over "/": `$a/b` is the variable "a/b", `$a / 2` divides.
//   name     a bare name starting with a letter or "_" (or "/" where an operand
//            is expected: `/tmp/x`) is a function when it is a built-in
//            function name or when "(" follows it; otherwise a variable.
//   Constants known to EvalDefaultVariable: INFINITY, NAN and PI
//   (3.1415927410125732: pi at single precision, widened).
//
// Precedence: two binary levels only, both left to right.
//   tighter  >  >=  <  <=  !=  == (or =)  ||  &&  |  &  *  /
//   looser   +  -
//   So comparisons bind tighter than + and -: `1 + 2 > 2` is 1 + (2 > 2) = 1,
//   while `2 * 3 + 1` and `1 + 2 * 3` are both 7.
// Prefix operators "-", "~", "!" toggle rather than stack: each is applied at
// most once, in the order "-", then "~", then "!", whatever order they were
// written in. `--x` is x, `!!x` is x (not a truth value), `-!0` is 1.
// Parentheses and function arguments nest at most eight deep.
//
// On two numbers
//   + - * /           double arithmetic (x / 0 is an infinity, not an error)
//   comparisons       1 or 0; "==" is 0 and "!=" is 1 when either side is NaN
//   || &&             non-zero tests, 1 or 0; both sides are always evaluated
//   | & and prefix ~  on the values truncated to 32-bit integers, the result
//                     read as unsigned 32-bit: `~0` is 4294967295
//   prefix - !        negation; 1 for 0 and 0 otherwise
// When an operand is a string
//   + comparisons || &&   both operands become text (see below); + concatenates,
//                         comparisons use strcmp, || && test for non-empty text
//   - * / | & prefix - ~  string operands become numbers through C atof
//   prefix !              1 for the empty string, 0 otherwise
// Number to text: a number with a fractional part (and NaN or an infinity)
// prints with "%lf"; a whole number prints with "%u" of its value taken through
// a 64-bit signed integer (saturating) and then to 32 bits unsigned, so -2
// prints as "4294967294" and `"x" + 2.5` is "x2.500000".
//
// Built-in functions, one argument each
//   strlen   length of the text (a number is converted to text first)
//   path     the text as an absolute path with "/" separators: backslashes
//            become "/", a relative path is prefixed with the working directory
//   string   a number converted to text; a string unchanged
//   toupper tolower   C toupper/tolower byte by byte over the text
//   cos sin tan acos asin atan exp log log10 sqrt ceil floor
//            the C function of that name on the number (a string through atof)
//   int      truncation toward zero
//   round    C round: halves away from zero
//
// Errors stop the evaluation at the first one in the order of the text; their
// codes and texts are listed at EvalError.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/value.h"

namespace vm {

// Evaluation error codes; EvalErrorText gives their texts.
enum EvalError : int {
  EVAL_OK = 0,                    // "ok"
  EVAL_ILLEGAL_CHARACTER = 1,     // "illegal character": a byte no token starts with
  EVAL_INVALID_LITERAL = 2,       // "invalid literal": "1.", "1e", an unterminated string
  EVAL_LITERAL_OUT_OF_RANGE = 3,  // "literal out-of-range": a number overflowing to infinity
  EVAL_NAME_TOO_LONG = 4,         // "name too long": more than 63 characters
  EVAL_UNEXPECTED_CHARACTER = 5,  // "unexpected character": text after a whole expression
  EVAL_EXPECTED_TERM = 6,         // "expected term": no operand where one is needed
  EVAL_STACK_OVERFLOW = 7,        // "stack overflow": nine or more nested levels
  EVAL_UNDEFINED_FUNCTION = 8,    // "undefined function": the function handler knows no such name
  EVAL_UNDEFINED_VARIABLE = 9,    // "undefined variable": the variable handler knows no such name
  EVAL_EXPECTED_OPEN = 10,        // "expected open bracket": a built-in name without "("
  EVAL_EXPECTED_CLOSE = 11,       // "expected close bracket"
  EVAL_NO_MEMORY = 12,            // no text (""): reserved for allocation failure
};

// An operand or result: a number (double) or a string. A default value is
// the number 0.
class EvalValue {
 public:
  EvalValue() = default;
  explicit EvalValue(double number) : number(number) {}
  explicit EvalValue(std::string text) : is_string(true), text(std::move(text)) {}

  bool IsNumber() const { return !this->is_string; }
  bool IsString() const { return this->is_string; }
  // The number; 0 for a string.
  double Number() const { return this->number; }
  // The text; empty for a number.
  const std::string& Str() const { return this->text; }
  // The value as the operators see a number: a string goes through atof.
  double ToNumber() const;
  // The value as the operators see text: a number goes through the
  // number-to-text rule above.
  std::string ToText() const;

  void SetNumber(double number) {
    this->is_string = false;
    this->number = number;
    this->text.clear();
  }
  void SetString(std::string text) {
    this->is_string = true;
    this->number = 0;
    this->text = std::move(text);
  }

 private:
  friend class EvalProgram;

  bool is_string = false;
  double number = 0;
  std::string text;
};

// Resolves the variable `name` into `out` (which arrives as the number 0).
// Returns 0, or an error code that ends the evaluation with that code
// (EVAL_UNDEFINED_VARIABLE for an unknown name).
using EvalVariableHandler = int (*)(void* ctx, const std::string& name, EvalValue& out);

// Applies the function `name` to `value` in place: `value` arrives as the
// argument and leaves as the result. Returns 0, or an error code that ends the
// evaluation (EVAL_UNDEFINED_FUNCTION for an unknown name).
using EvalFunctionHandler = int (*)(void* ctx, const std::string& name, EvalValue& value);

// The default variable handler: INFINITY, NAN and PI; any other name is
// EVAL_UNDEFINED_VARIABLE. Ignores `ctx`, so a handler can fall back to it.
int EvalDefaultVariable(void* ctx, const std::string& name, EvalValue& out);

// The default function handler: the built-in functions; any other name is
// EVAL_UNDEFINED_FUNCTION. Ignores `ctx`, so a handler can fall back to it.
int EvalDefaultFunction(void* ctx, const std::string& name, EvalValue& value);

// An expression compiled once and run any number of times, with any handlers.
// Immutable after Compile, so one program may be cached and shared, and run
// from several threads at once as long as the handlers allow it.
//
// Compiling never fails: a syntax error is kept in the program at its place
// and reported by Run only once everything before it has been evaluated, so
// `$unknown + (1 2` reports the undefined variable, not the missing bracket.
// Running allocates nothing unless strings are involved.
class EvalProgram {
 public:
  static std::shared_ptr<const EvalProgram> Compile(const std::string& expr);
  // The same, compiled once per thread and kept for the next call with the
  // same text (computed properties re-evaluate the same few expressions on
  // every update). The cache holds at most a few thousand programs.
  static std::shared_ptr<const EvalProgram> Cached(const std::string& expr);

  // Evaluates with `variables` and the built-in functions. Returns 0 and sets
  // `result`, or returns an error code and leaves `result` untouched.
  // A null handler stands for the default one.
  int Run(EvalVariableHandler variables, void* ctx, EvalValue& result) const {
    return Run(variables, nullptr, ctx, result);
  }
  // The same with a function handler too; both handlers get `ctx`.
  int Run(EvalVariableHandler variables, EvalFunctionHandler functions, void* ctx,
          EvalValue& result) const;

 private:
  enum class Op : unsigned char;
  struct Instr {
    Op op;
    int arg;      // string index, or the error code of a deferred error
    int builtin;  // built-in function index, -1 for other functions
    double number;
  };

  class Compiler;
  class Machine;

  EvalProgram() = default;

  std::vector<Instr> code;  // postfix order
  std::vector<std::string> strings;
};

// Compiles and runs `expr` once; see EvalProgram::Run.
int Eval(const std::string& expr, EvalVariableHandler variables, void* ctx, EvalValue& result);

// The text of an error code: "ok" for 0, "" for 12, "undefined error" for any
// code that is not listed at EvalError.
const char* EvalErrorText(int code);

// Stores a result the way computed properties keep it: a string as a string;
// a number d as the integer trunc(d) unless d > trunc(d), then as the double d.
// So 2.5 stays 2.5 while -2.5 becomes the integer -2. NaN becomes 0 and the
// infinities the extreme 64-bit integers (the conversion saturates).
void EvalResultToValue(const EvalValue& result, base::Value& out);

}  // namespace vm

#endif  // OVUI_MVVM_EVAL_H_
