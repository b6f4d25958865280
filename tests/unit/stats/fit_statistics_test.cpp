#include "stats/fit_statistics.h"

#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>

namespace flanks {
namespace {

const float kTiny = static_cast<float>(std::exp(-80.0));

struct FitCase {
  double denominator, variance, numerator;
  double meanSquare, exact, approximate, degreesOfFreedom;
  const char* why;
};

// Worked by hand: q = sqrt(variance) / denominator, ZStd = (MS^(1/3) - 1) 3/q [+ q/3].
constexpr FitCase kFitCases[] = {
    {20, 12, 26, 1.3, 1.64071, 1.58297, 66.6667, "misfit"},
    {20, 12, 14, 0.7, -1.88382, -1.94156, 66.6667, "overfit"},
    {10, 5, 10, 1.0, 0.07454, 0.0, 40.0, "at the expectation the last term is left"},
    {30, 90, 33, 1.1, 0.41165, 0.30624, 20.0, "a large variance"},
    {4, 2, 60, 9.0, 9.0, 9.0, 16.0, "mean-square and ZStd are cut at 9"},
    {4, 2, 0, 0.0, -8.367432, -8.485281, 16.0, "no misfit at all"},
    {100, 2, 1, 0.01, -9.0, -9.0, 10000.0, "ZStd is cut at -9"},
    {0, 1, 3, 1.0, 0.0, 0.0, 0.0, "nothing to divide by"},
    {-1, 1, 3, 1.0, 0.0, 0.0, 0.0, "nor by less than nothing"},
    {5, 0, 6, 1.2, 0.0, 0.0, 0.0, "a mean-square without a variance"},
    {5, -2, 6, 1.2, 0.0, 0.0, 0.0, "rounding below 0 is no variance"},
};

TEST(ZStdOf, FollowsWilsonAndHilferty) {
  for (const FitCase& c : kFitCases) {
    const FitValue fit =
        ZStdOf(c.denominator, c.variance, c.numerator, WilsonHilferty::exact, kTiny);
    EXPECT_NEAR(fit.MeanSquare, c.meanSquare, 1E-6) << c.why;
    EXPECT_NEAR(fit.ZStd, c.exact, 1E-5) << c.why;
    EXPECT_NEAR(fit.DegreesOfFreedom, c.degreesOfFreedom, 1E-4) << c.why;
  }
}

TEST(ZStdOf, DropsTheLastTermOnRequest) {
  for (const FitCase& c : kFitCases) {
    const FitValue fit =
        ZStdOf(c.denominator, c.variance, c.numerator, WilsonHilferty::approximate, kTiny);
    EXPECT_NEAR(fit.ZStd, c.approximate, 1E-5) << c.why;
    EXPECT_NEAR(fit.MeanSquare, c.meanSquare, 1E-6) << c.why;
  }
}

// The cut mean-square of 9 would give (9^(1/3) - 1) 3/q + q/3 = 1.4401; the uncut ratio of 15
// gives 2.0308 with q = 2.5.
TEST(ZStdOf, TakesTheUncutRatioForZStd) {
  const FitValue fit = ZStdOf(4, 100, 60, WilsonHilferty::exact, kTiny);
  EXPECT_EQ(fit.MeanSquare, 9.0f);
  EXPECT_NEAR(fit.ZStd, (std::cbrt(15.0) - 1.0) * 3.0 / 2.5 + 2.5 / 3.0, 1E-6);
}

TEST(ZStdOf, IsFiniteAtTheEdgesOfTheNumbers) {
  const double values[] = {0.0, 1E-45, 1E-30, 1E-9, 1.0, 1E9, 1E30, 3E38};
  for (const double a : values) {
    for (const double b : values) {
      for (const double c : values) {
        for (const float tiny : {kTiny, 0.0f}) {
          const FitValue fit = ZStdOf(a, b, c, WilsonHilferty::exact, tiny);
          ASSERT_TRUE(std::isfinite(fit.MeanSquare) && std::isfinite(fit.ZStd) &&
                      std::isfinite(fit.DegreesOfFreedom))
              << a << ' ' << b << ' ' << c;
          ASSERT_LE(std::abs(fit.MeanSquare), 9.0f);
          ASSERT_LE(std::abs(fit.ZStd), 9.0f);
        }
      }
    }
  }
}

struct ErrorCase {
  double information;
  float infitMeanSquare;
  ErrorKind kind;
  double standardError;
};

TEST(StandardErrorOf, IsEnlargedByMisfitOnly) {
  const ErrorCase cases[] = {
      {16, 1.0f, ErrorKind::model, 0.25}, {16, 1.44f, ErrorKind::model, 0.25},
      {16, 1.44f, ErrorKind::real, 0.30}, {16, 0.8f, ErrorKind::real, 0.25},
      {0, 1.0f, ErrorKind::model, 0.0},   {1E-36, 1.0f, ErrorKind::model, 0.0},
      {4, 1.0f, ErrorKind::real, 0.5},
  };
  for (const ErrorCase& c : cases) {
    EXPECT_NEAR(StandardErrorOf(c.information, c.infitMeanSquare, c.kind, kTiny), c.standardError,
                1E-6)
        << c.information << ' ' << c.infitMeanSquare;
  }
}

TEST(DisplacementOf, WouldRemoveTheScoreResidual) {
  EXPECT_FLOAT_EQ(DisplacementOf(14, 12, 8, kTiny), 0.25f);
  EXPECT_FLOAT_EQ(DisplacementOf(12, 14, 8, kTiny), -0.25f);
  EXPECT_FLOAT_EQ(DisplacementOf(14, 14, 8, kTiny), 0.0f);
}

TEST(DisplacementOf, StaysFiniteWithoutInformation) {
  for (const float tiny : {kTiny, 0.0f}) {
    EXPECT_TRUE(std::isfinite(DisplacementOf(1E9, 12, 0, tiny)));
    EXPECT_TRUE(std::isfinite(DisplacementOf(12, 1E9, 0, tiny)));
    EXPECT_GT(DisplacementOf(14, 12, 0, tiny), 1E30f);
    EXPECT_EQ(DisplacementOf(14, 14, 0, tiny), 0.0f);
  }
}

// Two observations of a scale 0 to 2 with thresholds -1 and 1 at B = 0: the cumulative logits are
// 0, 1, 0 and the probabilities p1 = e / (2 + e) = .576117, p0 = p2 = .211942, so that the
// expectation of one is .576117 and its variance .576117 - .576117² = .244206.
TEST(DiscriminationOf, TakesTheExpectationOffOnce) {
  const double expectation = 2 * 0.576117;
  const double variance = 2 * 0.244206;
  EXPECT_NEAR(DiscriminationOf(2.0, expectation, variance), 2.735760, 1E-5);
  EXPECT_NEAR(DiscriminationOf(1.0, expectation, variance), 0.688308, 1E-5);
  EXPECT_NEAR(DiscriminationOf(expectation, expectation, variance), 1.0, 1E-6);
}

TEST(DiscriminationOf, IsCutAndHasADefault) {
  EXPECT_EQ(DiscriminationOf(5.0, 1.0, 0.0), 1.0f);
  EXPECT_EQ(DiscriminationOf(5.0, 1.0, -1E-12), 1.0f);
  EXPECT_EQ(DiscriminationOf(5.0, 1.0, 1E-12), 10.0f);
  EXPECT_EQ(DiscriminationOf(1.0, 5.0, 1E-12), -10.0f);
  // The variance has a floor of 1E-10, so a difference of 1E-10 counts as 1.
  EXPECT_NEAR(DiscriminationOf(1E-10, 0.0, 1E-15), 2.0, 1E-6);
}

// Four dichotomous observations of an element with B = -1, 0, 0, 1 and categories 0, 0, 1, 1:
// V = .196612, .25, .25, .196612; E = .268941, .5, .5, .731059.
FitSums FourObservations() {
  FitSums sums;
  sums.terms.ResidualSum = 2.0;
  sums.terms.Information = 0.893224;
  sums.terms.InfitSum = 2 * 0.072329 + 2 * 0.25;
  sums.terms.OutfitSum = 2 * 0.367879 + 2 * 1.0;
  sums.terms.InfitVarianceSum = 2 * 0.041987;  // C4 - V² is 0 at B = 0
  sums.terms.ExpectedSum = 2 * 2.086161 + 2 * 1.0;
  sums.terms.FairSum = 2.0;
  return sums;
}

ElementScores FourScores() {
  ElementScores scores;
  scores.ObservedScore = 2.0;
  scores.MaxScore = 4.0;
  scores.Count = 4.0f;
  return scores;
}

TEST(FinishElement, MakesAllStatisticsOfTheSums) {
  const ElementFinal final =
      FinishElement(FourObservations(), FourScores(), kStatusFree, {}, {}, kTiny);
  EXPECT_NEAR(final.StandardError, 1.058082, 1E-5);
  EXPECT_NEAR(final.InfitMeanSquare, 0.721721, 1E-5);
  EXPECT_NEAR(final.OutfitMeanSquare, 0.683940, 1E-5);
  const double infitThird = std::sqrt(0.083974) / 0.893224 / 3.0;
  const double outfitThird = std::sqrt(2.172322) / 4.0 / 3.0;
  EXPECT_NEAR(final.InfitZStd, (std::cbrt(0.721721) - 1.0) / infitThird + infitThird, 1E-4);
  EXPECT_NEAR(final.OutfitZStd, (std::cbrt(0.683940) - 1.0) / outfitThird + outfitThird, 1E-4);
  EXPECT_NEAR(final.InfitDF, 2 * 0.893224 * 0.893224 / 0.083974, 1E-3);
  EXPECT_EQ(final.Displacement, 0.0f);
  EXPECT_EQ(final.Discrimination, 1.0f);
  EXPECT_EQ(final.FairSum, 2.0);
}

TEST(FinishElement, TreatsAnAnchorAsAnyOtherInPlay) {
  FitSums sums = FourObservations();
  sums.terms.ResidualSum = 1.5;
  const ElementFinal final = FinishElement(sums, FourScores(), kStatusAnchored, {}, {}, kTiny);
  EXPECT_NEAR(final.Displacement, 0.5 / 0.893224, 1E-6);
  EXPECT_NEAR(final.InfitMeanSquare, 0.721721, 1E-5);
}

TEST(FinishElement, LeavesAnExtremeElementItsErrorAndFairSum) {
  for (const std::int16_t status : {kStatusMinimum, kStatusMaximum, kStatusHeld}) {
    FitSums sums = FourObservations();
    sums.terms.ResidualSum = 1.5;
    sums.terms.LogLikelihoodSpread = 1.0;
    sums.terms.LogLikelihoodSum = 3.0;
    const ElementFinal final = FinishElement(sums, FourScores(), status, {}, {}, kTiny);
    EXPECT_NEAR(final.StandardError, 1.058082, 1E-5);
    EXPECT_EQ(final.FairSum, 2.0);
    EXPECT_EQ(final.InfitMeanSquare, 1.0f);
    EXPECT_EQ(final.InfitZStd, 0.0f);
    EXPECT_EQ(final.OutfitMeanSquare, 1.0f);
    EXPECT_EQ(final.OutfitZStd, 0.0f);
    EXPECT_EQ(final.Displacement, 0.0f);
    EXPECT_EQ(final.Discrimination, 1.0f);
  }
}

TEST(FinishElement, GivesAnElementWithoutDataTheDefaults) {
  const ElementFinal final = FinishElement({}, {}, kStatusDropped, {}, {}, kTiny);
  EXPECT_EQ(final.StandardError, 0.0f);
  EXPECT_EQ(final.OutfitMeanSquare, 1.0f);
  EXPECT_EQ(final.PointMeasure, 0.0f);
  EXPECT_EQ(final.PointResidual, 0.0f);
}

TEST(FinishElement, EnlargesTheRealErrorByMisfit) {
  FitSums sums = FourObservations();
  sums.terms.InfitSum = 1.44 * 0.893224;
  FitSettings settings;
  settings.errorKind = ErrorKind::real;
  const ElementFinal final = FinishElement(sums, FourScores(), kStatusFree, {}, settings, kTiny);
  EXPECT_NEAR(final.StandardError, 1.2 * 1.058082, 1E-5);
}

TEST(FinishElement, KeepsAPointBiserialThatAnEarlierPassFound) {
  FitSettings settings;
  settings.pointCorrelation = PointCorrelation::pointBiserial;
  ElementFinal former;
  former.PointMeasure = 0.37f;
  EXPECT_EQ(FinishElement(FourObservations(), FourScores(), kStatusFree, former, settings, kTiny)
                .PointMeasure,
            0.37f);
  EXPECT_EQ(
      FinishElement(FourObservations(), FourScores(), kStatusFree, former, {}, kTiny).PointMeasure,
      0.0f);
}

TEST(FinishStatistics, FinishesEveryElementAndSetsTheStage) {
  Estimates estimates;
  estimates.elements.resize(2);
  estimates.scores.resize(2);
  estimates.finals.resize(2);
  estimates.TinyValue = kTiny;
  estimates.elements[ElementSlot(1)].ElementStatus = kStatusFree;
  estimates.scores[ElementSlot(1)] = FourScores();
  estimates.fitSums.resize(2);
  estimates.fitSums[ElementSlot(1)] = FourObservations();
  estimates.stage = StatisticsStage::sums;
  FinishStatistics({}, estimates);
  EXPECT_TRUE(estimates.fitSums.empty());
  EXPECT_EQ(estimates.stage, StatisticsStage::finished);
  const FinishedStatistics first(estimates, ElementSlot(1));
  EXPECT_NEAR(first->InfitMeanSquare, 0.721721, 1E-5);
  const FinishedStatistics second(estimates, ElementSlot(2));
  EXPECT_EQ(second->InfitMeanSquare, 1.0f);
}

TEST(FitSettingsOf, ReadsTheSettingsOfTheRun) {
  Settings settings;
  FitSettings fit = FitSettingsOf(settings);
  EXPECT_EQ(fit.form, WilsonHilferty::exact);
  EXPECT_EQ(fit.errorKind, ErrorKind::model);
  EXPECT_EQ(fit.pointCorrelation, PointCorrelation::measure);
  settings.Whexact = 'N';
  settings.RealStandardErrors = true;
  settings.PointCorrelationKind = 'I';
  fit = FitSettingsOf(settings);
  EXPECT_EQ(fit.form, WilsonHilferty::approximate);
  EXPECT_EQ(fit.errorKind, ErrorKind::real);
  EXPECT_EQ(fit.pointCorrelation, PointCorrelation::pointBiserial);
  settings.PointCorrelationKind = 'N';
  EXPECT_EQ(FitSettingsOf(settings).pointCorrelation, PointCorrelation::measure);
}

}  // namespace
}  // namespace flanks
