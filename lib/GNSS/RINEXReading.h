#ifndef GNSS_RINEXREADING_H
#define GNSS_RINEXREADING_H

#include <cstddef>
#include <string_view>

class LineSource;
class RINEXData;
class RINEXHeader;

/// Longest line that the readers take: RINEX has 80 columns.
inline constexpr std::size_t kRINEXLineLimit = 99;

inline constexpr std::string_view kEndOfHeader = "END OF HEADER";
inline constexpr std::string_view kTypesOfObservations = "# / TYPES OF OBSERV";

/// Satellites in an epoch line, and in each line that continues it.
inline constexpr std::size_t kSatellitesPerLine = 12;
/// Observations in a line.
inline constexpr std::size_t kFieldsPerLine = 5;

/// Columns of the number of observation types in their header line.
inline constexpr std::size_t kColNTypes = 0;
inline constexpr std::size_t kNTypesWidth = 6;

/// What the stream operators of RINEXHeader and RINEXData do, on a text in memory.
void ReadRINEXHeader(LineSource& text, RINEXHeader& header);
/// \returns whether the text had the numbers of epochs and records that were announced.
bool ReadRINEXData(LineSource& text, RINEXData& data);

#endif
