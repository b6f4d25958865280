#include "data/structures.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/data_design.h"

namespace flanks {
namespace {

class ThreeFlanks : public DataRun {
 public:
  ThreeFlanks() {
    for (int f = 0; f < 3; ++f) Flank({{1, ""}, {2, ""}, {3, ""}});
  }
};

Column<Position, std::int32_t> Slots(std::int32_t a, std::int32_t b, std::int32_t c) {
  Column<Position, std::int32_t> slots(3);
  slots[Position(1)] = a;
  slots[Position(2)] = b;
  slots[Position(3)] = c;
  return slots;
}

TEST(StructureFinder, AStatementHasOneStructureFromItsFirstResponseOn) {
  ThreeFlanks test;
  test.Model("1,?,?,R5");
  test.Model("?,?,?,R5");
  StructureFinder finder(test.design(), test.analysis.structures);
  EXPECT_EQ(finder.Find(ModelRow(1), Slots(2, 4, 7)).number(), 0);
  EXPECT_EQ(finder.Find(ModelRow(0), Slots(1, 5, 8)).number(), 1);
  EXPECT_EQ(finder.Find(ModelRow(1), Slots(3, 6, 9)).number(), 0);
  EXPECT_EQ(test.analysis.structures.structureModel.rows(), 2);
  EXPECT_EQ(test.analysis.structures.structureModel[StructureRow(0)], ModelRow(1));
  EXPECT_EQ(test.analysis.structures.structureKey.at(StructureRow(0), 0), ElementSlot(0));
}

TEST(StructureFinder, StructuredPositionsHaveOneForEachKey) {
  ThreeFlanks test;
  test.Model("?,#,#,R5");
  StructureFinder finder(test.design(), test.analysis.structures);
  EXPECT_EQ(finder.Find(ModelRow(0), Slots(1, 4, 7)).number(), 0);
  EXPECT_EQ(finder.Find(ModelRow(0), Slots(1, 4, 8)).number(), 1);
  EXPECT_EQ(finder.Find(ModelRow(0), Slots(2, 4, 7)).number(), 0);
  EXPECT_EQ(finder.Find(ModelRow(0), Slots(2, kStatusNullElement, 7)).number(), 2);
  EXPECT_EQ(finder.Find(ModelRow(0), Slots(2, kStatusNullElement, 7)).number(), 2);
  const StructureTable& table = test.analysis.structures;
  EXPECT_EQ(table.structureKey.at(StructureRow(1), 0), ElementSlot(0));
  EXPECT_EQ(table.structureKey.at(StructureRow(1), 1), ElementSlot(4));
  EXPECT_EQ(table.structureKey.at(StructureRow(1), 2), ElementSlot(8));
  EXPECT_EQ(table.structureKey.at(StructureRow(2), 1), ElementSlot(0));
}

TEST(StructureFinder, CountsCategories) {
  ThreeFlanks test;
  test.Model("?,?,?,R5");
  StructureFinder finder(test.design(), test.analysis.structures);
  const StructureRow row = finder.Find(ModelRow(0), Slots(1, 4, 7));
  finder.Count(row, 3);
  finder.Count(row, 3);
  finder.Count(row, 5);
  EXPECT_EQ(test.analysis.structures.structureCount.at(row, 3), 2);
  EXPECT_EQ(test.analysis.structures.structureCount.at(row, 5), 1);
  EXPECT_EQ(test.analysis.structures.structureCount.at(row, 0), 0);
}

TEST(StructureFinder, FindsAmongManyKeys) {
  DataRun test;
  DataRun::Elements many;
  for (int n = 1; n <= 60; ++n) many.emplace_back(n, "");
  for (int f = 0; f < 2; ++f) test.Flank(many);
  test.Model("#,#,R5");
  StructureFinder finder(test.design(), test.analysis.structures);
  Column<Position, std::int32_t> slots(2);
  for (int round = 0; round < 2; ++round)
    for (int a = 0; a < 60; ++a)
      for (int b = 0; b < 60; ++b) {
        slots[Position(1)] = 1 + a;
        slots[Position(2)] = 61 + b;
        ASSERT_EQ(finder.Find(ModelRow(0), slots).number(), a * 60 + b);
      }
}

struct ScaleCase {
  std::vector<std::string> statements;
  bool specific;
  int scales;
  const char* why;
};

TEST(LayOutScales, GeneralDefinitionsAreShared) {
  for (const ScaleCase& c : {
           ScaleCase{{"1,?,?,rs", "?,?,?,rs"}, false, 1, "one for all statements that name it"},
           ScaleCase{{"1,?,?,rs", "?,?,?,rs"}, true, 2, "Specific: one for each"},
           ScaleCase{{"1,?,?,R5", "?,?,?,R5"}, false, 2, "no name: one for each"},
           ScaleCase{{"?,#,?,R5"}, false, 3, "one for each element"},
           ScaleCase{{"1,#,?,rs", "?,#,?,rs"}, false, 3, "by key, whatever the statement"},
           ScaleCase{{"1,#,?,rs", "?,#,?,rs"}, true, 6, "Specific: by statement and key"},
           ScaleCase{{"1,#,?,R5", "?,#,?,R5"}, false, 6, "no name: by statement and key"},
           ScaleCase{{"1,#,?,rs", "?,?,?,rs"}, false, 4, "with # and without stand apart"},
           ScaleCase{{"1,?,?,rs", "?,?,?,other"}, false, 2, "two names"},
       }) {
    ThreeFlanks test;
    test.Scale("rs", "R5", {}, c.specific);
    test.Scale("other", "R5K", {}, c.specific);
    for (const std::string& statement : c.statements) test.Model(statement);
    StructureFinder finder(test.design(), test.analysis.structures);
    for (int model = 0; model <= test.design().ModelLast; ++model)
      for (int b = 6; b >= 4; --b) static_cast<void>(finder.Find(ModelRow(model), Slots(1, b, 7)));
    LayOutScales(test.design(), test.analysis.structures, test.analysis.scales);
    EXPECT_EQ(test.analysis.scales.scales(), c.scales) << c.why;
  }
}

TEST(LayOutScales, OrderFollowsTheSpecificationAndNotTheData) {
  ThreeFlanks test;
  test.Scale("rs", "R3K", {});
  test.Model("1,#,?,B4");
  test.Model("2,?,?,rs");
  test.Model("?,?,?,rs");
  StructureFinder finder(test.design(), test.analysis.structures);
  const StructureRow last = finder.Find(ModelRow(2), Slots(3, 4, 7));
  const StructureRow third = finder.Find(ModelRow(0), Slots(1, 6, 7));
  const StructureRow second = finder.Find(ModelRow(0), Slots(1, 5, 7));
  const StructureRow named = finder.Find(ModelRow(1), Slots(2, 5, 7));
  LayOutScales(test.design(), test.analysis.structures, test.analysis.scales);
  const StructureTable& structures = test.analysis.structures;
  const ScaleTables& scales = test.analysis.scales;
  EXPECT_EQ(structures.structureScale[second], ScaleRow(0));
  EXPECT_EQ(structures.structureScale[third], ScaleRow(1));
  EXPECT_EQ(structures.structureScale[named], ScaleRow(2));
  EXPECT_EQ(structures.structureScale[last], ScaleRow(2));
  EXPECT_EQ(scales.scales(), 3);
  EXPECT_EQ(scales.width, 5);
  EXPECT_EQ(scales.scaleType[ScaleRow(0)], ScaleType::binomial);
  EXPECT_EQ(scales.scaleMaximum[ScaleRow(0)], 4);
  EXPECT_EQ(scales.scaleDefinition[ScaleRow(0)], ScaleDefinitionRow());
  EXPECT_EQ(scales.scaleType[ScaleRow(2)], ScaleType::rating);
  EXPECT_EQ(scales.scaleModel[ScaleRow(2)], ModelRow(1));
  EXPECT_EQ(scales.scaleDefinition[ScaleRow(2)], ScaleDefinitionRow(0));
  EXPECT_EQ(scales.scaleMaximum[ScaleRow(2)], 3);
  EXPECT_EQ(scales.scaleKeep[ScaleRow(2)], 1);
  EXPECT_EQ(scales.scaleKeep[ScaleRow(0)], 0);
}

TEST(LayOutScales, StatementsWithoutDataHaveNoScale) {
  ThreeFlanks test;
  test.Model("1,?,?,R5");
  test.Model("?,?,?,D");
  StructureFinder finder(test.design(), test.analysis.structures);
  static_cast<void>(finder.Find(ModelRow(1), Slots(2, 4, 7)));
  LayOutScales(test.design(), test.analysis.structures, test.analysis.scales);
  EXPECT_EQ(test.analysis.scales.scales(), 1);
  EXPECT_EQ(test.analysis.scales.scaleModel[ScaleRow(0)], ModelRow(1));
}

}  // namespace
}  // namespace flanks
