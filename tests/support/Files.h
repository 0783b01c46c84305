#ifndef SUPPORT_FILES_H
#define SUPPORT_FILES_H

#include "support/Paths.h"
#include "support/ScratchFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

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
