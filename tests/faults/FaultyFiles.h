#ifndef FAULTS_FAULTYFILES_H
#define FAULTS_FAULTYFILES_H

#include <string>
#include <vector>

/// A faulty file: what is wrong with it, and its text.
struct Fault {
  std::string name;
  std::string text;
};

/// \p text damaged as a whole: empty, noise, its lines or its bytes changed.
std::vector<Fault> DamagedFiles(const std::string& text);
/// \p text cut behind every line, and within every line end's CR LF.
std::vector<Fault> CutBehindLines(const std::string& text);
/// \p text cut at \p n random bytes, in order.
std::vector<Fault> CutAtRandomBytes(const std::string& text, std::size_t n);
/// \p text with one of its numbers at a time replaced, in its columns, by what a field should not
/// hold. Of lines that have the same shape the first \p sameLines are taken.
std::vector<Fault> WrongNumbers(const std::string& text, std::size_t sameLines);

#endif
