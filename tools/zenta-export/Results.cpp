#include "Results.h"

#include "report/Quantities.h"

#include <cmath>

namespace exports {

static double Rounded(double x) { return std::round(x * 1e6) / 1e6; }

double RoundedTECU(double metres) { return Rounded(report::ToTECU(metres)); }
double RoundedNanoseconds(double metres) { return Rounded(report::ToNanoseconds(metres)); }

} // namespace exports
