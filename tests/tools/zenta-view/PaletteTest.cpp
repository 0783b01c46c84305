#include "zenta-view/Palette.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <map>

namespace {

using namespace view;

using Rgb = std::array<double, 3>;

/// Roles and their colours, linear light.
std::map<std::string, Rgb> ColoursOf(Theme theme) {
  std::map<std::string, Rgb> colours;
  const std::string css = Variables(theme);
  for (std::size_t at = 0; (at = css.find("--", at)) != std::string::npos; ++at) {
    const std::size_t colon = css.find(":#", at);
    Rgb rgb{};
    for (std::size_t i = 0; i < 3; ++i) {
      const double v = std::stoi(css.substr(colon + 2 + 2 * i, 2), nullptr, 16) / 255.0;
      rgb[i] = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    }
    colours[css.substr(at + 2, colon - at - 2)] = rgb;
    at = colon;
  }
  return colours;
}

/// Contrast of two colours, 1 to 21 (Web Content Accessibility Guidelines 2.1).
double Contrast(const Rgb& a, const Rgb& b) {
  const auto luminance = [](const Rgb& c) { return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2]; };
  const double high = std::max(luminance(a), luminance(b));
  const double low = std::min(luminance(a), luminance(b));
  return (high + 0.05) / (low + 0.05);
}

/// How readers without one kind of cone see a colour: Viénot, Brettel and Mollon (1999), linear
/// light. Red and green come out the same.
Rgb SeenBy(bool protan, const Rgb& c) {
  const double yellow = protan ? 0.11238 * c[0] + 0.88762 * c[1] : 0.29275 * c[0] + 0.70725 * c[1];
  const double blue =
      protan ? 0.00401 * c[0] - 0.00401 * c[1] + c[2] : -0.02234 * c[0] + 0.02234 * c[1] + c[2];
  return {yellow, yellow, blue};
}

double Distance(const Rgb& a, const Rgb& b) {
  // as the eye grades light, about by its cube root
  double sum = 0;
  for (std::size_t i = 0; i < 3; ++i)
    sum += std::pow(std::cbrt(std::max(a[i], 0.0)) - std::cbrt(std::max(b[i], 0.0)), 2);
  return std::sqrt(sum);
}

class EveryTheme : public testing::TestWithParam<Theme> {};
INSTANTIATE_TEST_SUITE_P(Both, EveryTheme, testing::Values(Theme::light, Theme::dark),
                         [](const auto& theme) {
                           return theme.param == Theme::light ? "light" : "dark";
                         });

TEST_P(EveryTheme, TextAndSeriesStandOutFromThePaper) {
  const auto c = ColoursOf(GetParam());
  ASSERT_EQ(c.size(), 17U);
  EXPECT_GE(Contrast(c.at("ink"), c.at("paper")), 7);
  for (const char* role : {"gps", "glonass", "mark", "shade"})
    EXPECT_GE(Contrast(c.at(role), c.at("paper")), 3) << role;
}

TEST_P(EveryTheme, SeriesStayApartForColourBlindReaders) {
  const auto c = ColoursOf(GetParam());
  for (const bool protan : {true, false}) {
    EXPECT_GE(Distance(SeenBy(protan, c.at("gps")), SeenBy(protan, c.at("glonass"))), 0.25);
    EXPECT_GE(Distance(SeenBy(protan, c.at("d0")), SeenBy(protan, c.at("d8"))), 0.25);
    EXPECT_GE(Distance(SeenBy(protan, c.at("d2")), SeenBy(protan, c.at("d6"))), 0.25);
  }
}

TEST_P(EveryTheme, ScaleGetsStrongerFromItsMiddle) {
  const auto c = ColoursOf(GetParam());
  const auto contrast = [&c](int k) {
    return Contrast(c.at("d" + std::to_string(k)), c.at("paper"));
  };
  for (int k = 4; k > 0; --k) EXPECT_GT(contrast(k - 1), contrast(k)) << k;
  for (int k = 4; k < 8; ++k) EXPECT_GT(contrast(k + 1), contrast(k)) << k;
}

TEST(Palette, RolesOfAScriptBecomeColours) {
  EXPECT_EQ(Painted("a '@ink@' b '@d8@' c '@paper@'", Theme::light),
            "a '#24292e' b '#8f3f00' c '#ffffff'");
  EXPECT_NE(Painted("@ink@", Theme::dark), Painted("@ink@", Theme::light));
}

TEST(Palette, EveryWayOfWritingAStandInBecomesItsVariable) {
  const std::string standIn = PaintedForPage("@glonass@"); // #01a205: the fifth role from 0
  ASSERT_EQ(standIn, "#01a205");
  EXPECT_EQ(WithVariables("fill=\"#01a205\" color='#01A205' stroke='rgb(  1, 162,   5)' "
                          "fill=\"rgb(1,162,5)\""),
            "fill=\"var(--glonass)\" color='var(--glonass)' stroke='var(--glonass)' "
            "fill=\"var(--glonass)\"");
  EXPECT_EQ(WithVariables("rgb(  1, 162,  15)"), "var(--d7)"); // and not that of role 1
}

} // namespace
