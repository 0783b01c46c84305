#ifndef ZENTA_REPORT_INPUT_H
#define ZENTA_REPORT_INPUT_H

#include <cstddef>
#include <string>

namespace report {

/// All bytes of file \p name, or of standard input where it is "-". What can't be read, a folder
/// too, is refused.
std::string ReadInput(const std::string& name);
/// The first \p most bytes of a file; empty where it can't be read.
std::string ReadStart(const std::string& name, std::size_t most);
/// How messages name it: "standard input" for "-".
std::string InputName(const std::string& name);

/// Writes \p text to file \p name, or to standard output where it is "-". Refuses where it can't
/// be written to the end.
void WriteOutput(const std::string& name, const std::string& text);

} // namespace report

#endif
