// What Table 8 knows of scales and categories, from whole runs over a few lines of data.
#include "report/table8_scale.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "run/console.h"
#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr const char* kLabels = "Labels=\n1,Persons\n1-6=p\n*\n2,Items\n1=one\n2=two\n3=three\n*\n";
constexpr const char* kData =
    "Data=\n1,1-3,0,1,1\n2,1-3,1,2,0\n3,1-3,2,1,1\n4,1-3,1,0,2\n5,1-3,2,2,1\n6,1-3,0,1,2\n";

// A finished run, its blocks and the sums of its categories.
class Finished {
 public:
  explicit Finished(const std::string& models, const std::string& data = kData) {
    EXPECT_EQ(run.Analyze("Flanks=2\n" + models + kLabels + data), 0) << run.Screen();
    Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                    run.analysis.report);
    CategoryPass pass(PassPartsOf(run.analysis, console));
    pass.Run();
    sums = pass.sums();
    blocks = Table8Blocks(run.analysis);
  }
  std::string Numbers() const {
    std::string all;
    for (const Table8Block& block : blocks) all += block.number + " ";
    return all;
  }
  ScaleReport Report(std::size_t block) const {
    return ReportOnScale(run.analysis, blocks[block].scale, sums);
  }
  std::string Name(std::size_t block) const {
    return ScaleIdentification(run.analysis, blocks[block].scale);
  }
  std::vector<std::string> Models(std::size_t block) const {
    return ModelLines(run.analysis, blocks[block]);
  }

  AnalysisRun run;
  CategorySums sums;
  std::vector<Table8Block> blocks;
};

using Lines = std::vector<std::string>;

TEST(Table8Blocks, AScaleForEachStatementHasANumberOfItsOwn) {
  const Finished run("Models=\n?,1,R2\n?,2-3,R3K\n*\n");
  EXPECT_EQ(run.Numbers(), "1 2 ");
  EXPECT_EQ(run.Models(0), Lines{" Model = ?,1,R2"});
  EXPECT_EQ(run.Models(1), Lines{" Model = ?,2-3,R3K"});
  EXPECT_EQ(run.Name(0), "R2");
}

TEST(Table8Blocks, ScalesOfOneStatementAreCountedBehindItsNumber) {
  const Finished run("Models=\n?,1,R2\n?,2-3#,R2\n*\n");
  EXPECT_EQ(run.Numbers(), "1 2.1 2.2 ");
  EXPECT_EQ(run.Models(1), Lines{" Model = ?,2,R2  ; Items: two"});
  EXPECT_EQ(run.Models(2), Lines{" Model = ?,3,R2  ; Items: three"});
}

TEST(Table8Blocks, AReversedPositionOfAnElementKeepsItsSign) {
  const Finished run("Models=\n?,-1#,R2\n?,2-3#,R2\n*\n");
  EXPECT_EQ(run.Models(0), Lines{" Model = ?,-1,R2  ; Items: one"});
  EXPECT_EQ(run.Models(1), Lines{" Model = ?,2,R2  ; Items: two"});
}

TEST(Table8Blocks, StatementsOfAGeneralScaleShareABlock) {
  const std::string definition = "Rating scale=Quality,R2\n0=low\n*\n";
  const Finished shared("Models=\n?,1,Quality\n?,2-3,Quality\n*\n" + definition);
  EXPECT_EQ(shared.Numbers(), "1 ");
  EXPECT_EQ(shared.Models(0), (Lines{" Model = ?,1,R2", " Model = ?,2-3,R2"}));
  EXPECT_EQ(shared.Name(0), "Quality,R2,G,O");
  const Finished apart(
      "Models=\n?,1,Quality\n?,2-3,Quality\n*\nRating scale=Quality,R2,S,K\n0=a\n*\n");
  EXPECT_EQ(apart.Numbers(), "1.1 1.2 ");
  EXPECT_EQ(apart.Name(1), "Quality,R2,S,K");
}

TEST(Table8Blocks, OfManyModelsTheFirstTwentyAreNamed) {
  std::string models = "Models=\n";
  for (int i = 0; i < 22; ++i)
    models += std::to_string(i % 6 + 1) + "," + std::to_string(i / 6 + 1) + ",Q\n";
  std::string data = "Data=\n";
  for (int p = 1; p <= 6; ++p)
    data +=
        std::to_string(p) + ",1-3," + std::to_string(p % 3) + ",1," + std::to_string(p % 2) + "\n";
  const Finished few(models + "*\nRating scale=Q,R2\n0=a\n*\n", data);
  EXPECT_EQ(few.Models(0).size(), 18u);  // those that met data
  Table8Block many = few.blocks[0];
  for (int i = 0; i < 5; ++i) many.structures.push_back(many.structures[0]);
  const Lines lines = ModelLines(few.run.analysis, many);
  ASSERT_EQ(lines.size(), 21u);
  EXPECT_EQ(lines.back(), " and 3 more models");
}

// Six ratings each of 0 to 2, and 0 only by a person with the lowest score.
TEST(Table8Categories, CountPercentsAndCompareAverages) {
  const Finished run("Models=?,?,R2\n");
  const ScaleReport report = run.Report(0);
  EXPECT_EQ(report.structure, Table8Structure::rating);
  EXPECT_FALSE(report.codes);
  EXPECT_FALSE(report.diagnostic);
  ASSERT_EQ(report.rows.size(), 3u);
  // 0: 4 of 18; 1: 8; 2: 6.
  const double counts[] = {4, 8, 6};
  double sum = 0.0;
  for (std::size_t k = 0; k < 3; ++k) {
    const CategoryRow& row = report.rows[k];
    sum += counts[k];
    EXPECT_EQ(row.score, static_cast<int>(k));
    EXPECT_EQ(row.total, counts[k]);
    EXPECT_EQ(row.used, counts[k]);
    EXPECT_NEAR(row.percent, 100 * counts[k] / 18, 1e-9);
    EXPECT_NEAR(row.cumulative, 100 * sum / 18, 1e-9);
    EXPECT_EQ(row.disordered, k > 0 && row.figures.average <= report.rows[k - 1].figures.average);
  }
  EXPECT_EQ(report.rows[0].structure, CellKind::first);
  EXPECT_EQ(report.rows[1].structure, CellKind::other);
  EXPECT_EQ(report.rows[2].structure, CellKind::top);
  EXPECT_FALSE(report.rows[0].threshold);
  EXPECT_EQ(*report.rows[1].threshold, run.run.analysis.scales.ThresholdTable.at(ScaleRow(0), 1));
  EXPECT_GT(*report.rows[1].standardError, 0.0);
}

TEST(Table8Categories, AreScoredInOrderAndKeepTheirCodes) {
  const Finished run("Models=?,?,R9\n",
                     "Data=\n1,1-3,1,5,5\n2,1-3,5,9,1\n3,1-3,9,5,5\n4,1-3,5,1,9\n5,1-3,5,9,1\n"
                     "6,1-3,9,9,9\n");
  const ScaleReport report = run.Report(0);
  EXPECT_TRUE(report.codes);
  ASSERT_EQ(report.rows.size(), 3u);
  const int scores[] = {1, 2, 3}, codes[] = {1, 5, 9};
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_EQ(report.rows[k].score, scores[k]);
    EXPECT_EQ(report.rows[k].code, codes[k]);
  }
  EXPECT_EQ(report.rows[2].total, 7.0);  // three of them by person 6, who has the highest score
  EXPECT_EQ(report.rows[2].used, 4.0);
}

TEST(Table8Categories, OfExtremeElementsAloneHaveALineAndNoPlace) {
  const Finished run("Models=?,?,R3\n",
                     "Data=\n1,1-3,1,2,1\n2,1-3,2,1,1\n3,1-3,1,1,2\n4,1-3,3,3,3\n");
  const ScaleReport report = run.Report(0);
  ASSERT_EQ(report.rows.size(), 3u);
  EXPECT_EQ(report.structure, Table8Structure::dichotomy);
  EXPECT_EQ(report.rows[2].code, 3);
  EXPECT_EQ(report.rows[2].counts, CellKind::unplaced);
  EXPECT_EQ(report.rows[2].structure, CellKind::blank);
  EXPECT_EQ(report.rows[2].total, 3.0);
}

TEST(Table8Categories, KeptWithoutResponsesAreInfinite) {
  const std::string data =
      "Data=\n1,1-3,0,1,1\n2,1-3,1,3,0\n3,1-3,3,1,1\n4,1-3,1,0,3\n5,1-3,3,3,1\n6,1-3,0,1,3\n";
  const ScaleReport report = Finished("Models=?,?,R3K\n", data).Report(0);
  ASSERT_EQ(report.rows.size(), 4u);
  EXPECT_TRUE(report.rows[2].infinite);
  EXPECT_FALSE(report.rows[2].threshold);
  EXPECT_EQ(report.rows[2].counts, CellKind::blank);
  EXPECT_EQ(report.rows[2].structure, CellKind::other);
  EXPECT_FALSE(report.rows[3].infinite);
  // Beside an anchored threshold nothing is said of it.
  const ScaleReport anchored =
      Finished("Models=?,?,Q\nRating scale=Q,R3K\n3=top,.5,A\n*\n", data).Report(0);
  EXPECT_FALSE(anchored.rows[2].infinite);
  EXPECT_TRUE(anchored.rows[3].anchored);
}

// The displacement is a threshold's expected responses in its category and above, less those
// observed, over their variance (which the fit has summed as well; no weights here).
TEST(Table8Categories, OfAnchoredThresholdsAreDiagnosed) {
  const Finished run("Models=?,?,Q\nRating scale=Q,R2\n0=none\n1=some,-1,A\n2=all,1,A\n*\n");
  const ScaleReport report = run.Report(0);
  EXPECT_TRUE(report.diagnostic);
  const CategoryRow& low = report.rows[0];
  const CategoryRow& middle = report.rows[1];
  EXPECT_TRUE(middle.anchored);
  EXPECT_FALSE(middle.standardError);
  EXPECT_EQ(*middle.threshold, -1.0f);
  EXPECT_EQ(middle.name, "some");
  const Grid<ScaleRow, double>& information = run.run.analysis.scales.DiscriminationSums;
  EXPECT_NEAR(*middle.displacement,
              -(middle.residual + report.rows[2].residual) / information.at(ScaleRow(0), 1), 1e-9);
  EXPECT_NEAR(*report.rows[2].displacement,
              -report.rows[2].residual / information.at(ScaleRow(0), 2), 1e-9);
  EXPECT_FALSE(low.displacement);
  EXPECT_NEAR(low.residual + middle.residual + report.rows[2].residual, 0.0, 1e-5);
}

TEST(Table8Categories, OfADichotomyMayBeAnchored) {
  const std::string data = "Data=\n1,1-3,0,1,1\n2,1-3,1,0,0\n3,1-3,0,1,0\n4,1-3,1,0,1\n";
  const std::string models = "Models=?,?,Passed\nRating scale=Passed,D\n1=yes,.5";
  const ScaleReport anchored = Finished(models + ",A\n*\n", data).Report(0);
  EXPECT_EQ(anchored.structure, Table8Structure::dichotomy);
  EXPECT_TRUE(anchored.rows[1].anchored);
  EXPECT_TRUE(anchored.diagnostic);
  const ScaleReport plain = Finished(models + "\n*\n", data).Report(0);
  EXPECT_FALSE(plain.rows[1].anchored);
  EXPECT_EQ(*plain.rows[1].threshold, .5f);
}

TEST(Table8Discrimination, IsToldOfCountsWithItsError) {
  const std::string anchored = "Rating scale=T,B3\n0=none,1.5,A\n*\n";
  EXPECT_EQ(
      DiscriminationLine(Finished("Models=?,?,T\n" + anchored).run.analysis.scales, ScaleRow(0)),
      "Binomial trials Anchored discrimination:  1.50");
  const std::string counts = "Rating scale=C,P\n0=none,1,A\n*\n";
  EXPECT_EQ(
      DiscriminationLine(Finished("Models=?,?,C\n" + counts).run.analysis.scales, ScaleRow(0)),
      "Poisson Anchored discrimination:  1.00");
  Finished free("Models=?,?,B3\n");
  ScaleTables& scales = free.run.analysis.scales;
  scales.ThresholdTable.at(ScaleRow(0), 0) = .876f;
  scales.DiscriminationSums.at(ScaleRow(0), 1) = 16.0;  // 1 / 4
  EXPECT_EQ(DiscriminationLine(scales, ScaleRow(0)),
            "Binomial trials S.E. .25 discrimination:   .88");
  EXPECT_EQ(free.Report(0).structure, Table8Structure::none);
  EXPECT_EQ(DiscriminationLine(Finished("Models=?,?,R2\n").run.analysis.scales, ScaleRow(0)), "");
}

TEST(Table8Discrimination, OfTwoCategoriesIsNotTold) {
  const Finished run("Models=?,?,P\n",
                     "Data=\n1,1-3,0,1,1\n2,1-3,1,0,0\n3,1-3,0,1,0\n4,1-3,1,0,1\n");
  EXPECT_EQ(run.Report(0).structure, Table8Structure::none);
  EXPECT_EQ(DiscriminationLine(run.run.analysis.scales, ScaleRow(0)), "");
}

}  // namespace
}  // namespace flanks
