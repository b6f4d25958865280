// Elements in their rows and the widths of the columns, worked by hand.
#include "report/table6_layout.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/program_fault.h"
#include "run/messages.h"

namespace flanks {
namespace {

struct Element {
  const char* label;
  float measure;
  std::int16_t status = kStatusFree;
};

// One Flank of elements 1, 2, 3 ...
Analysis OneFlank(const std::string& name, const std::vector<Element>& elements) {
  Analysis analysis;
  Design& design = analysis.design;
  design.FlankCount = 1;
  design.flanks.FlankName.push(name);
  design.flanks.FlankOptions.push(" ");
  design.flanks.FlankElementCount.push(static_cast<std::int32_t>(elements.size()));
  design.flanks.FlankFirstSlot.push(ElementSlot(1));
  design.flanks.FlankOrientation.push(kPositiveOrientation);
  for (const Element& element : elements) {
    design.elements.ElementLabel.push(element.label);
    design.elements.ElementNumber.push(design.elements.ElementLabel.rows());
    design.elements.ElementFlank.push(FlankNo(1));
    ElementState state;
    state.ElementMeasure = element.measure;
    state.ElementStatus = element.status;
    analysis.estimates.elements.push(state);
    analysis.estimates.scores.push(ElementScores{});
    analysis.estimates.scores[analysis.estimates.scores.lastRow()].MaxScore = 4.0;
  }
  return analysis;
}

// Rows 0 (2.0) to 4 (-2.0).
const RulerScale kFiveRows{-2.0, 2.0, 1.0, 4, 1.0};

RulerColumn ColumnOf(const Analysis& analysis, RulerForm form, const Yardstick& yardstick = {},
                     const RulerScale& scale = kFiveRows) {
  std::vector<RulerColumn> columns(1);
  columns[0].item = {FlankNo(1), form};
  columns[0].placed =
      PlaceElements(analysis, ElementsOfRuler(analysis)[FlankNo(1)], form, scale, yardstick);
  FitColumns(analysis, yardstick, columns);
  return columns[0];
}

TEST(FitColumn, AsterisksStandForSoManyThatTenAreEnough) {
  struct Case {
    std::int32_t count, group;
    int width;
  };
  for (const Case& c :
       {Case{5, 1, 5}, Case{10, 1, 10}, Case{11, 2, 6}, Case{25, 3, 9}, Case{95, 10, 10},
        Case{100, 10, 10}, Case{101, 11, 10}, Case{4000000, 400000, 10}}) {
    const ColumnFit fit = FitColumn({RulerForm::asterisks, 0, 0, c.count, 0});
    EXPECT_EQ(fit.group, c.group) << c.count;
    EXPECT_EQ(fit.width, c.width) << c.count;
  }
}

TEST(FitColumn, EntriesTakeTheirWidthAndTheirGap) {
  const ColumnFit labels = FitColumn({RulerForm::labels, 0, 8, 3, 0});
  EXPECT_EQ(labels.width, 10);
  EXPECT_EQ(labels.perLine, 1);
  const ColumnFit numbers = FitColumn({RulerForm::numbers, 0, 3, 3, 0});
  EXPECT_EQ(numbers.width, 4);
  EXPECT_EQ(numbers.perLine, 1);
  EXPECT_EQ(FitColumn({RulerForm::counts, 0, 0, 120, 0}).width, 3);
}

TEST(FitColumn, AFixedWidthHoldsSeveralOrCuts) {
  const ColumnFit wide = FitColumn({RulerForm::labels, 0, 4, 3, 22});
  EXPECT_EQ(wide.width, 22);
  EXPECT_EQ(wide.perLine, 4);  // 24 / 6
  const ColumnFit numbers = FitColumn({RulerForm::numbers, 0, 3, 3, 11});
  EXPECT_EQ(numbers.perLine, 3);  // 12 / 4
  const ColumnFit narrow = FitColumn({RulerForm::labels, 0, 20, 3, 12});
  EXPECT_EQ(narrow.width, 12);
  EXPECT_EQ(narrow.entryWidth, 10);
  EXPECT_EQ(narrow.perLine, 1);
  EXPECT_EQ(FitColumn({RulerForm::labels, 0, 20, 3, 1}).entryWidth, 1);
  EXPECT_EQ(FitColumn({RulerForm::asterisks, 0, 0, 3, 30}).width, 3);  // as its own form needs
}

TEST(FitColumn, TheNameWidensAColumnUnlessBothAreFiveWide) {
  EXPECT_EQ(FitColumn({RulerForm::counts, 4, 0, 3, 0}).width, 3);      // "Task" less one
  EXPECT_EQ(FitColumn({RulerForm::counts, 7, 0, 3, 0}).width, 6);      // the column is not 5 wide
  EXPECT_EQ(FitColumn({RulerForm::asterisks, 30, 0, 5, 0}).width, 5);  // both are: cut
  EXPECT_EQ(FitColumn({RulerForm::asterisks, 4, 0, 9, 0}).width, 9);
  // Labels take the room that the name makes: "Persons" less one is 6, less the gap 4.
  EXPECT_EQ(FitColumn({RulerForm::labels, 7, 9, 3, 3}).entryWidth, 4);
  // A column that its name widens holds more of its entries.
  EXPECT_EQ(FitColumn({RulerForm::labels, 11, 1, 3, 0}).perLine, 4);  // 10 places: (10 + 2) / 3
}

TEST(PlaceElements, EachStandsInTheRowNearestToItsMeasure) {
  const Analysis analysis = OneFlank(
      "Raters", {{"low", -1.6f}, {"zero", .4f}, {"top", 1.5f}, {"half", .5f}, {"null", 0.0f}});
  const RulerColumn column = ColumnOf(analysis, RulerForm::labels);
  EXPECT_EQ(column.placed.counts, (std::vector<std::int32_t>{1, 1, 2, 0, 1}));
  EXPECT_EQ(column.placed.order,
            (std::vector<ElementSlot>{ElementSlot(3), ElementSlot(4), ElementSlot(2),
                                      ElementSlot(5), ElementSlot(1)}));
  EXPECT_EQ(column.placed.begin, (std::vector<std::size_t>{0, 1, 2, 4, 4, 5}));
}

TEST(PlaceElements, ExtremesStandAtTheEndsOrAtTheirMeasures) {
  Analysis analysis = OneFlank(
      "Raters", {{"most", 1.0f, kStatusMaximum}, {"even", 0.0f}, {"least", -1.0f, kStatusMinimum}});
  const Yardstick ends, measures{0, 0.0, 0.0, 0.0, true};
  using Counts = std::vector<std::int32_t>;
  EXPECT_EQ(ColumnOf(analysis, RulerForm::labels, ends).placed.counts, (Counts{1, 0, 1, 0, 1}));
  EXPECT_EQ(ColumnOf(analysis, RulerForm::labels, measures).placed.counts, (Counts{0, 1, 1, 1, 0}));
  analysis.settings.Uscale = -1.0f;  // the scale is turned over: the highest logit is at the foot
  const RulerColumn turned = ColumnOf(analysis, RulerForm::labels, ends);
  EXPECT_EQ(turned.placed.order.back(), ElementSlot(1));
  EXPECT_EQ(turned.placed.counts, (Counts{1, 0, 1, 0, 1}));
}

TEST(PlaceElements, OnlyMeasuredElementsAndWhatOmitUnobservedAsksForAreShown) {
  Analysis analysis = OneFlank("Raters", {{"free", 0.0f},
                                          {"out", 0.0f, kStatusDropped},
                                          {"held", 0.0f, kStatusHeld},
                                          {"never", 0.0f, kStatusUnused},
                                          {"anchor", 0.0f, kStatusAnchored}});
  analysis.estimates.scores[ElementSlot(5)].MaxScore = 0.0;
  EXPECT_EQ(ElementsOfRuler(analysis)[FlankNo(1)].size(), 1U);
  analysis.settings.OmitUnobserved = false;
  EXPECT_EQ(ElementsOfRuler(analysis)[FlankNo(1)],
            (std::vector<ElementSlot>{ElementSlot(1), ElementSlot(5)}));
}

TEST(PlaceElements, AKeyOfAnotherLengthWouldBeAFailure) {
  EXPECT_EQ(message::kRulerSortLength, "Failure (8)! Sort length error D.");
  KeyArray keys(message::kRulerSortLength);
  keys.Add("1000500000001");
  EXPECT_THROW(keys.Add("100050000001"), ProgramFault);
}

TEST(RulerCell, LabelsStandSideBySideAndGoOnInFurtherLines) {
  const Analysis analysis =
      OneFlank("Raters", {{"Ann", 0}, {"Bo", 0}, {"Cleo", 0}, {"Di", 0}, {"Ed", -1}});
  const Yardstick yardstick{12, 0.0, 0.0, 0.0, false};
  const RulerColumn column = ColumnOf(analysis, RulerForm::labels, yardstick);
  ASSERT_EQ(column.perLine, 2);  // (12 + 2) / (4 + 2)
  EXPECT_EQ(column.LinesOf(2), 2);
  EXPECT_EQ(column.LinesOf(0), 1);
  EXPECT_EQ(RulerCell(analysis, column, 2, 0), " Ann   Bo   ");
  EXPECT_EQ(RulerCell(analysis, column, 2, 1), " Cleo  Di   ");
  EXPECT_EQ(RulerCell(analysis, column, 3, 0), " Ed         ");
  EXPECT_EQ(RulerCell(analysis, column, 3, 1), "            ");
  EXPECT_EQ(RulerCell(analysis, column, 0, 0), "            ");
}

TEST(RulerCell, NumbersEndAtTheRightOfTheirPlaces) {
  Analysis analysis = OneFlank("Item", {{"a", 0}, {"b", 0}, {"c", 1}});
  analysis.design.elements.ElementNumber[ElementSlot(2)] = 205;
  const RulerColumn column = ColumnOf(analysis, RulerForm::numbers, {8, 0.0, 0.0, 0.0, false});
  EXPECT_EQ(RulerCell(analysis, column, 2, 0), "   1 205");  // (8 + 1) / 4 = 2 of them
  EXPECT_EQ(RulerCell(analysis, column, 1, 0), "   3    ");
}

TEST(RulerCell, AsterisksAndCounts) {
  std::vector<Element> elements(13, Element{"x", 0});
  elements.push_back({"y", 1});
  const Analysis analysis = OneFlank("Item", elements);
  const RulerColumn asterisks = ColumnOf(analysis, RulerForm::asterisks);
  EXPECT_EQ(asterisks.head, "+Item * =2");
  EXPECT_EQ(RulerCell(analysis, asterisks, 2, 0), "*******");  // 13 in twos
  EXPECT_EQ(RulerCell(analysis, asterisks, 1, 0), "*      ");
  EXPECT_EQ(RulerCell(analysis, asterisks, 0, 0), "       ");
  EXPECT_EQ(asterisks.LinesOf(2), 1);
  const RulerColumn counts = ColumnOf(analysis, RulerForm::counts);
  EXPECT_EQ(counts.head, "+Item Count");
  EXPECT_EQ(RulerCell(analysis, counts, 2, 0), " 13");
  EXPECT_EQ(RulerCell(analysis, counts, 1, 0), "  1");
  EXPECT_EQ(RulerCell(analysis, counts, 3, 0), "   ");
}

TEST(RulerCell, LabelsBeyondAsciiAreWholeAndAnElementWithoutALabelHasItsNumber) {
  // Zoë is 3 columns, two Chinese characters are 3.6, rounded 4.
  Analysis analysis =
      OneFlank("Item", {{"Zo\xC3\xAB", 0}, {"\xE4\xBD\xA0\xE5\xA5\xBD", 1}, {"", -1}});
  analysis.design.flanks.FlankOrientation[FlankNo(1)] = kNegativeOrientation;
  const RulerColumn column = ColumnOf(analysis, RulerForm::labels);
  EXPECT_EQ(column.head, "-Item");
  EXPECT_EQ(column.width, 6);
  EXPECT_EQ(RulerCell(analysis, column, 2, 0), " Zo\xC3\xAB  ");
  EXPECT_EQ(RulerCell(analysis, column, 1, 0), " \xE4\xBD\xA0\xE5\xA5\xBD ");
  EXPECT_EQ(RulerCell(analysis, column, 3, 0), " 3    ");
}

TEST(ScaleOfRuler, ReachesOverTheFlanksOfTheListInUserUnits) {
  Analysis analysis = OneFlank("Item", {{"a", -1.0f}, {"b", 2.0f}});
  analysis.settings.Umean = 50.0f;
  analysis.settings.Uscale = 10.0f;
  const auto shown = SumUpElements(analysis, ElementsOfRuler(analysis));
  RulerList list;
  list.items.push_back({FlankNo(1), RulerForm::labels});
  const RulerScale scale = ScaleOfRuler(analysis.settings, list, shown, {});
  EXPECT_DOUBLE_EQ(scale.low, 40.0);
  EXPECT_DOUBLE_EQ(scale.high, 70.0);
  // A list of scale columns alone reaches over all Flanks.
  EXPECT_DOUBLE_EQ(ScaleOfRuler(analysis.settings, {}, shown, {}).high, 70.0);
  analysis.settings.Uscale = -10.0f;
  EXPECT_DOUBLE_EQ(ScaleOfRuler(analysis.settings, list, shown, {}).low, 30.0);
}

}  // namespace
}  // namespace flanks
