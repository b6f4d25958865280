// Estimating the bias terms of one interaction, with all measures and thresholds held.
//
//   BiasEstimates bias(parts, interaction);
//   if (FindBiasTerms(bias, console)) EstimateBias(options, bias, console);
//
// FindBiasTerms tells how many terms the data have.  EstimateBias makes the first pass and then
// pass after pass until no term moves, the user's Ctrl+F or the limit of iterations; each is a line
// of Table 9.  The fit of the terms is stats/bias_fit.
//
// Tested by tests/unit/estimate/bias_test.cpp and, against the slow judge, by
// tests/checks/bias_check_test.cpp.
#ifndef FLANKS_ESTIMATE_BIAS_H
#define FLANKS_ESTIMATE_BIAS_H

#include <cstdint>

#include "base/block_moments.h"
#include "estimate/bias_step.h"
#include "estimate/bias_terms.h"
#include "run/settings.h"

namespace flanks {

struct BiasOptions {
  BiasLimits limits;
  float extremeAdjustment = 0.5f;   // score points
  std::int32_t iterationLimit = 0;  // 0: none
};
BiasOptions BiasOptionsOf(const Settings& settings, const Estimates& estimates);

// What the estimation works on and leaves, one row for each term.
struct BiasEstimates {
  PassParts parts;
  BiasInteraction interaction;
  BiasTermList terms;
  Column<BiasTermRow, BiasState> states;
  Column<BiasTermRow, BiasScores> scores;
  BlockSummary<1> residualsWithoutBias;  // of the observations of terms
  IterationState iteration;              // its number and its largest changes
  std::int32_t BiasMoving = 0;           // terms that moved in the last iteration

  BiasEstimates(const PassParts& passParts, const BiasInteraction& asked)
      : parts(passParts), interaction(asked), terms(passParts, asked) {}
};

// False when there are none, or when the run is to stop.
bool FindBiasTerms(BiasEstimates& bias, Console& console);

// Ends early when the run is to stop.
void EstimateBias(const BiasOptions& options, BiasEstimates& bias, Console& console);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_BIAS_H
