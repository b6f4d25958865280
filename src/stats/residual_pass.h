// The residuals of all observations at the final measures: means and S.D.s for the data summary
// (Table 5), and the responses of largest standardized residual (Table 4).
//
// The pass has the form of all passes: read a block, evaluate it in batches, add in record order.
// It counts the observations that the fit counts: those in states inPlay and oneExtreme.  Measures
// and thresholds don't change, and no sum of the fit does.
//
// Means and sums of squares are made block by block: the mean of a block, the squares of the
// deviations from it, and then the two joined to what came before (T. F. Chan, G. H. Golub and
// R. J. LeVeque, Updating Formulae and a Pairwise Algorithm for Computing Sample Variances,
// Stanford University, 1979).  Blocks depend on the records alone, so the bits are the same on
// every machine, and there is no division for each observation.
//
// Tested by tests/unit/stats/residual_pass_test.cpp; timed by bench/bench_fit.cpp.
#ifndef FLANKS_STATS_RESIDUAL_PASS_H
#define FLANKS_STATS_RESIDUAL_PASS_H

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "run/run.h"
#include "stats/unexpected_list.h"

namespace flanks {

// What is summed of an observation.  Scores and expected scores are in scored categories: ordered
// categories that begin with the lowest category of the scale.
enum class ResidualColumn : std::uint8_t { category, score, expected, residual, StRes };
constexpr std::size_t kResidualColumns = 5;

struct ResidualMoments {
  double Mean = 0.0;
  double SumOfSquares = 0.0;  // of deviations from the mean

  // The S.D. over the count as a whole population.
  double PopulationDeviation(double count) const {
    return count > 0.0 ? std::sqrt(SumOfSquares / count) : 0.0;
  }
};

struct ResidualSummary {
  double Count = 0.0;     // total weight of the observations
  bool weighted = false;  // a weight other than 1 was met
  std::array<ResidualMoments, kResidualColumns> columns;

  const ResidualMoments& of(ResidualColumn column) const {
    return columns[static_cast<std::size_t>(column)];
  }
};

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
  // What counts of a block, in the order of the records.
  struct Counted {
    std::size_t count = 0;
    std::vector<double> weight;
    std::array<std::vector<double>, kResidualColumns> columns;
  };

  void Evaluate(const ObservationBlock& block);
  void EvaluateOneByOne(const LaneRun& run);
  void EvaluateBatch(const LaneRun& run);
  void Collect(const ObservationBlock& block, UnexpectedList& list);
  void AddBlock();
  KeptResponse Response(const ObservationBlock& block, std::size_t i, std::size_t lane,
                        float StRes) const;
  void FindElements(const ObservationBlock& block, std::size_t i);

  PassParts parts_;
  ObservationReader reader_;
  BlockKernel kernel_;
  LaneValues lanes_;
  std::vector<std::int16_t> category_;  // by lane
  std::vector<std::int32_t> laneOf_;    // by entry of the block; -1: does not count
  Counted counted_;
  std::vector<ElementSlot> elements_;  // of one observation, by position
  ResidualSummary summary_;
};

// Part of the steps that write Tables 5 and 4: makes the pass and fills `Analysis::unexpected`,
// which stays as it was when the run is to stop.
ResidualSummary ComputeResiduals(Run& run);

}  // namespace flanks

#endif  // FLANKS_STATS_RESIDUAL_PASS_H
