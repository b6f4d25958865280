#include "output/protected_label.h"

#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

TEST(ProtectForExcel, KeepsWhatLooksLikeANumberADateOrAFormula) {
  for (const std::string text :
       {"12",     "12-3",   " 7 ",   "1.5",         "-4",       "1,234", "1,234,567.8",
        "1E5",    ".5",     "3/4",   "1/2/2024",    "1-2-2024", "3.4.5", "2 + 2",
        "5 Jan",  "jan-20", "May 5", "5 MARCH, 99", "1 Sep 24", "=A1",   "+plus",
        "-minus", "=",      "1^2",   "2*3",         "--1",      "1 2"})
    EXPECT_EQ(ProtectForExcel(text), text + "\xC2\xA0") << text;
}

TEST(ProtectForExcel, LeavesOtherTextAlone) {
  for (const std::string text :
       {"", "A12", "Ann", "12a", "1,23", "May", "Mayor 5", "*", "/", "a-b", "5 Jan 1 2", "1.2.3.4",
        "Jan Feb 5", "rater 1", " =x", "12:30", "1,2345", "5 Jan\xC3\xA9"})
    EXPECT_EQ(ProtectForExcel(text), text) << text;
}

}  // namespace
}  // namespace flanks
