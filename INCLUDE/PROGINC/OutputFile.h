#ifndef PROGINC_OUTPUTFILE_H
#define PROGINC_OUTPUTFILE_H

#include <fstream>
#include <string>

/// A result file, written beside its final name and put in place when it is complete.
///
/// A run that is killed thus leaves no half-written result, and two runs into one file leave the
/// result of one of them. What is written meanwhile has a name that no other file has. The result
/// gets the permissions of the file that it replaces, else those of any new file.
///
/// Devices and pipes, and files in a folder where nothing can be created, are written straight
/// away. A file that can't be created or written is named in a warning and what was meant for it
/// is lost; the run goes on.
class OutputFile {
public:
  OutputFile() = default;
  ~OutputFile() { Close(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Open(const std::string& name, std::ios::openmode mode = std::ios::out);
  /// Open has been called, whether it succeeded or not.
  bool IsInUse() const { return inUse_; }
  std::ostream& Stream() { return stream_; }
  /// Puts the file in place. Without an open file nothing happens.
  void Close();

private:
  bool PutInPlace();

  std::string name_;
  std::string temporary_; ///< empty where the final name is written straight away
  std::ofstream stream_;
  bool inUse_ = false;
};

#endif
