#ifndef SRC_PRINTRESULTS_H
#define SRC_PRINTRESULTS_H

class KorvanC;

/// The results report on standard output and, where named, the GNUPlot files of biases and of
/// delays by interval. The README shows the layout. A standard deviation is
/// sqrt(s0apost Qxx(k,k)); the column "msec" holds microseconds.
///
/// Prints in the fixed-point notation that the settings report leaves on standard output and sets
/// the number of decimals wherever it changes. Sets the decimals of seconds in print to 1 for mjd
/// and 0 for ymdhms and leaves them so; later reports print with them.
void PrintResults(KorvanC& ctx);

#endif
