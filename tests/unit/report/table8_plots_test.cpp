// The plots of Table 8, of scales whose curves are easily worked by hand.
#include "report/table8_plots.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "report/format/box.h"

namespace flanks {
namespace {

ScaleReport Scale(std::vector<float> thresholds, int lowest = 0) {
  thresholds.insert(thresholds.begin(), 0.0f);
  const std::vector<std::int16_t> flags(thresholds.size(), kCategoryFree);
  ScaleReport report;
  report.kernel.emplace();
  SetUpKernelScale(ScaleType::rating, static_cast<int>(thresholds.size()) - 1, thresholds, flags,
                   80.0f, *report.kernel);
  report.landmarks = FindLandmarks(*report.kernel);
  report.lowest = lowest;
  return report;
}

std::vector<std::string> Ascii(std::vector<std::string> lines) {
  for (std::string& line : lines) line = BoxToAscii(line);
  return lines;
}

// The expected score is 1/4 at -ln 3 = -1.10: with a logit more the axis goes from -2.10 to 2.10,
// 67 columns for 4.20 logits.
TEST(Table8Plots, ReachALogitBeyondTheLandmarks) {
  const ScaleReport report = Scale({0.0f});
  const MeasureAxis axis = AxisOf({report, 1.0});
  EXPECT_NEAR(axis.low, -std::log(3.0) - 1.0, 1e-6);
  EXPECT_NEAR(axis.high, std::log(3.0) + 1.0, 1e-6);
  EXPECT_NEAR(AxisOf({report, -10.0}).low, -10.0 * (std::log(3.0) + 1.0), 1e-5);
}

// Thresholds -1 and 1, so that the ends are at the expected scores .25 and 1.75: with a = exp(1),
// 1.75 x^2 + .75 a x - .25 = 0 has x = .1102, -2.21; the axis goes from -3.21 to 3.21 and a logit
// takes 10.44 columns.  Mode at -1 and 1: columns 33.5 -+ 10.4, 23 and 44.  Median where
// x^2 + a x - 1 = 0: x = .3283, -1.114, columns 22 and 45.  Mean where 3 x^2 + a x - 1 = 0:
// x = .2808, -1.270, columns 20 and 47.
TEST(Table8Plots, TheStructureHasEachCategoryWhereItBegins) {
  const ScaleReport report = Scale({-1.0f, 1.0f});
  const std::vector<std::string> lines =
      Ascii(ScaleStructureLines({report, 1.0}, "Quality,R2,G,O"));
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[0], "");
  EXPECT_EQ(lines[1], "Scale structure: Quality,R2,G,O");
  EXPECT_EQ(lines[3], "  Mode:<0" + std::string(22, '-') + "1" + std::string(20, '-') + "2" +
                          std::string(23, '-') + ">");
  EXPECT_EQ(lines[4], "Median:<0" + std::string(21, '-') + "1" + std::string(22, '-') + "2" +
                          std::string(22, '-') + ">");
  EXPECT_EQ(lines[5], "  Mean:<0" + std::string(19, '-') + "1" + std::string(26, '-') + "2" +
                          std::string(20, '-') + ">");
  EXPECT_EQ(lines[2], lines[6]);
  EXPECT_TRUE(lines[7].starts_with("Measr:   -3 ")) << lines[7];
}

TEST(Table8Plots, ANumberOverALowerOneTakesItsPlace) {
  // Both thresholds in one column: category 11 stands alone, and nothing is left of 10.
  const ScaleReport report = Scale({-.01f, .01f}, 9);
  const std::string mode = ScaleStructureLines({report, 1.0}, "")[3];
  EXPECT_EQ(mode.find("10"), std::string::npos);
  EXPECT_NE(mode.find("-11-"), std::string::npos) << mode;
  EXPECT_TRUE(mode.starts_with("  Mode:<9-"));
}

// Each category overtakes the one below by .1 logit, less than two columns: numbers would touch,
// "1112", or "79" of 7 and 9.  Where all have one digit they may.
TEST(Table8Plots, NumbersOfAScaleWithSeveralDigitsNeverTouch) {
  std::vector<float> thresholds;
  for (int k = 0; k < 8; ++k) thresholds.push_back(.1f * static_cast<float>(k));
  const auto lines = [&](int lowest) {
    const ScaleReport report = Scale(thresholds, lowest);
    return ScaleStructureLines({report, 1.0}, "");
  };
  for (const int lowest : {2, 4, 8}) {
    const int highest = lowest + 8;
    const std::vector<std::string> chart = lines(lowest);
    for (std::size_t line = 3; line < 6; ++line) {
      int former = lowest - 1;
      std::string numbers = chart[line].substr(8, 68);
      std::ranges::replace(numbers, '-', ' ');
      std::istringstream words(numbers);
      for (int number = 0; words >> number; former = number) {
        EXPECT_GT(number, former) << numbers;
        EXPECT_LE(number, highest) << numbers;
      }
      EXPECT_EQ(former, highest) << numbers;
    }
  }
  const std::string single = lines(0)[3].substr(8, 68);
  EXPECT_EQ(std::ranges::count_if(single, [](char c) { return c != '-'; }), 9) << single;
}

// 10 to 12 begin two columns apart: 11 would touch 12 and is left out; 10, which touches 11 alone,
// stays.  The columns come from a script apart.
TEST(Table8Plots, ANumberLeftOutTakesNoPlace) {
  const ScaleReport report = Scale({-2.0f, -.4f, -.2f, 0.0f}, 8);
  const MeasureAxis axis = AxisOf({report, 1.0});
  const double starts[] = {-2.0, -.4, -.2, 0.0};
  const int columns[] = {22, 38, 40, 42};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(ColumnOf(axis, starts[i]), columns[i]);
  const std::string mode = ScaleStructureLines({report, 1.0}, "")[3].substr(8, 68);
  EXPECT_NE(mode.find("-10--12-"), std::string::npos) << mode;
}

TEST(Table8Plots, AUnitBelowZeroPutsTheLowestCategoryAtTheRightEnd) {
  const ScaleReport report = Scale({-1.0f, 1.0f});
  const std::vector<std::string> lines = ScaleStructureLines({report, -10.0}, "");
  // The columns of the plain scale from the other end: 23 and 44 become 44 and 23.
  EXPECT_EQ(lines[3], "  Mode:<" + std::string(23, '-') + "2" + std::string(20, '-') + "1" +
                          std::string(22, '-') + "0>");
  const std::string tens = ScaleStructureLines({Scale({-1.0f, 1.0f}, 10), -10.0}, "")[3];
  EXPECT_TRUE(tens.ends_with("-10>")) << tens;
}

TEST(Table8Plots, ACategoryThatIsNeverTheMostProbableHasNoMode) {
  const ScaleReport report = Scale({1.0f, -1.0f});
  const std::vector<std::string> lines = ScaleStructureLines({report, 1.0}, "");
  EXPECT_EQ(lines[3].find('1'), std::string::npos);
  EXPECT_NE(lines[4].find('1'), std::string::npos);
}

// A dichotomy: the curves meet at one half, the eleventh of 21 rows, and mirror each other.
TEST(Table8Plots, CurvesCrossAtOneHalf) {
  const ScaleReport report = Scale({0.0f});
  const std::vector<std::string> lines = Ascii(ProbabilityLines({report, 1.0}));
  ASSERT_EQ(lines.size(), 26u);
  EXPECT_EQ(lines[1], "Probability Curves");
  std::string axis;
  for (std::size_t row = 0; row < 21; ++row) {
    const std::string& line = lines[3 + row];
    ASSERT_EQ(line.size(), 77u) << line;
    axis += line[5];
    EXPECT_EQ(line[7], '|');
    EXPECT_EQ(line[76], '|');
    std::string cells = line.substr(8, 68), mirrored = lines[23 - row].substr(8, 68);
    for (char& c : mirrored) c = c == '0' ? '1' : c == '1' ? '0' : c;
    EXPECT_EQ(cells, mirrored) << row;
  }
  EXPECT_EQ(axis, "1    Probability    0");
  // At column 0 the measure is -2.10: P(1) = .109, rows 17.8 and 2.2.
  EXPECT_EQ(lines[3 + 18][8], '1');
  EXPECT_EQ(lines[3 + 2][8], '0');
  // At columns 33 and 34 it is -+.03, P(1) = .49 and .51: both in row 10.
  EXPECT_EQ(lines[3 + 10].substr(8 + 33, 2), "**");
}

// Thresholds 60 logits apart: a column is nearly a logit wide and a curve goes over up to five rows
// between two of them.  It stands in all of them; at the ends, ln 3 + 1 beyond a threshold, it has
// come to e / 3 e + 1 = .11 or .89, rows 18 and 2.  Where two cross there is "*" in the middle row.
TEST(Table8Plots, ASteepCurveStandsInEachRowThatItCrosses) {
  const ScaleReport report = Scale({-30.0f, 30.0f});
  const std::vector<std::string> lines = Ascii(ProbabilityLines({report, 1.0}));
  for (const char category : {'0', '1', '2'}) {
    for (std::size_t row = 2; row <= 18; ++row) {
      const std::string cells = lines[3 + row].substr(8, 68);
      EXPECT_TRUE(cells.find(category) != std::string::npos || cells.find('*') != std::string::npos)
          << category << " " << row << cells;
    }
  }
  EXPECT_EQ(std::ranges::count(lines[3 + 10].substr(8), '*'), 2) << lines[3 + 10];
  const std::vector<std::string> ogive = Ascii(OgiveLines({report, 1.0}));
  for (std::size_t row = 1; row < 20; ++row)
    EXPECT_NE(ogive[3 + row].substr(8, 68), std::string(68, ' ')) << row;
}

// Two logits to each side of column 33 1/2, 67 columns for 4.2 logits: gentle curves have one mark
// in each column, and no category's mark covers its own.
TEST(Table8Plots, AGentleCurveHasOneMarkInEachColumn) {
  const std::vector<std::string> lines = Ascii(ProbabilityLines({Scale({0.0f}), 1.0}));
  for (std::size_t column = 0; column < 68; ++column) {
    int marks = 0;
    for (std::size_t row = 0; row < 21; ++row) {
      const char cell = lines[3 + row][8 + column];
      marks += cell == '*' ? 2 : cell != ' ' ? 1 : 0;
    }
    EXPECT_EQ(marks, 2) << column;
  }
}

// Poisson counts up to 3, expected exp(B).  Half a count below 3 is 2.5, a quarter 2.75, the most
// probable from ln 3 on: the axis ends at ln 3 + 1, where 8.2 is expected.  The curve leaves the
// plot where it passes half a row above 3: 3.075.
TEST(Table8Plots, TheOgiveOfCountsLeavesThePlotAtTheTop) {
  ScaleReport report;
  report.kernel.emplace();
  SetUpKernelScale(ScaleType::poisson, 3, std::vector<float>{1.0f, 0.0f, 0.0f, 0.0f},
                   std::vector<std::int16_t>(4, kCategoryFree), 80.0f, *report.kernel);
  report.landmarks = FindLandmarks(*report.kernel);
  const MeasureAxis axis = AxisOf({report, 1.0});
  ASSERT_GT(axis.high, 1.9);
  const std::vector<std::string> lines = Ascii(OgiveLines({report, 1.0}));
  std::size_t last = 0;
  for (std::size_t column = 0; column < 68; ++column)
    for (std::size_t row = 0; row < 21; ++row)
      if (lines[3 + row][8 + column] != ' ') last = std::max(last, column);
  const double leaves = std::log(3.075);
  EXPECT_LE(MeasureAt(axis, static_cast<double>(last)), leaves + .5 * (axis.high - axis.low) / 67);
  EXPECT_GT(MeasureAt(axis, static_cast<double>(last) + 1.0), leaves);
  EXPECT_EQ(lines[3][8 + last], '3');
}

TEST(Table8Plots, TheOgiveGoesFromTheLowestScoreToTheHighest) {
  const ScaleReport report = Scale({-1.0f, 1.0f}, 3);
  const std::vector<std::string> lines = Ascii(OgiveLines({report, 1.0}));
  ASSERT_EQ(lines.size(), 26u);
  EXPECT_EQ(lines[0], "");
  EXPECT_EQ(lines[1], "Expected Score Ogive (Model ICC)");
  EXPECT_TRUE(lines[3].starts_with("     5 |"));
  EXPECT_TRUE(lines[13].starts_with("     4 |"));
  EXPECT_TRUE(lines[23].starts_with("     3 |"));
  // One mark in each column, lower scores to the left; the score 1 is at the middle.
  for (std::size_t column = 0; column < 68; ++column) {
    std::string marks;
    for (std::size_t row = 0; row < 21; ++row)
      if (lines[3 + row][8 + column] != ' ') marks += lines[3 + row][8 + column];
    EXPECT_EQ(marks.size(), 1u) << column;
  }
  EXPECT_EQ(lines[13].substr(8 + 33, 2), "44");
}

TEST(Table8Plots, RulesHaveTheirTicksInEveryMode) {
  const ScaleReport report = Scale({0.0f});
  const std::string drawn = ProbabilityLines({report, 1.0, false})[2];
  EXPECT_EQ(std::count(drawn.begin(), drawn.end(), kBoxTopTee), 9);  // -2 to 2 by .5
  const std::string ascii = ProbabilityLines({report, 1.0, true})[2];
  EXPECT_EQ(std::count(ascii.begin(), ascii.end(), kBoxCross), 9);
}

}  // namespace
}  // namespace flanks
