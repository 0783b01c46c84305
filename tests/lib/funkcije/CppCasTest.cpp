#include "funkcije/CppCas.h"

#include <array>
#include <ctime>
#include <gtest/gtest.h>
#include <regex>
#include <string>

namespace {

/// Seconds of the local time that the text of a clock shows.
std::time_t Parsed(const std::string& text) {
  std::tm local = {};
  EXPECT_NE(strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &local), nullptr);
  local.tm_isdst = -1;
  return std::mktime(&local);
}

TEST(CppCas, TextHasTwoBlanksBetweenDateAndTime) {
  CppCas clock;
  EXPECT_TRUE(
      std::regex_match(clock.Ascii(), std::regex("\\d{4}-\\d{2}-\\d{2}  \\d{2}:\\d{2}:\\d{2}")));
}

TEST(CppCas, TextIsTheLocalTime) {
  CppCas clock;
  const std::time_t before = std::time(nullptr);
  const std::time_t shown = Parsed(clock.Ascii());
  const std::time_t after = std::time(nullptr);
  EXPECT_GE(shown, before);
  EXPECT_LE(shown, after);
}

TEST(CppCas, FieldsAreThoseOfTheLocalTimeAndMonthsCountFromZero) {
  CppCas clock;
  std::time_t now;
  std::array<int, 6> fields;
  std::string text;
  do { // again, where a second passed between the calls
    now = std::time(nullptr);
    fields = {clock.LetoDt(), clock.MesecDt(), clock.DanDt(),
              clock.Ura(),    clock.Min(),     clock.Sec()};
    text = clock.Ascii();
  } while (std::time(nullptr) != now);
  const std::tm local = *std::localtime(&now);
  EXPECT_EQ(fields, (std::array<int, 6>{local.tm_year + 1900, local.tm_mon, local.tm_mday,
                                        local.tm_hour, local.tm_min, local.tm_sec}));
  EXPECT_EQ(std::stoi(text.substr(5, 2)), fields[1] + 1);
}

TEST(CppCas, StopWithoutStartIsZero) {
  CppCas clock;
  EXPECT_EQ(clock.Stop(), 0);
}

TEST(CppCas, SecondStopIsZero) {
  CppCas clock;
  clock.Start();
  EXPECT_GE(clock.Stop(), 0);
  EXPECT_EQ(clock.Stop(), 0);
}

TEST(CppCas, WaitsAndMeasuresSecondsOfTheProcessor) {
  CppCas clock;
  const std::clock_t before = std::clock();
  clock.Start();
  clock.Pocakaj(1);
  const double measured = clock.Stop();
  const double passed = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  EXPECT_GE(measured, 1);
  EXPECT_LE(measured, passed);
}

TEST(CppCas, NoWaitForNoneAndLess) {
  CppCas clock;
  clock.Pocakaj(0);
  clock.Pocakaj(-1000000);
  EXPECT_EQ(clock.Stop(), 0);
}

} // namespace
