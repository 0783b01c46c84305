#ifndef PROGINC_CFILEF_H
#define PROGINC_CFILEF_H

#include <string>

/// The file can be opened for reading; so can a directory, which then reads as an empty file.
bool FileExists(const char* name);
bool FileExists(const std::string& name);
/// Removes the file. \returns false when there was none, or it can't be removed.
bool RemFile(const std::string& name);
/// What stands behind the last "/" of \p path; all of it without one.
std::string GetBasename(const std::string& path);
/// What stands before the last "/" of \p path: "/" in the root folder, "." without one.
std::string GetDirname(const std::string& path);

#endif
