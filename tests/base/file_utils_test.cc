#include "base/file_utils.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/log_capture.h"

using base::FileUtils;

TEST(FileUtilsTest, WriteReadSizeDelete) {
  ovui_test::TempDir dir;
  const std::string path = dir.File("a.txt");
  EXPECT_TRUE(FileUtils::WriteTextFile(path, "first version"));
  EXPECT_TRUE(FileUtils::WriteTextFile(path, "short"));  // truncates
  EXPECT_EQ(FileUtils::FileSize(path), 5);
  std::string text = "old";
  EXPECT_TRUE(FileUtils::ReadTextFile(path, text));
  EXPECT_EQ(text, "short");
  EXPECT_TRUE(FileUtils::FileExist(path));
  EXPECT_FALSE(FileUtils::DirExist(path));
  EXPECT_TRUE(FileUtils::DirExist(dir.Path()));
  EXPECT_FALSE(FileUtils::FileExist(dir.Path()));

  EXPECT_TRUE(FileUtils::DeleteFileW(path));
  EXPECT_FALSE(FileUtils::FileExist(path));
  EXPECT_TRUE(FileUtils::DeleteFileW(path));  // already gone: still true
  EXPECT_EQ(FileUtils::FileSize(path), 0);
}

TEST(FileUtilsTest, ReadStopsAtNulAndReportsMissingFiles) {
  ovui_test::TempDir dir;
  const std::string path = dir.File("nul.bin");
  std::ofstream(path, std::ios::binary).write("ab\0cd", 5);
  std::string text;
  EXPECT_TRUE(FileUtils::ReadTextFile(path, text));
  EXPECT_EQ(text, "ab");

  ovui_test::LogCapture log;
  const std::string missing = dir.File("missing.txt");
  text = "kept";
  EXPECT_FALSE(FileUtils::ReadTextFile(missing, text));
  EXPECT_EQ(text, "kept");
  EXPECT_NE(log.Text().find("[2] Open file failed:" + missing + "\n"), std::string::npos);
  EXPECT_FALSE(FileUtils::WriteTextFile(dir.File("no/such/dir.txt"), "x"));
}

TEST(FileUtilsTest, PathsInBackslashForm) {
  EXPECT_EQ(FileUtils::NormalizeFileName("c:/x\\y/z"), "c:\\x\\y\\z");
  EXPECT_EQ(FileUtils::DirName("c:/x/y.txt"), "c:\\x\\");
  EXPECT_EQ(FileUtils::BaseName("c:/x/y.txt"), "y.txt");
  EXPECT_EQ(FileUtils::DirName("y.txt"), "");
  EXPECT_EQ(FileUtils::BaseName("y.txt"), "y.txt");
  EXPECT_EQ(FileUtils::ReplaceBaseName("/a/b.ts", "c.qm"), "\\a\\c.qm");
  const std::string cwd = FileUtils::GetCWD();
  ASSERT_FALSE(cwd.empty());
  EXPECT_EQ(cwd.back(), '\\');
  EXPECT_TRUE(FileUtils::DirExist(cwd.substr(0, cwd.size() - 1)));
}
