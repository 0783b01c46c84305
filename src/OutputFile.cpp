#include "OutputFile.h"

#include "PROGINC/ProgramError.h"

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

bool CanBeReplaced(const std::string& name) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(name, error);
  return !fs::exists(status) || fs::is_regular_file(status);
}

} // namespace

void OutputFile::Open(const std::string& name, std::ios::openmode mode) {
  Close();
  name_ = name;
  inUse_ = true;
  temporary_.clear();
  stream_.clear();
  if (CanBeReplaced(name)) {
    temporary_ = name + "." + std::to_string(getpid()) + ".part";
    stream_.open(temporary_, mode | std::ios::trunc);
    if (stream_.is_open()) return;
    temporary_.clear();
    stream_.clear();
  }
  stream_.open(name, mode | std::ios::trunc);
}

void OutputFile::Close() {
  if (!inUse_) return;
  inUse_ = false;
  bool written = stream_.is_open() && stream_.good();
  if (stream_.is_open()) stream_.close();
  written = written && stream_.good();
  if (!temporary_.empty()) {
    std::error_code error;
    if (written) fs::rename(temporary_, name_, error);
    if (!written || error) {
      written = false;
      fs::remove(temporary_, error);
    }
  }
  if (!written) ProgramWarning("Zenta", ("OUTPUT FILE CAN NOT BE WRITTEN: " + name_ + "!").c_str());
}
