#include "data/matching.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/data_design.h"

namespace flanks {
namespace {

constexpr std::int32_t kUnknown = kStatusUnspecified;
constexpr std::int32_t kNull = kStatusNullElement;
constexpr std::int32_t kEmpty = kStatusEmptyFlank;

// Two positions; a status above 0 is a known element of that number.
LineElements Elements(std::vector<std::int32_t> statuses) {
  LineElements elements;
  for (const std::int32_t status : statuses) {
    elements.PositionStatus.push(status);
    elements.PositionElement.push(status > 0 ? status : kNoElementNumber);
    elements.active.push(1);
  }
  return elements;
}

class TwoFlanks : public DataRun {
 public:
  explicit TwoFlanks(const std::vector<std::string>& statements) {
    for (int f = 0; f < 2; ++f) Flank({{1, ""}, {2, ""}, {3, ""}, {4, ""}, {5, ""}});
    for (const std::string& statement : statements) Model(statement);
  }
};

TEST(FindStatement, TheFirstThatFitsTakesTheResponse) {
  struct Case {
    std::vector<std::string> statements;
    std::vector<std::int32_t> line;
    ResponseFate fate;
    int model;
    const char* why;
  };
  using enum ResponseFate;
  const std::vector<Case> cases = {
      {{"1,?,R5", "?,?,R5"}, {1, 2}, valid, 0, "the number comes first"},
      {{"1,?,R5", "?,?,R5"}, {2, 2}, valid, 1, "the others fall to any element"},
      {{"?,?,R5", "1,?,R5"}, {1, 2}, valid, 0, "order decides, not precision"},
      {{"2-4,?,R5"}, {2, 1}, valid, 0, "the low end"},
      {{"2-4,?,R5"}, {4, 1}, valid, 0, "the high end"},
      {{"2-4,?,R5"}, {5, 1}, unmatched, -1, "beyond"},
      {{"2-4,?,R5"}, {1, 1}, unmatched, -1, "before"},
      {{"4-2,?,R5"}, {3, 1}, valid, 0, "a reversed range"},
      {{"@3,?,R5"}, {3, 1}, valid, 0, "a dummy with a number matches it"},
      {{"@3,?,R5"}, {2, 1}, unmatched, -1, "and no other"},
      {{"#,?,R5"}, {2, 1}, valid, 0, "# is any element"},
      {{"-2,?,R5"}, {2, 1}, valid, 0, "a reversed position matches alike"},
      {{",?,R5"}, {2, 1}, valid, 0, "an empty reference"},

      {{"?,?,R5"}, {1, kNull}, valid, 0, "the null element is any element"},
      {{"?,1,R5"}, {1, kNull}, unmatched, -1, "and no number"},
      {{"?,X,R5"}, {1, kNull}, valid, 0, "and ignored"},
      {{"?,?,R5"}, {kNull, kNull}, valid, 0, "twice"},

      {{"?,?,R5"}, {kUnknown, 1}, unspecified, -1, "any element, but not an unknown one"},
      {{"X,?,R5"}, {kUnknown, 1}, valid, 0, "which is ignored here"},
      {{",?,R5"}, {kUnknown, 1}, valid, 0, "and here"},
      {{"2,?,R5"}, {kUnknown, 1}, unspecified, -1, "the cause is the unknown element"},
      {{"2,3,R5"}, {kUnknown, 1}, unmatched, -1, "the last position fails first"},
      {{"3,2,R5"}, {1, kUnknown}, unspecified, -1, "the unknown element is seen first"},
      {{"2,?,R5", "X,?,R5"}, {kUnknown, 1}, valid, 1, "the search goes on behind a number"},
      {{"?,?,R5", "X,?,R5"}, {kUnknown, 1}, unspecified, -1, "any element ends it"},
      {{"?,2,R5", "X,?,R5"}, {kUnknown, 1}, valid, 1, "unless the statement fails elsewhere"},
      {{"?,?,R5"}, {kUnknown, kNull}, unspecified, -1, "beside a null element"},

      {{"?,?,R5"}, {1, kEmpty}, valid, 0, "a Flank without elements says nothing"},
      {{"?,1,R5"}, {1, kEmpty}, unmatched, -1, "it has no number"},
      {{"?,?,R5"}, {kEmpty, kEmpty}, unspecified, -1, "nothing known at all"},
      {{"?,?,R5"}, {kNull, kEmpty}, unspecified, -1, "nor here"},
      {{"X,?,R5"}, {1, kEmpty}, unspecified, -1, "X does not measure"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.statements.front() + " : " + c.why);
    TwoFlanks test(c.statements);
    const StatementSearch found = FindStatement(test.design(), Elements(c.line));
    EXPECT_EQ(found.fate, c.fate);
    if (c.fate == valid) {
      EXPECT_EQ(found.model.number(), c.model);
    }
  }
}

TEST(FindStatement, APositionThatIsNotActiveAlwaysFits) {
  TwoFlanks test({"?,X,R5"});
  LineElements elements = Elements({1, kNull});
  elements.active[Position(2)] = 0;
  EXPECT_EQ(FindStatement(test.design(), elements).fate, ResponseFate::valid);
}

struct ScoreCase {
  const char* type;
  const char* text;
  ResponseFate fate;
  int category;
};

TEST(ScoreResponse, LimitsAreThoseOfTheScaleType) {
  using enum ResponseFate;
  for (const ScoreCase& c : {
           ScoreCase{"R5", "5", valid, 5},        ScoreCase{"R5", "6", invalid, 0},
           ScoreCase{"R", "9", valid, 9},         ScoreCase{"R", "10", invalid, 0},
           ScoreCase{"B5", "5", valid, 5},        ScoreCase{"B5", "6", invalid, 0},
           ScoreCase{"D", "1", valid, 1},         ScoreCase{"D", "2", invalid, 0},
           ScoreCase{"P", "255", valid, 255},     ScoreCase{"P", "256", invalid, 0},
           ScoreCase{"R255", "255", valid, 255},  ScoreCase{"M", "3", invalidModel, 0},
           ScoreCase{"M", "-3", invalidModel, 0}, ScoreCase{"R5", "-1", negative, 0},
           ScoreCase{"R5", "1-2", negative, 0},   ScoreCase{"R5", "_", negative, 0},
           ScoreCase{"R5", "x", invalid, 0},      ScoreCase{"R5", "2.5", invalid, 0},
           ScoreCase{"R5", "2.0", valid, 2},      ScoreCase{"R5", "007", invalid, 0},
           ScoreCase{"R5", "003", valid, 3},      ScoreCase{"R5", "3x", valid, 3},
           ScoreCase{"R5", "+3", valid, 3},
       }) {
    TwoFlanks test({std::string("?,?,") + c.type});
    const ScoredResponse scored = ScoreResponse(test.design(), ModelRow(0), c.text);
    EXPECT_EQ(scored.fate, c.fate) << c.type << " " << c.text;
    EXPECT_EQ(scored.category, c.category) << c.type << " " << c.text;
  }
}

// What a scale makes of "1-3" (2), "x" (0), "9" (-1), "4" (4) and "a" (17).
DataRun& WithRecodes(DataRun& run) {
  for (int f = 0; f < 2; ++f) run.Flank({{1, ""}, {2, ""}});
  run.Scale("rs", "R5",
            {{"2", "1-3", true, 1.0, 3.0},
             {"0", "x", false, 0, 0},
             {"-1", "9", false, 0, 0},
             {"4", "4", false, 0, 0},
             {"17", "a", false, 0, 0}});
  run.Model("?,?,rs");
  return run;
}

TEST(ScoreResponse, AScaleRecodesTextsAndRangesOfNumbers) {
  using enum ResponseFate;
  struct Case {
    const char* text;
    ResponseFate fate;
    int category;
    const char* recodedTo;
    const char* why;
  };
  DataRun run;
  WithRecodes(run);
  for (const Case& c : {
           Case{"1.5", valid, 2, "2", "within the range"},
           Case{"1", valid, 2, "2", "its low end"},
           Case{"3", valid, 2, "2", "its high end"},
           Case{"3.01", invalid, 0, "", "beyond it"},
           Case{"1-3", valid, 2, "2", "the item itself"},
           Case{"x", valid, 0, "0", "a text"},
           Case{"X", invalid, 0, "", "which is compared as it is"},
           Case{"9", negative, 0, "-1", "recoded to a negative"},
           Case{"4", valid, 4, "", "recoded to itself"},
           Case{"a", invalid, 0, "17", "recoded beyond the maximum"},
           Case{"5", valid, 5, "", "left alone"},
           Case{"2x", valid, 2, "", "no number as a whole, so no range takes it"},
       }) {
    const ScoredResponse scored = ScoreResponse(run.design(), ModelRow(0), c.text);
    EXPECT_EQ(scored.fate, c.fate) << c.text << ": " << c.why;
    EXPECT_EQ(scored.category, c.category) << c.text << ": " << c.why;
    EXPECT_EQ(scored.recodedTo, c.recodedTo) << c.text << ": " << c.why;
  }
}

TEST(CategoryTable, KnowsTheCategoriesOfPlainNumbersAndLeavesTheRest) {
  DataRun run;
  WithRecodes(run);
  CategoryTable table(run.design());
  EXPECT_EQ(table.Of(ModelRow(0), 0), 0);
  EXPECT_EQ(table.Of(ModelRow(0), 1), 2);
  EXPECT_EQ(table.Of(ModelRow(0), 4), 4);
  EXPECT_EQ(table.Of(ModelRow(0), 6), CategoryTable::kLookClosely);
  EXPECT_EQ(table.Of(ModelRow(0), 9), CategoryTable::kLookClosely);
  TwoFlanks missing({"?,?,M", "?,?,P"});
  CategoryTable others(missing.design());
  EXPECT_EQ(others.Of(ModelRow(0), 1), CategoryTable::kLookClosely);
  EXPECT_EQ(others.Of(ModelRow(1), 255), 255);
}

}  // namespace
}  // namespace flanks
