#include "report/table7_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "report/format/box.h"

namespace flanks {
namespace {

using ::testing::EndsWith;

constexpr ElementSlot kAnn(1);

// One Flank with one element, Ann: 10 ratings that sum to 30.
struct OneElement {
  Analysis analysis;

  explicit OneElement(std::int16_t status = kStatusFree) {
    FlankTable& flanks = analysis.design.flanks;
    flanks.FlankName.assign(1, "Raters");
    flanks.FlankElementCount.assign(1, 1);
    flanks.FlankFirstSlot.assign(1, kAnn);
    flanks.FlankHigh.assign(1, 7);
    flanks.FlankOrientation.assign(1, kPositiveOrientation);
    analysis.design.elements.ElementNumber.push(7);
    analysis.design.elements.ElementLabel.push("Ann");
    analysis.design.elements.ElementAnchor.push(AnchorKind::none);
    analysis.design.elements.ElementGroup.push(0);
    analysis.design.elements.ElementWeight.push(1.0f);
    analysis.design.elements.ElementFlank.push(FlankNo(1));
    ElementState state;
    state.ElementMeasure = .5f;
    state.ElementStatus = status;
    analysis.estimates.elements.push(state);
    ElementScores scores;
    scores.MaxScore = 40.0;
    scores.Count = scores.FirstCount = 10.0f;
    scores.RawScore = scores.FirstRawScore = 30.0f;
    analysis.estimates.scores.push(scores);
    ElementFinal fit;
    fit.StandardError = .25f;
    fit.InfitMeanSquare = 1.1f;
    fit.InfitZStd = .4f;
    fit.OutfitMeanSquare = .9f;
    fit.OutfitZStd = -.3f;
    fit.Discrimination = 1.05f;
    fit.PointMeasure = .45f;
    fit.PointResidual = .5f;
    fit.FairSum = 28.5;
    analysis.estimates.finals.push(fit);
    analysis.estimates.stage = StatisticsStage::finished;
  }
  std::string Line() const {
    return BoxToAscii(ElementLine(analysis, LayOutTable7(analysis, FlankNo(1)), kAnn));
  }
};

TEST(ElementLine, AFullRowHasEachFigureInItsColumn) {
  EXPECT_EQ(OneElement().Line(),
            "|"
            "    30  "
            " "
            "   10  "
            " "
            "   3.00"
            " "
            "  2.85"
            " "  // scores and averages
            " "
            " "
            "   .50"
            " "
            "  .25"
            " "  // flag, measure, S.E.
            "|"
            " 1.10   .4   .90  -.3 "
            "|"
            " 1.05 "
            "|"
            "   .45   .50 "
            "|"
            "   7 Ann             "
            "|");
}

TEST(ElementLine, AnExtremeRowHasItsMeasureInParenthesesAndAWord) {
  EXPECT_EQ(OneElement(kStatusMaximum).Line(),
            "|"
            "    30  "
            " "
            "   10  "
            " "
            "   3.00"
            " "
            "  2.85"
            " "
            " "
            "("
            "   .50"
            " "
            "  .25"
            ")"
            "|"
            "Maximum               "
            "|      |"
            "             "
            "|"
            "   7 Ann             "
            "|");
}

TEST(ElementLine, AStatusRowHasNoFairAverageAndNoError) {
  OneElement one(kStatusDropped);
  one.analysis.estimates.scores[kAnn].MaxScore = 0.0;
  EXPECT_EQ(one.Line(),
            "|"
            "    30  "
            " "
            "   10  "
            " "
            "   3.00"
            "        "
            " "
            " "
            "   .50"
            "       "
            "|"
            "Unmeasurable          "
            "|      |"
            "             "
            "|"
            "   7 Ann             "
            "|");
}

TEST(ElementLine, TheLabelMayStandAtTheLeft) {
  OneElement one;
  one.analysis.settings.LeftHand = true;
  EXPECT_EQ(one.Line(),
            "|"
            "   7 Ann             "
            "|"
            "    30  "
            " "
            "   10  "
            " "
            "   3.00"
            " "
            "  2.85"
            " "  // scores and averages
            " "
            " "
            "   .50"
            " "
            "  .25"
            " "  // flag, measure, S.E.
            "|"
            " 1.10   .4   .90  -.3 "
            "|"
            " 1.05 "
            "|"
            "   .45   .50 "
            "|");
}

TEST(FiguresOf, AreInUserUnitsAndErrorsArePositive) {
  OneElement one;
  one.analysis.settings.Umean = 50.0f;
  one.analysis.settings.Uscale = -10.0f;
  const MeasureRow row = FiguresOf(one.analysis, kAnn);
  EXPECT_DOUBLE_EQ(row.measure, 45.0);
  EXPECT_DOUBLE_EQ(row.standardError, 2.5);
}

TEST(FiguresOf, TotalsCountExtremesAndTheOthersDoNot) {
  OneElement one;
  one.analysis.estimates.scores[kAnn].FirstCount = 12.0f;
  one.analysis.estimates.scores[kAnn].FirstRawScore = 39.0f;
  EXPECT_DOUBLE_EQ(FiguresOf(one.analysis, kAnn).score, 39.0);
  EXPECT_DOUBLE_EQ(FiguresOf(one.analysis, kAnn).observedAverage, 3.25);
  EXPECT_DOUBLE_EQ(FiguresOf(one.analysis, kAnn).fairAverage, 2.85) << "over the estimable ones";
  one.analysis.settings.TotalScoreMode = false;
  EXPECT_DOUBLE_EQ(FiguresOf(one.analysis, kAnn).score, 30.0);
}

TEST(RowKindOf, FollowsStatusAndData) {
  struct Case {
    std::int16_t status;
    double maximum;
    bool omitUnobserved;
    RowKind kind;
  };
  const Case cases[] = {
      {kStatusFree, 40, true, RowKind::full},       {kStatusAnchored, 40, true, RowKind::full},
      {kStatusAnchored, 0, true, RowKind::none},    {kStatusAnchored, 0, false, RowKind::status},
      {kStatusMinimum, 40, true, RowKind::extreme}, {kStatusMaximum, 40, true, RowKind::extreme},
      {kStatusDropped, 0, true, RowKind::status},   {kStatusHeld, 40, true, RowKind::status},
      {kStatusUnused, 0, true, RowKind::none},      {kStatusUnused, 0, false, RowKind::status}};
  for (const Case& c : cases) {
    OneElement one(c.status);
    one.analysis.estimates.scores[kAnn].MaxScore = c.maximum;
    one.analysis.settings.OmitUnobserved = c.omitUnobserved;
    EXPECT_EQ(RowKindOf(one.analysis, kAnn), c.kind) << c.status << " " << c.maximum;
  }
}

TEST(StatusWord, NamesEachMagnitude) {
  EXPECT_EQ(StatusWord(kStatusAnchored), "Anchored");
  EXPECT_EQ(StatusWord(kStatusMinimum), "Minimum");
  EXPECT_EQ(StatusWord(kStatusMaximum), "Maximum");
  EXPECT_EQ(StatusWord(kStatusDropped), "Unmeasurable");
  EXPECT_EQ(StatusWord(kStatusHeld), "One datum");
  EXPECT_EQ(StatusWord(kStatusUnused), "Unknown");
}

// The label "  7 Ann" has 20 places, of which the note takes 13.
TEST(ElementLine, NamesTheSubsetBehindTheLabel) {
  OneElement one;
  const std::string plain = one.Line();
  one.analysis.subsets.SubsetCount = 2;
  one.analysis.subsets.begin.assign(2, 0);
  EXPECT_EQ(one.Line(), plain);  // the element is in no subset
  one.analysis.subsets.numbers = {2};
  one.analysis.subsets.begin[ElementSlot(2)] = 1;
  EXPECT_EQ(one.Line(), plain.substr(0, plain.find("Ann")) + "Ann in subset: 2|");
}

// "  7 Ann of Green Gables" has 23 places.
TEST(ElementLine, TheLabelsFieldIsAsWideAsTheLongestNoteAsks) {
  OneElement one;
  one.analysis.design.elements.ElementLabel[kAnn] = "Ann of Green Gables";
  const std::string plain = one.Line();
  one.analysis.subsets.SubsetCount = 12;
  one.analysis.subsets.numbers = {2, 12};
  one.analysis.subsets.begin.assign(2, 0);
  one.analysis.subsets.begin[ElementSlot(2)] = 2;
  EXPECT_EQ(one.Line(), plain.substr(0, plain.size() - 1) + " in subset: 2 12|");
}

TEST(ElementLine, ASubsetStandsBehindALabelAtTheLeft) {
  OneElement one;
  one.analysis.settings.LeftHand = true;
  const std::string plain = one.Line();
  one.analysis.subsets.SubsetCount = 2;
  one.analysis.subsets.numbers = {1};
  one.analysis.subsets.begin.assign(2, 0);
  one.analysis.subsets.begin[ElementSlot(2)] = 1;
  const std::string line = one.Line();
  EXPECT_EQ(line.substr(0, line.find('|', 1) + 1), "|   7 Ann in subset: 1|");
  EXPECT_EQ(line.substr(line.find('|', 1)), plain.substr(plain.find('|', 1)));
}

TEST(ElementLine, OfManySubsetsTwentyAreNamed) {
  OneElement one;
  one.analysis.subsets.SubsetCount = 30;
  std::string twenty = "   7 Ann in subset:";
  for (int number = 1; number <= 30; ++number) {
    one.analysis.subsets.numbers.push_back(number);
    if (number <= 20) twenty += " " + std::to_string(number);
  }
  one.analysis.subsets.begin.assign(2, 0);
  one.analysis.subsets.begin[ElementSlot(2)] = 30;
  EXPECT_THAT(one.Line(), EndsWith("|" + twenty + " ...|"));
}

}  // namespace
}  // namespace flanks
