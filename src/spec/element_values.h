// Measures, groups and targets of elements: the values beside the label on an element line.
//
// Measure and group are kept as texts until all lines are read, because a later line may replace
// one of them or the label that a "$" group is cut from; `SetElementValues` then makes the values.
// A measure in user units becomes logits with Umean= and Uscale=.  An anchor at exactly 0 is stored
// as exp(-Hardware), since 0 is the mark of an element without a measure.
//
// A target is another element of the Flank whose measure the element takes.  Targets may form
// chains, which are cut short in the end so that each element names its last target.
//
// Tested by tests/unit/spec/element_values_test.cpp.
#ifndef FLANKS_SPEC_ELEMENT_VALUES_H
#define FLANKS_SPEC_ELEMENT_VALUES_H

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "run/console.h"
#include "run/design.h"
#include "run/faults.h"
#include "run/process.h"
#include "run/settings.h"

namespace flanks {

constexpr std::int32_t kLargestGroupNumber = 32760;
constexpr int kTooManyTargets = 10;  // in one chain

// "1,2,Ann": Flank, number and label, for messages.
std::string DescribeElement(const Design& design, ElementSlot slot);

// Measure and group texts by slot.  A range of elements shares one entry.
class ElementTexts {
 public:
  // Gives the slots low to high the texts that are not empty; others stay as they are.
  void Set(ElementSlot low, ElementSlot high, std::string_view measure, std::string_view group,
           std::int64_t lineNumber, std::int32_t elementTotal);

  std::string_view measure(ElementSlot slot) const;
  std::string_view group(ElementSlot slot) const;
  std::int64_t lineNumber(ElementSlot slot) const;  // of the last line that gave one of them

 private:
  struct Entry {
    std::string texts;  // measure, code 1, group
    std::int64_t lineNumber = 0;
  };
  const Entry* entry(ElementSlot slot) const;

  std::deque<Entry> entries_;
  Column<ElementSlot, std::int32_t> entryOf_;  // 1 for the first; 0: none.  Empty until needed
};

// The group text of an element: "$3W2" is the two characters of the label from column 3 on, "$3"
// one character; what begins otherwise is itself.
std::string_view ResolveGroupText(std::string_view text, std::string_view label);

// What is stored for an anchor at 0: exp(-hardware), or the smallest 32-bit number above 0.
float ZeroAnchor(float hardware);

// Sets ElementGroup, FlankHighestGroup, ElementAnchor and PresetMeasure of all elements.  An
// invalid group is shown and becomes the pending fault, invalidGroupNumber; a measure beyond
// Hardware= stops the run.
void SetElementValues(const ElementTexts& texts, const Settings& settings, Design& design,
                      ReadState& reading, FormerRun& former, Console& console);

// Makes `target` the target of `slot`.  Fault: circularTarget, when the chain from there comes back
// or has kTooManyTargets targets.
[[nodiscard]] Fault SetTarget(ElementTable& elements, ElementSlot slot, ElementSlot target);

// Makes the last element of each chain the target.  Gives the first element whose chain is too long
// (SetTarget does not see the whole of a chain that grows at its end), or slot 0.
[[nodiscard]] ElementSlot CollapseTargets(ElementTable& elements);

}  // namespace flanks

#endif  // FLANKS_SPEC_ELEMENT_VALUES_H
