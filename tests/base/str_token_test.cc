#include "base/str_token.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"

namespace {

using Tokens = std::vector<std::string>;

bool Collect(void* ctx, const std::string& token) {
  static_cast<Tokens*>(ctx)->push_back(token);
  return true;
}

}  // namespace

TEST(StrToTokensTest, SeparatorsAndDelimiters) {
  const struct {
    const char* text;
    const char* separators;
    const char* delimiters;
    Tokens tokens;
  } cases[] = {
      {"", " ", "", {}},
      {"  a  bc\td ", " ", "", {"a", "bc\td"}},  // only the given separators split
      {"a=b,c", " ", ",=", {"a", "=", "b", ",", "c"}},
      {"x , =", " ", ",=", {"x", ",", "="}},
      {"a;b c", "; ", "", {"a", "b", "c"}},
      {"a b,c", nullptr, nullptr, {"a", "b,c"}},  // null sets: " " and none
  };
  for (const auto& c : cases) {
    Tokens from_string, from_pointer;
    EXPECT_TRUE(
        base::StrToTokens(std::string(c.text), Collect, &from_string, c.separators, c.delimiters));
    EXPECT_TRUE(base::StrToTokens(c.text, Collect, &from_pointer, c.separators, c.delimiters));
    EXPECT_EQ(from_string, c.tokens) << '"' << c.text << '"';
    EXPECT_EQ(from_pointer, c.tokens) << '"' << c.text << '"';
  }

  Tokens tokens;  // a NUL byte never matches a set
  base::StrToTokens(std::string("a\0b c", 5), Collect, &tokens);
  EXPECT_EQ(tokens, (Tokens{std::string("a\0b", 3), "c"}));
}

TEST(StrToTokensTest, NullTextOrCallbackIsLoggedAndRefused) {
  ovui_test::LogCapture log;
  Tokens tokens;
  EXPECT_FALSE(base::StrToTokens(static_cast<const char*>(nullptr), Collect, &tokens));
  EXPECT_TRUE(log.HasFailedCheck("StrToTokens", "p != NULL && on_token != NULL"));
  log.Clear();
  EXPECT_FALSE(base::StrToTokens(std::string("a b"), nullptr, &tokens));
  EXPECT_TRUE(log.HasFailedCheck("StrToTokens", "p != NULL && on_token != NULL"));
}
