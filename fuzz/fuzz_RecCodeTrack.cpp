#include "Harness.h"

#include "GNSS/RecCodeTrack.h"

FUZZ_TARGET(RecCodeTrack) {
  // The first line is the receiver that is looked for.
  const std::size_t end = input.find('\n');
  const std::string receiver(input.substr(0, std::min<std::size_t>(end, 20)));
  RecCodeTrack list;
  list.SetFile(WriteInput(end == std::string_view::npos ? "" : input.substr(end + 1)));
  for (const char* type : {receiver.c_str(), "TRIMBLE NETRS", ""}) {
    const short tracking = list.GetRecCodeTrack(type);
    FUZZ_CHECK(tracking >= 0 && tracking <= 2);
    list.GetRecType(type);
  }
}
