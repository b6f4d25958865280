// The counting pass: raw scores and counts of a recount, and the sums of PROX.
//
// Both are made in one pass over the observations.  A recount rebuilds, over all observations that
// feed estimation, each element's observed and largest possible score, its count, its smallest
// weight, and the counts of each scale's categories.  The pass after a recount is always a PROX
// pass; a second PROX pass makes the sums of PROX alone.
//
// An observation with all elements in play counts for each of its elements; one with an extreme
// element counts for that element only.
//
// All sums are 64-bit in the order of the records, and those whose field has 32 bits are cut when
// the pass ends: a 32-bit sum of ones would stick at 16,777,216.
//
// Order of calls in an iteration: ClearScores and ClearScaleSums when it recounts, ClearPassSums
// (both in estimate/jmle_pass.h), then CountingPass::Run.
//
// Tested by tests/unit/estimate/recount_test.cpp.
#ifndef FLANKS_ESTIMATE_RECOUNT_H
#define FLANKS_ESTIMATE_RECOUNT_H

#include <cstdint>
#include <vector>

#include "estimate/observation.h"

namespace flanks {

class SubsetCheck;

// What a pass found.
struct PassResult {
  bool dataSeen = false;     // an observation with all elements in play
  bool poissonSeen = false;  // one on a Poisson scale: PROX has no formula for it
};

enum class Recount : std::uint8_t { needed, notNeeded };

// Clears what a recount fills; the fields of later steps stay.
void ClearScores(Estimates& estimates);

// After the first pass: the raw scores and counts that Table 7 shows for all data.
void KeepFirstScores(Estimates& estimates);

class CountingPass {
 public:
  // Sized once for the design of `parts`.
  explicit CountingPass(const PassParts& parts);

  // One pass.  Adds to the elements' records and, when recounting, to `scores` and the scales'
  // ObservedCount.  Connectivity is checked along with it when `subsets` is given.  Ends early when
  // the run is to stop.
  PassResult Run(ObservationReader& reader, Recount recount, SubsetCheck* subsets = nullptr);

 private:
  // 64-bit sums whose fields have 32 bits.
  struct WideScores {
    double Count = 0.0;
    double RawScore = 0.0;
  };

  void CountObservation(std::size_t i, Recount recount);
  void CountCategory(std::size_t i);
  void CountElement(std::size_t i, std::int32_t slot, bool reversed);
  void AddRestMeasure(std::size_t i, std::int32_t slot, int sign);
  void Finish(Recount recount);

  PassParts parts_;
  std::vector<WideScores> wide_;                 // by slot less 1
  std::vector<std::vector<double>> countTerms_;  // by scale; empty but for binomial and Poisson
  const ObservationReader* reader_ = nullptr;    // of the pass at work
  PassResult result_;
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_RECOUNT_H
