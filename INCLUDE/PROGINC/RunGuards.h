#ifndef PROGINC_RUNGUARDS_H
#define PROGINC_RUNGUARDS_H

/// Prepares the process for what its surroundings may do to a run. The first call of main.
///
/// - A standard stream that is closed is opened so that no file of the run gets its descriptor;
///   writing to it fails.
/// - Writing to a pipe that nobody reads, or beyond the limit of a file's size, fails like any
///   other writing: it does not kill the process.
/// - Memory that can't be had ends the program with a message.
void GuardRun();

/// Warns where not all of the reports reached standard output. The exit status stays as it is.
void FlushStandardOutput();

#endif
