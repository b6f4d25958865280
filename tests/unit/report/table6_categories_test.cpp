// Scale columns of a ruler.  Expected scores were computed apart, from the definition of the model.
#include "report/table6_categories.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

// A rating scale of thresholds -1 and 1, of categories 3 to 5 with labels; `scales` times.
Analysis Scales(int scales, std::int16_t top = 2) {
  Analysis analysis;
  ScaleTables& tables = analysis.scales;
  tables.width = 3;
  tables.scaleType.assign(scales, ScaleType::rating);
  tables.scaleDefinition.assign(scales, ScaleDefinitionRow(0));
  tables.scaleModel.assign(scales, ModelRow(0));
  tables.ScaleTopCategory.assign(scales, top);
  tables.rawCategory.assign(scales, 3, 0);
  tables.ThresholdTable.assign(scales, 3, 0.0f);
  tables.CategoryFlag.assign(scales, 3, kCategoryFree);
  for (const ScaleRow scale : Upward(tables.ScaleTopCategory)) {
    for (int category = 0; category < 3; ++category)
      tables.rawCategory.at(scale, category) = static_cast<std::int16_t>(3 + category);
    tables.ThresholdTable.at(scale, 1) = -1.0f;
    tables.ThresholdTable.at(scale, 2) = 1.0f;
  }
  analysis.design.ModelFlankCount = 2;
  analysis.design.models.ModelText.push({"?", "?", "R5", "1"});
  analysis.design.models.references.assign(1, 2, {});
  ScaleDefinition definition;
  definition.categories = {
      {3, "poor", 0, false, ' '}, {4, "", 0, false, ' '}, {5, "excellent", 0, false, ' '}};
  analysis.design.scales.push(definition);
  return analysis;
}

RulerList Asking(bool legends = false, bool everyNumber = false) {
  RulerList list;
  list.scales = true;
  list.legends = legends;
  list.everyNumber = everyNumber;
  return list;
}

// Rows of 2, 1.5, 1 ... -2.
const RulerScale kNineRows{-2.0, 2.0, 2.0, 8, 1.0};

TEST(RowCategories, RoundTheMeanOfTheExpectedScoresHalfARowAway) {
  // Means 1.70, 1.57, 1.40, 1.21, 1, .79, .60, .43, .30.
  EXPECT_EQ(RowCategories(Scales(1), ScaleRow(0), kNineRows),
            (std::vector<int>{2, 2, 1, 1, 1, 1, 1, 0, 0}));
}

TEST(RowCategories, TheEndTowardsHigherMeasuresHasTheHighestCategory) {
  const RulerScale low{-3.0, -2.0, 1.0, 1, 1.0};
  EXPECT_EQ(RowCategories(Scales(1), ScaleRow(0), low), (std::vector<int>{2, 0}));
  Analysis turned = Scales(1);
  turned.settings.Uscale = -1.0f;
  EXPECT_EQ(RowCategories(turned, ScaleRow(0), kNineRows),
            (std::vector<int>{0, 0, 1, 1, 1, 1, 1, 2, 2}));
}

TEST(RowCategories, AreThoseOfUserUnitsTakenBackToLogits) {
  Analysis analysis = Scales(1);
  analysis.settings.Umean = 50.0f;
  analysis.settings.Uscale = 10.0f;
  const RulerScale rows{30.0, 70.0, .2, 8, 50.0};
  EXPECT_EQ(RowCategories(analysis, ScaleRow(0), rows),
            (std::vector<int>{2, 2, 1, 1, 1, 1, 1, 0, 0}));
}

// At 0 a dichotomy expects a half, which is rounded up whatever the units make of it.
TEST(RowCategories, AHalfIsAHalfInAllUnits) {
  Analysis analysis = Scales(1);
  analysis.scales.ScaleTopCategory[ScaleRow(0)] = 1;
  analysis.scales.ThresholdTable.at(ScaleRow(0), 1) = 0.0f;
  const std::vector<int> categories = {1, 1, 1, 0, 0};
  EXPECT_EQ(RowCategories(analysis, ScaleRow(0), {-1.0, 1.0, 2.0, 4, 1.0}), categories);
  // Without the tolerance rounding decides in 42 of these.
  for (int n = 0; n < 200; ++n) {
    const float umean = 0.37f * static_cast<float>(n);
    const float uscale = 0.3f + 0.29f * static_cast<float>(n % 40);
    analysis.settings.Umean = umean;
    analysis.settings.Uscale = uscale;
    const double lines = (1.0 + 0.1 * (n % 90)) / uscale;
    const RulerScale rows{umean - 2.0 / lines, umean + 2.0 / lines, lines, 4, 1.0};
    EXPECT_EQ(RowCategories(analysis, ScaleRow(0), rows), categories) << umean << " " << uscale;
  }
}

TEST(ScaleColumns, AMarkStandsWhereTheNextRowHasAnotherCategory) {
  const auto columns = BuildScaleColumns(Scales(1), Asking(), kNineRows);
  ASSERT_EQ(columns.size(), 1U);
  EXPECT_EQ(columns[0].head, "Scale");
  EXPECT_TRUE(columns[0].models.empty()) << "no statement has met it";
  EXPECT_EQ(columns[0].cells, (std::vector<std::string>{"  5  ", " --- ", "  4  ", "  4  ", "  4  ",
                                                        "  4  ", " --- ", "  3  ", "  3  "}));
}

TEST(ScaleColumns, WithTheNumberSignEachRowHasItsNumber) {
  const auto columns = BuildScaleColumns(Scales(1), Asking(false, true), kNineRows);
  EXPECT_EQ(columns[0].cells[1], "  5  ");
  EXPECT_EQ(columns[0].cells[6], "  4  ");
}

TEST(ScaleColumns, LegendsStandInParenthesesAndWidenTheColumn) {
  const auto columns = BuildScaleColumns(Scales(1), Asking(true), kNineRows);
  EXPECT_EQ(columns[0].width, 15);
  EXPECT_EQ(columns[0].cells[0], "  5 (excellent)");
  EXPECT_EQ(columns[0].cells[1], " ---           ");
  EXPECT_EQ(columns[0].cells[2], "  4            ");
  EXPECT_EQ(columns[0].cells[8], "  3 (poor)     ");
}

TEST(ScaleColumns, SeveralHaveNumbersAndOneOfASingleCategoryHasNone) {
  Analysis analysis = Scales(3);
  analysis.scales.ScaleTopCategory[ScaleRow(1)] = 0;
  const auto columns = BuildScaleColumns(analysis, Asking(), kNineRows);
  ASSERT_EQ(columns.size(), 2U);
  EXPECT_EQ(columns[0].head, "S.1");
  EXPECT_EQ(columns[1].head, "S.2");
  EXPECT_EQ(columns[1].scale, ScaleRow(2));
  EXPECT_TRUE(BuildScaleColumns(analysis, RulerList{}, kNineRows).empty());
}

TEST(ScaleColumns, AScaleOfOneElementNamesIt) {
  Analysis analysis = Scales(1);
  PositionReference own;
  own.structured = true;
  analysis.design.models.references.at(ModelRow(0), 1) = own;
  analysis.design.models.ModelText[ModelRow(0)] = {"?", "#", "R5", "1"};
  analysis.design.elements.ElementNumber.push(7);
  analysis.design.elements.ElementLabel.push("Essay");
  analysis.structures.structureModel.push(ModelRow(0));
  analysis.structures.structureScale.push(ScaleRow(0));
  analysis.structures.structureKey.assign(1, 2, ElementSlot());
  analysis.structures.structureKey.at(StructureRow(0), 1) = ElementSlot(1);
  EXPECT_EQ(BuildScaleColumns(analysis, Asking(), kNineRows)[0].models,
            std::vector<std::string>{"S.1: Model = ?,7,R5,1  ; 7: Essay"});
  analysis.design.models.references.at(ModelRow(0), 1).reversed = true;
  EXPECT_EQ(BuildScaleColumns(analysis, Asking(), kNineRows)[0].models,
            std::vector<std::string>{"S.1: Model = ?,-7,R5,1  ; 7: Essay"});
}

TEST(ScaleColumns, AScaleOfSeveralStatementsNamesEach) {
  Analysis analysis = Scales(1);
  analysis.design.models.ModelText.push({"1", "?", "R5", "1"});
  analysis.design.models.references.assign(2, 2, {});
  for (const int model : {0, 1}) {
    analysis.structures.structureModel.push(ModelRow(model));
    analysis.structures.structureScale.push(ScaleRow(0));
  }
  analysis.structures.structureKey.assign(2, 2, ElementSlot());
  EXPECT_EQ(BuildScaleColumns(analysis, Asking(), kNineRows)[0].models,
            (std::vector<std::string>{"S.1: Model = ?,?,R5,1", "S.1: Model = 1,?,R5,1"}));
}

TEST(ScaleColumns, AreFiftyAtMost) {
  EXPECT_EQ(BuildScaleColumns(Scales(60), Asking(), kNineRows).size(), 50U);
}

}  // namespace
}  // namespace flanks
