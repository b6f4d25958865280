// What becomes of every data line and response, as Table 2 tells it at the end of small
// Specifications.  The counts are worked out by hand from the lines; data begin in line 15 unless
// the Specification is longer.
#include <gtest/gtest.h>

#include "support/message_case.h"

namespace flanks {
namespace {

constexpr const char* kValid = "Valid responses used for estimation = ";

// The report has these lines.
void ExpectTable2(const std::string& name, const SpecificationLines& lines,
                  const std::vector<std::string>& table) {
  MessageCase c{name, lines};
  c.report = table;
  CheckSaidCase(c, FLANKS_PROGRAM);
}

TEST(DataSummary, AccountsForEveryLine) {
  // 15 and 16 are used, 17 too; 18 is above R5, 19 no number, 20 negative; 21 has an unknown
  // element; 22 an empty response; 23 is a comment; 24 no observation.
  ExpectTable2(
      "every kind of line",
      WithData("1,1,3\n1,2,4\n2,1,1\n2,2,6\n3,1,x\n3,2,-1\n4,1,2\n1,1,\n; comment\nR0,1,1,2\n*"),
      {"Total data lines = 9", "Responses matched to model: ?,?,R5,1 = 6",
       "    Total non-blank responses found = 7",
       "Responses with elements not specified in Labels= are ignored = 1 first at or near line 21",
       "              Number of blank lines = 1 first at or near line 23",
       "Number of missing-null observations = 1 first at or near line 22",
       "Number of lines with R0 or less replications= 1 first at or near line 24",
       "Number of invalid observations treated as missing = 2 first at or near line 18",
       "Number of negative observations treated as missing = 1 first at or near line 20",
       kValid + std::string("3"),
       "Check (1)? Element not specified in Labels=: flank: 1 element: 4 in line 21 - see Table 2. "
       "Delements = N",
       "Check (2)? Invalid datum location: 2,2 at or near line 18. Datum 6 is too big or not a "
       "positive integer, treated as missing.",
       "List of elements not specified in Labels=. Please copy and paste into your specification "
       "file, where needed",
       "1, Persons,  , ; flank 1", "4 = 4"});
}

TEST(DataSummary, CountsByStatement) {
  // The first statement that fits takes the response.
  ExpectTable2("two statements",
               WithData(Changed(3, "Models=1,?,R5\n?,?,R5\n*"), "1,1,3\n2,1,3\n1,2,2\n3,2,4"),
               {"Responses matched to model: 1,?,R5,1 = 2",
                "Responses matched to model: ?,?,R5,1 = 2", kValid + std::string("4")});
  ExpectTable2(
      "a statement of missing data; data begin in line 17",
      WithData(Changed(3, "Models=?,2,M\n?,?,R5\n*"), "1,1,3\n1,2,4\n2,1,2\n2,2,1"),
      {"Responses matched to model: ?,2,M,1 = 2  ; treated as missing",
       "Number of observations matching invalid models treated as missing = 2 first at or near "
       "line 18",
       kValid + std::string("2")});
  ExpectTable2("a statement that does not fit all",
               WithData(Changed(3, "Models=1,?,R5"), "2,1,3\n1,1,3\n1,2,2"),
               {" Responses not matched to any model are ignored = 1 first at or near line 15",
                kValid + std::string("2")});
}

TEST(DataSummary, TheNullElementFitsAnyElementAndNoNumber) {
  ExpectTable2("a wildcard", WithData("1,0,3\n1,1,2"), {kValid + std::string("2")});
  ExpectTable2("a number", WithData(Changed(3, "Models=?,1,R5"), "1,0,3\n1,1,2"),
               {" Responses not matched to any model are ignored = 1 first at or near line 15",
                kValid + std::string("1")});
}

TEST(DataSummary, MissingCodesAreComparedAsTheyAre) {
  ExpectTable2("a number; data begin in line 16",
               WithData(Added(1, "Missing=9"), "1,1,9\n1,2,3\n2,1,9\n2,2,0"),
               {"Number of missing-code observations = 2 (9) first at or near line 16",
                "    Total non-blank responses found = 2", kValid + std::string("2")});
  ExpectTable2("a letter; data begin in line 16",
               WithData(Added(1, "Missing=9,x"), "1,1,9\n1,2,x\n2,1,X\n2,2,0"),
               {"Number of missing-code observations = 2 (9,x) first at or near line 16",
                "Number of invalid observations treated as missing = 1 first at or near line 18",
                kValid + std::string("1")});
}

// The largest response of each type, and the one above it.
TEST(DataSummary, EveryScaleTypeHasItsLargestResponse) {
  struct Case {
    const char* type;
    int largest;
  };
  for (const Case& c : {Case{"B5", 5}, {"D", 1}, {"P", 255}, {"R", 9}, {"R0", 9}, {"R255", 255}}) {
    const std::string largest = std::to_string(c.largest), above = std::to_string(c.largest + 1);
    ExpectTable2(std::string("type ") + c.type,
                 WithData(Changed(3, std::string("Models=?,?,") + c.type),
                          "1,1," + largest + "\n1,2," + above),
                 {"Number of invalid observations treated as missing = 1 first at or near line 16",
                  kValid + std::string("1")});
  }
}

TEST(DataSummary, ElementsByLabel) {
  ExpectTable2("labels of Flank 2", WithData(Added(2, "Delements=2L"), "1,i2,3\n2,i1,1"),
               {kValid + std::string("2")});
}

TEST(DataSummary, ReplicationsAreOneRecordEach) {
  ExpectTable2("2.5 times", WithData("R2.5,1,1,3\n1,2,2"),
               {"Responses matched to model: ?,?,R5,1 = 2", kValid + std::string("2")});
}

// Line numbers are those of the data file.
TEST(DataSummary, ADataFileHasItsOwnLineNumbers) {
  MessageCase c{"a file", WithData(Changed(14, "Data=d.txt"), "")};
  c.files = {{"d.txt", "1,1,3\n1,2,\n"}};
  c.report = {"Number of missing-null observations = 1 first at or near line 2"};
  c.screen = {"First active data line is: 1,1,3", " Processed as: 1 (Ann),1 (i1)  3"};
  CheckSaidCase(c, FLANKS_PROGRAM);
}

TEST(DataSummary, PositionsAreThoseOfEnteredInData) {
  MessageCase order{"the other way round", WithData(Added(2, "Entered-in-data=2,1"), "1,3,4")};
  order.report = {kValid + std::string("1"), "Entered-in-data = 2,1"};
  order.screen = {" Processed as: 1 (i1),3 (Cy)  4"};
  order.absent = {" Entered= has"};
  CheckSaidCase(order, FLANKS_PROGRAM);

  MessageCase unused{"a position that is not read",
                     WithData(Added(2, "Entered-in-data=2,0,1"), "1,abc,3,4")};
  unused.report = {kValid + std::string("1"), "Entered-in-data = 2,0(unused),1"};
  unused.absent = {"active flank positions"};
  CheckSaidCase(unused, FLANKS_PROGRAM);
}

}  // namespace
}  // namespace flanks
