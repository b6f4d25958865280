#include "stats/fair_average.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

#include "stats/fit_pass.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

// Two Flanks of three and two elements, and one without any.
struct SmallRun {
  Design design;
  Estimates estimates;

  SmallRun() {
    design.FlankCount = 3;
    design.ElementTotal = 5;
    design.flanks.FlankElementCount.assign(3, 0);
    design.flanks.FlankFirstSlot.assign(3, ElementSlot(1));
    design.flanks.FlankElementCount[FlankNo(1)] = 3;
    design.flanks.FlankElementCount[FlankNo(2)] = 2;
    design.flanks.FlankFirstSlot[FlankNo(2)] = ElementSlot(4);
    design.flanks.FlankFirstSlot[FlankNo(3)] = ElementSlot(6);
    estimates.elements.resize(5);
    estimates.scores.resize(5);
    estimates.finals.resize(5);
  }
  void Set(int slot, float measure, std::int16_t status) {
    estimates.elements[ElementSlot(slot)].ElementMeasure = measure;
    estimates.elements[ElementSlot(slot)].ElementStatus = status;
  }
};

TEST(FlankMeans, AreOfTheElementsInPlay) {
  SmallRun run;
  run.Set(1, 1.0f, kStatusFree);
  run.Set(2, 0.25f, kStatusAnchored);
  run.Set(3, 5.0f, kStatusMaximum);
  run.Set(4, 2.0f, kStatusMinimum);
  run.Set(5, 3.0f, kStatusDropped);
  FlankMeans(run.design, run.estimates);
  EXPECT_EQ(run.estimates.FlankMean[FlankNo(1)], 0.625f);
  EXPECT_EQ(run.estimates.FlankMean[FlankNo(2)], 0.0f);  // nobody in play
  EXPECT_EQ(run.estimates.FlankMean[FlankNo(3)], 0.0f);  // nobody at all
}

std::vector<float> MeasuresOf(const std::vector<FairPosition>& positions) {
  std::vector<float> measures(positions.size());
  FairMeasures(positions, measures);
  return measures;
}

// A person of 1.5 meets a rater of .75 (taken off) and a task of -.25, where the Flanks' means are
// 1, .5 and 0: 1.5 - .5 + 0, then -.75 + 1 + 0, then -.25 + 1 - .5.
TEST(FairMeasures, PutTheOtherFlanksAtTheirMeans) {
  EXPECT_EQ(MeasuresOf({{-0.25f, 0.0f}, {-0.75f, -0.5f}, {1.5f, 1.0f}}),
            (std::vector<float>{0.25f, 0.25f, 1.0f}));
}

TEST(FairMeasures, AreTheElementsOwnAgainstZero) {
  EXPECT_EQ(MeasuresOf({{-0.25f, 0.0f}, {-0.75f, 0.0f}, {1.5f, 0.0f}}),
            (std::vector<float>{-0.25f, -0.75f, 1.5f}));
}

// One person of .5, one rater of -.5 (taken off, so .5 is added) and their one observation.
double FairScore(const std::vector<float>& thresholds, float person, float rater, FairKind kind) {
  PassDesign d;
  d.Flank(1, kPositiveOrientation).Flank(1, kNegativeOrientation);
  const int structure = d.Structure(d.Statement({"", ""}), d.Rating(thresholds));
  d.Build();
  d.scales.lowestCategory.assign(1, 0);
  d.SetMeasures({person, rater});
  d.Observe({1, 2}, structure, 1);
  const PassParts parts = d.parts();
  FlankMeans(d.design, d.estimates);
  FitPass pass(parts, kind);
  EXPECT_TRUE(pass.Run());
  return d.estimates.fitSums[ElementSlot(1)].terms.FairSum;
}

// At B = .5 + .5 = 1 with thresholds -1, 0 and 1 the logits are 0, 2, 3, 3: exp = 1, 7.389056,
// 20.085537 twice, sum 48.560130; (7.389056 + 5 x 20.085537) / 48.560130 = 2.220273.
TEST(FairScores, AreExpectedAtTheMeansOfTheOthers) {
  EXPECT_NEAR(FairScore({-1.0f, 0.0f, 1.0f}, 0.5f, -0.5f, FairKind::mean), 2.220273, 1E-6);
}

TEST(FairScores, AreExpectedAgainstZero) {
  EXPECT_EQ(FairScore({0.0f}, 0.0f, 1.5f, FairKind::zero), 0.5);
}

// A Flank in two positions: its mean stands in the level twice, and each takes off its own.
TEST(FairMeasures, CountAFlankThatIsEnteredTwiceTwice) {
  EXPECT_EQ(MeasuresOf({{0.5f, 0.25f}, {0.75f, 0.25f}, {1.0f, 1.0f}}),
            (std::vector<float>{1.75f, 2.0f, 1.5f}));
}

TEST(FairAverage, IsTheFairSumOverTheCount) {
  SmallRun run;
  run.estimates.finals[ElementSlot(2)].FairSum = 12.0;
  run.estimates.scores[ElementSlot(2)].Count = 5.0f;
  run.estimates.stage = StatisticsStage::finished;
  EXPECT_DOUBLE_EQ(FairAverage(run.estimates, ElementSlot(2)), 2.4);
  EXPECT_EQ(FairAverage(run.estimates, ElementSlot(3)), 0.0);
}

}  // namespace
}  // namespace flanks
