#include "data/data_pass.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/data_design.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// Two Flanks: Ann, Bob, Cy and i1, i2.
class PersonsAndItems : public DataRun {
 public:
  explicit PersonsAndItems(const std::string& statement = "?,?,R5",
                           const std::string& delements = "N.") {
    Flank({{1, "Ann"}, {2, "Bob"}, {3, "Cy"}}, delements);
    Flank({{1, "i1"}, {2, "i2"}}, delements);
    if (!statement.empty()) Model(statement);
  }
};

std::int64_t Of(const FixedCount& count) {
  return count.whole();
}
std::int64_t Of(const CountedEvent& event) {
  return event.count.whole();
}

TEST(DataPass, WritesARecordForEachResponseInOrder) {
  PersonsAndItems run;
  run.Read("1,1,3\n1,2,4,5\nR2.5,3,1,0\n");
  EXPECT_THAT(run.Records(),
              ElementsAre("0 1 3 : 1 4", "0 1 4 : 1 5", "0 1 5 : 1 5", "0 2.5 0 : 3 4"));
  EXPECT_EQ(Of(run.counts().ValidResponses), 4);
  EXPECT_EQ(Of(run.counts().NonBlankResponses), 4);
  EXPECT_EQ(Of(run.counts().DataLines), 3);
  EXPECT_EQ(run.counts().ModelCounter[ModelRow(0)], 4);
  EXPECT_EQ(run.analysis.work.records, 4);
}

TEST(DataPass, ShowsTheFirstActiveLineAndHowItWasUnderstood) {
  PersonsAndItems run;
  run.Read("; a comment\n\n1,1,3\n2,2,3\n");
  EXPECT_THAT(run.Screen(), HasSubstr("First active data line is: 1,1,3\n"
                                      " Processed as: 1 (Ann),1 (i1)  3\n"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("First active")));
  EXPECT_EQ(Of(run.counts().BlankLines), 2);
  EXPECT_EQ(run.counts().BlankLines.firstLine, 1);
}

TEST(DataPass, ShowsUnknownAndNullElementsOfTheFirstLine) {
  PersonsAndItems unknown;
  unknown.Read("9,0,3,4\n1,1,1\n");
  EXPECT_THAT(unknown.Screen(), HasSubstr(" Processed as: 9 (?),Null,  3,4\n"));
  PersonsAndItems label("?,?,R5", "L.");
  label.Read("zz,i1,3\nAnn,i1,1\n");
  EXPECT_THAT(label.Screen(), HasSubstr(" Processed as: (zz, ?),1 (i1)  3\n"));
}

TEST(DataPass, TooFewFieldsEndTheRunWithTheLine) {
  PersonsAndItems run;
  run.linesBefore = 14;
  run.Read("1,1\n");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::tooFewDataFields);
  EXPECT_THAT(run.Fault(), HasSubstr("Data record does not contain 2 flank references + data. "
                                     "Please start comments with ;"));
  EXPECT_THAT(run.Fault(), StartsWith("1,1 Data line in "));
  EXPECT_THAT(run.Fault(), HasSubstr("s.txt line: 15 is: "));
  EXPECT_THAT(run.Fault(), HasSubstr(": 15 in line Error F27"));
}

TEST(DataPass, ALineSplitOtherwiseThanItsWriterThoughtIsToldSo) {
  constexpr const char* kCommas =
      "  This line holds commas (or =), so blanks and tabs separate nothing in it: please separate "
      "all fields by commas: 1 in line ";
  constexpr const char* kTabs =
      "  This line holds tabs, so blanks separate nothing in it: please separate all fields by "
      "commas: 1 in line ";
  constexpr const char* kNone = "comments with ;: 1 in line ";
  const struct {
    const char* line;
    const char* hint;
    const char* code;
  } cases[] = {
      {"1;2;3", "comments with ;  Is ; between fields here?", "F27"},
      {"1,2;3", "It begins a comment: please separate fields by commas: 1 in line ", "F27"},
      {"1,2 3", kCommas, "F27"},
      {"1,2\t3", kCommas, "F27"},
      {"1=2 3", kCommas, "F27"},
      {"1\t2 3", kTabs, "F27"},
      {"1,2", kNone, "F27"},
      {"1 2", kNone, "F27"},
      {"1\t2", kNone, "F27"},
      {"1 2 ; a comment", kNone, "F27"},
      {"1 2\t1\t3", "If so, Delements=LN  This line holds tabs, so blanks separate nothing",
       "F231"},
      {"1 2,1,3", "If so, Delements=LN  This line holds commas (or =), so blanks", "F231"},
      {"x,1,3", "If so, Delements=LN: 1 in line ", "F231"},
  };
  for (const auto& c : cases) {
    PersonsAndItems run;
    run.Read(std::string(c.line) + "\n");
    EXPECT_THAT(run.Fault(), HasSubstr(c.hint)) << c.line;
    EXPECT_THAT(run.Fault(), EndsWith(std::string("Error ") + c.code)) << c.line;
  }
}

TEST(DataPass, AnInvalidElementNumberEndsTheRunWithItsPlaceAndACure) {
  PersonsAndItems run;
  run.linesBefore = 14;
  run.Read("1,1,3\n2,x,3\n");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::invalidElementNumberInData);
  EXPECT_THAT(run.Fault(),
              HasSubstr("Invalid element number. Must be integers in range 0 - 2147483646 \"x\" at "
                        "flank location in data: 2  Is this an element label? If so, "
                        "Delements=LN: 16 in line Error F231"));
  EXPECT_THAT(run.Fault(), HasSubstr("s.txt(2) line: 16 is: "));
  EXPECT_EQ(run.analysis.reading.SourceLine, "2,x,3");
}

TEST(DataPass, ElementNumbersAreDigitsAlone) {
  for (const char* number : {"3a", "-1", "1.5", "2147483647", "99999999999", "+1", "1 2"}) {
    PersonsAndItems run;
    run.Read(std::string(number) + ",1,3\n");
    EXPECT_EQ(run.analysis.reading.FaultCode, Fault::invalidElementNumberInData) << number;
  }
  PersonsAndItems run;
  run.Read("0001,2,3\n 2 , 1 ,4\n");
  EXPECT_THAT(run.Records(), ElementsAre("0 1 3 : 1 5", "0 1 4 : 2 4"));
}

TEST(DataPass, AStarEndsTheData) {
  PersonsAndItems run;
  run.Read("1,1,3\n*\n1,1,x\nnonsense\n");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::none);
  EXPECT_EQ(Of(run.counts().FileLines), 2);
  EXPECT_EQ(Of(run.counts().DataLines), 1);
}

TEST(DataPass, ResponsesMissingNegativeAndInvalidAreCountedWithTheirFirstLine) {
  PersonsAndItems run;
  run.settings().Missing = ",9,x,";
  run.Read("1,1,9,x\n1,2,X\n1,1,\n1,1,-1\n1,1,2_\n1,1,6\n1,1,2.5\n1,1,5\n");
  const DataCounts& counts = run.counts();
  EXPECT_EQ(Of(counts.MissingCodeResponses), 2);
  EXPECT_EQ(counts.MissingCodeResponses.firstLine, 1);
  EXPECT_EQ(Of(counts.MissingNullResponses), 1);
  EXPECT_EQ(counts.MissingNullResponses.firstLine, 3);
  EXPECT_EQ(Of(counts.NegativeResponses), 2);
  EXPECT_EQ(counts.NegativeResponses.firstLine, 4);
  EXPECT_EQ(Of(counts.InvalidResponses), 3);  // X, 6, 2.5
  EXPECT_EQ(counts.InvalidResponses.firstLine, 2);
  EXPECT_EQ(Of(counts.ValidResponses), 1);
  EXPECT_EQ(Of(counts.NonBlankResponses), 6);
  EXPECT_EQ(counts.ModelCounter[ModelRow(0)], 6);
}

TEST(DataPass, CheckTwoTellsTheFirstTenInvalidData) {
  PersonsAndItems run;
  run.linesBefore = 17;
  std::string lines = "2,2,6\n";
  for (int i = 0; i < 20; ++i) lines += "1,1,x\n";
  run.Read(lines);
  EXPECT_THAT(run.Report(),
              HasSubstr("Check (2)? Invalid datum location: 2,2 at or near line 18. Datum 6 is too "
                        "big or not a positive integer, treated as missing.\n"));
  std::size_t told = 0;
  for (std::size_t at = 0; (at = run.Report().find("Check (2)?", at)) != std::string::npos; ++at)
    ++told;
  EXPECT_EQ(told, 10u);
  EXPECT_EQ(Of(run.counts().InvalidResponses), 21);
}

TEST(DataPass, CheckOneComesOnceForARun) {
  PersonsAndItems run;
  run.linesBefore = 20;
  run.Read("4 1 2\n5,1,2\n1,1,3\n");
  EXPECT_THAT(run.Report(),
              HasSubstr("Check (1)? Element not specified in Labels=: flank: 1 element: 4 in line "
                        "21 - see Table 2. Delements = N\nIn data: 4 1 2\nProcessed: 4,1,2\n"));
  EXPECT_EQ(run.Report().find("Check (1)"), run.Report().rfind("Check (1)"));
  EXPECT_EQ(Of(run.counts().UnspecifiedResponses), 2);
  EXPECT_EQ(run.counts().UnspecifiedResponses.firstLine, 21);
}

TEST(DataPass, CheckOneKnowsNobuildAndLabels) {
  PersonsAndItems nobuild;
  nobuild.settings().labelsNobuild = true;
  nobuild.Read("4,1,2\n1,1,3\n");
  EXPECT_THAT(nobuild.Report(),
              HasSubstr("in line 1 - Specify Labels=Build to list in Table 2. Delements = N\n"));
  PersonsAndItems label("?,?,R5", "L.");
  label.settings().Delements = "L";
  label.Read("Ann,zz,2\nAnn,i1,3\n");
  EXPECT_THAT(label.Report(), HasSubstr("flank: 2 element: zz label: zz in line 1"));
  EXPECT_THAT(label.Report(), HasSubstr("Delements = L\nIn data: Ann,zz,2\n"));
}

TEST(DataPass, ReplicationOfNothingSkipsTheLine) {
  PersonsAndItems run;
  run.Read("R0,1,1,2,x,,9\nR0,1,1,3\n1,1,3\n");
  EXPECT_EQ(Of(run.counts().R0Lines), 2);
  EXPECT_EQ(run.counts().R0Lines.firstLine, 1);
  EXPECT_EQ(Of(run.counts().NonBlankResponses), 1);
  EXPECT_EQ(Of(run.counts().MissingNullResponses), 0);
}

TEST(DataPass, ElementsOfALineWithoutReplicationAreLookedUp) {
  PersonsAndItems listed;
  listed.Read("R0,7,1,2\n1,1,3\n");
  EXPECT_THAT(listed.Report(), HasSubstr("\n7 = 7\n"));
  EXPECT_EQ(Of(listed.counts().UnspecifiedResponses), 0);
  PersonsAndItems fault;
  fault.Read("R0,x,1,2\n1,1,3\n");
  EXPECT_EQ(fault.analysis.reading.FaultCode, Fault::invalidElementNumberInData);
}

TEST(DataPass, TheNullElementIsListedWithANote) {
  PersonsAndItems run;
  run.Read("1,0,3\n1,,3\n");
  EXPECT_THAT(run.Report(),
              HasSubstr("\nLabels=\n2, F2,  , ; flank 2\n"
                        "0 = 0 ; this element number is ignored, because Null= 0\n *\n *\n"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("Check (1)")));
}

TEST(DataPass, ARangeTakesOneResponseForEachElement) {
  PersonsAndItems run;
  run.Read("1-3,1,0,1,2\n2_1,2,4,5\n");
  EXPECT_THAT(run.Records(), ElementsAre("0 1 0 : 1 4", "0 1 1 : 2 4", "0 1 2 : 3 4", "0 1 4 : 1 5",
                                         "0 1 5 : 2 5"));
}

TEST(DataPass, ElementsOfARangeLeftOverHaveNoDatum) {
  PersonsAndItems run;
  run.Read("1-3,1,4\n");
  EXPECT_THAT(run.Records(), ElementsAre("0 1 4 : 1 4"));
}

TEST(DataPass, ResponsesBeyondTheRangeAreWarnedOfOnce) {
  PersonsAndItems run;
  run.Read("1-2,1,4,5,,\n1-2,1,0,1,2,,3\n1-2,1,0,1,2\n");
  EXPECT_EQ(Of(run.counts().ValidResponses), 6);
  EXPECT_EQ(Of(run.counts().MissingNullResponses), 0);
  EXPECT_THAT(run.Report(), HasSubstr("s.txt line: 2\n1-2,1,0,1,2,,3\n"
                                      "Warning (18)! 3 excess responses ignored\n"));
  EXPECT_EQ(run.Report().find("Warning (18)"), run.Report().rfind("Warning (18)"));
}

TEST(DataPass, ARangeMayHoldNullAndUnspecifiedElements) {
  PersonsAndItems run;
  run.Read("0-4,1,0,1,2,3,4\n");
  EXPECT_THAT(run.Records(),
              ElementsAre("0 1 0 : 0 4", "0 1 1 : 1 4", "0 1 2 : 2 4", "0 1 3 : 3 4"));
  EXPECT_EQ(Of(run.counts().UnspecifiedResponses), 1);
}

TEST(DataPass, RangesHaveTheirFaults) {
  struct Case {
    const char* statement;
    const char* line;
    Fault fault;
  };
  for (const Case& c : {Case{"?,?,R5", "1-2,1-2,3\n", Fault::twoRanges},
                        Case{"?,X,R5", "1,1-2,3\n", Fault::rangeInUnusedFlank},
                        Case{"?,?,R5", "1,1-32001,3\n", Fault::rangeTooLong},
                        Case{"?,?,R5", "1,1-32000,3\n", Fault::none},
                        Case{"?,?,R5", "1,2147483646-0,3\n", Fault::rangeTooLong},
                        Case{"?,?,R5", "1,1-x,3\n", Fault::invalidElementNumberInData},
                        Case{"?,X,R5", "1,a-b,3\n", Fault::none}}) {
    PersonsAndItems run(c.statement);
    run.Read(c.line);
    EXPECT_EQ(run.analysis.reading.FaultCode, c.fault) << c.statement << " " << c.line;
  }
  PersonsAndItems dvalues;
  dvalues.Dvalue({.position = 2, .text = "1-2", .asWritten = ""});
  dvalues.Read("1-2,3\n");
  EXPECT_THAT(dvalues.Fault(),
              HasSubstr("Only one flank may have a range (-) in a data line: could "
                        "be a problem in Dvalues=: "));
}

TEST(DataPass, NullElementsFitAnyElementAndNoNumber) {
  PersonsAndItems any;
  any.Read("1,0,3\n1,,4\n");
  EXPECT_THAT(any.Records(), ElementsAre("0 1 3 : 1 0", "0 1 4 : 1 0"));
  PersonsAndItems number("?,1,R5");
  number.Read("1,0,3\n1,1,3\n");
  EXPECT_EQ(Of(number.counts().UnmatchedResponses), 1);
  EXPECT_EQ(Of(number.counts().UnspecifiedResponses), 0);
  PersonsAndItems another;
  another.settings().NullElement = 2;
  another.Read("1,2,3\n");
  EXPECT_THAT(another.Records(), ElementsAre("0 1 3 : 1 0"));
  PersonsAndItems none;
  none.settings().NullElement = -1;
  none.Read("1,0,3\n1,1,3\n");
  EXPECT_EQ(Of(none.counts().UnspecifiedResponses), 1);
}

TEST(DataPass, PositionsMayComeInAnyOrderAndBeUnused) {
  DataRun swapped;
  swapped.Flank({{1, ""}, {2, ""}, {3, ""}});
  swapped.Flank({{1, ""}, {2, ""}});
  swapped.Entered({2, 1});
  swapped.Model("?,?,R5");
  swapped.Read("1,3,4\n");
  EXPECT_THAT(swapped.Records(), ElementsAre("0 1 4 : 4 3"));  // in the order of the positions

  DataRun unused;
  unused.Flank({{1, ""}, {2, ""}, {3, ""}});
  unused.Flank({{1, ""}, {2, ""}});
  unused.Entered({2, 0, 1});
  unused.Model("?,?,R5");
  unused.Read("1,abc,3,4\n1,5-9,2,3\n");
  EXPECT_THAT(unused.Records(), ElementsAre("0 1 4 : 4 3", "0 1 3 : 4 2"));
}

TEST(DataPass, APositionOutOfEveryStatementIsNotRead) {
  PersonsAndItems run("?,X,R5");
  run.Read("1,nonsense,4\n2,77,3\n");
  EXPECT_THAT(run.Records(), ElementsAre("0 1 4 : 1 0", "0 1 3 : 2 0"));
  EXPECT_TRUE(run.counts().UnspecifiedList.empty());
}

TEST(DataPass, LabelsAndNumbersAreTriedInTheOrderAskedFor) {
  DataRun run;
  run.Flank({{1, "2"}, {2, "Bob"}}, "NL");
  run.Flank({{1, "2"}, {2, "i2"}}, "LN");
  run.Model("?,?,R5");
  run.Read("2,2,1\nBob,i2,2\n1,1,3\n");
  // Number 2 first; label "2" first; then labels; then 1 as a number where no label is "1".
  EXPECT_THAT(run.Records(), ElementsAre("0 1 1 : 2 3", "0 1 2 : 2 4", "0 1 3 : 1 3"));
}

TEST(DataPass, AMissingLabelIsUnspecifiedAndNoFault) {
  PersonsAndItems run("?,?,R5", "NL");
  run.Read("1,i2,3\n2,i1,1\n1,zz,3\n1,7,3\n");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::none);
  EXPECT_EQ(Of(run.counts().ValidResponses), 2);
  EXPECT_EQ(Of(run.counts().UnspecifiedResponses), 2);
}

TEST(DataPass, AFlankWithoutElementsLeavesTheOthersToBeMeasured) {
  DataRun run;
  run.Flank({{1, "Ann"}});
  run.Flank({});
  run.Model("?,?,R5");
  run.Read("1,7,3\n2,7,3\n0,7,3\n");
  EXPECT_THAT(run.Records(), ElementsAre("0 1 3 : 1 0"));
  EXPECT_EQ(Of(run.counts().UnspecifiedResponses), 2);
  EXPECT_THAT(run.Report(), HasSubstr("Warning (10)!: No elements specified for flank 2\n"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("specified for flank 1\n")));
  EXPECT_THAT(run.Report(), HasSubstr("2, F2,  , ; flank 2\n7 = 7\n"));
}

TEST(DataPass, DvaluesFillPositions) {
  struct Case {
    DvalueEntry entry;
    const char* lines;
    const char* record;  // of the last line
    const char* why;
  };
  const Case cases[] = {
      {{2, "1", 0, 0, 0, ""}, "1,3\n", "0 1 3 : 1 4", "a fixed element"},
      {{1, "$L", 0, 0, 0, ""}, "\n2,3\n", "0 1 3 : 2 5", "the line number"},
      {{1, "$C", 0, 0, 0, ""}, "\n2,3\n", "0 1 3 : 1 5", "data lines so far, with this one"},
      {{1, "2-3", 0, 0, 0, ""}, "2,3\n", "0 1 3 : 2 5", "a range: its first element"},
  };
  for (const Case& c : cases) {
    PersonsAndItems run;
    run.Dvalue(c.entry);
    run.Read(c.lines);
    EXPECT_THAT(run.Records(), ElementsAre(c.record)) << c.why;
  }
}

TEST(DataPass, DvaluesCutLabelsAndFieldsAndTakeGroups) {
  DataRun run;
  run.Flank({{1, "Ann 2 x"}, {2, "Bob 1 y"}, {3, "3"}});
  run.Flank({{1, ""}, {2, ""}});
  run.Flank({{1, "x"}, {2, "y"}}, "L.");
  run.Model("?,?,?,R5");
  run.Dvalue({2, "", 1, 5, 1, ""});  // from the label of position 1
  run.Dvalue({3, "", 1, 7, 1, ""});
  run.Read("1,3\n2,4\n");
  EXPECT_THAT(run.Records(), ElementsAre("0 1 3 : 1 5 6", "0 1 4 : 2 4 7"));

  DataRun group;
  group.Flank({{1, "a"}, {2, "b"}});
  group.Flank({{1, ""}, {2, ""}});
  group.Model("?,?,R5");
  group.design().elements.ElementGroup[ElementSlot(2)] = 2;
  group.Dvalue({2, "$G", 1, 0, 0, ""});
  group.Read("2,3\n");
  EXPECT_THAT(group.Records(), ElementsAre("0 1 3 : 2 4"));
}

TEST(DataPass, DvaluesMayComeFromDvaluesButNotFromThemselves) {
  DataRun chain;
  for (int f = 0; f < 3; ++f) chain.Flank({{1, ""}, {2, ""}, {12, ""}});
  chain.Model("?,?,?,R5");
  chain.Dvalue({1, "", 2, 2, 1, ""});
  chain.Dvalue({2, "", 3, 1, 2, ""});
  chain.Read("12,3\n");
  EXPECT_THAT(chain.Records(), ElementsAre("0 1 3 : 2 6 9"));

  DataRun circle;
  for (int f = 0; f < 2; ++f) circle.Flank({{1, ""}, {2, ""}});
  circle.Model("?,?,R5");
  circle.Dvalue({1, "", 2, 1, 1, ""});
  circle.Dvalue({2, "", 1, 1, 1, ""});
  circle.Read("3\n");
  EXPECT_EQ(circle.analysis.reading.FaultCode, Fault::dvaluesCircular);
}

// Pupils 1-Ann, 2-Bob and 2-Cy (slots 1 to 3), one question (4) and two schools (5 and 6).
class Pupils : public DataRun {
 public:
  explicit Pupils(const std::string& statement = "?,?,?,R5") {
    Flank({{1, "1-Ann"}, {2, "2-Bob"}, {3, "2-Cy"}});
    Flank({{1, "q"}});
    Flank({{1, "North"}, {2, "South"}});
    Model(statement);
  }
};

TEST(DataPass, DvaluesOutOfARangeAreThoseOfEachElement) {
  Pupils labels;
  labels.Dvalue({3, "", 1, 1, 1, ""});
  labels.Read("1-3,1,3,4,2\n2,1,5\n2-3,1,1\n");
  EXPECT_THAT(labels.Records(), ElementsAre("0 1 3 : 1 4 5", "0 1 4 : 2 4 6", "0 1 2 : 3 4 6",
                                            "0 1 5 : 2 4 6", "0 1 1 : 2 4 6"));
  EXPECT_THAT(labels.Screen(), HasSubstr(" Processed as: 1-3,1 (q),1 (North)  3,4,2\n"));

  Pupils groups;
  for (int slot = 1; slot <= 3; ++slot)
    groups.design().elements.ElementGroup[ElementSlot(slot)] = slot == 2 ? 1 : 2;
  groups.Dvalue({3, "$G", 1, 0, 0, ""});
  groups.Read("1-3,1,3,4,2\n");
  EXPECT_THAT(groups.Records(), ElementsAre("0 1 3 : 1 4 6", "0 1 4 : 2 4 5", "0 1 2 : 3 4 6"));
}

TEST(DataPass, ChainsOfDvaluesFollowARange) {
  // Position 4 is cut from the label of 3, which is cut from the number in 1: 11 to 13 have no
  // label.  Position 2, which comes before them, takes the group of 4.
  DataRun run;
  run.Flank({{11, ""}, {12, ""}, {13, ""}});
  run.Flank({{1, ""}, {2, ""}});
  run.Flank({{1, "b"}, {2, "a"}, {3, "b"}});
  run.Flank({{1, "a"}, {2, "b"}}, "L.");
  run.Model("?,?,?,?,R5");
  run.design().elements.ElementGroup[ElementSlot(9)] = 2;   // a
  run.design().elements.ElementGroup[ElementSlot(10)] = 1;  // b
  run.Dvalue({2, "$G", 4, 0, 0, ""});
  run.Dvalue({3, "", 1, 2, 1, ""});
  run.Dvalue({4, "", 3, 1, 1, ""});
  run.Read("11-13,3,4,2\n");
  EXPECT_THAT(run.Records(),
              ElementsAre("0 1 3 : 1 4 6 10", "0 1 4 : 2 5 7 9", "0 1 2 : 3 4 8 10"));
}

TEST(DataPass, WhatFollowsARangeMayBeUnknownOrNoElement) {
  Pupils run;
  run.design().elements.ElementLabel[ElementSlot(2)] = "7-Bob";
  run.design().elements.ElementLabel[ElementSlot(3)] = "0-Cy";
  run.settings().Query = true;
  run.Dvalue({3, "", 1, 1, 1, ""});
  run.Read("1-3,1,3,4,2\n");
  EXPECT_THAT(run.Screen(), HasSubstr("\n1,1,1 datum: 3 ; datum number 1\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("\n2,1,7 unspecified  ; datum number 2\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("\n3,1,0 model ?,?,?,R5,1 matched ; datum number 3\n"));
  EXPECT_THAT(run.Report(), HasSubstr("flank: 3 element: 7 in line 1"));

  Pupils second;  // a Dvalue may not be another range
  second.design().elements.ElementLabel[ElementSlot(3)] = "1-2";
  second.Dvalue({3, "", 1, 1, 3, ""});
  second.design().elements.ElementLabel[ElementSlot(1)] = "1";
  second.design().elements.ElementLabel[ElementSlot(2)] = "2";
  second.Read("1-3,1,3,4,2\n");
  EXPECT_EQ(second.analysis.reading.FaultCode, Fault::twoRanges);
}

TEST(DataPass, MessagesNameTheElementWithinARange) {
  PersonsAndItems query;
  query.settings().Query = true;
  query.Read("1-5,2,1,3,2,4,5\n");
  EXPECT_THAT(query.Screen(), HasSubstr("\n3,2 datum: 2 ; datum number 3\n"));
  EXPECT_THAT(query.Screen(), HasSubstr("\n4,2 unspecified  ; datum number 4\n"));
  EXPECT_THAT(query.Screen(), HasSubstr("\n5,2 unspecified  ; datum number 5\n"));

  PersonsAndItems check;
  check.Read("0-2,1,x,3,x\n");
  EXPECT_THAT(check.Report(),
              HasSubstr("Check (2)? Invalid datum location: 0,1 at or near line 1."));
  EXPECT_THAT(check.Report(),
              HasSubstr("Check (2)? Invalid datum location: 2,1 at or near line 1."));
}

TEST(DataPass, QueryShowsTheFateOfEachDatumAndGoesOn) {
  PersonsAndItems run;
  run.settings().Query = true;
  run.Read("1,2,3,-1,x\n\nR0,1,1,1\n1,1,\n");
  EXPECT_THAT(run.Screen(), HasSubstr("Query=Y in effect!  Data matching displayed:\n"
                                      "1: ?,?,R5,1 ; active model statement for Query=Yes\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("1,2 datum: 3 ; datum number 1\n"
                                      "1,2 model ?,?,R5,1 matched ; datum number 1\n"
                                      "1,2 datum: -1 ; datum number 2\n"
                                      "1,2 model ?,?,R5,1 matched ; datum number 2\n"
                                      "1,2 negative datum ignored ; datum number 2\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("1,2 non-numeric datum ignored ; datum number 3\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("\nblank\n0 R0 replications for datum\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("1,1 no datum:  ; datum number 1\n"
                                      "1,1 datum treated as Missing ; datum number 1\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("Press F4 for next match, F5 to discontinue Query=Y, or use "
                                      "Estimation menu\n"));
  EXPECT_EQ(Of(run.counts().ValidResponses), 1);
}

TEST(DataPass, QueryEndsWhenTheUserHasSeenEnough) {
  PersonsAndItems run;
  run.settings().Query = true;
  run.shell.ActionAtPump(12, [&run] { run.process.control.QueryMode = false; });
  std::string lines;
  for (int i = 0; i < 50; ++i) lines += "1,1,3\n";
  run.Read(lines);
  std::size_t prompts = 0;
  for (std::size_t at = 0; (at = run.Screen().find("Press F4", at)) != std::string::npos; ++at)
    ++prompts;
  EXPECT_LT(prompts, 10u);
  EXPECT_EQ(Of(run.counts().ValidResponses), 50);
}

TEST(DataPass, AUserWhoBreaksOffEndsThePassWithinSomeThousandLines) {
  PersonsAndItems run;
  std::string lines;
  for (int i = 0; i < 30000; ++i) lines += "1,1,3\n";
  run.shell.ActionAtPump(6, [&run] { run.process.control.CancelRequested = true; });
  run.Read(lines);
  EXPECT_TRUE(run.console.stopping());
  EXPECT_LT(Of(run.counts().DataLines), 10000);
  EXPECT_THAT(run.Report(), Not(HasSubstr("Total lines")));
}

TEST(DataPass, ATickComesAtMostOnceInFiveSeconds) {
  PersonsAndItems run;
  std::string lines;
  for (int i = 0; i < 41000; ++i) lines += "1,1,3\n";  // ten looks at the clock
  run.shell.clockStep = 1000;
  run.Read(lines);
  EXPECT_EQ(run.shell.progress, ">...<");
}

TEST(DataPass, ADataFileIsReadWithItsOwnLineNumbers) {
  PersonsAndItems run;
  run.ReadFile(run.folder.write("d.txt", "1,1,3\n1,1,x\n"));
  EXPECT_EQ(run.counts().InvalidResponses.firstLine, 2);
  EXPECT_THAT(run.Report(), HasSubstr("Assigning models to Data= \"" + run.folder.file("d.txt")));
  EXPECT_THAT(run.Report(), HasSubstr("Total lines in data file = 2\n"));
}

TEST(DataPass, ADataFileIsLookedForBesideTheSpecification) {
  PersonsAndItems run;
  run.folder.write("a-name-nobody-has.txt", "1,1,3\n");
  run.settings().specificationFile = run.folder.file("s.txt");
  run.ReadFile("a-name-nobody-has.txt");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::none);
}

TEST(DataPass, ADataFileThatIsNotThereIsNamed) {
  PersonsAndItems run;
  run.ReadFile("no-such-file.txt");
  EXPECT_EQ(run.Fault(), "\"no-such-file.txt\" File not found: Error F43");
}

// The text that the importer made is read; messages name the user's file.
TEST(DataPass, AnImportedTextIsReadUnderTheNameOfTheUsersFile) {
  PersonsAndItems run;
  ASSERT_FALSE(run.analysis.work.importedData.Create("imported", "txt"));
  std::ofstream(run.analysis.work.importedData.name()) << "1\t1\t3\n\n1\tx\t3\n";
  run.ReadFile("d.xlsx");
  EXPECT_EQ(run.counts().ValidResponses.text(), "1");
  EXPECT_THAT(run.Screen(), HasSubstr("Assigning models to Data= \"d.xlsx\"\n"));
  EXPECT_THAT(run.Fault(), HasSubstr("Data line in d.xlsx(2) line: 3 is: "));
  EXPECT_EQ(run.analysis.reading.fault.number, 2);  // the position, for the place in the file
}

TEST(DataPass, AVeryLongLineIsCutInMessages) {
  PersonsAndItems run;
  run.Read("1," + std::string(5000000, 'x') + ",3\n");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::invalidElementNumberInData);
  EXPECT_LT(run.Fault().size(), 2000u);
}

TEST(DataPass, TooManyFieldsAreAFault) {
  PersonsAndItems run;
  std::string line = "1,1";
  for (int i = 0; i < kMostFields; ++i) line += ",1";
  run.Read("1,1,1\n" + line + "\n");
  EXPECT_EQ(run.analysis.reading.FaultCode, Fault::tooManyFields);
}

}  // namespace
}  // namespace flanks
