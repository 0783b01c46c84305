#include "Harness.h"

#include "support/Captured.h"
#include "support/ReportNumbers.h"

#include <algorithm>
#include <iostream>

/// src/main.cpp, whose main is given this name.
int ZentaMain(int argc, const char** argv);

namespace {

/// An input is a set of files: lines "==== name" part them. The one named "arguments" holds the
/// command line, one argument per line, files without folders.
constexpr std::string_view kMark = "==== ";

struct Part {
  std::string name;
  std::string_view text;
};

/// Cuts the next part off the front of \p input.
Part TakePart(std::string_view& input) {
  input.remove_prefix(std::min(input.size(), input.find(kMark)));
  if (input.empty()) return {};
  input.remove_prefix(kMark.size());
  const std::size_t line = std::min(input.find('\n'), input.size());
  std::string name(input.substr(0, std::min<std::size_t>(line, 20)));
  for (char& c : name)
    if (c < 'a' || c > 'z') c = '_';
  input.remove_prefix(std::min(line + 1, input.size()));
  const std::string_view text = input.substr(0, input.find(kMark));
  input.remove_prefix(text.size());
  return {name, text};
}

/// Outputs stay in the working folder.
std::string Argument(std::string_view line) {
  std::string argument(line);
  std::replace(argument.begin(), argument.end(), '/', '_');
  std::replace(argument.begin(), argument.end(), '\0', '_');
  return argument;
}

std::vector<std::string> Arguments(std::string_view text) {
  std::vector<std::string> arguments = {"zenta"};
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    arguments.push_back(Argument(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return arguments;
}

} // namespace

FUZZ_TARGET(Program) {
  std::vector<std::string> arguments = {"zenta"};
  while (!input.empty()) {
    const Part part = TakePart(input);
    if (part.name == "arguments")
      arguments = Arguments(part.text);
    else if (!part.name.empty())
      WriteInput(part.text, part.name.c_str());
  }
  std::vector<const char*> argv;
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());

  const Captured out(std::cout);
  const Captured err(std::cerr);
  FUZZ_CHECK(ZentaMain(static_cast<int>(argv.size()), argv.data()) == 0);
  const std::string wrong = FirstNonNumber(out.Text());
  if (!wrong.empty()) throw BrokenProperty("a report of status 0 has: " + wrong);
}
