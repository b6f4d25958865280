// From the fields of a data line to elements: numbers and slots by active position.
//
// Each data position is read as its Flank's `Delements=` says: by number, by label, or by one with
// the other as its fall-back.  Element numbers are digits alone.  "n-m" where a number stands is a
// range: the responses of the line then belong to the elements n to m in turn, and one position of
// a line may have a range.  An empty field and the null element are no element.  An element that
// has no slot is unspecified: it is kept for the list of Table 2, and the first one of a run for
// Check (1).
//
// Positions with a Dvalue are filled here: a fixed text, the line number, the count of data lines,
// or a piece of another position's text or group, which may come from a Dvalue itself.  A Dvalue
// that comes from the position of a range is filled anew for each element of the range.
//
// Tested by tests/unit/data/data_pass_test.cpp.
#ifndef FLANKS_DATA_RESOLVE_ELEMENTS_H
#define FLANKS_DATA_RESOLVE_ELEMENTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/column.h"
#include "data/data_line.h"
#include "data/line_elements.h"
#include "data/unspecified.h"
#include "run/data_counts.h"
#include "run/design.h"
#include "spec/delements.h"
#include "spec/labels.h"

namespace flanks {

constexpr std::int32_t kMostRangeElements = 32000;

// A fault of a data line, with its place.
struct LineProblem {
  Fault fault = Fault::none;
  int position = 0;       // data position, 0: the line as a whole
  std::string_view text;  // the field at fault
};

// The first unspecified element of a run.
struct FirstUnspecified {
  FlankNo flank;
  DataPosition position;
  std::string identifier;
  bool byLabel = false;
};

class ElementResolver {
 public:
  // The references must outlive the resolver; `nullElement` is -1 for none.
  ElementResolver(const Design& design, std::int64_t nullElement, const SplitRules& rules,
                  ElementFinder& finder, LabelFinder& labels, DataCounts& counts);

  // Fills the Dvalues of `line` and sets `elements`.
  [[nodiscard]] LineProblem ResolveElements(DataLine& line, std::int64_t lineNumber,
                                            LineElements& elements);

  // Makes element `index` (from 0) of the range the current one, with what follows it: positions
  // and fields of the line.
  void TakeRangeElement(std::size_t index, DataLine& line, LineElements& elements) const;

  // How the short cut of the data pass may take a position's field: digits that are an element
  // number, a label, or anything because nobody looks at it.
  enum class PlainField : std::uint8_t { digits, label, ignored };

  // Whether the fields of this run's lines can be taken by the three procedures below.
  bool ReadsPlainFields() const { return plainFields_; }
  PlainField plainField(DataPosition position) const { return plans_[position].plainField; }

  // Each sets the position and is false when ResolveElements has to look closely.
  bool TakePlainNumber(DataPosition position, std::int32_t number, LineElements& elements) {
    const PositionPlan& plan = plans_[position];
    if (!plan.inUse) return TakeNothing(plan, elements);
    if (number == nullElement_) return false;
    return TakeSlot(plan, SlotOfNumber(plan, number), number, elements);
  }
  bool TakePlainLabel(DataPosition position, std::string_view label, LineElements& elements) {
    const PositionPlan& plan = plans_[position];
    const std::int32_t slot = SlotOfLabel(plan, label);
    return slot > 0 &&
           TakeSlot(plan, slot, design_.elements.ElementNumber[ElementSlot(slot)], elements);
  }

  // The first unspecified element, once.
  std::optional<FirstUnspecified> TakeFirstUnspecified();
  UnspecifiedElements& unspecified() { return unspecified_; }

 private:
  enum class Identifier : std::uint8_t { number, label, numberThenLabel, labelThenNumber };

  // What is known of a data position before any line is read.
  struct PositionPlan {
    DataPosition position;
    FlankNo flank;    // no row: the position is not used
    Position active;  // no row: it is not active
    bool inUse = false;
    Identifier identifier = Identifier::number;
    PlainField plainField = PlainField::digits;
    bool cut = false;  // the identifier is a piece of the field
    bool emptyFlank = false;
    bool gapFree = false;  // the slot is the first slot plus the number less `low`
    std::int32_t low = 0, high = -1, firstSlot = 0;
  };
  void MakePlan(DataPosition position);
  LineProblem ResolveWithDvalues(DataLine& line, std::int64_t lineNumber, LineElements& elements);
  LineProblem ResolveFollowers(DataLine& line, std::int64_t lineNumber, LineElements& elements);
  void TakeRangeNumber(std::size_t index, DataLine& line, LineElements& elements) const;
  bool TakeDvalue(const DvalueEntry& entry, DataLine& line, std::int64_t lineNumber,
                  const LineElements& elements);
  std::string_view SourceText(DataPosition source, const DataLine& line,
                              const LineElements& elements) const;
  LineProblem ResolvePosition(DataPosition position, std::string_view field,
                              LineElements& elements);
  LineProblem ResolveRange(DataPosition position, std::int32_t low, std::int32_t high,
                           LineElements& elements);
  FoundIdentifier ByNumber(const PositionPlan& plan, std::int32_t number, std::string_view text);
  FoundIdentifier ByLabel(const PositionPlan& plan, std::string_view text);
  FoundIdentifier Unspecified(const PositionPlan& plan, std::int32_t number, std::string_view text);
  // The element's slot; 0 when the number has none.
  std::int32_t SlotOfNumber(const PositionPlan& plan, std::int32_t number) {
    if (plan.emptyFlank) return 0;
    counts_.flankLookedUp[plan.flank] = 1;
    if (number < plan.low || number > plan.high) return 0;
    if (plan.gapFree) return plan.firstSlot + (number - plan.low);
    return finder_.FindElementSlot(number, plan.flank).slot.number();
  }
  std::int32_t SlotOfLabel(const PositionPlan& plan, std::string_view label) {
    if (plan.emptyFlank) return 0;
    counts_.flankLookedUp[plan.flank] = 1;
    return labels_.FindElementByLabel(label, plan.flank).number();
  }
  static bool TakeSlot(const PositionPlan& plan, std::int32_t slot, std::int32_t number,
                       LineElements& elements) {
    if (slot <= 0) return false;
    elements.PositionElement[plan.active] = number;
    elements.PositionStatus[plan.active] = slot;
    return true;
  }
  static bool TakeNothing(const PositionPlan& plan, LineElements& elements) {
    if (plan.active.number() > 0) {
      elements.PositionElement[plan.active] = kNoElementNumber;
      elements.PositionStatus[plan.active] = kStatusNullElement;
    }
    return true;
  }

  const Design& design_;
  std::int64_t nullElement_;
  const SplitRules& rules_;
  ElementFinder& finder_;
  LabelFinder& labels_;
  DataCounts& counts_;
  Column<DataPosition, PositionPlan> plans_;
  Column<DataPosition, std::string> dvalueTexts_;
  Column<DataPosition, std::uint8_t> resolved_;
  UnspecifiedElements unspecified_;
  std::optional<FirstUnspecified> first_;
  bool firstTaken_ = false;
  bool plainFields_ = true;
};

}  // namespace flanks

#endif  // FLANKS_DATA_RESOLVE_ELEMENTS_H
