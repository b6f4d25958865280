// Table 6 of whole runs.  All measures are anchored, so that each row of a ruler is known: the row
// of a measure x is last - lines (x - low), rounded.
#include "report/table6.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Three persons at 2, -2 and 0, and two items at -1 and 1; a dichotomy has its threshold at 0.
constexpr const char* kSpecification =
    "Flanks=2\nTitle=Map\nModels=?,?,D\n*\nLabels=\n1,Persons,A\n1=Ann,2\n2=Bob,-2\n3=Cy,0\n*\n"
    "2,Items,A\n1=i1,-1\n2=i2,1\n*\n"
    "Data=\n1,1,1\n1,2,0\n2,1,0\n2,2,1\n3,1,1\n3,2,0\n";

struct Written : AnalysisRun {
  explicit Written(const std::string& extras, const char* specification = kSpecification) {
    EXPECT_EQ(Analyze(specification, extras), 0) << Screen();
  }
  // What stands between the title of a Table, its full stop and the empty line, and the next Table.
  std::string Table(const std::string& title) const {
    const std::string report = Report(), head = "\n" + title + ".\n\n";
    const std::size_t from = report.find(head);
    if (from == std::string::npos) return "none";
    return report.substr(from + head.size(),
                         report.find("\n\n", from + head.size()) + 1 - from - head.size());
  }
  std::string Ruler() const { return Table("Table 6.0  All Flank Vertical \"Rulers\""); }
};

TEST(Table6, TwoLinesToAUnitFromMinus2To3) {
  EXPECT_EQ(Written("Yardstick=0,2,-2,3 Vertical=1A,2A,S").Ruler(),
            "Vertical = (1A,2A,S) Yardstick (columns lines low high extreme)=0,2,-2,3,End\n"
            "+----------------------+\n"
            "|Measr|+Pers|-Ite|Scale|\n"
            "|-----+-----+----+-----|\n"
            "|    3+     +    +  1  |\n"
            "|     |     |    |  1  |\n"
            "|    2+ Ann +    +  1  |\n"
            "|     |     |    |  1  |\n"
            "|    1+     + i2 +  1  |\n"
            "|     |     |    |  1  |\n"
            "*    0* Cy  *    * --- *\n"
            "|     |     |    |  0  |\n"
            "|   -1+     + i1 +  0  |\n"
            "|     |     |    |  0  |\n"
            "|   -2+ Bob +    +  0  |\n"
            "+----------------------+\n"
            "+Persons\n"
            "-Items\n"
            "S.1: Model = ?,?,D,1\n");
}

TEST(Table6, TheEchoTellsTheScaleThatIsDrawn) {
  const auto echo = [](const std::string& extras) {
    const std::string ruler = Written(extras).Ruler();
    return ruler.substr(ruler.find('='), ruler.find('\n') - ruler.find('='));
  };
  const std::string head = "= (1A,2A,S) Yardstick (columns lines low high extreme)=";
  EXPECT_EQ(echo("Yardstick=0,5,-2,3,End"), head + "0,5,-2,3,End");
  EXPECT_EQ(echo("Yardstick=30,,3.25,-2.5,Measure"),
            head + "30,8.7,-2.5,3.25,Measure");                    // 50 / 5.75
  EXPECT_EQ(echo("Yardstick=,,30,70"), head + "0,1.2,30,70,End");  // 50 / 40: 1.25 is cut
  EXPECT_EQ(echo("Yardstick=0,1000"), head + "0,62.5,-2,2,End");   // 250 / 4: never over 255 rows
  EXPECT_EQ(echo("Yardstick=0,0,-3000,3000"), head + "0,.0417,-3000,3000,End");  // 250 / 6000
  EXPECT_EQ(echo("Yardstick=0,4,-1/2,0"), head + "0,4,-.5,0,End");
}

TEST(Table6, ARowThatIsFullGoesOnBelow) {
  // One line to a unit; the three persons stand at 2, -2 and 0, both items in the row of 0.
  const std::string ruler =
      Written("Yardstick=0,1,-9,9 Vertical=2N,1C",
              "Flanks=2\nModels=?,?,D\n*\nLabels=\n1,P,A\n1=Ann,2\n2=Bob,-2\n3=Cy,0\n*\n"
              "2,I,A\n1=i1,-.4\n2=i2,.4\n*\n"
              "Data=\n1,1,1\n1,2,0\n2,1,0\n2,2,1\n3,1,1\n3,2,0\n")
          .Ruler();
  // A number takes one place and one more; a count one place.
  EXPECT_THAT(ruler, HasSubstr("|Measr|-I|+|\n"));
  EXPECT_THAT(ruler, HasSubstr("\n*    0* 1*1*\n:     : 2: :\n|   -1+  + |\n"));
  EXPECT_THAT(ruler,
              HasSubstr("\nMetric maintained by + or |.  Spacing expanded with : to show all "
                        "elements.\n+P Count\n"));
}

TEST(Table6, AFlankOfEqualMeasuresIsLeftOutUnlessItIsNamed) {
  const char* const specification =
      "Flanks=2\nModels=?,?,D\n*\nLabels=\n1,Persons,A\n1=Ann,1\n2=Bob,-1\n*\n2,Items,A\n1=i1,.5\n"
      "2=i2,.5\n*\nData=\n1,1,1\n1,2,0\n2,1,0\n2,2,1\n";
  const std::string told =
      "\nFlank omitted because all elements have the same measure. Use Vertical= to force display: "
      "2\n";
  const std::string byRule = Written("", specification).Ruler();
  EXPECT_THAT(byRule, HasSubstr("Vertical = (1A,S) "));
  EXPECT_THAT(byRule, HasSubstr(told));
  const std::string named = Written("Vertical=1A,2A", specification).Ruler();
  EXPECT_THAT(named, HasSubstr("Vertical = (1A,2A) "));
  EXPECT_THAT(named, HasSubstr(" i1 "));
  EXPECT_THAT(named, Not(HasSubstr("Flank omitted")));
}

TEST(Table6, WithNothingToShowThereAreHeadingsOnly) {
  const Written run("Vertical=7A");
  // The range is that of all elements.
  EXPECT_EQ(run.Ruler(),
            "Vertical = () Yardstick (columns lines low high extreme)=0,10,-2,2,End\n");
  EXPECT_THAT(run.Screen(),
              HasSubstr("Vertical=7A shows nothing: there is no Flank of this number."));
}

TEST(Table6, AnItemThatLacksACommaIsTold) {
  const Written run("Vertical=1A2A");
  EXPECT_THAT(run.Ruler(), HasSubstr("Vertical = (1A) "));
  EXPECT_THAT(
      run.Screen(),
      HasSubstr("Vertical=1A2A is no Flank number with one of the letters A, N, *, C, and no "
                "S, SL or #S: it is taken for the part of it that is."));
}

TEST(Table6, IsNotWrittenWhenItIsSwitchedOff) {
  for (const char* off : {"Vertical=N", "Vertical=No", "Tables=11111011"})
    EXPECT_EQ(Written(off).Ruler(), "none") << off;
  EXPECT_NE(Written("Tables=000001").Ruler(), "none");
}

TEST(Table6, ItsRangeIsThatOfTheGraphsInLogits) {
  for (const char* extras : {"Yardstick=0,2,-2,3", "Yardstick=0,2,-2,3 Vertical=N"}) {
    const Written run(extras);
    EXPECT_EQ(run.analysis.report.GraphLow, -2.0f) << extras;
    EXPECT_EQ(run.analysis.report.GraphHigh, 3.0f) << extras;
  }
  EXPECT_EQ(Written("").analysis.report.GraphLow, -2.0f);  // of the elements
  EXPECT_EQ(Written("").analysis.report.GraphHigh, 2.0f);
}

// Persons 1 and 2 with items 1 and 2, persons 3 and 4 with items 3 and 4.
constexpr const char* kTwoBlocks =
    "Flanks=2\nNoncenter=1\nModels=?,?,R2\n*\nLabels=\n1,Persons\n1=Ann\n2=Bob\n3=Cid\n4=Dot\n*\n"
    "2,Items\n1=one\n2=two\n3=three\n4=four\n*\n"
    "Data=\n1,1,1\n1,2,2\n2,1,0\n2,2,1\n3,3,1\n3,4,2\n4,3,0\n4,4,1\n";
constexpr const char* kThereAre = "There are 2 disconnected subsets identified in Table 7.";

TEST(Table6, EachSubsetHasARulerWhenSubsetsAreAsked) {
  for (const char* asked : {"Subsets=Report", "Subsets=List"}) {
    const Written run(asked, kTwoBlocks);
    const std::string report = run.Report();
    EXPECT_THAT(report, HasSubstr("\nTable 6.0.0  Disjoint Subset Element Listing.\n\n"));
    const std::string first = run.Table("Table 6.0.1  Disjoint Subset 1 Vertical Summary");
    EXPECT_THAT(first, HasSubstr("Vertical = (1N,2N,#S) "));
    EXPECT_THAT(first, HasSubstr(" 1 "));
    EXPECT_THAT(first, Not(HasSubstr(" 3 |")));
    const std::string second = run.Table("Table 6.0.2  Disjoint Subset 2 Vertical Summary");
    EXPECT_THAT(second, HasSubstr(" 3"));
    EXPECT_THAT(report, Not(HasSubstr(kThereAre)));
  }
}

TEST(Table6, OtherwiseALineTellsOfThem) {
  for (const char* extras : {"", "Subsets=Report Vertical=N", "Subsets=List Tables=0000001"}) {
    const std::string report = Written(extras, kTwoBlocks).Report();
    EXPECT_THAT(report, Not(HasSubstr("Table 6.0.0"))) << extras;
    EXPECT_THAT(report, HasSubstr(kThereAre)) << extras;
    EXPECT_LT(report.find("Table 6.0  All") + 1, report.find(kThereAre) + 1) << extras;
  }
  EXPECT_THAT(Written("Subsets=List").Report(), Not(HasSubstr("Table 6.0.0")));  // connected
}

}  // namespace
}  // namespace flanks
