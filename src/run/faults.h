// The faults of the Specification and data reader: every code by name, and its words.
//
// A helper that finds a fault returns it; the reader that called it puts it into
// `ReadState::FaultCode` through `SetFault` with the particulars that its words need; the step loop
// reports it once (`ReportFault`) and sends the run to its end.  The reported line always ends in
// "Error F" and the code.
//
// Tested by tests/unit/run/faults_test.cpp.
#ifndef FLANKS_RUN_FAULTS_H
#define FLANKS_RUN_FAULTS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

enum class Fault : std::int32_t {
  none = 0,
  notSpecificationValue = 1,
  numberTooLarge = 2,
  duplicateCategory = 3,
  tooManyModelFields = 5,
  invalidScaleType = 6,
  duplicateScaleLabel = 7,
  flanksConflict = 8,
  flankOutOfRange = 9,
  tooFewModelFields = 11,
  categoryNotInteger = 12,
  flankTwiceInLabels = 13,
  invalidCategory = 15,
  extraNotSpecification = 17,
  extraInvalid = 18,
  noElementLabels = 20,
  sortLength = 21,
  notNumeric = 22,
  invalidElementNumber = 23,
  invalidGroupNumber = 24,
  invalidModelStatement = 25,
  invalidResponse = 26,
  tooFewDataFields = 27,
  notWhole = 28,
  twoRanges = 29,
  rangeDeficit = 30,
  rangeExcess = 31,
  invalidArrange = 32,
  flanksFirst = 34,
  noUsableData = 35,
  allExtreme = 36,
  incompatibleFileUse = 37,
  labelSortSequence = 38,
  unitsTooLate = 39,
  dataNotSpecified = 40,
  noFileName = 41,
  badFileName = 42,
  fileNotFound = 43,
  badFileFormat = 44,
  enteredMismatch = 45,
  emptyFile = 46,
  badLineEnds = 47,
  anchorTooExtreme = 48,
  missingQuote = 49,
  workFileProblem = 50,
  cancelled = 51,
  fileNotFoundInBatch = 52,
  tooManyModels = 53,
  dvaluesForm = 54,
  flanksFirstStop = 56,
  requiredFileNotFound = 57,
  excelError = 58,
  dvaluesField = 59,
  nonNumericWeight = 60,
  recountValue = 61,
  noActiveElements = 62,
  glabelForm = 65,
  dvaluesUndefinedFlank = 66,
  tooManyFields = 67,
  dvaluesCircular = 68,
  recodeRange = 69,
  labelsTwice = 70,
  labelsFlankZero = 71,
  noElementNumbers = 72,
  tooManyElements = 73,
  invalidTarget = 74,
  circularTarget = 75,
  nullElementRange = 76,
  rangeTooLong = 77,
  rangeInUnusedFlank = 78,
  invalidElementNumberInData = 231,
  operationCancelled = 65535,
};

constexpr std::int64_t kNoLineNumber = -1;  // of a fault that belongs to no line

// What a fault's words and its report line take beside the code.
struct FaultParticulars {
  std::string text;             // the offending value, or the line it stands in; "" for none
  std::string name;             // "Specification", "Command line", "Data line in d.txt(1) line: 5"
  std::string value;            // a text within the words (faults 37, 60)
  std::int64_t number = 0;      // a number within the words: a limit or a count
  std::string addition;         // words added behind the fault's own (29, 231)
  std::int64_t lineNumber = 0;  // 0: not known
};

// The words of a fault, without place and code.
std::string FaultWords(Fault fault, const FaultParticulars& particulars);

// The whole line: `[text ][name is: ]words: [N in line ]Error Fcode`.
std::string FaultLine(Fault fault, const FaultParticulars& particulars);

// Every code that has words, in ascending order (for the tests).
std::vector<Fault> AllFaults();

// The reader's place: the line at work and the pending fault.
struct ReadState {
  Fault FaultCode = Fault::none;
  FaultParticulars fault;       // of FaultCode
  std::int64_t LineNumber = 0;  // of the line just read
  std::string CurrentLine;
  std::string SourceLine;
  std::vector<std::string> Fields;  // Fields[0] is the keyword or the replication field
  int FieldCount = 0;

  bool faulty() const { return FaultCode != Fault::none; }
};

// Makes `fault` the pending one unless one is pending already: the first fault is the one reported.
// The line number is taken from the state when it is not given.
void SetFault(ReadState& reading, Fault fault, FaultParticulars particulars = {});

}  // namespace flanks

#endif  // FLANKS_RUN_FAULTS_H
