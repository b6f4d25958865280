// The heads, rules and edit words of Table 8: each group's width, and that all words of a group
// have their separators in the same columns.
#include "report/table8_columns.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/format/box.h"

namespace flanks {
namespace {

constexpr CellKind kKinds[] = {CellKind::blank, CellKind::unplaced, CellKind::first,
                               CellKind::other, CellKind::top};

std::vector<std::size_t> Separators(const std::string& line, char separator = kBoxColumn) {
  std::vector<std::size_t> at;
  for (std::size_t i = 0; i < line.size(); ++i)
    if (line[i] == separator) at.push_back(i);
  return at;
}

Table8Layout Layout(const Table8Request& request) {
  return LayOutTable8(request, Utf8Encoded::detect);
}

TEST(Table8Columns, OfAPlainRatingScaleHaveTheirWidths) {
  Table8Request request;
  request.structure = Table8Structure::rating;
  request.diagnostic = true;
  const Table8Layout layout = Layout(request);
  // Groups of 32, 19, 13, 15, 8, 10, 4 and 19 columns.
  const std::vector<std::size_t> expected = {0, 33, 53, 67, 83, 92, 103, 108, 128};
  EXPECT_EQ(Separators(layout.rule, 'x'), expected);
  for (std::size_t row = 1; row <= 3; ++row)
    EXPECT_EQ(Separators(layout.headingRows[row]), expected);
  for (const CellKind counts : kKinds)
    for (const CellKind structure : kKinds)
      EXPECT_EQ(Separators(Table8Word(layout, counts, structure)), expected);
  EXPECT_EQ(layout.topRule,
            "x--------------------------------x-------------------x-------------x--(Mean)-------x-"
            "(Modal)--(Median)-x----x-------------------x");
}

TEST(Table8Columns, HaveTheirHeads) {
  Table8Request request;
  request.structure = Table8Structure::rating;
  request.diagnostic = true;
  const Table8Layout layout = Layout(request);
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "|           DATA                 |   QUALITY CONTROL |RASCH-ANDRICH|  EXPECTATION  |  "
            "MOST  |  RASCH-  | Cat| Obsd-Expd  Andrich|");
  EXPECT_EQ(BoxToAscii(layout.headingRows[2]),
            "|      Category Counts       Cum.|  Avge  Exp. OUTFIT| Thresholds  |  Measure at   "
            "|PROBABLE| THURSTONE|PEAK|Diagnostic  Thresh.|");
  EXPECT_EQ(BoxToAscii(layout.headingRows[3]),
            "|Score Total      Used    %    % |  Meas  Meas  MnSq |Measure  S.E.|Category  -0.5 |  "
            "from  |Thresholds|Prob| Residual   Displac|");
}

TEST(Table8Columns, OfADichotomyAreOne) {
  Table8Request request;
  request.structure = Table8Structure::dichotomy;
  const Table8Layout layout = Layout(request);
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "|           DATA                 |   QUALITY CONTROL | ANDRICH|");
  EXPECT_EQ(BoxToAscii(layout.headingRows[2]),
            "|      Category Counts       Cum.|  Avge  Exp. OUTFIT| Thresh.|");
  EXPECT_EQ(BoxToAscii(layout.headingRows[3]),
            "|Score Total      Used    %    % |  Meas  Meas  MnSq | Measure|");
  EXPECT_EQ(Separators(layout.rule, 'x'), (std::vector<std::size_t>{0, 33, 53, 62}));
  EXPECT_EQ(layout.topRule, layout.rule);
}

TEST(Table8Columns, WithCodesOfTheirOwnHaveASecondNumber) {
  Table8Request request;
  request.codes = true;
  const Table8Layout layout = Layout(request);
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "|               DATA                |   QUALITY CONTROL |");
  EXPECT_EQ(BoxToAscii(layout.headingRows[2]),
            "|Category      Counts           Cum.|  Avge  Exp. OUTFIT|");
  EXPECT_EQ(BoxToAscii(layout.headingRows[3]),
            "|   Score  Total     Used    %    % |  Meas  Meas  MnSq |");
  const std::vector<std::size_t> expected = {0, 36, 56};
  EXPECT_EQ(Separators(layout.rule, 'x'), expected);
  for (const CellKind kind : kKinds)
    EXPECT_EQ(Separators(Table8Word(layout, kind, CellKind::blank)), expected);
}

TEST(Table8Columns, NamesStandAtTheEndOrInFront) {
  Table8Request request;
  request.structure = Table8Structure::dichotomy;
  request.nameWidth = 11;
  Table8Layout layout = Layout(request);
  EXPECT_TRUE(BoxToAscii(layout.headingRows[1]).ends_with("| ANDRICH| Response   |"));
  EXPECT_TRUE(BoxToAscii(layout.headingRows[2]).ends_with("| Thresh.|   Name     |"));
  EXPECT_TRUE(layout.rule.ends_with("x--------x------------x"));
  EXPECT_TRUE(
      Table8Word(layout, CellKind::other, CellKind::other).ends_with("\\\x0F \\         \\\x0F"));
  request.leftHand = true;
  layout = Layout(request);
  EXPECT_TRUE(BoxToAscii(layout.headingRows[1]).starts_with("| Response   |           DATA"));
  EXPECT_TRUE(layout.rule.starts_with("x------------x----"));
  EXPECT_TRUE(layout.rule.ends_with("x--------x"));
  for (const CellKind kind : kKinds)
    EXPECT_EQ(Separators(Table8Word(layout, kind, kind)), Separators(layout.rule, 'x'));
}

TEST(Table8Columns, AShortNameLeavesRoomForItsHead) {
  Table8Request request;
  request.nameWidth = 2;
  EXPECT_TRUE(BoxToAscii(Layout(request).headingRows[1]).ends_with("| Response|"));
}

}  // namespace
}  // namespace flanks
