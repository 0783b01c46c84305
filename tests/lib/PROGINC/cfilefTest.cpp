#include "PROGINC/cfilef.h"

#include "support/Files.h"

namespace {

TEST(FileExists, WhateverOpensForReading) {
  const ScratchFolder folder;
  EXPECT_TRUE(FileExists(folder.Write("some", "text").c_str()));
  EXPECT_TRUE(FileExists(folder.Write("empty", "")));
  EXPECT_TRUE(FileExists(folder.Path().c_str()));
  EXPECT_FALSE(FileExists(folder.Name("none").c_str()));
  EXPECT_FALSE(FileExists(folder.Name("none/none")));
  EXPECT_FALSE(FileExists(""));
}

TEST(RemFile, RemovesWhatIsThere) {
  const ScratchFolder folder;
  const std::string name = folder.Write("some", "text");
  EXPECT_TRUE(RemFile(name));
  EXPECT_FALSE(FileExists(name));
  EXPECT_FALSE(RemFile(name));
}

TEST(GetBasename, BehindTheLastSlash) {
  EXPECT_EQ(GetBasename("data/2011/cagz2830.11o"), "cagz2830.11o");
  EXPECT_EQ(GetBasename("cagz2830.11o"), "cagz2830.11o");
  EXPECT_EQ(GetBasename("data/"), "");
  EXPECT_EQ(GetBasename(""), "");
}

TEST(GetDirname, BeforeTheLastSlash) {
  EXPECT_EQ(GetDirname("data/2011/cagz2830.11o"), "data/2011");
  EXPECT_EQ(GetDirname("/cagz2830.11o"), "/");
  EXPECT_EQ(GetDirname("cagz2830.11o"), ".");
}

} // namespace
