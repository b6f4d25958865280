// Connectivity: do the data connect all measures, or do they fall into disjoint subsets?
//
// Measures of two elements can be compared when the data tie them together.  While the first pass
// of the iterations reads the observations, each is looked at once: its elements that still take
// part join a subset, subsets that it connects are merged, and an element that meets only elements
// with given measures is set aside, because it is tied to them.  Anchored, group-anchored and dummy
// elements are set aside from the start; one that takes the measure of a target element is looked
// at as that element.  What is then left in several subsets is consolidated: the observations are
// read again and subsets that share enough are merged (estimate/subset_sweep), as long as that
// changes anything.
//
//   SubsetCheck check(parts, console);
//   check.Begin();                          // the message and the bar
//   pass.Run(reader, recount, &check);      // TakeBlock for each block
//   check.EndPass();                        // the bar's end
//   check.Finish(reader);                   // consolidates and tells
//   check.note(), check.Results()
//
// Ctrl+F skips the rest of the check.  Memory grows with the elements, not with the observations,
// and the usual observation, whose elements stand in one subset, costs a look at each of them.
//
// Tested by tests/unit/estimate/subsets_test.cpp, tests/properties/estimate/subsets_test.cpp and
// tests/checks/subsets_check_test.cpp; timed by bench/bench_subsets.cpp.
#ifndef FLANKS_ESTIMATE_SUBSETS_H
#define FLANKS_ESTIMATE_SUBSETS_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "estimate/observation.h"
#include "estimate/subset_lists.h"
#include "estimate/subset_sweep.h"
#include "run/disjoint_subsets.h"

namespace flanks {

class SubsetCheck {
 public:
  // Messages, bar and Ctrl+F go through the console of `parts`; without one there are none.
  explicit SubsetCheck(const PassParts& parts);

  bool SubsetCheckOn = true;         // off once it has ended or was skipped
  bool SubsetChanged = false;        // in the pass at work
  std::int32_t SubsetCount = 0;      // live subsets with elements, after CountSubsets
  std::int64_t UnassignedCount = 0;  // observations that found the table of subsets full

  void Begin();
  // The observations of the block that feed estimation.
  void TakeBlock(const ObservationBlock& block);
  void EndPass();
  // After the pass: what it found, consolidated, goes to screen and report.  Reads the observations
  // again when there is more than one subset.  The check is off afterwards.
  void Finish(ObservationReader& reader);

  // One observation: its elements by position, 0 for none.
  void SubsetObservation(std::span<const std::int32_t> slots);
  void CountSubsets();
  void ConsolidateSubsets(ObservationReader& reader);

  // The note that closes the run: "Subset connection O.K.", Warning (6), or Warning (5) when the
  // check was skipped.
  const std::string& note() const { return note_; }
  // The subsets with their numbers for the reports; empty when all is connected.
  DisjointSubsets Results();

 private:
  enum class Take : std::uint8_t { feedingEstimation, seenByFirstPass };

  void TakeObservations(const ObservationBlock& block, Take take);
  void FindSubjects();
  bool InOneSubset(const ObservationBlock& block, std::size_t i) const;
  void Connect();
  bool FindSubsets();
  void TryCandidate(SubsetNumber subset);
  bool Reread(ObservationReader& reader);
  bool SkipRequested();
  void Skip();
  void Tell();

  PassParts parts_;
  SubsetLists lists_;
  FlankPlaces places_;
  // By slot: the element whose measure it is, where some elements take another's; else empty.
  std::vector<std::int32_t> subjects_;
  std::string note_;
  std::int64_t taken_ = 0;  // observations, for the bar
  int blocksUntilTick_ = 0;
  bool barRuns_ = false;
  // Of the observation at work: its elements by position, those that take part, and the subsets
  // that hold all but one of them.
  std::vector<std::int32_t> slots_, live_;
  std::vector<SubsetNumber> nearly_;
  bool heldByOne_ = false;
  SubsetNumber lastHolder_ = 0;  // the subset that held all of an observation before
};

// Compact numbers 1, 2, ... for the live subsets, in the order of their first elements.  `subjects`
// as above.
DisjointSubsets NumberSubsets(std::int32_t elements, std::span<const std::int32_t> subjects,
                              SubsetLists& lists);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_SUBSETS_H
