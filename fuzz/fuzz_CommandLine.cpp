#include "Harness.h"

#include "ParseArgumetns.h"
#include "support/TinyRun.h"

#include <cmath>
#include <cstring>
#include <memory>

namespace {

void CheckSettings(const KorvanC& ctx) {
  for (const long double number :
       {ctx.ThresBlunder, ctx.ThresBlunderL4, ctx.MaxfDiff, ctx.IonoInterval,
        static_cast<long double>(ctx.MinElevation), static_cast<long double>(ctx.IterThres)})
    FUZZ_CHECK(std::isfinite(number));
  for (const char* name : {ctx.rnxfile, ctx.gnavfile, ctx.clkfile, ctx.resfile, ctx.gnuplotIon})
    FUZZ_CHECK(std::strlen(name) < sizeof ctx.rnxfile);
}

} // namespace

/// One argument per line; the first is the program's name. The file "input" exists.
FUZZ_TARGET(CommandLine) {
  WriteInput("");
  std::string text(input);
  std::vector<const char*> arguments;
  for (std::size_t at = 0; at < text.size(); ++at) {
    arguments.push_back(&text[at]);
    at = text.find('\n', at);
    if (at == std::string::npos) break;
    text[at] = '\0';
  }
  if (arguments.empty()) arguments.push_back("");
  const auto run = std::make_unique<TinyRun>();
  const bool ended =
      Ends([&] { ParseArgumetns(run->ctx, static_cast<int>(arguments.size()), arguments.data()); });
  CheckSettings(run->ctx);
  if (ended) return;
  CheckArgumetns(run->ctx);
  FUZZ_CHECK(run->ctx.rnxfile[0] != '\0');
  FUZZ_CHECK(run->ctx.NIonUnkT == 0 || run->ctx.NIonUnkT == 2 || run->ctx.NIonUnkT == 4);
  FUZZ_CHECK(!(run->ctx.ifEstREC && run->ctx.ifEstGPS));
}
