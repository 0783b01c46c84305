#ifndef PROGINC_TEXTNUMBER_H
#define PROGINC_TEXTNUMBER_H

#include <string_view>

/// Decimal number at the start of \p text, as atof reads it in the C locale: leading white
/// space is passed over, and the conversion ends at the first character that can't continue
/// the number. Text without a number is 0; so are "nan", "inf" and values beyond the range of
/// double, which no data field means.
double ToDouble(std::string_view text);

/// Whole number at the start of \p text, as atoi reads it; 0 without a number, the nearest
/// limit of int for values beyond it.
int ToInt(std::string_view text);

#endif
