#include "stats/unexpected_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <vector>

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Candidates in the order of the data, numbered from 1; each has its own number as its element.
UnexpectedList ListOf(std::int32_t T4maximum, std::initializer_list<float> residuals) {
  UnexpectedList list(2.0f, T4maximum, 1);
  std::int64_t sequence = 0;
  for (const float StRes : residuals) {
    KeptResponse response;
    response.sequence = ++sequence;
    response.StRes = StRes;
    const ElementSlot element(static_cast<std::int32_t>(sequence));
    if (list.IsCandidate(StRes)) list.Add(response, {&element, 1});
  }
  return list;
}

std::vector<std::int64_t> SequencesOf(const UnexpectedResponses& kept) {
  std::vector<std::int64_t> sequences;
  for (const KeptResponse& row : kept.rows) sequences.push_back(row.sequence);
  return sequences;
}

TEST(UnexpectedList, AResponseIsACandidateFromTheLimitOn) {
  const UnexpectedList list(2.0f, 10, 1);
  EXPECT_TRUE(list.IsCandidate(2.0f));
  EXPECT_TRUE(list.IsCandidate(-2.0f));
  EXPECT_FALSE(list.IsCandidate(1.9999f));
  EXPECT_FALSE(list.IsCandidate(-1.9999f));
}

TEST(UnexpectedList, NothingIsACandidateWithoutRoom) {
  EXPECT_FALSE(UnexpectedList(0.0f, 0, 1).IsCandidate(9.0f));
  EXPECT_FALSE(UnexpectedList(0.0f, -5, 1).IsCandidate(9.0f));
}

TEST(UnexpectedList, RowsDescendInSize) {
  const UnexpectedResponses kept = ListOf(10, {2.5f, -4.0f, 3.0f}).Finish();
  EXPECT_THAT(SequencesOf(kept), ElementsAre(2, 3, 1));
  EXPECT_EQ(kept.dropped, 0);
  EXPECT_TRUE(kept.filled);
}

// Of one size: a new row goes behind the positive ones and before the negative ones.  -3 stands
// alone; 3 goes before it; the next -3 goes behind 3 and before the old -3; 3 behind 3.
TEST(UnexpectedList, ANewRowGoesBehindPositiveAndBeforeNegativeOnesOfItsSize) {
  EXPECT_THAT(SequencesOf(ListOf(10, {-3.0f, 3.0f, -3.0f, 3.0f}).Finish()),
              ElementsAre(2, 4, 3, 1));
}

// Room for two of 3, 4, 5: the 3 falls off, which is no candidate dropped on arrival.
TEST(UnexpectedList, TheLastRowOfAFullListFallsOff) {
  const UnexpectedResponses kept = ListOf(2, {3.0f, 4.0f, 5.0f}).Finish();
  EXPECT_THAT(SequencesOf(kept), ElementsAre(3, 2));
  EXPECT_EQ(kept.dropped, 0);
}

TEST(UnexpectedList, ACandidateWithoutAPlaceIsDroppedAndCounted) {
  const UnexpectedResponses kept = ListOf(2, {5.0f, 4.0f, 3.0f, 2.0f}).Finish();
  EXPECT_THAT(SequencesOf(kept), ElementsAre(1, 2));
  EXPECT_EQ(kept.dropped, 2);
}

// A full list that ends in 3: another 3 or -3 finds no place.  One that ends in -3: either goes
// before it.
TEST(UnexpectedList, ATieAtTheEndOfAFullListGoesByTheSignOfTheLastRow) {
  const UnexpectedResponses positive = ListOf(1, {3.0f, 3.0f, -3.0f}).Finish();
  EXPECT_THAT(SequencesOf(positive), ElementsAre(1));
  EXPECT_EQ(positive.dropped, 2);
  const UnexpectedResponses negative = ListOf(1, {-3.0f, -3.0f, 3.0f}).Finish();
  EXPECT_THAT(SequencesOf(negative), ElementsAre(3));
  EXPECT_EQ(negative.dropped, 0);
}

TEST(UnexpectedList, ElementsGoWithTheirRow) {
  const UnexpectedResponses kept = ListOf(2, {3.0f, -5.0f, 4.0f}).Finish();
  ASSERT_EQ(kept.elements.size(), 2u);
  EXPECT_EQ(kept.ElementsOf(0)[0], ElementSlot(2));
  EXPECT_EQ(kept.ElementsOf(1)[0], ElementSlot(3));
}

// Two thousand million rows are a limit and not a size.
TEST(UnexpectedList, AHugeLimitTakesNoMemory) {
  const UnexpectedResponses kept = ListOf(2'000'000'000, {3.0f}).Finish();
  EXPECT_EQ(kept.rows.size(), 1u);
  EXPECT_LT(kept.rows.capacity(), 100u);
}

TEST(UnexpectedList, KeepsTheLimitsOfItsPass) {
  const UnexpectedResponses kept = ListOf(7, {}).Finish();
  EXPECT_THAT(kept.rows, IsEmpty());
  EXPECT_EQ(kept.Unexpected, 2.0f);
  EXPECT_EQ(kept.T4maximum, 7);
  EXPECT_EQ(kept.width, 1);
}

}  // namespace
}  // namespace flanks
