#include "ArcFile.h"

#include "ByteReader.h"

#include <fmt/format.h>

namespace report {

std::vector<Arc> ReadArcFile(const std::string& name, std::string_view bytes) {
  ByteReader reader(name, bytes);
  std::vector<Arc> arcs;
  while (!reader.AtEnd()) {
    Arc a;
    a.satellite = reader.Int16("the satellite of an arc");
    if (a.satellite < 1) reader.RefuseLast(2, "the satellite of an arc");
    a.firstEpoch = reader.Int32("the first epoch of an arc");
    if (a.firstEpoch < 0) reader.RefuseLast(4, "the first epoch of an arc");
    a.firstRecord = reader.Int32("the first record of an arc");
    if (a.firstRecord < 0) reader.RefuseLast(4, "the first record of an arc");
    a.lastEpoch = reader.Int32("the last epoch of an arc");
    if (a.lastEpoch < a.firstEpoch) reader.RefuseLast(4, "a last epoch not before the first");
    a.observations = reader.Int32("the number of observations of an arc");
    if (a.observations < 1) reader.RefuseLast(4, "a number of observations above 0");
    arcs.push_back(a);
  }
  return arcs;
}

void ExpectArcsOf(const Report& r, const std::string& name, const std::vector<Arc>& arcs) {
  if (arcs.size() != r.ambiguities.size())
    throw Refusal(fmt::format("{}: expected {} arcs, as many as the report has ambiguities, found "
                              "{}; it is of another run",
                              name, r.ambiguities.size(), arcs.size()));
  for (std::size_t j = 0; j < arcs.size(); ++j) {
    const Ambiguity& a = r.ambiguities[j];
    const bool sameSatellite = a.satellite == 0 || a.satellite == arcs[j].satellite;
    if (!sameSatellite || a.observations != arcs[j].observations)
      throw Refusal(fmt::format("{}: arc {} is not that of ambiguity {} of the report; it is of "
                                "another run",
                                name, j + 1, a.id));
  }
}

} // namespace report
