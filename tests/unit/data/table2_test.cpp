#include "data/table2.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "support/data_design.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// Persons Ann, Bob, Cy and items i1, i2; the data begin at line 15, as behind a short
// Specification.
class Check : public DataRun {
 public:
  explicit Check(const std::vector<std::string>& statements) {
    design().flanks.FlankName[Flank({{1, "Ann"}, {2, "Bob"}, {3, "Cy"}})] = "Persons";
    design().flanks.FlankName[Flank({{1, "i1"}, {2, "i2"}})] = "Items";
    for (const std::string& statement : statements) Model(statement);
    linesBefore = 14;
  }
  // The lines of the report behind the head.
  std::vector<std::string> Body() const {
    std::istringstream report(Report());
    std::vector<std::string> lines;
    std::string line;
    bool body = false;
    while (std::getline(report, line)) {
      if (body) lines.push_back(line);
      body |= line.starts_with("Total lines in data file");
    }
    return lines;
  }
};

TEST(Table2, AccountsForEveryLineAndResponse) {
  Check test({"?,?,R5"});
  test.Read("1,1,3\n1,2,4\n2,1,1\n2,2,6\n3,1,x\n3,2,-1\n4,1,2\n1,1,\n; comment\nR0,1,1,2\n*\n");
  EXPECT_THAT(
      test.Body(),
      ElementsAre(
          "Total data lines = 9", "Responses matched to model: ?,?,R5,1 = 6",
          "    Total non-blank responses found = 7",
          "Responses with elements not specified in Labels= are ignored = 1 first at or near line "
          "21",
          "              Number of blank lines = 1 first at or near line 23",
          "Number of missing-null observations = 1 first at or near line 22",
          "Number of lines with R0 or less replications= 1 first at or near line 24",
          "Number of invalid observations treated as missing = 2 first at or near line 18",
          "Number of negative observations treated as missing = 1 first at or near line 20",
          "Valid responses used for estimation = 3",
          "List of elements not specified in Labels=. Please copy and paste into your "
          "specification file, where needed",
          "Labels=", "1, Persons,  , ; flank 1", "4 = 4", " *", " *"));
  EXPECT_THAT(test.Report(), HasSubstr("\nTable 2. Data Summary Report.\n\n"
                                       "Assigning models to Data= \""));
  EXPECT_THAT(test.Report(), HasSubstr("Total lines in data file = 11\n"));
  EXPECT_THAT(test.Report(), HasSubstr("Check (1)? Element not specified in Labels=: flank: 1 "
                                       "element: 4 in line 21 - see Table 2."));
  EXPECT_THAT(test.Report(), HasSubstr("Check (2)? Invalid datum location: 2,2 at or near line 18. "
                                       "Datum 6 is too big"));
  EXPECT_THAT(test.Screen(), HasSubstr(" See Output Table 2 for list of 1 elements not specified "
                                       "in Labels=\n"));
  EXPECT_THAT(test.Screen(), Not(HasSubstr("4 = 4")));
}

TEST(Table2, HasFourLinesAndOneForEachModelWhenAllIsWell) {
  Check test({"1,?,R5", "?,?,R5"});
  test.Read("1,1,3\n2,1,3\n1,2,2\n3,2,4\n");
  EXPECT_THAT(test.Body(),
              ElementsAre("Total data lines = 4", "Responses matched to model: 1,?,R5,1 = 2",
                          "Responses matched to model: ?,?,R5,1 = 2",
                          "    Total non-blank responses found = 4",
                          "Valid responses used for estimation = 4"));
}

TEST(Table2, AStatementOfTypeMTakesResponsesOutOfUse) {
  Check test({"?,2,M", "?,?,R5"});
  test.Read("1,1,3\n1,2,4\n2,1,2\n2,2,1\n");
  EXPECT_THAT(test.Body(),
              ElementsAre("Total data lines = 4",
                          "Responses matched to model: ?,2,M,1 = 2  ; treated as missing",
                          "Responses matched to model: ?,?,R5,1 = 2",
                          "    Total non-blank responses found = 4",
                          "Number of observations matching invalid models treated as missing = 2 "
                          "first at or near line 16",
                          "Valid responses used for estimation = 2"));
}

TEST(Table2, NamesTheMissingCodes) {
  Check test({"?,?,R5"});
  test.settings().Missing = ",9,";
  test.Read("1,1,9\n1,2,3\n2,1,9\n2,2,0\n");
  EXPECT_THAT(test.Body(),
              ElementsAre("Total data lines = 4", "Responses matched to model: ?,?,R5,1 = 2",
                          "    Total non-blank responses found = 2",
                          "Number of missing-code observations = 2 (9) first at or near line 15",
                          "Valid responses used for estimation = 2"));
  Check two({"?,?,R5"});
  two.settings().Missing = ",9,x,";
  two.Read("1,1,9\n1,2,3\n");
  EXPECT_THAT(two.Report(), HasSubstr("observations = 1 (9,x) first at or near line 15\n"));
}

TEST(Table2, CountsWhatNoModelTakes) {
  Check test({"1,?,R5"});
  test.Read("2,1,3\n1,1,3\n1,2,2\n");
  EXPECT_THAT(test.Body(),
              ElementsAre("Total data lines = 3", "Responses matched to model: 1,?,R5,1 = 2",
                          "    Total non-blank responses found = 3",
                          " Responses not matched to any model are ignored = 1 first at or near "
                          "line 15",
                          "Valid responses used for estimation = 2"));
}

TEST(Table2, CountsDoNotDependOnReplication) {
  Check test({"?,?,R5"});
  test.Read("R2.5,1,1,3\n");
  EXPECT_THAT(test.Report(), HasSubstr("Valid responses used for estimation = 1\n"));
  EXPECT_THAT(test.Records(), ElementsAre("0 2.5 3 : 1 4"));
}

TEST(Table2, ALongListOfStatementsIsCutOnTheScreenOnly) {
  Check test({});
  for (int i = 0; i < 13; ++i) test.Model(std::to_string(i + 1) + ",?,R5");
  test.Read("1,1,3\n");
  EXPECT_THAT(test.Screen(), HasSubstr("Responses matched to model: 10,?,R5,1 = 0\n"
                                       " See Output Table 2 for further 3 models\n"
                                       "    Total non-blank"));
  EXPECT_THAT(test.Report(),
              HasSubstr("model: 10,?,R5,1 = 0\nResponses matched to model: 11,?,R5"));
  EXPECT_THAT(test.Report(), HasSubstr("model: 13,?,R5,1 = 0\n"));
  Check twelve({});
  for (int i = 0; i < 12; ++i) twelve.Model(std::to_string(i + 1) + ",?,R5");
  twelve.Read("1,1,3\n");
  EXPECT_THAT(twelve.Screen(), HasSubstr("Responses matched to model: 12,?,R5,1 = 0\n"));
  EXPECT_THAT(twelve.Screen(), Not(HasSubstr("further")));
}

TEST(Table2, NoValidResponseIsAFaultWithoutALine) {
  Check test({"?,?,R5"});
  test.Read("9,9,3\n");
  EXPECT_EQ(test.Fault(),
            "\"" + test.folder.file("s.txt") +
                "\" No usable data.  Use Query=Y to check Models= and Labels=: Error F35");
  EXPECT_THAT(test.Report(), HasSubstr("1, Persons,  , ; flank 1\n9 = 9\n *\n2, Items,"));
}

TEST(Table2, WarnsOfFlanksWithoutElementsThatAreInUse) {
  struct Case {
    const char* statement;
    const char* data;
    bool warned;
    const char* why;
  };
  const Case cases[] = {{"?,?,R5", "1,1,3\n", true, "the items have no elements"},
                        {"?,X,R5", "1,1,3\n", false, "no statement looks at the items"},
                        {"?,?,R5", "", false, "no data say anything about the items"}};
  for (const Case& c : cases) {
    DataRun test;
    test.Flank({{1, "Ann"}});
    test.Flank({});
    test.Model(c.statement);
    test.Read(c.data);
    EXPECT_EQ(test.Report().find("Warning (10)") != std::string::npos, c.warned) << c.why;
  }
}

TEST(Table2, NobuildListsNothing) {
  Check test({"?,?,R5"});
  test.settings().labelsNobuild = true;
  test.Read("9,1,3\n1,1,3\n");
  EXPECT_THAT(test.Report(), Not(HasSubstr("List of elements")));
}

TEST(Table2, WorkFilesWithoutAnyFieldAreAFaultWithNobuild) {
  DataRun test;
  test.Flank({});
  test.Model("?,R5");
  test.settings().labelsNobuild = true;
  test.Read("1,3\n");
  EXPECT_THAT(test.Fault(), HasSubstr("No active element numbers: Models= and Labels="));
  EXPECT_THAT(test.Fault(), HasSubstr("Error F62"));
}

TEST(Table2, ItsOwnFlagOfTablesSwitchesItOff) {
  Check test({"?,?,R5"});
  test.settings().Tables = "10111111111111";
  test.Read("1,1,3\n");
  EXPECT_EQ(test.Report(), "");
  EXPECT_THAT(test.Screen(), HasSubstr("Valid responses used for estimation = 1"));
}

TEST(Table2, QueryShowsTheStatementsWithAllTheirFields) {
  Check test({",?,R5"});
  test.settings().Query = true;
  test.design().models.ModelText[ModelRow(0)].emplace_back("");
  test.Read("1,1,3\n");
  EXPECT_THAT(test.Screen(), HasSubstr("1: ,?,R5,1, ; active model statement for Query=Yes\n"));
  EXPECT_THAT(test.Report(), Not(HasSubstr("active model statement")));
}

TEST(UnspecifiedList, IsAPieceOfASpecification) {
  DataRun test;
  test.Flank({{1, "a"}});
  const FlankNo raters = test.Flank({{1, "a"}});
  test.design().flanks.FlankName[raters] = "Raters";
  test.design().flanks.FlankOptions[raters] = " A";
  test.design().flanks.FlankWeight[raters] = 2.0f;
  test.design().flanks.FlankName[FlankNo(1)] = "";
  test.counts().UnspecifiedList = {{FlankNo(1), 0, "0"}, {FlankNo(1), 7, ""}, {raters, 12, "zz"}};
  WriteUnspecifiedList(test.console, test.counts(), test.design().flanks, 0);
  const std::string list =
      "List of elements not specified in Labels=. Please copy and paste into your specification "
      "file, where needed\nLabels=\n1, 1,  , ; flank 1\n"
      "0 = 0 ; this element number is ignored, because Null= 0\n7\n *\n"
      "2, Raters,  A,2 ; flank 2\n12 = zz\n *\n *\n";
  EXPECT_EQ(test.Report(), list);
  test.counts().UnspecifiedListCut = true;
  WriteUnspecifiedList(test.console, test.counts(), test.design().flanks, 0);
  EXPECT_EQ(test.Report(),
            list + list + "; This list is full: the data hold more elements that are not in it.\n");
}

}  // namespace
}  // namespace flanks
