#include "PROGINC/cfilef.h"

#include <cstdio>
#include <fstream>

bool FileExists(const char* name) { return std::ifstream(name).is_open(); }

bool FileExists(const std::string& name) { return FileExists(name.c_str()); }

bool RemFile(const std::string& name) { return std::remove(name.c_str()) == 0; }

std::string GetBasename(const std::string& path) {
  // npos + 1 is the start of the path.
  return path.substr(path.rfind('/') + 1);
}

std::string GetDirname(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}
