#include "base/str_utils.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "support/log_capture.h"

using base::StrUtils;

static std::string Dup(const char* s, unsigned n) {
  return std::unique_ptr<char, void (*)(void*)>(StrUtils::Dup(s, n), std::free).get();
}

TEST(StrUtilsTest, ConversionsCopiesAndReplace) {
  const auto num = [](const char* s) { return StrUtils::ToInt(s); };
  EXPECT_EQ((std::vector<int>{num("12"), num("0x1F"), num("0X1f"), num("10x5"), num(nullptr)}),
            (std::vector<int>{12, 31, 31, 0, 0}));  // "0x" anywhere: hex after two chars
  const std::vector<std::string> texts = {StrUtils::FromInt(-42),
                                          StrUtils::FromFloat(StrUtils::ToFloat("2.25")),
                                          StrUtils::ToLower("MiXeD 1"), StrUtils::ToUpper("MiXeD")};
  EXPECT_EQ(texts, (std::vector<std::string>{"-42", "2.250000", "mixed 1", "MIXED"}));
  EXPECT_TRUE(StrUtils::StartWith("ab", "a"));
  EXPECT_FALSE(StrUtils::StartWith("xab", "ab"));
  EXPECT_EQ((std::vector<std::string>{Dup("abcdef", 3), Dup("abcdef", 0), Dup("abc", 99)}),
            (std::vector<std::string>{"abc", "abcdef", "abc"}));  // n = 0 copies all

  std::string s = "-a--b";
  EXPECT_EQ(StrUtils::Replace(s, "-", "--"), "--a----b");  // resumes right after each insertion
  EXPECT_EQ(StrUtils::Replace(s, "", "x"), "--a----b");
}
