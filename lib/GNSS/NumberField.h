#ifndef GNSS_NUMBERFIELD_H
#define GNSS_NUMBERFIELD_H

#include "PROGINC/TextNumber.h"

#include <string_view>

/// Reads \p field as ToDouble does. \returns false where that gives 0 without standing for it: a
/// field without a number, "nan", "inf", and values beyond the range of double.
inline bool ReadNumber(std::string_view field, double& value) {
  value = ToDouble(field);
  return value != 0 || (field.find('0') != std::string_view::npos &&
                        field.find_first_not_of(" \t\r\n+-0.") == std::string_view::npos);
}

#endif
