#include "Epoch.h"

#include <chrono>
#include <cmath>
#include <fmt/format.h>

namespace report {

namespace {

constexpr double kDay = 86400;
constexpr int kMJDof1970 = 40587;

std::chrono::sys_days DateOf(int mjd) {
  return std::chrono::sys_days(std::chrono::days(mjd - kMJDof1970));
}

/// Second of day below 86400.
Epoch Normalised(Epoch t) {
  const double days = std::floor(t.second / kDay);
  return {t.day + static_cast<int>(days), t.second - days * kDay};
}

} // namespace

double operator-(const Epoch& a, const Epoch& b) {
  return (a.day - b.day) * kDay + (a.second - b.second);
}

double DecimalDay(const Epoch& t) { return t.day + t.second / kDay; }

std::string Iso(const Epoch& t) {
  constexpr long long kTicks = 10'000'000; // of a second
  const Epoch n = Normalised(t);
  const auto ticks = static_cast<long long>(std::llround(n.second * kTicks));
  const long long perDay = kTicks * static_cast<long long>(kDay);
  const std::chrono::year_month_day date(DateOf(n.day + static_cast<int>(ticks / perDay)));
  const long long second = ticks % perDay / kTicks;
  std::string text =
      fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", int{date.year()}, unsigned{date.month()},
                  unsigned{date.day()}, second / 3600, second / 60 % 60, second % 60);
  const long long rest = ticks % kTicks;
  if (rest == 0) return text;
  text += fmt::format(".{:07}", rest);
  text.erase(text.find_last_not_of('0') + 1);
  return text;
}

std::string SinexTime(const Epoch& t) {
  Epoch n = Normalised(t);
  n.second = std::floor(n.second);
  const std::chrono::sys_days day = DateOf(n.day);
  const std::chrono::year year = std::chrono::year_month_day(day).year();
  const auto dayOfYear = (day - std::chrono::sys_days(year / 1 / 1)).count() + 1;
  return fmt::format("{:04}:{:03}:{:05}", int{year}, dayOfYear, static_cast<int>(n.second));
}

Epoch FromCalendar(int year, int month, int day, double second) {
  using namespace std::chrono;
  const sys_days first(std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) /
                       1);
  const auto mjd = first.time_since_epoch().count() + kMJDof1970 + day - 1;
  return Normalised({static_cast<int>(mjd), second});
}

} // namespace report
