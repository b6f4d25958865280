#include "spec/delements.h"

#include <gtest/gtest.h>
#include <string>

#include "support/spec_bench.h"

namespace flanks {
namespace {

std::string Letters(SpecBench& bench) {
  std::string all;
  for (const std::string& letters : bench.flanks().FlankDelements) all += letters + " ";
  return all;
}

struct Case {
  std::string value, letters;
};

TEST(Delements, GivesEachFlankItsLetters) {
  const Case cases[] = {
      {"", "N. N. N. "},      {"N", "N. N. N. "},      {"L", "L. L. L. "},
      {"2L", "N. L. N. "},    {"2l,1NL", "NL L. N. "}, {"2L,LN", "LN L. LN "},
      {"LN,2L", "LN L. LN "}, {"2", "N. N. N. "},      {"3LE2W4,N", "N. N. L. "},
  };
  for (const Case& c : cases) {
    SpecBench bench("Flanks=3\nDelements=" + c.value + "\n");
    EXPECT_EQ(bench.fault(), Fault::none) << c.value << bench.faultText();
    EXPECT_EQ(Letters(bench), c.letters) << c.value;
  }
  SpecBench absent("Flanks=3\n");
  EXPECT_EQ(Letters(absent), "N. N. N. ");
}

TEST(Delements, WarnsOfItemsThatSayNothing) {
  for (const std::string item : {"2Q", "LL", "NLN", "1LEX", "2LW", "L2"}) {
    SpecBench bench("Flanks=3\nDelements=1L," + item + "\n");
    EXPECT_TRUE(bench.shows("Warning (17)! \"" + item + "\" in Delements=\"1L," + item +
                            "\" ignored, not N or L"))
        << bench.screen();
    EXPECT_EQ(Letters(bench), "L. N. N. ");
  }
}

TEST(Delements, RefusesAFlankThatIsNotThere) {
  for (const std::string item : {"4L", "0L", "99999999999999999999L"}) {
    SpecBench bench("Flanks=3\nDelements=" + item + "\n");
    EXPECT_EQ(bench.fault(), Fault::flankOutOfRange) << item;
  }
}

TEST(Delements, CutsTheIdentifierOutOfItsField) {
  struct Cut {
    std::string item, field, identifier;
  };
  const Cut cuts[] = {
      {"L", "ab12cd", "ab12cd"}, {"LE3", "ab12cd", "12cd"}, {"LE3W2", "ab12cd", "12"},
      {"LW2", "ab12cd", "ab"},   {"LW2E3", "ab12cd", "12"}, {"LE9W2", "ab", ""},
      {"LE2W3", "a b c", "b"},
  };
  for (const Cut& c : cuts) {
    SpecBench bench("Flanks=1\nDelements=" + c.item + "\n");
    EXPECT_EQ(CutIdentifier(bench.flanks(), FlankNo(1), c.field), c.identifier) << c.item;
  }
}

class LabelSearch : public ::testing::Test {
 protected:
  int Find(std::string_view text, int flank = 1) {
    return finder.FindElementByLabel(text, FlankNo(flank)).number();
  }
  SpecBench bench{
      "Flanks=3\nLabels=\n1,P\n1=Ann\n2=Bob: the tall one\n3=a_b\n4=:hidden\n5=Ann\n6=Bob\n"
      "7=Cy :x\n*\n2,Q\n1=Ann\n*\n"};
  LabelFinder finder{bench.flanks(), bench.elements(), bench.console};
};

TEST_F(LabelSearch, FindsTheTextBeforeTheColon) {
  EXPECT_EQ(Find("Ann"), 1);  // the lowest number of two
  EXPECT_EQ(Find("Bob"), 2);
  EXPECT_EQ(Find("a-b"), 3);
  EXPECT_EQ(Find("Cy"), 7);
  EXPECT_EQ(Find("Ann", 2), 8);
}

TEST_F(LabelSearch, ComparesAsItIs) {
  for (const std::string text : {"ann", "An", "Anna", "a_b", "", ":hidden", "Bob: the tall one"})
    EXPECT_EQ(Find(text), 0) << text;
  EXPECT_EQ(Find("Bob", 2), 0);
  EXPECT_EQ(Find("Ann", 3), 0);  // a Flank without elements
}

TEST_F(LabelSearch, SaysOnceThatItSortsAFlank) {
  Find("Ann");
  Find("Bob");
  const std::string screen = bench.screen();
  const std::size_t first = screen.find("Sorting labels for flank 1");
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(screen.find("Sorting labels for flank 1", first + 1), std::string::npos);
  EXPECT_EQ(screen.find("Sorting labels for flank 2"), std::string::npos);
}

TEST(LabelFinder, FindsEachOfManyLabels) {
  std::string text = "Flanks=1\nLabels=\n1,P\n";
  for (int i = 1; i <= 5000; ++i) text += std::to_string(i) + "=e" + std::to_string(i * 3) + "\n";
  SpecBench bench(text + "*\n");
  LabelFinder finder(bench.flanks(), bench.elements(), bench.console);
  for (int i = 1; i <= 5000; ++i) {
    EXPECT_EQ(finder.FindElementByLabel("e" + std::to_string(i * 3), FlankNo(1)).number(), i);
    EXPECT_EQ(finder.FindElementByLabel("e" + std::to_string(i * 3 + 1), FlankNo(1)).number(), 0);
  }
}

}  // namespace
}  // namespace flanks
