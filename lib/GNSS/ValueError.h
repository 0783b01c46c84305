#ifndef GNSS_VALUEERROR_H
#define GNSS_VALUEERROR_H

/// Reports on standard output, after an empty line,
///
///     **** mjd: Error -> MJDAY not valid ****
///          Exiting class mjd ...
///
/// with a trailing blank, and ends the process with status 1.
/// \param type  class of the value that is out of its range
[[noreturn]] void ValueError(const char* type, const char* text);

#endif
