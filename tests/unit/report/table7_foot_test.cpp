#include "report/table7_foot.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/format/box.h"
#include "run/report_page.h"
#include "support/recording_shell.h"

namespace flanks {
namespace {

// Five measured elements and, on request, an extreme one; measures and errors of a worked example.
struct Foot {
  Analysis analysis;
  RunControl control;
  RecordingShell shell{control};
  RecordingDialogs dialogs;
  Console console{shell, dialogs, control, analysis.settings, analysis.report};

  explicit Foot(bool withExtreme) {
    const float measures[] = {-1.0f, -.4f, .1f, .5f, 1.3f};
    const float errors[] = {.30f, .28f, .27f, .28f, .33f};
    const int count = withExtreme ? 6 : 5;
    FlankTable& flanks = analysis.design.flanks;
    flanks.FlankName.assign(1, "Raters");
    flanks.FlankElementCount.assign(1, count);
    flanks.FlankFirstSlot.assign(1, ElementSlot(1));
    flanks.FlankHigh.assign(1, count);
    flanks.FlankOrientation.assign(1, kPositiveOrientation);
    for (int n = 0; n < 5; ++n) Add(kStatusFree, measures[n], errors[n]);
    if (withExtreme) Add(kStatusMaximum, 3.0f, 1.0f);
    analysis.estimates.stage = StatisticsStage::finished;
    analysis.estimates.TinyValue = static_cast<float>(std::exp(-80.0));
  }
  void Add(std::int16_t status, float measure, float error) {
    analysis.design.elements.ElementNumber.push(analysis.design.elements.ElementNumber.rows() + 1);
    analysis.design.elements.ElementLabel.push("e");
    analysis.design.elements.ElementAnchor.push(AnchorKind::none);
    analysis.design.elements.ElementGroup.push(0);
    analysis.design.elements.ElementWeight.push(1.0f);
    analysis.design.elements.ElementFlank.push(FlankNo(1));
    ElementState state;
    state.ElementMeasure = measure;
    state.ElementStatus = status;
    analysis.estimates.elements.push(state);
    ElementScores scores;
    scores.MaxScore = 40.0;
    scores.Count = scores.FirstCount = 10.0f;
    scores.RawScore = scores.FirstRawScore = 20.0f;
    analysis.estimates.scores.push(scores);
    ElementFinal fit;
    fit.StandardError = error;
    analysis.estimates.finals.push(fit);
  }
  std::vector<std::string> Lines() {
    const Table7Layout layout = LayOutTable7(analysis, FlankNo(1));
    analysis.report.rulePattern = layout.rulePattern;
    Table7Sets sets;
    for (ElementSlot e : Upward(analysis.estimates.elements)) AddToSets(analysis, e, sets);
    WriteTable7Foot(console, analysis, layout, sets);
    WriteAgreement(console, analysis, FlankNo(1));
    std::vector<std::string> lines;
    for (const std::string& line : shell.output) lines.push_back(BoxToAscii(line));
    return lines;
  }
};

TEST(Table7Foot, MeansDeviationsSeparationAndTests) {
  const std::vector<std::string> lines = Foot(false).Lines();
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(lines[0].front(), '|') << "mid rule";
  EXPECT_EQ(lines[1],
            "|"
            "    20  "
            " "
            "   10  "
            " "
            "   2.00"
            " "
            "   .00"
            " "
            "|"
            " "
            "   .10"
            " "
            "  .29"
            " "
            "| 1.00   .0  1.00   .0 |      |"
            "   .00   .00 | Mean (Count: 5)     |");
  // The measures' S.D. is .782304 as a population, .874643 as a sample.
  EXPECT_NE(lines[2].find("| "
                          "   .78"
                          " "
                          "  .02"
                          " |"),
            std::string::npos)
      << lines[2];
  EXPECT_NE(lines[2].find("S.D. (Population)"), std::string::npos);
  EXPECT_NE(lines[3].find("| "
                          "   .87"
                          " "
                          "  .02"
                          " |"),
            std::string::npos)
      << lines[3];
  EXPECT_NE(lines[3].find("S.D. (Sample)"), std::string::npos);
  EXPECT_EQ(lines[4].front(), '+') << "bottom rule";
  EXPECT_EQ(lines[5],
            "Model, Populn: RMSE .29  Adj (True) S.D. .73  Separation 2.48  Strata 3.64  "
            "Reliability .86");
  EXPECT_EQ(lines[6],
            "Model, Sample: RMSE .29  Adj (True) S.D. .82  Separation 2.82  Strata 4.09  "
            "Reliability .89");
  EXPECT_EQ(lines[7],
            "Model, Fixed (all same) chi-squared: 31.8  d.f.:4.0  significance (probability): .00");
  EXPECT_EQ(lines[8],
            "Model,  Random (normal) chi-squared: 3.6  d.f.:3.0  significance (probability): .31");
}

TEST(Table7Foot, WithExtremesEverythingStandsTwice) {
  const std::vector<std::string> lines = Foot(true).Lines();
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_NE(lines[1].find("Mean (Count: 5)"), std::string::npos);
  EXPECT_NE(lines[4].find("Mean (Count: 6)"), std::string::npos);
  EXPECT_EQ(lines[8].rfind("   With extremes, Model, Populn: RMSE ", 0), 0u) << lines[8];
  EXPECT_EQ(lines[10].rfind("Without extremes, Model, Populn: RMSE .29  ", 0), 0u) << lines[10];
  EXPECT_EQ(lines[12].rfind("With extremes, Model, Fixed (all same) chi-squared: ", 0), 0u);
  EXPECT_EQ(lines[13].rfind("With extremes, Model,  Random (normal) chi-squared: ", 0), 0u);
}

TEST(Table7Foot, TheErrorWordIsRealForRealStandardErrors) {
  Foot foot(false);
  foot.analysis.settings.RealStandardErrors = true;
  EXPECT_EQ(foot.Lines()[5].rfind("Real, Populn: RMSE ", 0), 0u);
}

// Three of the five raters have a pair: 50, 60 and 70 per cent observed, 40, 45 and 50 expected.
TEST(Table7Foot, TheRatersAgreementHasMeansAndALineOfItsOwn) {
  Foot foot(false);
  foot.analysis.settings.InterRaterSetting = {1};
  RaterAgreement& agreement = foot.analysis.estimates.agreement;
  agreement.raterFlank = FlankNo(1);
  agreement.RaterLow = ElementSlot(1);
  agreement.RaterOpportunities.assign(5, 0.0f);
  agreement.RaterExact.assign(5, 0.0f);
  agreement.RaterExpected.assign(5, 0.0f);
  for (const int n : {1, 2, 4}) {
    const ElementSlot row(n);
    agreement.RaterOpportunities[row] = 8.0f;
    agreement.RaterExact[row] = n == 1 ? 50.0f : n == 2 ? 60.0f : 70.0f;
    agreement.RaterExpected[row] = n == 1 ? 40.0f : n == 2 ? 45.0f : 50.0f;
  }
  agreement.AgreementOpportunities = 12.0;
  agreement.AgreementExact = 7.5;
  agreement.AgreementExpected = 5.375;
  const std::vector<std::string> lines = foot.Lines();
  ASSERT_EQ(lines.size(), 10u);
  EXPECT_NE(lines[1].find("|  60.0   45.0 | Mean (Count: 5)"), std::string::npos) << lines[1];
  // S.D.s of 50, 60, 70: 8.2 and 10.0; of 40, 45, 50: 4.1 and 5.0.
  EXPECT_NE(lines[2].find("|   8.2    4.1 | S.D. (Population)"), std::string::npos) << lines[2];
  EXPECT_NE(lines[3].find("|  10.0    5.0 | S.D. (Sample)"), std::string::npos) << lines[3];
  EXPECT_EQ(lines[5],
            "Model, Populn: RMSE .29  Adj (True) S.D. .73  Separation 2.48  Strata 3.64  "
            "Reliability (not inter-rater) .86");
  // 100 x 7.5 / 12 = 62.5 and 100 x 5.375 / 12 = 44.8.
  EXPECT_EQ(lines[9],
            "Inter-Rater agreement opportunities: 12  Exact agreements: 7.5 = 62.5%  Expected: 5.4 "
            "= 44.8%");
}

TEST(Table7Foot, AgreementWithoutAnyPairIsNone) {
  Foot foot(false);
  foot.analysis.estimates.agreement.raterFlank = FlankNo(1);
  foot.analysis.estimates.agreement.RaterLow = ElementSlot(1);
  for (Column<ElementSlot, float>* column : {&foot.analysis.estimates.agreement.RaterOpportunities,
                                             &foot.analysis.estimates.agreement.RaterExact,
                                             &foot.analysis.estimates.agreement.RaterExpected})
    column->assign(5, 0.0f);
  const std::vector<std::string> lines = foot.Lines();
  EXPECT_NE(lines[1].find("|              | Mean (Count: 5)"), std::string::npos) << lines[1];
  EXPECT_EQ(lines.back(),
            "Inter-Rater agreement opportunities: 0  Exact agreements: 0 = .0%  Expected: .0 = "
            ".0%");
}

TEST(Table7Foot, OneElementHasMeansAndNoTests) {
  Foot foot(false);
  for (std::int32_t n = 2; n <= 5; ++n)
    foot.analysis.estimates.elements[ElementSlot(n)].ElementStatus = kStatusUnused;
  const std::vector<std::string> lines = foot.Lines();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_NE(lines[1].find("Mean (Count: 1)"), std::string::npos);
  EXPECT_NE(lines[2].find("S.D. (Population)"), std::string::npos);
}

}  // namespace
}  // namespace flanks
