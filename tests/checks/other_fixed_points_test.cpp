// Designs in which the program's update does not end at the maximum of the likelihood, and how far
// from it: each threshold is moved by the counts of its two categories alone, and what the
// centering or the anchors of a scale take off all of them is a restriction there, not the choice
// of an origin. docs/quirks.md gives the sizes; the slow judge maximises the likelihood under the
// same constraints.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/judged_run.h"

namespace flanks {
namespace {

// 24 persons and 6 items, every pair once; the thresholds of the scale of each datum are these.
judge::Design Simulate(const std::vector<std::vector<double>>& thresholds, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<double> normal;
  judge::Design design;
  design.elementCounts = {24, 6};
  design.signs = {1, -1};
  design.structures.resize(thresholds.size());
  std::vector<double> persons, items;
  for (int n = 0; n < 24; ++n) persons.push_back(.8 * normal(random));
  for (int n = 0; n < 6; ++n) items.push_back(.5 * normal(random));
  for (int person = 0; person < 24; ++person) {
    for (int item = 0; item < 6; ++item) {
      // The scales are crossed with both Flanks: halves of the persons by halves of the items.
      const int s = thresholds.size() == 2 && (person < 12) != (item < 3) ? 1 : 0;
      const double B =
          persons[static_cast<std::size_t>(person)] - items[static_cast<std::size_t>(item)];
      const std::vector<double>& own = thresholds[static_cast<std::size_t>(s)];
      std::vector<double> weights(own.size() + 1, 1.0);
      double logit = 0.0;
      for (std::size_t k = 0; k < own.size(); ++k) {
        logit += B - own[k];
        weights[k + 1] = std::exp(logit);
      }
      const int category = std::discrete_distribution<int>(weights.begin(), weights.end())(random);
      design.observations.push_back({{person, item}, category, 1.0, s});
    }
  }
  return design;
}

struct Errors {
  double measure = 0.0, scale = 0.0, restriction = 0.0;
};

Errors ErrorsOf(const judge::Design& design, const std::string& models) {
  JudgedRun both;
  both.design = design;
  both.Estimate("Flanks=2\nPositive=1\nNoncenter=1\nConvergence=.0001,.000002\n" + models +
                LabelLines(design) + "Data=data.txt\n");
  return {both.LargestMeasureError(), both.LargestScaleError(), both.verdict.restriction};
}

// The size is that of this design, in logits; it may not grow unseen, nor vanish and the page go on
// telling of it.
constexpr double kOfTheSize = .005;

// The mean of a scale's thresholds has no Flank to be absorbed by: the centering costs the
// likelihood 3.5 score points, which the program spreads in its own way.
TEST(OtherFixedPoints, TwoScalesCrossedWithBothFlanks) {
  const Errors errors =
      ErrorsOf(Simulate({{-1.2, 0.0, 1.2}, {-.4, .1, .3}}, 5),
               "Models=\n1-12,1-3,A\n13-24,4-6,A\n?,?,B\n*\nRating scale=A,R3\n*\n"
               "Rating scale=B,R3\n*\n");
  EXPECT_GT(errors.restriction, 1.0);
  EXPECT_NEAR(errors.measure, .071, kOfTheSize);
  EXPECT_NEAR(errors.scale, .243, kOfTheSize);
}

// Two anchors that the data contradict: the free threshold takes the mean of the moves that they
// would have made.
TEST(OtherFixedPoints, TwoAnchoredThresholdsBesideAFreeOne) {
  judge::Design design = Simulate({{-1.2, 0.0, 1.2}}, 6);
  design.structures[0].anchors = {{1, -2.0}, {2, .5}};
  const Errors errors =
      ErrorsOf(design, "Models=?,?,A\nRating scale=A,R3\n1=low,-2,A\n2=mid,.5,A\n*\n");
  EXPECT_NEAR(errors.measure, .042, kOfTheSize);
  EXPECT_NEAR(errors.scale, .049, kOfTheSize);
}

// A category that nobody uses and whose threshold is anchored: without an upper limit of the
// iterations the likelihood grows on while the others move away from it.
TEST(OtherFixedPoints, AnAnchoredCategoryThatNobodyUsesHasNoMaximumBesideFreeOnes) {
  judge::Design design = Simulate({{-1.2, 0.0, 1.2}}, 7);
  for (judge::Observation& o : design.observations)
    if (o.category == 2) o.category = 1;
  design.structures[0].anchors = {{2, 2.5}};
  const judge::Verdict verdict = judge::Judge(design);
  EXPECT_FALSE(verdict.identified && verdict.converged);
  AnalysisRun run;
  run.Write("data.txt", DataLines(design));
  ASSERT_EQ(run.Analyze("Flanks=2\nPositive=1\nIterations=300\nModels=?,?,A\nRating scale=A,R3\n"
                        "2=mid,2.5,A\n*\n" +
                        LabelLines(design) + "Data=data.txt\n"),
            0)
      << run.Screen();
  for (const ElementState& element : run.analysis.estimates.elements)
    EXPECT_TRUE(std::isfinite(element.ElementMeasure));
}

}  // namespace
}  // namespace flanks
