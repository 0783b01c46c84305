// The man pages against the command lines that they describe.

#include "support/Files.h"
#include "support/TinyRun.h"
#include "tools/report/Shell.h"

#include <cctype>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

std::string Source(const std::string& file) {
  return ReadWhole(std::string(ZENTA_SOURCE) + "/" + file);
}
std::string PageFile(const std::string& command) {
  return fmt::format("{}/docs/man/{}.1", ZENTA_SOURCE, command);
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// \p text without the marks of its typesetting.
std::string Unmarked(const std::string& text) {
  std::string plain = std::regex_replace(text, std::regex(R"(\\f[A-Z])"), "");
  plain = std::regex_replace(plain, std::regex(R"(\\-)"), "-");
  return std::regex_replace(plain, std::regex(R"(\\e)"), "\\");
}

/// The words behind a macro as they are printed: those of .B and .I stand apart, those of the
/// macros that change between two fonts join.
std::string Printed(const std::string& line) {
  const std::string macro = line.substr(0, line.find(' '));
  const std::string words = line.substr(std::min(macro.size() + 1, line.size()));
  if (macro.size() == 2) return Unmarked(words);
  static const std::regex kWord("\"([^\"]*)\"|([^ ]+)");
  std::string joined;
  for (std::sregex_iterator at(words.begin(), words.end(), kWord), end; at != end; ++at)
    joined += (*at)[1].matched ? (*at)[1].str() : (*at)[2].str();
  return Unmarked(joined);
}

/// A tagged paragraph under one of the heads that contain OPTIONS.
struct Entry {
  std::string section; ///< the head it stands under, for example OPTIONS OF MAKE
  std::string term;    ///< for example -j, --json FILE
  std::string text;    ///< its lines, joined by blanks
};

std::vector<Entry> OptionsOf(const std::string& command) {
  std::vector<Entry> entries;
  std::string section;
  bool tag = false;
  for (const std::string& line : LinesOf(ReadWhole(PageFile(command)))) {
    if (line.starts_with(".SH ")) section = line.substr(4);
    if (section.find("OPTIONS") == std::string::npos) continue;
    if (line.starts_with(".TP")) {
      tag = true;
    } else if (tag) {
      entries.push_back({section, Printed(line), ""});
      tag = false;
    } else if (!entries.empty() && !line.starts_with(".S")) {
      std::string& text = entries.back().text;
      text += (text.empty() ? "" : " ") + (line.starts_with(".") ? Printed(line) : Unmarked(line));
    }
  }
  return entries;
}

// ---- zenta ------------------------------------------------------------------------------------

/// Letters of the option in the term of an entry: cb1 of -cb1FILE.
std::string LettersOf(const std::string& term) {
  std::string letters;
  for (std::size_t i = 1; i < term.size() && !std::isupper(static_cast<unsigned char>(term[i]));
       ++i)
    letters += term[i];
  return letters;
}

std::set<std::string> AllMatches(const std::string& text, const char* pattern) {
  std::set<std::string> found;
  const std::regex expression(pattern);
  for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
    found.insert((*at)[1]);
  return found;
}

/// The options as the parser of the command line knows them.
std::set<std::string> OptionsOfTheParser() {
  const std::string source = Source("src/ParseArgumetns.cpp");
  std::set<std::string> options = AllMatches(source, R"re(\{"([a-z0-9]+)", &KorvanC::)re");
  options.merge(AllMatches(source, R"re(Begins\(option, "([a-z]+)"\))re"));
  return options;
}

TEST(ManPageOfZenta, NamesEveryOptionAndNoOther) {
  std::set<std::string> documented;
  for (const Entry& e : OptionsOf("zenta")) documented.insert(LettersOf(e.term));
  EXPECT_GE(documented.size(), 30U);
  EXPECT_EQ(documented, OptionsOfTheParser());
}

TEST(ManPageOfZenta, EveryOptionHasItsDefault) {
  for (const Entry& e : OptionsOf("zenta"))
    EXPECT_TRUE(std::regex_search(e.text, std::regex("Default: [^.]+"))) << e.term;
}

TEST(ManPageOfZenta, DefaultsAreThoseOfARunWithoutTheOption) {
  std::map<std::string, std::string> defaults;
  for (const Entry& e : OptionsOf("zenta"))
    defaults[LettersOf(e.term)] = e.text.substr(e.text.find("Default: ") + 9);
  const TinyRun run;
  EXPECT_EQ(std::stod(defaults["me"]), run.ctx.MinElevation);
  EXPECT_EQ(std::stoi(defaults["mi"]), run.ctx.MaxIter);
  EXPECT_EQ(std::stod(defaults["mt"]), run.ctx.IterThres);
  EXPECT_EQ(defaults["ft"] == "no test.", !run.ctx.isMaxfDiff);
  EXPECT_EQ(defaults["bt"] == "no test.", !run.ctx.isThresBlunder);
  EXPECT_EQ(defaults["bl"] == "no test.", !run.ctx.isThresBlunderL4);
  EXPECT_EQ(defaults["p"] == "equal weights.", run.ctx.obsP == 0);
  EXPECT_EQ(defaults["ii"].starts_with("00:00:00,"), run.ctx.IonoInterval == 0);
  EXPECT_EQ(defaults["v"] == "off.", !run.ctx.verbose);
}

TEST(Readme, TableOfOptionsNamesEveryOptionAndNoOther) {
  std::set<std::string> listed;
  for (const std::string& line : LinesOf(Source("README.md")))
    if (line.starts_with("| `-"))
      listed.merge(AllMatches(line.substr(0, line.find(" | ")), R"(`-([a-z0-9]+)`)"));
  EXPECT_EQ(listed, OptionsOfTheParser());
}

// ---- Companion commands -----------------------------------------------------------------------

/// The lines of a help text that have two columns: term and description.
std::vector<Entry> OptionsOfHelp(const std::string& program, const std::string& subcommand) {
  std::vector<Entry> entries;
  const Outcome help = RunProgram(program, subcommand + " --help");
  EXPECT_EQ(help.status, 0) << help.err;
  for (std::string line : LinesOf(help.out)) {
    if (const std::size_t at = line.find("{false}"); at != std::string::npos)
      line.replace(at, 7, "  ");        // mark of the flag that switches off
    if (line.starts_with("        ")) { // description of a long term
      entries.back().text = line.substr(line.find_first_not_of(' '));
    } else if (line.starts_with("  ")) {
      const std::size_t end = line.find("  ", 2);
      const std::size_t text = line.find_first_not_of(' ', end);
      entries.push_back(
          {"", line.substr(2, end - 2), text == std::string::npos ? "" : line.substr(text)});
    }
  }
  return entries;
}

/// -j and --json of "-j, --json FILE".
std::set<std::string> NamesIn(const std::string& term) {
  const std::size_t blank = term.find_first_of(" =", term.find("--"));
  return AllMatches(" " + term.substr(0, blank), "[ ,](--?[a-z][a-z0-9-]*)");
}

struct Companion {
  const char* command;
  const char* program;
};
class ManPageOf : public testing::TestWithParam<Companion> {};
INSTANTIATE_TEST_SUITE_P(Companion, ManPageOf,
                         testing::Values(Companion{"zenta-export", ZENTA_EXPORT},
                                         Companion{"zenta-view", ZENTA_VIEW}),
                         [](const auto& c) { return std::string(c.param.command).substr(6); });

TEST_P(ManPageOf, NamesEveryOptionOfTheHelpAndNoOther) {
  std::set<std::set<std::string>> documented;
  std::set<std::set<std::string>> offered;
  for (const Entry& e : OptionsOf(GetParam().command))
    if (e.term.starts_with("-")) documented.insert(NamesIn(e.term));
  for (const Entry& e : OptionsOfHelp(GetParam().program, ""))
    if (e.term.starts_with("-")) offered.insert(NamesIn(e.term));
  EXPECT_GE(offered.size(), 10U);
  EXPECT_EQ(documented, offered);
}

TEST_P(ManPageOf, HasTheDefaultsOfTheHelp) {
  std::map<std::set<std::string>, std::string> documented;
  for (const Entry& e : OptionsOf(GetParam().command)) documented[NamesIn(e.term)] = e.text;
  int defaults = 0;
  for (const Entry& e : OptionsOfHelp(GetParam().program, "")) {
    const std::size_t at = e.term.find('=');
    if (!e.term.starts_with("-") || at == std::string::npos) continue;
    const std::string expected = "Default: " + e.term.substr(at + 1) + ".";
    EXPECT_NE(documented[NamesIn(e.term)].find(expected), std::string::npos) << e.term;
    ++defaults;
  }
  EXPECT_GE(defaults, 1);
}

TEST(ManPageOfZentaSim, SaysOfEveryOptionWhatTheHelpSays) {
  for (const auto& [section, subcommand] :
       {std::pair("OPTIONS OF MAKE", "make"), std::pair("OPTIONS OF COMPARE", "compare")}) {
    std::map<std::string, std::string> documented;
    std::map<std::string, std::string> offered;
    const auto key = [](const std::string& term) {
      return std::regex_replace(term, std::regex(", *--"), ",--");
    };
    for (const Entry& e : OptionsOf("zenta-sim"))
      if (e.section == section) documented[key(e.term)] = e.text;
    for (const Entry& e : OptionsOfHelp(ZENTA_SIM, subcommand)) offered[key(e.term)] = e.text;
    EXPECT_GE(offered.size(), 4U);
    EXPECT_EQ(documented, offered);
  }
}

TEST(Companions, HelpAndVersionHaveStatusZero) {
  for (const auto& [name, program] :
       {std::pair("zenta-export", ZENTA_EXPORT), std::pair("zenta-sim", ZENTA_SIM),
        std::pair("zenta-view", ZENTA_VIEW)}) {
    EXPECT_EQ(RunProgram(program, "--help").status, 0);
    const Outcome version = RunProgram(program, "--version");
    EXPECT_EQ(version.status, 0) << version.err;
    EXPECT_EQ(version.out, fmt::format("{} {}\n", name, ZENTA_VERSION));
  }
}

// ---- All pages --------------------------------------------------------------------------------

const char* const kCommands[] = {"zenta", "zenta-export", "zenta-sim", "zenta-view"};

TEST(ManPages, AndCitationAreOfTheVersionOfTheProject) {
  for (const char* command : kCommands)
    EXPECT_NE(ReadWhole(PageFile(command)).find("\"Zenta " ZENTA_VERSION "\""), std::string::npos)
        << command;
  EXPECT_NE(Source("CITATION.cff").find("\nversion: " ZENTA_VERSION "\n"), std::string::npos);
}

TEST(ManPages, ReferToEachOther) {
  for (const char* command : kCommands) {
    const std::string page = ReadWhole(PageFile(command));
    const std::string others = Unmarked(page.substr(page.find(".SH SEE ALSO")));
    for (const char* other : kCommands) {
      if (std::string(other) == command) continue;
      EXPECT_NE(others.find(fmt::format(" {} (1)", other)), std::string::npos)
          << command << " does not name " << other;
    }
  }
}

bool Has(const char* program) {
  return RunProgram("sh", fmt::format("-c 'command -v {}'", program)).status == 0;
}

/// What a formatter has against the page \p file.
std::string Complaints(const std::string& formatter, const std::string& file) {
  const Outcome o = RunProgram("env", fmt::format("LC_ALL=C.UTF-8 {} {}", formatter, file));
  return o.err + (o.out.find("mandoc: ") == std::string::npos ? "" : o.out);
}

class LintOfManPages : public testing::TestWithParam<std::pair<const char*, const char*>> {};
INSTANTIATE_TEST_SUITE_P(By, LintOfManPages,
                         testing::Values(std::pair("man", "man --warnings -E UTF-8 -l -Tutf8 -Z"),
                                         std::pair("mandoc", "mandoc -Tlint -Wstyle")),
                         [](const auto& p) { return p.param.first; });

TEST_P(LintOfManPages, FindsNothing) {
  if (!Has(GetParam().first)) GTEST_SKIP() << GetParam().first << " is not installed";
  for (const char* command : kCommands)
    EXPECT_EQ(Complaints(GetParam().second, PageFile(command)), "") << command;
}

TEST_P(LintOfManPages, FindsWhatIsWrong) {
  if (!Has(GetParam().first)) GTEST_SKIP() << GetParam().first << " is not installed";
  const ScratchFolder folder;
  const std::string page = folder.Write("page.1", ReadWhole(PageFile("zenta")) + ".XX nothing\n");
  EXPECT_NE(Complaints(GetParam().second, page), "");
}

} // namespace
