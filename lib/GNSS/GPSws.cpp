#include "GNSS/GPSws.h"

#include "GNSS/TimeConverse.h"
#include "GNSS/TimeParts.h"
#include "GNSS/ValueError.h"

#include <istream>

namespace {

constexpr unsigned short kLastWeek = 11999;

} // namespace

GPSws::GPSws(unsigned short week, long double second) : week_(week), second_(second) {
  TestDatum();
}

GPSws::GPSws(const GPSws& other) : week_(other.week_), second_(other.second_) { TestDatum(); }

GPSws& GPSws::operator=(const GPSws& other) {
  Set(other.week_, other.second_);
  return *this;
}

void GPSws::Set(unsigned short week, long double second) {
  week_ = week;
  second_ = second;
  TestDatum();
}

GPSws& GPSws::operator+=(long double ds) {
  const Shift shift(ds, kWeekSeconds);
  *this += static_cast<unsigned short>(shift.whole);
  second_ += shift.rest;
  if (second_ < 0) {
    --week_;
    second_ += kWeekSeconds;
  }
  return *this;
}

GPSws& GPSws::operator+=(unsigned short n) {
  week_ = static_cast<unsigned short>(week_ + n);
  return *this;
}

unsigned short GPSws::GetWeekDay() const {
  return WholePart<unsigned short>(second_ / kDaySeconds);
}

long double GPSws::GetDaySecond() const {
  return second_ - static_cast<long double>(GetWeekDay()) * kDaySeconds;
}

void GPSws::Sec2HMS(unsigned short& hour, unsigned short& minute, long double& second) const {
  ::Sec2HMS(GetDaySecond(), hour, minute, second);
}

void GPSws::TestDatum() const {
  if (week_ > kLastWeek) ValueError("GPSws", "WEEK not valid");
  if (!(second_ >= 0 && second_ < kWeekSeconds)) ValueError("GPSws", "SECOND not valid");
}

std::ostream& operator<<(std::ostream& out, const GPSws& t) {
  if (gpswsns::PrintFormat > 4) return out;
  const RightAligned aligned(out);
  const int decimals = gpswsns::NDecSecond;
  if (gpswsns::PrintFormat != 3) out << std::fixed;
  out << std::setw(5) << t.GetWeek();
  switch (gpswsns::PrintFormat) {
  case 0:
    out << std::setprecision(decimals) << std::setw(decimals + 8) << t.GetSecond();
    break;
  case 1:
    out << std::setw(2) << t.GetWeekDay();
    out << std::setprecision(decimals) << std::setw(decimals + 7) << t.GetDaySecond();
    break;
  case 2: {
    unsigned short hour, minute;
    long double second;
    t.Sec2HMS(hour, minute, second);
    out << std::setw(2) << t.GetWeekDay() << "  ";
    WriteHourMinute(out, hour, minute);
    out << std::setprecision(decimals) << std::setw(decimals + 3) << second;
    break;
  }
  case 3:
    out << std::setw(2) << t.GetWeekDay();
    break;
  case 4:
    out << std::setprecision(8) << std::setw(16) << t.GetSecond();
    break;
  }
  return out;
}

std::istream& operator>>(std::istream& in, GPSws& t) {
  unsigned short week;
  long double second;
  if (in >> week >> second) t.Set(week, second);
  return in;
}
