#include "PROGINC/DecimalComma.h"

#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"

#include <filesystem>
#include <string>

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool StandsBetweenDigits(char mark, std::string_view text) {
  for (std::size_t at = text.find(mark); at != std::string_view::npos; at = text.find(mark, at + 1))
    if (at > 0 && at + 1 < text.size() && IsDigit(text[at - 1]) && IsDigit(text[at + 1]))
      return true;
  return false;
}

} // namespace

bool HasDecimalCommas(std::string_view text) {
  const std::size_t heading = text.find("END OF HEADER");
  if (heading != std::string_view::npos) text.remove_prefix(heading);
  return StandsBetweenDigits(',', text) && !StandsBetweenDigits('.', text);
}

void RefuseDecimalCommas(const char* name) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(name, error)) return;
  if (!HasDecimalCommas(LineSource::FromFile(name).Rest())) return;
  ProgramError("Zenta", ("DECIMAL COMMAS IN INPUT FILE " + std::string(name) + "!").c_str());
}
