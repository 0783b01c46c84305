#include "Harness.h"

#include "PROGINC/LineSource.h"

namespace {

/// What \p source gives line by line, and how it ends.
std::string AllLines(LineSource& source, std::size_t limit) {
  std::string lines;
  std::string_view line;
  while (source.Next(line, limit)) {
    FUZZ_CHECK(line.size() <= limit);
    FUZZ_CHECK(line.find('\n') == std::string_view::npos);
    lines.append(line) += '\n';
  }
  FUZZ_CHECK(source.Failed());
  return lines;
}

} // namespace

FUZZ_TARGET(LineSource) {
  const std::size_t limit = input.empty() ? 0 : static_cast<unsigned char>(input[0]);
  LineSource source = LineSource::FromFile(WriteInput(input));
  const std::string lines = AllLines(source, limit);
  source.Rewind();
  FUZZ_CHECK(AllLines(source, limit) == lines);
  // Lines that were read once read the same again, but for a carriage return less.
  LineSource again(lines);
  AllLines(again, limit);
  source.Rewind();
  const std::string_view found = source.Find("END OF HEADER", limit);
  FUZZ_CHECK(found.empty() || Contains(found, "END OF HEADER"));
}
