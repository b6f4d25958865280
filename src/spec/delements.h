// How data refer to elements: by number, by label, or by one and then the other.
//
// `Delements=` is a list of items, each with or without a Flank number: "N", "L", "NL", "LN", and
// behind them "E" and "W" with a number, the start column and the width of the identifier within
// its field.  The handler keeps the text; `PrepareDelements` makes one setting for each Flank when
// the Flanks are known.
//
// A label is found by its text before the first ":"; what follows is display only.  "_" counts as
// "-" there, since the data reader makes the same change in the data.
//
// Tested by tests/unit/spec/delements_test.cpp.
#ifndef FLANKS_SPEC_DELEMENTS_H
#define FLANKS_SPEC_DELEMENTS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/console.h"
#include "run/design.h"
#include "run/run.h"
#include "spec/spec_context.h"

namespace flanks {

// Handler of `Delements=`.
void SetDelements(SpecContext& context);

// Step, after LoadLabels: FlankDelements of every Flank, with Warning (17) for items that say
// nothing.  Fault: flankOutOfRange.
void PrepareDelements(Run& run);

// The identifier within a data field: from the start column on, in the width that `Delements=`
// gives the Flank; without them the whole field.
std::string_view CutIdentifier(const FlankTable& flanks, FlankNo flank, std::string_view field);

// Finds elements by label.  The index of a Flank is made at the first question about it, which
// shows "Sorting labels for flank".  One object serves one pass; the tables must not change while
// it lives.
class LabelFinder {
 public:
  LabelFinder(const FlankTable& flanks, const ElementTable& elements, Console& console);

  // The element whose label begins with `text` before its first ":", compared as it is.  Of several
  // the one with the lowest number; slot 0 when there is none.
  ElementSlot FindElementByLabel(std::string_view text, FlankNo flank);

 private:
  void MakeIndex(FlankNo flank);

  const FlankTable& flanks_;
  const ElementTable& elements_;
  Console& console_;
  // By Flank: slots in the places that the hash of their label gives; slot 0 is a free place.
  Column<FlankNo, std::vector<ElementSlot>> index_;
};

}  // namespace flanks

#endif  // FLANKS_SPEC_DELEMENTS_H
