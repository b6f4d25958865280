// The program's estimates against the slow judge: the same model in 64 bits, solved in the plainest
// way.  With tight convergence measures and thresholds agree within 0.001 logit, standard errors,
// mean-squares, ZStd and correlations within 0.002.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/analysis_run.h"
#include "support/slow_judge/slow_judge.h"

namespace flanks {
namespace {

constexpr double kMeasureTolerance = 0.001;
constexpr double kStatisticTolerance = 0.002;
constexpr const char* kTight = "Convergence=.0005,.000005";

// A simulated rating design: every Flank of given size, each element of the first Flank meeting
// every combination of the others, or with `thin` about two in three of them.
struct DesignPlan {
  const char* name;
  std::vector<int> sizes;
  std::vector<int> signs;
  int topCategory;  // 1: a dichotomy
  double spread;    // S.D. of the measures of the first Flank, logits
  bool thin;
  unsigned seed;
  std::vector<int> unusedCategories;  // skipped when ratings are drawn
};

int DrawCategory(double measure, const DesignPlan& plan, std::mt19937& random) {
  std::vector<double> weights;
  double logit = 0.0;
  for (int k = 0; k <= plan.topCategory; ++k) {
    if (k > 0) logit += measure - (k - (plan.topCategory + 1) / 2.0) * 0.8;
    const bool unused = std::find(plan.unusedCategories.begin(), plan.unusedCategories.end(), k) !=
                        plan.unusedCategories.end();
    weights.push_back(unused ? 0.0 : std::exp(logit));
  }
  return std::discrete_distribution<int>(weights.begin(), weights.end())(random);
}

judge::Design Simulate(const DesignPlan& plan) {
  std::mt19937 random(plan.seed);
  std::normal_distribution<double> normal;
  std::vector<std::vector<double>> measures;
  for (std::size_t f = 0; f < plan.sizes.size(); ++f) {
    measures.emplace_back();
    for (int n = 0; n < plan.sizes[f]; ++n)
      measures.back().push_back(normal(random) * (f == 0 ? plan.spread : 0.6));
  }
  judge::Design design;
  design.elementCounts = plan.sizes;
  design.signs = plan.signs;
  std::vector<int> elements(plan.sizes.size(), 0);
  for (;;) {
    double sum = 0.0;
    for (std::size_t f = 0; f < elements.size(); ++f)
      sum += plan.signs[f] * measures[f][static_cast<std::size_t>(elements[f])];
    const int category = DrawCategory(sum, plan, random);
    if (!plan.thin || random() % 3 != 0) {
      judge::Observation observation;
      observation.elements = elements;
      observation.category = category;
      design.observations.push_back(observation);
    }
    std::size_t f = elements.size();
    while (f > 0 && ++elements[f - 1] == plan.sizes[f - 1]) elements[--f] = 0;
    if (f == 0) return design;
  }
}

std::string Specification(const DesignPlan& plan) {
  std::string text = "Flanks=" + std::to_string(plan.sizes.size()) + "\nPositive=";
  for (std::size_t f = 0; f < plan.signs.size(); ++f)
    if (plan.signs[f] > 0) text += std::to_string(f + 1) + ",";
  text.back() = '\n';
  text += std::string("Noncenter=1\n") + kTight + "\nModels=";
  for (std::size_t f = 0; f < plan.sizes.size(); ++f) text += "?,";
  text += plan.topCategory == 1 ? "D" : "R" + std::to_string(plan.topCategory);
  text += "\nLabels=\n";
  for (std::size_t f = 0; f < plan.sizes.size(); ++f)
    text += std::to_string(f + 1) + ",Flank" + std::to_string(f + 1) + "\n1-" +
            std::to_string(plan.sizes[f]) + "=e\n*\n";
  return text + "Data=data.txt\n";
}

std::string DataLines(const judge::Design& design) {
  std::string text;
  for (const judge::Observation& o : design.observations) {
    for (const int n : o.elements) text += std::to_string(n + 1) + ",";
    text += std::to_string(o.category) + "\n";
  }
  return text;
}

class EstimationCheck : public ::testing::TestWithParam<DesignPlan> {
 protected:
  void SetUp() override {
    design_ = Simulate(GetParam());
    verdict_ = judge::Judge(design_);
    ASSERT_TRUE(verdict_.converged) << verdict_.largestResidual;
    ASSERT_TRUE(verdict_.identified);
    run_.Write("data.txt", DataLines(design_));
    ASSERT_EQ(run_.Analyze(Specification(GetParam())), 0) << run_.Screen();
  }
  // Calls check(element of the judge, slot, whether it is measured).
  template <class Check>
  void ForEachElement(Check check) {
    const FlankTable& flanks = run_.analysis.design.flanks;
    for (std::size_t f = 0; f < verdict_.elements.size(); ++f)
      for (std::size_t n = 0; n < verdict_.elements[f].size(); ++n) {
        SCOPED_TRACE("Flank " + std::to_string(f + 1) + " element " + std::to_string(n + 1));
        check(verdict_.elements[f][n],
              flanks.FlankFirstSlot[FlankNo(static_cast<std::int32_t>(f) + 1)] +
                  static_cast<std::int32_t>(n));
      }
  }

  judge::Design design_;
  judge::Verdict verdict_;
  AnalysisRun run_;
};

TEST_P(EstimationCheck, MeasuresAndStatusAgree) {
  ForEachElement([this](const judge::Element& expected, ElementSlot slot) {
    const ElementState& state = run_.analysis.estimates.elements[slot];
    EXPECT_EQ(IsInPlay(state.ElementStatus), expected.standing == judge::Standing::measured);
    EXPECT_NEAR(state.ElementMeasure, expected.measure, kMeasureTolerance);
  });
}

TEST_P(EstimationCheck, ThresholdsAgree) {
  const ScaleTables& scales = run_.analysis.scales;
  const judge::Structure& structure = verdict_.structures.front();
  ASSERT_EQ(scales.ScaleTopCategory[ScaleRow(0)], structure.top());
  for (int k = 1; k <= structure.top(); ++k) {
    EXPECT_EQ(scales.rawCategory.at(ScaleRow(0), k),
              structure.rawCategories[static_cast<std::size_t>(k)]);
    EXPECT_NEAR(scales.ThresholdTable.at(ScaleRow(0), k),
                structure.thresholds[static_cast<std::size_t>(k)], kMeasureTolerance);
  }
}

TEST_P(EstimationCheck, StatisticsAgree) {
  ForEachElement([this](const judge::Element& expected, ElementSlot slot) {
    const FinishedStatistics fit(run_.analysis.estimates, slot);
    EXPECT_NEAR(fit->StandardError, expected.standardError, kStatisticTolerance);
    EXPECT_NEAR(fit->InfitMeanSquare, expected.infit, kStatisticTolerance);
    EXPECT_NEAR(fit->InfitZStd, expected.infitZStd, kStatisticTolerance);
    EXPECT_NEAR(fit->OutfitMeanSquare, expected.outfit, kStatisticTolerance);
    EXPECT_NEAR(fit->OutfitZStd, expected.outfitZStd, kStatisticTolerance);
    EXPECT_NEAR(fit->PointMeasure, expected.pointMeasure, kStatisticTolerance);
    EXPECT_NEAR(fit->PointResidual, expected.pointExpected, kStatisticTolerance);
    EXPECT_NEAR(fit->Discrimination, expected.discrimination, kStatisticTolerance);
    const float count = run_.analysis.estimates.scores[slot].Count;
    if (count > 0.0f) {
      EXPECT_NEAR(fit->FairSum / count, expected.fairAverage, kStatisticTolerance);
    }
  });
}

TEST_P(EstimationCheck, ScoresAgree) {
  ForEachElement([this](const judge::Element& expected, ElementSlot slot) {
    const ElementScores& scores = run_.analysis.estimates.scores[slot];
    EXPECT_DOUBLE_EQ(scores.ObservedScore, expected.score);
    EXPECT_DOUBLE_EQ(scores.MaxScore, expected.largestScore);
    EXPECT_FLOAT_EQ(scores.Count, static_cast<float>(expected.count));
    EXPECT_FLOAT_EQ(scores.RawScore, static_cast<float>(expected.rawScore));
  });
}

// At convergence: residuals within the limit, free measures of centered Flanks and thresholds
// summing to zero.
TEST_P(EstimationCheck, IdentitiesHold) {
  const Analysis& analysis = run_.analysis;
  for (FlankNo flank : Upward(analysis.design.flanks.FlankElementCount)) {
    if (analysis.design.flanks.FlankCenter[flank] == kNonCentered) continue;
    double sum = 0.0;
    const SlotRange range = SlotsOf(analysis.design.flanks, flank);
    for (ElementSlot e : Upward(range.low, range.high))
      if (IsInPlay(analysis.estimates.elements[e].ElementStatus))
        sum += analysis.estimates.elements[e].ElementMeasure;
    EXPECT_NEAR(sum, 0.0, 1e-4);
  }
  double sum = 0.0;
  for (int k = 1; k <= analysis.scales.ScaleTopCategory[ScaleRow(0)]; ++k)
    sum += analysis.scales.ThresholdTable.at(ScaleRow(0), k);
  if (analysis.scales.ScaleTopCategory[ScaleRow(0)] >= 2) {
    EXPECT_NEAR(sum, 0.0, 1e-4);
  }
  EXPECT_LE(std::abs(analysis.estimates.iteration.changes.MaxScoreResidual), .0005);
}

INSTANTIATE_TEST_SUITE_P(
    Checks, EstimationCheck,
    ::testing::Values(
        DesignPlan{"ThreeFlanksFiveCategories", {30, 6, 4}, {1, -1, -1}, 4, 1.0, false, 1, {}},
        DesignPlan{"ThinPlan", {40, 8, 3}, {1, -1, -1}, 5, 1.0, true, 2, {}},
        DesignPlan{"AllPositive", {30, 6, 4}, {1, 1, 1}, 3, 0.8, true, 3, {}},
        DesignPlan{"Dichotomies", {60, 20}, {1, -1}, 1, 1.0, false, 4, {}},
        DesignPlan{"DichotomiesWithExtremes", {60, 8}, {1, -1}, 1, 2.2, false, 5, {}},
        DesignPlan{"UnusedCategories", {40, 5, 3}, {1, -1, -1}, 8, 0.8, true, 6, {0, 3, 7}},
        DesignPlan{"WideSpread", {40, 5, 3}, {1, -1, -1}, 4, 2.5, false, 7, {}},
        DesignPlan{
            "TwoCategoriesOfARatingScale", {40, 12}, {1, -1}, 5, 0.8, false, 8, {0, 1, 4, 5}}),
    [](const auto& plan) { return std::string(plan.param.name); });

}  // namespace
}  // namespace flanks
