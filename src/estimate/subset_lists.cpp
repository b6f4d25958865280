#include "estimate/subset_lists.h"

#include <algorithm>

namespace flanks {
namespace {

constexpr std::int32_t kTableGrowth = 100;
constexpr std::int16_t kFree = 0;
constexpr std::int16_t kLive = -1;

}  // namespace

SubsetLists::SubsetLists(std::int32_t elements)
    : codes_(static_cast<std::size_t>(elements) + 1, 0), SubsetTable_(1, kFree), holders_(1) {
  codes_[0] = kSetAside;
}

void SubsetLists::SetAside(std::int32_t slot) {
  std::int32_t& code = codes_[Index(slot)];
  if (code < 0) Release(ListOf(code));
  code = kSetAside;
}

std::int32_t SubsetLists::Size(std::int32_t slot) const {
  const std::int32_t code = codes_[Index(slot)];
  if (code == 0 || code == kSetAside) return 0;
  return code > 0 ? 1 : static_cast<std::int32_t>(shared_[ListOf(code)].numbers.size());
}

bool SubsetLists::Holds(std::int32_t slot, SubsetNumber subset) {
  const std::int32_t code = codes_[Index(slot)];
  if (code == 0 || code == kSetAside) return false;
  if (code > 0) return OnlySubset(slot) == subset;
  const std::vector<SubsetNumber>& numbers = shared_[ListOf(code)].numbers;
  return std::binary_search(numbers.begin(), numbers.end(), subset);
}

void SubsetLists::Add(std::int32_t slot, SubsetNumber subset) {
  std::int32_t& code = codes_[Index(slot)];
  if (code == kSetAside || Holds(slot, subset)) return;
  if (code == 0)
    code = subset;
  else if (code > 0)
    BeginList(slot, OnlySubset(slot), subset);
  else
    Insert(ListOf(code), subset);
}

// The subset that a number stands for now.  The ways there are shortened.
SubsetNumber SubsetLists::Root(SubsetNumber subset) {
  SubsetNumber root = subset;
  while (SubsetTable_[Index(root)] > 0) root = SubsetTable_[Index(root)];
  while (subset != root) {
    const SubsetNumber next = SubsetTable_[Index(subset)];
    SubsetTable_[Index(subset)] = root;
    subset = next;
  }
  return root;
}

SubsetNumber SubsetLists::OnlySubset(std::int32_t slot) {
  std::int32_t& code = codes_[Index(slot)];
  const SubsetNumber root = Root(static_cast<SubsetNumber>(code));
  code = root;
  return root;
}

void SubsetLists::BeginList(std::int32_t slot, SubsetNumber only, SubsetNumber further) {
  std::size_t list = shared_.size();
  if (unusedLists_.empty()) {
    shared_.emplace_back();
  } else {
    list = unusedLists_.back();
    unusedLists_.pop_back();
  }
  shared_[list].slot = slot;
  Insert(list, only);
  Insert(list, further);
  codes_[Index(slot)] = -1 - static_cast<std::int32_t>(list);
}

void SubsetLists::Insert(std::size_t list, SubsetNumber subset) {
  std::vector<SubsetNumber>& numbers = shared_[list].numbers;
  const auto place = std::lower_bound(numbers.begin(), numbers.end(), subset);
  if (place != numbers.end() && *place == subset) return;
  numbers.insert(place, subset);
  holders_[Index(subset)].push_back(list);
}

// A holder may have lost the number since, or stand for another element: then nothing is to be
// done.
void SubsetLists::Replace(std::size_t list, SubsetNumber kept, SubsetNumber gone) {
  std::vector<SubsetNumber>& numbers = shared_[list].numbers;
  const auto place = std::lower_bound(numbers.begin(), numbers.end(), gone);
  if (place == numbers.end() || *place != gone) return;
  numbers.erase(place);
  Insert(list, kept);
  if (numbers.size() > 1) return;
  codes_[Index(shared_[list].slot)] = numbers.front();
  Release(list);
}

void SubsetLists::Release(std::size_t list) {
  shared_[list].numbers.clear();
  unusedLists_.push_back(list);
}

SubsetNumber SubsetLists::NewSubset() {
  while (firstFree_ <= tableSize() && SubsetTable_[Index(firstFree_)] != kFree) ++firstFree_;
  if (firstFree_ > tableSize()) {
    if (tableSize() >= kMostSubsets) return 0;
    const std::int32_t grown = std::min(tableSize() + kTableGrowth, kMostSubsets);
    SubsetTable_.resize(Index(grown) + 1, kFree);
    holders_.resize(Index(grown) + 1);
  }
  SubsetTable_[Index(firstFree_)] = kLive;
  return static_cast<SubsetNumber>(firstFree_);
}

void SubsetLists::Merge(SubsetNumber kept, SubsetNumber gone) {
  std::vector<std::size_t> holders;
  holders.swap(holders_[Index(gone)]);
  for (const std::size_t list : holders) Replace(list, kept, gone);
  SubsetTable_[Index(gone)] = kept;
}

std::int32_t SubsetLists::CountSubsets() {
  std::vector<std::uint8_t> used(SubsetTable_.size(), 0);
  const auto elements = static_cast<std::int32_t>(codes_.size()) - 1;
  for (std::int32_t slot = 1; slot <= elements; ++slot)
    ForEach(slot, [&](SubsetNumber number) { used[Index(number)] = 1; });
  std::int32_t count = 0;
  for (std::int32_t number = tableSize(); number >= 1; --number) {
    if (used[Index(number)] != 0) {
      ++count;
    } else {
      SubsetTable_[Index(number)] = kFree;
      holders_[Index(number)].clear();
      firstFree_ = number;
    }
  }
  return count;
}

std::vector<std::int32_t> SubsetLists::SharedElements(SubsetNumber subset) {
  std::vector<std::size_t>& holders = holders_[Index(subset)];
  std::sort(holders.begin(), holders.end());
  holders.erase(std::unique(holders.begin(), holders.end()), holders.end());
  std::erase_if(holders, [&](std::size_t list) {
    const std::vector<SubsetNumber>& numbers = shared_[list].numbers;
    return !std::binary_search(numbers.begin(), numbers.end(), subset);
  });
  std::vector<std::int32_t> slots;
  for (const std::size_t list : holders) slots.push_back(shared_[list].slot);
  std::sort(slots.begin(), slots.end());
  return slots;
}

}  // namespace flanks
