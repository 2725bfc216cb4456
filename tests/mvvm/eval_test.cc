#include "mvvm/eval.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <initializer_list>
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

// The outcome as one text: a number exactly (shortest round trip), a string in
// single quotes, an error as its text in angle brackets.
std::string Show(const std::string& expr, Vars vars = {}) {
  EvalValue r;
  if (int code = vm::Eval(expr, MapVariable, &vars, r))
    return std::string("<") + vm::EvalErrorText(code) + ">";
  if (r.IsString()) return "'" + r.Str() + "'";
  char buf[32];
  return std::string(buf, std::to_chars(buf, buf + sizeof(buf), r.Number()).ptr);
}

// Each case is "<expression> -> <outcome as Show gives it>".
void ExpectShown(std::initializer_list<std::string> cases, const Vars& vars = {}) {
  for (const std::string& c : cases) {
    const size_t arrow = c.rfind(" -> ");
    EXPECT_EQ(Show(c.substr(0, arrow), vars), c.substr(arrow + 4)) << c;
  }
}

}  // namespace

TEST(EvalTest, TwoBinaryLevelsWithComparisonsBindingTighterThanSums) {
  ExpectShown({"2 * 3 + 1 -> 7", "1 + 2 * 3 -> 7", "1 + 2 > 2 -> 1", "2 > 1 + 1 -> 2",
               "1 > 0 * 5 -> 5",  // (1 > 0) * 5: one level, left to right
               "10 - 2 - 3 -> 5", "8 / 4 / 2 -> 1", "(1 + 2) > 2 -> 1", "1 = 1 -> 1",
               "1 == 1 && 2 != 3 -> 1"});
}

TEST(EvalTest, PrefixOperatorsToggle) {
  ExpectShown({"--3 -> 3", "- - -3 -> -3", "!!5 -> 5", "!0 + !7 -> 1",
               "-!0 -> 1",  // "!" applies last whatever the written order
               "~0 -> 4294967295", "~-1 -> 0", "-2 * -(1 + 2) -> 6", "+1 -> <expected term>"});
}

TEST(EvalTest, Literals) {
  ExpectShown({".5 -> 0.5", "0.1 -> 0.1", "1.5e3 -> 1500", "2E+2 -> 200", "25e-1 -> 2.5",
               "1e-400 -> 0", "0e999 -> 0", "1e309 -> <literal out-of-range>", R"("a\"b" -> 'a"b')",
               R"("a\\b" -> 'a\b')", R"("a\nb" -> 'anb')", R"("" -> '')"});
  for (const char* bad : {"1.", ".", "1.e5", "1e", "1e+", "2 + 3.x", R"("abc)", R"("abc\)"})
    EXPECT_EQ(Show(bad), "<invalid literal>") << bad;
}

TEST(EvalTest, NamesAndSlashes) {
  ExpectShown({"$a/b -> 1",    // a name runs on over "/"
               "$a / 2 -> 3",  // after an operand "/" divides
               "6 /x -> 2",
               "/x -> 5",  // where an operand is expected it starts a name
               "\t$a\n*\r2 -> 12"},
              {{"a", EvalValue(6.0)},
               {"a/b", EvalValue(1.0)},
               {"x", EvalValue(3.0)},
               {"/x", EvalValue(5.0)}});
  const std::string n63(63, 'n'), n64(64, 'n');
  ExpectShown({n63 + " + $" + n63 + " -> 2"}, {{n63, EvalValue(1.0)}});
  ExpectShown({n64 + " -> <name too long>", "$" + n64 + " -> <name too long>"});
}

TEST(EvalTest, NumbersOperators) {
  ExpectShown({"NAN == NAN -> 0", "NAN != NAN -> 1", "5 & 3 -> 1", "5 | 2.9 -> 7",
               "-1 | 0 -> 4294967295", "2 || 0 -> 1", "NAN && 1 -> 1", "1 / 0 -> inf",
               "PI -> 3.1415927410125732", "$PI -> 3.1415927410125732", "NAN -> nan",
               "pi -> <undefined variable>"});
}

TEST(EvalTest, MixingStringsAndNumbers) {
  ExpectShown({R"("a" + 1 -> 'a1')", R"(1 + "a" + "b" -> '1ab')", R"("x" + 2.5 -> 'x2.500000')",
               R"("x" + -2 -> 'x4294967294')",
               R"("10" > 9 -> 0)",  // compared as text
               R"(2.5 == "2.5" -> 0)", R"("abc" == "abc" -> 1)", R"("b" > "a" -> 1)",
               R"("" || 0 -> 1)",  // "0" is non-empty text
               R"("" && "a" -> 0)", R"("6" * 2 - "2" / "2" -> 11)", R"("12" | 1 -> 13)",
               R"(-"3" -> -3)", R"(!"" + !"a" -> 1)"});
}

TEST(EvalTest, BuiltinFunctions) {
  std::string cwd = base::FileUtils::GetCWD();
  cwd.back() = '/';
  ExpectShown({R"(strlen("abc") -> 3)", "strlen(12) + strlen(2.5) -> 10", "string(7) -> '7'",
               "string(-2) -> '4294967294'", R"(string("s") -> 's')",
               R"(toupper("aBc1") + tolower("XyZ") -> 'ABC1xyz')", "int(-2.7) + int(2.7) -> 0",
               "round(2.5) -> 3", "round(-2.5) -> -3", "floor(-1.5) + ceil(-1.5) -> -3",
               R"(sqrt("16") + log10(1000) + cos(0) + exp(0) -> 9)", R"(path("/x\\y") -> '/x/y')",
               R"(path("a\\b") -> ')" + cwd + "a/b'", "SIN(0) -> <undefined function>",
               "strlen + 1 -> <expected open bracket>"});
  ExpectShown({"$strlen -> 4"}, {{"strlen", EvalValue(4.0)}});
}

TEST(EvalTest, ErrorTextsByCode) {
  std::string texts;
  for (int code = -1; code <= 13; ++code)
    texts += std::string(vm::EvalErrorText(code)) + "|";
  EXPECT_EQ(texts,
            "undefined error|ok|illegal character|invalid literal|literal out-of-range|"
            "name too long|unexpected character|expected term|stack overflow|undefined function|"
            "undefined variable|expected open bracket|expected close bracket||undefined error|");
  ExpectShown({"1 2 -> <unexpected character>", " -> <expected term>"});
}

TEST(EvalTest, EightNestedLevelsAreAcceptedNineOverflow) {
  auto nest = [](int n, const std::string& open, const std::string& inner = "4") {
    std::string s;
    for (int i = 0; i < n; ++i)
      s += open;
    return s + inner + std::string(n, ')');
  };
  ExpectShown({nest(8, "(") + " -> 4",
               // Two pending operands on every level: the deepest operand stack there is.
               nest(8, "1 + 2 * (", "1 + 2 * 4") + " -> 2559",
               "sqrt" + nest(8, "(") + " -> 2",  // its argument brackets are the first level
               nest(8, "sqrt(", "1") + " -> 1", nest(9, "(") + " -> <stack overflow>",
               "sqrt" + nest(9, "(") + " -> <stack overflow>",
               nest(9, "sqrt(") + " -> <stack overflow>"});
}

TEST(EvalTest, ErrorsComeInTextOrder) {
  ExpectShown({"$unknown + (1 2 -> <undefined variable>",
               "(1 2 + $unknown -> <expected close bracket>",
               "foo($unknown) -> <undefined variable>", "foo(1) @ -> <undefined function>",
               "foo(1 @ -> <illegal character>",
               "0 && $unknown -> <undefined variable>"});  // no short circuit
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
}

TEST(EvalTest, ResultRuleForValues) {
  const double inf = std::numeric_limits<double>::infinity();
  // A double only when above its truncation: 2.5 stays, -2.5 becomes the integer -2.
  const std::pair<EvalValue, base::Value> cases[] = {
      {EvalValue(2.5), 2.5},        {EvalValue(-2.5), -2},
      {EvalValue(7.0), 7},          {EvalValue(-0.5), 0},
      {EvalValue(std::nan("")), 0}, {EvalValue(1e300), INT64_MAX},
      {EvalValue(-inf), INT64_MIN}, {EvalValue(std::string("a1")), "a1"}};
  for (const auto& [result, expected] : cases) {
    base::Value v;
    vm::EvalResultToValue(result, v);
    EXPECT_EQ(v.Cmp(expected), 0) << result.ToText() << " stored as kind " << v.Type();
  }
}
