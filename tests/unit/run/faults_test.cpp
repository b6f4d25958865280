#include "run/faults.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

TEST(FaultLine, EndsInTheCodeAndNamesTheLine) {
  FaultParticulars at;
  at.text = "Labels=";
  at.name = "Specification";
  at.lineNumber = 2;
  EXPECT_EQ(FaultLine(Fault::flanksFirst, at),
            "Labels= Specification is: Please specify Flanks= before this specification: 2 in line "
            "Error F34");
}

TEST(FaultLine, LeavesOutWhatIsNotKnown) {
  FaultParticulars at;
  at.name = "Command line";
  EXPECT_EQ(FaultLine(Fault::missingQuote, at),
            "Command line is: Missing quote (+chr$(34)+) in command line: Error F49");
}

TEST(FaultLine, ShowsALongOrBinaryTextAsALine) {
  FaultParticulars at;
  at.text = "a\tb\x01" + std::string(600, 'c');
  const std::string line = FaultLine(Fault::tooManyFields, at);
  EXPECT_EQ(line.rfind("a b ccc", 0), 0u);
  EXPECT_NE(line.find("ccc... More than 32,000 fields"), std::string::npos);
  EXPECT_LT(line.size(), 600u);
}

TEST(FaultWords, JoinTheirNumberWithOneBlank) {
  FaultParticulars at;
  at.number = 255;
  EXPECT_EQ(FaultWords(Fault::numberTooLarge, at), "Number invalid or greater than 255");
  at.number = 2;
  EXPECT_EQ(FaultWords(Fault::tooFewModelFields, at),
            "All Model= statements must include 2 flank locations + type [+ weight]");
  EXPECT_EQ(FaultWords(Fault::flankOutOfRange, at), "Flank number out of range: 1-2");
  EXPECT_EQ(FaultWords(Fault::labelsFlankZero, at),
            "Labels= flank number is zero. Must be an integer in the range 1-2");
  EXPECT_EQ(FaultWords(Fault::enteredMismatch, at), "2 Entered= references do not match");
}

TEST(FaultWords, AWeightThatIsNoNumberIsQuoted) {
  FaultParticulars at;
  at.value = "abc";
  EXPECT_EQ(FaultWords(Fault::nonNumericWeight, at),
            "Non-numeric weight in Models= specification: \"abc\" or wrong number of flanks.");
  at.value = "1.5";
  at.number = 1;
  EXPECT_EQ(FaultWords(Fault::nonNumericWeight, at),
            "Decimal point in value \"1.5\". Please change the Windows Regional Setting from "
            "Decimal Comma to Decimal Point.");
}

TEST(FaultWords, AnUnknownCodeIsShownByNumber) {
  EXPECT_EQ(FaultWords(static_cast<Fault>(4), {}), " ... not understood (error code 4)");
}

TEST(FaultWords, EveryFaultHasWords) {
  const std::vector<Fault> faults = AllFaults();
  for (const Fault fault : faults)
    EXPECT_EQ(FaultWords(fault, {}).find("not understood"), std::string::npos);
  EXPECT_TRUE(std::adjacent_find(faults.begin(), faults.end()) == faults.end()) << "a code twice";
}

// Codes whose words are kept and which nothing raises, and those that a step sets without more.
TEST(FaultWords, OfTheOthers) {
  struct Case {
    Fault fault;
    const char* words;
  };
  const Case cases[] = {
      {Fault::categoryNotInteger, "Category is not an integer in range 0 to 9"},
      {Fault::sortLength, "Sort length error"},
      {Fault::invalidModelStatement, "Invalid Model= statement"},
      {Fault::invalidResponse, "Invalid response value: non-numeric or too big for model"},
      {Fault::rangeDeficit, "Not enough responses for the range: deficit: 9"},
      {Fault::rangeExcess, "Too many responses: excess: 9"},
      {Fault::labelSortSequence, "Lsort sequence error"},
      {Fault::emptyFile, "File has no contents"},
      {Fault::badLineEnds, "Invalid line-end format: only CR code, CR-LF expected"},
      {Fault::anchorTooExtreme, "Anchor value too extreme"},
      {Fault::workFileProblem, "Work file problem"},
      {Fault::tooManyModels, "Too many Models= specified"},
      {Fault::flanksFirstStop, "Please specify Flanks= before this specification."},
      {Fault::excelError, "Excel-related error"},
      {Fault::recountValue, "Recount value not positive numeric"},
      {Fault::noElementNumbers, "No element numbers specified after Labels="},
      {Fault::allExtreme, "All data eliminated as extreme."},
      {Fault::cancelled, "Execution cancelled at user request"},
      {Fault::operationCancelled, "Current operation cancelled"}};
  for (const Case& c : cases) {
    FaultParticulars at;
    at.number = 9;
    EXPECT_EQ(FaultWords(c.fault, at), c.words);
  }
}

TEST(SetFault, TheFirstFaultStays) {
  ReadState reading;
  reading.LineNumber = 7;
  SetFault(reading, Fault::notWhole);
  reading.LineNumber = 8;
  SetFault(reading, Fault::noFileName);
  EXPECT_EQ(reading.FaultCode, Fault::notWhole);
  EXPECT_EQ(reading.fault.lineNumber, 7);
}

}  // namespace
}  // namespace flanks
