#include "base/str_token.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"

namespace {

bool Collect(void* ctx, const std::string& token) {
  static_cast<std::vector<std::string>*>(ctx)->push_back(token);
  return true;
}

}  // namespace

TEST(StrToTokensTest, SeparatorsAndDelimiters) {
  using Tokens = std::vector<std::string>;
  struct Case {
    const char* text;
    const char* separators;
    const char* delimiters;
    Tokens tokens;
  };
  const Case cases[] = {
      {"", " ", "", {}},
      {"   ", " ", "", {}},
      {"a  bc d", " ", "", {"a", "bc", "d"}},
      {" a\tb ", " ", "", {"a\tb"}},  // only the given separators split
      {"a=b,c", " ", ",=", {"a", "=", "b", ",", "c"}},
      {"=,", " ", ",=", {"=", ","}},
      {"x , y", " ", ",", {"x", ",", "y"}},
      {"a;b c", "; ", "", {"a", "b", "c"}},
      {"a b", nullptr, nullptr, {"a", "b"}},  // null sets fall back to " " and none
      {"a,b", nullptr, nullptr, {"a,b"}},
  };
  for (const Case& c : cases) {
    Tokens tokens;
    EXPECT_TRUE(
        base::StrToTokens(std::string(c.text), Collect, &tokens, c.separators, c.delimiters));
    EXPECT_EQ(tokens, c.tokens) << '"' << c.text << '"';

    Tokens from_pointer;
    EXPECT_TRUE(base::StrToTokens(c.text, Collect, &from_pointer, c.separators, c.delimiters));
    EXPECT_EQ(from_pointer, c.tokens) << '"' << c.text << '"';
  }
}

TEST(StrToTokensTest, NulBytesInAStringAreWordCharacters) {
  std::vector<std::string> tokens;
  base::StrToTokens(std::string("a\0b c", 5), Collect, &tokens);
  ASSERT_EQ(tokens.size(), 2u);
  EXPECT_EQ(tokens[0], std::string("a\0b", 3));
  EXPECT_EQ(tokens[1], "c");
}

TEST(StrToTokensTest, NullTextOrCallbackIsLoggedAndRefused) {
  ovui_test::LogCapture log;
  std::vector<std::string> tokens;
  EXPECT_FALSE(base::StrToTokens(static_cast<const char*>(nullptr), Collect, &tokens));
  EXPECT_NE(log.Text().find("[2] StrToTokens:"), std::string::npos);
  EXPECT_TRUE(log.HasLineEndingWith("p != NULL && on_token != NULL"));
  log.Clear();
  EXPECT_FALSE(base::StrToTokens(std::string("a b"), nullptr, &tokens));
  EXPECT_TRUE(log.HasLineEndingWith("p != NULL && on_token != NULL"));
  EXPECT_TRUE(tokens.empty());
}
