// The Flank summaries of whole runs with anchored measures, so that each column is known.
#include "report/table6_summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Persons at -3.3, 0 and 3.4, items at 0 and .1: the axis is 6.7 long, a tenth of a unit a column.
constexpr const char* kSpecification =
    "Flanks=2\nModels=?,?,D\n*\nLabels=\n1,Persons,A\n1=Ann,-3.3\n2=Bob,3.4\n3=Cy,.1\n*\n"
    "2,Items,A\n1=i1,0\n2=i2,.2\n*\n"
    "Data=\n1,1,1\n1,2,0\n2,1,0\n2,2,1\n3,1,1\n3,2,0\n";

std::string ReportOf(const std::string& extras) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze(kSpecification, extras), 0) << run.Screen();
  return run.Report();
}

// A line of the chart with digits or marks at columns.
std::string Line(const std::string& margin, char open, char fill, char close,
                 const std::vector<std::pair<std::size_t, char>>& marks) {
  std::string cells(kAxisColumns, fill);
  for (const auto& [column, letter] : marks) cells[column] = letter;
  return "\n" + margin + open + cells + close + "\n";
}

TEST(FlankSummary, EachFlankHasAChartOnOneAxis) {
  const std::string report = ReportOf("");
  const std::size_t persons = report.find("\nTable 6.1  Persons Flank Summary.\n\n");
  const std::size_t items = report.find("\nTable 6.2  Items Flank Summary.\n\n");
  ASSERT_NE(persons, std::string::npos);
  ASSERT_LT(persons, items);
  EXPECT_LT(report.find("Table 6.0"), persons);
  EXPECT_LT(items, report.find("Table 7.1.1"));
  const std::string first = report.substr(persons, items - persons);
  EXPECT_THAT(first, HasSubstr(Line("       ", '|', ' ', '|', {{0, '1'}, {34, '1'}, {67, '1'}})));
  // Mean .0667; S.D. 2.7353: columns 34 (33.667), 6 (6.31), 61 (61.02); two S.D. are outside.
  EXPECT_THAT(first, HasSubstr(Line("  Mean:", '<', '-', '>', {{34, 'M'}, {6, 'S'}, {61, 'S'}})));
  const std::string second = report.substr(items, report.find("\n\n", items + 45) - items);
  EXPECT_THAT(second, HasSubstr(Line("       ", '|', ' ', '|', {{33, '1'}, {35, '1'}})));
  // Mean .1, S.D. .1: columns 34, 33, 35, and 32, 36.
  EXPECT_THAT(second, HasSubstr(Line("  Mean:", '<', '-', '>',
                                     {{34, 'M'}, {33, 'S'}, {35, 'S'}, {32, 'Q'}, {36, 'Q'}})));
}

TEST(FlankSummary, IsSwitchedOffByBarchartAndWithTable6) {
  for (const char* off : {"Barchart=No", "Vertical=N", "Tables=11111011"})
    EXPECT_THAT(ReportOf(off), Not(HasSubstr("Flank Summary"))) << off;
}

TEST(FlankSummary, YardstickGivesTheEndsAndWhatIsBeyondStandsThere) {
  const std::string report = ReportOf("Yardstick=0,5,-6.7,0");  // a column is a tenth
  EXPECT_THAT(report, HasSubstr(Line("       ", '|', ' ', '|', {{34, '1'}, {67, '2'}})));
}

// An extreme element at its end, and where its measure enters, by hand.
TEST(FlankSummary, ExtremesStandAtTheEndsOrAtTheirMeasures) {
  Analysis analysis;
  for (const std::int16_t status : {kStatusFree, kStatusMinimum, kStatusMaximum}) {
    ElementState element;
    element.ElementMeasure = status == kStatusMinimum ? -2.0f : status == kStatusMaximum ? 2.0f : 0;
    element.ElementStatus = status;
    analysis.estimates.elements.push(element);
  }
  const std::vector<ElementSlot> all{ElementSlot(1), ElementSlot(2), ElementSlot(3)};
  const MeasureAxis axis = LayOutAxis(-3.3, 3.4);
  const auto chart = [&] { return BoxToAscii(FlankSummaryLines(analysis, all, axis)[1]); };
  EXPECT_EQ("\n" + chart() + "\n",
            Line("       ", '|', ' ', '|', {{0, '1'}, {33, '1'}, {67, '1'}}));
  analysis.settings.Barchart = 2;
  EXPECT_EQ("\n" + chart() + "\n",
            Line("       ", '|', ' ', '|', {{13, '1'}, {33, '1'}, {53, '1'}}));
  analysis.settings.Barchart = 1;
  analysis.settings.Uscale = -1.0f;  // the least able stand at the high end
  EXPECT_TRUE(IsAtHighEnd(analysis.settings, kStatusMinimum));
}

}  // namespace
}  // namespace flanks
