// The store that reading a file fills against the one of the plain reader, bit by bit.

#include "GNSS/RINEX.h"
#include "GNSS/gnssobs.h"
#include "bench/GNSS/reading_plain.h"
#include "reference/number_plain.h"
#include "support/Files.h"
#include "support/RINEXText.h"
#include "support/SameStore.h"

#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

void ExpectSameAsPlain(const std::string& file) {
  RINEXHeader header, plainHeader;
  RINEXData data(header), plain(plainHeader);
  ASSERT_TRUE(Reading_plain(plainHeader, plain).ReadFile(file.c_str()));
  RINEX rinex(header, data);
  rinex.SetFile(file.c_str());
  rinex.ReadFile();
  EXPECT_EQ(FirstDifference(data, plain), "");
}

/// Observation files that use, and misuse, what the format leaves open.
class RandomFile {
public:
  explicit RandomFile(unsigned seed) : random_(seed) {}

  std::string Text() {
    const std::vector<const char*> all = {"C1", "P1", "P2", "L1", "L2", "C2", "S1",
                                          "S2", "D1", "D2", "C5", "L5", "D5", "S5"};
    const std::size_t n = 1 + Pick(all.size());
    std::string text = rinextext::Line("     2.11           OBSERVATION DATA    M (MIXED)",
                                       "RINEX VERSION / TYPE");
    std::string list;
    for (std::size_t j = 0; j < n; ++j) {
      if (j % 9 == 0) list += j == 0 ? Number("%6zu", n) : std::string(6, ' ');
      list += "    " + std::string(all[(j + Pick(2)) % all.size()]);
      if (j % 9 == 8 || j + 1 == n) {
        text += rinextext::Line(list, "# / TYPES OF OBSERV");
        list.clear();
      }
    }
    text += rinextext::End();
    for (int i = 0; i < 40; ++i) AddEpoch(text, 30 * i, n);
    if (Pick(2) == 0) return text;
    std::string crlf;
    for (const char c : text) crlf += c == '\n' ? "\r\n" : std::string(1, c);
    return crlf;
  }

private:
  std::size_t Pick(std::size_t n) { return random_() % n; }

  template <typename T> static std::string Number(const char* format, T value) {
    char text[400];
    std::snprintf(text, sizeof text, format, value);
    return text;
  }

  void AddEpoch(std::string& text, int seconds, std::size_t types) {
    const int satellites = static_cast<int>(Pick(15));
    std::string list;
    for (int k = 0; k < satellites; ++k) {
      if (k == 12) list += "\n" + std::string(32, ' ');
      list += "GR E SC"[Pick(7)] + Number(Pick(2) == 0 ? "%2d" : "%02d", k + 1);
      if (k == 11 && Pick(2) == 0) list += Number("%12.9f", Real(1));
    }
    text += rinextext::Epoch(seconds, satellites, list, Pick(9) == 0 ? '1' : '0');
    for (int k = 0; k < satellites; ++k)
      for (std::size_t j = 0; j < types; j += 5) AddLine(text, std::min<std::size_t>(types - j, 5));
    for (std::size_t k = Pick(20); k > 18; --k) text += rinextext::Line("a remark", "COMMENT");
  }

  void AddLine(std::string& text, std::size_t fields) {
    std::string line;
    while (fields-- > 0) line += Value() + Flags();
    switch (Pick(6)) {
    case 0:
      line.resize(Pick(line.size() + 1)); // cut anywhere
      break;
    case 1:
      line.resize(line.find_last_not_of(' ') + 1); // or where the blanks begin
      break;
    case 2:
      line.resize(line.size() + Pick(19), ' '); // or filled up beyond its columns
      break;
    default:
      break;
    }
    text += line + "\n";
  }

  std::string Value() {
    switch (Pick(12)) {
    case 0:
      return std::string(14, ' ');
    case 1:
      return Number("%14.3f", 0.0);
    case 2:
      return Number("%14.3f", -Real(1e9));
    case 3:
      return Number("%14.6e", Real(1));
    case 4: {
      const char* const junk[] = {"          nan ", "           inf", "-inf          ",
                                  "1e999         ", "   0x1.8p3    ", "      4.9e-324",
                                  "98765432109876", ".1234567890123", "   + 1.500    ",
                                  "--------------", "  1 234.567   ", "   1234.567   "};
      return junk[Pick(std::size(junk))];
    }
    case 5: {
      std::string value = Number("%14.3f", Real(1e9));
      value[Pick(14)] = static_cast<char>(' ' + Pick(95));
      return value;
    }
    default:
      return Number("%14.3f", Real(Pick(2) == 0 ? 1e9 : 100));
    }
  }
  std::string Flags() {
    const char* const flags[] = {"  ", " 6", "1 ", "45", "x ", " -"};
    return flags[Pick(std::size(flags))];
  }
  double Real(double limit) { return limit * static_cast<double>(random_()) / 4294967296.0; }

  std::mt19937 random_;
};

} // namespace

TEST(ReadingEquality, RandomFiles) {
  const ScratchFolder folder;
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    ExpectSameAsPlain(folder.Write("obs.11o", RandomFile(seed).Text()));
    if (HasFailure()) return;
  }
}

TEST(ReadingEquality, RecordedFiles) {
  for (const char* file :
       {"2011-283-cagz/cagz2830.11o", "2013-166-gmsd/gmsd166e.13o", "2015-019-joze/joze0190.15o",
        "quirks/nw1_0160.08o", "quirks/COMO1190.08o", "quirks/89090590.11o", "quirks/cont.06o",
        "quirks/KOSG0010.95O", "quirks/txau047.12o", "quirks/AJAC3550.21O", "quirks/a3460.13o"}) {
    SKIP_WITHOUT(file);
    SCOPED_TRACE(file);
    ExpectSameAsPlain(RealData(file));
  }
}

TEST(ReadingEquality, FieldsOfEveryWidth) {
  const std::string whole = "-21234567.123561234";
  for (std::size_t width = 0; width <= 16; ++width)
    for (std::size_t first = 0; first < 3; ++first) {
      const std::string field = whole.substr(first, width);
      gnssobs obs;
      gnssobsshort value;
      obs >> std::string_view(field);
      value >> std::string_view(field);
      EXPECT_EQ(obs.obs, ToDouble_plain(field.substr(0, 14))) << field;
      EXPECT_EQ(value.obs, ToDouble_plain(field.substr(0, 14))) << field;
      EXPECT_EQ(obs.lli, width > 14 ? field[14] - '0' : 0) << field;
      EXPECT_EQ(obs.ss, width > 15 ? field[15] - '0' : 0) << field;
    }
}
