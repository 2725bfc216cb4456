#include "mvvm/rule_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

class RecordingParser : public vm::RuleParser {
 public:
  bool OnKeyValue(const std::string& key, const std::string& value) override {
    pairs.emplace_back(key, value);
    return false;  // ignored by the parser
  }
  using vm::RuleParser::OnKeyValue;

  Pairs pairs;
};

Pairs ParseRule(const std::string& rule, const std::string& tag = "Binding",
                const std::string& default_key = "Path") {
  RecordingParser parser;
  EXPECT_TRUE(parser.Parse(rule, tag, default_key));
  return parser.pairs;
}

struct RuleCase {
  const char* rule;
  Pairs pairs;
};

void ExpectPairs(const std::vector<RuleCase>& cases) {
  for (const RuleCase& c : cases)
    EXPECT_EQ(ParseRule(c.rule), c.pairs) << "rule: " << c.rule;
}

}  // namespace

TEST(RuleParserTest, ExampleRules) {
  ExpectPairs({
      {"{Binding Name}", {{"Path", "Name"}}},
      {"{Name}", {{"Path", "Name"}}},
      {"{Binding Path=Name, Mode=OneWay}", {{"Path", "Name"}, {"Mode", "OneWay"}}},
      {"{binding path = Name , mode=OneWay}", {{"path", "Name"}, {"mode", "OneWay"}}},
      {"{Binding Path, Mode=OneWay}", {{"Path", "Path"}, {"Mode", "OneWay"}}},
      {"{Binding Path}", {{"Path", ""}}},
      {"{Binding Mode=OneWay}", {{"Path", "Mode=OneWay"}}},
      {"{Binding Path=x, Mode, Trigger=Changed}", {{"Path", "x"}, {"Trigger", "Changed"}}},
      {"{Binding Name, Converter=\"a, b\"}", {{"Path", "Name"}, {"Converter", "\"a, b\""}}},
      {"{Binding}", {{"", ""}}},
      {"", {}},
  });
}

TEST(RuleParserTest, BracesAndStrayTokens) {
  ExpectPairs({
      {"     ", {}},
      {"}", {{"", ""}}},
      // The closing brace flushes a pending key even without "=".
      {"{Binding Path=a, z}", {{"Path", "a"}, {"z", ""}}},
      // Braces are optional, and "{" anywhere is ignored.
      {"Binding Path=x, Mode=OneWay}", {{"Path", "x"}, {"Mode", "OneWay"}}},
      {"{Binding Path=x, { Mode=OneWay}", {{"Path", "x"}, {"Mode", "OneWay"}}},
      // "}" flushes without leaving the value state: what follows is a keyless value.
      {"{Binding Path=x} Mode=OneWay}", {{"Path", "x"}, {"", "Mode=OneWay"}}},
      // Without "}" the last pair is never delivered.
      {"{Binding Path=x, Mode=OneWay", {{"Path", "x"}}},
      {"{Binding Path=x, Mode=a=b}", {{"Path", "x"}, {"Mode", "a=b"}}},
      // A key without "=" followed by "," leaves "," as the key.
      {"{Binding Path=x, Mode, =y}", {{"Path", "x"}, {",", "y"}}},
  });
}

TEST(RuleParserTest, ValuesKeepInnerSpacingOnly) {
  ExpectPairs({
      {"{Binding a b  c}", {{"Path", "a b  c"}}},
      {"{Binding Path=  to  upper   , Mode=x}", {{"Path", "to  upper"}, {"Mode", "x"}}},
      // Tabs and line feeds are word characters, not separators.
      {"{Binding a\tb\nc}", {{"Path", "a\tb\nc"}}},
      // A quoted text has no position: the spaces before it are not kept.
      {"{Binding Path=to  \"a b\"}", {{"Path", "to\"a b\""}}},
  });
}

TEST(RuleParserTest, QuotedTexts) {
  ExpectPairs({
      {"{Binding Path=x, Format=\"{a=1}, b\"}", {{"Path", "x"}, {"Format", "\"{a=1}, b\""}}},
      // A backslash keeps a quote inside; nothing is unescaped.
      {"{Binding Path=x, F=\"say \\\"hi\\\", ok\"}",
       {{"Path", "x"}, {"F", "\"say \\\"hi\\\", ok\""}}},
      // A quote inside a word is an ordinary character: the comma still splits.
      {"{Binding Path=say\"hi, x=\"a\"}", {{"Path", "say\"hi"}, {"x", "\"a\""}}},
      {"{Binding a\"b c\"}", {{"Path", "a\"b c\""}}},
      // An unclosed quoted text swallows the rest, closing brace included, and is lost.
      {"{Binding Path=x, Format=\"abc}", {{"Path", "x"}}},
  });
}

TEST(RuleParserTest, TagAndDefaultKeyMatchInAnyCase) {
  ExpectPairs({
      {"{BINDING PATH=x}", {{"PATH", "x"}}},
      {"{bInDiNg pAtH}", {{"pAtH", ""}}},
      {"{Bindings x}", {{"Path", "Bindings x"}}},  // not the tag: part of the first value
  });
  // A first item that is some other key is not recognised as a key.
  EXPECT_EQ(ParseRule("{Command CloseWindow=true, Name=x}", "Command", "Name"),
            (Pairs{{"Name", "CloseWindow=true"}, {"Name", "x"}}));
  EXPECT_EQ(ParseRule("{command save}", "Command", "Name"), (Pairs{{"Name", "save"}}));
}

TEST(RuleParserTest, UnclosedRuleKeepsItsLastPairPendingAndUnspaced) {
  RecordingParser parser;
  parser.Parse("{Binding Path=x, Converter=to  upper", "Binding", "Path");
  EXPECT_EQ(parser.pairs, (Pairs{{"Path", "x"}}));
  // The last word came without its position, so its spaces were lost.
  parser.OnKeyValue();
  EXPECT_EQ(parser.pairs.back(), (std::pair<std::string, std::string>("Converter", "toupper")));
  parser.OnKeyValue();  // the flush cleared the pair
  EXPECT_EQ(parser.pairs.back(), (std::pair<std::string, std::string>("", "")));
}

TEST(RuleParserTest, OnTokenReportsOnlyBraces) {
  RecordingParser parser;
  EXPECT_TRUE(parser.OnToken("{", nullptr, -1, -1));
  EXPECT_FALSE(parser.OnToken("Binding", nullptr, -1, -1));
  EXPECT_FALSE(parser.OnToken("Path", nullptr, -1, -1));
  EXPECT_FALSE(parser.OnToken("=", nullptr, -1, -1));
  EXPECT_FALSE(parser.OnToken("x", nullptr, -1, -1));
  EXPECT_TRUE(parser.OnToken("}", nullptr, -1, -1));
  // Without Parse there is no tag or default key: everything was one value.
  EXPECT_EQ(parser.pairs, (Pairs{{"", "BindingPath=x"}}));
}

TEST(RuleParserTest, IEqualAndIsTrue) {
  EXPECT_TRUE(vm::RuleParser::IEqual("Path", "pATH"));
  EXPECT_TRUE(vm::RuleParser::IEqual("", ""));
  EXPECT_TRUE(vm::RuleParser::IEqual("a-1_Z", "A-1_z"));
  EXPECT_FALSE(vm::RuleParser::IEqual("Path", "Paths"));
  EXPECT_FALSE(vm::RuleParser::IEqual("a", "b"));
  EXPECT_FALSE(vm::RuleParser::IEqual("[", "{"));  // no folding outside letters

  for (const char* s : {"true", "True", "TRUE", "tRuE"})
    EXPECT_TRUE(vm::RuleParser::IsTrue(s)) << s;
  for (const char* s : {"1", "yes", "", " true", "truee", "false"})
    EXPECT_FALSE(vm::RuleParser::IsTrue(s)) << s;
}
