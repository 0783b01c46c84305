#ifndef GNSS_CLASSMESSAGE_H
#define GNSS_CLASSMESSAGE_H

/// Warning of class \p name on standard output.
void ClassWarning(const char* name, const char* text);
/// Error of class \p name on standard output, framed by four of the character \p mark; ends the
/// program.
[[noreturn]] void ClassError(const char* name, char mark, const char* text);

#endif
