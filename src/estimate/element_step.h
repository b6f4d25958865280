// The step of one element in JMLE: Newton-Raphson, or the secant on log-odds.
//
// The secant method compares the expected score E at the element's measure with the expected score
// E' at the measure less SecantDelta: the change of the log-odds ln(E / (M - E)) over that shift is
// the slope by which the distance between the observed and the expected log-odds is divided.  The
// observed score is kept at the extreme-score adjustment's distance from 0 and from the maximum, so
// that an element with an extreme score gets a finite measure.
//
// Tested by tests/unit/estimate/element_step_test.cpp.
#ifndef FLANKS_ESTIMATE_ELEMENT_STEP_H
#define FLANKS_ESTIMATE_ELEMENT_STEP_H

#include <cstdint>

namespace flanks {

// What the step of an element depends on.  Scores are weighted; Information is the weighted sum of
// model variances.
struct ElementSums {
  double ObservedScore = 0.0;    // R
  double MaxScore = 0.0;         // M; the absolute value is taken
  double ExpectedSum = 0.0;      // E
  double ShiftedExpected = 0.0;  // E' at the measure less SecantDelta
  double Information = 0.0;      // I
  float SmallestWeight = 0.0f;
};

// What is the same for all elements of an iteration.
struct StepControl {
  float XtremeAdjustment = 0.3f;  // score points, times the element's smallest weight
  float NewtonStep = 0.0f;        // 0: the secant method
  float SpeedFactor = 1.0f;
  float SecantDelta = 0.1f;  // logits
  float TinyValue = 0.0f;    // floor of logarithms' arguments
};

struct StepResult {
  float step = 0.0f;      // logits, of the element's measure
  double residual = 0.0;  // adjusted observed less expected score
  float fraction = 0.0f;  // residual / MaxScore
};

// The step of an element of a Flank with orientation kPositiveOrientation (-1) or
// kNegativeOrientation (0).  Zeros when MaxScore is 0; a step that is not finite is 0; a step above
// one logit is shortened to the first value at or below it in a loop of factors .9.
StepResult ElementStep(const ElementSums& sums, const StepControl& control,
                       std::int16_t orientation);

// ln of the value floored at `tinyValue`, and never below the smallest normal 32-bit value.
double FlooredLog(double value, float tinyValue);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_ELEMENT_STEP_H
