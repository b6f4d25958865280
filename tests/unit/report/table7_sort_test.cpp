#include "report/table7_sort.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

// Elements of one Flank with measures, status, fit and labels.
struct OneFlank {
  Analysis analysis;

  struct Row {
    int number;
    const char* label;
    float measure;
    std::int16_t status = kStatusFree;
    float infit = 1.0f, outfit = 1.0f;
    float correlation = 0.0f;
  };
  explicit OneFlank(const std::vector<Row>& rows) {
    const auto count = static_cast<std::int32_t>(rows.size());
    Design& design = analysis.design;
    design.flanks.FlankElementCount.assign(1, count);
    design.flanks.FlankFirstSlot.assign(1, ElementSlot(1));
    for (const Row& row : rows) {
      design.elements.ElementNumber.push(row.number);
      design.elements.ElementLabel.push(row.label);
      ElementState state;
      state.ElementMeasure = row.measure;
      state.ElementStatus = row.status;
      analysis.estimates.elements.push(state);
      ElementFinal fit;
      fit.InfitMeanSquare = row.infit;
      fit.OutfitMeanSquare = row.outfit;
      fit.PointMeasure = row.correlation;
      analysis.estimates.finals.push(fit);
    }
  }
  // Element numbers in the order of the letters.
  std::vector<int> Order(std::string_view letters) const {
    std::vector<std::string> keys;
    for (ElementSlot e : Upward(analysis.estimates.elements))
      keys.push_back(Table7Key(analysis, e, letters, LongestLabel(analysis.design, FlankNo(1))));
    std::sort(keys.begin(), keys.end());
    std::vector<int> numbers;
    for (const std::string& key : keys)
      numbers.push_back(analysis.design.elements.ElementNumber[SlotOfKey(key)]);
    return numbers;
  }
};

using Order = std::vector<int>;

TEST(Table7Key, ByNumber) {
  const OneFlank flank({{3, "c", 0}, {7, "a", 0}, {300, "b", 0}});
  EXPECT_EQ(flank.Order("N"), (Order{3, 7, 300}));
  EXPECT_EQ(flank.Order("n"), (Order{300, 7, 3}));
}

TEST(Table7Key, ByLabelPaddedToTheLongest) {
  const OneFlank flank({{1, "Bob", 0}, {2, "Ann", 0}, {3, "Bo", 0}});
  EXPECT_EQ(flank.Order("A"), (Order{2, 3, 1}));
  EXPECT_EQ(flank.Order("a"), (Order{1, 3, 2}));
}

TEST(Table7Key, ByMeasureWithExtremesAtTheirEnd) {
  const OneFlank flank({{1, "", -.5f},
                        {2, "", 2.0f},
                        {3, "", 9.0f, kStatusMinimum},
                        {4, "", -9.0f, kStatusMaximum},
                        {5, "", 0.0f, kStatusDropped},
                        {6, "", 0.0f}});
  EXPECT_EQ(flank.Order("M"), (Order{3, 1, 6, 2, 4, 5}));
  EXPECT_EQ(flank.Order("m"), (Order{4, 2, 6, 1, 3, 5}));
}

TEST(Table7Key, EqualMeasuresKeepTheElementsOrder) {
  const OneFlank flank({{1, "", .5f}, {2, "", .5f}, {3, "", .5f}});
  EXPECT_EQ(flank.Order("m"), (Order{1, 2, 3}));
}

TEST(Table7Key, LaterLettersDecideAmongEquals) {
  const OneFlank flank({{1, "", .5f}, {2, "", .5f}, {3, "", .7f}});
  EXPECT_EQ(flank.Order("mn"), (Order{3, 2, 1}));
}

TEST(Table7Key, ByFitWorstFirstWithUnfittedRowsLast) {
  const OneFlank flank({{1, "", 0, kStatusFree, 1.1f, .9f},
                        {2, "", 0, kStatusFree, 1.2f, 3.0f},
                        {3, "", 0, kStatusMaximum, 1.0f, 1.0f},
                        {4, "", 0, kStatusFree, .2f, .9f}});
  // Worse fits: 1: -1/.9 = -1.11; 2: 3; 4: -1/.2 = -5.
  EXPECT_EQ(flank.Order("f"), (Order{2, 1, 4, 3}));
  EXPECT_EQ(flank.Order("F"), (Order{4, 1, 2, 3}));
}

TEST(Table7Key, ByTheShownCorrelation) {
  const OneFlank flank({{1, "", 0, kStatusFree, 1, 1, .4f},
                        {2, "", 0, kStatusFree, 1, 1, -.2f},
                        {3, "", 0, kStatusFree, 1, 1, .9f}});
  EXPECT_EQ(flank.Order("P"), (Order{2, 1, 3}));
  EXPECT_EQ(flank.Order("p"), (Order{3, 1, 2}));
}

TEST(WorseFit, IsTheLargerInSizeThenInSignedValue) {
  EXPECT_FLOAT_EQ(WorseMeanSquare(.5f, 1.8f), -2.0f);
  EXPECT_FLOAT_EQ(WorseMeanSquare(.5f, 2.0f), 2.0f);
  EXPECT_FLOAT_EQ(WorseMeanSquare(1.3f, 1.2f), 1.3f);
  EXPECT_FLOAT_EQ(WorseZStd(-2.5f, 2.0f), -2.5f);
  EXPECT_FLOAT_EQ(WorseMeanSquare(0.0f, 1.0f), -1E9f) << "guarded by the floor";
}

TEST(ReadArrange, SplitsItemsIntoFlankAndLetters) {
  const std::vector<ArrangeItem> items = ReadArrange("1N,2m,mN");
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(items[0].flank, 1);
  EXPECT_EQ(items[0].letters, "N");
  EXPECT_EQ(items[1].flank, 2);
  EXPECT_EQ(items[2].flank, 0);
  EXPECT_EQ(items[2].letters, "mN");
  EXPECT_TRUE(ReadArrange("").empty());
}

// 2^32 + 1 must not come back as Flank 1, nor the digits of a longer number overflow.
TEST(ReadArrange, ANumberBeyondAllFlanksIsNoFlank) {
  for (const char* text : {"256N", "1000N", "4294967297N", "99999999999999999999N"}) {
    const std::vector<ArrangeItem> items = ReadArrange(text);
    ASSERT_EQ(items.size(), 1u);
    EXPECT_GT(items[0].flank, 255) << text;
    EXPECT_EQ(items[0].letters, "N");
  }
}

}  // namespace
}  // namespace flanks
