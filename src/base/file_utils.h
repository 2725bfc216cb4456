#ifndef OVUI_BASE_FILE_UTILS_H_
#define OVUI_BASE_FILE_UTILS_H_

#include <string>

namespace base {

// File and path helpers. Path helpers work on the backslash form: every "/"
// and "\" is normalised to "\".
class FileUtils {
 public:
  // Reads the whole file; `out` gets the text up to the first NUL byte.
  // An unopenable file is logged and gives false.
  static bool ReadTextFile(const std::string& path, std::string& out);
  // Creates or truncates the file and writes `text`.
  static bool WriteTextFile(const std::string& path, const std::string& text);
  // Removes the file; always true.
  static bool DeleteFileW(const std::string& path);
  // Size in bytes, 0 when the file cannot be examined.
  static int FileSize(const std::string& path);
  static bool FileExist(const std::string& path);
  static bool DirExist(const std::string& path);
  static std::string NormalizeFileName(const std::string& path);
  // Up to and including the last "\"; "" when there is none.
  static std::string DirName(const std::string& path);
  // After the last "\"; the whole normalised path when there is none.
  static std::string BaseName(const std::string& path);
  static std::string ReplaceBaseName(const std::string& path, const std::string& name);
  // The working directory with a "\" appended.
  static std::string GetCWD();
};

}  // namespace base

#endif  // OVUI_BASE_FILE_UTILS_H_
