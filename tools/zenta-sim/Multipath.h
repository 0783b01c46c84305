#ifndef ZENTA_SIM_MULTIPATH_H
#define ZENTA_SIM_MULTIPATH_H

#include "Epochs.h"
#include "Random.h"
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace sim {

/// Code multipath of one satellite on C1 and P1 alike, and on P2.
class Multipath {
public:
  /// \param amplitude  [m] at the horizon; it falls by 1/e in 20 degrees of elevation
  Multipath(double amplitude, Random& random);
  /// [m] on C1 and P1 (\p signal 0) or on P2 (1) at \p elevation [rad], rounded to 0.1 mm as the
  /// plot files hold it.
  double Value(int signal, double elevation) const;

private:
  struct Reflection {
    double turns; ///< per unit of the sine of the elevation
    double phase; ///< [rad]
  };
  double amplitude_;
  std::array<std::array<Reflection, 2>, 2> reflections_{};
};

/// A multipath plot file of teqc in the COMPACT2 layout, written epoch by epoch.
class Compact2Writer {
public:
  using Value = std::pair<short, double>; ///< satellite, value [m]

  /// \param first  epoch of the first line
  Compact2Writer(const mjd& first, double interval);
  /// The values of epoch number \p k, counted on the regular grid from the first; numbers that
  /// were left out are filled with empty epochs.
  void Add(long k, const std::vector<Value>& values);
  const std::string& Text() const { return text_; }

private:
  std::string text_;
  std::string satellites_; ///< list of the last line with one
  long next_ = 0;
};

} // namespace sim

#endif
