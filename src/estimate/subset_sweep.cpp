#include "estimate/subset_sweep.h"

#include <algorithm>
#include <numeric>

namespace flanks {
namespace {

std::size_t Index(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

}  // namespace

FlankPlaces FlankPlacesOf(const Design& design, const ElementLayout& layout) {
  FlankPlaces places;
  places.flankOfSlot.assign(Index(design.ElementTotal) + 1, 0);
  for (const FlankNo flank : Upward(design.flanks.FlankElementCount)) {
    const auto positions =
        std::count_if(layout.fields.begin(), layout.fields.end(),
                      [flank](const ElementLayout::Field& field) { return field.flank == flank; });
    if (positions == 0) continue;
    const SlotRange range = SlotsOf(design.flanks, flank);
    const auto index = static_cast<std::uint16_t>(places.flanks.size());
    places.flanks.push_back(
        {range.low.number(), range.high.number(), static_cast<std::int32_t>(positions)});
    for (const ElementSlot slot : Upward(range.low, range.high))
      places.flankOfSlot[Index(slot.number())] = index;
  }
  return places;
}

bool SubsetSweep::Run(const std::function<bool()>& goesOn) {
  CountElements();
  bool merged = false;
  while (RunOnce(goesOn)) merged = true;
  return merged;
}

void SubsetSweep::CountElements() {
  inKept_.assign(places_.flankOfSlot.size(), 0);
  elements_.assign(Index(lists_.tableSize()) + 1, Counts(places_.flanks.size(), 0));
  for (std::size_t flank = 0; flank < places_.flanks.size(); ++flank)
    for (std::int32_t slot = places_.flanks[flank].firstSlot;
         slot <= places_.flanks[flank].lastSlot; ++slot)
      lists_.ForEach(slot, [&](SubsetNumber number) { ++elements_[Index(number)][flank]; });
  sameFlanks_ = true;
  for (SubsetNumber number = 1; number <= lists_.tableSize(); ++number)
    for (std::size_t flank = 0; flank < places_.flanks.size(); ++flank)
      if (lists_.IsLive(number) && Places(number, flank) < places_.flanks[flank].places)
        sameFlanks_ = false;
}

// The positions of a Flank that the elements of a subset can fill.
std::int32_t SubsetSweep::Places(SubsetNumber subset, std::size_t flank) const {
  return std::min(places_.flanks[flank].places, elements_[Index(subset)][flank]);
}

// A merge can make a subset with a lower number connected, so the whole is done again after one.
bool SubsetSweep::RunOnce(const std::function<bool()>& goesOn) {
  bool merged = false;
  for (SubsetNumber number = 1; number <= lists_.tableSize(); ++number) {
    if (!goesOn()) return false;
    while (lists_.IsLive(number) && MergeInto(number)) merged = true;
  }
  return merged;
}

// Merges the connected subsets with higher numbers into this one.  What it gains by one partner
// counts for the next; partners that it gains are left to the next call.
bool SubsetSweep::MergeInto(SubsetNumber kept) {
  std::vector<std::int32_t> slots = lists_.SharedElements(kept);
  for (const std::int32_t slot : slots) inKept_[Index(slot)] = 1;
  bool merged = false;
  for (const SubsetNumber partner : Partners(kept, slots)) {
    const std::vector<std::int32_t> theirs = lists_.SharedElements(partner);
    const Counts shared = SharedCounts(theirs);
    if (!Connected(kept, partner, shared)) continue;
    for (std::size_t flank = 0; flank < shared.size(); ++flank)
      elements_[Index(kept)][flank] += elements_[Index(partner)][flank] - shared[flank];
    lists_.Merge(kept, partner);
    merged = true;
    for (const std::int32_t slot : theirs) {
      if (inKept_[Index(slot)] == 0) slots.push_back(slot);
      inKept_[Index(slot)] = 1;
    }
  }
  for (const std::int32_t slot : slots) inKept_[Index(slot)] = 0;
  return merged;
}

// The subsets with higher numbers that may be connected with this one: those that share one of
// `slots`.  Where all subsets have elements in all c positions and c - 1 must be shared, a partner
// shares an element in one of any two positions, so that those with the shortest lists will do.
std::vector<SubsetNumber> SubsetSweep::Partners(SubsetNumber subset,
                                                const std::vector<std::int32_t>& slots) {
  std::vector<std::int64_t> lengths(places_.flanks.size(), 0);
  Counts shared(places_.flanks.size(), 0);
  for (const std::int32_t slot : slots) {
    const std::size_t flank = places_.flankOfSlot[Index(slot)];
    lengths[flank] += lists_.Size(slot);
    ++shared[flank];
  }
  std::vector<std::size_t> order(places_.flanks.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (sameFlanks_) {
    std::int32_t positions = 0, within = 0;
    for (std::size_t flank = 0; flank < order.size(); ++flank) {
      positions += places_.flanks[flank].places;
      within += std::min(places_.flanks[flank].places, shared[flank]);
    }
    if (within + 1 < positions) return {};
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return lengths[a] < lengths[b]; });
    std::size_t needed = 0;
    for (positions = 0; needed < order.size() && positions < 2; ++needed)
      positions += places_.flanks[order[needed]].places;
    order.resize(needed);
  }
  std::vector<SubsetNumber> partners;
  for (const std::int32_t slot : slots) {
    if (std::find(order.begin(), order.end(), places_.flankOfSlot[Index(slot)]) == order.end())
      continue;
    lists_.ForEach(slot, [&](SubsetNumber number) {
      if (number > subset) partners.push_back(number);
    });
  }
  std::sort(partners.begin(), partners.end());
  partners.erase(std::unique(partners.begin(), partners.end()), partners.end());
  return partners;
}

// Of the elements of another subset, those that the one at work has too.
SubsetSweep::Counts SubsetSweep::SharedCounts(const std::vector<std::int32_t>& slots) const {
  Counts shared(places_.flanks.size(), 0);
  for (const std::int32_t slot : slots)
    if (inKept_[Index(slot)] != 0) ++shared[places_.flankOfSlot[Index(slot)]];
  return shared;
}

bool SubsetSweep::Connected(SubsetNumber a, SubsetNumber b, const Counts& shared) const {
  std::int32_t common = 0, covered = 0;
  bool sameFlanks = true;
  for (std::size_t flank = 0; flank < shared.size(); ++flank) {
    const std::int32_t ofA = Places(a, flank), ofB = Places(b, flank);
    const std::int32_t both = std::min(ofA, ofB);
    sameFlanks = sameFlanks && ofA == ofB;
    common += both;
    covered += std::min(both, shared[flank]);
  }
  if (covered == 0) return false;
  return covered == common || (sameFlanks && covered + 1 == common);
}

}  // namespace flanks
