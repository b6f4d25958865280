#include "output/dvalue_check.h"

#include <algorithm>

namespace flanks {

DvalueCheck::DvalueCheck(const Design& design, const Settings& settings, const SplitRules& rules,
                         LabelFinder& labels)
    : rules_(rules),
      finder_(design.flanks, design.elements),
      resolver_(design, settings.NullElement, rules_, finder_, labels, counts_) {
  counts_.flankLookedUp.assign(design.FlankCount, 0);
  elements_.PositionElement.assign(design.ModelFlankCount, kNoElementNumber);
  elements_.PositionStatus.assign(design.ModelFlankCount, kStatusNullElement);
  elements_.active.assign(design.ModelFlankCount, 1);
}

bool DvalueCheck::Read(std::string_view line, std::int64_t lineNumber) {
  counts_.DataLines.increment();
  // Of a range the first element stands in `elements_`: the one response of the line is its.
  return SplitDataLine(line, rules_, line_) == Fault::none &&
         line_.FieldCount() > rules_.DataFlankCount &&
         resolver_.ResolveElements(line_, lineNumber, elements_).fault == Fault::none;
}

std::int32_t DvalueCheck::SlotAt(Position position) const {
  return std::max(elements_.PositionStatus[position], 0);
}

}  // namespace flanks
