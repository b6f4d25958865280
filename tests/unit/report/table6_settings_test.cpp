// `Vertical=` and `Yardstick=` as the rulers understand them.
#include "report/table6_settings.h"

#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

// Four Flanks: 21, 22 and 3 elements of different measures, and two of one measure.
struct Flanks {
  FlankTable table;
  Column<FlankNo, RulerFlank> shown;

  Flanks() {
    for (const std::int32_t count : {21, 22, 3, 2}) {
      table.FlankOptions.push(" ");
      table.FlankElementCount.push(count);
      shown.push({count, -1.0f, count == 2 ? -1.0f : 1.0f});
    }
  }
  RulerList List(std::string_view vertical) const { return BuildRulerList(vertical, table, shown); }
  std::string Text(std::string_view vertical) const { return RulerListText(List(vertical)); }
};

TEST(RulerList, ByRuleLargeFlanksAreAsterisksAndEqualMeasuresAreLeftOut) {
  // 22 elements are more than 20 beyond the first, 21 are not.
  for (const char* vertical : {"", "Y", "yes", " Yes,1A"}) {
    const RulerList list = Flanks().List(vertical);
    EXPECT_EQ(RulerListText(list), "1A,2*,3A,S") << vertical;
    EXPECT_EQ(list.omitted, std::vector<int>{4}) << vertical;
    EXPECT_EQ(list.scalesAt, 3U);
  }
}

TEST(RulerList, ByRuleDummyFlanksAndThoseWithNothingToShowAreLeftOut) {
  Flanks flanks;
  flanks.table.FlankOptions[FlankNo(1)] = " D";
  flanks.table.FlankOptions[FlankNo(2)] = " A";
  flanks.shown[FlankNo(3)] = {};
  const RulerList list = flanks.List("Y");
  EXPECT_EQ(RulerListText(list), "2*,S");
  EXPECT_EQ(list.omitted, std::vector<int>{4});
}

TEST(RulerList, EachItemIsAFlankAndALetter) {
  struct Case {
    const char *vertical, *list, *why;
  };
  for (const Case& c :
       {Case{"1A,2N,3*,4C,S", "1A,2N,3*,4C,S", "each form"},
        Case{"3a, 2 n ,1c", "3A,2N,1C", "any case, blanks, the order given"},
        Case{"1,2Q,3xN", "1A,2A,3A", "another letter, or none, is A"},
        Case{"1A,1N", "1A,1N", "a Flank twice"}, Case{"4A", "4A", "forced: all measures the same"},
        Case{"S,1A", "S,1A", "scale columns where they are named"},
        Case{"1A,SL,2A", "1A,SL,2A", "with legends"},
        Case{"1A,#S", "1A,#S", "with a number in each row"},
        Case{"S,#S,sl", "#SL", "one set of scale columns"},
        Case{"(N,#S)", "1N,2N,3N,4N,#S", "a letter alone is for every Flank"},
        Case{"*", "1*,2*,3*,4*", "likewise"}, Case{",,1A,", "1A", "empty items are none"},
        Case{"()", "", "nothing"}, Case{"0A,5N,99999999999999999999C,3A", "3A", "no such Flank"}})
    EXPECT_EQ(Flanks().Text(c.vertical), c.list) << c.vertical << ": " << c.why;
}

TEST(RulerList, ItemsOfFlanksThatAreNotThereAreKept) {
  const RulerList list = Flanks().List("5N,1A,0");
  EXPECT_EQ(list.notThere, (std::vector<std::string>{"5N", "0"}));
  EXPECT_FALSE(list.empty());
  EXPECT_TRUE(Flanks().List("5N").empty());
}

TEST(RulerList, ItemsWithMoreThanAFlankAndAFormAreKept) {
  const RulerList list = Flanks().List("1A 2A,-1A,3*,1.5A,S,#S,N");
  EXPECT_EQ(list.misread, (std::vector<std::string>{"1A2A", "1.5A"}));
  EXPECT_EQ(list.notThere, std::vector<std::string>{"-1A"});
}

TEST(RulerList, FormsShowWhatTheyHave) {
  const RulerList list = Flanks().List("2*,SL");
  EXPECT_EQ(list.items[0].flank, FlankNo(2));
  EXPECT_EQ(list.items[0].form, RulerForm::asterisks);
  EXPECT_TRUE(list.scales && list.legends && !list.everyNumber);
}

TEST(RulerList, AFirstLetterNIsNoTable) {
  for (const char* off : {"N", "n", "No", "N,1A"}) EXPECT_TRUE(AreRulersOff(off)) << off;
  for (const char* on : {"", "Y", "1N", "(N,#S)"}) EXPECT_FALSE(AreRulersOff(on)) << on;
}

TEST(Yardsticks, FourNumbersAndAWord) {
  struct Case {
    const char* text;
    int columns;
    double lines, low, high;
    bool measures;
  };
  for (const Case& c :
       {Case{"", 0, 0, 0, 0, false}, Case{"0,5,-2,3,End", 0, 5, -2, 3, false},
        Case{"80,2.5,-1.5,4,Measure", 80, 2.5, -1.5, 4, true}, Case{"0,1", 0, 1, 0, 0, false},
        Case{",,-4,4,m", 0, 0, -4, 4, true}, Case{"0,5,By measure", 0, 5, 0, 0, true},
        Case{"12.9,1/2,2-6,1+1,At ends", 12, .5, -4, 2, false}, Case{"-3,x,,,", 0, 0, 0, 0, false},
        Case{"100000", 1000, 0, 0, 0, false}}) {
    const Yardstick yardstick = ReadYardstick(c.text);
    EXPECT_EQ(yardstick.columns, c.columns) << c.text;
    EXPECT_EQ(yardstick.lines, c.lines) << c.text;
    EXPECT_EQ(yardstick.low, c.low) << c.text;
    EXPECT_EQ(yardstick.high, c.high) << c.text;
    EXPECT_EQ(yardstick.extremesAtMeasures, c.measures) << c.text;
  }
}

}  // namespace
}  // namespace flanks
