#include "report/table7_optional.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/format/box.h"
#include "report/table7_columns.h"
#include "report/table7_rows.h"

namespace flanks {
namespace {

using Cells = std::vector<std::string>;

// One Flank of three elements in play; the first is anchored.
struct ThreeElements {
  Analysis analysis;

  ThreeElements() {
    FlankTable& flanks = analysis.design.flanks;
    flanks.FlankName.assign(1, "Raters");
    flanks.FlankElementCount.assign(1, 3);
    flanks.FlankFirstSlot.assign(1, ElementSlot(1));
    flanks.FlankHigh.assign(1, 3);
    flanks.FlankOrientation.assign(1, kPositiveOrientation);
    ElementTable& elements = analysis.design.elements;
    elements.ElementLabel.assign(3, "e");
    elements.ElementFlank.assign(3, FlankNo(1));
    elements.ElementAnchor.assign(3, AnchorKind::none);
    elements.ElementAnchor[ElementSlot(1)] = AnchorKind::anchored;
    elements.ElementGroup.assign(3, 0);
    elements.ElementWeight.assign(3, 1.0f);
    elements.ElementNumber.assign(3, 1);
    ElementState state;
    state.ElementStatus = kStatusFree;
    analysis.estimates.elements.assign(3, state);
    analysis.estimates.elements[ElementSlot(1)].ElementStatus = kStatusAnchored;
    ElementScores scores;
    scores.MaxScore = 40.0;
    scores.Count = scores.FirstCount = 10.0f;
    analysis.estimates.scores.assign(3, scores);
    ElementFinal fit;
    fit.StandardError = .4f;
    fit.PointMeasure = .45f;
    fit.PointResidual = .5f;
    analysis.estimates.finals.assign(3, fit);
    analysis.estimates.stage = StatisticsStage::finished;
    analysis.settings.PointCorrelationKind = 'N';
  }
  ElementFinal& Final(std::int32_t slot) { return analysis.estimates.finals[ElementSlot(slot)]; }
  std::vector<Table7Column> Shown() const { return LayOutTable7(analysis, FlankNo(1)).optional; }
  // The heads of the optional columns, the second row of them.
  std::string Heads(int row) const {
    const Table7Layout layout = LayOutTable7(analysis, FlankNo(1));
    const std::string head = BoxToAscii(layout.headingRows[static_cast<std::size_t>(row)]);
    const std::string mark = row == 1 ? "|Estim.|" : "|Discrm|";
    const std::size_t from = head.find(mark) + mark.size();
    return head.substr(from, head.size() - from - 22);
  }
  std::string Line(std::int32_t slot) const {
    return BoxToAscii(ElementLine(analysis, LayOutTable7(analysis, FlankNo(1)), ElementSlot(slot)));
  }
};

using Columns = std::vector<Table7Column>;

TEST(Table7Optional, WithoutAReasonThereIsNone) {
  EXPECT_EQ(ThreeElements().Shown(), Columns{});
  EXPECT_EQ(ThreeElements().Heads(1), "");
}

TEST(Table7Optional, AllOfThemInTheirOrder) {
  ThreeElements t;
  t.Final(1).Displacement = .5f;
  t.analysis.settings.PointCorrelationKind = 'M';
  t.analysis.design.elements.ElementGroup[ElementSlot(2)] = 3;
  t.analysis.design.elements.ElementWeight[ElementSlot(3)] = 2.0f;
  RaterAgreement& agreement = t.analysis.estimates.agreement;
  agreement.raterFlank = FlankNo(1);
  agreement.RaterLow = ElementSlot(1);
  agreement.RaterOpportunities.assign(3, 8.0f);
  agreement.RaterExact.assign(3, 62.5f);
  agreement.RaterExpected.assign(3, 41.25f);
  agreement.RaterOpportunities[ElementSlot(3)] = 0.0f;
  EXPECT_EQ(t.Heads(1), "       | Correlation | Exact Agree. |       |Element|");
  EXPECT_EQ(t.Heads(2), " Displ.| PtMea PtExp | Obs %  Exp % | Group | Weight|");
  EXPECT_NE(t.Line(1).find("|   .50 |   .45   .50 |  62.5   41.3 |     0 |  1.00 |"),
            std::string::npos)
      << t.Line(1);
  // A rater without a pair has no agreement.
  EXPECT_NE(t.Line(3).find("|   .00 |   .45   .50 |              |     0 |  2.00 |"),
            std::string::npos)
      << t.Line(3);
  // Without fit there is neither displacement nor correlation.
  t.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusMaximum;
  t.analysis.design.elements.ElementGroup[ElementSlot(3)] = 1;
  EXPECT_NE(t.Line(2).find("|       |             |  62.5   41.3 |     3 |  1.00 |"),
            std::string::npos)
      << t.Line(2);
}

TEST(Table7Optional, TheHeadsOfTheFourCorrelations) {
  ThreeElements t;
  struct Case {
    char letter;
    const char *first, *second;
  };
  for (const Case& c : {Case{'Y', " Corr. |", " PtBis |"}, Case{'I', " Corr. |", " PtBisI|"},
                        Case{'M', " Correlation |", " PtMea PtExp |"}, Case{'N', "", ""}}) {
    t.analysis.settings.PointCorrelationKind = c.letter;
    EXPECT_EQ(t.Heads(1), c.first);
    EXPECT_EQ(t.Heads(2), c.second);
  }
  t.analysis.settings.PointCorrelationKind = 'I';
  EXPECT_NE(t.Line(2).find("|   .45 |"), std::string::npos) << t.Line(2);
}

TEST(Displacement, ShowsForAnAnchoredElementThatIsFarOff) {
  struct Case {
    std::int16_t status;
    float displacement;
    std::int32_t decimals;
    bool shows;
    const char* why;
  };
  const Case cases[] = {{kStatusAnchored, .11f, 2, true, "more than a quarter of the error of .4"},
                        {kStatusAnchored, .1f, 2, false, "a quarter is not more"},
                        {kStatusAnchored, -.11f, 2, true, "size counts"},
                        {kStatusAnchored, 0.0f, 2, false, "none"},
                        {kStatusFree, 3.0f, 2, false, "free elements are not held"},
                        {kStatusMaximum, 3.0f, 2, false, "extreme"},
                        {kStatusAnchored, .11f, 0, false, "the text is that of zero"}};
  for (const Case& c : cases) {
    ThreeElements t;
    t.analysis.estimates.elements[ElementSlot(1)].ElementStatus = c.status;
    t.Final(1).Displacement = c.displacement;
    t.analysis.settings.Udecimals = c.decimals;
    EXPECT_EQ(t.Shown() == Columns{Table7Column::displacement}, c.shows) << c.why;
  }
}

TEST(Displacement, HasTheSignOfTheMeasureAndUserUnits) {
  ThreeElements t;
  t.Final(1).Displacement = .25f;
  EXPECT_DOUBLE_EQ(UserDisplacement(t.analysis, ElementSlot(1)), .25);
  t.analysis.design.flanks.FlankOrientation[FlankNo(1)] = kNegativeOrientation;
  EXPECT_DOUBLE_EQ(UserDisplacement(t.analysis, ElementSlot(1)), -.25);
  t.analysis.settings.Uscale = -10.0f;
  EXPECT_DOUBLE_EQ(UserDisplacement(t.analysis, ElementSlot(1)), 2.5);
  t.Final(1).Displacement = 1E30f;
  EXPECT_DOUBLE_EQ(UserDisplacement(t.analysis, ElementSlot(1)), 100.0) << "held at 10 logits";
}

TEST(Group, ShowsForTwoGroupNumbersOfMeasuredElements) {
  ThreeElements t;
  t.analysis.design.elements.ElementGroup.assign(3, 4);
  EXPECT_EQ(t.Shown(), Columns{});
  t.analysis.design.elements.ElementGroup[ElementSlot(2)] = 0;
  EXPECT_EQ(t.Shown(), Columns{Table7Column::group});
  t.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusMinimum;
  EXPECT_EQ(t.Shown(), Columns{Table7Column::group}) << "an extreme element has a measure";
  t.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusDropped;
  EXPECT_EQ(t.Shown(), Columns{});
}

TEST(Weight, ShowsForAWeightThatIsNotOne) {
  ThreeElements t;
  t.analysis.design.elements.ElementWeight[ElementSlot(2)] = 0.5f;
  EXPECT_EQ(t.Shown(), Columns{Table7Column::weight});
  EXPECT_EQ(FullCells(t.analysis, Table7Column::weight, ElementSlot(2)), Cells{"   .50"});
}

TEST(FootCells, HaveAFigureOfEachColumnOfNumbers) {
  const Settings settings;
  const auto cells = [&](Table7Column column, const MeasureRow& row) {
    return FootCells(settings, column, row);
  };
  MeasureRow row;
  row.weight = 2.0;
  row.correlation = .25;
  row.expectedCorrelation = .5;
  row.displacement = -.125;
  EXPECT_EQ(cells(Table7Column::agreement, row), (Cells{"", ""})) << "no rater has a pair";
  EXPECT_EQ(cells(Table7Column::correlationMeasure, row), (Cells{"", ""})) << "no row has fit";
  EXPECT_EQ(cells(Table7Column::displacement, row), Cells{""});
  row.hasAgreement = true;
  row.agreementObserved = 50.0;
  row.agreementExpected = 40.0;
  row.isFitted = true;
  EXPECT_EQ(cells(Table7Column::agreement, row), (Cells{" 50.0", " 40.0"}));
  EXPECT_EQ(cells(Table7Column::biserial, row), Cells{"  .25"});
  EXPECT_EQ(cells(Table7Column::biserialInclude, row), Cells{"  .25"});
  EXPECT_EQ(cells(Table7Column::correlationMeasure, row), (Cells{"  .25", "  .50"}));
  EXPECT_EQ(cells(Table7Column::displacement, row), Cells{"  -.13"});
  EXPECT_EQ(cells(Table7Column::weight, row), Cells{"  2.00"});
  EXPECT_EQ(cells(Table7Column::group, row), Cells{""});
}

TEST(AnchorFlag, IsAForAnAnchorAndGForAGroupAnchor) {
  ThreeElements t;
  t.analysis.design.elements.ElementAnchor[ElementSlot(2)] = AnchorKind::groupAnchored;
  t.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusAnchored;
  EXPECT_NE(t.Line(1).find("A    .00"), std::string::npos) << t.Line(1);
  EXPECT_NE(t.Line(2).find("G    .00"), std::string::npos) << t.Line(2);
  EXPECT_NE(t.Line(3).find("    .00   .40 |"), std::string::npos) << t.Line(3);
  t.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusMinimum;
  EXPECT_NE(t.Line(2).find("G("), std::string::npos) << t.Line(2);
}

}  // namespace
}  // namespace flanks
