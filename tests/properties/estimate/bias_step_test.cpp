// Random terms: whatever their responses, few passes lead to the bias that gives their score.
#include "estimate/bias_step.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "support/slow_judge/slow_judge.h"

namespace flanks {
namespace {

struct RandomTerm {
  judge::Structure structure;
  std::vector<double> measures, weights;
  std::vector<int> categories;
};

struct Expectation {
  double score = 0.0, variance = 0.0;
};

Expectation ExpectationAt(const RandomTerm& term, double bias) {
  Expectation at;
  for (std::size_t i = 0; i < term.measures.size(); ++i) {
    const judge::Moments moments = judge::MomentsOf(term.structure, term.measures[i] + bias);
    at.score += term.weights[i] * moments.mean;
    at.variance += term.weights[i] * moments.variance;
  }
  return at;
}

// 1 to 12 responses in 2 to 8 categories, any score.
RandomTerm MakeTerm(std::mt19937& random) {
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  const auto between = [&](double low, double high) {
    return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
  };
  RandomTerm term;
  const int top = 1 + below(7);
  term.structure.thresholds.push_back(0.0);
  for (int k = 0; k <= top; ++k) {
    term.structure.rawCategories.push_back(k);
    term.structure.standing.push_back(judge::CategoryStanding::free);
    if (k > 0) term.structure.thresholds.push_back(between(-3.0, 3.0));
  }
  const bool weighted = below(4) == 0;
  for (int responses = 1 + below(12); responses > 0; --responses) {
    term.measures.push_back(between(-5.0, 5.0));
    term.weights.push_back(weighted ? between(0.5, 3.0) : 1.0);
    term.categories.push_back(below(static_cast<unsigned>(top) + 1));
  }
  return term;
}

BiasFirstSums SumsOf(const RandomTerm& term) {
  BiasFirstSums sums;
  for (std::size_t i = 0; i < term.measures.size(); ++i) {
    const auto weight = static_cast<float>(term.weights[i]);
    sums.ObservedScore += static_cast<double>(weight) * term.categories[i];
    sums.MaxScore += static_cast<double>(weight) * term.structure.top();
    sums.Count += weight;
    if (sums.SmallestWeight == 0.0f || weight < sums.SmallestWeight) sums.SmallestWeight = weight;
  }
  sums.RawScore = sums.ObservedScore;
  const Expectation start = ExpectationAt(term, 0.0);
  sums.ExpectedSum = start.score;
  sums.Information = start.variance;
  return sums;
}

// By bisection.
double ExactBias(const RandomTerm& term, double score) {
  double low = -60.0, high = 60.0;
  for (int halving = 0; halving < 100; ++halving) {
    const double middle = (low + high) / 2.0;
    (ExpectationAt(term, middle).score < score ? low : high) = middle;
  }
  return (low + high) / 2.0;
}

TEST(BiasStep, RandomTermsAreSolvedInFewPasses) {
  const BiasLimits limits{0.01f, 0.001f, 80.0f, std::exp(-80.0f)};
  constexpr int kMostPasses = 20, kTerms = 2000;
  int total = 0;
  for (unsigned seed = 1; seed <= kTerms; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const RandomTerm term = MakeTerm(random);
    BiasState state;
    BiasBracket bracket;
    BiasScores scores;
    const BiasTermState at{state, bracket, scores};
    BiasStep step = FirstBiasStep(SumsOf(term), 0.5f, limits, 1, at);
    int passes = 1;
    while (step.moving && passes < 50) {
      state.ExpectedSum = ExpectationAt(term, state.Bias).score;
      step = NextBiasStep(limits, ++passes, at);
    }
    ASSERT_LE(passes, kMostPasses);
    total += passes;
    const Expectation last = ExpectationAt(term, state.Bias);
    ASSERT_NEAR(last.score, scores.ObservedScore, 0.01);
    // Where the score hardly depends on the bias, its limit leaves the bias open.
    if (last.variance > 0.2) {
      ASSERT_NEAR(state.Bias, ExactBias(term, scores.ObservedScore), 0.002 + 0.01 / last.variance);
    }
    ASSERT_GT(scores.ObservedScore, 0.0f);
    ASSERT_LT(scores.ObservedScore, scores.MaxScore);
  }
  EXPECT_LT(total, 5 * kTerms);
}

}  // namespace
}  // namespace flanks
