// The vertical scale of a ruler.  Expected rows are worked by hand from row = last - lines (x -
// low).
#include "report/table6_scale.h"

#include <gtest/gtest.h>
#include <map>

namespace flanks {
namespace {

Yardstick Lines(double lines, double low = 0.0, double high = 0.0) {
  return {0, lines, low, high, false};
}

std::map<int, double> TicksOf(const RulerScale& scale) {
  std::map<int, double> ticks;
  for (int row = 0; row < scale.rows(); ++row)
    if (const auto tick = scale.TickOf(row)) ticks[row] = *tick;
  return ticks;
}

TEST(RulerScale, TwoLinesToAUnitFromMinus2To3) {
  const RulerScale scale = ScaleRuler(-2.0, 3.0, Lines(2.0));
  EXPECT_EQ(scale.last, 10);
  EXPECT_EQ(TicksOf(scale),
            (std::map<int, double>{{10, -2}, {8, -1}, {6, 0}, {4, 1}, {2, 2}, {0, 3}}));
  EXPECT_DOUBLE_EQ(scale.ValueOf(0), 3.0);
  EXPECT_DOUBLE_EQ(scale.ValueOf(9), -1.5);
  EXPECT_EQ(scale.RowOf(-2.0), 10);
  EXPECT_EQ(scale.RowOf(-1.76), 10);  // 10 - Round(.48)
  EXPECT_EQ(scale.RowOf(-1.75), 9);   // 10 - Round(.5), away from zero
  EXPECT_EQ(scale.RowOf(3.0), 0);
}

TEST(RulerScale, MeasuresBeyondTheEndsStandInTheEndRows) {
  const RulerScale scale = ScaleRuler(-9.0, 9.0, Lines(5.0, -2.0, 2.0));
  EXPECT_EQ(scale.last, 20);
  EXPECT_EQ(scale.RowOf(9.0), 0);
  EXPECT_EQ(scale.RowOf(-9.0), 20);
  EXPECT_EQ(scale.RowOf(1E+30), 0);
}

TEST(RulerScale, ARangeOf0GetsAUnitOnEitherSide) {
  const RulerScale scale = ScaleRuler(.5, .5, Yardstick{});
  EXPECT_DOUBLE_EQ(scale.low, -.5);
  EXPECT_DOUBLE_EQ(scale.high, 1.5);
  EXPECT_DOUBLE_EQ(scale.lines, 10.0);  // 50 / 2 = 25, at most 10
  EXPECT_EQ(scale.last, 20);
}

TEST(RulerScale, TheProgramChoosesFiftyRowsOneToTenToAUnit) {
  EXPECT_DOUBLE_EQ(ScaleRuler(-3.0, 4.5, Yardstick{}).lines, 50.0 / 7.5);
  EXPECT_EQ(ScaleRuler(-3.0, 4.5, Yardstick{}).last, 50);
  EXPECT_DOUBLE_EQ(ScaleRuler(0.0, 100.0, Yardstick{}).lines, 1.0);
  EXPECT_EQ(ScaleRuler(0.0, 100.0, Yardstick{}).last, 100);
  EXPECT_DOUBLE_EQ(ScaleRuler(0.0, 1.0, Yardstick{}).lines, 10.0);
  EXPECT_DOUBLE_EQ(ScaleRuler(0.0, 1.0, Lines(-3.0)).lines, 10.0);
}

TEST(RulerScale, ALowAboveAHighIsTurnedAndEqualOnesAreNone) {
  const RulerScale turned = ScaleRuler(-1.0, 1.0, Lines(1.0, 3.0, -2.0));
  EXPECT_DOUBLE_EQ(turned.low, -2.0);
  EXPECT_DOUBLE_EQ(turned.high, 3.0);
  EXPECT_DOUBLE_EQ(ScaleRuler(-1.0, 1.0, Lines(1.0, 2.0, 2.0)).high, 1.0);
}

TEST(RulerScale, RowsAreCutToWholeOnesAndRoundingCostsNone) {
  EXPECT_EQ(ScaleRuler(-1.0986, 1.0986, Yardstick{}).last, 21);  // 10 x 2.1972
  EXPECT_EQ(ScaleRuler(0.0, .6, Lines(5.0)).last, 3);            // .6 x 5 in 64 bits
  EXPECT_EQ(ScaleRuler(0.0, 0.1f * 3.0f, Lines(10.0)).last, 3);
}

TEST(RulerScale, AtMost255RowsAndThenTicksKeepFiveRowsDistance) {
  EXPECT_EQ(ScaleRuler(0.0, 25.4, Lines(10.0)).last, 254);
  const RulerScale close = ScaleRuler(0.0, 50.0, Lines(10.0));  // 500 rows: 250 / 50
  EXPECT_EQ(close.last, 250);
  EXPECT_DOUBLE_EQ(close.tick, 1.0);
  const RulerScale wide = ScaleRuler(-250.0, 250.0, Yardstick{});  // 501 rows: 250 / 500
  EXPECT_EQ(wide.last, 250);
  EXPECT_DOUBLE_EQ(wide.lines, .5);
  EXPECT_DOUBLE_EQ(wide.tick, 10.0);  // 5 rows; 5 units would be 2.5
  EXPECT_DOUBLE_EQ(wide.TickOf(125).value_or(-1), 0.0);
  EXPECT_DOUBLE_EQ(wide.TickOf(120).value_or(-1), 10.0);
  EXPECT_FALSE(wide.TickOf(121).has_value());
  const RulerScale huge = ScaleRuler(-8E4, 8E4, Yardstick{});
  EXPECT_EQ(huge.last, 250);
  EXPECT_DOUBLE_EQ(huge.tick, 5000.0);  // 160,000 / 250 = 640 a row: 5 rows are 3,200
  EXPECT_EQ(TicksOf(huge).size(), 33U);
}

TEST(RulerScale, SmallUnitsHaveFinerRowsAndTicks) {
  // 3 logits of .01 on either side: 50 / .06 = 833 lines, not above 10 / .01; ticks at hundredths.
  const RulerScale scale = ScaleRuler(-.03, .03, Yardstick{}, .01);
  EXPECT_EQ(scale.last, 50);
  EXPECT_EQ(scale.tickDecimals, 2);
  const auto ticks = TicksOf(scale);
  ASSERT_EQ(ticks.size(), 7U);
  EXPECT_EQ(ticks.at(25), 0.0);
  EXPECT_NEAR(ticks.at(0), .03, 1E-12);
  EXPECT_NEAR(ticks.at(17), .01, 1E-12);  // 25 - 8.33
  EXPECT_EQ(ScaleRuler(-.0001, .0001, Yardstick{}, .01).tickDecimals, 3);
  EXPECT_EQ(ScaleRuler(-.0001, .0001, Yardstick{}, .01).last, 0);  // a tenth of a row
  // A range of a unit or more has whole units, and so has a small range of whole logits.
  EXPECT_EQ(ScaleRuler(-.5, .5, Yardstick{}, .1).tickDecimals, 0);
  EXPECT_EQ(ScaleRuler(-.2, .2, Yardstick{}, 1.0).last, 4);
}

TEST(RulerScale, OneLineToAUnitMakesEachRowATick) {
  EXPECT_EQ(TicksOf(ScaleRuler(-3.0, 3.0, Lines(1.0))).size(), 7U);
}

TEST(RulerScale, FewerLinesThanUnitsHaveTicksFiveRowsApart) {
  const RulerScale scale = ScaleRuler(0.0, 100.0, Lines(.5));
  EXPECT_EQ(scale.last, 50);
  EXPECT_DOUBLE_EQ(scale.tick, 10.0);
}

}  // namespace
}  // namespace flanks
