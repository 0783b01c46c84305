#ifndef GNSS_RECCODETRACK_H
#define GNSS_RECCODETRACK_H

/// Code-tracking classes of receivers, from the CODE receiver list (RECEIVER.LST).
///
/// The class tells which P1-C1 biases the code observations carry:
///   0  P1P2: P1 and P2; also where nothing is known of the receiver
///   1  C1P2: C1 in place of P1, and P2
///   2  C1X2: C1 and a cross-correlated P2
///
/// An entry is the first line that contains the receiver type, anywhere: the name of one type
/// may so find the longer name of another. Columns from 1: 24 the number of code lines, 30-31
/// the first code (C1 or P1); with 2 code lines the next line has P2 or X2 in 30-31. Lines of
/// more than 511 characters end the reading. The file is read anew by every look-up.
class RecCodeTrack {
public:
  RecCodeTrack() = default;

  /// Takes the file name. One of more than 255 characters, or of a file that does not exist,
  /// ends the program.
  void SetFile(const char* name);

  /// Class of \p receiverType. A type that is not listed is warned of; one whose codes are of
  /// no class is warned of twice, as undetermined and as not listed. A file that can't be
  /// opened any more gives 0 without a warning.
  short GetRecCodeTrack(const char* receiverType) const;
  /// Some line contains \p receiverType.
  bool CheckRecName(const char* receiverType) const;
  /// The same answer as CheckRecName.
  bool GetRecType(const char* receiverType) const;

private:
  char file[256] = "";
};

#endif
