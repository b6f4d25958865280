#include "spec/models.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/spec_bench.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// Two Flanks with elements 1 to 3 each.
std::string Specification(std::string_view models, int flanks = 2) {
  std::string text = "Flanks=" + std::to_string(flanks) + "\n" + std::string(models) + "Labels=\n";
  for (int flank = 1; flank <= flanks; ++flank) text += std::to_string(flank) + ",F\n1-3=e\n*\n";
  return text;
}

std::vector<std::string> Statements(const ModelTable& models) {
  std::vector<std::string> texts;
  for (const ModelRow row : Upward(models.ModelText)) texts.push_back(StatementText(models, row));
  return texts;
}

TEST(ReadModels, KeepsStatementsInTheirOrder) {
  SpecBench bench(Specification("Models=\n1,?,R5\n?,?,R5,1\n*\n"), SpecBench::Through::matching);
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Statements(bench.models()), ElementsAre("1,?,R5,1", "?,?,R5,1"));
  EXPECT_EQ(bench.design().ModelLast, 1);
}

TEST(ReadModels, TakesTheFirstStatementFromItsOwnLine) {
  SpecBench bench(Specification("Models=1,?,R5\n?,?,R5\n*\n"));
  EXPECT_THAT(Statements(bench.models()), ElementsAre("1,?,R5,1", "?,?,R5,1"));
}

TEST(ReadModels, ListEndsAtAKeyword) {
  SpecBench bench(Specification("Models=?,?,R5\nTitle=after\n"));
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Statements(bench.models()), ElementsAre("?,?,R5,1"));
  EXPECT_EQ(bench.analysis.settings.Title, "after");
}

TEST(ReadModels, LineThatBeginsWithXOrMIsAStatement) {
  SpecBench bench(Specification("Models=\nX,?,R5\nx,2,D\nModel=?,?,R4\n*\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Statements(bench.models()), ElementsAre("X,?,R5,1", "X,2,D,1", "?,?,R4,1"));
}

TEST(ReadModels, EmptyReferenceAndEmptyWeightAreAllowed) {
  SpecBench bench(Specification("Models=,?,R5,\n*\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Statements(bench.models()), ElementsAre(",?,R5,1"));
}

struct FaultCase {
  std::string models;
  Fault fault;
  int line;
  std::string words;
};

TEST(ReadModels, RefusesAStatementWithItsLine) {
  const FaultCase cases[] = {
      {"Models=?,R\n", Fault::tooFewModelFields, 2,
       "All Model= statements must include 2 flank locations + type [+ weight]"},
      {"Models=\n?,?,R\n?,?,R,1,tail,more\n*\n", Fault::tooManyModelFields, 4,
       "More than 5 components in Model= statement"},
      {"Models=?,?,R,abc\n", Fault::nonNumericWeight, 2,
       "Non-numeric weight in Models= specification: \"abc\" or wrong number of flanks."},
      // A statement, since it begins with M.
      {"Models=?,?,R\nMissing=9\n", Fault::tooFewModelFields, 3, ""},
  };
  for (const FaultCase& c : cases) {
    SpecBench bench(Specification(c.models));
    EXPECT_EQ(bench.fault(), c.fault) << c.models;
    EXPECT_EQ(bench.faultLine(), c.line) << c.models;
    EXPECT_THAT(bench.faultText(), HasSubstr(c.words));
  }
}

TEST(ReadModels, TakesAHundredThousandStatementsAndNoMore) {
  constexpr int kMost = 100000;
  std::string statements = "Models=\n";
  for (int i = 0; i < kMost; ++i) statements += "?,?,R5\n";
  SpecBench most(Specification(statements + "*\n"), SpecBench::Through::reading);
  EXPECT_EQ(most.fault(), Fault::none) << most.faultText();
  EXPECT_EQ(most.design().ModelLast + 1, kMost);
  SpecBench more(Specification(statements + "?,?,R5\n*\n"), SpecBench::Through::reading);
  EXPECT_EQ(more.faultText(),
            "?,?,R5 Specification is: Too many Models= specified: 100003 in line Error F53");
}

TEST(ReadModels, NeedsFlanksFirst) {
  SpecBench bench("Models=?,?,R5\n");
  EXPECT_EQ(bench.fault(), Fault::flanksFirst);
}

TEST(BuildModelTable, NormalisesReferencesAndSetsBounds) {
  SpecBench bench(Specification("Models=?B,3#,-4,R\n4-2,?,X,R\n*\n", 3));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Statements(bench.models()), ElementsAre("B?,#3,-4,R,1", "2-4,?,X,R,1"));
  const ModelTable& models = bench.models();
  const PositionReference& range = models.reference(ModelRow(1), Position(1));
  EXPECT_EQ(range.ModelLow, 2);
  EXPECT_EQ(range.ModelHigh, 4);
  EXPECT_EQ(models.reference(ModelRow(1), Position(3)).ModelLow, -2);
  EXPECT_TRUE(models.reference(ModelRow(0), Position(2)).structured);
  EXPECT_TRUE(models.reference(ModelRow(0), Position(3)).reversed);
  EXPECT_TRUE(models.anyReversed);
}

TEST(BuildModelTable, WithoutStatementsEverythingIsADichotomy) {
  for (const std::string models : {"", "Models=\n*\n"}) {
    SpecBench bench(Specification(models), SpecBench::Through::matching);
    ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
    EXPECT_THAT(Statements(bench.models()), ElementsAre("?$,?$,D,1"));
    EXPECT_EQ(bench.models().ModelScaleType[ModelRow(0)], ScaleType::binomial);
    EXPECT_EQ(bench.models().ModelCategoryMax[ModelRow(0)], 1);
    EXPECT_EQ(bench.design().ModelLast, 0);
  }
}

TEST(BuildModelTable, ShowsTheStatementAndTheFieldAtFault) {
  SpecBench bench(Specification("Models=?,?,R\n?,3a,R\n*\n"));
  EXPECT_EQ(bench.fault(), Fault::invalidElementNumber);
  EXPECT_EQ(bench.faultLine(), 3);
  EXPECT_THAT(bench.faultText(), HasSubstr("? 3A R 1  : 3A"));
}

// X in every statement: the position is not in use.  The last statement decides about "@".
TEST(BuildModelTable, MarksTheDataPositionsInUse) {
  SpecBench bench(Specification("Models=X,@,?,?,R\nX,?,@,?,R\n*\n", 4));
  const auto& active = bench.design().maps.DataPositionActive;
  ASSERT_EQ(active.rows(), 4);
  EXPECT_EQ(active[DataPosition(1)], 0);
  EXPECT_EQ(active[DataPosition(2)], 1);
  EXPECT_EQ(active[DataPosition(3)], -1);
  EXPECT_EQ(active[DataPosition(4)], 1);
}

TEST(BuildModelTable, DataPositionsFollowTheEntryMap) {
  SpecBench bench("Flanks=2\nEntered-in-data=2,0,1\nModels=X,?,R\n");
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  const auto& active = bench.design().maps.DataPositionActive;
  ASSERT_EQ(active.rows(), 3);
  EXPECT_EQ(active[DataPosition(1)], 0);  // the first active position is X
  EXPECT_EQ(active[DataPosition(2)], 0);  // not used
  EXPECT_EQ(active[DataPosition(3)], 1);
}

TEST(BuildModelTable, DoesNothingWithoutFlanks) {
  SpecBench bench("Title=x\n", SpecBench::Through::matching);
  EXPECT_EQ(bench.fault(), Fault::none);
  EXPECT_EQ(bench.design().ModelLast, -1);
}

TEST(MatchElementsToModels, ReadsTypesMaximaAndTheLargestOfThem) {
  SpecBench bench(Specification("Models=1,?,R5\n2,?,D\n3,?,M\n?,?,R\n*\n"),
                  SpecBench::Through::matching);
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  const ModelTable& models = bench.models();
  EXPECT_THAT(
      std::vector<std::int32_t>(models.ModelCategoryMax.begin(), models.ModelCategoryMax.end()),
      ElementsAre(5, 1, -1, 9));
  EXPECT_EQ(models.ModelScaleType[ModelRow(2)], ScaleType::missing);
  EXPECT_EQ(bench.design().MaxCategory, 9);
  EXPECT_TRUE(bench.shows("Matching elements to models "));
}

TEST(MatchElementsToModels, FindsAScaleByItsNameInAnyCase) {
  SpecBench bench(Specification("Models=1,?,quality\n?,?,r4\n*\n"
                                "Rating scale=Other,R2\n*\n"
                                "Rating scale=Quality,R3\n1=a\n*\n"),
                  SpecBench::Through::matching);
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  const ModelTable& models = bench.models();
  EXPECT_EQ(models.ModelScale[ModelRow(0)].number(), 1);
  EXPECT_EQ(models.ModelScale[ModelRow(1)].number(), -1);
  EXPECT_EQ(models.ModelCategoryMax[ModelRow(0)], 3);
  // The scale's type takes the place of its name.
  EXPECT_THAT(Statements(models), ElementsAre("1,?,R3,1", "?,?,R4,1"));
}

TEST(MatchElementsToModels, FindsEveryOneOfManyScales) {
  std::string text = "Models=\n";
  for (int i = 0; i < 50; ++i) text += "?,?,S" + std::to_string(i * 7 % 50) + "\n";
  text += "*\n";
  for (int i = 0; i < 50; ++i)
    text += "Rating scale=s" + std::to_string(i) + ",R" + std::to_string(i + 1) + "\n*\n";
  SpecBench bench(Specification(text), SpecBench::Through::matching);
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  for (int i = 0; i < 50; ++i)
    EXPECT_EQ(bench.models().ModelCategoryMax[ModelRow(i)], i * 7 % 50 + 1) << i;
}

TEST(MatchElementsToModels, WarnsOfNamesThatDifferOnlyInCase) {
  SpecBench bench(Specification("Models=?,?,rs\nRating scale=rs,R3\n*\nRating scale=RS,R4\n*\n"),
                  SpecBench::Through::matching);
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_TRUE(bench.shows("Warning (12)! Duplicate ratingscale= :RS"));
  EXPECT_EQ(bench.models().ModelScale[ModelRow(0)].number(), 0);  // the first one defined
}

TEST(MatchElementsToModels, RefusesATypeThatIsNoneWithItsStatement) {
  for (const std::string type : {"Q", "B", "B0", "R256", ""}) {
    SpecBench bench(Specification("Models=1,?,R\n?,?," + type + ",1\n*\n"),
                    SpecBench::Through::matching);
    EXPECT_EQ(bench.fault(), Fault::invalidScaleType) << type;
    EXPECT_EQ(bench.faultLine(), 3) << type;
    EXPECT_THAT(bench.faultText(), HasSubstr("?,?," + type + ",1 Specification is: Invalid scale"));
  }
}

TEST(MatchElementsToModels, ReadsWeightsAndReplacesTextsThatAreNone) {
  SpecBench bench(Specification("Models=1,?,R,2*1.5\n2,?,R,0\n3,?,R,+abc\n?,?,R,-.5\n*\n"),
                  SpecBench::Through::matching);
  const ModelTable& models = bench.models();
  EXPECT_THAT(std::vector<float>(models.ModelWeight.begin(), models.ModelWeight.end()),
              ElementsAre(3.0f, 0.0f, 1.0f, -0.5f));
  EXPECT_EQ(StatementText(models, ModelRow(2)), "3,?,R,1");
}

TEST(MatchElementsToModels, KeepComesFromTheTypeOrFromTheScale) {
  SpecBench bench(Specification("Models=1,?,R5K\n2,?,kept\n?,?,R5\n*\n"
                                "Rating scale=kept,R3,G,K\n*\n"),
                  SpecBench::Through::matching);
  const ModelTable& models = bench.models();
  EXPECT_THAT(std::vector<int>(models.ModelKeep.begin(), models.ModelKeep.end()),
              ElementsAre(1, 1, 0));
}

}  // namespace
}  // namespace flanks
