// Barcharts along the measure.  An axis from 0 to 67 has a column for each whole number.
#include "report/measure_bars.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

using Lines = std::vector<std::string>;

// 68 columns of `fill` with texts at some of them.
struct At {
  std::size_t column;
  std::string text;
};
std::string Cells(char fill, const std::vector<At>& texts) {
  std::string cells(kAxisColumns, fill);
  for (const At& at : texts) cells.replace(at.column, at.text.size(), at.text);
  return cells;
}
std::string Stack(const std::vector<At>& texts) {
  return "       |" + Cells(' ', texts) + "|";
}

Lines LinesOf(const MeasureBars& bars) {
  Lines lines = bars.Lines(true, "elements");
  for (std::string& line : lines) line = BoxToAscii(line);
  return lines;
}

TEST(MeasureBars, ADigitCountsToNineAndTheStackGoesOn) {
  MeasureBars bars(LayOutAxis(0.0, 67.0));
  for (int n = 0; n < 13; ++n) bars.AddAtMeasure(30.2);
  bars.AddAtMeasure(31.4);
  bars.AddAtMeasure(31.6);
  bars.AddAtLowEnd();
  for (int n = 0; n < 9; ++n) bars.AddAtHighEnd();
  const Lines lines = LinesOf(bars);
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[1], Stack({{30, "4"}}));
  EXPECT_EQ(lines[2], Stack({{0, "1"}, {30, "911"}, {67, "9"}}));
  EXPECT_EQ(lines[0], lines[3]);  // in ASCII both rules are the same
  EXPECT_EQ(lines[5].substr(0, 7), "Measr: ");
  for (const std::string& line : {lines[0], lines[1], lines[4], lines[5]})
    EXPECT_EQ(line.size(), 77U) << line;
}

TEST(MeasureBars, MeanAndDeviationsAreMarkedWithoutThoseAtTheEnds) {
  MeasureBars bars(LayOutAxis(0.0, 67.0));
  // Mean 30; squares 100, 100: S.D. 10.
  bars.AddAtMeasure(20.0);
  bars.AddAtMeasure(40.0);
  bars.AddAtHighEnd();
  EXPECT_EQ(LinesOf(bars)[3],
            "  Mean:<" + Cells('-', {{10, "Q"}, {20, "S"}, {30, "M"}, {40, "S"}, {50, "Q"}}) + ">");
}

TEST(MeasureBars, MarksBeyondTheAxisAreLeftOutAndTheMeanStays) {
  MeasureBars bars(LayOutAxis(0.0, 67.0));
  for (const double measure : {0.0, 60.0}) bars.AddAtMeasure(measure);  // 30, S.D. 30
  EXPECT_EQ(LinesOf(bars)[3], "  Mean:<" + Cells('-', {{0, "S"}, {30, "M"}, {60, "S"}}) + ">");
  MeasureBars alike(LayOutAxis(0.0, 67.0));
  alike.AddAtMeasure(12.0);
  EXPECT_EQ(LinesOf(alike)[3], "  Mean:<" + Cells('-', {{12, "M"}}) + ">");
  EXPECT_EQ(LinesOf(MeasureBars(LayOutAxis(0.0, 67.0)))[3], "  Mean:<" + Cells('-', {}) + ">");
}

TEST(MeasureBars, StacksAreTwentyLinesHighAtMost) {
  MeasureBars full(LayOutAxis(0.0, 67.0));
  for (int n = 0; n < 180; ++n) full.AddAtMeasure(5.0);
  EXPECT_EQ(LinesOf(full).size(), 24U);  // two rules, marks and measures
  MeasureBars over(LayOutAxis(0.0, 67.0));
  for (int n = 0; n < 181; ++n) over.AddAtMeasure(5.0);
  over.AddAtMeasure(7.0);
  const Lines lines = LinesOf(over);
  EXPECT_EQ(lines.back(), "Each count stands for 2 elements.");
  // 181 in twos are 91: ten nines and a 1.
  EXPECT_EQ(lines[1], Stack({{5, "1"}}));
  EXPECT_EQ(lines[11], Stack({{5, "9"}, {7, "1"}}));
  EXPECT_EQ(lines.size(), 16U);
}

}  // namespace
}  // namespace flanks
