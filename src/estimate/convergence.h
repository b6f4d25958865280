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

bool NoLimitSet(const ConvergenceLimits& limits);

// Whether another iteration is to be made after this one, the iteration limit apart.
bool KeepsGoing(const IterationState& iteration, const ConvergenceLimits& limits);

// Whether the iteration limit is tested after this iteration, and reached.  A pending recount and
// PROX are let through.
bool LimitReached(const IterationState& iteration, std::int32_t iterationLimit);

// The speed factor for the next iteration: a little more when the score residual falls too slowly
// in a steady direction, a quarter less when it swings or grows.  Held in .001 to 2.
float NextSpeedFactor(float speedFactor, const LargestChanges& now, const LargestChanges& before);

// Sees when iterations of JMLE no longer come nearer to convergence: where the constraints contradict
// each other a residual stays, or measures swing or rest at the limit of the exponents for ever.
class ProgressWatch {
 public:
  // Iterations without progress after which there is no hope.  A loop that is to converge at all
  // gains more than a hundredth in so many.
  static constexpr std::int32_t kPatience = 1000;

  // Takes the largest changes of one more iteration.  True when neither the score residual nor the
  // change of a measure, of a threshold or of a category count has become smaller than ever, by a
  // hundredth of itself, in the last kPatience iterations.
  bool Hopeless(const LargestChanges& changes);
  void Restart() { *this = {}; }  // after a recount

 private:
  std::array<double, 4> smallest_{};
  std::int32_t sinceProgress_ = 0;
  bool begun_ = false;
};

// Iterations after which the speed is controlled.
constexpr std::int32_t kSpeedControlFrom = 10;

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_CONVERGENCE_H
