#include "spec/element_finder.h"

namespace flanks {

ElementFinder::ElementFinder(const FlankTable& flanks, const ElementTable& elements)
    : flanks_(flanks), elements_(elements), last_(flanks.FlankLow.rows()) {}

FoundElement ElementFinder::FindElementSlot(std::int32_t number, FlankNo flank) {
  if (flanks_.FlankElementCount[flank] == 0) return {};
  if (number < flanks_.FlankLow[flank] || number > flanks_.FlankHigh[flank]) return {};
  const ElementSlot last = last_[flank];
  if (last.number() > 0 && elements_.ElementNumber[last] == number) return {last, true};
  const ElementSlot slot = Search(number, flank);
  if (slot.number() > 0) last_[flank] = slot;
  return {slot, false};
}

// `number` lies within the Flank's bounds.
ElementSlot ElementFinder::Search(std::int32_t number, FlankNo flank) const {
  auto [low, high] = SlotsOf(flanks_, flank);
  if (number == flanks_.FlankHigh[flank]) return high;
  const std::int32_t steps = number - flanks_.FlankLow[flank];
  const bool gapFree = flanks_.FlankHigh[flank] - flanks_.FlankLow[flank] == high - low;
  if (steps == 0 || gapFree) return low + steps;
  while (low <= high) {
    const ElementSlot middle((low.number() + high.number()) / 2);
    const std::int32_t found = elements_.ElementNumber[middle];
    if (found == number) return middle;
    if (found < number)
      low = middle + 1;
    else
      high = middle - 1;
  }
  return ElementSlot();
}

}  // namespace flanks
