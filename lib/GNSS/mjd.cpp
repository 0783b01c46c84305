#include "GNSS/mjd.h"

#include "GNSS/TimeConverse.h"
#include "GNSS/TimeParts.h"
#include "GNSS/ValueError.h"

#include <cmath>
#include <istream>

namespace {

// Tolerances [s] are the double values.
constexpr double kMidnight = 1e-12;
constexpr double kSameSecond = 1e-13;

} // namespace

mjd::mjd(unsigned int mjday, long double second) : mjday_(mjday), second_(second) { TestDatum(); }

mjd& mjd::operator=(long double x) {
  Set(WholePart<unsigned int>(x), (x - std::floor(x)) * kDaySeconds);
  return *this;
}

void mjd::Set(unsigned int mjday, long double second) {
  mjday_ = mjday;
  second_ = second;
  TestDatum();
}

mjd& mjd::operator+=(long double ds) {
  const Shift shift(ds, kDaySeconds);
  *this += shift.whole;
  second_ += shift.rest;
  if (second_ < 0) {
    --mjday_;
    second_ += kDaySeconds;
  }
  if (second_ > kDaySeconds) {
    ++mjday_;
    second_ -= kDaySeconds;
  }
  // Last, because a second just below 0 is rounded up to the day's end by the first step.
  if (std::fabs(second_ - kDaySeconds) < kMidnight) {
    ++mjday_;
    second_ = 0;
  }
  return *this;
}

mjd& mjd::operator+=(long n) {
  mjday_ += static_cast<unsigned int>(n);
  return *this;
}

mjd& mjd::operator-=(long n) {
  mjday_ -= static_cast<unsigned int>(n);
  return *this;
}

bool mjd::operator==(const mjd& other) const {
  if (this == &other) return true;
  return mjday_ == other.mjday_ && std::fabs(second_ - other.second_) < kSameSecond;
}

bool mjd::operator>(const mjd& other) const {
  return mjday_ > other.mjday_ || (mjday_ == other.mjday_ && second_ > other.second_);
}

bool mjd::operator<(const mjd& other) const { return other > *this; }

void mjd::Sec2HMS(unsigned short& hour, unsigned short& minute, long double& second) const {
  ::Sec2HMS(second_, hour, minute, second);
}

void mjd::ReportDatum() const {
  ValueError("mjd", mjday_ > kLastDay ? "MJDAY not valid" : "SECOND not valid");
}

long double operator-(const mjd& a, const mjd& b) {
  const unsigned int dayA = a.GetMJDay();
  const unsigned int dayB = b.GetMJDay();
  const long double days =
      dayA >= dayB ? static_cast<long double>(dayA - dayB) : -static_cast<long double>(dayB - dayA);
  return days * kDaySeconds + (a.GetSecond() - b.GetSecond());
}

std::ostream& operator<<(std::ostream& out, const mjd& t) {
  const RightAligned aligned(out);
  const int decimals = mjdns::NDecSecond;
  if (mjdns::PrintFormat == 1)
    return out << std::setprecision(decimals) << std::setw(decimals + 7) << t.GetMJDDec();
  if (mjdns::PrintFormat > 4) return out;
  out << std::fixed << std::setw(6) << t.GetMJDay();
  switch (mjdns::PrintFormat) {
  case 0:
    out << std::setprecision(decimals) << std::setw(decimals + 7) << t.GetSecond();
    break;
  case 2: {
    unsigned short hour, minute;
    long double second;
    t.Sec2HMS(hour, minute, second);
    out << "  ";
    WriteHourMinute(out, hour, minute);
    out << std::setprecision(decimals) << std::setw(decimals + 3) << second;
    break;
  }
  case 4:
    out << std::setprecision(13) << std::setw(16) << t.GetSecond() / kDaySeconds;
    break;
  }
  return out;
}

std::istream& operator>>(std::istream& in, mjd& t) {
  unsigned int mjday;
  long double second;
  if (in >> mjday >> second) t.Set(mjday, second);
  return in;
}
