#include "data/unspecified.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

using ::testing::ElementsAre;

// Two Flanks: the numbers 1 and 3, and no element; or with `last` in the place of 3.
struct TwoFlanks {
  FlankTable flanks;
  ElementTable elements;

  explicit TwoFlanks(std::int32_t last = 3) {
    elements.ElementNumber.push(1);
    elements.ElementNumber.push(last);
    Flank(1, last, 2);
    Flank(0, 0, 0);
  }
  void Flank(std::int32_t low, std::int32_t high, std::int32_t count) {
    flanks.FlankLow.push(low);
    flanks.FlankHigh.push(high);
    flanks.FlankElementCount.push(count);
    flanks.FlankFirstSlot.push(ElementSlot(count > 0 ? 1 : 0));
  }
};

std::vector<UnspecifiedElement> TakenFrom(UnspecifiedElements& list, std::int64_t nullElement,
                                          const TwoFlanks& two = TwoFlanks()) {
  ElementFinder finder(two.flanks, two.elements);
  return list.Take(two.flanks, finder, nullElement);
}

std::vector<std::string> Texts(const std::vector<UnspecifiedElement>& list) {
  std::vector<std::string> texts;
  for (const UnspecifiedElement& element : list)
    texts.push_back(std::to_string(element.flank.number()) + ":" + std::to_string(element.number) +
                    "=" + element.text);
  return texts;
}

TEST(UnspecifiedElements, AreKeptOnceAndSorted) {
  UnspecifiedElements elements;
  for (int round = 0; round < 3; ++round) {
    elements.AddNumber(FlankNo(2), 9, "9");
    elements.AddNumber(FlankNo(1), 12, "012");
    elements.AddNumber(FlankNo(1), 4, "4");
    elements.AddNumber(FlankNo(1), 12, "12");
  }
  EXPECT_THAT(Texts(TakenFrom(elements, 0)), ElementsAre("1:4=4", "1:12=012", "2:9=9"));
}

TEST(UnspecifiedElements, LabelsAreNumberedBehindTheFlankInOrderOfAppearance) {
  UnspecifiedElements elements;
  elements.AddLabel(FlankNo(1), "zz");
  elements.AddLabel(FlankNo(1), "aa");
  elements.AddLabel(FlankNo(1), "zz");
  elements.AddLabel(FlankNo(2), "zz");
  elements.AddNumber(FlankNo(1), 5, "5");  // taken
  EXPECT_THAT(Texts(TakenFrom(elements, 1)),
              ElementsAre("1:4=zz", "1:5=5", "1:6=aa", "2:2=zz"));  // 1 is the null element
}

TEST(UnspecifiedElements, BehindTheLargestNumberLabelsTakeTheLowestFreeOnes) {
  constexpr std::int32_t kLargest = 2147483646;
  UnspecifiedElements elements;
  elements.AddNumber(FlankNo(1), 4, "4");  // taken, as is 1, and 2 is the null element
  for (const char* label : {"aa", "bb", "cc"}) elements.AddLabel(FlankNo(1), label);
  EXPECT_THAT(Texts(TakenFrom(elements, 2, TwoFlanks(kLargest))),
              ElementsAre("1:3=aa", "1:4=4", "1:5=bb", "1:6=cc"));

  elements.AddLabel(FlankNo(1), "aa");
  elements.AddLabel(FlankNo(1), "bb");
  EXPECT_THAT(Texts(TakenFrom(elements, 0, TwoFlanks(kLargest - 1))),
              ElementsAre("1:2=bb", "1:2147483646=aa"));
}

TEST(UnspecifiedElements, ManyAreKeptOnceWhateverTheirOrder) {
  UnspecifiedElements elements;
  const int count = 5000;
  for (int round = 0; round < 2; ++round)
    for (int i = 0; i < count; ++i) {
      elements.AddNumber(FlankNo(1), i * 2654435761LL % 1000003, "n");
      elements.AddLabel(FlankNo(2), "label " + std::to_string(i));
    }
  const std::vector<UnspecifiedElement> list = TakenFrom(elements, -1);
  ASSERT_EQ(list.size(), 2u * count);  // 1,000,003 is a prime: all these numbers differ
  for (std::size_t i = 1; i < list.size(); ++i) EXPECT_LT(list[i - 1], list[i]);
  EXPECT_EQ(list[count], (UnspecifiedElement{FlankNo(2), 1, "label 0"}));
  EXPECT_EQ(list.back(), (UnspecifiedElement{FlankNo(2), count, "label 4999"}));
  EXPECT_FALSE(elements.cut());
}

TEST(UnspecifiedElements, AFullListTakesNoMoreAndSaysSo) {
  UnspecifiedElements few({.elements = 2});
  few.AddNumber(FlankNo(1), 9, "9");
  few.AddLabel(FlankNo(2), "zz");
  EXPECT_FALSE(few.cut());
  few.AddNumber(FlankNo(1), 9, "9");
  EXPECT_FALSE(few.cut()) << "it is there";
  few.AddNumber(FlankNo(1), 8, "8");
  EXPECT_TRUE(few.cut());
  EXPECT_THAT(Texts(TakenFrom(few, 0)), ElementsAre("1:9=9", "2:1=zz"));

  UnspecifiedElements bytes({.textBytes = 5});
  bytes.AddLabel(FlankNo(1), "abc");
  bytes.AddLabel(FlankNo(1), "def");
  EXPECT_TRUE(bytes.cut());
  bytes.AddLabel(FlankNo(1), "gh");
  EXPECT_THAT(Texts(TakenFrom(bytes, 0)), ElementsAre("1:4=abc", "1:5=gh"));
}

}  // namespace
}  // namespace flanks
