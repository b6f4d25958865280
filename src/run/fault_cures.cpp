#include "run/fault_cures.h"

#include <algorithm>
#include <array>

namespace flanks {
namespace {

struct CureRow {
  Fault fault;
  std::string_view cure;
};

constexpr std::string_view kCheckName =
    "Check the name and the folder: a file is looked for in the current folder, then beside the "
    "Specification.";

constexpr std::array kCures = {
    CureRow{Fault::notSpecificationValue,
            "Write keyword=value, begin a comment with ;, and check the list above for its *."},
    CureRow{Fault::numberTooLarge, "Give a number that is not larger."},
    CureRow{Fault::duplicateCategory, "Give each category of a scale one line only."},
    CureRow{Fault::tooManyModelFields,
            "Check that the statement has one reference for each Flank, then type and weight."},
    CureRow{Fault::invalidScaleType,
            "Write D, R, P, M, or R or B with a number from 1 to 255, or the name of a Rating "
            "scale= of this Specification."},
    CureRow{Fault::flanksConflict,
            "Keep one Flanks=, with room for each Flank that Noncenter= and Positive= name."},
    CureRow{Fault::flankOutOfRange, "Check the Flank's number against Flanks=."},
    CureRow{Fault::tooFewModelFields,
            "Give a reference for each Flank and then the type, and close Models= with * before "
            "another keyword."},
    CureRow{Fault::flankTwiceInLabels,
            "Put all elements of a Flank into one block, and close each block with *."},
    CureRow{Fault::invalidCategory,
            "Use whole numbers from 0 to the largest category of the scale's type."},
    CureRow{Fault::extraNotSpecification,
            "Write keyword=value, or give the file a name without blanks."},
    CureRow{Fault::extraInvalid, "Put this specification into the Specification file."},
    CureRow{Fault::noElementLabels, "List the elements behind Labels=, or take out its N."},
    CureRow{Fault::notNumeric, "Give a number."},
    CureRow{Fault::invalidElementNumber,
            "Write whole numbers, as 3 or 1-30; in Labels= the label stands behind =."},
    CureRow{Fault::invalidGroupNumber,
            "Give a whole number up to 32760, or $ and a column of the label where one stands."},
    CureRow{Fault::tooFewDataFields,
            "Give the element of each Flank and then at least one response, with commas between."},
    CureRow{Fault::notWhole, "Give a whole number."},
    CureRow{Fault::twoRanges, "Keep one range, and write a line for each element of the other."},
    CureRow{Fault::noUsableData, "Look into Table 2: it tells what became of each response."},
    CureRow{Fault::allExtreme,
            "Every score is the lowest or the highest there is, or every weight is 0: check "
            "Models=, the weights and the data in Table 2, or add data."},
    CureRow{Fault::incompatibleFileUse,
            "Give a name that no other file of the run has, in a folder that can be written."},
    CureRow{Fault::dataNotSpecified,
            "End the Specification with Data= and the data lines, or with Data= and a file name."},
    CureRow{Fault::noFileName, "Write the name of the file on the same line."},
    CureRow{Fault::badFileName, "Write the whole name of one file."},
    CureRow{Fault::fileNotFound, kCheckName},
    CureRow{Fault::badFileFormat, "Save the file as plain text and run again."},
    CureRow{Fault::enteredMismatch,
            "Put Entered-in-data= in front of Models=, or give it as many Flanks as the "
            "statements have."},
    CureRow{Fault::missingQuote, "Put a quote mark behind the name as well."},
    CureRow{Fault::fileNotFoundInBatch, kCheckName},
    CureRow{Fault::tooManyModels, "Let a statement stand for more elements, with ? or a range."},
    CureRow{Fault::requiredFileNotFound,
            "Save the data as a text file with commas between the fields."},
    CureRow{Fault::dvaluesField, "Name a position of the data line, and columns from 1 on."},
    CureRow{Fault::nonNumericWeight,
            "Give one reference for each Flank, the type, and a number as the weight, or none."},
    CureRow{Fault::noActiveElements,
            "List the elements of the Flanks that Models= measures, or take out the N of Labels=."},
    CureRow{Fault::dvaluesUndefinedFlank, "Name a position that the data line has."},
    CureRow{Fault::tooManyFields, "Break the line into several."},
    CureRow{Fault::dvaluesCircular, "Let one of the positions take its value from the data."},
    CureRow{Fault::labelsTwice, "Put the blocks of all Flanks behind one Labels=."},
    CureRow{Fault::labelsFlankZero, "Number the Flanks from 1."},
    CureRow{Fault::tooManyElements, "Check the ranges, and list only elements that the data have."},
    CureRow{Fault::invalidTarget, "Name an element that this block of Labels= lists."},
    CureRow{Fault::circularTarget, "Name an element that has no target itself."},
    CureRow{Fault::nullElementRange, "Give -1 for no null element, or an element number."},
};

}  // namespace

std::string_view FaultCure(Fault fault) {
  const auto row = std::find_if(kCures.begin(), kCures.end(),
                                [fault](const CureRow& r) { return r.fault == fault; });
  return row == kCures.end() ? std::string_view() : row->cure;
}

}  // namespace flanks
