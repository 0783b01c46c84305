#include "PROGINC/OutputFile.h"

#include "PROGINC/ProgramError.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Renaming needs no right to the file itself: one that is protected must not be lost by it.
bool CanBeReplaced(const std::string& name) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(name, error);
  if (!fs::exists(status)) return !name.empty();
  return fs::is_regular_file(status) && access(name.c_str(), W_OK) == 0;
}

/// Creates an empty file beside \p name. \returns its name, empty where none can be created.
std::string CreateBeside(const std::string& name) {
  std::random_device random;
  do {
    std::string temporary = name + "." + std::to_string(random()) + ".part";
    if (std::FILE* const file = std::fopen(temporary.c_str(), "wx")) { // x: only if it is new
      std::fclose(file);
      return temporary;
    }
  } while (errno == EEXIST);
  return {};
}

} // namespace

void OutputFile::Open(const std::string& name, std::ios::openmode mode) {
  Close();
  name_ = name;
  inUse_ = true;
  stream_.clear();
  temporary_ = CanBeReplaced(name) ? CreateBeside(name) : std::string();
  stream_.open(temporary_.empty() ? name : temporary_, mode | std::ios::out | std::ios::trunc);
}

bool OutputFile::PutInPlace() {
  std::error_code error;
  const fs::file_status replaced = fs::status(name_, error);
  if (fs::exists(replaced)) fs::permissions(temporary_, replaced.permissions(), error);
  fs::rename(temporary_, name_, error);
  return !error;
}

void OutputFile::Close() {
  if (!inUse_) return;
  inUse_ = false;
  bool written = stream_.is_open() && stream_.good();
  if (stream_.is_open()) stream_.close();
  written = written && stream_.good();
  if (!temporary_.empty()) {
    written = written && PutInPlace();
    if (!written) std::remove(temporary_.c_str());
  }
  if (!written) ProgramWarning("Zenta", ("OUTPUT FILE CAN NOT BE WRITTEN: " + name_ + "!").c_str());
}
