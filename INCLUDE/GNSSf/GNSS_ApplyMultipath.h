#ifndef GNSSF_GNSS_APPLYMULTIPATH_H
#define GNSSF_GNSS_APPLYMULTIPATH_H

#include "matrix/matrix.h"

class CompactTEQC;
class RINEXData;
class RINEXHeader;

/// Removes code multipath: the values of \p mp1 from C1 and P1, those of \p mp2 from P2.
///
/// Epochs of both sides are matched within 0.001 s, then satellites by number. An observation of
/// a type that the header does not declare, or that is missing (null), is left alone, and so is
/// every satellite that the multipath file does not have.
///
/// \param isMP1, isMP2  which of the two files were given; with neither nothing happens
/// \param verbose  reports the number of matched satellites on standard error
void ApplyMultipath(const RINEXHeader& rnxh, RINEXData& rnxd, const CompactTEQC& mp1,
                    const CompactTEQC& mp2, bool isMP1, bool isMP2, bool verbose);

/// Removes the values of one file \p mp from C1 and P1; epochs are matched within 0.001 s.
void ApplyMultipath(const RINEXHeader& rnxh, RINEXData& rnxd, const CompactTEQC& mp, bool isMP,
                    bool verbose);

/// Stores the values of one file \p mp [m] in \p values, at the row of each matched observation
/// record, and leaves the observations alone. \p values has a row per record already; rows
/// without a match keep what they hold. Epochs are matched within 0.3 s.
void ApplyMultipath(const RINEXHeader& rnxh, const RINEXData& rnxd, const CompactTEQC& mp,
                    bool isMP, bool verbose, matrix<long double>& values);

#endif
