// What whole runs make of data: a small Specification, changed in one place, and what its report
// and the screen then say.  The numbers were counted by hand from the lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

using Changes = std::map<int, std::string>;  // by line: what stands there in its place

// Thirteen lines and, as the fourteenth, Data=; the data begin at line 15.
std::string Specification(const Changes& changes, const std::string& data) {
  std::vector<std::string> lines = {
      "Title=Check", "Flanks=2", "Models=?,?,R5", "Labels=", "1,Persons", "1=Ann", "2=Bob",
      "3=Cy",        "*",        "2,Items",       "1=i1",    "2=i2",      "*",     "Data="};
  for (const auto& [line, text] : changes) lines[static_cast<std::size_t>(line - 1)] = text;
  std::string all;
  for (const std::string& line : lines) all += line + "\n";
  return all + data;
}

struct DataCase {
  const char* why;
  Changes changes;
  const char* data;
  std::vector<std::string> report;  // what stands in it
  std::vector<std::string> screen;
};

void Expect(const std::vector<DataCase>& cases) {
  for (const DataCase& c : cases) {
    SCOPED_TRACE(c.why);
    AnalysisRun run;
    run.Analyze(Specification(c.changes, c.data));
    for (const std::string& text : c.report) EXPECT_THAT(run.Report(), HasSubstr(text));
    for (const std::string& text : c.screen) EXPECT_THAT(run.Screen(), HasSubstr(text));
  }
}

std::string Valid(int count) {
  return "Valid responses used for estimation = " + std::to_string(count) + "\n";
}

TEST(DataInRuns, FaultsNameTheLineAndTheCure) {
  Expect({
      {"no response",
       {},
       "1,1\n",
       {},
       {"Data record does not contain 2 flank references + data. Please start comments with ;: 15 "
        "in line Error F27\n",
        "line: 15 is: "}},
      {"a label in the place of a number",
       {},
       "x,1,3\n",
       {},
       {"Invalid element number", "\"x\" at flank location in data: 1",
        "Is this an element label? If so, Delements=LN", "Error F231\n"}},
      {"unknown elements alone",
       {},
       "9,9,3\n",
       {"\n9 = 9\n"},
       {"No usable data.  Use Query=Y to check Models= and Labels=: Error F35\n"}},
      {"too much for a Dvalue", {{2, "Flanks=2\nDvalues=2,1,1,1,1"}}, "1,3\n", {}, {"Error F54\n"}},
      {"a Dvalue out of itself", {{2, "Flanks=2\nDvalues=2,2,1,1"}}, "1,3\n", {}, {"Error F68\n"}},
      {"no data at all, and no Flanks", {{2, "*"}}, "", {}, {"Error F34\n"}},
  });
  AnalysisRun nothing;
  nothing.Analyze("Title=x\n");
  EXPECT_THAT(nothing.Screen(), HasSubstr("Data= not specified: Error F40\n"));
}

TEST(DataInRuns, Table2AccountsForAllOfThem) {
  AnalysisRun run;
  run.Analyze(Specification({},
                            "1,1,3\n1,2,4\n2,1,1\n2,2,6\n3,1,x\n3,2,-1\n4,1,2\n1,1,\n; comment\n"
                            "R0,1,1,2\n*\n"));
  EXPECT_THAT(
      run.Report(),
      HasSubstr(
          "Total data lines = 9\nResponses matched to model: ?,?,R5,1 = 6\n"
          "    Total non-blank responses found = 7\n"
          "Responses with elements not specified in Labels= are ignored = 1 first at or near line "
          "21\n"
          "              Number of blank lines = 1 first at or near line 23\n"
          "Number of missing-null observations = 1 first at or near line 22\n"
          "Number of lines with R0 or less replications= 1 first at or near line 24\n"
          "Number of invalid observations treated as missing = 2 first at or near line 18\n"
          "Number of negative observations treated as missing = 1 first at or near line 20\n" +
          Valid(3) +
          "List of elements not specified in Labels=. Please copy and paste into your "
          "specification file, where needed\nLabels=\n1, Persons,  , ; flank 1\n4 = 4\n *\n *\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Check (2)? Invalid datum location: 2,2 at or near line 18. "
                                      "Datum 6 is too big or not a positive integer, treated as "
                                      "missing.\n"));
}

TEST(DataInRuns, StatementsTakeWhatFitsThem) {
  Expect({
      {"the first that fits",
       {{3, "Models=1,?,R5\n?,?,R5\n*"}},
       "1,1,3\n2,1,3\n1,2,2\n3,2,4\n",
       {"model: 1,?,R5,1 = 2\n", "model: ?,?,R5,1 = 2\n", Valid(4)},
       {}},
      {"responses out of use",
       {{3, "Models=?,2,M\n?,?,R5\n*"}},
       "1,1,3\n1,2,4\n2,1,2\n2,2,1\n",
       {"model: ?,2,M,1 = 2  ; treated as missing\n",
        "Number of observations matching invalid models treated as missing = 2 first at or near "
        "line 18\n",
        Valid(2)},
       {}},
      {"no statement",
       {{3, "Models=1,?,R5"}},
       "2,1,3\n1,1,3\n1,2,2\n",
       {" Responses not matched to any model are ignored = 1 first at or near line 15\n", Valid(2)},
       {}},
      {"the null element as any element", {}, "1,0,3\n1,1,2\n2,2,1\n", {Valid(3)}, {}},
      {"and as no number",
       {{3, "Models=?,1,R5"}},
       "1,0,3\n1,1,2\n2,1,1\n",
       {" Responses not matched to any model are ignored = 1 first", Valid(2)},
       {}},
      {"five trials",
       {{3, "Models=?,?,B5"}},
       "1,1,5\n1,2,6\n",
       {"missing = 1 first", Valid(1)},
       {}},
      {"counts", {{3, "Models=?,?,P"}}, "1,1,255\n1,2,256\n", {"missing = 1 first", Valid(1)}, {}},
      {"a fixed second element",
       {{2, "Flanks=2\nDvalues=2,1"}},
       "1,3\n2,2\n",
       {Valid(2)},
       {" Processed as: 1 (Ann),1 (i1)  3\n"}},
      {"a dichotomy", {{3, "Models=?,?,D"}}, "1,1,1\n1,2,2\n", {"missing = 1 first", Valid(1)}, {}},
      {"ratings without a number",
       {{3, "Models=?,?,R"}},
       "1,1,9\n1,2,10\n",
       {"missing = 1 first", Valid(1)},
       {}},
  });
}

// Persons and items as above, and the schools North and South; `dvalue` gives each person's school.
Changes WithSchools(const std::string& dvalue, const std::string& persons) {
  return {{2, "Flanks=3"}, {3, "Models=?,?,?,R5\nDvalues=\n" + dvalue + "\n*"},
          {6, persons},    {7, ";"},
          {8, ";"},        {13, "*\n3,School,D\n1=North\n2=South\n*"}};
}

TEST(DataInRuns, ADvalueOutOfARangeIsThatOfEachElement) {
  // Ann is of School 1; Bob and Cy, of School 2, have 4 + 3 and 2 + 4.
  const std::vector<std::string> schools = {"|    13       4      3.25", Valid(6)};
  const std::vector<std::string> understood = {" Processed as: 1-3,1 (i1),1 (North)  3,4,2\n"};
  Expect({
      {"labels", WithSchools("3,1,1,1", "1=1-Ann\n2=2-Bob\n3=2-Cy"), "1-3,1,3,4,2\n1-3,2,1,3,4\n",
       schools, understood},
      {"groups", WithSchools("3,1,$G", "1=Ann,,1\n2=Bob,,2\n3=Cy,,2"), "1-3,1,3,4,2\n1-3,2,1,3,4\n",
       schools, understood},
      {"a range that is a Dvalue", WithSchools("1,1-3\n3,1,1,1", "1=1-Ann\n2=2-Bob\n3=2-Cy"),
       "1,3,4,2\n2,1,3,4\n", schools, understood},
  });
}

TEST(DataInRuns, ElementsAreReadAsTheSpecificationSays) {
  Expect({
      {"labels in one position",
       {{2, "Flanks=2\nDelements=2L"}},
       "1,i2,3\n2,i1,1\n1,zz,3\n",
       {Valid(2), "Check (1)? Element not specified in Labels=: flank: 2 element: zz label: zz",
        "2, Items,  , ; flank 2\n3 = zz\n"},
       {" Processed as: 1 (Ann),2 (i2)  3\n"}},
      {"positions in another order",
       {{2, "Flanks=2\nEntered-in-data=2,1"}},
       "1,3,4\n2,1,2\n",
       {"\nEntered-in-data = 2,1\n", Valid(2)},
       {" Processed as: 1 (i1),3 (Cy)  4\n"}},
      {"a position that is not read",
       {{2, "Flanks=2\nEntered-in-data=2,0,1"}},
       "1,abc,3,4\n2,,1,2\n",
       {"\nEntered-in-data = 2,0(unused),1\n", Valid(2)},
       {" Processed as: 1 (i1),abc,3 (Cy)  4\n"}},
      {"an element number that is too large",
       {{6, "2147483647=Ann"}},
       "1,1,3\n",
       {},
       {"Error F23\n"}},
      {"the largest one", {{8, "2147483646=Cy"}}, "2147483646,1,3\n1,2,1\n", {Valid(2)}, {}},
  });
  for (const std::string other : {"Entered-in-data=2,1", "Entered-in-data=2,0,1"}) {
    AnalysisRun run;
    run.Analyze(Specification({{2, "Flanks=2\n" + other}}, "1,1,2,1\n"));
    EXPECT_THAT(run.Screen(), Not(HasSubstr(" Entered= has")));
    EXPECT_THAT(run.Screen(), Not(HasSubstr("active flank positions")));
  }
}

TEST(DataInRuns, LabelsOfARangeAndLabelsThatAreNotGiven) {
  for (const std::string range : {"1-3=Kid", "3-1=Kid"}) {
    AnalysisRun run;
    run.Analyze(Specification({{6, range}, {7, ";"}, {8, ";"}}, "1,1,3\n2,2,1\n3,1,2\n"));
    EXPECT_THAT(run.Report(), HasSubstr("(elements = 3")) << range;
    for (const ElementSlot slot : {ElementSlot(1), ElementSlot(2), ElementSlot(3)}) {
      EXPECT_EQ(run.analysis.design.elements.ElementNumber[slot], slot.number());
      EXPECT_EQ(run.analysis.design.elements.ElementLabel[slot], "Kid");
    }
  }
  AnalysisRun run;
  run.Analyze(Specification({{6, "5="}, {7, "6"}, {8, ";"}}, "5,1,3\n6,2,1\n"));
  EXPECT_EQ(run.analysis.design.elements.ElementLabel[ElementSlot(1)], "5");
  EXPECT_EQ(run.analysis.design.elements.ElementLabel[ElementSlot(2)], "6");
}

TEST(DataInRuns, MissingCodesAndReplicationsAreThoseOfTheSpecification) {
  Expect({
      {"codes are compared as they are",
       {{2, "Flanks=2\nMissing=9,x"}},
       "1,1,9\n1,2,x\n2,1,X\n2,2,1\n",
       {"Number of missing-code observations = 2 (9,x) first at or near line 16\n",
        "Number of invalid observations treated as missing = 1 first at or near line 18\n",
        Valid(1)},
       {}},
      {"codes in quotes, as the data may have them",
       {{2, "Flanks=2\nMissing=\"9\",\"x\""}},
       "1,1,9\n1,2,\"9\"\n2,1,'x'\n2,2,1\n",
       {"Number of missing-code observations = 3 (9,x) first at or near line 16\n", Valid(1)},
       {}},
      {"one code",
       {{2, "Flanks=2\nMissing=9"}},
       "1,1,9\n1,2,3\n2,1,9\n2,2,0\n",
       {"Number of missing-code observations = 2 (9) first at or near line 16\n",
        "    Total non-blank responses found = 2\n", Valid(2)},
       {}},
      {"an empty replication text is R",
       {{2, "Flanks=2\nReplication="}},
       "R2.5,1,1,3\nR0,1,2,1\n",
       {Valid(1), "Number of lines with R0 or less replications= 1 first"},
       {}},
      {"another replication text",
       {{2, "Flanks=2\nReplication=W"}},
       "w2,1,1,3\n1,2,1\n",
       {Valid(2)},
       {" Processed as: 1 (Ann),1 (i1)  3\n"}},
  });
}

TEST(DataInRuns, ADataFileHasLineNumbersOfItsOwn) {
  AnalysisRun run;
  run.Write("d.txt", "\n1,1,3\n1,2,6\n");
  run.Analyze(Specification({{14, "Data=d.txt"}}, ""));
  EXPECT_THAT(run.Screen(), HasSubstr("First active data line is: 1,1,3\n"
                                      " Processed as: 1 (Ann),1 (i1)  3\n"));
  EXPECT_THAT(run.Report(),
              HasSubstr("invalid observations treated as missing = 1 first at or near "
                        "line 3\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Number of blank lines = 1 first at or near line 1\n"));
}

TEST(DataInRuns, ADataFileOfAnotherFormatIsRefusedInWords) {
  const struct {
    const char* bytes;
    const char* format;
  } cases[] = {{"{\\rtf1 1,1,3\n", "RTF"},
               {"\xFF\xFE"
                "1,1,3\n",
                "Unicode"},
               {"\xFE\xFF"
                "1,1,3\n",
                "Unicode"},
               {"1,1,3\r2,2,1\r", "incorrect end-of-line"}};
  for (const auto& c : cases) {
    AnalysisRun run;
    run.Write("d.txt", c.bytes);
    run.Analyze(Specification({{14, "Data=d.txt"}}, ""));
    EXPECT_THAT(run.Screen(), HasSubstr("Data file - " + run.folder.file("d.txt") + " - has " +
                                        c.format + " format. Please re-format.\n"));
    EXPECT_THAT(run.Screen(), HasSubstr("Invalid file format: not in DOS-Text (ASCII) format.: "
                                        "Error F44\n"));
  }
  AnalysisRun marked;
  marked.Write("d.txt",
               "\xEF\xBB\xBF"
               "1,1,3\r\n2,2,1\n\r1,2,2");
  marked.Analyze(Specification({{14, "Data=d.txt"}}, ""));
  EXPECT_THAT(marked.Report(), HasSubstr(Valid(3)));
}

TEST(DataInRuns, CommentsThatAreToShowGoToTheReportWhileDataAreRead) {
  AnalysisRun run;
  run.Analyze(Specification({{1, "Title=Check ;; of the Specification"}},
                            ";; of the data\n1,1,3 ;; of a line\n2,2,1 ; not shown\n"));
  EXPECT_THAT(run.Report(), HasSubstr("\nTitle = Check\n;; Comments =\n  Title=Check ;; of the "
                                      "Specification\nData file = ("));
  EXPECT_THAT(run.Report(),
              HasSubstr("\nAssigning models to Data= \"" + run.folder.file("spec.txt") +
                        "\"\n;; of the data\n1,1,3 ;; of a line\nTotal lines in data file = 3\n"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("not shown")));
  EXPECT_THAT(run.Report(), HasSubstr(Valid(2)));
}

TEST(DataInRuns, ManyCommentsAndDuplicatesAllStandInTable1) {
  std::string specification = "Title=Check\n", expected = "\nTitle = Check\n;; Comments =\n";
  for (int i = 0; i < 5000; ++i) {
    specification += i % 2 == 0 ? ";; number " + std::to_string(i) + "\n"
                                : "Title=number " + std::to_string(i) + "\n";
    expected += i % 2 == 0
                    ? "  ;; number " + std::to_string(i) + "\n"
                    : "  Duplicate specification ignored: Title=number " + std::to_string(i) + "\n";
  }
  AnalysisRun run;
  run.Analyze(specification + Specification({{1, ";"}}, "1,1,3\n2,2,1\n"));
  EXPECT_NE(run.Report().find(expected + "Data file = ("), std::string::npos);
  run.analysis = Analysis{};
  EXPECT_TRUE(run.Leftovers().empty());
}

TEST(DataInRuns, SettingsAreEchoedAsTheyWereUnderstood) {
  Expect({
      {"all positive", {{2, "Flanks=2\nPositive=Y"}}, "1,1,3\n", {"\nPositive = 1,2\n"}, {}},
      {"one", {{2, "Flanks=2\nPositive=2"}}, "1,1,3\n", {"\nPositive = 2\n"}, {}},
      {"the others", {{2, "Flanks=2\nNegative=2"}}, "1,1,3\n", {"\nPositive = 1\n"}, {}},
      {"a length of heading is no sign",
       {{2, "Flanks=2\nJuxtapose=-5"}},
       "1,1,3\n",
       {"Juxtaposition heading every lines = 5\n"},
       {}},
  });
}

}  // namespace
}  // namespace flanks
