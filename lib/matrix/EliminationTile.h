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

/// The elements of one pivot row in two columns, one of them split: whole and split numbers
/// keep different parts of the processor busy.
struct MixedElements {
  long double first;
  SplitNumber second;
  long double First() const { return first; }
  long double Second() const { return second.Joined(); }
};
/// The same where the second is too small or too large to be split.
struct WholeElements {
  long double first;
  long double second;
  long double First() const { return first; }
  long double Second() const { return second; }
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
/// \p pivots is not empty. The sums stay in four of the eight registers, the operands in the
/// others. Each product and each sum is rounded to 64 bits, as in a loop over elements.
template <typename Elements>
inline void AddPivotRows(PivotSet pivots, const SplitNumber* upper, const SplitNumber* lower,
                         const Elements* row, Tile tile) {
  long double upperFirst = tile.upperFirst;
  long double upperSecond = tile.upperSecond;
  long double lowerFirst = tile.lowerFirst;
  long double lowerSecond = tile.lowerSecond;
  const auto add = [&](const SplitNumber& toUpper, const SplitNumber& toLower, const Elements& r) {
    const long double first = r.First();
    const long double second = r.Second();
    const long double f = toUpper.Joined();
    upperFirst += f * first;
    upperSecond += f * second;
    const long double g = toLower.Joined();
    lowerFirst += g * first;
    lowerSecond += g * second;
  };

  const PivotSet lowest = pivots & (~pivots + 1);
  if (((pivots + lowest) & pivots) == 0) { // without a gap
    const int begin = std::countr_zero(pivots);
    const SplitNumber* f = upper + begin;
    const SplitNumber* g = lower + begin;
    const Elements* const end = row + std::bit_width(pivots);
    for (const Elements* r = row + begin; r != end; ++f, ++g, ++r) add(*f, *g, *r);
  } else {
    for (; pivots != 0; pivots &= pivots - 1) {
      const int p = std::countr_zero(pivots);
      add(upper[p], lower[p], row[p]);
    }
  }
  tile.upperFirst = upperFirst;
  tile.upperSecond = upperSecond;
  tile.lowerFirst = lowerFirst;
  tile.lowerSecond = lowerSecond;
}

#endif
