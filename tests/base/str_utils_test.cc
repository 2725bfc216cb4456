#include "base/str_utils.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "support/log_capture.h"

using base::StrUtils;

TEST(StrUtilsTest, NumbersBothWays) {
  EXPECT_EQ(StrUtils::FromInt(-42), "-42");
  EXPECT_EQ(StrUtils::FromFloat(1.5f), "1.500000");
  EXPECT_EQ(StrUtils::ToInt("12"), 12);
  EXPECT_EQ(StrUtils::ToInt("0x1F"), 31);
  EXPECT_EQ(StrUtils::ToInt("0X1f"), 31);
  EXPECT_EQ(StrUtils::ToInt("10x5"), 0);  // marker found anywhere, first two chars skipped
  EXPECT_EQ(StrUtils::ToInt(static_cast<const char*>(nullptr)), 0);
  EXPECT_FLOAT_EQ(StrUtils::ToFloat("2.25"), 2.25f);
}

TEST(StrUtilsTest, PrefixReplaceAndCase) {
  EXPECT_TRUE(StrUtils::StartWith("binding.value", "binding."));
  EXPECT_TRUE(StrUtils::StartWith("abc", ""));
  EXPECT_FALSE(StrUtils::StartWith("xabc", "abc"));

  std::string s = "a-b-c";
  EXPECT_EQ(&StrUtils::Replace(s, "-", "--"), &s);
  EXPECT_EQ(s, "a--b--c");  // resumes after each insertion
  std::string t = "aaa";
  EXPECT_EQ(StrUtils::Replace(t, "", "x"), "aaa");

  EXPECT_EQ(StrUtils::ToLower("MiXeD 1"), "mixed 1");
  EXPECT_EQ(StrUtils::ToUpper("MiXeD 1"), "MIXED 1");
}

TEST(StrUtilsTest, DupCopiesAndLogsNull) {
  char* a = StrUtils::Dup("abcdef", 3);
  char* b = StrUtils::Dup("abcdef", 0);
  char* c = StrUtils::Dup("abc", 99);
  EXPECT_STREQ(a, "abc");
  EXPECT_STREQ(b, "abcdef");
  EXPECT_STREQ(c, "abc");
  std::free(a);
  std::free(b);
  std::free(c);

  ovui_test::LogCapture log;
  EXPECT_EQ(StrUtils::Dup(nullptr, 1), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Dup", "str != NULL"));
}
