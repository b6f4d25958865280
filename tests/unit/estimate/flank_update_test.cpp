#include "estimate/flank_update.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

constexpr FlankNo kFlank(1);

// One Flank of elements in play, in JMLE.
struct OneFlank {
  Design design;
  Estimates estimates;
  FlankSteps steps;
  StepControl control;
  bool firstPass = false;

  OneFlank(int count, std::int16_t orientation, std::int16_t center) {
    design.FlankCount = 1;
    design.ElementTotal = count;
    FlankTable& flanks = design.flanks;
    flanks.FlankOptions.assign(1, " ");
    flanks.FlankElementCount.assign(1, count);
    flanks.FlankFirstSlot.assign(1, ElementSlot(1));
    flanks.FlankOrientation.assign(1, orientation);
    flanks.FlankCenter.assign(1, center);
    flanks.FlankHighestGroup.assign(1, 0);
    design.elements.PresetMeasure.assign(count, 0.0f);
    design.elements.ElementGroup.assign(count, 0);
    design.elements.ElementAnchor.assign(count, AnchorKind::none);
    design.elements.ElementTarget.assign(count, ElementSlot());
    estimates.elements.assign(count, {});
    estimates.scores.assign(count, {});
    estimates.iteration.EstimationPhase = kPhaseJmle;
    estimates.iteration.RecountRequired = false;
    estimates.iteration.flankString = " ";
    estimates.TinyValue = static_cast<float>(std::exp(-80.0));
    control.TinyValue = estimates.TinyValue;
    control.NewtonStep = 1.0f;  // step = residual / Information: easy to see
    steps.resize(static_cast<std::size_t>(count));
  }

  // Element n: measure, observed, expected; maximum 20, information 10.
  void Element(int n, float measure, double observed, double expected) {
    const ElementSlot e(n);
    estimates.elements[e].ElementMeasure = measure;
    estimates.elements[e].ElementStatus = kStatusFree;
    estimates.elements[e].ExpectedSum = expected;
    estimates.elements[e].Information = 10.0;
    estimates.scores[e].ObservedScore = observed;
    estimates.scores[e].MaxScore = 20.0;
    estimates.scores[e].Count = 5.0f;
    estimates.scores[e].SmallestWeight = 1.0f;
  }
  FlankUpdate Update() {
    return UpdateFlank({design, kFlank, control, firstPass}, estimates, steps);
  }
  float Measure(int n) const { return estimates.elements[ElementSlot(n)].ElementMeasure; }
  std::int16_t Status(int n) const { return estimates.elements[ElementSlot(n)].ElementStatus; }
};

TEST(UpdateFlank, AFloatingFlanksElementsTakeTheirSteps) {
  OneFlank flank(2, kPositiveOrientation, kNonCentered);
  flank.Element(1, .5f, 12, 10);  // + .2
  flank.Element(2, -.5f, 8, 9);   // - .1
  flank.Update();
  EXPECT_FLOAT_EQ(flank.Measure(1), .7f);
  EXPECT_FLOAT_EQ(flank.Measure(2), -.6f);
  EXPECT_EQ(flank.estimates.iteration.flankString, "U");
  EXPECT_EQ(flank.estimates.iteration.FreeParameterCount, 2);
  EXPECT_FLOAT_EQ(flank.estimates.iteration.changes.MaxLogitChange, .2f);
  EXPECT_DOUBLE_EQ(flank.estimates.iteration.changes.MaxScoreResidual, 2.0);
  EXPECT_EQ(flank.estimates.iteration.changes.scoreElement, ElementSlot(1));
}

TEST(UpdateFlank, ACenteredFlanksFreeElementsEndWithMeanZero) {
  OneFlank flank(2, kPositiveOrientation, kCentered);
  flank.Element(1, .5f, 12, 10);
  flank.Element(2, -.5f, 8, 9);
  flank.Update();
  // Projected .7 and -.6: mean .05 comes off.
  EXPECT_NEAR(flank.Measure(1), .65, 1e-6);
  EXPECT_NEAR(flank.Measure(2), -.65, 1e-6);
  EXPECT_EQ(flank.estimates.iteration.flankString, " ");
  EXPECT_EQ(flank.estimates.iteration.FreeParameterCount, 1);
}

TEST(UpdateFlank, ExtremeScoresChangeStatusByOrientationAndAskForARecount) {
  struct Case {
    std::int16_t orientation;
    double observed;
    std::int16_t status;
  };
  const Case cases[] = {{kPositiveOrientation, 0, kStatusMinimum},
                        {kPositiveOrientation, 20, kStatusMaximum},
                        {kNegativeOrientation, 0, kStatusMaximum},
                        {kNegativeOrientation, 20, kStatusMinimum}};
  for (const Case& c : cases) {
    OneFlank flank(2, c.orientation, kCentered);
    flank.Element(1, 0.0f, c.observed, 10);
    flank.Element(2, 0.0f, 10, 10);
    flank.Update();
    EXPECT_EQ(flank.Status(1), c.status) << c.orientation << " " << c.observed;
    EXPECT_TRUE(flank.estimates.iteration.RecountRequired);
    EXPECT_EQ(flank.estimates.iteration.FreeParameterCount, 0) << "one active, one constraint";
  }
}

TEST(UpdateFlank, ExtremesCountForTheOriginOnlyWhereTheFlankSaysSo) {
  for (const std::int16_t center : {kCentered, kCenteredWithExtremes}) {
    OneFlank flank(2, kPositiveOrientation, center);
    flank.Element(1, 2.0f, 20, 19.7);  // perfect: residual 0 after the adjustment of .3
    flank.Element(2, .5f, 10, 10);
    flank.Update();
    const double expected = center == kCentered ? 0.0 : .5 - 1.25;
    EXPECT_NEAR(flank.Measure(2), expected, 1e-6);
  }
}

TEST(UpdateFlank, WithoutDataAnElementIsUnusedAtFirstAndDroppedLater) {
  for (const bool firstPass : {true, false}) {
    OneFlank flank(2, kPositiveOrientation, kNonCentered);
    flank.firstPass = firstPass;
    flank.Element(1, .3f, 0, 0);
    flank.estimates.scores[ElementSlot(1)] = {};
    flank.Element(2, 0.0f, 10, 10);
    flank.Update();
    EXPECT_EQ(flank.Status(1), firstPass ? kStatusUnused : kStatusDropped);
    EXPECT_TRUE(flank.estimates.iteration.RecountRequired);
    flank.Update();
    EXPECT_EQ(flank.Measure(1), 0.0f);
  }
}

TEST(UpdateFlank, ANegativeMaximumHoldsAnElement) {
  OneFlank flank(2, kPositiveOrientation, kNonCentered);
  flank.Element(1, 0.0f, 5, 5);
  flank.estimates.scores[ElementSlot(1)].MaxScore = -20.0;
  flank.Element(2, 0.0f, 10, 10);
  flank.Update();
  EXPECT_EQ(flank.Status(1), kStatusHeld);
  EXPECT_EQ(flank.estimates.scores[ElementSlot(1)].MaxScore, 20.0);
  EXPECT_TRUE(flank.estimates.iteration.RecountRequired);
  flank.estimates.iteration.RecountRequired = false;
  flank.Update();
  EXPECT_EQ(flank.Status(1), kStatusHeld);
  EXPECT_FALSE(flank.estimates.iteration.RecountRequired) << "not new any more";
}

TEST(UpdateFlank, AnAnchoredElementStaysAndTheFreeOnesTakeHalfItsDrift) {
  OneFlank flank(2, kPositiveOrientation, kCentered);
  flank.Element(1, 1.0f, 12, 10);  // would move by .2
  flank.estimates.elements[ElementSlot(1)].ElementStatus = kStatusAnchored;
  flank.design.elements.PresetMeasure[ElementSlot(1)] = 1.0f;
  flank.Element(2, 0.0f, 11, 10);  // + .1
  flank.Update();
  EXPECT_EQ(flank.Measure(1), 1.0f);
  EXPECT_NEAR(flank.Measure(2), .1 - .5 * .2, 1e-6);
}

// A Flank of two groups: 1 and 2 in group 1, 3 alone in group 2, 4 free with group 2 as a label.
OneFlank TwoGroups(const char* options, std::int16_t center) {
  OneFlank flank(4, kPositiveOrientation, center);
  flank.design.flanks.FlankOptions[kFlank] = options;
  flank.design.flanks.FlankHighestGroup[kFlank] = 2;
  for (int n = 1; n <= 4; ++n) {
    flank.Element(n, 0.0f, 10, 10);
    flank.design.elements.ElementGroup[ElementSlot(n)] = n <= 2 ? 1 : 2;
    if (n == 4) continue;
    flank.design.elements.ElementAnchor[ElementSlot(n)] = AnchorKind::groupAnchored;
    flank.design.elements.PresetMeasure[ElementSlot(n)] = n <= 2 ? 1.0f : -.5f;
    flank.estimates.elements[ElementSlot(n)].ElementStatus = kStatusAnchored;
  }
  flank.estimates.elements[ElementSlot(1)].ElementMeasure = 1.4f;
  flank.estimates.elements[ElementSlot(2)].ElementMeasure = .6f;
  return flank;
}

TEST(UpdateFlank, AGroupKeepsItsMeanAndALoneMemberItsMeasure) {
  for (const char* const options : {" G", " X", " A-G"}) {
    OneFlank flank = TwoGroups(options, kNonCentered);
    flank.estimates.scores[ElementSlot(1)].ObservedScore = 13;  // + .3
    flank.estimates.scores[ElementSlot(2)].ObservedScore = 11;  // + .1
    flank.estimates.scores[ElementSlot(3)].ObservedScore = 12;  // + .2
    flank.estimates.scores[ElementSlot(4)].ObservedScore = 9;   // - .1
    flank.Update();
    // Group 1 would drift by .2, group 2 by -.5 + .7 = .7 from its measure: it began at 0.
    EXPECT_NEAR(flank.Measure(1), 1.4 + .3 - .2, 1e-6) << options;
    EXPECT_NEAR(flank.Measure(2), .6 + .1 - .2, 1e-6);
    EXPECT_FLOAT_EQ(flank.Measure(3), -.5f);
    // Free elements take half the mean drift of the groups: (.2 + .7) / 2 / 2.
    EXPECT_NEAR(flank.Measure(4), -.1 - .225, 1e-6);
    EXPECT_EQ(flank.estimates.iteration.flankString, " ") << "the groups tie the Flank";
    EXPECT_EQ(flank.estimates.iteration.FreeParameterCount, 4 - 2);
  }
}

TEST(UpdateFlank, ExtremeMembersCountForTheirGroupWithGAndNotWithX) {
  for (const bool withG : {true, false}) {
    OneFlank flank = TwoGroups(withG ? " G" : " X", kNonCentered);
    flank.estimates.scores[ElementSlot(1)].ObservedScore = 20;  // perfect: 19.7 - 10 is .97
    flank.Update();
    EXPECT_EQ(flank.Status(1), kStatusMaximum);
    // With G the drift of group 1 is the mean of .97 and 0; with X the second is a lone member.
    EXPECT_NEAR(flank.Measure(1), withG ? 1.4 + .485 : 1.0, 1e-6);
    EXPECT_NEAR(flank.Measure(2), withG ? .6 - .485 : 1.0, 1e-6);
  }
}

TEST(UpdateFlank, AnAnchorWithoutAGroupStandsBesideGroups) {
  OneFlank flank = TwoGroups(" G", kCentered);
  flank.design.elements.ElementAnchor[ElementSlot(4)] = AnchorKind::anchored;
  flank.design.elements.PresetMeasure[ElementSlot(4)] = 2.0f;
  flank.estimates.elements[ElementSlot(4)].ElementStatus = kStatusAnchored;
  flank.Update();
  EXPECT_FLOAT_EQ(flank.Measure(4), 2.0f);
}

TEST(UpdateFlank, AGroupNumberAloneIsForTheReport) {
  OneFlank flank(2, kPositiveOrientation, kCentered);
  flank.design.flanks.FlankOptions[kFlank] = " G";
  flank.design.flanks.FlankHighestGroup[kFlank] = 1;
  flank.design.elements.ElementGroup[ElementSlot(1)] = 1;
  flank.Element(1, .5f, 12, 10);
  flank.Element(2, -.5f, 8, 9);
  flank.Update();
  EXPECT_NEAR(flank.Measure(1), .65, 1e-6);
  EXPECT_NEAR(flank.Measure(2), -.65, 1e-6);
}

TEST(UpdateFlank, StartingMeasuresHoldInProxAndLetGoInJmle) {
  for (const bool jmle : {false, true}) {
    OneFlank flank(2, kPositiveOrientation, kCentered);
    if (!jmle) flank.estimates.iteration.EstimationPhase = kPhaseProx;
    flank.Element(1, 1.5f, 12, 10);
    flank.Element(2, -1.0f, 8, 9);
    flank.design.elements.PresetMeasure[ElementSlot(1)] = 1.5f;
    flank.design.elements.PresetMeasure[ElementSlot(2)] = -1.0f;
    flank.Update();
    // JMLE: 1.7 and -1.1 about their mean .3.
    EXPECT_NEAR(flank.Measure(1), jmle ? 1.4 : 1.5, 1e-6);
    EXPECT_NEAR(flank.Measure(2), jmle ? -1.4 : -1.0, 1e-6);
    EXPECT_EQ(flank.estimates.iteration.FreeParameterCount, jmle ? 1 : 2);
  }
}

TEST(UpdateFlank, AnElementWithATargetStandsWhereItsTargetDoes) {
  OneFlank flank(3, kPositiveOrientation, kCentered);
  flank.Element(1, 0.0f, 20, 10);  // perfect, and yet in play: it takes its target's measure
  flank.estimates.elements[ElementSlot(1)].ElementStatus = kStatusAnchored;
  flank.design.elements.ElementTarget[ElementSlot(1)] = ElementSlot(2);
  flank.Element(2, .5f, 12, 10);
  flank.Element(3, -.5f, 8, 9);
  const FlankUpdate update = flank.Update();
  EXPECT_NEAR(flank.Measure(2), .65, 1e-6) << "centered without the first";
  EXPECT_EQ(flank.Measure(1), flank.Measure(2));
  EXPECT_EQ(flank.Status(1), kStatusAnchored);
  EXPECT_EQ(update.summary.count, 2) << "of the elements that move";
  EXPECT_EQ(flank.estimates.iteration.FreeParameterCount, 1);
  EXPECT_FALSE(flank.estimates.iteration.RecountRequired);
}

TEST(UpdateFlank, TheRangeGuardHoldsAMeasureAtTheLimit) {
  OneFlank flank(2, kPositiveOrientation, kNonCentered);
  flank.Element(1, -79.95f, 8, 10);  // - .2
  flank.Element(2, 0.0f, 10, 10);
  const FlankUpdate update = flank.Update();
  EXPECT_EQ(flank.Measure(1), -80.0f);
  EXPECT_EQ(update.outOfRange, ElementSlot(1));
  EXPECT_FALSE(update.endProx) << "not in PROX";
}

TEST(UpdateFlank, ProxHoldsAnExtremeMeasureAtTheLimit) {
  OneFlank flank(1, kPositiveOrientation, kNonCentered);
  flank.estimates.iteration.EstimationPhase = kPhaseProx;
  flank.Element(1, 0.0f, 18, 0);
  flank.estimates.elements[ElementSlot(1)].ElementStatus = kStatusMaximum;
  ElementState& state = flank.estimates.elements[ElementSlot(1)];
  state.ExpectedSum = 0.0;
  state.Information = 1E+60;  // weights of 1E30
  state.ShiftedExpected = 1E+30;
  flank.estimates.scores[ElementSlot(1)].MaxScore = 18.0;
  EXPECT_FALSE(flank.Update().endProx);
  EXPECT_EQ(flank.Measure(1), flank.estimates.ExponentLimit);
}

TEST(UpdateFlank, ProxTakesTheNormalApproximation) {
  OneFlank flank(1, kPositiveOrientation, kNonCentered);
  flank.estimates.iteration.EstimationPhase = kPhaseProx;
  flank.Element(1, 0.0f, 11, 0);
  ElementState& state = flank.estimates.elements[ElementSlot(1)];
  // S = -1.2, Q = 4.4, W = 6, R = 11, M = 18: new measure .303291.
  state.ExpectedSum = -1.2;
  state.Information = 4.4;
  state.ShiftedExpected = 6.0;
  flank.estimates.scores[ElementSlot(1)].MaxScore = 18.0;
  flank.Update();
  EXPECT_NEAR(flank.Measure(1), .303291, 1e-6);
}

TEST(FlankSummary, MeanAndPopulationDeviation) {
  FlankSummary summary;
  for (const double measure : {2.0, 3.0, 5.0, 4.0}) summary.add(measure);
  EXPECT_DOUBLE_EQ(summary.mean, 3.5);
  EXPECT_NEAR(summary.standardDeviation(), 1.118034, 1e-6);
}

TEST(FirstFlankString, MarksFloatingFlanksWithoutAnchors) {
  OneFlank flank(2, kPositiveOrientation, kNonCentered);
  EXPECT_EQ(FirstFlankString(flank.design), "U");
  flank.design.elements.ElementAnchor[ElementSlot(2)] = AnchorKind::anchored;
  EXPECT_EQ(FirstFlankString(flank.design), " ");
  flank.design.elements.ElementTarget[ElementSlot(2)] = ElementSlot(1);
  EXPECT_EQ(FirstFlankString(flank.design), "U") << "it has its target's measure";
}

}  // namespace
}  // namespace flanks
