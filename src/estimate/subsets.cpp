#include "estimate/subsets.h"

#include <algorithm>
#include <array>

#include "report/format/join_number.h"
#include "run/console.h"
#include "run/messages.h"

namespace flanks {
namespace {

constexpr int kBlocksForATick = 16;
constexpr std::string_view kSkipped = "#";

// "Consolidating 2 subsets and 3 unassigned data points"
std::string WithUnassigned(const std::string& text, std::int64_t unassigned,
                           std::string_view words) {
  if (unassigned == 0) return text;
  return JoinNumber(text + " and", unassigned) + std::string(words);
}

// What the first pass took: since then elements may have turned out extreme, which does not change
// what the data connect.
bool SeenByFirstPass(ObservationState state) {
  return state != ObservationState::ignored && state != ObservationState::dropped;
}

}  // namespace

SubsetCheck::SubsetCheck(const PassParts& parts)
    : parts_(parts),
      lists_(parts.design.ElementTotal),
      places_(FlankPlacesOf(parts.design, parts.work.layout)),
      note_(message::kSubsetsNotVerified) {
  for (const ElementSlot e : Upward(parts.design.elements.ElementAnchor))
    if (parts.design.elements.ElementAnchor[e] != AnchorKind::none) lists_.SetAside(e.number());
  slots_.resize(parts.work.layout.fields.size());
  FindSubjects();
}

void SubsetCheck::FindSubjects() {
  const Column<ElementSlot, ElementSlot>& targets = parts_.design.elements.ElementTarget;
  const bool any = std::any_of(targets.begin(), targets.end(),
                               [](ElementSlot target) { return target.number() > 0; });
  if (!any) return;
  subjects_.push_back(0);
  for (const ElementSlot e : Upward(targets))
    subjects_.push_back(targets[e].number() > 0 ? targets[e].number() : e.number());
}

void SubsetCheck::Begin() {
  if (parts_.console == nullptr) return;
  parts_.console->ShowLine("Validating subset connection... Subsets=No to bypass, Ctrl+F to skip");
  parts_.console->TickStart();
  barRuns_ = true;
  blocksUntilTick_ = kBlocksForATick;
}

void SubsetCheck::EndPass() {
  if (barRuns_) parts_.console->TickEnd();
  barRuns_ = false;
}

void SubsetCheck::TakeBlock(const ObservationBlock& block) {
  if (SubsetCheckOn && !SkipRequested()) TakeObservations(block, Take::feedingEstimation);
}

void SubsetCheck::TakeObservations(const ObservationBlock& block, Take take) {
  taken_ += static_cast<std::int64_t>(block.count);
  if (barRuns_ && --blocksUntilTick_ <= 0) {
    blocksUntilTick_ = kBlocksForATick;
    parts_.console->Tick(taken_);
  }
  for (std::size_t i = 0; i < block.count; ++i) {
    const ObservationState state = block.state[i];
    if (take == Take::feedingEstimation ? !FeedsEstimation(state) : !SeenByFirstPass(state))
      continue;
    if (subjects_.empty() && InOneSubset(block, i)) continue;
    for (std::size_t f = 0; f < slots_.size(); ++f) slots_[f] = block.slots[f][i];
    SubsetObservation(slots_);
  }
}

// Whether nothing is to be done because all elements that take part, two at least, have the same
// only subset.  The lists need not be looked at: equal numbers are equal whatever was merged.
bool SubsetCheck::InOneSubset(const ObservationBlock& block, std::size_t i) const {
  const std::int32_t* const codes = lists_.codes();
  std::int32_t slot = 0, code = SubsetLists::kSetAside;
  bool several = false;
  for (std::size_t f = 0; f < block.fields(); ++f) {
    const std::int32_t other = block.slots[f][i];
    const std::int32_t otherCode = codes[other];
    if (otherCode == SubsetLists::kSetAside) continue;
    if (code == SubsetLists::kSetAside) {
      slot = other;
      code = otherCode;
      continue;
    }
    if (otherCode != code) return false;
    several = several || other != slot;
  }
  return (several && code > 0) || code == SubsetLists::kSetAside;
}

void SubsetCheck::SubsetObservation(std::span<const std::int32_t> slots) {
  live_.clear();
  for (const std::int32_t given : slots) {
    const std::int32_t slot =
        subjects_.empty() ? given : subjects_[static_cast<std::size_t>(given)];
    if (lists_.SubsetStateOfElement(slot) == 0) continue;
    if (std::find(live_.begin(), live_.end(), slot) == live_.end()) live_.push_back(slot);
  }
  if (live_.empty()) return;
  if (live_.size() > 1) return Connect();
  // Nothing is left that it could be connected with: its measure is tied to given ones.
  lists_.SetAside(live_.front());
  SubsetChanged = true;
}

void SubsetCheck::Connect() {
  if (FindSubsets()) return;
  SubsetNumber subset = nearly_.empty() ? lists_.NewSubset() : nearly_.front();
  if (subset == 0) {
    ++UnassignedCount;
    return;
  }
  for (const std::int32_t slot : live_) lists_.Add(slot, subset);
  for (std::size_t n = 1; n < nearly_.size(); ++n) lists_.Merge(subset, nearly_[n]);
  SubsetChanged = true;
}

// True when a subset holds all elements that take part; else nearly_ has those that hold all but
// one, ascending.  Each of these holds one of any two elements, so the two with the shortest lists
// name them all.
bool SubsetCheck::FindSubsets() {
  nearly_.clear();
  heldByOne_ = false;
  if (lastHolder_ != 0) TryCandidate(lastHolder_);
  if (heldByOne_) return true;
  nearly_.clear();
  std::array<std::int32_t, 2> shortest = {live_[0], live_[1]};
  const auto shorter = [this](std::int32_t a, std::int32_t b) {
    return lists_.Size(a) < lists_.Size(b);
  };
  if (shorter(shortest[1], shortest[0])) std::swap(shortest[0], shortest[1]);
  for (std::size_t n = 2; n < live_.size(); ++n) {
    if (!shorter(live_[n], shortest[1])) continue;
    shortest[1] = live_[n];
    if (shorter(shortest[1], shortest[0])) std::swap(shortest[0], shortest[1]);
  }
  lists_.ForEach(shortest[0], [this](SubsetNumber subset) { TryCandidate(subset); });
  lists_.ForEach(shortest[1], [&](SubsetNumber subset) {
    if (!lists_.Holds(shortest[0], subset)) TryCandidate(subset);
  });
  std::sort(nearly_.begin(), nearly_.end());
  return heldByOne_;
}

void SubsetCheck::TryCandidate(SubsetNumber subset) {
  if (heldByOne_) return;  // one is enough
  const auto held = static_cast<std::size_t>(std::count_if(
      live_.begin(), live_.end(), [&](std::int32_t slot) { return lists_.Holds(slot, subset); }));
  if (held == live_.size()) {
    heldByOne_ = true;
    lastHolder_ = subset;
  }
  if (held + 1 == live_.size()) nearly_.push_back(subset);
}

void SubsetCheck::CountSubsets() {
  SubsetCount = lists_.CountSubsets();
}

void SubsetCheck::ConsolidateSubsets(ObservationReader& reader) {
  const auto goesOn = [this] {
    return parts_.console == nullptr ||
           (!parts_.console->YieldToWindow() && !parts_.console->finishRequested());
  };
  do {
    SubsetChanged = false;
    UnassignedCount = 0;
    if (!Reread(reader)) return;
    if (SubsetSweep(places_, lists_).Run(goesOn)) SubsetChanged = true;
    CountSubsets();
  } while (SubsetChanged && (SubsetCount > 1 || UnassignedCount > 0) && goesOn());
}

// One pass over the observations.  False when it was broken off.
bool SubsetCheck::Reread(ObservationReader& reader) {
  reader.Begin(Categories::wanted);
  while (reader.Next()) {
    if (parts_.console != nullptr && parts_.console->finishRequested()) return false;
    TakeObservations(reader.block(), Take::seenByFirstPass);
  }
  return parts_.console == nullptr || !parts_.console->stopping();
}

void SubsetCheck::Finish(ObservationReader& reader) {
  if (!SubsetCheckOn || SkipRequested()) return;
  CountSubsets();
  if (SubsetCount > 1 || UnassignedCount > 0) {
    if (parts_.console != nullptr) {
      parts_.console->ShowLine(WithUnassigned(JoinNumber("Consolidating", SubsetCount) + " subsets",
                                              UnassignedCount, " unassigned data points"));
      parts_.console->TickStart();
      barRuns_ = true;
    }
    ConsolidateSubsets(reader);
    if (SkipRequested()) return EndPass();
    EndPass();
    if (parts_.console != nullptr && parts_.console->stopping()) return;
  }
  Tell();
  SubsetCheckOn = false;
  SubsetChanged = false;
}

void SubsetCheck::Tell() {
  const bool connected = SubsetCount <= 1 && UnassignedCount == 0;
  note_ = connected ? "Subset connection O.K."
                    : WithUnassigned(
                          JoinNumber(message::kSubsetsDisjoint, SubsetCount) + " disjoint subsets",
                          UnassignedCount, " data points not assigned to subsets");
  if (parts_.console == nullptr) return;
  if (connected)
    parts_.console->ShowAndWrite(note_);
  else
    parts_.console->WarnLine(note_);
}

// Ctrl+F ends the check here, and the iterations go on.
bool SubsetCheck::SkipRequested() {
  if (parts_.console == nullptr || !parts_.console->finishRequested()) return false;
  parts_.console->clearFinishRequest();
  Skip();
  return true;
}

void SubsetCheck::Skip() {
  SubsetCheckOn = false;
  lists_ = SubsetLists(0);
  SubsetCount = 0;
  UnassignedCount = 0;
  parts_.console->ShowMore(kSkipped);
  EndPass();
  parts_.console->ShowFlagged(note_);
}

DisjointSubsets SubsetCheck::Results() {
  if (SubsetCount <= 1) return {};
  return NumberSubsets(parts_.design.ElementTotal, subjects_, lists_);
}

DisjointSubsets NumberSubsets(std::int32_t elements, std::span<const std::int32_t> subjects,
                              SubsetLists& lists) {
  std::vector<std::int32_t> SubsetDisplayNumber(static_cast<std::size_t>(lists.tableSize()) + 1, 0);
  DisjointSubsets results;
  results.begin.assign(elements + 1, 0);
  for (std::int32_t slot = 1; slot <= elements; ++slot) {
    const auto first = static_cast<std::ptrdiff_t>(results.numbers.size());
    const std::int32_t subject = subjects.empty() ? slot : subjects[static_cast<std::size_t>(slot)];
    lists.ForEach(subject, [&](SubsetNumber subset) {
      std::int32_t& number = SubsetDisplayNumber[static_cast<std::size_t>(subset)];
      if (number == 0) number = ++results.SubsetCount;
      results.numbers.push_back(number);
    });
    std::sort(results.numbers.begin() + first, results.numbers.end());
    results.begin[ElementSlot(slot + 1)] = static_cast<std::uint32_t>(results.numbers.size());
  }
  return results;
}

}  // namespace flanks
