#include "data/unspecified.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

using ::testing::ElementsAre;

// Two Flanks whose last numbers are 3 and 0 (no element).
FlankTable Flanks() {
  FlankTable flanks;
  flanks.FlankHigh.push(3);
  flanks.FlankHigh.push(0);
  return flanks;
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
  EXPECT_THAT(Texts(elements.Take(Flanks(), 0)), ElementsAre("1:4=4", "1:12=012", "2:9=9"));
}

TEST(UnspecifiedElements, LabelsAreNumberedBehindTheFlankInOrderOfAppearance) {
  UnspecifiedElements elements;
  elements.AddLabel(FlankNo(1), "zz");
  elements.AddLabel(FlankNo(1), "aa");
  elements.AddLabel(FlankNo(1), "zz");
  elements.AddLabel(FlankNo(2), "zz");
  elements.AddNumber(FlankNo(1), 5, "5");  // taken
  EXPECT_THAT(Texts(elements.Take(Flanks(), 1)),
              ElementsAre("1:4=zz", "1:5=5", "1:6=aa", "2:2=zz"));  // 1 is the null element
}

}  // namespace
}  // namespace flanks
