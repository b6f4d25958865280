#include "estimate/bias.h"

#include <cmath>
#include <stdexcept>

#include "estimate/bias_pass.h"
#include "estimate/table9.h"
#include "report/format/join_number.h"
#include "run/console.h"

namespace flanks {
namespace {

// Residual and fraction compete in this iteration, and the step.
void Compete(const BiasStep& step, LargestChanges& changes) {
  if (std::abs(step.residual) > std::abs(changes.MaxScoreResidual))
    changes.MaxScoreResidual = step.residual;
  if (std::abs(step.fraction) > std::abs(changes.MaxScoreFraction))
    changes.MaxScoreFraction = step.fraction;
  if (std::abs(step.step) > std::abs(changes.MaxLogitChange)) changes.MaxLogitChange = step.step;
}

// Weights of any size may take part: a sum of them must not leave the numbers.
void CheckSum(double sum) {
  if (!std::isfinite(sum)) throw std::overflow_error("a total of exponentials is out of range");
}

class Loop {
 public:
  Loop(const BiasOptions& options, BiasEstimates& bias, Console& console)
      : options_(options),
        bias_(bias),
        console_(console),
        reader_(bias.parts),
        pass_(bias.parts, bias.terms) {
    bias_.states.assign(bias_.terms.count(), {});
    bias_.scores.assign(bias_.terms.count(), {});
    bracket_.assign(bias_.terms.count(), {});
  }

  void First();
  bool Next();

 private:
  void BeginIteration();
  void EndTerm(const BiasStep& step);
  BiasTermState At(BiasTermRow term) {
    return {bias_.states[term], bracket_[term], bias_.scores[term]};
  }

  const BiasOptions& options_;
  BiasEstimates& bias_;
  Console& console_;
  ObservationReader reader_;
  BiasPass pass_;
  Column<BiasTermRow, BiasBracket> bracket_;
};

void Loop::BeginIteration() {
  ++bias_.iteration.IterationNumber;
  bias_.iteration.changes = {};
  bias_.BiasMoving = 0;
}

void Loop::EndTerm(const BiasStep& step) {
  Compete(step, bias_.iteration.changes);
  if (step.moving) ++bias_.BiasMoving;
}

void Loop::First() {
  BeginIteration();
  Column<BiasTermRow, BiasFirstSums> sums(bias_.terms.count());
  pass_.First(reader_, sums);
  bias_.residualsWithoutBias = pass_.residuals();
  if (console_.stopping()) return;
  for (const BiasTermRow term : Upward(sums)) {
    CheckSum(sums[term].ExpectedSum);
    CheckSum(sums[term].Information);
    EndTerm(FirstBiasStep(sums[term], options_.extremeAdjustment, options_.limits,
                          bias_.iteration.IterationNumber, At(term)));
  }
  ReportBiasIteration(console_, bias_.iteration, bias_.BiasMoving);
}

// One iteration; true when another is to be made.
bool Loop::Next() {
  const std::int32_t limit = options_.iterationLimit;
  if (bias_.BiasMoving == 0 || (limit > 0 && bias_.iteration.IterationNumber >= limit))
    return false;
  if (console_.YieldToWindow() || console_.finishRequested()) return false;
  BeginIteration();
  for (BiasState& state : bias_.states) state.ExpectedSum = 0.0;
  pass_.Expected(reader_, bias_.states);
  if (console_.stopping()) return false;
  for (const BiasTermRow term : Upward(bias_.states)) {
    CheckSum(bias_.states[term].ExpectedSum);
    EndTerm(NextBiasStep(options_.limits, bias_.iteration.IterationNumber, At(term)));
  }
  ReportBiasIteration(console_, bias_.iteration, bias_.BiasMoving);
  return true;
}

}  // namespace

BiasOptions BiasOptionsOf(const Settings& settings, const Estimates& estimates) {
  BiasOptions options;
  options.limits = BiasLimitsOf(settings.Convergence, estimates.ExponentLimit, estimates.TinyValue);
  options.extremeAdjustment = settings.Xtreme[1];
  return options;
}

bool FindBiasTerms(BiasEstimates& bias, Console& console) {
  ObservationReader reader(bias.parts);
  bias.terms.Find(reader);
  if (console.stopping()) return false;
  if (bias.terms.count() == 0) {
    console.WarnLine("No bias terms found");
    return false;
  }
  console.ShowAndWrite(JoinNumber("There are empirically", bias.terms.count()) + " Bias terms");
  return true;
}

void EstimateBias(const BiasOptions& options, BiasEstimates& bias, Console& console) {
  bias.iteration = {};
  bias.iteration.EstimationPhase = kPhaseBias;
  WriteTable9Head(console, bias.interaction.number);
  Loop loop(options, bias, console);
  loop.First();
  while (loop.Next()) {
  }
  console.clearFinishRequest();
  WriteTable9Foot(console);
}

}  // namespace flanks
