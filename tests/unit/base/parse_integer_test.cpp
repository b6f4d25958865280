#include "base/parse_integer.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace flanks {
namespace {

struct IntegerCase {
  std::string_view text;
  std::int32_t limit;
  std::int32_t value;
  NumberFault fault;
};

class ParseIntegerOf : public ::testing::TestWithParam<IntegerCase> {};

TEST_P(ParseIntegerOf, GivesValueAndFault) {
  const IntegerCase& c = GetParam();
  const WholeNumber number = ParseInteger(c.text, c.limit);
  EXPECT_EQ(number.value, c.value) << c.text;
  EXPECT_EQ(number.fault, c.fault) << c.text;
}

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

INSTANTIATE_TEST_SUITE_P(
    ParseInteger, ParseIntegerOf,
    ::testing::Values(IntegerCase{"12", 255, 12, NumberFault::none},
                      IntegerCase{"-12", 255, 12, NumberFault::none},  // the absolute value
                      IntegerCase{"3x", 255, 3, NumberFault::none},    // the rest is ignored
                      IntegerCase{"300", 255, 0, NumberFault::tooLarge},
                      IntegerCase{"-300", 255, 0, NumberFault::tooLarge},
                      IntegerCase{"255", 255, 255, NumberFault::none},
                      IntegerCase{"255.5", 255, 0, NumberFault::tooLarge},  // before notWhole
                      IntegerCase{"2.5", 255, 2, NumberFault::notWhole},
                      IntegerCase{".5", 255, 0, NumberFault::notWhole},
                      IntegerCase{"2.0", 255, 2, NumberFault::none},
                      IntegerCase{"abc", 255, 0, NumberFault::notNumeric},
                      IntegerCase{"", 255, 0, NumberFault::notNumeric},
                      IntegerCase{"0", 255, 0, NumberFault::none},
                      IntegerCase{"0", 0, 0, NumberFault::none},
                      IntegerCase{"x0", 255, 0, NumberFault::none},  // the digit 0 is in the text
                      IntegerCase{"1E2", 255, 100, NumberFault::none},
                      IntegerCase{"1E9999", 255, 0, NumberFault::tooLarge},
                      IntegerCase{"2147483647", kLargest, kLargest, NumberFault::none},
                      IntegerCase{"2147483648", kLargest, 0, NumberFault::tooLarge}));

struct ElementCase {
  std::string_view text;
  std::int32_t value;
  NumberFault fault;
};

class ElementNumberOf : public ::testing::TestWithParam<ElementCase> {};

TEST_P(ElementNumberOf, IsDigitsAlone) {
  const ElementCase& c = GetParam();
  const WholeNumber number = ParseElementNumber(c.text);
  EXPECT_EQ(number.value, c.value) << c.text;
  EXPECT_EQ(number.fault, c.fault) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    ParseElementNumber, ElementNumberOf,
    ::testing::Values(
        ElementCase{"12", 12, NumberFault::none}, ElementCase{" 12 ", 12, NumberFault::none},
        ElementCase{"0007", 7, NumberFault::none}, ElementCase{"0", 0, NumberFault::none},
        ElementCase{"2147483646", 2147483646, NumberFault::none},
        ElementCase{"2147483647", 0, NumberFault::tooLarge},
        ElementCase{"99999999999999999999", 0, NumberFault::tooLarge},
        ElementCase{"3a", 0, NumberFault::notNumeric},
        ElementCase{"99999999999999999999a", 0, NumberFault::notNumeric},
        ElementCase{"+3", 0, NumberFault::notNumeric},
        ElementCase{"-3", 0, NumberFault::notNumeric},
        ElementCase{"3.0", 0, NumberFault::notNumeric},
        ElementCase{"1E2", 0, NumberFault::notNumeric},
        ElementCase{"1 2", 0, NumberFault::notNumeric},
        ElementCase{"\t3", 0, NumberFault::notNumeric}, ElementCase{"", 0, NumberFault::notNumeric},
        ElementCase{"   ", 0, NumberFault::notNumeric}));

}  // namespace
}  // namespace flanks
