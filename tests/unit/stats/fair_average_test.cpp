#include "stats/fair_average.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

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
