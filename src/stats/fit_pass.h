// The pass after convergence: every observation is read once more, at the final measures, and what
// fit, correlations and fair averages need is summed for each element.  Measures don't change.
//
// Steps of the run, in this order:
//
//   CalculateFit   the pass: fills `Estimates::fitSums` and `fitTotals`, and `ExpectedCount` and
//   the
//                  rating scales' `DiscriminationSums` of the scale tables; the stage is `sums`
//   SummarizeFit   the sweep over the elements (stats/fit_statistics.h); the stage is `finished`
//
// The pass has the form of all passes: read a block, evaluate it in batches, add in record order,
// from the last position to the first, in 64 bits.  For an observation the kernel is evaluated once
// at its measure sum and once for each position at the measure of its fair score.
//
// Which observations count: those in state inPlay for all their elements; those in state oneExtreme
// for the extreme element, and for the correlations of the others too.
//
// Tested by tests/unit/stats/fit_pass_test.cpp; timed by bench/bench_fit.cpp.
#ifndef FLANKS_STATS_FIT_PASS_H
#define FLANKS_STATS_FIT_PASS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "run/run.h"
#include "stats/fair_average.h"

namespace flanks {

// The results of a block, by lane of the block kernel.
struct FitRows {
  std::vector<float> expected;
  std::vector<float> ModelVariance, FourthMoment, ResidualVarianceTerm, ScoreResidual;
  std::vector<float> SquaredResidual, SquaredStandardizedResidual, KurtosisRatio;
  std::vector<float> logitMean, logitSquare, logitObserved;
  std::vector<std::int16_t> category;
  std::vector<std::vector<float>> fairMeasure, fairExpected;  // by field, then by lane

  explicit FitRows(std::size_t fields);
};

// The pass itself.  Sized once for the design of `parts`, which must outlive it.
class FitPass {
 public:
  FitPass(const PassParts& parts, FairKind fairKind);

  // Clears the sums, then adds all observations; ends early when the run is to stop.  False when an
  // observation lay below its scale's lowest category: the recode tables contradict each other.
  [[nodiscard]] bool Run();
  // Whether variances of a Poisson scale took in what larger scales had left (docs/quirks.md).
  bool readsWhatOthersLeft() const { return kernel_.oneByOne(); }

 private:
  void ClearSums();
  void Begin();
  bool AddBlock();
  void CountStates(const ObservationBlock& block);
  void FinishStates();
  bool FindLanes(const ObservationBlock& block);
  void FillFairMeasures(const ObservationBlock& block);
  void FillUsualFairMeasures(const ObservationBlock& block);
  void FetchSums(const ObservationBlock& block);
  void Evaluate(const ObservationBlock& block, const LaneRun& run);
  void EvaluateOneByOne(const ObservationBlock& block, const LaneRun& run);
  void AddCounts(const ObservationBlock& block, const LaneRun& run, const float* probability,
                 std::size_t stride);
  void EvaluateFairScores(const LaneRun& run);
  void AddObservation(const ObservationBlock& block, std::size_t i, std::size_t lane);

  PassParts parts_;
  ObservationReader reader_;
  BlockKernel kernel_;
  FairKind fairKind_;
  FitRows rows_;
  std::vector<float> fieldMean_;             // by field: the mean of its Flank; 0 for Fair=Z
  std::vector<std::int32_t> laneOf_;         // by entry of the block; -1: does not count
  std::vector<FairPosition> fairPositions_;  // of one observation, the last first
  std::vector<std::size_t> fairFields_;      // the field of each
  std::vector<float> fairMeasures_;          // the measure of each
  std::array<std::array<std::int64_t, kCategories>, kStates> responses_{};  // by state, raw
  double fetched_ = 0.0;  // so that what fetches the sums is not left out
};

void CalculateFit(Run& run);
void SummarizeFit(Run& run);

}  // namespace flanks

#endif  // FLANKS_STATS_FIT_PASS_H
