#include "PROGINC/OutputFile.h"

#include "support/Captured.h"
#include "support/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

TEST(OutputFile, AppearsUnderItsNameWhenComplete) {
  const ScratchFolder folder;
  OutputFile file;
  file.Open(folder.Name("out"));
  file.Stream() << "text";
  EXPECT_FALSE(fs::exists(folder.Name("out")));
  file.Close();
  EXPECT_EQ(ReadWhole(folder.Name("out")), "text");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
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

fs::perms Permissions(const std::string& name) { return fs::status(name).permissions(); }

TEST(OutputFile, HasThePermissionsOfANewFile) {
  const ScratchFolder folder;
  const mode_t before = umask(027);
  {
    OutputFile file;
    file.Open(folder.Name("out"));
  }
  umask(before);
  EXPECT_EQ(Permissions(folder.Name("out")),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST(OutputFile, KeepsThePermissionsOfTheFileThatItReplaces) {
  const ScratchFolder folder;
  const std::string name = folder.Write("out", "old");
  const fs::perms own = fs::perms::owner_read | fs::perms::owner_write;
  fs::permissions(name, own);
  {
    OutputFile file;
    file.Open(name);
  }
  EXPECT_EQ(ReadWhole(name), "");
  EXPECT_EQ(Permissions(name), own);
}

TEST(OutputFile, LeavesAProtectedFileAlone) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is protected from root";
  const ScratchFolder folder;
  const std::string name = folder.Write("out", "old");
  fs::permissions(name, fs::perms::owner_read);
  Captured errors(std::cerr);
  {
    OutputFile file;
    file.Open(name);
    file.Stream() << "new";
  }
  EXPECT_EQ(ReadWhole(name), "old");
  EXPECT_NE(errors.Text().find(name), std::string::npos);
}

TEST(OutputFile, TwoUnderOneNameDoNotMixAndLeaveNoOtherFile) {
  const ScratchFolder folder;
  const std::string name = folder.Name("out");
  OutputFile first;
  OutputFile second;
  first.Open(name);
  second.Open(name);
  first.Stream() << "one";
  second.Stream() << "two";
  second.Close();
  first.Close();
  EXPECT_EQ(ReadWhole(name), "one");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(OutputFile, GoesThroughALinkAndIntoAPipe) {
  const ScratchFolder folder;
  const std::string target = folder.Write("target", "old");
  fs::create_symlink(target, folder.Name("link"));
  const std::string pipe = folder.Name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  for (const std::string& name : {folder.Name("link"), pipe}) {
    OutputFile file;
    file.Open(name);
    file.Stream() << "new";
  }
  EXPECT_EQ(ReadWhole(target), "new");
  EXPECT_TRUE(fs::is_symlink(folder.Name("link")));
  char text[4] = "";
  EXPECT_EQ(read(reader, text, 3), 3);
  EXPECT_STREQ(text, "new");
  close(reader);
}

TEST(OutputFile, LongNamesAreWrittenStraightAway) {
  const ScratchFolder folder;
  const std::string name = folder.Name(std::string(255, 'x'));
  {
    OutputFile file;
    file.Open(name);
    file.Stream() << "text";
  }
  EXPECT_EQ(ReadWhole(name), "text");
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
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  Captured errors(std::cerr);
  OutputFile file;
  file.Open("/dev/full");
  file.Stream() << "lost";
  file.Close();
  EXPECT_NE(errors.Text().find("/dev/full"), std::string::npos);
}

TEST(OutputFile, EmptyNameIsNoFile) {
  Captured errors(std::cerr);
  {
    OutputFile file;
    file.Open("");
  }
  EXPECT_NE(errors.Text().find("CAN NOT BE WRITTEN: !"), std::string::npos);
}

TEST(OutputFile, NotOpenedNothingHappens) {
  Captured errors(std::cerr);
  { const OutputFile file; }
  EXPECT_EQ(errors.Text(), "");
}

} // namespace
