#include "base/file_utils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "support/log_capture.h"

using base::FileUtils;

TEST(FileUtilsTest, WriteReadDeleteAndMissingFiles) {
  ovui_test::TempDir dir;
  const std::string path = dir.File("a.txt");
  EXPECT_TRUE(FileUtils::WriteTextFile(path, "first version"));
  EXPECT_TRUE(FileUtils::WriteTextFile(path, std::string("ab\0cd", 5)));  // truncates
  EXPECT_EQ(FileUtils::FileSize(path), 5);
  std::string text;
  EXPECT_TRUE(FileUtils::ReadTextFile(path, text));
  EXPECT_EQ(text, "ab");  // up to the NUL byte
  EXPECT_EQ((std::vector<bool>{FileUtils::FileExist(path), FileUtils::DirExist(path),
                               FileUtils::FileExist(dir.Path()), FileUtils::DirExist(dir.Path())}),
            (std::vector<bool>{true, false, false, true}));

  EXPECT_TRUE(FileUtils::DeleteFileW(path));
  EXPECT_TRUE(FileUtils::DeleteFileW(path));  // already gone: still true
  EXPECT_EQ(FileUtils::FileSize(path), 0);
  ovui_test::LogCapture log;
  EXPECT_FALSE(FileUtils::ReadTextFile(path, text));
  EXPECT_EQ(text, "ab");  // untouched
  EXPECT_NE(log.Text().find("[2] Open file failed:" + path + "\n"), std::string::npos);
  EXPECT_FALSE(FileUtils::WriteTextFile(dir.File("no/such/dir.txt"), "x"));
}

TEST(FileUtilsTest, PathsInBackslashForm) {
  const std::vector<std::string> got = {FileUtils::DirName("c:/x\\y/z.txt"),
                                        FileUtils::BaseName("c:\\x/y.txt"),
                                        FileUtils::DirName("y.txt"), FileUtils::BaseName("y.txt"),
                                        FileUtils::ReplaceBaseName("/a/b.ts", "c.qm")};
  EXPECT_EQ(got, (std::vector<std::string>{"c:\\x\\y\\", "y.txt", "", "y.txt", "\\a\\c.qm"}));
  EXPECT_EQ(FileUtils::GetCWD(), std::filesystem::current_path().string() + "\\");
}
