// The lines of figures of Table 8, one for each kind of row.
#include "report/table8_rows.h"

#include <gtest/gtest.h>
#include <string>

#include "base/utf8.h"
#include "report/format/box.h"

namespace flanks {
namespace {

CategoryRow MiddleRow() {
  CategoryRow row;
  row.counts = row.structure = CellKind::other;
  row.score = 1;
  row.code = 3;
  row.total = 20;
  row.used = 18;
  row.percent = 44.6;
  row.cumulative = 70.4;
  row.figures = {-.87, -.85, 1.02};
  row.threshold = -1.25f;
  row.standardError = .25;
  row.landmarks = {-.5, -1.125, -1.25, -1.375, .468};
  return row;
}

std::string LineOf(const CategoryRow& row, Table8Request request, Table8Units units = {}) {
  return BoxToAscii(CategoryLine(LayOutTable8(request, Utf8Encoded::detect), units, row));
}

Table8Request Rating() {
  Table8Request request;
  request.structure = Table8Structure::rating;
  return request;
}

TEST(Table8Rows, FiguresStandUnderTheirHeads) {
  // |Score Total      Used    %    % |  Meas  Meas  MnSq |Measure  S.E.|Category  -0.5 |  from |...
  EXPECT_EQ(LineOf(MiddleRow(), Rating()),
            "|  1       20        18  45%  70%|  -.87  -.85  1.02 | -1.25    .25|   -.50   -1.13|  "
            "-1.25 |   -1.38  | 47%|");
}

TEST(Table8Rows, TheEndsStandInParentheses) {
  CategoryRow row = MiddleRow();
  row.counts = row.structure = CellKind::first;
  EXPECT_EQ(
      LineOf(row, Rating()),
      "|  1       20        18  45%  70%|  -.87  -.85  1.02 |             |(  -.50)       |   "
      "low  |   low    |100%|");
  row.counts = row.structure = CellKind::top;
  EXPECT_EQ(LineOf(row, Rating()),
            "|  1       20        18  45%  70%|  -.87  -.85  1.02 | -1.25    .25|(  -.50)  -1.13|  "
            "-1.25 |   -1.38  |100%|");
}

TEST(Table8Rows, AMarkTellsAnAverageThatDoesNotRise) {
  CategoryRow row = MiddleRow();
  row.disordered = true;
  EXPECT_NE(LineOf(row, Rating()).find("|  -.87* -.85  1.02 |"), std::string::npos);
  // An expected average that fills its places gives one up.
  EXPECT_NE(LineOf(row, Rating(), {1000.0, 1}).find("|-870.0*-850.  1.02 |"), std::string::npos);
  row.disordered = false;
  EXPECT_NE(LineOf(row, Rating(), {1000.0, 1}).find("|-870.0-850.0  1.02 |"), std::string::npos);
}

TEST(Table8Rows, AKeptCategoryWithoutResponsesHasAnInfiniteThreshold) {
  CategoryRow row = MiddleRow();
  row.counts = CellKind::blank;
  row.total = 0;
  row.threshold.reset();
  row.standardError.reset();
  row.infinite = true;
  row.landmarks.mostProbable.reset();
  row.landmarks.peak = 0.0;
  EXPECT_EQ(
      LineOf(row, Rating()),
      "|  1        0                    |                   |infin.       |   -.50   -1.13|   "
      "     |   -1.38  |  0%|");
}

TEST(Table8Rows, AnAnchorIsFlaggedAndHasNoError) {
  CategoryRow row = MiddleRow();
  row.anchored = true;
  row.standardError.reset();
  row.residual = -1.25;
  row.displacement = .125;
  Table8Request request = Rating();
  request.diagnostic = true;
  EXPECT_EQ(LineOf(row, request),
            "|  1       20        18  45%  70%|  -.87  -.85  1.02 | -1.25A      |   -.50   -1.13|  "
            "-1.25 |   -1.38  | 47%|      -1.3      .13|");
  request.structure = Table8Structure::dichotomy;
  EXPECT_EQ(LineOf(row, request),
            "|  1       20        18  45%  70%|  -.87  -.85  1.02 |  -1.25A|      -1.3      .13|");
}

TEST(Table8Rows, TheLowestOfADichotomyHasNoThreshold) {
  CategoryRow row = MiddleRow();
  row.counts = row.structure = CellKind::first;
  Table8Request request;
  request.structure = Table8Structure::dichotomy;
  EXPECT_EQ(LineOf(row, request),
            "|  1       20        18  45%  70%|  -.87  -.85  1.02 |        |");
}

TEST(Table8Rows, CodesStandBesideScores) {
  CategoryRow row = MiddleRow();
  Table8Request request;
  request.codes = true;
  EXPECT_EQ(LineOf(row, request), "|  1   3       20       18  45%  70%|  -.87  -.85  1.02 |");
  row.counts = CellKind::blank;
  EXPECT_EQ(LineOf(row, request), "|  1           20                   |                   |");
  row.counts = CellKind::unplaced;  // no score
  row.score = row.code;
  EXPECT_EQ(LineOf(row, request), "|      3       20                   |                   |");
}

TEST(Table8Rows, WeightedCountsHaveOneDecimal) {
  CategoryRow row = MiddleRow();
  row.total = 20.25;
  row.used = 18.5;
  EXPECT_TRUE(LineOf(row, Rating()).starts_with("|  1     20.3      18.5  45%  70%|"));
  row.total = 123456789;
  EXPECT_TRUE(LineOf(row, Rating()).starts_with("|  1 123456E3      18.5"));
}

TEST(Table8Rows, NamesInAnyScriptKeepTheColumns) {
  CategoryRow row = MiddleRow();
  row.name = "sehr sch\xC3\xB6n";
  Table8Request request;
  request.nameWidth = 10;
  EXPECT_EQ(LineOf(row, request),
            "|  1       20        18  45%  70%|  -.87  -.85  1.02 | sehr sch\xC3\xB6n|");
  request.leftHand = true;
  EXPECT_EQ(LineOf(row, request),
            "| sehr sch\xC3\xB6n|  1       20        18  45%  70%|  -.87  -.85  1.02 |");
}

// Whatever the units, a line is as wide as the rule and has its separators where the rule has
// junctions.
TEST(Table8Rows, AllUnitsKeepTheColumns) {
  for (const double uscale : {.01, 1.0, -3.0, 1000.0}) {
    for (int udecimals = 0; udecimals <= 6; ++udecimals) {
      for (const CellKind kind :
           {CellKind::blank, CellKind::unplaced, CellKind::first, CellKind::other, CellKind::top}) {
        CategoryRow row = MiddleRow();
        row.counts = row.structure = kind;
        row.disordered = udecimals % 2 == 1;
        row.displacement = -12.5;
        row.figures.outfit = 123456.0;
        Table8Request request = Rating();
        request.diagnostic = true;
        const Table8Layout layout = LayOutTable8(request, Utf8Encoded::detect);
        const std::string line = CategoryLine(layout, {uscale, udecimals}, row);
        ASSERT_EQ(line.size(), layout.rule.size()) << line;
        for (std::size_t i = 0; i < line.size(); ++i)
          EXPECT_EQ(line[i] == kBoxColumn, layout.rule[i] == 'x') << line;
      }
    }
  }
}

}  // namespace
}  // namespace flanks
