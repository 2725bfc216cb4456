#include "base/str_token.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/log_capture.h"

using Tokens = std::vector<std::string>;

static bool Collect(void* ctx, const std::string& token) {
  static_cast<Tokens*>(ctx)->push_back(token);
  return true;
}

static Tokens Split(const std::string& text, const char* separators, const char* delimiters) {
  Tokens from_string, from_pointer;
  EXPECT_TRUE(base::StrToTokens(text, Collect, &from_string, separators, delimiters));
  EXPECT_TRUE(base::StrToTokens(text.c_str(), Collect, &from_pointer, separators, delimiters));
  EXPECT_EQ(from_string, from_pointer) << text;  // the overloads must agree
  return from_string;
}

TEST(StrToTokensTest, SplitsAndRefusesNulls) {
  EXPECT_EQ(Split("  a  bc\td ", " ", ""), (Tokens{"a", "bc\td"}));  // only the given ones split
  EXPECT_EQ(Split("a=b ,c;=", " ;", ",="), (Tokens{"a", "=", "b", ",", "c", "="}));
  EXPECT_EQ(Split("a b,c", nullptr, nullptr), (Tokens{"a", "b,c"}));  // " " and none
  Tokens tokens;  // a NUL byte never matches a set
  EXPECT_TRUE(base::StrToTokens(std::string("a\0b c", 5), Collect, &tokens));
  EXPECT_EQ(tokens, (Tokens{std::string("a\0b", 3), "c"}));
}
