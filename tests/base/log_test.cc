#include "base/log.h"

#include <gtest/gtest.h>

#include <string>

#include "support/log_capture.h"

static int g_check_line = 0;

static bool FailingCheck(int index) {
  g_check_line = __LINE__ + 1;
  OVUI_CHECK(index < 3, false);
  return true;
}

TEST(LogTest, DestinationsLevelsPrefixAndFailedChecks) {
  testing::internal::CaptureStdout();
  base::Log("x.cc", 1, 3, "lost\n");  // nothing is written before LogInit
  base::LogInit(nullptr, 3);
  base::Log("a.cc", 10, 2, "quiet\n");  // below the minimum
  base::Log("a.cc", 11, 3, "loud %d\n", 7);
  base::LogInit("/nonexistent-dir/x.log", 0);  // unopenable: standard output as well
  base::Log("f.cc", 1, 0, "here\n");
  base::LogDeinit();
  base::Log("x.cc", 2, 3, "lost\n");  // nor after LogDeinit
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a.cc:11[3] loud 7\nf.cc:1[0] here\n");

  ovui_test::LogCapture log;
  base::Log("a/b\\c.cc", 5, 1, "m\n");  // the base name: after the last slash, else backslash
  base::Log("dir\\file.cc", 6, 1, "n\n");
  EXPECT_TRUE(FailingCheck(1));
  EXPECT_FALSE(FailingCheck(5));
  const std::string line = std::to_string(g_check_line);
  EXPECT_EQ(log.Text(), "b\\c.cc:5[1] m\nfile.cc:6[1] n\nlog_test.cc:" + line +
                            "[2] FailingCheck:" + line + " index < 3\n");
}
