#ifndef PROGINC_CFILEF_H
#define PROGINC_CFILEF_H

#include <string>

/// The file can be opened for reading; so can a directory, which then reads as an empty file.
bool FileExists(const char* name);
bool FileExists(const std::string& name);

#endif
