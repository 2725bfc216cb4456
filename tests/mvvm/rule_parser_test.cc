#include "mvvm/rule_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

struct RecordingParser : vm::RuleParser {
  bool OnKeyValue(const std::string& key, const std::string& value) override {
    pairs.emplace_back(key, value);
    return false;  // ignored by the parser
  }
  using vm::RuleParser::OnKeyValue;
  Pairs pairs;
};

}  // namespace

// IEqual folds letters only; IsTrue is covered by the command binding flags.
TEST(RuleParserTest, PairsDeliveredAndNamesCompared) {
  const std::pair<const char*, Pairs> cases[] = {
      {"{binding path = Name , mode=OneWay}", {{"path", "Name"}, {"mode", "OneWay"}}},
      {"{Binding Path, Mode=OneWay}", {{"Path", "Path"}, {"Mode", "OneWay"}}},
      {"{BINDING pAtH}", {{"pAtH", ""}}},
      {"{Binding Mode=OneWay}", {{"Path", "Mode=OneWay"}}},
      {"{Bindings x}", {{"Path", "Bindings x"}}},
      {"{Binding Path=x, Mode, Trigger=Changed}", {{"Path", "x"}, {"Trigger", "Changed"}}},
      {"{Binding Path=a, z}", {{"Path", "a"}, {"z", ""}}},
      {"{Binding}", {{"", ""}}},
      {"     ", {}},
      // Braces are optional; "{" anywhere is ignored; "}" flushes but stays in the value.
      {"Binding Path=x, { Mode=OneWay}", {{"Path", "x"}, {"Mode", "OneWay"}}},
      {"{Binding Path=x} Mode=OneWay}", {{"Path", "x"}, {"", "Mode=OneWay"}}},
      // Unclosed, the last word comes without its position and loses the spaces before it.
      {"{Binding Path=x, Converter=to  upper", {{"Path", "x"}, {"Converter", "toupper"}}},
      // Values keep "=" and inner spacing, never outer spacing.
      {"{Binding Path=  to  upper   , Args=a=b}", {{"Path", "to  upper"}, {"Args", "a=b"}}},
      // Quoted texts keep their quotes, delimiters and escapes, but not the spaces before them.
      {"{Binding Name, Converter=\"a, b\"}", {{"Path", "Name"}, {"Converter", "\"a, b\""}}},
      {R"({Binding Path=x, F="{a=1}, \"b, c\""})", {{"Path", "x"}, {"F", R"("{a=1}, \"b, c\"")"}}},
      {"{Binding Path=to  \"a b\"}", {{"Path", "to\"a b\""}}},
      {"{Binding Path=x, F=\"abc}", {{"Path", "x"}, {"F", ""}}},  // unclosed quote: lost
      // A quote inside a word is an ordinary character.
      {"{Binding Path=say\"hi, x=\"a\"}", {{"Path", "say\"hi"}, {"x", "\"a\""}}}};
  for (const auto& [rule, pairs] : cases) {
    RecordingParser parser;
    EXPECT_TRUE(parser.Parse(rule, "Binding", "Path"));
    EXPECT_EQ(parser.pairs, pairs) << "rule: " << rule;
  }
  EXPECT_TRUE(vm::RuleParser::IEqual("a-1_Z", "A-1_z"));
  EXPECT_FALSE(vm::RuleParser::IEqual("[", "{"));  // only letters fold
}
