// Element groups in Table 7: which boxes there are, their titles, and the box that sums them up.
#include "report/table7_groups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "report/format/box.h"
#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// Five persons, of whom two are novices (1), two experts (5) and one has no group; no one is
// extreme.
std::string Specification(const std::string& options, const std::string& groupOfLast = "",
                          const std::string& more = "") {
  return "Flanks=2\nModels=?,?,R3\nArrange=1mN,1N\n" + more + "Labels=\n1,Persons," + options +
         "\n1=Ann,,1\n2=Bob,,5\n3=Cy,,1\n4=Di,,5\n5=Ed,," + groupOfLast +
         "\n*\n2,Items\n1-3=i\n*\nData=\n1,1-3,1,0,2\n2,1-3,2,1,3\n3,1-3,0,1,1\n4,1-3,3,2,2\n"
         "5,1-3,1,1,2\n";
}
constexpr const char* kLabels = "Glabel=\n1,1,Novices\n2,5,of Items\n1,5,Experts\n*\n";

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

struct Report {
  AnalysisRun run;
  std::vector<std::string> lines;
  explicit Report(const std::string& specification, const std::string& extras = "") {
    EXPECT_EQ(run.Analyze(specification, extras), 0) << run.Screen();
    lines = LinesOf(run.Report());
  }
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const std::string& line : lines)
      if (line.rfind("Table 7.", 0) == 0) titles.push_back(line);
    return titles;
  }
  // The lines of the box whose title begins so, from its heading on.
  std::vector<std::string> Box(const std::string& title) const {
    std::vector<std::string> box;
    bool inside = false;
    for (const std::string& line : lines) {
      if (line.rfind("Table ", 0) == 0) inside = line.rfind(title, 0) == 0;
      if (inside && !line.empty() && (line[0] == '|' || line[0] == '+')) box.push_back(line);
    }
    return box;
  }
};

TEST(Table7Groups, HaveListsOfAllOfEachAndASummary) {
  const Report report(Specification("", "", kLabels));
  const std::string name = "  Persons Measurement Report  ";
  EXPECT_THAT(report.Titles(), ElementsAre("Table 7.1.1" + name + "(arranged by mN).",
                                           "Table 7.1.2" + name + "(arranged by N).",
                                           "Table 7.1.3.1 [Novices]" + name + "(arranged by mN).",
                                           "Table 7.1.4.1 [Novices]" + name + "(arranged by N).",
                                           "Table 7.1.5.5 [Experts]" + name + "(arranged by mN).",
                                           "Table 7.1.6.5 [Experts]" + name + "(arranged by N).",
                                           "Table 7.1.7" + name + "(arranged by Group)."));
  const std::vector<std::string> novices = report.Box("Table 7.1.4.1");
  ASSERT_EQ(novices.size(), 11u);
  EXPECT_THAT(novices[4], HasSubstr("|   1 Ann "));
  EXPECT_THAT(novices[5], HasSubstr("|   3 Cy "));
  EXPECT_THAT(novices[7], HasSubstr("|       | Mean (Count: 2)"));
}

TEST(Table7Groups, EachLetterAsksForItsPart) {
  const std::string specification = Specification("");
  const std::string name = "  Persons Measurement Report  ";
  EXPECT_THAT(Report(specification, "T7LGS=L Arrange=1N").Titles(),
              ElementsAre("Table 7.1.1" + name + "(arranged by N)."));
  EXPECT_THAT(Report(specification, "T7LGS=g Arrange=1N").Titles(),
              ElementsAre("Table 7.1.1.1" + name + "(arranged by N).",
                          "Table 7.1.2.5" + name + "(arranged by N)."));
  EXPECT_THAT(Report(specification, "T7LGS=S").Titles(),
              ElementsAre("Table 7.1.1" + name + "(arranged by Group)."));
  EXPECT_THAT(Report(specification, "Arrange=2N").Titles(),
              ElementsAre("Table 7.2.1  Items Measurement Report  (arranged by N)."));
}

TEST(Table7Groups, AreNotListedForAFlankWithTheLetterN) {
  for (const char* options : {"N", "ANCHORED"})
    EXPECT_THAT(Report(Specification(options), "Arrange=1N").Titles(),
                ElementsAre("Table 7.1.1  Persons Measurement Report  (arranged by N)."));
}

// A single group number is a group, unless it is 0.
TEST(Table7Groups, OneGroupIsAListOfAGroup) {
  const std::string one =
      "Flanks=2\nModels=?,?,R3\nArrange=1N\nGlabel=\n1,3,All\n*\nLabels=\n1,Persons\n1-2=p,,3\n*"
      "\n2,"
      "Items\n1-2=i\n*\nData=\n1,1-2,1,0\n2,1-2,1,2\n";
  const Report list(one);
  EXPECT_THAT(list.Titles(),
              ElementsAre("Table 7.1.1.3 [All]  Persons Measurement Report  (arranged by N)."));
  EXPECT_THAT(list.Box("Table 7.1.1.3")[2], Not(HasSubstr("Group")));
  const Report none(one, "T7LGS=LS");
  EXPECT_THAT(none.Titles(), IsEmpty());
  EXPECT_THAT(none.run.Screen(),
              HasSubstr("T7LGS=LS gives no list of Flank 1: all of its elements are in group 3, "
                        "and the list of a group needs G.\n"));
  EXPECT_THAT(Report(one, "T7LGS=S").run.Screen(), Not(HasSubstr("gives no list")));
}

// The rule has the group's name from its third place on; the rows below it are the means of the
// group's own list, with the group in their Group column.
TEST(Table7Groups, TheSummaryHasTheMeansOfEachGroup) {
  const Report report(Specification("", "", kLabels), "Arrange=1N");
  const std::vector<std::string> summary = report.Box("Table 7.1.4");
  ASSERT_EQ(summary.size(), 4u + 3u + 2u * 4u + 1u) << "Ed alone has no sample";
  const std::vector<std::string> novices = report.Box("Table 7.1.2.1");
  const std::string rule = novices[3];
  EXPECT_EQ(summary[3], rule);
  EXPECT_EQ(summary[4], "|-Group 0" + rule.substr(9));
  EXPECT_THAT(summary[5],
              AllOf(HasSubstr("|     0 | Mean (Count: 1)"), HasSubstr("|     4       3  ")));
  EXPECT_THAT(summary[6], HasSubstr("|     0 | S.D. (Population)"));
  EXPECT_EQ(summary[7], "|-Group 1 Novices" + rule.substr(17));
  for (std::size_t row = 0; row < 3; ++row) {
    std::string mean = novices[7 + row];
    mean.replace(mean.find("|       | "), 10, "|Novice | ");
    EXPECT_EQ(summary[8 + row], mean);
  }
  EXPECT_EQ(summary[11], "|-Group 5 Experts" + rule.substr(17));
  EXPECT_THAT(summary[12], HasSubstr("|Expert | Mean (Count: 2)"));
  EXPECT_EQ(summary[15], novices.back()) << "bottom rule";
}

// The name takes the places that it needs and ends before the rule's last one.
TEST(Table7Groups, ALongNameEndsWithItsRule) {
  std::string wide;
  for (int n = 0; n < 100; ++n) wide += "\xE6\xB1\x89";  // a character that is two columns wide
  const std::string labels = "Glabel=\n1,1,x-" + std::string(300, 'y') + "\n1,5," + wide + "\n*\n";
  for (const char* hand : {"Left-hand=N", "Left-hand=Y"}) {
    const Report report(Specification("", "1", labels), "Arrange=1N T7LGS=S " + std::string(hand));
    const std::vector<std::string> summary = report.Box("Table 7.1.1");
    ASSERT_EQ(summary.size(), 4u + 2u * 4u + 1u);
    const int width = DisplayWidth(summary[0]);
    EXPECT_EQ(summary[4].rfind("|-Group 1 x-yyy", 0), 0u) << summary[4];
    EXPECT_EQ(summary[8].rfind("|-Group 5 \xE6\xB1\x89\xE6\xB1\x89", 0), 0u) << summary[8];
    for (const std::string& line : summary) {
      EXPECT_EQ(DisplayWidth(line), width) << line;
      EXPECT_TRUE(line.back() == '|' || line.back() == '+') << line;
    }
  }
}

// The raters' agreement is of the whole run, so it stands with the lists of all raters alone.
TEST(Table7Groups, TheAgreementStandsWithTheListsOfAll) {
  const Report report(Specification(""), "Inter-rater=1");
  std::vector<std::string> places;
  std::string table;
  for (const std::string& line : report.lines) {
    if (line.rfind("Table 7.", 0) == 0) table = line.substr(0, line.find(' ', 6));
    if (line.rfind("Inter-Rater agreement", 0) == 0) places.push_back(table);
  }
  EXPECT_THAT(places, ElementsAre("Table 7.1.1", "Table 7.1.2"));
}

TEST(GroupsOf, ExtremeElementsMakeAGroupAndThoseWithoutMeasureDoNot) {
  AnalysisRun run;
  ASSERT_EQ(
      run.Analyze("Flanks=2\nModels=?,?,R2\nOmit=N\nLabels=\n1,Persons\n1=a,,1\n2=b,,1\n3=c,,2"
                  "\n4=d,,7\n*\n2,Items\n1-2=i\n*\nData=\n1,1-2,1,0\n2,1-2,1,2\n3,1-2,2,2\n"),
      0)
      << run.Screen();
  const FlankGroups found = GroupsOf(run.analysis, FlankNo(1));
  EXPECT_EQ(found.listed.size(), 4u);
  ASSERT_EQ(found.groups.size(), 2u);
  EXPECT_EQ(found.groups[0].number, 1);
  EXPECT_EQ(found.groups[0].elements.size(), 2u);
  EXPECT_EQ(found.groups[1].number, 2);
  EXPECT_EQ(found.groups[1].elements.size(), 1u);
}

TEST(GroupTitle, HasTheNumberAndTheLabel) {
  EXPECT_EQ(GroupTitle({3, "", {}}), ".3");
  EXPECT_EQ(GroupTitle({3, "a b", {}}), ".3 [a b]");
  EXPECT_EQ(GroupCell({3, "", {}}), "     3");
  EXPECT_EQ(GroupCell({3, "a", {}}), "a");
}

}  // namespace
}  // namespace flanks
