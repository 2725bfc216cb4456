#include "mvvm/eval.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

using vm::EvalValue;

namespace {

using Vars = std::map<std::string, EvalValue>;
int MapVariable(void* ctx, const std::string& name, EvalValue& out) {
  const Vars& vars = *static_cast<Vars*>(ctx);
  if (!vars.count(name)) return vm::EvalDefaultVariable(nullptr, name, out);
  out = vars.at(name);
  return 0;
}

// Variables from the map, then constants. A number exactly, a string in '', an error as <text>.
std::string Show(const vm::EvalProgram& p, Vars vars) {
  EvalValue r;
  if (int e = p.Run(MapVariable, &vars, r)) return "<" + std::string(vm::EvalErrorText(e)) + ">";
  if (r.IsString()) return "'" + r.Str() + "'";
  char buf[32];
  return std::string(buf, std::to_chars(buf, buf + sizeof(buf), r.Number()).ptr);
}

// Each case is "<expression> -> <outcome as Show gives it>", over these variables.
const std::string kLongest(63, 'n');
void ExpectShown(std::initializer_list<std::string> cases) {
  const Vars vars{{"a", EvalValue(6.0)},  {"a/b", EvalValue(1.0)},    {"x", EvalValue(3.0)},
                  {"/x", EvalValue(5.0)}, {kLongest, EvalValue(1.0)}, {"strlen", EvalValue(4.0)}};
  for (const std::string& c : cases) {
    const size_t arrow = c.rfind(" -> ");
    EXPECT_EQ(Show(*vm::EvalProgram::Compile(c.substr(0, arrow)), vars), c.substr(arrow + 4)) << c;
  }
}

std::string Nest(int n, const std::string& open, const std::string& inner = "4") {
  return n ? open + Nest(n - 1, open, inner) + ")" : inner;
}

}  // namespace

// Two left-to-right levels, comparisons above sums. Prefixes toggle; "!" applies last.
// Equal operands: the "or equal" comparisons hold, the strict ones do not.
TEST(EvalTest, OperatorsLiteralsNamesStringsFunctionsAndErrors) {
  ExpectShown({"2 * 3 + 1 -> 7", "1 + 2 > 2 -> 1", "2 > 1 + 1 -> 2", "10 - 2 - 3 -> 5",
               "1 = 1 -> 1", "1 == 1 && 2 != 3 -> 1", "!!5 -> 5", "!0 + !7 -> 1", "-!0 -> 1",
               "~0 -> 4294967295", "-2 * -(1 + 2) -> 6", "+1 -> <expected term>"});
  ExpectShown({"NAN == NAN -> 0", "NAN != NAN -> 1", "5 & 3 -> 1", "5 | 2.9 -> 7",
               "-1 | 0 -> 4294967295", "2 || 0 -> 1", "NAN && 1 -> 1", "1 / 0 -> inf",
               "PI -> 3.1415927410125732", "pi -> <undefined variable>", "3 <= 3 -> 1",
               "3 >= 3 -> 1", "3 < 3 -> 0", "3 > 3 -> 0", "-0 >= 0 -> 1", "NAN <= NAN -> 0"});

  // A name runs on over "/": it divides after an operand, and starts a name where one is due.
  ExpectShown({".5 -> 0.5", "1.5e3 -> 1500", "2E+2 -> 200", "25e-1 -> 2.5", "1e-400 -> 0",
               "0e999 -> 0", "1e309 -> <literal out-of-range>", R"("a\"b" -> 'a"b')",
               R"("a\\b" -> 'a\b')", R"("a\nb" -> 'anb')", R"("" -> '')", "$strlen -> 4"});
  for (const char* bad : {"1.", ".", "1.e5", "1e", "1e+", "2 + 3.x", R"("abc)", R"("abc\)"})
    ExpectShown({bad + std::string(" -> <invalid literal>")});
  ExpectShown({"$a/b -> 1", "$a / 2 -> 3", "6 /x -> 2", "/x -> 5", "\t$a\n*\r2 -> 12",
               kLongest + " + $" + kLongest + " -> 2", kLongest + "n -> <name too long>"});

  // "+", comparisons, "||" and "&&" take strings as text, the other operators as numbers.
  ExpectShown({R"("a" + 1 -> 'a1')", R"(1 + "a" + "b" -> '1ab')", R"("x" + 2.5 -> 'x2.500000')",
               R"("x" + -2 -> 'x4294967294')", R"("10" > 9 -> 0)", R"(2.5 == "2.5" -> 0)",
               R"("abc" == "abc" -> 1)", R"("" || 0 -> 1)", R"("6" * 2 - "2" / "2" -> 11)",
               R"(-"3" -> -3)", R"(!"" + !"a" -> 1)", "strlen + 1 -> <expected open bracket>",
               R"("ab" <= "ab" -> 1)", R"("ab" >= "ab" -> 1)", R"("ab" < "ab" -> 0)",
               R"("ab" > "ab" -> 0)", R"(7 <= "7" -> 1)", R"("7" >= 7 -> 1)"});
  ExpectShown({R"(strlen("abc") + strlen(12) -> 5)", "string(7) -> '7'", R"(string("s") -> 's')",
               R"(toupper("aBc1") + tolower("XyZ") -> 'ABC1xyz')", "int(-2.7) + int(2.7) -> 0",
               "round(2.5) -> 3", "round(-2.5) -> -3", "floor(-1.5) + ceil(-1.5) -> -3",
               R"(path("a\\b") -> ')" + std::filesystem::current_path().string() + "/a/b'"});

  // Errors come in text order, without short circuits. Nesting stops at eight, calls included.
  EXPECT_STREQ(vm::EvalErrorText(14), "undefined error");  // past the table; the others below
  ExpectShown({"1 2 -> <unexpected character>", "$unknown + (1 2 -> <undefined variable>",
               "(1 2 + $unknown -> <expected close bracket>", " -> <expected term>",
               "foo($unknown) -> <undefined variable>", "foo(1) @ -> <undefined function>",
               "foo(1 @ -> <illegal character>", "0 && $unknown -> <undefined variable>",
               Nest(8, "(") + " -> 4", Nest(8, "1 + 2 * (", "1 + 2 * 4") + " -> 2559",
               "sqrt" + Nest(8, "(") + " -> 2", Nest(8, "sqrt(", "1") + " -> 1",
               Nest(9, "(") + " -> <stack overflow>", Nest(9, "sqrt(") + " -> <stack overflow>"});
}

// Handlers get the context; their own error codes pass through.
TEST(EvalTest, HandlersAndResultsStoredAsValues) {
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
  EXPECT_EQ(r.Number(), 8.0);
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(program->Run(refuse, refuse, nullptr, r), 42);
  EXPECT_EQ(vm::Eval("$x", refuse, nullptr, r), 42);
  EXPECT_EQ(r.Number(), 8.0);  // r untouched

  // A double only above its truncation (-2.5 gives the integer -2); the conversion saturates.
  const std::pair<EvalValue, base::Value> cases[] = {
      {EvalValue(2.5), 2.5},         {EvalValue(-2.5), -2},
      {EvalValue(7.0), 7},           {EvalValue(-0.5), 0},
      {EvalValue(std::nan("")), 0},  {EvalValue(-HUGE_VAL), INT64_MIN},
      {EvalValue(1e300), INT64_MAX}, {EvalValue(std::string("a1")), "a1"}};
  base::Value v;
  for (const auto& [result, expected] : cases) {
    vm::EvalResultToValue(result, v);
    EXPECT_EQ(v.Cmp(expected), 0) << result.ToText() << " stored as kind " << v.Type();
  }
}
