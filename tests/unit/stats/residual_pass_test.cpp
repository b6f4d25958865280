#include "stats/residual_pass.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "support/analysis_run.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

// Persons 1 to 3 (slots 1 to 3) on two items (slots 4, 5), one rating scale of three categories
// whose lowest is 1, with thresholds -1 and 1.  At B = 1 the cumulative logits are 0, 2, 2:
// p = .063380, .468310, .468310; E = 1.404930, V = 5 p - E squared = .367722.
class ThreeCategories : public ::testing::Test {
 protected:
  PassDesign d;
  const double p = std::exp(2.0) / (1 + 2 * std::exp(2.0));
  const double E = 3 * p;
  const double V = 5 * p - E * E;
  int structure = 0;

  void Make(const std::vector<std::string>& references = {"", ""}, float weight = 1.0f) {
    d.Flank(3, kPositiveOrientation).Flank(2, kNegativeOrientation);
    structure = d.Structure(d.Statement(references, weight), d.Rating({-1.0f, 1.0f}));
    d.Build();
    d.scales.lowestCategory.assign(1, 1);
    d.SetMeasures({1.5f, 1.5f, 1.5f, 0.5f, 0.5f});
  }

  ResidualSummary Run(UnexpectedList& list) { return ResidualPass(d.parts()).Run(list); }
};

// Ordered category 0 stands for 1: residual -1.404930, z squared = 1.973829 / .367722 = 5.367718.
TEST_F(ThreeCategories, AKeptResponseHasItsFiguresInScoredCategories) {
  Make();
  d.Observe({1, 4}, structure, 2);
  d.Observe({2, 5}, structure, 0);
  UnexpectedList list(2.0f, 100, 2);
  Run(list);
  const UnexpectedResponses kept = list.Finish();
  ASSERT_EQ(kept.rows.size(), 1u);
  const KeptResponse& row = kept.rows[0];
  EXPECT_EQ(row.sequence, 2);
  EXPECT_EQ(row.category, 0);
  EXPECT_EQ(row.score, 1);
  EXPECT_NEAR(row.expected, E + 1, 1E-6);
  EXPECT_NEAR(row.residual, -E, 1E-6);
  EXPECT_NEAR(row.StRes, -std::sqrt(E * E / V), 1E-5);
  EXPECT_NEAR(row.MeasureSum, 1.0, 1E-6);
  EXPECT_EQ(kept.ElementsOf(0)[0], ElementSlot(2));
  EXPECT_EQ(kept.ElementsOf(0)[1], ElementSlot(5));
}

// Categories 0, 1, 2 at one measure: means 1, 2, E + 1, 1 - E; the S.D. of 0, 1, 2 is the root of
// 2 / 3, and that of the residuals is the same.
TEST_F(ThreeCategories, MeansAndDeviationsAreThoseOfTheObservations) {
  Make();
  for (const int category : {0, 1, 2}) d.Observe({1, 4}, structure, category);
  UnexpectedList list(3.0f, 100, 2);
  const ResidualSummary summary = Run(list);
  EXPECT_EQ(summary.Count, 3.0);
  EXPECT_FALSE(summary.weighted);
  EXPECT_DOUBLE_EQ(summary.of(ResidualColumn::category).Mean, 1.0);
  EXPECT_DOUBLE_EQ(summary.of(ResidualColumn::score).Mean, 2.0);
  EXPECT_NEAR(summary.of(ResidualColumn::expected).Mean, E + 1, 1E-6);
  EXPECT_NEAR(summary.of(ResidualColumn::residual).Mean, 1 - E, 1E-6);
  EXPECT_NEAR(summary.of(ResidualColumn::StRes).Mean, (1 - E) / std::sqrt(V), 1E-5);
  const double deviation = std::sqrt(2.0 / 3.0);
  EXPECT_NEAR(summary.of(ResidualColumn::score).PopulationDeviation(3), deviation, 1E-12);
  EXPECT_NEAR(summary.of(ResidualColumn::expected).PopulationDeviation(3), 0.0, 1E-12);
  EXPECT_NEAR(summary.of(ResidualColumn::residual).PopulationDeviation(3), deviation, 1E-6);
}

// Scores 1 (weight 3) and 3 (weight 1): mean 1.5, variance (3 x .25 + 1 x 2.25) / 4 = .75.
TEST_F(ThreeCategories, AWeightCountsSoManyObservations) {
  Make({"", ""}, 0.5f);
  d.Observe({1, 4}, structure, 0, 6.0f);
  d.Observe({1, 4}, structure, 2, 2.0f);
  UnexpectedList list(3.0f, 100, 2);
  const ResidualSummary summary = Run(list);
  EXPECT_EQ(summary.Count, 4.0);
  EXPECT_TRUE(summary.weighted);
  EXPECT_NEAR(summary.of(ResidualColumn::score).Mean, 1.5, 1E-12);
  EXPECT_NEAR(summary.of(ResidualColumn::score).PopulationDeviation(4), std::sqrt(.75), 1E-12);
}

TEST_F(ThreeCategories, ObservationsWithOneExtremeElementCountAndOthersDoNot) {
  Make();
  d.element(2).ElementStatus = kStatusMaximum;
  d.element(3).ElementStatus = kStatusDropped;
  d.Observe({1, 4}, structure, 0);
  d.Observe({2, 4}, structure, 0);
  d.Observe({3, 4}, structure, 0);
  UnexpectedList list(0.0f, 100, 2);
  EXPECT_EQ(Run(list).Count, 2.0);
  EXPECT_EQ(list.Finish().rows.size(), 2u);
}

// What is all but certain did not happen: z squared is far above 81.
TEST_F(ThreeCategories, AStandardizedResidualIsCutAtNine) {
  Make();
  d.SetMeasures({40.0f, -40.0f, 0.0f, 0.0f, 0.0f});
  d.Observe({1, 4}, structure, 0);
  d.Observe({2, 4}, structure, 2);
  UnexpectedList list(9.0f, 100, 2);
  Run(list);
  const UnexpectedResponses kept = list.Finish();
  ASSERT_EQ(kept.rows.size(), 2u);
  EXPECT_EQ(kept.rows[0].StRes, 9.0f);
  EXPECT_EQ(kept.rows[0].sequence, 2);
  EXPECT_EQ(kept.rows[1].StRes, -9.0f);
}

TEST_F(ThreeCategories, APositionThatTakesNoPartHasNoElement) {
  Make({"", "@"});
  d.Observe({1, 4}, structure, 0);
  UnexpectedList list(0.0f, 100, 2);
  Run(list);
  const UnexpectedResponses kept = list.Finish();
  ASSERT_EQ(kept.rows.size(), 1u);
  EXPECT_EQ(kept.ElementsOf(0)[0], ElementSlot(1));
  EXPECT_EQ(kept.ElementsOf(0)[1], ElementSlot(0));
  EXPECT_NEAR(kept.rows[0].MeasureSum, 1.5, 1E-6);
}

// Many blocks, two scales and weights, against one sum over all observations.
TEST(ResidualPass, JoinsTheBlocksOfALargeRun) {
  PassDesign d;
  d.Flank(200, kPositiveOrientation).Flank(10, kNegativeOrientation);
  const int statement = d.Statement({"", ""});
  const int first = d.Structure(statement, d.Rating({-1.0f, 0.2f, 0.8f}));
  const int second = d.Structure(statement, d.CountScale(ScaleType::binomial, 6, 0.8f));
  d.Build();
  d.scales.lowestCategory.assign(2, 0);
  d.scales.lowestCategory[ScaleRow(0)] = 2;
  std::mt19937 random(5);
  std::normal_distribution<float> normal(0.0f, 1.0f);
  for (ElementState& element : d.estimates.elements) element.ElementMeasure = normal(random);
  for (int n = 0; n < 5000; ++n) {
    const bool binomial = n % 3 == 0;
    d.Observe({1 + n % 200, 201 + n % 10}, binomial ? second : first,
              static_cast<int>(random() % (binomial ? 7u : 4u)), n > 3000 && n % 2 == 0 ? 2.5f : 1);
  }
  UnexpectedList list(0.0f, 1'000'000, 2);
  const ResidualSummary summary = ResidualPass(d.parts()).Run(list);
  const UnexpectedResponses kept = list.Finish();
  ASSERT_EQ(kept.rows.size(), 5000u);
  long double weight = 0, scores = 0, squares = 0, residuals = 0, residualSquares = 0;
  for (const KeptResponse& row : kept.rows) {
    const auto n = row.sequence - 1;
    const long double w = n > 3000 && n % 2 == 0 ? 2.5L : 1.0L;
    EXPECT_NEAR(row.score - row.expected, row.residual, 2E-6);
    EXPECT_EQ(row.score, row.category + (n % 3 == 0 ? 0 : 2));
    weight += w;
    scores += w * row.score;
    squares += w * row.score * row.score;
    residuals += w * static_cast<long double>(row.residual);
    residualSquares += w * static_cast<long double>(row.residual) * row.residual;
  }
  const auto deviation = [&](long double sum, long double sumOfSquares) {
    const long double mean = sum / weight;
    return static_cast<double>(std::sqrt(sumOfSquares / weight - mean * mean));
  };
  EXPECT_DOUBLE_EQ(summary.Count, static_cast<double>(weight));
  const ResidualMoments& score = summary.of(ResidualColumn::score);
  const ResidualMoments& residual = summary.of(ResidualColumn::residual);
  EXPECT_NEAR(score.Mean, static_cast<double>(scores / weight), 1E-12);
  EXPECT_NEAR(score.PopulationDeviation(summary.Count), deviation(scores, squares), 1E-12);
  EXPECT_NEAR(residual.Mean, static_cast<double>(residuals / weight), 1E-12);
  EXPECT_NEAR(residual.PopulationDeviation(summary.Count), deviation(residuals, residualSquares),
              1E-12);
}

// A Poisson scale beside one that fills more is taken one observation at a time.  At B = 0 with
// discrimination 1 its expected score is 1, and its variance near 1.
TEST(ResidualPass, TakesOneByOneWhatHasToBe) {
  PassDesign d;
  d.Flank(1, kPositiveOrientation).Flank(1, kNegativeOrientation);
  const int statement = d.Statement({"", ""});
  const int poisson = d.Structure(statement, d.CountScale(ScaleType::poisson, 4, 1.0f));
  const int binomial = d.Structure(statement, d.CountScale(ScaleType::binomial, 30, 1.0f));
  d.Build();
  d.scales.lowestCategory.assign(2, 0);
  d.Observe({1, 2}, poisson, 4);
  d.Observe({1, 2}, binomial, 15);
  UnexpectedList list(0.0f, 10, 2);
  ResidualPass(d.parts()).Run(list);
  const UnexpectedResponses kept = list.Finish();
  ASSERT_EQ(kept.rows.size(), 2u);
  EXPECT_EQ(kept.rows[0].sequence, 1);
  EXPECT_NEAR(kept.rows[0].expected, 1.0, 1E-6);
  EXPECT_NEAR(kept.rows[0].StRes, 3.0, 0.001);
  EXPECT_NEAR(kept.rows[1].expected, 15.0, 1E-5);
}

// With the shared array marked as filled to its end, although all of it is 0, the observations are
// taken one by one: the same bits.
TEST(ResidualPass, HasTheSameBitsInBatchesAndOneByOne) {
  PassDesign d;
  d.Flank(60, kPositiveOrientation).Flank(6, kNegativeOrientation);
  const int statement = d.Statement({"", ""});
  const int poisson = d.Structure(statement, d.CountScale(ScaleType::poisson, 9, 0.9f));
  const int rating = d.Structure(statement, d.Rating({-1.0f, 0.0f, 1.0f}));
  d.Build();
  d.scales.lowestCategory.assign(2, 0);
  std::mt19937 random(11);
  std::normal_distribution<float> normal(0.5f, 0.6f);
  for (ElementState& element : d.estimates.elements) element.ElementMeasure = normal(random);
  for (int n = 0; n < 3000; ++n)
    d.Observe({1 + n % 60, 61 + n % 6}, n % 2 == 0 ? poisson : rating,
              static_cast<int>(random() % (n % 2 == 0 ? 10u : 4u)));
  UnexpectedList inBatches(0.0f, 5000, 2), oneByOne(0.0f, 5000, 2);
  const ResidualSummary first = ResidualPass(d.parts()).Run(inBatches);
  d.estimates.work.filledTo = kProbabilityEntries - 1;
  const ResidualSummary second = ResidualPass(d.parts()).Run(oneByOne);
  for (std::size_t column = 0; column < kResidualColumns; ++column) {
    EXPECT_EQ(first.columns[column].Mean, second.columns[column].Mean);
    EXPECT_EQ(first.columns[column].SumOfSquares, second.columns[column].SumOfSquares);
  }
  const UnexpectedResponses some = inBatches.Finish(), others = oneByOne.Finish();
  ASSERT_EQ(some.rows.size(), 3000u);
  ASSERT_EQ(others.rows.size(), 3000u);
  for (std::size_t row = 0; row < some.rows.size(); ++row) {
    EXPECT_EQ(some.rows[row].sequence, others.rows[row].sequence);
    EXPECT_EQ(some.rows[row].StRes, others.rows[row].StRes);
    EXPECT_EQ(some.rows[row].expected, others.rows[row].expected);
  }
}

// Chi-squared, which the fit pass sums, is the sum of the squares of the standardized residuals
// where none is cut.
TEST(ComputeResiduals, AgreesWithTheFitPass) {
  AnalysisRun run;
  ASSERT_EQ(run.Analyze("Flanks=2\nModels=?,?,R9\nUnexpected=0\nLabels=\n1,A\n1-3=a\n*\n2,B\n"
                        "1-3=b\n*\nData=\n1,1-3,5,4,2\n2,1-3,3,1,2\n3,1-3,5,5,1\n"),
            0)
      << run.Screen();
  const UnexpectedResponses& kept = run.analysis.unexpected;
  ASSERT_EQ(kept.rows.size(), 9u);
  EXPECT_TRUE(kept.filled);
  double sum = 0.0;
  for (const KeptResponse& row : kept.rows) sum += static_cast<double>(row.StRes) * row.StRes;
  EXPECT_NEAR(sum, run.analysis.estimates.fitTotals.SquaredStandardizedSum, 1E-5);
}

}  // namespace
}  // namespace flanks
