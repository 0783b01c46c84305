#ifndef SRC_READFILES_H
#define SRC_READFILES_H

class KorvanC;

/// Hands every file name in use to its reader.
void SetFiles(KorvanC& ctx);

/// Makes every reader with a file read it whole, but for the code-tracking list and the
/// coordinate file, which GetReceiverProperties looks things up in. When verbose, tells what
/// each file held.
void ReadFiles(KorvanC& ctx);

#endif
