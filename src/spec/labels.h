// Flanks and their elements: `Labels=` and the tables that it makes.
//
// While the Specification is read, `CopyLabels` copies the list into the labels file, each line
// with its number.  The step `LoadLabels` reads that file twice: the first time for the numbers,
// from which the element table is sized and the slots are given out, the second time for the
// labels, weights and targets, and at last it makes the measures and groups.  Ranges stay ranges
// until the slots are given out, and the list is sorted only when it was not in order: four million
// elements must load.
//
// Slots are given to the numbers that stand in the list and to no others.  They run from 1 to
// ElementTotal, Flank after Flank, with ascending numbers within a Flank.  The null element never
// has a slot.
//
// Tested by tests/unit/spec/labels_test.cpp.
#ifndef FLANKS_SPEC_LABELS_H
#define FLANKS_SPEC_LABELS_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "run/design.h"
#include "run/faults.h"
#include "run/run.h"
#include "spec/spec_context.h"

namespace flanks {

constexpr std::int64_t kLargestElementCount = 4000000;
constexpr std::int32_t kLargestGroupNumber = 32760;

// An element number, or a range of them.
struct ElementRange {
  std::int32_t low = 0;
  std::int32_t high = 0;
  bool isRange = false;  // written with "-"
  Fault fault = Fault::none;
};

// Reads "n", "n-m" or "n_m"; a reversed range is put in order.  Fault: invalidElementNumber.
[[nodiscard]] ElementRange ParseElementRange(std::string_view text);

// An element looked up by its number.
struct FoundElement {
  ElementSlot slot;       // slot 0: there is no such element
  bool cacheHit = false;  // it was the answer of the last look-up in this Flank
  bool found() const { return slot.number() > 0; }
};

// Finds elements by number.  Data are usually in element order, so the last answer of each Flank is
// tried first, then the Flank's ends; a Flank whose numbers have no gaps needs no search at all.
// One object serves one pass; the tables must not change while it lives.
class ElementFinder {
 public:
  ElementFinder(const FlankTable& flanks, const ElementTable& elements);
  FoundElement FindElementSlot(std::int32_t number, FlankNo flank);

 private:
  ElementSlot Search(std::int32_t number, FlankNo flank) const;

  const FlankTable& flanks_;
  const ElementTable& elements_;
  Column<FlankNo, ElementSlot> last_;
};

// Handler of `Labels=`.
void CopyLabels(SpecContext& context);

// Step: the labels file becomes the Flank and element tables.  Does nothing without Flanks.
void LoadLabels(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_LABELS_H
