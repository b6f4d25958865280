// The residuals of all observations at the final measures: means and S.D.s for the data summary
// (Table 5), and the responses of largest standardized residual (Table 4).
//
// The pass has the form of all passes: read a block, evaluate it in batches, add in record order.
// It counts the observations that the fit counts: those in states inPlay and oneExtreme.  Measures
// and thresholds don't change, and no sum of the fit does.
//
// Tested by tests/unit/stats/residual_pass_test.cpp; timed by bench/bench_fit.cpp.
#ifndef FLANKS_STATS_RESIDUAL_PASS_H
#define FLANKS_STATS_RESIDUAL_PASS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "run/run.h"
#include "stats/residual_summary.h"
#include "stats/unexpected_list.h"

namespace flanks {

// The pass itself.  Sized once for the design of `parts`, which must outlive it.
class ResidualPass {
 public:
  explicit ResidualPass(const PassParts& parts);

  // Candidates go into `list`, each with an element for each active position.  Ends early when the
  // run is to stop.
  ResidualSummary Run(UnexpectedList& list);

 private:
  // By lane of the block kernel.
  struct LaneValues {
    std::vector<float> expected, ModelVariance, FourthMoment, ResidualVarianceTerm, ScoreResidual;
    std::vector<float> SquaredResidual, SquaredStandardizedResidual, KurtosisRatio;
  };
  void Evaluate(const ObservationBlock& block);
  void EvaluateOneByOne(const LaneRun& run);
  void EvaluateBatch(const LaneRun& run);
  void Collect(const ObservationBlock& block, UnexpectedList& list);
  KeptResponse Response(const ObservationBlock& block, std::size_t i, std::size_t lane,
                        float StRes) const;
  void FindElements(const ObservationBlock& block, std::size_t i);

  PassParts parts_;
  ObservationReader reader_;
  BlockKernel kernel_;
  LaneValues lanes_;
  std::vector<std::int16_t> category_;  // by lane
  std::vector<std::int32_t> laneOf_;    // by entry of the block; -1: does not count
  ResidualSums sums_;
  std::vector<ElementSlot> elements_;  // of one observation, by position
};

// Part of the steps that write Tables 5 and 4: makes the pass and fills `Analysis::unexpected`,
// which stays as it was when the run is to stop.
ResidualSummary ComputeResiduals(Run& run);

}  // namespace flanks

#endif  // FLANKS_STATS_RESIDUAL_PASS_H
