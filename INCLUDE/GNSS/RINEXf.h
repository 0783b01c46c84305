#ifndef GNSS_RINEXF_H
#define GNSS_RINEXF_H

#include <string_view>

/// What a line of a RINEX 2 observation file is (RINEX 2.10, table A2). Columns that a line
/// is too short for are missing: they match nothing.

bool ishash(char c);
bool isampersand(char c);
/// Column 61, where the label of a comment stands, holds a letter or '#'.
bool iscomment(std::string_view line);

/// The line opens an epoch and carries its list of satellites: two-digit calendar fields,
/// seconds with all seven decimals, and more than 32 characters.
///
/// Event records (flags 2 to 5) without a list are thus none, nor are those without a time.
bool IsFirstObsLine(std::string_view line);

/// Takes an epoch line apart (one that IsFirstObsLine accepts).
///
/// \param year    four digits: 80 to 99 are 1980 to 1999, 0 to 79 are 2000 to 2079
/// \param second  [s] of the minute
/// \param count   satellites, 0 to 99: the last two digits of the field; below 0 reads as 0
/// The date is not checked here; the epoch flag stays in column 29.
void ParseFirstObsLine(std::string_view line, unsigned short& year, unsigned short& month,
                       unsigned short& day, unsigned short& hour, unsigned short& minute,
                       long double& second, short& count);
/// The number of satellites alone.
short SatellitesOfFirstObsLine(std::string_view line);

/// Pads \p line with blanks to \p n fields of 16 characters, or cuts it there.
/// \param line  terminated; room for 16 \p n + 1 characters
void FillObsLine(char* line, unsigned short n);

#endif
