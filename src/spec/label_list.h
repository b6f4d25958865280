// The labels file as it is read back: its lines, and the element numbers in them.
//
//   Labels = 1,Persons          a Flank line: number, name, options, weight
//   1 = Ann, 0.5, 2             an element line: number or range, label, measure, group,
//   2-9 = Guest                   weight, target
//   *                           ends a block; the next line is a Flank line
//
// A line of the file is the line of the Specification without its comment, a tab, and the number of
// the line.  Reading copies nothing but the line at work, since there may be millions.
//
// Tested by tests/unit/spec/label_list_test.cpp.
#ifndef FLANKS_SPEC_LABEL_LIST_H
#define FLANKS_SPEC_LABEL_LIST_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/text_work_file.h"
#include "run/design.h"

namespace flanks {

// The fields of a Flank line and of an element line.
constexpr int kFlankNumberField = 1, kFlankNameField = 2, kFlankOptionsField = 3,
              kFlankWeightField = 4;
constexpr int kNumberField = 1, kLabelField = 2, kMeasureField = 3, kGroupField = 4,
              kWeightField = 5, kTargetField = 6;
constexpr int kLabelLineFields = 6;

// One line.  Its texts are valid until the next line is read.
struct LabelLine {
  std::string_view text;
  std::int64_t lineNumber = 0;
  bool beginsFlank = false;
  std::array<std::string_view, kLabelLineFields + 1> fields;  // field 0 is not used
};

// The line of the labels file for a line of the Specification.
std::string LabelRecord(std::string_view text, std::int64_t lineNumber);

// Reads the Flank lines and element lines from the first one on.
class LabelLines {
 public:
  explicit LabelLines(TextWorkFile& file);
  // The next Flank line or element line; false at the end of the file.
  bool Next(LabelLine& line);

 private:
  void Split(LabelLine& line);

  TextWorkFile& file_;
  std::string separated_;  // the line with its separators made equal
  bool flankExpected_ = true;
};

// The element numbers of one line.
struct NumberRange {
  FlankNo flank;
  std::int32_t low = 0;
  std::int32_t high = 0;
};

// Whether the ranges ascend by Flank and within each Flank.
enum class RangeOrder : std::uint8_t { inOrder, numbersOutOfOrder, flanksOutOfOrder };
RangeOrder OrderOf(const std::vector<NumberRange>& ranges);

// Sorts by Flank, then by the lowest number.
void SortRanges(std::vector<NumberRange>& ranges);

// Gives each number of the sorted ranges one slot, however often it stands there, and none to the
// null element.  Fills ElementNumber and ElementFlank and, by Flank, FlankLow, FlankHigh,
// FlankFirstSlot and FlankElementCount (0 for a Flank without elements), and ElementTotal.
void GiveSlots(const std::vector<NumberRange>& ranges, std::int64_t nullElement, Design& design);

}  // namespace flanks

#endif  // FLANKS_SPEC_LABEL_LIST_H
