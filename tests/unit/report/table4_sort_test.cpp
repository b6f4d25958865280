#include "report/table4_sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ReadUsort, EachOrderStandsInItsParentheses) {
  EXPECT_THAT(ReadUsort("u"), ElementsAre("u"));
  EXPECT_THAT(ReadUsort("u,2"), ElementsAre("u,2"));
  EXPECT_THAT(ReadUsort("(u),(Z)"), ElementsAre("u", "Z"));
  EXPECT_THAT(ReadUsort("(1,2),(Z3)"), ElementsAre("1,2", "Z3"));
  EXPECT_THAT(ReadUsort(""), ElementsAre(""));
  EXPECT_THAT(ReadUsort("()"), ElementsAre(""));
}

TEST(ReadUsort, TextBesideParenthesesIsAnOrderToo) {
  EXPECT_THAT(ReadUsort("u,(Z)"), ElementsAre("u,", "Z"));
  EXPECT_THAT(ReadUsort("(u),Z"), ElementsAre("u", ",Z"));
  EXPECT_THAT(ReadUsort("(u),(Z"), ElementsAre("u", "Z"));
}

TEST(ReadUsort, AnOrderWithAnNEndsTheList) {
  EXPECT_THAT(ReadUsort("(u),(n),(Z)"), ElementsAre("u"));
  EXPECT_THAT(ReadUsort("None"), IsEmpty());
}

TEST(OrderText, HasThreeCharactersForEachKey) {
  EXPECT_EQ(OrderText("u", 3), "u..");
  EXPECT_EQ(OrderText("Z,2", 3), "Z..2..");
  EXPECT_EQ(OrderText("", 3), "order in data");
  EXPECT_EQ(OrderText("?4", 3), "order in data");  // no key, no such position
}

// Three positions; rows in the order in which a list of unexpected responses holds them.
class Responses : public ::testing::Test {
 protected:
  UnexpectedResponses kept;
  ElementTable elements;

  void SetUp() override {
    kept.width = 2;
    elements.ElementNumber.assign(5, 0);
    const std::int32_t numbers[] = {7, 8, 9, 1, 10};
    for (std::int32_t slot = 1; slot <= 5; ++slot)
      elements.ElementNumber[ElementSlot(slot)] = numbers[slot - 1];
  }

  void Add(std::int64_t sequence, float StRes, std::int32_t first = 1, std::int32_t second = 4) {
    KeptResponse row;
    row.sequence = sequence;
    row.StRes = StRes;
    kept.rows.push_back(row);
    kept.elements.insert(kept.elements.end(), {ElementSlot(first), ElementSlot(second)});
  }

  std::vector<std::int64_t> Order(std::string_view order) const {
    std::vector<std::int64_t> sequences;
    for (const std::uint32_t row : SortResponses(kept, elements, order))
      sequences.push_back(kept.rows[row].sequence);
    return sequences;
  }
};

TEST_F(Responses, CapitalsAscendAndSmallLettersDescend) {
  Add(1, -4.0f);
  Add(2, 3.0f);
  Add(3, -2.0f);
  EXPECT_THAT(Order("Z"), ElementsAre(1, 3, 2));
  EXPECT_THAT(Order("z"), ElementsAre(2, 3, 1));
  EXPECT_THAT(Order("U"), ElementsAre(3, 2, 1));
  EXPECT_THAT(Order("u"), ElementsAre(1, 2, 3));
  for (const char* other : {"S", "F", "T"}) EXPECT_EQ(Order(other), Order("Z")) << other;
  for (const char* other : {"s", "f", "t"}) EXPECT_EQ(Order(other), Order("z")) << other;
}

// 3.04 and 3.01 are both 3.0 on paper: the second key or the order of the data decides.
TEST_F(Responses, FiguresThatLookAlikeAreEqual) {
  Add(5, 3.04f, 2);
  Add(2, 3.01f, 3);
  Add(9, 3.06f, 1);
  EXPECT_THAT(Order("u"), ElementsAre(9, 2, 5));
  EXPECT_THAT(Order("u1"), ElementsAre(9, 5, 2));
  EXPECT_THAT(Order("U"), ElementsAre(2, 5, 9));
}

// -.04 is shown as .0.
TEST_F(Responses, WhatRoundsToZeroHasNoSign) {
  Add(1, 0.04f);
  Add(2, -0.04f);
  EXPECT_THAT(Order("Z"), ElementsAre(1, 2));
  EXPECT_THAT(Order("z"), ElementsAre(1, 2));
}

TEST_F(Responses, EachLetterHasItsFigure) {
  Add(1, 3.0f);
  Add(2, 3.0f);
  Add(3, 3.0f);
  const auto set = [&](auto member, auto first, auto second, auto third) {
    kept.rows[0].*member = first;
    kept.rows[1].*member = second;
    kept.rows[2].*member = third;
  };
  set(&KeptResponse::residual, 1.0f, -1.0f, 0.0f);
  set(&KeptResponse::expected, 2.0f, 3.0f, 1.0f);
  set(&KeptResponse::MeasureSum, -12.25f, 7.0f, -9.0f);
  set(&KeptResponse::category, std::int16_t(255), std::int16_t(9), std::int16_t(10));
  for (const char* letter : {"R", "Y"}) EXPECT_THAT(Order(letter), ElementsAre(2, 3, 1)) << letter;
  for (const char* letter : {"r", "y"}) EXPECT_THAT(Order(letter), ElementsAre(1, 3, 2)) << letter;
  for (const char* letter : {"E", "P"}) EXPECT_THAT(Order(letter), ElementsAre(3, 1, 2)) << letter;
  for (const char* letter : {"e", "p"}) EXPECT_THAT(Order(letter), ElementsAre(2, 1, 3)) << letter;
  for (const char* letter : {"X", "V"}) EXPECT_THAT(Order(letter), ElementsAre(1, 3, 2)) << letter;
  for (const char* letter : {"x", "v"}) EXPECT_THAT(Order(letter), ElementsAre(2, 3, 1)) << letter;
  for (const char* letter : {"C", "O", "D"})
    EXPECT_THAT(Order(letter), ElementsAre(2, 3, 1)) << letter;
  for (const char* letter : {"c", "o", "d"})
    EXPECT_THAT(Order(letter), ElementsAre(1, 3, 2)) << letter;
}

// Slots 1, 2, 3 are elements 7, 8, 9 and slots 4, 5 elements 1, 10 of the second Flank.
TEST_F(Responses, ADigitIsTheElementNumberInItsPosition) {
  Add(1, 3.0f, 3, 5);
  Add(2, 3.0f, 2, 4);
  Add(3, 3.0f, 1, 5);
  EXPECT_THAT(Order("1"), ElementsAre(3, 2, 1));
  EXPECT_THAT(Order("2"), ElementsAre(2, 3, 1));  // then position 1, which is not named
  EXPECT_THAT(Order("21"), ElementsAre(2, 3, 1));
  EXPECT_THAT(Order("9"), ElementsAre(1, 2, 3));  // there is no such position
}

TEST_F(Responses, ARowWithoutAnElementThereComesLast) {
  Add(1, 3.0f, 0, 4);
  Add(2, 3.0f, 3, 4);
  Add(3, 3.0f, 0, 4);
  EXPECT_THAT(Order("1"), ElementsAre(2, 1, 3));
}

TEST_F(Responses, WithoutAKeyTheyStandAsInTheData) {
  Add(8, 5.0f);
  Add(3, 4.0f);
  EXPECT_THAT(Order(""), ElementsAre(3, 8));
  EXPECT_THAT(Order("u"), ElementsAre(8, 3));
}

}  // namespace
}  // namespace flanks
