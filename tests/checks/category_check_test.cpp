// Table 8's numbers against the slow judge: averages, expected averages and outfit of each category
// within .005 (a category may have few observations), S.E. of thresholds within .002, and at each
// landmark the judge's own probabilities.
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "run/console.h"
#include "stats/category_pass.h"
#include "stats/scale_landmarks.h"
#include "support/judged_run.h"

namespace flanks {
namespace {

constexpr double kTolerance = .005;
constexpr double kErrorTolerance = .002;
constexpr int kPersons = 40;
constexpr int kItems = 5;

// Items 1 and 2 share a rating scale, then one of their own with weights, a binomial, a Poisson.
judge::Design Mixed() {
  judge::Design design;
  design.elementCounts = {kPersons, kItems};
  design.signs = {1, -1};
  judge::StructurePlan binomial, poisson;
  binomial.kind = judge::Kind::binomial;
  binomial.trials = 5;
  poisson.kind = judge::Kind::poisson;
  design.structures = {{}, {}, binomial, poisson};
  std::mt19937 random(7);
  std::normal_distribution<double> spread(0.0, 1.0);
  for (int person = 0; person < kPersons; ++person) {
    const double ability = spread(random);
    for (int item = 0; item < kItems; ++item) {
      const int structure = item < 2 ? 0 : item - 1;
      const double chance = 1.0 / (1.0 + std::exp(.3 * item - .6 - ability));
      std::binomial_distribution<int> draw(structure == 0 ? 3 : structure == 1 ? 2 : 5, chance);
      const double weight = person % 3 == 0 ? 2.5 : 1.0;
      design.observations.push_back({{person, item}, draw(random), weight, structure});
    }
  }
  return design;
}

const std::string kSpecification =
    "Flanks=2\nConvergence=.0001,.00001\nPt-biserial=No\nModels=\n?,1-2,R3\n?,3,R2\n?,4,B5\n?,5,"
    "P\n*\n";

class Categories : public testing::Test {
 protected:
  void SetUp() override {
    both_.design = Mixed();
    both_.Estimate(kSpecification + LabelLines(both_.design) + "Data=data.txt\n");
    Analysis& analysis = both_.run.analysis;
    Console console(both_.run.shell, both_.run.dialogs, both_.run.process.control,
                    analysis.settings, analysis.report);
    CategoryPass pass(PassPartsOf(analysis, console));
    pass.Run();
    sums_ = pass.sums();
  }
  const judge::Structure& structure(ScaleRow scale) const {
    return both_.verdict.structures[scale.offset()];
  }

  JudgedRun both_;
  CategorySums sums_;
};

// One category as the judge has it.
struct Judged {
  double used = 0.0, measures = 0.0, squares = 0.0, expected = 0.0, expectedMeasures = 0.0;
  double information = 0.0;  // of the threshold, without weights
};

std::vector<Judged> JudgeCategories(const judge::Design& design, const judge::Verdict& verdict,
                                    int structure) {
  const judge::Structure& scale = verdict.structures[static_cast<std::size_t>(structure)];
  std::vector<Judged> judged(static_cast<std::size_t>(scale.top()) + 1);
  for (const judge::Observation& o : design.observations) {
    if (o.structure != structure || judge::UseOf(design, verdict, o) != judge::Use::full) continue;
    const double B = judge::MeasureSum(design, verdict, o);
    const judge::Moments moments = judge::MomentsOf(scale, B);
    const std::vector<double> p = judge::Probabilities(scale, B);
    const int x = scale.ordered(o.category);
    Judged& own = judged[static_cast<std::size_t>(x)];
    own.used += o.weight;
    own.measures += o.weight * B;
    own.squares += o.weight * (x - moments.mean) * (x - moments.mean) / moments.variance;
    double above = 0.0;
    for (std::size_t k = judged.size(); k-- > 0;) {
      judged[k].expected += o.weight * p[k];
      judged[k].expectedMeasures += o.weight * p[k] * B;
      above += p[k];
      judged[k].information += above * (1.0 - above);
    }
  }
  return judged;
}

TEST_F(Categories, HaveTheAveragesThatTheJudgeFinds) {
  const ScaleTables& scales = both_.run.analysis.scales;
  ASSERT_EQ(scales.scales(), 4);
  for (const ScaleRow scale : Upward(scales.scaleType)) {
    const std::vector<Judged> judged =
        JudgeCategories(both_.design, both_.verdict, static_cast<int>(scale.offset()));
    ASSERT_EQ(scales.ScaleTopCategory[scale] + 1, static_cast<int>(judged.size()));
    for (int k = 0; k <= scales.ScaleTopCategory[scale]; ++k) {
      const Judged& own = judged[static_cast<std::size_t>(k)];
      EXPECT_NEAR(sums_.Used.at(scale, k), own.used, 1e-6);
      EXPECT_NEAR(sums_.Expected.at(scale, k), own.expected, .02) << k;
      if (!(own.used > 0.0)) continue;
      const CategoryFigures figures = FiguresOf(sums_, scale, k);
      EXPECT_NEAR(figures.average, own.measures / own.used, kTolerance) << k;
      EXPECT_NEAR(figures.expectedAverage, own.expectedMeasures / own.expected, kTolerance) << k;
      EXPECT_NEAR(figures.outfit, own.squares / own.used, kTolerance * 2) << k;
      if (k > 0 && structure(scale).kind == judge::Kind::rating) {
        EXPECT_NEAR(1.0 / std::sqrt(scales.DiscriminationSums.at(scale, k)),
                    1.0 / std::sqrt(own.information), kErrorTolerance);
      }
    }
  }
}

TEST_F(Categories, StandWhereTheJudgeHasTheirScores) {
  const ScaleTables& scales = both_.run.analysis.scales;
  for (const ScaleRow scale : Upward(scales.scaleType)) {
    const judge::Structure& judged = structure(scale);
    const std::vector<CategoryLandmarks> marks =
        FindLandmarks(KernelScaleOf(scales, scale, both_.run.analysis.estimates.ExponentLimit));
    for (int k = 1; k < judged.top(); ++k) {
      const CategoryLandmarks& own = marks[static_cast<std::size_t>(k)];
      const auto at = static_cast<std::size_t>(k);
      EXPECT_NEAR(judge::MomentsOf(judged, *own.expectation).mean, k, kTolerance);
      EXPECT_NEAR(judge::MomentsOf(judged, *own.half).mean, k - .5, kTolerance);
      EXPECT_NEAR(judge::Probabilities(judged, *own.expectation)[at], own.peak, kTolerance);
      double above = 0.0;
      const std::vector<double> half = judge::Probabilities(judged, *own.thurstone);
      for (std::size_t j = half.size(); j-- > at;) above += half[j];
      EXPECT_NEAR(above, .5, kTolerance);
      if (!own.mostProbable) continue;
      const std::vector<double> even = judge::Probabilities(judged, *own.mostProbable);
      for (const double p : even) EXPECT_LT(p, even[at] + kTolerance);
    }
  }
}

}  // namespace
}  // namespace flanks
