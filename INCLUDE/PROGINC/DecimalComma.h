#ifndef PROGINC_DECIMALCOMMA_H
#define PROGINC_DECIMALCOMMA_H

#include <string_view>

/// \p text writes its numbers with decimal commas: somewhere a comma stands between digits, and
/// nowhere a point does. A heading that ends in "END OF HEADER" may have either.
bool HasDecimalCommas(std::string_view text);

/// Ends the program where the file \p name does so: its numbers would be read up to the comma. What
/// is no regular file is left alone, as it can't be read twice.
void RefuseDecimalCommas(const char* name);

#endif
