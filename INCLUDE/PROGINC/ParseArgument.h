#ifndef PROGINC_PARSEARGUMENT_H
#define PROGINC_PARSEARGUMENT_H

class ymdhms;

/// Values glued to the letters of a command-line option.
///
/// \p arg is the whole terminated argument, \p skip the number of leading characters that are
/// not the value. A skip below 0 counts as 0, one behind the end leaves no text. Text that is
/// not a number is 0, and so are nan, inf and what float or double can't hold; a whole number
/// beyond int is its nearest limit. The conversions take the longest number at the start of the
/// text and do not look at the rest.

/// Copies the text behind \p skip to \p out, which has room for it and the terminator.
void ParseFileName(const char* arg, char* out, int skip);
/// ParseFileName, then \p flag is true, also for an empty name. With \p verbose, \p message, the
/// name and "!" are written to standard error as one line.
void GetFileName(const char* arg, char* out, bool& flag, const bool& verbose, short skip,
                 const char* message);
float ParseFloat(const char* arg, int skip);
double ParseDouble(const char* arg, int skip);
int ParseInteger(const char* arg, int skip);
/// [s] of "hh:mm:ss.s": hours and minutes in two characters each, seconds to the end of the
/// text. The separators are not examined; what is missing is 0.
long double ParseHMS(const char* arg, int skip);
/// Sets \p t to "yyyy-mm-dd hh:mm:ss.s" field by field, in this order: a field out of its range
/// ends the program, see ymdhms. The separators are not examined; what is missing is 0.
void ParseDate(const char* arg, ymdhms& t, int skip);

#endif
