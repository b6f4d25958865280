#include "report/format/fixed_field.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "base/single.h"

namespace flanks {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

struct FieldCase {
  double value;
  int width, decimals;
  std::string_view shows;
};

void ExpectFields(std::initializer_list<FieldCase> cases) {
  for (const FieldCase& c : cases) {
    EXPECT_EQ(FixedField(c.value, c.width, c.decimals), c.shows)
        << c.value << " in " << c.width << " places, " << c.decimals << " decimals";
  }
}

TEST(FixedField, RightAlignsWithoutAZeroBeforeThePoint) {
  ExpectFields({{0.5, 6, 2, "   .50"},
                {123.456, 7, 2, " 123.46"},
                {0, 3, 0, "  0"},
                {0, 6, 2, "   .00"},
                {-0.0, 6, 2, "   .00"},
                {-7, 4, 0, "  -7"},
                {7, 1, 0, "7"},
                {12345.678, 9, 3, "12345.678"},
                {0.001, 8, 3, "    .001"}});
}

TEST(FixedField, RoundsHalfAwayFromZero) {
  ExpectFields({{2.5, 3, 0, "  3"},
                {-2.5, 3, 0, " -3"},
                {-0.005, 6, 2, "  -.01"},
                {-0.05, 4, 1, " -.1"},
                {-0.5, 2, 0, "-1"},
                {0.125, 5, 2, "  .13"},
                {99.9951, 6, 2, "100.00"}});
}

TEST(FixedField, RoundsTheProductAsItStandsInSixtyFourBits) {
  // 1.005 * 10 * 10 is 100.49999999999999, 9.995 * 10 * 10 is 999.4999999999999.
  ExpectFields({{1.005, 6, 2, "  1.00"}, {9.995, 5, 2, " 9.99"}});
}

TEST(FixedField, WhatRoundsToZeroHasNoSign) {
  ExpectFields({{-0.004, 6, 2, "   .00"}, {-0.49, 2, 0, " 0"}, {-1E-300, 5, 3, " .000"}});
}

TEST(FixedField, LosesDecimalsFirst) {
  ExpectFields({{1234567.89, 7, 2, "1234567"},
                {-1234.56, 5, 2, "-1234"},
                {123.45, 4, 2, "123."},
                {123.45, 3, 2, "123"},
                {99.995, 5, 2, "100.0"},
                {999.995, 5, 2, "1000."},
                {99.96, 4, 1, "100."},
                {-99.95, 4, 1, "-100"}});
}

TEST(FixedField, ThenShowsThePowerOfTenThatIsMissing) {
  ExpectFields({{1234.56, 3, 1, "1E3"},
                {123456, 4, 0, "12E4"},
                {12345678, 4, 0, "12E6"},
                {1234, 3, 0, "1E3"},
                {100000, 5, 0, "100E3"},
                {1000000, 6, 0, "1000E3"},
                {-1234, 4, 0, "-1E3"}});
}

TEST(FixedField, APowerOfTwoDigitsShowsItsFirst) {
  ExpectFields({{12345678901234, 4, 0, "12E1"}, {1E20, 12, 0, "1000000000E1"}});
}

TEST(FixedField, ANarrowFieldShowsAStar) {
  ExpectFields({{99999, 2, 0, "9*"}, {12, 1, 0, "*"}, {12, 0, 0, ""}, {-5, 1, 0, "*"}});
}

TEST(FixedField, TakesAbsoluteWidthsAndMakesRoomForTheDecimals) {
  ExpectFields({{1.5, -6, -2, "  1.50"}, {5, 1, 2, "5.0"}, {0.5, 0, 2, ".50"}});
}

TEST(FixedField, ShowsFifteenDigitsOfHugeValues) {
  ExpectFields({{1E15, 17, 0, " 1000000000000000"},
                {999999999999999, 15, 0, "999999999999999"},
                {1234567890123456789.0, 20, 0, " 1234567890123460000"},
                {-1.5E15, 17, 0, "-1500000000000000"},
                {1.5E15, 19, 1, " 1500000000000000.0"},
                {1E20, 21, 0, "100000000000000000000"},
                {0.25, 24, 22, " .2500000000000000000000"},
                {1E-20, 24, 22, " .0000000000000000000100"}});
}

TEST(FixedField, ComesThroughWhatIsNoOrdinaryNumber) {
  ExpectFields({{kInfinity, 6, 2, "1797E3"},
                {-kInfinity, 6, 2, "-179E3"},
                {kNoNumber, 6, 2, "     ?"},
                {kNoNumber, 1, 0, "?"},
                {kNoNumber, 0, 0, ""}});
  EXPECT_EQ(FixedField(1E308, 310, 2), "1" + std::string(306, '0') + ".00")
      << "a product beyond the range is not taken";
}

TEST(FixedField, HasFormsForNarrowerValues) {
  EXPECT_EQ(FixedFieldSingle(0.1f, 12, 9), "  .100000001") << "widened, not read again";
  EXPECT_EQ(FixedFieldInteger(-32768, 7, 0), " -32768");
}

TEST(FixedField, AppendsToALine) {
  std::string line = "|";
  AppendFixedField(line, 1.25, 6, 1);
  AppendFixedField(line, 123456, 4, 0);
  EXPECT_EQ(line, "|   1.312E4");
}

TEST(NumberText, ShowsWholeValuesPlainly) {
  EXPECT_EQ(NumberText(3), "3");
  EXPECT_EQ(NumberText(-3), "-3");
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(NumberText(100), "100");
  EXPECT_EQ(NumberText(123456789012), "123456789012");
  EXPECT_EQ(NumberText(1E18), "1000000000000000000");
  EXPECT_EQ(NumberText(2.5), "2.5");
  EXPECT_EQ(NumberText(12.36), "12.4");
  EXPECT_EQ(NumberText(kNoNumber), "?");
}

TEST(OneDecimalText, KeepsOneDigitBehindThePoint) {
  EXPECT_EQ(OneDecimalText(3), "3.0");
  EXPECT_EQ(OneDecimalText(12.34), "12.3");
  EXPECT_EQ(OneDecimalText(12.35), "12.3");
  EXPECT_EQ(OneDecimalText(12.36), "12.4");
  EXPECT_EQ(OneDecimalText(0.06), ".1");
  EXPECT_EQ(OneDecimalText(99.96), "100.0");
  EXPECT_EQ(OneDecimalText(2.25), "2.2");
  EXPECT_EQ(OneDecimalText(0.5), ".5");
  EXPECT_EQ(OneDecimalText(-3), "-2.9") << "-30 + .49999 is cut";
  EXPECT_EQ(OneDecimalText(0.950001), "1.0") << "the sum is whole";
}

TEST(OneDecimalText, ATextWithAnExponentBecomesPointZero) {
  EXPECT_EQ(OneDecimalText(0), ".0");
  EXPECT_EQ(OneDecimalText(0.04), ".0");
  EXPECT_EQ(OneDecimalText(-0.049999), ".0");
  EXPECT_EQ(OneDecimalText(1E15), ".0");
  EXPECT_EQ(OneDecimalText(1E308), ".0");
  EXPECT_EQ(OneDecimalText(kInfinity), "?");
}

TEST(DecimalsText, HasNoZeroBeforeThePoint) {
  EXPECT_EQ(DecimalsText(0.05, 2), ".05");
  EXPECT_EQ(DecimalsText(1, 2), "1.00");
  EXPECT_EQ(DecimalsText(-0.5, 2), "-.50");
  EXPECT_EQ(DecimalsText(0.5, 4), ".5000");
  EXPECT_EQ(DecimalsText(0, 2), ".00");
  EXPECT_EQ(DecimalsText(-0.001, 2), ".00");
  EXPECT_EQ(DecimalsText(999999, 2), "999999.00");
  EXPECT_EQ(DecimalsText(-12.5, 0), "-12");
  EXPECT_EQ(DecimalsText2(1.5), "1.50");
  EXPECT_EQ(DecimalsText4(-1.5), "-1.5000");
}

TEST(DecimalsText, RoundsHalfToEven) {
  EXPECT_EQ(DecimalsText(12.345, 2), "12.34");
  EXPECT_EQ(DecimalsText(0.125, 2), ".12");
  EXPECT_EQ(DecimalsText(0.375, 2), ".38");
}

TEST(DecimalsText, ShowsQuestionMarksFromAMillionOn) {
  EXPECT_EQ(DecimalsText(1000000, 2), "?.??");
  EXPECT_EQ(DecimalsText(-1000000, 2), "?.??");
  EXPECT_EQ(DecimalsText(1E300, 4), ".0???");
  EXPECT_EQ(DecimalsText(kNoNumber, 2), "?.??");
  EXPECT_EQ(DecimalsText(999999.9999, 4), "999999.9999") << "more than 32 bits hold";
}

TEST(SmallText, HasNoExponent) {
  EXPECT_EQ(SmallText(1E-5f), "0.00001");
  EXPECT_EQ(SmallText(-1E-5f), "-0.00001");
  EXPECT_EQ(SmallText(2E-6f), "0.000002");
  EXPECT_EQ(SmallText(0.25f), ".25");
  EXPECT_EQ(SmallText(-3.5f), "-3.5");
  EXPECT_EQ(SmallText(1E-4f), ".0001");
  EXPECT_EQ(SmallText(0.0f), "0");
  EXPECT_EQ(SmallText(1E7f), "10000000");
  EXPECT_EQ(SmallText(1E-30f), "0");
  EXPECT_EQ(SmallText(-1E-30f), "0");
}

TEST(RoundInteger, RoundsHalfAwayFromZeroWithinSixteenBits) {
  EXPECT_EQ(RoundInteger(2.5), 3);
  EXPECT_EQ(RoundInteger(-2.5), -3);
  EXPECT_EQ(RoundInteger(2.4999), 2);
  EXPECT_EQ(RoundInteger(-0.4), 0);
  EXPECT_EQ(RoundInteger(40000), 32760);
  EXPECT_EQ(RoundInteger(-40000), -32760);
  EXPECT_EQ(RoundInteger(1E300), 32760);
  EXPECT_EQ(RoundInteger(kNoNumber), 0);
}

TEST(RoundLong, RoundsHalfAwayFromZeroWithinThirtyTwoBits) {
  EXPECT_EQ(RoundLong(0.5), 1);
  EXPECT_EQ(RoundLong(-0.5), -1);
  EXPECT_EQ(RoundLong(2147483646.5), 2147483647);
  EXPECT_EQ(RoundLong(1E10), 2147483647);
  EXPECT_EQ(RoundLong(-kInfinity), -2147483648LL);
  EXPECT_EQ(RoundLong(kNoNumber), 0);
}

TEST(FloorMin, LiftsWhatIsTooSmallToDivideBy) {
  EXPECT_EQ(FloorMin(0.0), 1E-9);
  EXPECT_EQ(FloorMin(-5.0), 1E-9);
  EXPECT_EQ(FloorMin(0.0f), 1E-9f);
  EXPECT_EQ(FloorMin(0.5), 0.5);
}

}  // namespace
}  // namespace flanks
