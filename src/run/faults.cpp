#include "run/faults.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/shown_text.h"
#include "report/format/join_number.h"

namespace flanks {
namespace {

constexpr std::string_view kFlanksFirst = "Please specify Flanks= before this specification";

// The words of one fault.  `before` ends where the number of the particulars goes; a row without
// `hasNumber` has its words in `before` alone.
struct FaultRow {
  Fault fault;
  std::string_view before;
  bool hasNumber = false;
  std::string_view after = {};
};

constexpr std::array kFaults = {
    FaultRow{Fault::notSpecificationValue, "\"Specification=value\" expected"},
    FaultRow{Fault::numberTooLarge, "Number invalid or greater than", true},
    FaultRow{Fault::duplicateCategory, "Duplicate category label"},
    FaultRow{Fault::tooManyModelFields, "More than", true, " components in Model= statement"},
    FaultRow{Fault::invalidScaleType,
             "Invalid scale type (valid are D,R,B,P,M), or scale name in Model= does not match "
             "Rating Scale=, or Flanks = does not match Models="},
    FaultRow{Fault::duplicateScaleLabel,
             "Duplicate Rating (or partial credit) scale= identifying labels"},
    FaultRow{Fault::flanksConflict, "Flanks= statement conflicts with prior flank commands"},
    FaultRow{Fault::flankOutOfRange, "Flank number out of range: 1-", true},
    FaultRow{Fault::tooFewModelFields, "All Model= statements must include", true,
             " flank locations + type [+ weight]"},
    FaultRow{Fault::categoryNotInteger, "Category is not an integer in range 0 to", true},
    FaultRow{Fault::flankTwiceInLabels, "Labels= contains the same flank twice"},
    FaultRow{Fault::invalidCategory,
             "Invalid category in Rating (or partial credit) scale= specification"},
    FaultRow{Fault::extraNotSpecification, "Extra specification should be: specification=value"},
    FaultRow{Fault::extraInvalid, "Extra specification is not specification=value or is invalid"},
    FaultRow{Fault::noElementLabels, "No element labels specified after Labels="},
    FaultRow{Fault::sortLength, "Sort length error"},
    FaultRow{Fault::notNumeric, "Non-numeric datum treated as missing"},
    FaultRow{Fault::invalidElementNumber,
             "Invalid element number. Must be integers in range 0 - 2147483646"},
    FaultRow{Fault::invalidGroupNumber, "Invalid group number"},
    FaultRow{Fault::invalidModelStatement, "Invalid Model= statement"},
    FaultRow{Fault::invalidResponse, "Invalid response value: non-numeric or too big for model"},
    FaultRow{Fault::tooFewDataFields, "Data record does not contain", true,
             " flank references + data. Please start comments with ;"},
    FaultRow{Fault::notWhole, "Non-Integer value where integer expected"},
    FaultRow{Fault::twoRanges, "Only one flank may have a range (-) in a data line"},
    FaultRow{Fault::rangeDeficit, "Not enough responses for the range: deficit:", true},
    FaultRow{Fault::rangeExcess, "Too many responses: excess:", true},
    FaultRow{Fault::invalidArrange,
             "Valid arrangements are flank number (optional) then A,F,M,N,P,a,m,f,n,p"},
    FaultRow{Fault::flanksFirst, kFlanksFirst},
    FaultRow{Fault::noUsableData, "No usable data.  Use Query=Y to check Models= and Labels="},
    FaultRow{Fault::allExtreme, "All data eliminated as extreme."},
    FaultRow{Fault::incompatibleFileUse, "Incompatible file usage: "},
    FaultRow{Fault::labelSortSequence, "Lsort sequence error"},
    FaultRow{Fault::unitsTooLate,
             "Umean= and Uscale= must be specified before Labels= and Rating="},
    FaultRow{Fault::dataNotSpecified, "Data= not specified"},
    FaultRow{Fault::noFileName, "No file name"},
    FaultRow{Fault::badFileName, "File name contains * or ?, or ends with \\ / or :"},
    FaultRow{Fault::fileNotFound, "File not found"},
    FaultRow{Fault::badFileFormat, "Invalid file format: not in DOS-Text (ASCII) format."},
    FaultRow{Fault::enteredMismatch, "", true, " Entered= references do not match"},
    FaultRow{Fault::emptyFile, "File has no contents"},
    FaultRow{Fault::badLineEnds, "Invalid line-end format: only CR code, CR-LF expected"},
    FaultRow{Fault::anchorTooExtreme, "Anchor value too extreme"},
    FaultRow{Fault::missingQuote, "Missing quote (+chr$(34)+) in command line"},
    FaultRow{Fault::workFileProblem, "Work file problem"},
    FaultRow{Fault::cancelled, "Execution cancelled at user request"},
    FaultRow{Fault::fileNotFoundInBatch, "File not found in batch mode"},
    FaultRow{Fault::tooManyModels, "Too many Models= specified"},
    FaultRow{Fault::dvaluesForm,
             "Dvalues= must be flank, value e.g., 3,1-4 or flank, flank, start, length, e.g., "
             "3,2,6,2, or flank, flank, $G"},
    FaultRow{Fault::flanksFirstStop, "Please specify Flanks= before this specification."},
    FaultRow{Fault::requiredFileNotFound, "Required file not found"},
    FaultRow{Fault::excelError, "Excel-related error"},
    FaultRow{Fault::dvaluesField, "Field start or length problem in Dvalues="},
    FaultRow{Fault::nonNumericWeight, "Non-numeric weight in Models= specification: "},
    FaultRow{Fault::recountValue, "Recount value not positive numeric"},
    FaultRow{Fault::noActiveElements, "No active element numbers: Models= and Labels="},
    FaultRow{Fault::glabelForm, "Format is: Glabel = flank number, group number, group label"},
    FaultRow{Fault::dvaluesUndefinedFlank, "Dvalues= references an undefined flank"},
    FaultRow{Fault::tooManyFields, "More than 32,000 fields in the data record"},
    FaultRow{Fault::dvaluesCircular, "Dvalues= flanks refer to themselves"},
    FaultRow{Fault::recodeRange, "Rating Scale= recode range not numeric. Should be number-number"},
    FaultRow{Fault::labelsTwice, "Labels= must only appear once in your Specification file"},
    FaultRow{Fault::labelsFlankZero,
             "Labels= flank number is zero. Must be an integer in the range 1-", true},
    FaultRow{Fault::noElementNumbers, "No element numbers specified after Labels="},
    FaultRow{Fault::tooManyElements, "Too many elements specified in Labels=. Processed =", true,
             ". Maximum number of element numbers is usually about 4000000"},
    FaultRow{Fault::invalidTarget, "Invalid target element number in this element specification"},
    FaultRow{Fault::circularTarget, "Target element number circular or nested too deep"},
    FaultRow{Fault::nullElementRange, "Keepzero= value out of range: -1 to 2147483646"},
    FaultRow{Fault::rangeTooLong,
             "Too many elements in the element range for a flank. If nnn-nnn is an element label, "
             "please add letter in front of this label everywhere."},
    FaultRow{Fault::rangeInUnusedFlank,
             "Element range for flank with X in Models=. Please replace X with blank in Models=."},
    FaultRow{Fault::invalidElementNumberInData,
             "Invalid element number. Must be integers in range 0 - 2147483646"},
    FaultRow{Fault::operationCancelled, "Current operation cancelled"},
};

// A weight with a decimal point is numeric in point notation only: the decimal mark of the system
// is to blame then.
std::string WeightWords(const FaultParticulars& particulars) {
  const std::string quoted = "\"" + particulars.value + "\"";
  if (particulars.number != 0)  // the system's decimal mark is a comma, and the value has a point
    return "Decimal point in value " + quoted +
           ". Please change the Windows Regional Setting from Decimal Comma to Decimal Point.";
  return "Non-numeric weight in Models= specification: " + quoted + " or wrong number of flanks.";
}

const FaultRow* FindRow(Fault fault) {
  const auto row = std::find_if(kFaults.begin(), kFaults.end(),
                                [fault](const FaultRow& r) { return r.fault == fault; });
  return row == kFaults.end() ? nullptr : &*row;
}

// A text at fault as a line of a message: not longer than a few screen lines, and without control
// characters, which would reach the terminal.
std::string ShownText(const std::string& text) {
  constexpr std::size_t kLongest = 500;  // bytes
  std::string shown(CutBetweenCharacters(text, kLongest));
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
  return text.size() > kLongest ? shown + "..." : shown;
}

std::string CodeText(Fault fault) {
  return std::to_string(static_cast<std::int32_t>(fault));
}

}  // namespace

std::string FaultWords(Fault fault, const FaultParticulars& particulars) {
  if (fault == Fault::nonNumericWeight) return WeightWords(particulars);
  const FaultRow* row = FindRow(fault);
  if (row == nullptr) return " ... not understood (error code " + CodeText(fault) + ")";
  std::string words(row->before);
  if (row->hasNumber) {
    words =
        words.empty() ? std::to_string(particulars.number) : JoinNumber(words, particulars.number);
    words += row->after;
  }
  return words + particulars.value + particulars.addition;
}

std::string FaultLine(Fault fault, const FaultParticulars& particulars) {
  std::string line;
  if (!particulars.text.empty()) line += ShownText(particulars.text) + " ";
  if (!particulars.name.empty()) line += particulars.name + " is: ";
  line += FaultWords(fault, particulars);
  line += line.ends_with(':') ? " " : ": ";
  if (particulars.lineNumber > 0) line += std::to_string(particulars.lineNumber) + " in line ";
  return line + "Error F" + CodeText(fault);
}

std::vector<Fault> AllFaults() {
  std::vector<Fault> faults;
  for (const FaultRow& row : kFaults) faults.push_back(row.fault);
  std::sort(faults.begin(), faults.end());
  return faults;
}

void SetFault(ReadState& reading, Fault fault, FaultParticulars particulars) {
  if (fault == Fault::none || reading.faulty()) return;
  if (particulars.lineNumber == 0) particulars.lineNumber = reading.LineNumber;
  reading.FaultCode = fault;
  reading.fault = std::move(particulars);
}

}  // namespace flanks
