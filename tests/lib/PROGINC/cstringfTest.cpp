#include "PROGINC/cstringf.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

/// Runs \p change on a copy of \p text.
template <class Change> std::string After(const char* text, Change change) {
  char s[64];
  std::strcpy(s, text);
  change(s);
  return s;
}

TEST(substr, CopiesThePartAndTerminatesIt) {
  char out[16];
  substr("abcdef", 2, 3, out);
  EXPECT_STREQ(out, "cde");
  substr("abcdef", 0, 6, out);
  EXPECT_STREQ(out, "abcdef");
  substr("abcdef", 2, out);
  EXPECT_STREQ(out, "cdef");
}

TEST(substr, MoreThanRemainsCopiesUpToTheEnd) {
  char out[16];
  substr("abcdef", 4, 100, out);
  EXPECT_STREQ(out, "ef");
}

TEST(substr, NothingOutsideOfTheText) {
  char out[16] = "before";
  substr("abc", 3, 2, out);
  EXPECT_STREQ(out, "");
  for (const int start : {4, 1000, -1}) {
    std::strcpy(out, "before");
    substr("abc", start, 2, out);
    EXPECT_STREQ(out, "") << start;
    std::strcpy(out, "before");
    substr("abc", start, out);
    EXPECT_STREQ(out, "") << start;
  }
  substr("abc", 1, 0, out);
  EXPECT_STREQ(out, "");
  substr("abc", 1, -5, out);
  EXPECT_STREQ(out, "");
}

TEST(substr, LooksNoFurtherThanItCopies) {
  // Room for the result and its terminator, and a text that ends nowhere.
  const char unterminated[3] = {'a', 'b', 'c'};
  char out[3];
  substr(unterminated, 1, 2, out);
  EXPECT_STREQ(out, "bc");
}

TEST(substr, ResultMayReplaceTheText) {
  char s[] = "abcdef";
  substr(s, 2, s);
  EXPECT_STREQ(s, "cdef");
  substr(s, 1, 2, s);
  EXPECT_STREQ(s, "de");
}

TEST(trimr, RemovesTrailingBlanksAlone) {
  EXPECT_EQ(After("  a b  ", trimr), "  a b");
  EXPECT_EQ(After("a\t ", trimr), "a\t");
  EXPECT_EQ(After("a", trimr), "a");
}

TEST(trimr, BlanksOnlyAndEmptyGiveEmpty) {
  EXPECT_EQ(After("    ", trimr), "");
  EXPECT_EQ(After("", trimr), "");
}

TEST(triml, RemovesLeadingBlanksAlone) {
  EXPECT_EQ(After("  a b  ", triml), "a b  ");
  EXPECT_EQ(After(" \ta", triml), "\ta");
  EXPECT_EQ(After("    ", triml), "");
  EXPECT_EQ(After("", triml), "");
}

TEST(trim, RemovesBlanksAtBothEnds) {
  EXPECT_EQ(After("  a b  ", trim), "a b");
  EXPECT_EQ(After("   ", trim), "");
  EXPECT_EQ(After("", trim), "");
}

TEST(indexLast, SearchesFromTheTerminator) {
  EXPECT_EQ(indexLast("a/b/c", '/'), 3);
  EXPECT_EQ(indexLast("/abc", '/'), 0);
  EXPECT_EQ(indexLast("abc", '/'), -1);
  EXPECT_EQ(indexLast("", '/'), -1);
  EXPECT_EQ(indexLast("abc", '\0'), 3);
}

TEST(strcopy, FillsAndTerminates) {
  EXPECT_EQ(After("before", [](char* s) { strcopy(s, '-', 10); }), "----------");
  EXPECT_EQ(After("before", [](char* s) { strcopy(s, '-', 0); }), "");
  EXPECT_EQ(After("before", [](char* s) { strcopy(s, '-', -1); }), "");
  EXPECT_EQ(After("before", [](char* s) { strng(s, '*', 3L); }), "***");
  EXPECT_EQ(After("before", [](char* s) { strng(s, '*', -3L); }), "");
}

} // namespace
