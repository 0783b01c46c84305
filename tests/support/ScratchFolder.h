#ifndef SUPPORT_SCRATCHFOLDER_H
#define SUPPORT_SCRATCHFOLDER_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// A folder of its own for one test or benchmark, removed at the end.
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

#endif
