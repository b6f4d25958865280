// Merging subsets that their common elements connect.
//
// With c positions an observation fixes the sum of c measures, and a subset of such observations
// leaves c - 1 shifts of its Flanks against each other open.  Two subsets have one frame when what
// they share fixes these shifts:
//   - elements in at least c - 1 of the c positions, where both have elements of the same Flanks
//     (with two Flanks one common element is enough; with three, common items alone connect no
//     raters who share no examinee);
//   - an element of each Flank that both have, where their Flanks differ.
// A Flank that stands in k positions counts k times, when the subset has k of its elements.
//
// Tested by tests/unit/estimate/subset_sweep_test.cpp and
// tests/properties/estimate/subsets_test.cpp.
#ifndef FLANKS_ESTIMATE_SUBSET_SWEEP_H
#define FLANKS_ESTIMATE_SUBSET_SWEEP_H

#include <cstdint>
#include <functional>
#include <vector>

#include "estimate/subset_lists.h"
#include "run/design.h"
#include "run/work_files.h"

namespace flanks {

// How many positions each Flank stands in, and where its elements are.
struct FlankPlaces {
  struct Flank {
    std::int32_t firstSlot = 1, lastSlot = 0;
    std::int32_t places = 0;
  };
  std::vector<Flank> flanks;               // those that stand in a position
  std::vector<std::uint16_t> flankOfSlot;  // index in `flanks`, by slot from 0
};
FlankPlaces FlankPlacesOf(const Design& design, const ElementLayout& layout);

class SubsetSweep {
 public:
  // Both must outlive the sweep.
  SubsetSweep(const FlankPlaces& places, SubsetLists& lists) : places_(places), lists_(lists) {}

  // Merges until no two live subsets are connected; the lower number stays.  Asks `goesOn` for each
  // subset and ends early when it says no.  True when some were merged.
  bool Run(const std::function<bool()>& goesOn);

 private:
  using Counts = std::vector<std::int32_t>;  // by index of the Flank

  void CountElements();
  bool RunOnce(const std::function<bool()>& goesOn);
  bool MergeInto(SubsetNumber kept);
  std::vector<SubsetNumber> Partners(SubsetNumber subset, const std::vector<std::int32_t>& slots);
  Counts SharedCounts(const std::vector<std::int32_t>& slots) const;
  bool Connected(SubsetNumber a, SubsetNumber b, const Counts& shared) const;
  std::int32_t Places(SubsetNumber subset, std::size_t flank) const;

  const FlankPlaces& places_;
  SubsetLists& lists_;
  std::vector<Counts> elements_;      // by number: how many elements of each Flank
  bool sameFlanks_ = false;           // all live subsets have elements for all positions
  std::vector<std::uint8_t> inKept_;  // by slot: in the subset at work, and in others
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_SUBSET_SWEEP_H
