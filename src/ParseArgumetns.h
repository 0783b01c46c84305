#ifndef SRC_PARSEARGUMETNS_H
#define SRC_PARSEARGUMETNS_H

class KorvanC;

/// Settings and file names from the command line, one argument each with its value glued on.
///
/// Any argument (the program's path included) whose second character is a "v" makes the run
/// verbose. An argument without a leading dash, and an option that is not known, is warned
/// about and passed over; a known option that can't be understood ends the program. Prints the
/// opening banner when verbose. The README lists every option.
void ParseArgumetns(KorvanC& ctx, int argc, const char** argv);

/// The kinds of unknowns: each keyword found anywhere in \p arg, all upper or all lower case,
/// sets its flag; none is ever cleared. "IONEPH" holds "ION" and sets both. When verbose, lists
/// the flags set so far on standard error.
void ParseEstimationType(const char* arg, bool& rec, bool& gps, bool& gln, bool& ion, bool& ionEph,
                         bool& iGrad, bool verbose);

/// Files that can't be opened, and settings that contradict each other. Errors end the program,
/// warnings correct the settings; afterwards the settings are final.
void CheckArgumetns(KorvanC& ctx);

#endif
