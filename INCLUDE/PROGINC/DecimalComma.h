#ifndef PROGINC_DECIMALCOMMA_H
#define PROGINC_DECIMALCOMMA_H

#include <string_view>

/// \p text writes its numbers with decimal commas: somewhere a comma stands between digits, and
/// nowhere a point does.
bool HasDecimalCommas(std::string_view text);

#endif
