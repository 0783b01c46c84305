// The plain elimination of [A | B], B = I at first, takes one pivot after the other and adds to
// each row, where the row's element in the pivot column exceeds the threshold,
//
//     row += factor * pivot row,    factor = -(element / pivot)
//
// downwards first (with row exchanges), then upwards from the last pivot; at the end each row of
// B is divided by its pivot. To an element x at row i and column k that is a sequence of
//
//     x += f(i, p) * r(p, k)        over the pivots p in their order,
//
// every product and every sum rounded to 64 bits, r being what stands in pivot row p when its
// turn comes. Here every element sees the same additions of the same numbers in the same order;
// only elements are visited in another order, and what can't matter is left out:
//
// - Pivots are taken in panels of 64. The columns of the panel are eliminated first, which
//   gives its pivots and all its factors. Every other column is then brought through the whole
//   panel at once, in pairs of columns and rows, so that four elements stay in registers over
//   up to 64 additions instead of being loaded and stored for each (EliminationTile.h).
// - Factors that the threshold suppresses and elements of pivot rows that are zero are left out
//   of a tile by bit masks; a normal matrix is mostly made of them. In a tile that has one of
//   two operands a zero factor or a zero element takes part, which the plain loop may not have
//   done, or not. Either way x + 0 = x: x is never -0, since no element of A is and a sum is -0
//   only where both its terms are; and 0 * y = 0, since y is finite. Both are checked, in A and
//   in each element and factor that is used.
// - Column q of B is the unit vector that belongs to pivot q. It is zero, but for that one, till
//   that pivot's turn and is not touched before. Columns of B are thus in the order of pivots.
// - Upwards, columns of A at and right of the pivot are never read again. Downwards this is not
//   so of those at and left of it: their elements below the diagonal end as rounding residues,
//   or as numbers below the threshold, which the upward phase adds into the others.
//
// Columns are stored one after the other: pivots are sought, and rows visited, along them.

#include "matrix/BlockedInverse.h"

#include "matrix/EliminationTile.h"
#include "matrix/ExtendedBits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using Real = long double;

std::size_t At(long k) { return static_cast<std::size_t>(k); }

/// The order in which a phase takes its pivots: turn q is row and column At(q). Turn n, one past
/// the last, is the spare element before or behind a column.
struct Order {
  long first;
  long step;
  long At(long q) const { return first + step * q; }
};

class BlockedElimination {
public:
  BlockedElimination(const matrix<Real>& A, Real threshold);
  /// \returns false where a pivot is too small or equality with the plain loop in doubt.
  bool Run() { return exact_ && Downwards() && Upwards() && exact_; }
  matrix<Real> Inverse() const;

private:
  /// Two columns that are worked on together, and how many pivots of the panel each has seen.
  struct Pair {
    Real* first;
    Real* second;
    long seenByFirst = 0;
    long seenBySecond = 0;
  };
  struct Rows {
    long upper;      ///< turn of one row
    long lower;      ///< turn of the other
    PivotSet pivots; ///< that have a factor for either
  };
  static constexpr long kBlock = 16; ///< rows and columns that are transposed at a time

  Real* Column(long k) { return elements_.get() + k * stride_ + 1; }
  const Real* Column(long k) const { return elements_.get() + k * stride_ + 1; }
  Real* RightHandColumn(long q) { return Column(n_ + q); }
  const Real* RightHandColumn(long q) const { return Column(n_ + q); }
  /// A column of zeros, partner of one that has no other.
  Real* SpareColumn() { return Column(2 * n_); }
  void ClearColumn(long k) { std::fill_n(Column(k) - 1, stride_, 0.0L); }

  SplitNumber* Factors(long q) { return factors_.data() + q * kPanelPivots; }

  bool Downwards();
  bool Upwards();
  void StartPanel(long start);
  bool FactorPanel(bool exchange);
  bool TakePivot(long c, long p);
  void ExchangeRows(long q, long other);
  bool SetFactors(long c, long p);
  void AddNewPivotRow(long c, long p);
  void PairRows();
  void ApplyPanel(long from, long to);
  void Advance(const Pair& columns, long pivots);
  void FinishPivotRows(const Pair& columns, long pivots);
  void Keep(long p, const Real& first, const Real& second);
  void AddToRows(long upper, long lower, PivotSet pivots, const Pair& columns);

  const long n_;
  const long stride_; ///< a column with a spare element at either end
  const Real threshold_;
  bool exact_ = true;                ///< whatever was left out, or added, could not matter
  std::unique_ptr<Real[]> elements_; ///< columns of A, of B, and the spare one
  std::vector<long> origin_;         ///< row of A that is now row i

  Order order_{0, 1};
  long start_ = 0;                               ///< turn of the panel's first pivot
  long count_ = 0;                               ///< its pivots
  std::vector<SplitNumber> factors_;             ///< 64 for each turn; zero where there is none
  std::vector<PivotSet> factorSet_;              ///< of each turn: pivots that have a factor
  std::vector<Rows> rows_;                       ///< beyond the panel, those with any factor
  std::vector<std::pair<long, long>> exchanges_; ///< of rows, made in this panel

  // Elements of the pivot rows in the pair of columns that is worked on.
  std::array<MixedElements, kPanelPivots> mixed_;
  std::array<WholeElements, kPanelPivots> whole_;
  PivotSet elementSet_ = 0; ///< pivots whose row has an element other than zero there
  bool areSplit_ = true;    ///< the second of each is the sum of its parts
};

BlockedElimination::BlockedElimination(const matrix<Real>& A, Real threshold)
    : n_(A.NRow()), stride_(n_ + 2), threshold_(threshold), exact_(threshold > 0),
      elements_(std::make_unique_for_overwrite<Real[]>(At((2 * n_ + 1) * stride_))),
      origin_(At(n_)), factors_(At((n_ + 1) * kPanelPivots)), factorSet_(At(n_ + 1)) {
  std::iota(origin_.begin(), origin_.end(), 0);
  ClearColumn(2 * n_);
  for (long k = 0; k < n_; ++k) Column(k)[-1] = Column(k)[n_] = 0;

  const Real* const a = &A(0);
  for (long top = 0; top < n_; top += kBlock) {
    for (long left = 0; left < n_; left += kBlock) {
      for (long i = top; i < std::min(top + kBlock, n_); ++i) {
        for (long k = left; k < std::min(left + kBlock, n_); ++k) {
          const Real& x = a[i * n_ + k];
          exact_ = exact_ && IsFinite(x) && !IsMinusZero(x);
          CopyNumber(Column(k)[i], x);
        }
      }
    }
  }
}

bool BlockedElimination::Downwards() {
  order_ = {0, 1};
  for (long start = 0; start < n_; start += kPanelPivots) {
    StartPanel(start);
    if (!FactorPanel(true)) return false;

    // Under its pivot, a column of the panel keeps a residue.
    for (long p = 0; p < count_; p += 2) {
      const bool isPair = p + 1 < count_;
      Advance({Column(start + p), isPair ? Column(start + p + 1) : SpareColumn(), p, p + 1},
              count_);
    }
    ApplyPanel(0, start);
    ApplyPanel(start + count_, n_ + start);

    exchanges_.clear();
    for (long q = start; q < start + count_; ++q) {
      ClearColumn(n_ + q);
      RightHandColumn(q)[q] = 1;
    }
    ApplyPanel(n_ + start, n_ + start + count_);
  }
  return true;
}

bool BlockedElimination::Upwards() {
  order_ = {n_ - 1, -1};
  for (long start = 0; start < n_; start += kPanelPivots) {
    StartPanel(start);
    if (!FactorPanel(false)) return false;
    ApplyPanel(0, n_ - start - count_);
    ApplyPanel(n_, 2 * n_);
  }
  return true;
}

void BlockedElimination::StartPanel(long start) {
  start_ = start;
  count_ = std::min(kPanelPivots, n_ - start);
  exchanges_.clear();
  rows_.clear();
  std::fill(factorSet_.begin() + start, factorSet_.end(), PivotSet{0});
}

/// Brings the panel's own columns to their pivots and finds all its factors.
bool BlockedElimination::FactorPanel(bool exchange) {
  for (long p = 0; p < count_; p += 2) {
    const long first = order_.At(start_ + p);
    if (p + 1 == count_) {
      Advance({Column(first), SpareColumn()}, p);
      return (!exchange || TakePivot(first, p)) && SetFactors(first, p);
    }
    const long second = order_.At(start_ + p + 1);
    Advance({Column(first), Column(second)}, p);
    if (exchange && !TakePivot(first, p)) return false;
    if (!SetFactors(first, p)) return false;
    AddNewPivotRow(second, p);
    if (exchange && !TakePivot(second, p + 1)) return false;
    if (!SetFactors(second, p + 1)) return false;
  }
  PairRows();
  return true;
}

/// Brings the row with the largest element of column \p c, the upper one of equals, to turn
/// \p p of the panel.
bool BlockedElimination::TakePivot(long c, long p) {
  const Real* const column = Column(c);
  const long q = start_ + p;
  long row = q;
  Real largest = std::fabs(column[q]);
  for (long i = q + 1; i < n_; ++i) {
    if (!(std::fabs(column[i]) > largest)) continue;
    largest = std::fabs(column[i]);
    row = i;
  }
  if (row != q) ExchangeRows(q, row);
  return !(largest < threshold_);
}

/// Exchanges two rows in the panel, and notes it for the other columns.
void BlockedElimination::ExchangeRows(long q, long other) {
  for (long p = 0; p < count_; ++p) {
    Real* const column = Column(start_ + p);
    ExchangeNumbers(column[q], column[other]);
  }
  std::swap_ranges(Factors(q), Factors(q) + kPanelPivots, Factors(other));
  std::swap(factorSet_[At(q)], factorSet_[At(other)]);
  std::swap(origin_[At(q)], origin_[At(other)]);
  exchanges_.emplace_back(q, other);
}

/// Finds the factors of pivot \p p from its column \p c.
bool BlockedElimination::SetFactors(long c, long p) {
  const Real* const column = Column(c);
  const Real pivot = column[order_.At(start_ + p)];
  for (long q = start_ + p + 1; q < n_; ++q) {
    const Real element = column[order_.At(q)];
    if (!(std::fabs(element) > threshold_)) {
      Factors(q)[p] = SplitNumber();
      continue;
    }
    const Real factor = -element / pivot;
    Factors(q)[p] = SplitNumber(factor);
    if (!Factors(q)[p].Is(factor)) return false;
    factorSet_[At(q)] |= OnlyPivot(p);
  }
  return true;
}

/// Adds pivot row \p p to all rows after it, in column \p c alone.
void BlockedElimination::AddNewPivotRow(long c, long p) {
  Real* const column = Column(c);
  const Real element = column[order_.At(start_ + p)];
  if (element == 0) return;
  for (long q = start_ + p + 1; q < n_; ++q)
    if (factorSet_[At(q)] & OnlyPivot(p)) column[order_.At(q)] += Factors(q)[p].Joined() * element;
}

/// Lists the rows beyond the panel that have any factor, two by two.
void BlockedElimination::PairRows() {
  bool open = false;
  for (long q = start_ + count_; q < n_; ++q) {
    const PivotSet pivots = factorSet_[At(q)];
    if (pivots == 0) continue;
    if (open) {
      rows_.back().lower = q;
      rows_.back().pivots |= pivots;
    } else {
      rows_.push_back({q, n_, pivots});
    }
    open = !open;
  }
}

/// Brings the columns \p from to \p to, which the panel has not touched yet, through it.
void BlockedElimination::ApplyPanel(long from, long to) {
  for (long k = from; k < to; k += 2) {
    const Pair columns{Column(k), k + 1 < to ? Column(k + 1) : SpareColumn()};
    for (const auto& [q, other] : exchanges_) {
      ExchangeNumbers(columns.first[q], columns.first[other]);
      ExchangeNumbers(columns.second[q], columns.second[other]);
    }
    Advance(columns, count_);
  }
}

/// Applies the first \p pivots of the panel to all rows that come after them; while the panel
/// is still being factored, those in the panel as well.
void BlockedElimination::Advance(const Pair& columns, long pivots) {
  FinishPivotRows(columns, pivots);
  if (elementSet_ == 0) return;
  if (pivots == count_) {
    for (const Rows& rows : rows_)
      AddToRows(rows.upper, rows.lower, rows.pivots & elementSet_, columns);
    return;
  }
  for (long q = start_ + pivots; q < n_; q += 2)
    AddToRows(q, q + 1, (factorSet_[At(q)] | factorSet_[At(q + 1)]) & elementSet_, columns);
}

/// Brings the pivot rows themselves to their turns, and keeps what stands there then.
void BlockedElimination::FinishPivotRows(const Pair& columns, long pivots) {
  elementSet_ = 0;
  areSplit_ = true;
  const auto keep = [&](long p) {
    const long i = order_.At(start_ + p);
    Keep(p, p < columns.seenByFirst ? 0.0L : columns.first[i],
         p < columns.seenBySecond ? 0.0L : columns.second[i]);
  };
  for (long p = 0; p < pivots; p += 2) {
    const long upper = start_ + p;
    const long lower = upper + 1;
    const PivotSet earlier = PivotsBefore(p) & elementSet_;
    AddToRows(upper, lower, (factorSet_[At(upper)] | factorSet_[At(lower)]) & earlier, columns);
    keep(p);
    if (p + 1 == pivots) return;
    if (factorSet_[At(lower)] & elementSet_ & OnlyPivot(p)) {
      const Real factor = Factors(lower)[p].Joined();
      columns.first[order_.At(lower)] += factor * whole_[At(p)].First();
      columns.second[order_.At(lower)] += factor * whole_[At(p)].Second();
    }
    keep(p + 1);
  }
}

void BlockedElimination::Keep(long p, const Real& first, const Real& second) {
  if (IsZero(first) && IsZero(second)) return;
  elementSet_ |= OnlyPivot(p);
  whole_[At(p)] = {first, second};
  mixed_[At(p)] = {first, SplitNumber(second)};
  areSplit_ = areSplit_ && mixed_[At(p)].second.Is(second);
  exact_ = exact_ && IsFinite(first) && IsFinite(second);
}

void BlockedElimination::AddToRows(long upper, long lower, PivotSet pivots, const Pair& columns) {
  if (pivots == 0) return;
  const long i = order_.At(upper);
  const long j = order_.At(lower);
  const Tile tile{columns.first[i], columns.second[i], columns.first[j], columns.second[j]};
  if (areSplit_)
    AddPivotRows(pivots, Factors(upper), Factors(lower), mixed_.data(), tile);
  else
    AddPivotRows(pivots, Factors(upper), Factors(lower), whole_.data(), tile);
}

matrix<Real> BlockedElimination::Inverse() const {
  matrix<Real> inverse(n_, n_);
  Real* const rows = &inverse(0);
  for (long top = 0; top < n_; top += kBlock) {
    const long bottom = std::min(top + kBlock, n_);
    for (long q = 0; q < n_; ++q) {
      // Zeros are divided as well: the pivot gives them their sign.
      for (long i = top; i < bottom; ++i)
        rows[i * n_ + origin_[At(q)]] = RightHandColumn(q)[i] / Column(i)[i];
    }
  }
  return inverse;
}

} // namespace

bool BlockedInverse(const matrix<long double>& A, long double threshold,
                    matrix<long double>& inverse) {
  BlockedElimination elimination(A, threshold);
  if (!elimination.Run()) return false;
  inverse = elimination.Inverse();
  return true;
}
