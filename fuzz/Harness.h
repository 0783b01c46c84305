#ifndef FUZZ_HARNESS_H
#define FUZZ_HARNESS_H

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// A fatal report ends an input, not the process: EndProgram throws this.
struct ProgramEnd {};

/// What should hold for every input does not hold for this one.
struct BrokenProperty : std::logic_error {
  using std::logic_error::logic_error;
};

#define FUZZ_CHECK(condition)                                                                      \
  if (!(condition)) throw BrokenProperty(std::string(__FILE__ ": ") + #condition)

/// A part of the program that takes arbitrary bytes.
struct FuzzTarget {
  const char* name; ///< also of its folder in the corpus
  void (*run)(std::string_view input);
};

/// The targets that are linked into this program.
std::vector<FuzzTarget>& FuzzTargets();

struct FuzzRegistration {
  FuzzRegistration(const char* name, void (*run)(std::string_view)) {
    FuzzTargets().push_back({name, run});
  }
};

/// Defines a target: FUZZ_TARGET(DCB) { ... input ... }
#define FUZZ_TARGET(Name)                                                                          \
  static void Fuzz##Name(std::string_view input);                                                  \
  static const FuzzRegistration registered##Name(#Name, Fuzz##Name);                               \
  static void Fuzz##Name(std::string_view input)

/// Runs one input as a process of its own would: the process-wide settings are those of its
/// start, what it writes to the standard streams goes nowhere, and a fatal report ends it.
/// Lets BrokenProperty through.
void RunTarget(const FuzzTarget& target, std::string_view input);

/// Writes \p text into the file \p name of the working folder, which is a scratch folder.
/// \returns \p name
const char* WriteInput(std::string_view text, const char* name = "input");

/// Calls \p use; \returns whether a fatal report ended it.
template <typename Use> bool Ends(Use use) {
  try {
    use();
    return false;
  } catch (const ProgramEnd&) {
    return true;
  }
}

#endif
