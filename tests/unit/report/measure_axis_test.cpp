// The axis of the plots.  All ticks and columns were worked out by hand: the column of a measure is
// its share of the range times 67, rounded.
#include "report/measure_axis.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "base/text.h"

namespace flanks {
namespace {

std::string Labels(const MeasureAxis& axis) {
  std::string all;
  for (const AxisTick& tick : axis.ticks) all += (all.empty() ? "" : " ") + tick.label;
  return all;
}

std::vector<int> Columns(const MeasureAxis& axis) {
  std::vector<int> columns;
  for (const AxisTick& tick : axis.ticks) columns.push_back(tick.column);
  return columns;
}

// Labels of at most 3 columns take 6 with their space, so (68 + 5) / 6 = 12 fit; of 4 columns
// (68 + 6) / 7 = 10.  Steps of .5 have "-3.5": .8 is ideal for them, and 1 is nearer to it.
TEST(MeasureAxisTicks, EightLogitsHaveOneForEachLogit) {
  const MeasureAxis axis = LayOutAxis(-4.0, 4.0);
  EXPECT_EQ(Labels(axis), "-4 -3 -2 -1 0 1 2 3 4");
  // 67 / 8 = 8.375 columns to a logit.
  EXPECT_EQ(Columns(axis), (std::vector<int>{0, 8, 17, 25, 34, 42, 50, 59, 67}));
}

TEST(MeasureAxisTicks, TheStepIsTheNearestOfOneTwoFiveAndTenTimesAPowerOfTen) {
  struct Case {
    double low, high;
    std::string labels;
  };
  const Case cases[] = {
      {-1.0, 1.0, "-1 -.8 -.6 -.4 -.2 0 .2 .4 .6 .8 1"},  // 2 / 12 = .17: .2
      // 7.2 / 10 = .72 is nearer to .5, by .22, than to 1, by .28.
      {-3.2, 4.0, "-3 -2.5 -2 -1.5 -1 -.5 0 .5 1 1.5 2 2.5 3 3.5 4"},
      {-3.4, 4.2, "-3 -2 -1 0 1 2 3 4"},                                // 7.6 / 10 = .76
      {-8.0, 8.0, "-8 -7 -6 -5 -4 -3 -2 -1 0 1 2 3 4 5 6 7 8"},         // 16 / 12 = 1.3: 1
      {-50.0, 50.0, "-50 -40 -30 -20 -10 0 10 20 30 40 50"},            // 100 / 12 = 8.3: 10
      {0.0, 2.9, "0 .2 .4 .6 .8 1 1.2 1.4 1.6 1.8 2 2.2 2.4 2.6 2.8"},  // 2.9 / 12 = .24: .2
      {.013, .052, ".015 .020 .025 .030 .035 .040 .045 .050"},          // .039 / 10 = .0039: .005
      {-300.0, 500.0, "-300 -200 -100 0 100 200 300 400 500"},          // 800 / 10 = 80: 100
  };
  for (const Case& c : cases) EXPECT_EQ(Labels(LayOutAxis(c.low, c.high)), c.labels);
}

// "-250" takes 7 columns with its space, so (68 + 6) / 7 = 10 fit; "-2000" takes 8, so 9 fit: 7000
// over 9 is 778, which is nearer to 1000 than to 500.
TEST(MeasureAxisTicks, LongerLabelsStandFurtherApart) {
  EXPECT_EQ(Labels(LayOutAxis(-250, 250)), "-250 -200 -150 -100 -50 0 50 100 150 200 250");
  EXPECT_EQ(Labels(LayOutAxis(-260, 260)), "-250 -200 -150 -100 -50 0 50 100 150 200 250");
  EXPECT_EQ(Labels(LayOutAxis(-2500, 4500)), "-2000 -1000 0 1000 2000 3000 4000");
}

// 40 / 12 = 3.3 is nearer to 2 than to 5; but "-20", "-18" and so on would stand 3 columns apart.
// 80000 / 8 is 10000, 8 columns; but "-30000" is moved inside the frame, up to "-20000".
TEST(MeasureAxisTicks, WhereLabelsWouldTouchTheStepIsLarger) {
  EXPECT_EQ(Labels(LayOutAxis(-20.0, 20.0)), "-20 -15 -10 -5 0 5 10 15 20");
  EXPECT_EQ(Labels(LayOutAxis(-30000.0, 50000.0)), "-20000 0 20000 40000");
}

TEST(MeasureAxisTicks, LabelsNeverTouch) {
  for (double width = .00011; width < 200000.0; width *= 1.13) {
    for (const double middle : {0.0, 33.3 * width, -1.7 * width}) {
      const MeasureAxis axis = LayOutAxis(middle - width, middle + width);
      ASSERT_GE(axis.ticks.size(), 2u) << middle << " " << width;
      const std::string line = AxisLabels(axis);
      EXPECT_EQ(line.size(), 70u);
      std::string apart(Trim(line));
      for (std::size_t at = 0; (at = apart.find("  ", at)) != std::string::npos;)
        apart.erase(at, 1);
      EXPECT_EQ(apart, Labels(axis));
    }
  }
}

TEST(MeasureAxisEnds, StandInAnyOrderAndNeverTogether) {
  EXPECT_EQ(LayOutAxis(3.0, -2.0).low, -2.0);
  EXPECT_EQ(LayOutAxis(3.0, -2.0).high, 3.0);
  EXPECT_EQ(Labels(LayOutAxis(7.0, 7.0)), Labels(LayOutAxis(6.0, 8.0)));
  EXPECT_EQ(LayOutAxis(std::numeric_limits<double>::infinity(), 0.0).high, 1.0);
}

TEST(MeasureAxisColumns, MeasuresBeyondTheEndsStandAtTheEnds) {
  const MeasureAxis axis = LayOutAxis(-2.0, 2.0);
  EXPECT_EQ(ColumnOf(axis, -2.0), 0);
  EXPECT_EQ(ColumnOf(axis, -90.0), 0);
  EXPECT_EQ(ColumnOf(axis, 2.0), 67);
  EXPECT_EQ(ColumnOf(axis, 2.5), 67);
  EXPECT_EQ(ColumnOf(axis, 1.0), 50);  // 3 / 4 of 67 is 50.25
  EXPECT_DOUBLE_EQ(MeasureAt(axis, 0), -2.0);
  EXPECT_DOUBLE_EQ(MeasureAt(axis, 67), 2.0);
  for (int column = 0; column < kAxisColumns; ++column)
    EXPECT_EQ(ColumnOf(axis, MeasureAt(axis, column)), column);
}

TEST(MeasureAxisLines, StandUnderEachOther) {
  const MeasureAxis axis = LayOutAxis(-2.0, 2.0);  // 4 / 12 = .33: .5
  // Behind the frame's column the ticks are at 1, 9, 18, 26, 35, 43, 51, 60 and 68; a label begins
  // half its length in front of its tick: at 0, 7, 17, 25, 35, 42, 51, 59 and 68.
  EXPECT_EQ(AxisLabels(axis),
            "-2     -1.5      -1      -.5       0      .5       1       1.5      2 ");
  EXPECT_EQ(MeasureLine(axis),
            "Measr: "
            "-2     -1.5      -1      -.5       0      .5       1       1.5      2 ");
  // Ticks at columns 0, 8, 17, 25, 34, 42, 50, 59 and 67, each one place further behind the frame.
  EXPECT_EQ(BoxToAscii(AxisRule(axis, BoxPosition::top, true)),
            "++-------+--------+-------+--------+-------+-------+--------+-------++");
  EXPECT_EQ(BoxToAscii(AxisRule(axis, BoxPosition::bot, true)),
            "++-------+--------+-------+--------+-------+-------+--------+-------++");
  const std::string drawn = AxisRule(axis, BoxPosition::bot, false);
  EXPECT_EQ(drawn[0], kBoxBottomLeft);
  EXPECT_EQ(drawn[9], kBoxBottomTee);
  EXPECT_EQ(drawn[69], kBoxBottomRight);
}

}  // namespace
}  // namespace flanks
