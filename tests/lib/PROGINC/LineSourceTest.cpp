#include "PROGINC/LineSource.h"

#include "support/Files.h"

#include <sstream>

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
