#include "PROGINC/DecimalComma.h"

#include "support/Ends.h"
#include "support/Files.h"

#include <sys/stat.h>

namespace {

TEST(HasDecimalCommas, CommaBetweenDigitsWithoutAPointAnywhere) {
  EXPECT_TRUE(HasDecimalCommas("G01   0,123\n"));
  EXPECT_TRUE(HasDecimalCommas("VERS. 2\nG01   0,123\n"));
}

TEST(HasDecimalCommas, NumbersWithPointsAreThere) {
  EXPECT_FALSE(HasDecimalCommas("in steps of 1,000 epochs\nG01   0.123\n"));
  EXPECT_FALSE(HasDecimalCommas("G01   0.123\n"));
}

TEST(HasDecimalCommas, HeadingsDoNotCount) {
  EXPECT_FALSE(HasDecimalCommas("DAYS 283,284\nEND OF HEADER\n55844 0 5\n"));
  EXPECT_TRUE(HasDecimalCommas("VERSION 2.1\nEND OF HEADER\n55844 0,5 5\n"));
}

TEST(HasDecimalCommas, CommaOfAListIsNone) {
  EXPECT_FALSE(HasDecimalCommas(""));
  EXPECT_FALSE(HasDecimalCommas(","));
  EXPECT_FALSE(HasDecimalCommas("A0,A1,T,W\n1, 2,x 3 ,4,"));
}

TEST(RefuseDecimalCommasDeathTest, FileIsNamed) {
  const ScratchFolder folder;
  const std::string name = folder.Write("day.clk", "55844 3600,0 12,5\n");
  EXPECT_ENDS(RefuseDecimalCommas(name.c_str()),
              "Error -> DECIMAL COMMAS IN INPUT FILE .*day.clk!");
}

TEST(RefuseDecimalCommas, OtherFilesPass) {
  const ScratchFolder folder;
  RefuseDecimalCommas(folder.Write("day.clk", "55844 3600.0 12.5\n").c_str());
  RefuseDecimalCommas(folder.Name("absent").c_str());
  RefuseDecimalCommas(folder.Path().c_str());
}

// Opening one would wait for a writer, and take from the reader what it gets.
TEST(RefuseDecimalCommas, PipesAreLeftAlone) {
  const ScratchFolder folder;
  const std::string pipe = folder.Name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  RefuseDecimalCommas(pipe.c_str());
}

} // namespace
