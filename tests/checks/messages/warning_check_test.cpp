// Each Warning, Check and Failure that a user can meet, in a run of the whole program.
#include <gtest/gtest.h>

#include "support/message_case.h"

namespace flanks {
namespace {

// A Warning is on the screen and in the report; the run goes on.
void ExpectWarning(const std::string& name, const SpecificationLines& lines,
                   const std::string& warning,
                   const std::vector<std::string>& arguments = {"s.txt", "out.txt"}) {
  MessageCase c{name, lines, {warning}, arguments};
  c.report = {warning};
  CheckRunCase(c, FLANKS_PROGRAM);
}

TEST(WarningMessages, OfTheSpecification) {
  ExpectWarning("(2) Subsets=No", Added(1, "Subsets=No"), "Warning (2)! Subset checking bypassed");
  ExpectWarning("(12) two scales of one name",
                Added(3, "Rating scale=rs,R3\n0=a\n*\nRating scale=RS,R3\n1=b\n*"),
                "Warning (12)! Duplicate ratingscale= :RS");
  ExpectWarning("(16) the null element in Labels=", Changed(6, "0=None\n1=Ann"),
                "Warning (16)! Null element 0 is specified in Labels= for flank 1");
  ExpectWarning("(16) a range with it", Added(8, "0-0=None"),
                "Warning (16)! Null element 0 is specified in Labels= for flank 1");
  ExpectWarning("(17) a letter that Delements= does not know", Added(2, "Delements=2Q,N"),
                "Warning (17)! \"2Q\" in Delements=\"2Q,N\" ignored, not N or L");
  ExpectWarning("(19) a list without its last *", Changed(13, ""),
                "Warning (19)! at or near line 13 \"Data=\" * or number = value expected");
}

TEST(WarningMessages, OfAScaleThatNoStatementNames) {
  MessageCase c{"(3)", Added(3, "Rating scale=Spare,R3\n0=a\n*")};
  c.report = {
      "Rating (or other) scale = Spare,R3,General,Ordinal ; Warning (3)! This is NOT referenced by "
      "a Model= specification"};
  CheckRunCase(c, FLANKS_PROGRAM);
}

TEST(WarningMessages, OfTheData) {
  SpecificationLines noItems = BaseLines();
  noItems.erase(noItems.begin() + 10, noItems.begin() + 12);
  ExpectWarning("(10) a Flank without elements", noItems,
                "Warning (10)!: No elements specified for flank 2");
  ExpectWarning("(18) more responses than the range has elements",
                WithData(BaseLines(), "1,1,3\n1,2,4\n2,1,1\n2,2,4\n1-2,1,3,2,5,4\n1-2,2,3,2,5,4"),
                "Warning (18)! 2 excess responses ignored");
}

// The run goes on to the list of Table 2, and ends there.
TEST(WarningMessages, OfNoLabelsAtAll) {
  MessageCase c{"(20)", {"Title=x", "Flanks=2", "Models=?,?,R5", "*", "Data=", "1,1,3"}};
  c.screen = c.report = {
      "Warning (20)! No labels after Labels=", "Warning (10)!: No elements specified for flank 1",
      "Warning (10)!: No elements specified for flank 2",
      "\"s.txt\" No usable data.  Use Query=Y to check Models= and Labels=: Error F35"};
  c.report.insert(c.report.end(), {"Labels=", "1, 1,  , ; flank 1", "1 = 1", " *"});
  CheckFaultCase(c, FLANKS_PROGRAM);
}

TEST(WarningMessages, OfTheEstimation) {
  // Ann and Bob have met i1 alone, Cy i2 alone.
  ExpectWarning("(6) parts that nothing connects",
                WithData("1,1,3\n1,1,2\n2,1,4\n2,1,1\n3,2,2\n3,2,4"),
                "Warning (6)! There may be 2 disjoint subsets");
  ExpectWarning("(1) an estimate beyond Hardware=", Added(1, "Hardware=.2\nIterations=5"),
                "Warning (1)! Estimate out of range!  Flank 1 Element 1");
  ExpectWarning("(7) no floating Flank", Added(1, "Noncenter=0"),
                "Warning (7)! Over-constrained?  Noncenter= not in effect");
  ExpectWarning("(8) two floating Flanks", Added(1, "Noncenter=1,2\nIterations=20"),
                "Warning (8)! Under-constrained?  Noncenter= for two or more flanks");
}

TEST(CheckMessages, OfAnElementNotInLabels) {
  MessageCase c{"(1)", WithData("1,1,3\n1,2,4\n2,1,1\n2,2,5\n4,1,2\n9,2,2")};
  c.screen = c.report = {
      "Check (1)? Element not specified in Labels=: flank: 1 element: 4 in line 19 - see Table 2. "
      "Delements = N",
      "In data: 4,1,2"};
  c.absent = {"element: 9"};  // once in a run; the list of Table 2 has the others
  CheckRunCase(c, FLANKS_PROGRAM);

  MessageCase label{"(1) by label",
                    WithData(Added(2, "Delements=2L"), "1,i1,3\n1,i2,4\n2,i1,1\n2,i2,5\n1,zz,3")};
  label.report = {
      "Check (1)? Element not specified in Labels=: flank: 2 element: zz label: zz in line 20 - "
      "see Table 2. Delements = 2L"};
  CheckRunCase(label, FLANKS_PROGRAM);

  MessageCase nobuild{"(1) without a list",
                      WithData(Changed(4, "Labels=N"), "1,1,3\n1,2,4\n2,1,1\n2,2,5\n4,1,2")};
  nobuild.report = {
      "Check (1)? Element not specified in Labels=: flank: 1 element: 4 in line 19 - Specify "
      "Labels=Build to list in Table 2. Delements = N"};
  nobuild.absent = {"List of elements not specified"};
  CheckRunCase(nobuild, FLANKS_PROGRAM);
}

// The first ten of a run; negative responses are only counted.
TEST(CheckMessages, OfAnInvalidResponse) {
  std::string data = "1,1,3\n1,2,4\n2,1,1\n2,2,4\n3,1,2\n3,2,5\n1,1,-1";
  for (int i = 0; i < 11; ++i) data += "\n3," + std::string(i == 10 ? "2" : "1") + ",6";
  MessageCase c{"(2)", WithData(data)};
  c.screen = c.report = {
      "Check (2)? Invalid datum location: 3,1 at or near line 22. Datum 6 is too big or not a "
      "positive integer, treated as missing.",
      "Check (2)? Invalid datum location: 3,1 at or near line 31. Datum 6 is too big or not a "
      "positive integer, treated as missing.",
      "Number of invalid observations treated as missing = 11 first at or near line 22",
      "Number of negative observations treated as missing = 1 first at or near line 21"};
  c.absent = {"at or near line 32.", "Datum -1"};
  CheckRunCase(c, FLANKS_PROGRAM);
}

// What ends the process or the run at once: no "Execution halted", and nothing left behind.
TEST(FailureMessages, EndTheRunAtOnce) {
  const std::string contact = " Please report this failure with your Specification and data files.";
  struct Case {
    const char* name;
    SpecificationLines lines;
    std::string screen;
  };
  const Case cases[] = {
      {"(20) an anchor out of range", Changed(5, "1,Persons,A\n1=Ann,900"),
       "Flanks Problem ...: Failure (20)! Anchor value outside range: 900 (1,1,Ann)" + contact},
      {"a number without the sign of its exponent", Added(1, "Uscale=1E2"), "VLCOMPUTE: 1E2"},
      {"a sum of 26 numbers",
       Added(1, "Uscale=1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1"),
       "COMPUTE1: DEPTH 27+: 1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1+1"},
  };
  for (const Case& c : cases) CheckEndCase({c.name, c.lines, {c.screen}}, FLANKS_PROGRAM);
}

// A number that ends the process is found all the same.
TEST(FailureMessages, NameThePlaceOfTheNumber) {
  const std::vector<MessageCase> cases = {
      {"a setting", Added(1, "Uscale=1E2"), {"VLCOMPUTE: 1E2", "  See line 2 of \"s.txt\"."}},
      {"a measure", Changed(7, "2=Bob,1E2"), {"VLCOMPUTE: 1E2", "  See line 7 of \"s.txt\"."}},
      {"a weight of an element",
       Changed(7, "2=Bob,,,1E2"),
       {"VLCOMPUTE: 1E2", "  See line 7 of \"s.txt\"."}},
      {"a weight of a Flank",
       Changed(10, "2,Items,,1E2"),
       {"VLCOMPUTE: 1E2", "  See line 10 of \"s.txt\"."}},
      {"an Extra specification",
       BaseLines(),
       {"VLCOMPUTE: 1E2", "  See the Extra specification Uscale=1E2."},
       {"s.txt", "out.txt", "Uscale=1E2"}},
      {"in an include file",
       Added(1, "%more.txt"),
       {"VLCOMPUTE: 2*-3", "  See line 2 of \"more.txt\"."},
       {"s.txt", "out.txt"},
       {{"more.txt", "; units\nUmean=2*-3\n"}}},
  };
  for (const MessageCase& c : cases) CheckEndCase(c, FLANKS_PROGRAM);
}

TEST(FailureMessages, NameThePlaceOfAStatementsWeight) {
  MessageCase c{"(a weight)", Changed(3, "Models=?,?,R5,1E2")};
  c.screen = {"VLCOMPUTE: 1E2", "  See line 3 of \"s.txt\"."};
  CheckEndCase(c, FLANKS_PROGRAM);
}

}  // namespace
}  // namespace flanks
