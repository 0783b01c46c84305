#ifndef SUPPORT_FILES_H
#define SUPPORT_FILES_H

#include "support/Paths.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

/// A folder of its own for one test, removed at the end of the test.
class ScratchFolder {
public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zenta-test-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  /// Full name of \p file in the folder.
  std::string Name(const std::string& file) const { return (path_ / file).string(); }
  /// Writes \p text into \p file. \returns its full name.
  std::string Write(const std::string& file, const std::string& text) const {
    std::ofstream(Name(file), std::ios::binary) << text;
    return Name(file);
  }

private:
  std::filesystem::path path_;
};

/// The bytes of a file; empty when it can't be read.
inline std::string ReadWhole(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// Full name of a recorded file, for example RealData("2011-283-cagz/igs16571.sp3").
inline std::string RealData(const std::string& file) {
  return std::string(ZENTA_REAL_DATA) + "/" + file;
}

/// Skips the test with a message where a recorded file is absent.
#define SKIP_WITHOUT(file)                                                                         \
  if (!std::filesystem::exists(RealData(file))) GTEST_SKIP() << "no recorded file " << (file)

#endif
