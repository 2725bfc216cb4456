#include "base/log.h"

#include <gtest/gtest.h>

#include <string>

#include "support/log_capture.h"

namespace {

int g_check_line = 0;

bool FailingCheck(int index) {
  g_check_line = __LINE__ + 1;
  OVUI_CHECK(index < 3, false);
  return true;
}

}  // namespace

TEST(LogTest, StandardOutputLevelsAndClosing) {
  testing::internal::CaptureStdout();
  base::LogInit(nullptr, 3);
  base::Log("a.cc", 10, 2, "quiet\n");  // below the minimum
  base::Log("a.cc", 11, 3, "loud %d\n", 7);
  base::LogInit("/nonexistent-dir/x.log", 0);  // unopenable: standard output as well
  base::Log("f.cc", 1, 0, "here\n");
  base::LogDeinit();
  base::Log("x.cc", 1, 3, "lost\n");  // nothing is written while closed
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a.cc:11[3] loud 7\nf.cc:1[0] here\n");
}

TEST(LogTest, PrefixUsesTheBaseNameSlashFirst) {
  ovui_test::LogCapture log;
  base::Log("a/b\\c.cc", 5, 1, "m\n");
  base::Log("dir\\file.cc", 6, 1, "n\n");
  base::Log("plain.cc", 7, 1, "o\n");
  EXPECT_EQ(log.Text(), "b\\c.cc:5[1] m\nfile.cc:6[1] n\nplain.cc:7[1] o\n");
}

TEST(LogTest, FailedCheckNamesFunctionLineAndCondition) {
  ovui_test::LogCapture log;
  EXPECT_TRUE(FailingCheck(1));
  EXPECT_EQ(log.Text(), "");
  EXPECT_FALSE(FailingCheck(5));
  const std::string line = std::to_string(g_check_line);
  EXPECT_EQ(log.Text(), "log_test.cc:" + line + "[2] FailingCheck:" + line + " index < 3\n");
}
