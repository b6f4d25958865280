#include "spec/element_range.h"

#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

struct Case {
  std::string text;
  std::int32_t low, high;
  bool isRange;
};

TEST(ElementRange, ReadsNumbersAndRanges) {
  const Case cases[] = {
      {"7", 7, 7, false},
      {" 007 ", 7, 7, false},
      {"0", 0, 0, false},
      {"3-9", 3, 9, true},
      {"3 - 9", 3, 9, true},
      {"3_9", 3, 9, true},
      {"12-10", 10, 12, true},  // a reversed range is put in order
      {"5-5", 5, 5, true},
      {"2147483646", 2147483646, 2147483646, false},
      {"0-2147483646", 0, 2147483646, true},
  };
  for (const Case& c : cases) {
    const ElementRange range = ParseElementRange(c.text);
    EXPECT_EQ(range.fault, Fault::none) << c.text;
    EXPECT_EQ(range.low, c.low) << c.text;
    EXPECT_EQ(range.high, c.high) << c.text;
    EXPECT_EQ(range.isRange, c.isRange) << c.text;
  }
}

TEST(ElementRange, RefusesWhatIsNotDigitsAlone) {
  for (const std::string text : {"", " ", "-", "-3", "3-", "3a", "+3", "3.0", "1-2-3", "1--2",
                                 "2147483647", "3-2147483647", "99999999999999999999", "a-b"})
    EXPECT_EQ(ParseElementRange(text).fault, Fault::invalidElementNumber) << text;
}

}  // namespace
}  // namespace flanks
