// What the category pass sums.  The first design is worked by hand; in the others the counts must
// be those of the pass after convergence, to the last bit.
#include "stats/category_pass.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "run/console.h"
#include "support/analysis_run.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

// Probabilities are of 32 bits, of exponents that reach 80.
constexpr double kNear = 5e-6;

// Two persons at ln 2 and 0, one item at 0, three categories with thresholds 0: the probabilities
// are 1/7, 2/7, 4/7 (expected score 10/7, variance 26/49) and 1/3 each (1 and 2/3).
class ByHand : public testing::Test {
 protected:
  void SetUp() override {
    design_.Flank(3, kPositiveOrientation).Flank(1, kNegativeOrientation);
    structure_ = design_.Structure(design_.Statement({"", ""}), design_.Rating({0.0f, 0.0f}));
    design_.Build();
    design_.SetMeasures({std::log(2.0f), 0.0f, 5.0f, 0.0f});
  }
  const CategorySums& Sums() {
    pass_ = std::make_unique<CategoryPass>(design_.parts());
    pass_->Run();
    return pass_->sums();
  }

  PassDesign design_;
  int structure_ = 0;
  std::unique_ptr<CategoryPass> pass_;
};

TEST_F(ByHand, MeasuresGoToTheCategoryObservedAndByProbabilityToAll) {
  design_.Observe({1, 4}, structure_, 0, 2.0f);
  design_.Observe({1, 4}, structure_, 2);
  design_.Observe({2, 4}, structure_, 1);
  design_.Observe({2, 4}, structure_, 0);
  const CategorySums& sums = Sums();
  const ScaleRow scale(0);
  const double ln2 = std::log(2.0);
  const double used[] = {3.0, 1.0, 1.0}, total[] = {2.0 * ln2, 0.0, ln2};
  const double expected[] = {3.0 / 7 + 2.0 / 3, 6.0 / 7 + 2.0 / 3, 12.0 / 7 + 2.0 / 3};
  const double measures[] = {3.0 / 7 * ln2, 6.0 / 7 * ln2, 12.0 / 7 * ln2};
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(sums.Used.at(scale, k), used[k]) << k;
    EXPECT_EQ(sums.Total.at(scale, k), used[k]) << k;
    EXPECT_NEAR(sums.MeasureTotal.at(scale, k), total[k], kNear) << k;
    EXPECT_NEAR(sums.Expected.at(scale, k), expected[k], kNear) << k;
    EXPECT_NEAR(sums.ExpectedMeasures.at(scale, k), measures[k], kNear) << k;
    EXPECT_NEAR(FiguresOf(sums, scale, k).average, total[k] / used[k], kNear) << k;
    EXPECT_NEAR(FiguresOf(sums, scale, k).expectedAverage, measures[k] / expected[k], kNear) << k;
  }
  // Squared residuals over variances: (10/7)^2 / (26/49) = 100/26 twice and 1 / (2/3) in category
  // 0, (4/7)^2 / (26/49) = 16/26 in category 2.
  EXPECT_NEAR(FiguresOf(sums, scale, 0).outfit, (2 * 100.0 / 26 + 1.5) / 3, 1e-5);
  EXPECT_NEAR(FiguresOf(sums, scale, 1).outfit, 0.0, 1e-8);
  EXPECT_NEAR(FiguresOf(sums, scale, 2).outfit, 16.0 / 26, 1e-5);
}

// Category 1 and above has 6/7 at ln 2 and 2/3 at 0, category 2 has 4/7 and 1/3.  Of three weighted
// observations there, of which two are in category 0, and one in category 1: threshold 1 has
// 18/7 + 2/3 expected and 1 + 1 observed, variance 3 times 6/49, and 2/9; threshold 2 12/7 + 1/3
// and 0, 3 times 12/49, and 2/9.
TEST_F(ByHand, TheDisplacementOfAThresholdIsItsResidualOverItsVariance) {
  design_.Observe({1, 4}, structure_, 0, 2.0f);
  design_.Observe({1, 4}, structure_, 1);
  design_.Observe({2, 4}, structure_, 1);
  const CategorySums& sums = Sums();
  const ScaleRow scale(0);
  EXPECT_NEAR(*DisplacementOf(sums, scale, 1, 2),
              (18.0 / 7 + 2.0 / 3 - 2.0) / (18.0 / 49 + 2.0 / 9), 1e-5);
  EXPECT_NEAR(*DisplacementOf(sums, scale, 2, 2), (12.0 / 7 + 1.0 / 3) / (36.0 / 49 + 2.0 / 9),
              1e-5);
}

// The same data twice as often would put a threshold in the same place.
TEST_F(ByHand, WeightsDoNotDisplaceAThreshold) {
  const auto displacement = [](float weight) {
    PassDesign design;
    design.Flank(3, kPositiveOrientation).Flank(1, kNegativeOrientation);
    const int structure = design.Structure(design.Statement({"", ""}), design.Rating({0.0f, 0.0f}));
    design.Build();
    design.SetMeasures({std::log(2.0f), 0.0f, 5.0f, 0.0f});
    design.Observe({1, 4}, structure, 0, weight);
    design.Observe({2, 4}, structure, 1, weight);
    CategoryPass pass(design.parts());
    pass.Run();
    return *DisplacementOf(pass.sums(), ScaleRow(0), 1, 2);
  };
  EXPECT_NEAR(displacement(1.0f), (6.0 / 7 + 2.0 / 3 - 1.0) / (6.0 / 49 + 2.0 / 9), 1e-5);
  EXPECT_NEAR(displacement(2.0f), displacement(1.0f), 1e-9);
}

TEST_F(ByHand, AThresholdFarFromAllDataIsDisplacedByTenLogitsAtMost) {
  CategorySums sums;
  for (Grid<ScaleRow, double>* grid : {&sums.Used, &sums.Expected, &sums.Information})
    grid->assign(1, 2, 0.0);
  const ScaleRow scale(0);
  EXPECT_FALSE(DisplacementOf(sums, scale, 1, 1));
  sums.Used.at(scale, 1) = 3.0;
  sums.Information.at(scale, 1) = 1e-12;
  EXPECT_EQ(*DisplacementOf(sums, scale, 1, 1), -10.0);
}

TEST_F(ByHand, ResponsesOfExtremeElementsAreInTheTotalAlone) {
  design_.element(3).ElementStatus = kStatusMaximum;
  design_.Observe({3, 4}, structure_, 2);
  design_.Observe({2, 4}, structure_, 1);
  const CategorySums& sums = Sums();
  EXPECT_EQ(sums.Total.at(ScaleRow(0), 2), 1.0);
  EXPECT_EQ(sums.Used.at(ScaleRow(0), 2), 0.0);
  EXPECT_EQ(sums.Used.at(ScaleRow(0), 1), 1.0);
  const CategoryFigures nothing = FiguresOf(sums, ScaleRow(0), 2);
  EXPECT_EQ(nothing.average, 0.0);
  EXPECT_EQ(nothing.outfit, 0.0);
}

TEST_F(ByHand, AResponseWithoutAPlaceCountsInTheTotalByItsNumber) {
  design_.scales.orderedCategory.at(ScaleRow(0), 1) = kNoOrderedCategory;
  design_.Observe({1, 4}, structure_, 1);
  const CategorySums& sums = Sums();
  EXPECT_EQ(sums.Total.at(ScaleRow(0), 1), 1.0);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(sums.Used.at(ScaleRow(0), k), 0.0);
}

// Scales of all kinds, mixed in the data; the Poisson scale beside others is taken one by one.
constexpr const char* kMixed =
    "Flanks=2\nModels=\n?,1-2,R3\n?,3,D\n?,4,B5\n?,5,P\n*\nLabels=\n1,Persons\n1-6=p\n*\n2,Items\n"
    "1-5=i\n*\nData=\n1,1-5,0,1,1,3,4\n2,1-5,1,2,0,2,2\n3,1-5,2,3,1,4,6\n4,1-5,3,1,0,1,3\n"
    "5,1-5,1,0,1,2,1\nR2,6,1-5,2,2,0,3,3\n";
constexpr const char* kPartialCredit =
    "Flanks=2\nModels=?,#,R3\nLabels=\n1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\nData=\n"
    "1,1-4,0,1,1,3\n2,1-4,1,2,0,2\n3,1-4,2,3,1,1\n4,1-4,3,1,2,1\n5,1-4,1,0,1,2\nR1.5,6,1-4,2,2,0,"
    "3\n";

TEST(CategoryPassCounts, AreThoseOfThePassAfterConvergence) {
  for (const char* specification : {kMixed, kPartialCredit}) {
    AnalysisRun run;
    ASSERT_EQ(run.Analyze(specification, "Pt-biserial=No"), 0) << run.Screen();
    const ScaleTables& scales = run.analysis.scales;
    Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                    run.analysis.report);
    CategoryPass pass(PassPartsOf(run.analysis, console));
    pass.Run();
    double squares = 0.0;
    for (const ScaleRow scale : Upward(scales.scaleType)) {
      for (int k = 0; k <= scales.ScaleTopCategory[scale]; ++k) {
        EXPECT_EQ(pass.sums().Used.at(scale, k), scales.ObservedCount.at(scale, k));
        EXPECT_EQ(pass.sums().Total.at(scale, scales.rawCategory.at(scale, k)),
                  scales.ObservedCount.at(scale, k));
        squares += pass.sums().OutfitTotal.at(scale, k);
        if (k > 0 || scales.ScaleTopCategory[scale] == 1) {
          EXPECT_DOUBLE_EQ(pass.sums().Expected.at(scale, k), scales.ExpectedCount.at(scale, k));
        }
      }
    }
    EXPECT_NEAR(squares, run.analysis.estimates.fitTotals.SquaredStandardizedSum, 1e-9 * squares);
  }
}

}  // namespace
}  // namespace flanks
