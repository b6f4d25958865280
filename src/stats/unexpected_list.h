// Keeping the responses of largest standardized residual, as a pass meets them.
//
// Among responses that are candidates (size of StRes at or above `Unexpected=`), at most
// `T4maximum` are kept, in this order: by descending size of StRes; of equal size, positive ones
// before negative ones; of these the positive ones in the order of the data, the negative ones
// against it.  That is the order of a list in which each candidate looks for its place and goes
// behind a positive row of its size and before a negative one.  It is a strict order, so what is
// kept is the head of a full sort, whatever came first.
//
// While there is room, rows are only put down.  A full list becomes a heap with its last row on
// top: a candidate costs one comparison when it finds no room, and a logarithm of the rows when it
// does, so a list of millions is no slower than a short one; a list in which rows are moved up for
// each candidate would take the square of its length.  Memory grows with the rows that are kept,
// not with the limit.
//
// Tested by tests/unit/stats/unexpected_list_test.cpp and, as a law,
// tests/properties/stats/unexpected_list_test.cpp.
#ifndef FLANKS_STATS_UNEXPECTED_LIST_H
#define FLANKS_STATS_UNEXPECTED_LIST_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "run/unexpected_responses.h"

namespace flanks {

// Whether `a` stands before `b` in the list.
bool ComesBefore(const KeptResponse& a, const KeptResponse& b);

class UnexpectedList {
 public:
  // `width`: the elements of a response.  Nothing is kept when T4maximum is 0 or less.
  UnexpectedList(float Unexpected, std::int32_t T4maximum, int width);

  bool IsCandidate(float StRes) const { return keeps_ && std::abs(StRes) >= list_.Unexpected; }

  // A candidate with its `width` elements; each has a sequence number of its own.
  void Add(const KeptResponse& response, std::span<const ElementSlot> elements);

  // What was kept, in order.  The list is done.
  UnexpectedResponses Finish();

 private:
  void Put(std::uint32_t place, const KeptResponse& response,
           std::span<const ElementSlot> elements);

  UnexpectedResponses list_;  // rows in any order
  bool keeps_;
  std::vector<std::uint32_t> heap_;  // places of the rows, the last one of the order first
};

}  // namespace flanks

#endif  // FLANKS_STATS_UNEXPECTED_LIST_H
