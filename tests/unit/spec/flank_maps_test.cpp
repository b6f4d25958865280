#include "spec/flank_maps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/spec_run.h"

namespace flanks {
namespace {

using testing::HasSubstr;
using testing::Not;
using Numbers = std::vector<int>;

template <class Rows>
Numbers NumbersOf(const Rows& rows) {
  Numbers numbers;
  for (const auto& row : rows) numbers.push_back(row.number());
  return numbers;
}

// The Flanks whose value in a column is `value`.
template <class Column, class Value>
Numbers FlanksWith(const Column& column, Value value) {
  Numbers numbers;
  for (const FlankNo flank : Upward(column))
    if (column[flank] == value) numbers.push_back(flank.number());
  return numbers;
}

struct ListCase {
  std::string text;
  Numbers floating, zero, positive;
};

class FlankListsOf : public testing::TestWithParam<ListCase> {};

TEST_P(FlankListsOf, SetOriginAndOrientation) {
  SpecRun test;
  test.Read(GetParam().text);
  ASSERT_EQ(test.fault(), Fault::none) << test.FaultText();
  const FlankTable& flanks = test.analysis.design.flanks;
  EXPECT_EQ(FlanksWith(flanks.FlankCenter, kNonCentered), GetParam().floating);
  EXPECT_EQ(FlanksWith(flanks.FlankCenter, kCenteredWithExtremes), GetParam().zero);
  EXPECT_EQ(FlanksWith(flanks.FlankOrientation, kPositiveOrientation), GetParam().positive);
}

INSTANTIATE_TEST_SUITE_P(Lists, FlankListsOf,
                         testing::Values(ListCase{"Flanks=3\n", {1}, {}, {1}},
                                         ListCase{"Flanks=3\nNoncenter=2,3\n", {2, 3}, {}, {1}},
                                         ListCase{"Flanks=3\nNoncenter=0\n", {}, {}, {1}},
                                         ListCase{"Flanks=3\nNoncenter=\n", {1}, {}, {1}},
                                         ListCase{"Flanks=3\nCenter=1\n", {2, 3}, {}, {1}},
                                         ListCase{"Flanks=3\nCenter=1,2z,3Z\n", {}, {2, 3}, {1}},
                                         ListCase{"Flanks=3\nNoncenter=2Z\n", {2}, {}, {1}},
                                         ListCase{"Flanks=2\nPositive=Y\n", {1}, {}, {1, 2}},
                                         ListCase{"Flanks=2\nPositive=2\n", {1}, {}, {2}},
                                         ListCase{"Flanks=2\nNegative=2\n", {1}, {}, {1}},
                                         ListCase{"Flanks=2\nPositive=N\n", {1}, {}, {}},
                                         ListCase{"Flanks=2\nNegative=Yes\n", {1}, {}, {}},
                                         ListCase{"Flanks=2\nNegative=None\n", {1}, {}, {1, 2}},
                                         ListCase{"Flanks=2\nPositive=\n", {1}, {}, {1}}));

// Before Flanks= the lists set the number of Flanks themselves.
INSTANTIATE_TEST_SUITE_P(ListsFirst, FlankListsOf,
                         testing::Values(ListCase{"Noncenter=1\nFlanks=2\n", {1}, {}, {1}},
                                         ListCase{"Center=1\nFlanks=3\n", {2, 3}, {}, {1}},
                                         ListCase{"Positive=2\nFlanks=3\n", {1}, {}, {2}},
                                         ListCase{"Negative=2\nFlanks=3\n", {1}, {}, {1, 3}},
                                         ListCase{"Noncenter=3\nPositive=2\n", {3}, {}, {2}},
                                         ListCase{"Positive=Y\nFlanks=1\n", {1}, {}, {1}}));

TEST(FlankCount, OfAListIsTwoAtLeast) {
  const std::pair<std::string, int> cases[] = {
      {"Noncenter=1\n", 2}, {"Center=4\n", 4}, {"Positive=Y\n", 2}, {"Noncenter=\n", 0}};
  for (const auto& [text, count] : cases) {
    SpecRun test;
    test.Read(text);
    EXPECT_EQ(test.analysis.design.FlankCount, count) << text;
    EXPECT_EQ(test.analysis.design.flanks.FlankName.rows(), count);
  }
}

TEST(FlankCount, MayNotBeSmallerThanAFlankInAList) {
  SpecRun test;
  test.Read("Noncenter=3\nFlanks=2\n");
  EXPECT_THAT(test.FaultText(),
              HasSubstr("Flanks= statement conflicts with prior flank commands: 2 in line"));
}

TEST(FlankLists, RefuseFlanksThatThereAreNot) {
  SpecRun test;
  test.Read("Flanks=2\nNoncenter=3\n");
  EXPECT_EQ(test.FaultText(),
            "Noncenter=3 Specification is: Number invalid or greater than 2: 2 in line Error F2");
}

TEST(FlankTable, HasItsDefaults) {
  SpecRun test;
  test.Read("Flanks=2\n");
  const FlankTable& flanks = test.analysis.design.flanks;
  EXPECT_EQ(FlanksWith(flanks.FlankWeight, 1.0f), Numbers({1, 2}));
  EXPECT_EQ(FlanksWith(flanks.FlankOptions, " "), Numbers({1, 2}));
}

// ---- Maps

struct MapCase {
  std::string text;
  Numbers entryMap, activeMap, modelFlank;
};

class MapsOf : public testing::TestWithParam<MapCase> {};

TEST_P(MapsOf, LeadFromPositionsToFlanks) {
  SpecRun test;
  test.Read(GetParam().text);
  MakeDefaultMaps(test.run);
  const Design& design = test.analysis.design;
  EXPECT_EQ(NumbersOf(design.maps.EntryMap), GetParam().entryMap);
  EXPECT_EQ(NumbersOf(design.maps.ActiveMap), GetParam().activeMap);
  EXPECT_EQ(NumbersOf(design.maps.ModelFlank), GetParam().modelFlank);
  EXPECT_EQ(design.DataFlankCount, static_cast<int>(GetParam().entryMap.size()));
  EXPECT_EQ(design.ModelFlankCount, static_cast<int>(GetParam().modelFlank.size()));
  EXPECT_THAT(test.shell.Screen(), Not(HasSubstr("Entered= has")));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MapsOf,
    testing::Values(MapCase{"Flanks=3\n", {1, 2, 3}, {1, 2, 3}, {1, 2, 3}},
                    MapCase{"Flanks=2,3\n", {1, 2, 0}, {1, 2, 0}, {1, 2}},
                    MapCase{"Flanks=3,2\n", {1, 2}, {1, 2}, {1, 2, 3}},
                    MapCase{"Flanks=2\nEntered-in-data=2,1\n", {2, 1}, {1, 2}, {2, 1}},
                    MapCase{"Flanks=2\nEntered-in-data=2,0,1\n", {2, 0, 1}, {1, 0, 2}, {2, 1}},
                    MapCase{"Flanks=2,3\nEntered-in-data=2,0,1\n", {2, 0, 1}, {1, 0, 2}, {2, 1}},
                    MapCase{"Flanks=2\nEntered-in-data=\n", {1, 2}, {1, 2}, {1, 2}}));

TEST(EnteredInData, WarnsOfCountsThatDoNotMatch) {
  SpecRun test;
  test.Read("Flanks=2,4\nEntered-in-data=2,1,1\n");
  EXPECT_THAT(test.shell.Screen(),
              HasSubstr(" Entered= has 3 flank positions. This must match Data=\n"));
  EXPECT_THAT(test.shell.Screen(),
              HasSubstr(" Entered= has 3 active flank positions. This must match Models=\n"));
  EXPECT_TRUE(test.analysis.design.repeatedFlanks);
}

TEST(EnteredInData, KnowsTheSecondValueOfFlanksBehindStatementsToo) {
  SpecRun test;
  test.Read("Flanks=2,3\nModels=?,?,R\n*\nEntered-in-data=2,1\n");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  EXPECT_THAT(test.shell.Screen(), HasSubstr(" Entered= has 2 flank positions."));
}

TEST(EnteredInData, MustAgreeWithStatementsReadBefore) {
  SpecRun test;
  test.Read("Flanks=2\nModels=?,?,R\n*\nEntered-in-data=1,2,1\n");
  EXPECT_THAT(test.FaultText(), HasSubstr("3 Entered= references do not match: 4 in line"));
}

TEST(EnteredInData, RefusesFlanksThatThereAreNot) {
  SpecRun test;
  test.Read("Flanks=2\nEntered-in-data=1,3\n");
  EXPECT_EQ(test.fault(), Fault::numberTooLarge);
}

}  // namespace
}  // namespace flanks
