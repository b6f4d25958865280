// Which boxes Table 7 has.  What stands in them is tested with its rows, columns, order and foot.
#include "report/table7.h"

#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

// Three Flanks, the last with a single element.
constexpr const char* kSpecification =
    "Flanks=3\nModels=?,?,?,R2\nLabels=\n1,Persons\n1-3=p\n*\n2,Items\n1-3=i\n*\n3,Tasks\n1=t\n*\n"
    "Data=\n1,1-3,1,0,1,1\n2,1-3,1,1,1,2\n3,1-3,1,2,1,0\n";

std::string ReportOf(const std::string& extras) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze(kSpecification, extras), 0) << run.Screen();
  return run.Report();
}

bool Holds(const std::string& report, const std::string& line) {
  return report.find("\n" + line + ".\n") != std::string::npos;
}

TEST(Table7, HasABoxForEachOrderAndOneForASingleElement) {
  const std::string report = ReportOf("");
  for (const char* title : {"Table 7.1.1  Persons Measurement Report  (arranged by mN)",
                            "Table 7.1.2  Persons Measurement Report  (arranged by fN)",
                            "Table 7.1.3  Persons Measurement Report  (arranged by N)",
                            "Table 7.2.3  Items Measurement Report  (arranged by N)",
                            "Table 7.3.1  Tasks Measurement Report"})
    EXPECT_TRUE(Holds(report, title)) << title;
  EXPECT_EQ(report.find("Table 7.3.2"), std::string::npos);
}

TEST(Table7, AnItemWithANumberIsForItsFlankAlone) {
  const std::string report = ReportOf("Arrange=1N,2m");
  EXPECT_TRUE(Holds(report, "Table 7.1.1  Persons Measurement Report  (arranged by N)"));
  EXPECT_TRUE(Holds(report, "Table 7.2.1  Items Measurement Report  (arranged by m)"));
  EXPECT_EQ(report.find("Table 7.1.2"), std::string::npos);
  EXPECT_EQ(report.find("Table 7.3"), std::string::npos);
}

TEST(Table7, AnOrderForAFlankThatIsNotThereIsTold) {
  const std::string told = "\nArrange=4mN gives no Table: there is no Flank 4.\n";
  const std::string report = ReportOf("Arrange=4mN,1N");
  EXPECT_NE(report.find(told), std::string::npos);
  EXPECT_TRUE(Holds(report, "Table 7.1.1  Persons Measurement Report  (arranged by N)"));
  EXPECT_EQ(ReportOf("Arrange=3mN").find("gives no Table"), std::string::npos);
}

TEST(Table7, ANumberOfNoFlankKeepsAnItemFromAllFlanks) {
  const std::string report = ReportOf("Arrange=0mN,1N");
  EXPECT_NE(report.find("(arranged by N)"), std::string::npos);
  EXPECT_EQ(report.find("(arranged by mN)"), std::string::npos);
}

TEST(Table7, WithoutAnOrderOrAListThereIsNone) {
  EXPECT_EQ(ReportOf("Arrange=").find("Table 7."), std::string::npos);
  EXPECT_EQ(ReportOf("T7LGS=S").find("Table 7."), std::string::npos);
}

}  // namespace
}  // namespace flanks
