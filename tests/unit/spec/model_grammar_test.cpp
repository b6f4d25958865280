#include "spec/model_grammar.h"

#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

struct TypeCase {
  std::string text;
  ScaleType type;
  int maximum;
  bool keep = false;
};

TEST(ScaleTypeText, ReadsEveryForm) {
  const TypeCase cases[] = {
      {"D", ScaleType::binomial, 1},       {"d", ScaleType::binomial, 1},
      {"R", ScaleType::rating, 9},         {"R0", ScaleType::rating, 9},
      {"r5", ScaleType::rating, 5},        {" R 5 ", ScaleType::rating, 5},
      {"R255", ScaleType::rating, 255},    {"B1", ScaleType::binomial, 1},
      {"B255", ScaleType::binomial, 255},  {"P", ScaleType::poisson, 255},
      {"M", ScaleType::missing, -1},       {"RK", ScaleType::rating, 9, true},
      {"R5K", ScaleType::rating, 5, true}, {"kR5", ScaleType::rating, 5, true},
      {"R007", ScaleType::rating, 7},
  };
  for (const TypeCase& c : cases) {
    const ScaleTypeText read = ParseScaleType(c.text, 9, 255);
    EXPECT_EQ(read.fault, Fault::none) << c.text;
    EXPECT_EQ(read.type, c.type) << c.text;
    EXPECT_EQ(read.maximum, c.maximum) << c.text;
    EXPECT_EQ(read.keep, c.keep) << c.text;
  }
}

TEST(ScaleTypeText, RefusesEverythingElse) {
  for (const std::string text : {"", " ", "K", "Q", "B", "B0", "R256", "B256", "D1", "P5", "M1",
                                 "R-1", "R5X", "R99999999999999999999", "5", "RR", "R+5", "R1.5"})
    EXPECT_EQ(ParseScaleType(text, 9, 255).fault, Fault::invalidScaleType) << text;
}

struct ReferenceCase {
  std::string text;
  std::string normalised;
  std::int32_t low, high;
};

TEST(ElementReference, NormalisesAndBounds) {
  const ReferenceCase cases[] = {
      {"", "", -1, -1},       {"  ", "", -1, -1},
      {"-", "", -1, -1},      {"B", "B", -1, -1},
      {"?", "?", -1, -1},     {"$", "$", -1, -1},
      {"?$", "?$", -1, -1},   {"$?", "?$", -1, -1},
      {"?B", "B?", -1, -1},   {"b?", "B?", -1, -1},
      {"3", "3", 3, 3},       {" 03", "3", 3, 3},
      {"-3", "-3", 3, 3},     {"- 3", "-3", 3, 3},
      {"-?", "-?", -1, -1},   {"B-3", "B-3", 3, 3},
      {"-B3", "B-3", 3, 3},   {"3#", "#3", 3, 3},
      {"#", "#", -1, -1},     {"@", "@", -1, -1},
      {"4@", "@4", 4, 4},     {"4-2", "2-4", 2, 4},
      {"2_4", "2-4", 2, 4},   {"-4-2", "-2-4", 2, 4},
      {"#2-4", "#2-4", 2, 4}, {"X", "X", -2, -2},
      {"x", "X", -2, -2},     {"-X3?", "X", -2, -2},
      {"BX", "BX", -2, -2},   {"0", "0", 0, 0},
      {"?#", "#?", -1, -1},   {"2147483646", "2147483646", 2147483646, 2147483646},
  };
  for (const ReferenceCase& c : cases) {
    const ElementReference read = ParseElementReference(c.text);
    EXPECT_EQ(read.fault, Fault::none) << c.text;
    EXPECT_EQ(read.normalised, c.normalised) << c.text;
    EXPECT_EQ(read.reference.ModelLow, c.low) << c.text;
    EXPECT_EQ(read.reference.ModelHigh, c.high) << c.text;
  }
}

struct MarkCase {
  std::string text;
  std::string marks;  // e empty, i ignored, d dummy, s structured, r reversed, b bias
};

std::string MarksOf(const PositionReference& r) {
  return std::string(r.empty ? "e" : "") + (r.ignored ? "i" : "") + (r.dummy ? "d" : "") +
         (r.structured ? "s" : "") + (r.reversed ? "r" : "") + (r.bias ? "b" : "");
}

TEST(ElementReference, FirstMarkThatAppliesDecides) {
  const MarkCase cases[] = {
      {"", "e"},    {"-", "e"},    {"B", "eb"}, {"X", "i"},      {"X#@?", "i"},
      {"XB", "ib"}, {"?", ""},     {"?#", ""},  {"?@", ""},      {"@?", ""},
      {"$#", ""},   {"-?", "r"},   {"@", "d"},  {"@#3", "d"},    {"#", "s"},
      {"#3", "s"},  {"-#3", "sr"}, {"3", ""},   {"B-@3", "drb"},
  };
  for (const MarkCase& c : cases) {
    const std::string marks = MarksOf(ParseElementReference(c.text).reference);
    EXPECT_EQ(marks, c.marks) << c.text;
  }
}

TEST(ElementReference, OnlyEmptyIgnoredAndDummyPositionsDoNotMeasure) {
  for (const std::string text : {"?", "$", "3", "#", "-3", "B3"})
    EXPECT_TRUE(ParseElementReference(text).reference.measures()) << text;
  for (const std::string text : {"", "X", "@", "@3"})
    EXPECT_FALSE(ParseElementReference(text).reference.measures()) << text;
}

TEST(ElementReference, RefusesWhatIsNoElementNumber) {
  for (const std::string text : {"3a", "2147483647", "1-", "--3", "1-2-3", "_3", "3.5", "#-3", "*"})
    EXPECT_EQ(ParseElementReference(text).fault, Fault::invalidElementNumber) << text;
}

}  // namespace
}  // namespace flanks
