#include "Multipath.h"
#include "Scenario.h"
#include "Text.h"
#include "Vec3.h"
#include <cmath>
#include <fmt/format.h>

namespace sim {

Multipath::Multipath(double amplitude, Random& random) : amplitude_(amplitude) {
  for (auto& signal : reflections_)
    for (Reflection& reflection : signal) // reflectors half a metre to three metres below
      reflection = {random.Uniform(5, 30), random.Uniform(0, 2 * kPi)};
}

double Multipath::Value(int signal, double elevation) const {
  if (amplitude_ == 0) return 0;
  double sum = 0;
  for (const Reflection& r : reflections_[static_cast<std::size_t>(signal)])
    sum += std::sin(2 * kPi * r.turns * std::sin(elevation) + r.phase) / 2;
  return Rounded(amplitude_ * std::exp(-elevation / (20 * kDegree)) * sum, 4);
}

Compact2Writer::Compact2Writer(const mjd& first, double interval)
    : text_(fmt::format("COMPACT2\nT_SAMP {:10.4f}\nSTART_TIME_MJD  {:.12f}\n", interval,
                        static_cast<double>(first.GetMJDDec()))) {}

void Compact2Writer::Add(long k, const std::vector<Value>& values) {
  for (; next_ < k; ++next_) text_ += "0\n";
  ++next_;
  if (values.empty()) {
    text_ += "0\n";
    return;
  }
  std::string satellites;
  for (const Value& v : values) satellites += " " + SatelliteName(v.first);
  text_ += satellites == satellites_ ? "-1" : fmt::format("{}{}", values.size(), satellites);
  text_ += "\n";
  for (const Value& v : values) text_ += fmt::format("{:8.4f}  ", v.second);
  text_ += "\n";
  satellites_ = satellites;
}

} // namespace sim
