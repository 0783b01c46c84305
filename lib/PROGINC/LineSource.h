#ifndef PROGINC_LINESOURCE_H
#define PROGINC_LINESOURCE_H

#include "matrix/LargeMemory.h"

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string_view>

/// The text of one input file, held in memory and handed out line by line.
///
/// The one way in which text is read. A line is a view into the text, without its end; a line
/// that ends in CR LF is given as if it ended in LF. Each call states the longest line that
/// its reader takes (RINEX: 80 columns, with some slack): a longer line fails the source, and
/// from then on nothing more is read, as if the file ended there.
class LineSource {
public:
  /// What a pipe or a device may give: it does not tell its length before, and may be endless.
  static constexpr std::size_t kLongestStream = std::size_t{1} << 29;

  /// Holds a copy of \p text.
  explicit LineSource(std::string_view text);
  /// Reads the file \p name whole. One that can't be opened, or a directory, reads as empty;
  /// IsOpen() tells it. A file that memory does not hold, and a pipe or a device that gives more
  /// than \p longestStream, end the program with a message.
  static LineSource FromFile(const char* name, std::size_t longestStream = kLongestStream);
  /// Reads what is left of \p in.
  static LineSource FromStream(std::istream& in);

  LineSource(LineSource&&) = default;
  LineSource& operator=(LineSource&&) = default;
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;

  /// The next line of at most \p limit characters, in \p line.
  /// \returns false at the end of the text, at a longer line (\p line then holds its first
  ///   \p limit characters) and ever after.
  bool Next(std::string_view& line, std::size_t limit);
  /// Passes over the rest of the current line; false as for Next.
  bool Skip(std::size_t limit);
  /// Passes over lines up to and including the first that contains \p label.
  /// \returns that line, or an empty view when the source ended or failed before.
  std::string_view Find(std::string_view label, std::size_t limit);

  /// A read has failed: the text ended, or a line was too long.
  bool Failed() const { return failed_; }
  /// The file could be opened.
  bool IsOpen() const { return open_; }
  /// What has not been read yet.
  std::string_view Rest() const { return {text_.get() + at_, size_ - at_}; }
  /// Passes over \p n characters, line ends included, and no further than the end.
  void Advance(std::size_t n);
  /// Fails the source, as a conversion that found no number does.
  void Fail() { failed_ = true; }
  /// Back to the first line, with the failure forgotten: a second pass over the same text.
  void Rewind();

private:
  LineSource() = default;
  bool Reserve(std::size_t capacity);
  bool TakeAll(std::istream& in, std::size_t expected, std::size_t longest);

  std::unique_ptr<char[], FreeMemory> text_;
  std::size_t size_ = 0; ///< of the text
  std::size_t at_ = 0;
  bool failed_ = false;
  bool open_ = true;
};

/// Characters \p first to \p first + \p n - 1 of \p line, counted from 0. What lies behind the
/// end of the line is missing from the result, so a column there reads as blank.
inline std::string_view Columns(std::string_view line, std::size_t first,
                                std::size_t n = std::string_view::npos) {
  return first < line.size() ? line.substr(first, n) : std::string_view{};
}
/// The character at \p column (from 0), a blank behind the end of the line.
inline char Column(std::string_view line, std::size_t column) {
  return column < line.size() ? line[column] : ' ';
}
/// Without leading and trailing blanks (the blank character alone).
std::string_view Trimmed(std::string_view text);
/// \p label occurs anywhere in \p line.
bool Contains(std::string_view line, std::string_view label);
/// Copies \p text into the array \p out, cut to fit, and terminates it.
template <std::size_t N> void CopyText(std::string_view text, char (&out)[N]) {
  const std::size_t n = text.copy(out, N - 1);
  out[n] = '\0';
}

inline bool LineSource::Next(std::string_view& line, std::size_t limit) {
  line = {};
  const std::string_view rest = Rest();
  if (failed_ || rest.empty()) {
    failed_ = true;
    return false;
  }
  const std::size_t end = rest.find('\n');
  line = rest.substr(0, end);
  at_ += end == std::string_view::npos ? rest.size() : end + 1;
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.size() <= limit) return true;
  line = line.substr(0, limit);
  failed_ = true;
  return false;
}

inline bool LineSource::Skip(std::size_t limit) {
  std::string_view ignored;
  return Next(ignored, limit);
}

#endif
