// The order of Table 7's rows: one sort key for each element, by the letters of an Arrange= item.
//
// Tested by tests/unit/report/table7_sort_test.cpp.
#ifndef FLANKS_REPORT_TABLE7_SORT_H
#define FLANKS_REPORT_TABLE7_SORT_H

#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"

namespace flanks {

// One item of `Arrange=`: an optional Flank number and sort letters.
struct ArrangeItem {
  bool numbered = false;  // a number is given; without one the item is for all Flanks
  int flank = 0;          // 0: the bias terms
  std::string letters;    // without the digits
};

std::vector<ArrangeItem> ReadArrange(std::string_view arrange);

// The sort key of an element: a piece for each letter, and its slot in hexadecimal at the end, so
// that equal keys keep the elements' order.  All keys of a Flank have the same length.
std::string Table7Key(const Analysis& analysis, ElementSlot slot, std::string_view letters,
                      int labelLength);

// The longest label of a Flank in bytes: labels are padded to it in alphabetic keys.
int LongestLabel(const Design& design, FlankNo flank);

// The slot that a key ends in.
ElementSlot SlotOfKey(std::string_view key);

// The fit that is worse of infit and outfit, signed: overfit is negative.  Mean-squares below 1
// become minus their reciprocal first.
float WorseMeanSquare(float infit, float outfit);
float WorseZStd(float infit, float outfit);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_SORT_H
