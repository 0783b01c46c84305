#ifndef ZENTA_REPORT_LINEREADER_H
#define ZENTA_REPORT_LINEREADER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace report {

/// The lines of one text, taken strictly: whatever is not as expected ends in a Refusal with the
/// name of the text, the number of the line, what was expected there and what stands there.
class LineReader {
public:
  /// \param name for messages; \param text has to outlive the reader
  LineReader(std::string name, std::string_view text);

  bool AtEnd() const { return at_ == lines_.size(); }
  /// Line that comes next, empty at the end.
  std::string_view Peek() const { return AtEnd() ? std::string_view() : lines_[at_]; }
  bool NextIs(std::string_view line) const { return !AtEnd() && Peek() == line; }
  bool NextStartsWith(std::string_view text) const { return !AtEnd() && Peek().starts_with(text); }
  /// Next line; \p expected says what it should be where there is none.
  std::string_view Take(std::string_view expected);
  /// Passes one line that has to be \p line, to the last blank.
  void Expect(std::string_view line);
  /// Passes the line where it is \p line. \returns whether it was
  bool Skip(std::string_view line);
  /// Refuses the line that comes next.
  [[noreturn]] void Refuse(std::string_view expected) const;
  /// Refuses line \p number, counted from 1.
  [[noreturn]] void RefuseLine(std::size_t number, std::string_view expected) const;
  /// Number of the line taken last, from 1.
  std::size_t Number() const { return at_; }
  /// The lines that were not taken yet say nothing more.
  void ExpectEnd() const;

private:
  std::string name_;
  std::vector<std::string_view> lines_;
  std::size_t at_ = 0;
};

/// The fields of one line, left to right.
class FieldReader {
public:
  /// Takes the next line of \p lines, which should be \p what.
  FieldReader(LineReader& lines, std::string_view what);

  /// Passes \p text, which has to stand here.
  void Literal(std::string_view text);
  /// Passes \p text where it stands here. \returns whether it did
  bool Optional(std::string_view text);
  bool NextStartsWith(std::string_view text) const { return line_.substr(at_).starts_with(text); }
  /// Goes on from column \p at, counted from 0.
  void MoveTo(std::size_t at) { at_ = at; }
  /// Column that comes next, from 0.
  std::size_t Column() const { return at_; }
  /// A number with \p decimals decimals, right-aligned in \p width columns or wider than them
  /// and then without a blank before it. Not-a-number and infinities are numbers.
  double Real(std::size_t width, int decimals, std::string_view what);
  /// A whole number in the same way.
  long Whole(std::size_t width, std::string_view what);
  /// Day in 6 columns and second of day in 8, one decimal.
  struct DayAndSecond {
    int day;
    double second;
  };
  DayAndSecond Instant();
  /// What is left of the line.
  std::string_view Rest();
  bool AtEnd() const { return at_ == line_.size(); }
  void ExpectEnd() const;
  [[noreturn]] void Refuse(std::string_view expected) const;

private:
  std::string_view Token(std::size_t width, std::string_view what, std::size_t length) const;

  const LineReader& lines_;
  std::string_view line_;
  std::size_t at_ = 0;
};

} // namespace report

#endif
