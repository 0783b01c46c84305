#ifndef ZENTA_VIEW_HTML_H
#define ZENTA_VIEW_HTML_H

#include <string>
#include <string_view>

namespace view {

/// \p text as it stands in HTML, within quotes too: five characters as entities; bytes that are
/// not UTF-8, and control characters, as U+FFFD.
std::string Escaped(std::string_view text);

/// \p text with every \p from as \p to.
std::string ReplacedAll(std::string text, std::string_view from, std::string_view to);

} // namespace view

#endif
