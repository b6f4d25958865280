// Finds elements by number.
//
// Data are usually in element order, so the last answer of each Flank is tried first, then the
// Flank's ends; a Flank whose numbers have no gaps needs no search at all; only then the Flank's
// run of the element table is searched by bisection.
//
// Tested by tests/unit/spec/element_finder_test.cpp.
#ifndef FLANKS_SPEC_ELEMENT_FINDER_H
#define FLANKS_SPEC_ELEMENT_FINDER_H

#include <cstdint>

#include "base/column.h"
#include "run/design.h"

namespace flanks {

// An element looked up by its number.
struct FoundElement {
  ElementSlot slot;       // slot 0: there is no such element
  bool cacheHit = false;  // it was the answer of the last look-up in this Flank
  bool found() const { return slot.number() > 0; }
};

// One object serves one pass; the tables must not change while it lives.
class ElementFinder {
 public:
  ElementFinder(const FlankTable& flanks, const ElementTable& elements);
  FoundElement FindElementSlot(std::int32_t number, FlankNo flank);

 private:
  ElementSlot Search(std::int32_t number, FlankNo flank) const;

  const FlankTable& flanks_;
  const ElementTable& elements_;
  Column<FlankNo, ElementSlot> last_;  // the last answer of each Flank; slot 0: none yet
};

}  // namespace flanks

#endif  // FLANKS_SPEC_ELEMENT_FINDER_H
