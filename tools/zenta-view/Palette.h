#ifndef ZENTA_VIEW_PALETTE_H
#define ZENTA_VIEW_PALETTE_H

#include <string>
#include <string_view>

namespace view {

/// Colours of the pictures by their role, for light and dark paper.
///
/// Series come from the palette of Okabe and Ito, which colour-blind readers tell apart, and
/// are also told apart by position or shape; the diverging scale goes from blue over grey to
/// orange, the further from 0 the stronger against the paper.
///
/// In scripts a colour stands as @role@. Roles: paper, ink, faint (grid), band (of errors), gps,
/// glonass, mark (slips), shade (eclipses), d0 to d8 (scale).
enum class Theme { light, dark };

/// \p script with the colours of \p theme in place of the roles.
std::string Painted(const std::string& script, Theme theme);

/// \p script with stand-ins for the roles, which WithVariables finds in the drawing.
std::string PaintedForPage(const std::string& script);
/// \p svg with CSS variables, --role, in place of the stand-ins.
std::string WithVariables(const std::string& svg);

/// Declarations of the CSS variables of \p theme.
std::string Variables(Theme theme);

} // namespace view

#endif
