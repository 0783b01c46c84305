#include "zenta-view/Html.h"

#include <gtest/gtest.h>

namespace {

using namespace view;

TEST(Html, MarkupInATextIsText) {
  EXPECT_EQ(Escaped("<a href=\"x\">&'"), "&lt;a href=&quot;x&quot;&gt;&amp;&#39;");
}

TEST(Html, BytesThatAreNotUtf8BecomeReplacements) {
  EXPECT_EQ(Escaped("caf\xc3\xa9"), "caf\xc3\xa9");
  EXPECT_EQ(Escaped("caf\xe9!"), "caf\xef\xbf\xbd!");
  EXPECT_EQ(Escaped("\xc3"), "\xef\xbf\xbd");
  EXPECT_EQ(Escaped("\xc0\xaf"), "\xef\xbf\xbd\xef\xbf\xbd"); // a longer form of "/"
  EXPECT_EQ(Escaped(std::string("a\0b", 3)), "a\xef\xbf\xbd"
                                             "b");
}

} // namespace
