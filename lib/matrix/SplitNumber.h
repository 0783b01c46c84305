#ifndef MATRIX_SPLITNUMBER_H
#define MATRIX_SPLITNUMBER_H

/// An 80-bit number as the exact sum of two doubles.
///
/// Two loads of 64 bits and the addition that joins them are cheaper than one load of 80 bits
/// (four micro-operations), which pays for numbers that are read many times. The high part
/// carries 53 of the 64 significant bits, the low part the rest.
struct SplitNumber {
  double high = 0.0;
  double low = 0.0;

  SplitNumber() = default;
  explicit SplitNumber(long double x)
      : high(static_cast<double>(x)), low(static_cast<double>(x - high)) {}

  long double Joined() const { return static_cast<long double>(high) + low; }
  /// Whether the parts make \p x again: so for zero and for magnitudes from 1e-304 to 1e308, not
  /// so for infinities and non-numbers.
  bool Is(long double x) const { return Joined() == x; }
};

#endif
