// What a data line says of the active positions: which element stands in each.
//
// Filled by ResolveElements once for a line; with a range, one position changes with each response,
// and so do its followers: the positions whose Dvalue comes from it, be it through others.
// Read by MatchResponse and by the writer of element records.
#ifndef FLANKS_DATA_LINE_ELEMENTS_H
#define FLANKS_DATA_LINE_ELEMENTS_H

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "base/column.h"
#include "run/design.h"

namespace flanks {

// PositionStatus: the element's slot, or one of these.
constexpr std::int32_t kStatusNullElement = -1;  // no element: the null element, an empty field
constexpr std::int32_t kStatusUnspecified = -2;  // an element that is not in Labels=
constexpr std::int32_t kStatusEmptyFlank = -4;   // the Flank has no element at all

// PositionElement where there is no element.
constexpr std::int32_t kNoElementNumber = -1;

// What stands in a position.
struct FoundIdentifier {
  std::int32_t number = kNoElementNumber;
  std::int32_t status = kStatusNullElement;
};

// What stands in a follower for one element of the range.
struct FollowerValue {
  FoundIdentifier found;
  std::string text;
};

struct LineElements {
  Column<Position, std::int32_t> PositionElement;  // the element's number
  Column<Position, std::int32_t> PositionStatus;
  Column<Position, std::uint8_t> active;  // 0: "X" in every statement; the position always fits

  Position rangePosition;                  // no row: the line has no range
  std::vector<FoundIdentifier> RangeList;  // in ascending order of the numbers
  DataPosition rangeDataPosition;          // where it stands, with a range
  std::int32_t rangeLow = 0;               // the number of its first element
  std::string rangeText;                   // the number of its current element

  std::vector<DataPosition> followers;        // each behind the one that it follows
  std::vector<FollowerValue> followerValues;  // element by element, in the order of `followers`

  bool hasRange() const { return rangePosition.number() > 0; }
  // Whether what stands in the position changes with each response.
  bool ChangesWithRange(DataPosition position) const {
    return hasRange() &&
           (position == rangeDataPosition ||
            std::find(followers.begin(), followers.end(), position) != followers.end());
  }
};

}  // namespace flanks

#endif  // FLANKS_DATA_LINE_ELEMENTS_H
