// The plots of Table 8, of scales whose curves are easily worked by hand.
#include "report/table8_plots.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
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
