// The orders of Table 4: what `Usort=` asks for, and the kept responses in such an order.
//
// An order is a text of letters and digits, each a key of the sort, the first the most important:
//
//   S Z F T   standardized residual          U   its size
//   R Y       residual                       E P   expected score
//   X V       measure sum of the response    C O D   category as observed
//   1 to 9    element number in that model position
//
// Capitals ascend and small letters descend; element numbers ascend.  Figures are compared as they
// are shown, with one decimal, so that rows that look alike on paper count as equal and the next
// key decides.  Where a position is named, those that are not follow as last keys, in their order.
// Rows that are equal in every key stay in the order of the data.
//
// Tested by tests/unit/report/table4_sort_test.cpp.
#ifndef FLANKS_REPORT_TABLE4_SORT_H
#define FLANKS_REPORT_TABLE4_SORT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/design.h"
#include "run/unexpected_responses.h"

namespace flanks {

// The orders in `Usort=`: each in its own parentheses, or the whole text where it has none.  An
// order that holds an N ends the list.
std::vector<std::string> ReadUsort(std::string_view usort);

// What the title says of an order: each letter or digit and dots to three characters, "u..Z..";
// "order in data" when it has none that counts.
std::string OrderText(std::string_view order, int positions);

// The rows of `kept` in the order, as indices.
std::vector<std::uint32_t> SortResponses(const UnexpectedResponses& kept,
                                         const ElementTable& elements, std::string_view order);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE4_SORT_H
