// The subsets that each element belongs to, while connectivity is being checked.
//
// A subset is a number from 1 to kMostSubsets with an entry in SubsetTable: 0 free, -1 live,
// positive merged into that subset.  An element that takes part has a list of live subsets,
// ascending; most have none or one, which costs four bytes.  An element that has been set aside has
// no list.
//
// A merged number vanishes from lists of several numbers at once and from an element's only number
// when that is next looked at, so that merging does not cost a sweep over the elements.
//
// Memory: four bytes for each element and two for each further number in a list; nothing for an
// observation.
//
// Tested by tests/unit/estimate/subset_lists_test.cpp.
#ifndef FLANKS_ESTIMATE_SUBSET_LISTS_H
#define FLANKS_ESTIMATE_SUBSET_LISTS_H

#include <cstdint>
#include <limits>
#include <vector>

namespace flanks {

using SubsetNumber = std::int16_t;
constexpr std::int32_t kMostSubsets = 16383;

class SubsetLists {
 public:
  // An element's code in `codes()`: kSetAside, 0 for no subset, the number of its only subset
  // (which may have been merged), or negative for a list of several.
  static constexpr std::int32_t kSetAside = std::numeric_limits<std::int32_t>::max();

  // Elements in slots 1 to `elements`, all taking part; slot 0, no element, is set aside.
  explicit SubsetLists(std::int32_t elements);

  // -1: the element still takes part; 0: it has been set aside.
  std::int16_t SubsetStateOfElement(std::int32_t slot) const {
    return codes_[Index(slot)] == kSetAside ? 0 : -1;
  }
  void SetAside(std::int32_t slot);

  // By slot.  Equal codes above 0 are the same live subset.
  const std::int32_t* codes() const { return codes_.data(); }

  std::int32_t Size(std::int32_t slot) const;
  bool Holds(std::int32_t slot, SubsetNumber subset);
  void Add(std::int32_t slot, SubsetNumber subset);
  // Calls visit(number) for each live subset of the element, ascending.  The list must not change
  // meanwhile.
  template <class Visitor>
  void ForEach(std::int32_t slot, const Visitor& visit) {
    const std::int32_t code = codes_[Index(slot)];
    if (code == 0 || code == kSetAside) return;
    if (code > 0) return visit(OnlySubset(slot));
    for (const SubsetNumber number : shared_[ListOf(code)].numbers) visit(number);
  }

  // The lowest free number, now live; 0 when there is none.
  SubsetNumber NewSubset();
  // Subset `gone` becomes part of `kept`; both are live.
  void Merge(SubsetNumber kept, SubsetNumber gone);
  bool IsLive(SubsetNumber subset) const { return SubsetTable_[Index(subset)] < 0; }
  // The highest number that the table has.
  std::int32_t tableSize() const { return static_cast<std::int32_t>(SubsetTable_.size()) - 1; }

  // Makes the numbers free that no element uses, and returns how many subsets have elements.
  std::int32_t CountSubsets();

  // The elements of a subset that are in others as well, ascending.
  std::vector<std::int32_t> SharedElements(SubsetNumber subset);

 private:
  struct List {
    std::int32_t slot = 0;
    std::vector<SubsetNumber> numbers;  // ascending, all live
  };

  static std::size_t Index(std::int32_t number) { return static_cast<std::size_t>(number); }
  static std::size_t ListOf(std::int32_t code) { return static_cast<std::size_t>(-1 - code); }
  SubsetNumber Root(SubsetNumber subset);
  SubsetNumber OnlySubset(std::int32_t slot);
  void BeginList(std::int32_t slot, SubsetNumber only, SubsetNumber further);
  void Insert(std::size_t list, SubsetNumber subset);
  void Replace(std::size_t list, SubsetNumber kept, SubsetNumber gone);
  void Release(std::size_t list);

  std::vector<std::int32_t> codes_;  // by slot, from 0
  std::vector<List> shared_;
  std::vector<std::size_t> unusedLists_;
  std::vector<std::int16_t> SubsetTable_;  // by number; entry 0 is not used
  std::int32_t firstFree_ = 1;             // no lower number is free
  // By number: lists that hold it, or did once.
  std::vector<std::vector<std::size_t>> holders_;
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_SUBSET_LISTS_H
