#include "mvvm/eval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>

#include "base/file_utils.h"

using vm::EvalValue;

namespace {

// Variables from a map, then the constants.
using Vars = std::map<std::string, EvalValue>;
int MapVariable(void* ctx, const std::string& name, EvalValue& out) {
  auto* vars = static_cast<Vars*>(ctx);
  auto it = vars->find(name);
  if (it == vars->end()) return vm::EvalDefaultVariable(nullptr, name, out);
  out = it->second;
  return 0;
}

int Code(const std::string& expr, Vars vars = {}) {
  EvalValue r;
  return vm::Eval(expr, MapVariable, &vars, r);
}

EvalValue Ok(const std::string& expr, Vars vars = {}) {
  EvalValue r;
  const int code = vm::Eval(expr, MapVariable, &vars, r);
  EXPECT_EQ(code, 0) << expr << ": " << vm::EvalErrorText(code);
  return r;
}

double Num(const std::string& expr, Vars vars = {}) {
  EvalValue r = Ok(expr, std::move(vars));
  EXPECT_TRUE(r.IsNumber()) << expr;
  return r.Number();
}

std::string Str(const std::string& expr, Vars vars = {}) {
  EvalValue r = Ok(expr, std::move(vars));
  EXPECT_TRUE(r.IsString()) << expr;
  return r.Str();
}

}  // namespace

TEST(EvalTest, TwoBinaryLevelsWithComparisonsBindingTighterThanSums) {
  EXPECT_EQ(Num("2 * 3 + 1"), 7);
  EXPECT_EQ(Num("1 + 2 * 3"), 7);
  EXPECT_EQ(Num("1 + 2 > 2"), 1);
  EXPECT_EQ(Num("2 > 1 + 1"), 2);
  EXPECT_EQ(Num("1 > 0 * 5"), 5);  // (1 > 0) * 5: one level, left to right
  EXPECT_EQ(Num("10 - 2 - 3"), 5);
  EXPECT_EQ(Num("8 / 4 / 2"), 1);
  EXPECT_EQ(Num("(1 + 2) > 2"), 1);
  EXPECT_EQ(Num("1 = 1"), 1);
  EXPECT_EQ(Num("1 == 1 && 2 != 3"), 1);
}

TEST(EvalTest, PrefixOperatorsToggle) {
  EXPECT_EQ(Num("--3"), 3);
  EXPECT_EQ(Num("- - -3"), -3);
  EXPECT_EQ(Num("!!5"), 5);
  EXPECT_EQ(Num("!0 + !7"), 1);
  EXPECT_EQ(Num("-!0"), 1);  // "!" applies last whatever the written order
  EXPECT_EQ(Num("~0"), 4294967295.0);
  EXPECT_EQ(Num("~-1"), 0);
  EXPECT_EQ(Num("-2 * -(1 + 2)"), 6);
  EXPECT_EQ(Code("+1"), vm::EVAL_EXPECTED_TERM);
}

TEST(EvalTest, NumberLiterals) {
  EXPECT_EQ(Num(".5"), 0.5);
  EXPECT_EQ(Num("0.1"), 0.1);
  EXPECT_EQ(Num("1.5e3"), 1500);
  EXPECT_EQ(Num("2E+2"), 200);
  EXPECT_EQ(Num("25e-1"), 2.5);
  EXPECT_EQ(Num("1e-400"), 0);
  EXPECT_EQ(Num("0e999"), 0);
  for (const char* bad : {"1.", ".", "1.e5", "1e", "1e+", "2 + 3.x"})
    EXPECT_EQ(Code(bad), vm::EVAL_INVALID_LITERAL) << bad;
  EXPECT_EQ(Code("1e309"), vm::EVAL_LITERAL_OUT_OF_RANGE);
}

TEST(EvalTest, StringLiteralsAndEscapes) {
  EXPECT_EQ(Str(R"("a\"b")"), "a\"b");
  EXPECT_EQ(Str(R"("a\\b")"), "a\\b");
  EXPECT_EQ(Str(R"("a\nb")"), "anb");
  EXPECT_EQ(Str(R"("")"), "");
  EXPECT_EQ(Code(R"("abc)"), vm::EVAL_INVALID_LITERAL);
  EXPECT_EQ(Code(R"("abc\)"), vm::EVAL_INVALID_LITERAL);
}

TEST(EvalTest, NamesAndSlashes) {
  Vars vars{{"a", EvalValue(6.0)},
            {"a/b", EvalValue(1.0)},
            {"x", EvalValue(3.0)},
            {"/x", EvalValue(5.0)}};
  EXPECT_EQ(Num("$a/b", vars), 1);    // a name runs on over "/"
  EXPECT_EQ(Num("$a / 2", vars), 3);  // after an operand "/" divides
  EXPECT_EQ(Num("6 /x", vars), 2);
  EXPECT_EQ(Num("/x", vars), 5);  // where an operand is expected it starts a name
  EXPECT_EQ(Num("\t$a\n*\r2", vars), 12);

  const std::string n63(63, 'n'), n64(64, 'n');
  EXPECT_EQ(Num(n63 + " + $" + n63, {{n63, EvalValue(1.0)}}), 2);
  EXPECT_EQ(Code(n64), vm::EVAL_NAME_TOO_LONG);
  EXPECT_EQ(Code("$" + n64), vm::EVAL_NAME_TOO_LONG);
}

TEST(EvalTest, NumbersOperators) {
  EXPECT_EQ(Num("NAN == NAN"), 0);
  EXPECT_EQ(Num("NAN != NAN"), 1);
  EXPECT_EQ(Num("5 & 3"), 1);
  EXPECT_EQ(Num("5 | 2.9"), 7);
  EXPECT_EQ(Num("-1 | 0"), 4294967295.0);
  EXPECT_EQ(Num("2 || 0"), 1);
  EXPECT_EQ(Num("NAN && 1"), 1);
  EXPECT_EQ(Num("1 / 0"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(Num("PI"), 3.1415927410125732);
  EXPECT_EQ(Num("$PI"), 3.1415927410125732);
  EXPECT_TRUE(std::isnan(Num("NAN")));
  EXPECT_EQ(Code("pi"), vm::EVAL_UNDEFINED_VARIABLE);
}

TEST(EvalTest, MixingStringsAndNumbers) {
  EXPECT_EQ(Str(R"("a" + 1)"), "a1");
  EXPECT_EQ(Str(R"(1 + "a" + "b")"), "1ab");
  EXPECT_EQ(Str(R"("x" + 2.5)"), "x2.500000");
  EXPECT_EQ(Str(R"("x" + -2)"), "x4294967294");
  EXPECT_EQ(Num(R"("10" > 9)"), 0);  // compared as text
  EXPECT_EQ(Num(R"(2.5 == "2.5")"), 0);
  EXPECT_EQ(Num(R"("abc" == "abc")"), 1);
  EXPECT_EQ(Num(R"("b" > "a")"), 1);
  EXPECT_EQ(Num(R"("" || 0)"), 1);  // "0" is non-empty text
  EXPECT_EQ(Num(R"("" && "a")"), 0);
  EXPECT_EQ(Num(R"("6" * 2 - "2" / "2")"), 11);
  EXPECT_EQ(Num(R"("12" | 1)"), 13);
  EXPECT_EQ(Num(R"(-"3")"), -3);
  EXPECT_EQ(Num(R"(!"" + !"a")"), 1);
}

TEST(EvalTest, BuiltinFunctions) {
  EXPECT_EQ(Num(R"(strlen("abc"))"), 3);
  EXPECT_EQ(Num("strlen(12) + strlen(2.5)"), 2 + 8);
  EXPECT_EQ(Str("string(7)"), "7");
  EXPECT_EQ(Str("string(-2)"), "4294967294");
  EXPECT_EQ(Str(R"(string("s"))"), "s");
  EXPECT_EQ(Str(R"(toupper("aBc1") + tolower("XyZ"))"), "ABC1xyz");
  EXPECT_EQ(Num("int(-2.7) + int(2.7)"), 0);
  EXPECT_EQ(Num("round(2.5) + round(-2.5)"), 0);
  EXPECT_EQ(Num("round(2.5)"), 3);
  EXPECT_EQ(Num("floor(-1.5) + ceil(-1.5)"), -3);
  EXPECT_EQ(Num(R"(sqrt("16") + log10(1000) + cos(0) + exp(0))"), 9);
  EXPECT_EQ(Str(R"(path("/x\\y"))"), "/x/y");
  std::string cwd = base::FileUtils::GetCWD();
  cwd.back() = '/';
  EXPECT_EQ(Str(R"(path("a\\b"))"), cwd + "a/b");

  EXPECT_EQ(Code("SIN(0)"), vm::EVAL_UNDEFINED_FUNCTION);
  EXPECT_EQ(Code("strlen + 1"), vm::EVAL_EXPECTED_OPEN);
  EXPECT_EQ(Num("$strlen", {{"strlen", EvalValue(4.0)}}), 4);
}

TEST(EvalTest, EveryErrorCodeWithItsText) {
  const struct {
    const char* expr;
    int code;
    const char* text;
  } cases[] = {
      {"1 @ 2", 1, "illegal character"},
      {"1.", 2, "invalid literal"},
      {"1e999", 3, "literal out-of-range"},
      {"1 2", 5, "unexpected character"},
      {"1 +", 6, "expected term"},
      {"", 6, "expected term"},
      {"()", 6, "expected term"},
      {"foo(1)", 8, "undefined function"},
      {"$unknown + 1", 9, "undefined variable"},
      {"sin 1", 10, "expected open bracket"},
      {"(1", 11, "expected close bracket"},
      {"sin(1 2)", 11, "expected close bracket"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Code(c.expr), c.code) << c.expr;
    EXPECT_STREQ(vm::EvalErrorText(c.code), c.text);
  }
  EXPECT_STREQ(vm::EvalErrorText(0), "ok");
  EXPECT_STREQ(vm::EvalErrorText(4), "name too long");
  EXPECT_STREQ(vm::EvalErrorText(7), "stack overflow");
  EXPECT_STREQ(vm::EvalErrorText(12), "");
  EXPECT_STREQ(vm::EvalErrorText(13), "undefined error");
  EXPECT_STREQ(vm::EvalErrorText(-1), "undefined error");
}

TEST(EvalTest, EightNestedLevelsAreAcceptedNineOverflow) {
  auto nest = [](int n, const std::string& open, const std::string& inner = "4") {
    std::string s;
    for (int i = 0; i < n; ++i)
      s += open;
    return s + inner + std::string(n, ')');
  };
  EXPECT_EQ(Num(nest(8, "(")), 4);
  // Two pending operands on every level: the deepest operand stack there is.
  EXPECT_EQ(Num(nest(8, "1 + 2 * (", "1 + 2 * 4")), 2559);
  EXPECT_EQ(Num("sqrt" + nest(8, "(")), 2);  // its argument brackets are the first level
  EXPECT_EQ(Code(nest(9, "(")), vm::EVAL_STACK_OVERFLOW);
  EXPECT_EQ(Code("sqrt" + nest(9, "(")), vm::EVAL_STACK_OVERFLOW);
  EXPECT_EQ(Code(nest(8, "sqrt(")), 0);
  EXPECT_EQ(Code(nest(9, "sqrt(")), vm::EVAL_STACK_OVERFLOW);
}

TEST(EvalTest, ErrorsComeInTextOrder) {
  EXPECT_EQ(Code("$unknown + (1 2"), vm::EVAL_UNDEFINED_VARIABLE);
  EXPECT_EQ(Code("(1 2 + $unknown"), vm::EVAL_EXPECTED_CLOSE);
  EXPECT_EQ(Code("foo($unknown)"), vm::EVAL_UNDEFINED_VARIABLE);
  EXPECT_EQ(Code("foo(1) @"), vm::EVAL_UNDEFINED_FUNCTION);
  EXPECT_EQ(Code("foo(1 @"), vm::EVAL_ILLEGAL_CHARACTER);
  EXPECT_EQ(Code("0 && $unknown"), vm::EVAL_UNDEFINED_VARIABLE);  // no short circuit
}

TEST(EvalTest, CompiledProgramRunsWithDifferentVariables) {
  auto program = vm::EvalProgram::Compile("$a * 2 + $b > 10");
  Vars vars{{"a", EvalValue(3.0)}, {"b", EvalValue(20.0)}};
  EvalValue r;
  ASSERT_EQ(program->Run(MapVariable, &vars, r), 0);
  EXPECT_EQ(r.Number(), 7);
  vars["a"] = EvalValue(1.0);
  vars["b"] = EvalValue(std::string("5"));  // "5" > 10 compares as text
  ASSERT_EQ(program->Run(MapVariable, &vars, r), 0);
  EXPECT_EQ(r.Number(), 3);
  vars.erase("a");
  r = EvalValue(42.0);
  EXPECT_EQ(program->Run(MapVariable, &vars, r), vm::EVAL_UNDEFINED_VARIABLE);
  EXPECT_EQ(r.Number(), 42);  // untouched on error
}

TEST(EvalTest, HandlersGetTheContextAndPassTheirErrorsThrough) {
  auto twice = [](void* ctx, const std::string& name, EvalValue& v) {
    ++*static_cast<int*>(ctx);
    if (name != "twice") return vm::EvalDefaultFunction(nullptr, name, v);
    v.SetNumber(v.ToNumber() * 2);
    return 0;
  };
  auto refuse = [](void*, const std::string&, EvalValue&) { return 42; };
  int calls = 0;
  EvalValue r;
  auto program = vm::EvalProgram::Compile("twice(sqrt(9)) + twice(1)");
  ASSERT_EQ(program->Run(nullptr, twice, &calls, r), 0);
  EXPECT_EQ(r.Number(), 8);
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(program->Run(refuse, refuse, nullptr, r), 42);
  EXPECT_EQ(vm::Eval("$x", refuse, nullptr, r), 42);
  EXPECT_STREQ(vm::EvalErrorText(42), "undefined error");
}

TEST(EvalTest, ResultRuleForValues) {
  auto stored = [](double d) {
    base::Value v;
    vm::EvalResultToValue(EvalValue(d), v);
    return v;
  };
  EXPECT_EQ(stored(2.5).Type(), base::Value::TYPE_FLOAT);
  EXPECT_EQ(stored(2.5).F64(), 2.5);
  EXPECT_EQ(stored(-2.5).Type(), base::Value::TYPE_INT);
  EXPECT_EQ(stored(-2.5).I64(), -2);
  EXPECT_EQ(stored(7).I64(), 7);
  EXPECT_EQ(stored(-0.5).I64(), 0);
  EXPECT_EQ(stored(std::nan("")).I64(), 0);
  EXPECT_EQ(stored(1e300).I64(), std::numeric_limits<long long>::max());
  EXPECT_EQ(stored(-std::numeric_limits<double>::infinity()).I64(),
            std::numeric_limits<long long>::min());
  base::Value s;
  vm::EvalResultToValue(Ok(R"("a" + 1)"), s);
  EXPECT_EQ(s.Type(), base::Value::TYPE_STR);
  EXPECT_STREQ(s.Str(), "a1");
}
