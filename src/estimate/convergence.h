// When the iterations stop, and how fast they go: rules as functions of numbers.
//
// Tested rule by rule in tests/unit/estimate/convergence_test.cpp.
#ifndef FLANKS_ESTIMATE_CONVERGENCE_H
#define FLANKS_ESTIMATE_CONVERGENCE_H

#include <array>
#include <cstdint>

#include "run/estimates.h"

namespace flanks {

// The four values of `Convergence=`, absolute; a limit of 0 does not count.
struct ConvergenceLimits {
  float score = 0.5f;      // largest element score residual
  float logit = 0.01f;     // largest change of an element's measure
  float category = 0.0f;   // largest category count residual
  float threshold = 0.0f;  // largest change of a threshold
};

ConvergenceLimits LimitsOf(const std::array<float, 4>& convergence);

// Whether another iteration is to be made after this one, the iteration limit apart.
bool KeepsGoing(const IterationState& iteration, const ConvergenceLimits& limits);

// Whether the iteration limit is tested after this iteration, and reached.  A pending recount and
// PROX are let through.
bool LimitReached(const IterationState& iteration, std::int32_t iterationLimit);

// The speed factor for the next iteration: a little more when the score residual falls too slowly
// in a steady direction, a quarter less when it swings or grows.  Held in .001 to 2.
float NextSpeedFactor(float speedFactor, const LargestChanges& now, const LargestChanges& before);

// Iterations after which the speed is controlled.
constexpr std::int32_t kSpeedControlFrom = 10;

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_CONVERGENCE_H
