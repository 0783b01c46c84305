#include "Palette.h"

#include "Html.h"

#include <array>
#include <fmt/format.h>

namespace view {

namespace {

struct Role {
  const char* name;
  const char* light;
  const char* dark;
};

constexpr std::array<Role, 17> kRoles = {{
    {"paper", "#ffffff", "#15181c"},
    {"ink", "#24292e", "#d6dbe0"},
    {"faint", "#dde1e5", "#333a42"},
    {"band", "#7fb6d6", "#2f6f98"},
    {"gps", "#0072b2", "#56b4e9"},
    {"glonass", "#d55e00", "#e69f00"},
    {"mark", "#a8326e", "#e58fbe"},
    {"shade", "#8a9097", "#7d858d"},
    {"d0", "#00457a", "#8fd0ff"},
    {"d1", "#1f78b4", "#5aaee6"},
    {"d2", "#5fa2cf", "#3f86b8"},
    {"d3", "#9cc0d8", "#355f7d"},
    {"d4", "#b9bdc1", "#4d545b"},
    {"d5", "#e0b48c", "#77552f"},
    {"d6", "#dd8f4a", "#a8702a"},
    {"d7", "#cf6a12", "#d99530"},
    {"d8", "#8f3f00", "#ffc56b"},
}};

template <typename Colour> std::string PaintedWith(std::string script, Colour colourOf) {
  for (std::size_t k = 0; k < kRoles.size(); ++k)
    script = ReplacedAll(std::move(script), fmt::format("@{}@", kRoles[k].name), colourOf(k));
  return script;
}

// A stand-in is a colour that no picture has.
constexpr int kRed = 1;
constexpr int kGreen = 162;

std::string StandIn(std::size_t k) { return fmt::format("#{:02x}{:02x}{:02x}", kRed, kGreen, k); }

} // namespace

std::string Painted(const std::string& script, Theme theme) {
  return PaintedWith(script, [theme](std::size_t k) {
    return theme == Theme::light ? kRoles[k].light : kRoles[k].dark;
  });
}

std::string PaintedForPage(const std::string& script) { return PaintedWith(script, StandIn); }

std::string WithVariables(const std::string& svg) {
  std::string text = svg;
  for (std::size_t k = 0; k < kRoles.size(); ++k) {
    const std::string variable = fmt::format("var(--{})", kRoles[k].name);
    // gnuplot writes a colour in four ways
    text = ReplacedAll(std::move(text), fmt::format("rgb({:3}, {:3}, {:3})", kRed, kGreen, k),
                       variable);
    text = ReplacedAll(std::move(text), fmt::format("rgb({},{},{})", kRed, kGreen, k), variable);
    text = ReplacedAll(std::move(text), StandIn(k), variable);
    text =
        ReplacedAll(std::move(text), fmt::format("#{:02X}{:02X}{:02X}", kRed, kGreen, k), variable);
  }
  return text;
}

std::string Variables(Theme theme) {
  std::string css;
  for (const Role& r : kRoles)
    css += fmt::format("--{}:{};", r.name, theme == Theme::light ? r.light : r.dark);
  return css;
}

} // namespace view
