#include "spec/element_values.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "spec/anchoring.h"

namespace flanks {
namespace {

TEST(GroupText, IsCutFromTheLabelByADollarForm) {
  struct Case {
    std::string text, label, group;
  };
  const Case cases[] = {
      {"12", "Kid 7", "12"},    {"", "Kid 7", ""},
      {"$5", "Kid 7", "7"},     {"$2W3", "a123b", "123"},
      {"$2w3", "a123b", "123"}, {"$ 2 W 3", "a123b", "123"},
      {"$2W9", "a123", "123"},  {"$9W2", "abc", ""},
      {"$0", "abc", ""},        {"$", "abc", ""},
      {"$W2", "12", ""},        {"$1W0", "12", ""},
      {"$3W3", "ab 4c", "4c"},  {"$99999999999999999999", "abc", ""},
  };
  for (const Case& c : cases) EXPECT_EQ(ResolveGroupText(c.text, c.label), c.group) << c.text;
}

TEST(ZeroAnchor, IsTheSmallestValueKeptAndNeverZero) {
  EXPECT_NEAR(ZeroAnchor(80.0f) / 1.8048513e-35f, 1.0f, 1e-6f);  // exp(-80)
  EXPECT_GT(ZeroAnchor(300.0f), 0.0f);                           // exp(-300) is 0 in 32 bits
}

TEST(OptionLetters, DecideHowMeasuresAreTaken) {
  struct Case {
    std::string options;
    bool anchoring, dummy, group;
  };
  const Case cases[] = {
      {" ", false, false, false},  {" A", true, false, false},   {" ANCHORED", true, false, false},
      {" D", false, true, false},  {" G", false, false, true},   {" X", false, false, true},
      {" A G", true, false, true}, {" PQX", false, false, true}, {" PG", false, false, false},
      {"", false, false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsAnchoring(c.options), c.anchoring) << c.options;
    EXPECT_EQ(IsDummyFlank(c.options), c.dummy) << c.options;
    EXPECT_EQ(IsGroupAnchoring(c.options), c.group) << c.options;
  }
}

TEST(ElementTexts, LaterLineReplacesOnlyWhatItGives) {
  ElementTexts texts;
  const ElementSlot one(1), two(2), three(3), four(4);
  texts.Set(one, three, "1.5", "7", 10, 4);
  texts.Set(two, two, "", "8", 11, 4);
  texts.Set(three, four, "2", "", 12, 4);
  texts.Set(one, one, "", "", 13, 4);
  EXPECT_EQ(texts.measure(one), "1.5");
  EXPECT_EQ(texts.group(one), "7");
  EXPECT_EQ(texts.lineNumber(one), 10);
  EXPECT_EQ(texts.measure(two), "1.5");
  EXPECT_EQ(texts.group(two), "8");
  EXPECT_EQ(texts.lineNumber(two), 11);
  EXPECT_EQ(texts.measure(three), "2");
  EXPECT_EQ(texts.group(three), "7");
  EXPECT_EQ(texts.measure(four), "2");
  EXPECT_EQ(texts.group(four), "");
}

TEST(ElementTexts, AreEmptyWhereNoLineGaveAny) {
  ElementTexts texts;
  EXPECT_EQ(texts.measure(ElementSlot(1)), "");
  texts.Set(ElementSlot(2), ElementSlot(2), "1", "", 10, 3);
  EXPECT_EQ(texts.measure(ElementSlot(1)), "");
  EXPECT_EQ(texts.group(ElementSlot(3)), "");
  EXPECT_EQ(texts.lineNumber(ElementSlot(3)), 0);
}

ElementTable TargetsFor(int elements) {
  ElementTable table;
  table.ElementTarget.assign(elements, ElementSlot());
  return table;
}

TEST(Targets, ChainCollapsesToItsLastElement) {
  ElementTable table = TargetsFor(4);
  EXPECT_EQ(SetTarget(table, ElementSlot(1), ElementSlot(2)), Fault::none);
  EXPECT_EQ(SetTarget(table, ElementSlot(2), ElementSlot(3)), Fault::none);
  EXPECT_EQ(CollapseTargets(table).number(), 0);
  EXPECT_EQ(table.ElementTarget[ElementSlot(1)].number(), 3);
  EXPECT_EQ(table.ElementTarget[ElementSlot(2)].number(), 3);
  EXPECT_EQ(table.ElementTarget[ElementSlot(3)].number(), 0);
  EXPECT_EQ(table.ElementTarget[ElementSlot(4)].number(), 0);
}

TEST(Targets, LoopIsCircular) {
  ElementTable table = TargetsFor(2);
  EXPECT_EQ(SetTarget(table, ElementSlot(1), ElementSlot(1)), Fault::circularTarget);
  table = TargetsFor(2);
  EXPECT_EQ(SetTarget(table, ElementSlot(1), ElementSlot(2)), Fault::none);
  EXPECT_EQ(SetTarget(table, ElementSlot(2), ElementSlot(1)), Fault::circularTarget);
}

// Ten elements in a chain are the most; eleven are too many, from whichever end they are given.
TEST(Targets, ChainOfElevenIsTooLong) {
  for (const int elements : {10, 11}) {
    ElementTable fromTheEnd = TargetsFor(elements);
    Fault fault = Fault::none;
    for (int i = elements - 1; i >= 1; --i)
      if (fault == Fault::none) fault = SetTarget(fromTheEnd, ElementSlot(i), ElementSlot(i + 1));
    EXPECT_EQ(fault, elements == 10 ? Fault::none : Fault::circularTarget);

    ElementTable fromTheStart = TargetsFor(elements);
    for (int i = 1; i < elements; ++i)
      EXPECT_EQ(SetTarget(fromTheStart, ElementSlot(i), ElementSlot(i + 1)), Fault::none);
    EXPECT_EQ(CollapseTargets(fromTheStart).number(), elements == 10 ? 0 : 1);

    // Collapsing must not shorten a chain before it was measured.
    ElementTable downward = TargetsFor(elements);
    for (int i = elements; i >= 2; --i)
      EXPECT_EQ(SetTarget(downward, ElementSlot(i), ElementSlot(i - 1)), Fault::none);
    EXPECT_EQ(CollapseTargets(downward).number(), elements == 10 ? 0 : 11);
  }
}

}  // namespace
}  // namespace flanks
