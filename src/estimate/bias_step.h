// The estimate of one bias term: limits, what the first pass makes of its sums, and the step that
// follows each further pass.
//
// A term has the score R and the largest score M; at a bias b (logits, added to the measure sums of
// its observations) it has the expected score E(b), which rises with b.  Sought is the b at which
// E is R.  A score of 0 or M has none, so it is first moved inside by an adjustment.
//
//   first pass   at b = 0: one Newton step
//   then         false position (regula falsi) on the log-odds of the score, ln(E / (M - E)), which
//                are nearly linear in b: between the low end, the last b with E below R, and the
//                high end, the last one with E above R; from the nearer of the two where both
//                stand, and as a secant where only one does.  While the residual is above its
//                limit, a result that does not lie between two ends, or hardly moves, becomes the
//                middle of the ends; within the limit, where expectations may differ by their last
//                bits alone, one that lies beyond the ends or leads far off is not taken.
//
// On random terms of 1 to 12 responses this takes four passes as a rule and at most 20.  False
// position:
// G. E. Forsythe, M. A. Malcolm and C. B. Moler, Computer Methods for Mathematical Computations
// (1977), chapter 7.
//
// All of it are functions of numbers.  Tested by tests/unit/estimate/bias_test.cpp and, on
// random terms, tests/properties/estimate/bias_step_test.cpp.
#ifndef FLANKS_ESTIMATE_BIAS_STEP_H
#define FLANKS_ESTIMATE_BIAS_STEP_H

#include <array>
#include <cstdint>

namespace flanks {

// BiasStatus.  A positive value is the iteration in which the term last moved.
constexpr std::int16_t kBiasNotEstimable = 0;
constexpr std::int16_t kBiasVisited = -1;  // has data; before its first step
constexpr std::int16_t kBiasMinimum = -2;  // a score of 0
constexpr std::int16_t kBiasMaximum = -3;  // the largest score

struct BiasLimits {
  float score = 0.01f;        // score points
  float logit = 0.001f;       // logits
  float largestBias = 80.0f;  // logits: where a bias is held
  float tinyValue = 0.0f;     // the floor of what a logarithm is taken of
};
// From `Convergence=`; a first or second value of 0 leaves the limit as it is.
BiasLimits BiasLimitsOf(const std::array<float, 4>& convergence, float exponentLimit,
                        float tinyValue);

// What a pass reads and sums of a term.
struct BiasState {
  double ExpectedSum = 0.0;  // of w E in this pass
  float Bias = 0.0f;         // logits
  std::int16_t BiasStatus = kBiasNotEstimable;
};

// What the step of a term keeps between passes.  An end with an expected score of 0 does not stand.
struct BiasBracket {
  float LowBias = 0.0f, LowExpected = 0.0f;
  float HighBias = 0.0f, HighExpected = 0.0f;
};

// What the first pass finds, cut to 32 bits.
struct BiasScores {
  float ObservedScore = 0.0f;  // sum of w category; moved inside where it is extreme
  float MaxScore = 0.0f;       // sum of w m
  float RawScore = 0.0f;       // sum of w raw observation
  float Count = 0.0f;          // sum of w
  float SmallestWeight = 0.0f;
  float ExpectedRaw = 0.0f;  // expected raw score without bias
};

// The sums of the first pass, 64 bits.
struct BiasFirstSums {
  double ObservedScore = 0.0, MaxScore = 0.0, RawScore = 0.0, Count = 0.0;
  double ExpectedSum = 0.0, Information = 0.0;  // of w E and w V at no bias
  float SmallestWeight = 0.0f;                  // 0: no observation
};

struct BiasTermState {
  BiasState& state;
  BiasBracket& bracket;
  BiasScores& scores;
};

// What a step did.
struct BiasStep {
  float residual = 0.0f;  // R - E before the step, score points
  float fraction = 0.0f;  // of the largest score
  float step = 0.0f;      // logits
  bool moving = false;    // neither the residual nor the step is within its limit
};

// Scores, status and the first step.  `extremeAdjustment` is in score points, for the smallest
// weight; 0 stands for 0.5.
BiasStep FirstBiasStep(const BiasFirstSums& sums, float extremeAdjustment, const BiasLimits& limits,
                       std::int32_t iteration, BiasTermState term);

// The step after a further pass, which has filled `ExpectedSum`.
BiasStep NextBiasStep(const BiasLimits& limits, std::int32_t iteration, BiasTermState term);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_BIAS_STEP_H
