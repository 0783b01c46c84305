#ifndef PROGINC_CSTRINGF_H
#define PROGINC_CSTRINGF_H

/// Terminated strings in arrays of the caller, who has made room for each result and its
/// terminator.

/// Copies at most \p n characters of \p s from position \p start (from 0), up to the end of
/// \p s, to \p out and terminates it. A start outside of \p s, or \p n below 1, gives the empty
/// string. \p out may be \p s itself.
void substr(const char* s, int start, int n, char* out);
/// As above, up to the end of \p s.
void substr(const char* s, int start, char* out);
/// Removes trailing blanks (the blank character alone; tabs stay).
void trimr(char* s);
/// Removes leading blanks.
void triml(char* s);
/// Removes leading and trailing blanks.
void trim(char* s);
/// Index of the last \p c in \p s, -1 without one. The terminator counts as a character.
int indexLast(const char* s, char c);
/// Fills \p s with \p n copies of \p c and terminates it; \p n below 1 makes it empty.
void strcopy(char* s, char c, int n);
void strng(char* s, char c, long n);

#endif
