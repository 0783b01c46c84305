#ifndef PROGINC_WARNINGCOUNT_H
#define PROGINC_WARNINGCOUNT_H

/// Warnings issued so far, of the program and of its classes.
///
/// Whoever keeps the result of a computation, so as not to repeat it, compares the count before
/// and after: what warned has to be done again each time, or it would warn less often.
inline unsigned long WarningsIssued = 0;

#endif
