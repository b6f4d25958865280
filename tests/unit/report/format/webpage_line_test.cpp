#include "report/format/webpage_line.h"

#include <gtest/gtest.h>

namespace flanks {
namespace {

TEST(WebpageLine, TheFirstLineOpensThePage) {
  WebpageLine page;
  EXPECT_EQ(page.Convert("\x0F  1  ab \x0F"),
            "<BODY><FONT FACE='Lucida Console, Andale Mono, Courier New'>"
            "&#9474; &nbsp;1 &nbsp;ab &#9474;<br>");
  EXPECT_EQ(page.Convert(""), "<br>");
  EXPECT_EQ(page.Convert("a"), "a<br>");
}

TEST(WebpageLine, TheFontIsTheUsers) {
  WebpageLine page("Courier", true);
  EXPECT_EQ(page.Convert(""), "<BODY><FONT FACE='Courier'><B><br>");
  EXPECT_EQ(page.Convert(""), "<br>");
}

TEST(WebpageLine, RunsOfBlanksAlternate) {
  WebpageLine page;
  page.Convert("");
  EXPECT_EQ(page.Convert("a  b   c"), "a &nbsp;b &nbsp; c<br>");
  EXPECT_EQ(page.Convert("   x"), "&nbsp; &nbsp;x<br>");
  EXPECT_EQ(page.Convert("x   "), "x<br>") << "trailing blanks are dropped";
  EXPECT_EQ(page.Convert("    "), "<br>");
}

TEST(WebpageLine, EveryBoxCodeHasItsEntity) {
  WebpageLine page;
  page.Convert("");
  EXPECT_EQ(page.Convert("\x0E\x0F\x10\x14\x15\x16\x17\x18\x19\x1C\x1D\x11\x12\x13"),
            "&#9472;&#9474;&#9500;&#9532;&#9508;&#9484;&#9516;&#9488;&#9492;&#9524;&#9496;"
            "&#9578;&#9569;&#9566;<br>");
}

TEST(WebpageLine, LabelsAreCopiedAsTheyAre) {
  WebpageLine page;
  page.Convert("");
  EXPECT_EQ(page.Convert("<b>R&D</b> caf\xC3\xA9"), "<b>R&D</b> caf\xC3\xA9<br>");
}

}  // namespace
}  // namespace flanks
