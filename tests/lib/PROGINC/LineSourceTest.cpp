#include "PROGINC/LineSource.h"

#include "support/Ends.h"
#include "support/Files.h"

#include <fstream>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace {

TEST(LineSource, LinesEndAtLfOrCrLfOrTheEndOfTheText) {
  LineSource source("one\r\ntwo\n\nlast");
  std::string_view line;
  ASSERT_TRUE(source.Next(line, 80));
  EXPECT_EQ(line, "one");
  ASSERT_TRUE(source.Next(line, 80));
  EXPECT_EQ(line, "two");
  ASSERT_TRUE(source.Next(line, 80));
  EXPECT_EQ(line, "");
  ASSERT_TRUE(source.Next(line, 80));
  EXPECT_EQ(line, "last");
  EXPECT_FALSE(source.Next(line, 80));
  EXPECT_TRUE(source.Failed());
}

TEST(LineSource, LineOfTheLimitIsReadAndALongerOneFailsTheRest) {
  LineSource source("12345\r\n123456\nshort\n");
  std::string_view line;
  EXPECT_TRUE(source.Next(line, 5));
  EXPECT_FALSE(source.Next(line, 5));
  EXPECT_EQ(line, "12345");
  EXPECT_FALSE(source.Next(line, 5));
  source.Rewind();
  EXPECT_TRUE(source.Next(line, 5));
  EXPECT_EQ(line, "12345");
}

TEST(LineSource, FindStopsBehindTheLabelledLineOrAtTheEnd) {
  LineSource source("a\nEND OF HEADER\nb\n");
  EXPECT_EQ(source.Find("OF HEAD", 80), "END OF HEADER");
  EXPECT_EQ(source.Rest(), "b\n");
  EXPECT_EQ(source.Find("OF HEAD", 80), "");
  EXPECT_TRUE(source.Failed());
}

TEST(LineSource, MissingFileAndFolderReadAsEmpty) {
  const ScratchFolder folder;
  std::string_view line;
  LineSource missing = LineSource::FromFile(folder.Name("none").c_str());
  EXPECT_FALSE(missing.IsOpen());
  EXPECT_FALSE(missing.Next(line, 80));
  LineSource directory = LineSource::FromFile(folder.Path().c_str());
  EXPECT_FALSE(directory.Next(line, 80));
}

TEST(LineSource, StreamIsTakenFromWhereItStands) {
  std::istringstream in("first\nsecond\n");
  std::string first;
  std::getline(in, first);
  EXPECT_EQ(LineSource::FromStream(in).Rest(), "second\n");
}

TEST(LineSource, LongTextsAreReadWholeFromFilesAndStreams) {
  const ScratchFolder folder;
  std::string text;
  while (text.size() < 5'000'000) text += std::to_string(text.size()) + "\n";
  EXPECT_TRUE(LineSource::FromFile(folder.Write("long", text).c_str()).Rest() == text);
  std::istringstream in(text);
  EXPECT_TRUE(LineSource::FromStream(in).Rest() == text);
}

TEST(LineSource, PipeIsReadToItsEnd) {
  const ScratchFolder folder;
  const std::string pipe = folder.Name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string text(300000, 'x');
  std::thread writer([&] { std::ofstream(pipe) << text; });
  EXPECT_TRUE(LineSource::FromFile(pipe.c_str()).Rest() == text);
  writer.join();
}

TEST(LineSourceDeathTest, EndlessDeviceEndsTheProgram) {
  EXPECT_ENDS(LineSource::FromFile("/dev/zero", 1000000),
              "Zenta: Error -> FILE /dev/zero IS TOO LARGE TO BE READ! ");
  EXPECT_ENDS(LineSource::FromFile("/dev/full", 1000000), "FILE /dev/full IS TOO LARGE");
}

#ifndef __SANITIZE_ADDRESS__ // which ends the process itself where memory does not suffice
TEST(LineSourceDeathTest, FileThatMemoryDoesNotHoldEndsTheProgram) {
  const ScratchFolder folder;
  const std::string name = folder.Write("sparse", "");
  std::filesystem::resize_file(name, std::uintmax_t{1} << 32);
  const rlimit oneGigabyte{1U << 30, 1U << 30};
  EXPECT_ENDS(setrlimit(RLIMIT_AS, &oneGigabyte);
              LineSource::FromFile(name.c_str()), "sparse IS TOO LARGE TO BE READ! ");
}
#endif

TEST(LineSource, ColumnsBehindTheEndAreBlank) {
  EXPECT_EQ(Columns("abcdef", 2, 3), "cde");
  EXPECT_EQ(Columns("abcdef", 4, 9), "ef");
  EXPECT_EQ(Columns("abc", 7, 2), "");
  EXPECT_EQ(Column("abc", 1), 'b');
  EXPECT_EQ(Column("abc", 3), ' ');
  EXPECT_EQ(Trimmed("  a b  "), "a b");
  EXPECT_EQ(Trimmed("   "), "");
  char text[4];
  CopyText("abcdef", text);
  EXPECT_STREQ(text, "abc");
}

} // namespace
