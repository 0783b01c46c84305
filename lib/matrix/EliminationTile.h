#ifndef MATRIX_ELIMINATIONTILE_H
#define MATRIX_ELIMINATIONTILE_H

#include "matrix/SplitNumber.h"

#include <bit>
#include <cstddef>
#include <cstdint>

/// A set of the pivots of one panel: bit p is its pivot p.
using PivotSet = std::uint64_t;
inline constexpr long kPanelPivots = 64;

inline constexpr PivotSet OnlyPivot(long p) { return PivotSet{1} << p; }
inline constexpr PivotSet PivotsBefore(long p) { return OnlyPivot(p) - 1; }

/// The elements of one pivot row in two columns, split ...
struct SplitElements {
  SplitNumber inFirst, inSecond;
  long double First() const { return inFirst.Joined(); }
  long double Second() const { return inSecond.Joined(); }
};
/// ... and as they are, for those too small or too large to be split.
struct WholeElements {
  long double inFirst, inSecond;
  long double First() const { return inFirst; }
  long double Second() const { return inSecond; }
};

/// Two columns at two rows.
struct Tile {
  long double& upperFirst;
  long double& upperSecond;
  long double& lowerFirst;
  long double& lowerSecond;
};

/// Adds to the four elements of \p tile, one pivot after the other, factor times pivot row.
///
/// \param pivots  which pivots to apply, in ascending order
/// \param upper   factor of each pivot for the upper row; \p lower for the lower one
/// \param row     elements of each pivot row
///
/// The sums stay in registers: four of the eight, and the four operands fill the rest. Each
/// product and each sum is rounded to 64 bits, as in a loop over single elements.
template <typename Elements>
inline void AddPivotRows(PivotSet pivots, const SplitNumber* upper, const SplitNumber* lower,
                         const Elements* row, Tile tile) {
  long double upperFirst = tile.upperFirst;
  long double upperSecond = tile.upperSecond;
  long double lowerFirst = tile.lowerFirst;
  long double lowerSecond = tile.lowerSecond;
  for (; pivots != 0; pivots &= pivots - 1) {
    const auto p = static_cast<std::size_t>(std::countr_zero(pivots));
    const long double first = row[p].First();
    const long double second = row[p].Second();
    const long double f = upper[p].Joined();
    upperFirst += f * first;
    upperSecond += f * second;
    const long double g = lower[p].Joined();
    lowerFirst += g * first;
    lowerSecond += g * second;
  }
  tile.upperFirst = upperFirst;
  tile.upperSecond = upperSecond;
  tile.lowerFirst = lowerFirst;
  tile.lowerSecond = lowerSecond;
}

#endif
