#include "OutputFile.h"

#include "support/Captured.h"
#include "support/Files.h"

namespace {

TEST(OutputFile, AppearsUnderItsNameWhenComplete) {
  const ScratchFolder folder;
  OutputFile file;
  file.Open(folder.Name("out"));
  file.Stream() << "text";
  EXPECT_FALSE(std::filesystem::exists(folder.Name("out")));
  file.Close();
  EXPECT_EQ(ReadWhole(folder.Name("out")), "text");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(OutputFile, ReplacesWhatWasThere) {
  const ScratchFolder folder;
  const std::string name = folder.Write("out", "much longer than the new text");
  OutputFile file;
  file.Open(name);
  file.Stream() << "new";
  file.Close();
  EXPECT_EQ(ReadWhole(name), "new");
}

TEST(OutputFile, FileThatCantBeCreatedIsNamedInAWarning) {
  Captured errors(std::cerr);
  {
    OutputFile file;
    file.Open("/nowhere/at/all");
    EXPECT_TRUE(file.IsInUse());
    file.Stream() << "lost";
  }
  EXPECT_EQ(errors.Text(), "\n#### Zenta: Warning -> OUTPUT FILE CAN NOT BE WRITTEN: "
                           "/nowhere/at/all! ####\n     Continuing Zenta ... \n\n");
}

TEST(OutputFile, FullDeviceIsReported) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  Captured errors(std::cerr);
  OutputFile file;
  file.Open("/dev/full");
  file.Stream() << "lost";
  file.Close();
  EXPECT_NE(errors.Text().find("/dev/full"), std::string::npos);
}

TEST(OutputFile, NotOpenedNothingHappens) {
  Captured errors(std::cerr);
  { const OutputFile file; }
  EXPECT_EQ(errors.Text(), "");
}

} // namespace
