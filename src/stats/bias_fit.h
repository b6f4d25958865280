// The pass at the final biases: fit, standard errors and the variance that the terms explain.
//
// Each observation of a term is evaluated at its measure sum plus the bias of the term.  The sums
// of a term become its statistics (stats/bias_statistics); means and squares of all responses that
// belong to terms, beside those that the first pass found without biases, tell how much of the
// residuals the terms explain.
//
// Tested by tests/checks/bias_check_test.cpp; timed by bench/bench_bias.cpp.
#ifndef FLANKS_STATS_BIAS_FIT_H
#define FLANKS_STATS_BIAS_FIT_H

#include <array>
#include <vector>

#include "estimate/bias_pass.h"
#include "stats/bias_statistics.h"

namespace flanks {

class BiasFitPass {
 public:
  // `bias` must outlive it.
  explicit BiasFitPass(BiasEstimates& bias);

  // Ends early when the run is to stop.
  void Run(ObservationReader& reader, Column<BiasTermRow, BiasFitSums>& sums);
  // Of the responses that belong to a term, with its bias.
  const ResidualSummary& responses() const { return responses_.summary(); }

 private:
  // By lane of the block kernel.
  struct Lanes {
    std::vector<float> expected, ModelVariance, FourthMoment, ResidualVarianceTerm, ScoreResidual;
    std::vector<float> SquaredResidual, SquaredStandardizedResidual, KurtosisRatio;
    std::vector<std::int16_t> category;
    Lanes();
  };

  void Evaluate(const ObservationBlock& block);
  void EvaluateRun(const LaneRun& run);
  void EvaluateOneByOne(const LaneRun& run);
  void AddTo(double weight, std::size_t lane, BiasFitSums& sums) const;
  void AddResponse(const ObservationBlock& block, std::size_t i, std::size_t lane);

  BiasEstimates& bias_;
  BiasBlock block_;
  Lanes lanes_;
  ResidualSums responses_;
};

// Shows its line, makes the pass and finishes the terms.  Incomplete when the run is to stop.
BiasResults FitBias(WilsonHilferty form, BiasEstimates& bias, Console& console);

// Whether some term has an estimate; tells that none has.  A term is made of observations with a
// weight above 0 on scales with two categories at least, which have a range of scores: no data lead
// there.
bool HasEstimableTerms(const BiasResults& results, Console& console);

}  // namespace flanks

#endif  // FLANKS_STATS_BIAS_FIT_H
