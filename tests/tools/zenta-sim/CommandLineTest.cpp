#include "CommandLine.h"
#include "support/Captured.h"
#include "support/Files.h"
#include <gtest/gtest.h>

static int Command(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "zenta-sim");
  return sim::RunCommand(static_cast<int>(arguments.size()), arguments.data());
}

TEST(CommandLine, HelpNamesTheOptionsOfEveryGroup) {
  Captured out(std::cout);
  EXPECT_EQ(Command({"make", "--help"}), 0);
  for (const char* option :
       {"--seed", "--date", "--lat", "--types", "--receiver-p2c1", "--ion-interval", "--code-noise",
        "--clock-jumps", "--slip", "--outlier", "--sp3-missing", "--progress"})
    EXPECT_NE(out.Text().find(option), std::string::npos) << option;
}

TEST(CommandLine, WrongOptionsAreRefused) {
  Captured out(std::cout), err(std::cerr);
  EXPECT_NE(Command({}), 0);
  EXPECT_NE(Command({"make"}), 0);
  EXPECT_NE(Command({"make", "folder", "--wind-up", "west"}), 0);
  EXPECT_NE(Command({"make", "folder", "--interval", "soon"}), 0);
}

TEST(CommandLine, OptionsReachTheFiles) {
  const ScratchFolder folder;
  EXPECT_EQ(Command({"make",
                     folder.Path().c_str(),
                     "--no-progress",
                     "--date",
                     "2012-02-29",
                     "--start",
                     "06:00:00",
                     "--duration",
                     "00:30:00",
                     "--interval",
                     "10",
                     "--ion-interval",
                     "00:15:00",
                     "--types",
                     "C1,P2",
                     "--systems",
                     "G",
                     "--marker",
                     "ABCD",
                     "--with",
                     "tracking,p1p2"}),
            0);
  const std::string text = ReadWhole(folder.Name("simu0600.12o"));
  EXPECT_NE(text.find("     2    C1    P2"), std::string::npos);
  EXPECT_NE(text.find("ABCD"), std::string::npos);
  EXPECT_NE(text.find("\n 12  2 29  6  0  0.0000000  0"), std::string::npos);
  EXPECT_NE(text.find("\n 12  2 29  6 29 50.0000000  0"), std::string::npos);
  EXPECT_EQ(text.find("\n 12  2 29  6 30  0.0000000"), std::string::npos);
  EXPECT_EQ(text.find("R01"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(folder.Name("P1P21202.DCB")));
  EXPECT_TRUE(std::filesystem::exists(folder.Name("RECEIVER.LST")));
  EXPECT_FALSE(std::filesystem::exists(folder.Name("P1C11202.DCB")));
}

TEST(CommandLine, ProgressIsShownWhenWanted) {
  const ScratchFolder folder;
  Captured err(std::cerr);
  EXPECT_EQ(Command({"make", folder.Path().c_str(), "--duration", "00:10:00", "--ion-interval",
                     "00:10:00", "--progress"}),
            0);
  EXPECT_NE(err.Text().find("100 %"), std::string::npos);
}
