#include "base/key_index.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace flanks {
namespace {

constexpr std::uint64_t kLarge = std::uint64_t{1} << 62;

class Spans : public testing::TestWithParam<std::uint64_t> {};

TEST_P(Spans, KeysAreNumberedInTheirOrder) {
  KeyIndex keys(GetParam());
  for (const std::uint64_t key : {90u, 7u, 90u, 0u, 99u, 7u}) keys.Insert(key);
  keys.Number();
  ASSERT_EQ(keys.count(), 4);
  EXPECT_EQ(keys.key(0), 0u);
  EXPECT_EQ(keys.key(3), 99u);
  EXPECT_EQ(keys.Find(0), 0);
  EXPECT_EQ(keys.Find(7), 1);
  EXPECT_EQ(keys.Find(90), 2);
  EXPECT_EQ(keys.Find(99), 3);
  EXPECT_EQ(keys.Find(8), -1);
}

TEST_P(Spans, NothingIsFoundWhereNothingWasInserted) {
  KeyIndex keys(GetParam());
  keys.Number();
  EXPECT_EQ(keys.count(), 0);
  EXPECT_EQ(keys.Find(0), -1);
}

INSTANTIATE_TEST_SUITE_P(TablesAndScatteredKeys, Spans, testing::Values(100u, kLarge));

TEST(KeyIndex, ManyScatteredKeysGrowItsTable) {
  std::mt19937_64 random(5);
  std::set<std::uint64_t> expected{kLarge - 1};
  while (expected.size() < 50000) expected.insert(random() % kLarge);
  std::vector<std::uint64_t> order(expected.begin(), expected.end());
  std::shuffle(order.begin(), order.end(), random);
  KeyIndex keys(kLarge);
  for (int round = 0; round < 2; ++round)
    for (const std::uint64_t key : order) keys.Insert(key);
  keys.Number();
  ASSERT_EQ(keys.count(), 50000);
  std::int32_t number = 0;
  for (const std::uint64_t key : expected) {
    ASSERT_EQ(keys.key(number), key);
    ASSERT_EQ(keys.Find(key), number++);
  }
  EXPECT_EQ(keys.Find(*expected.begin() + 1), expected.count(*expected.begin() + 1) ? 1 : -1);
}

}  // namespace
}  // namespace flanks
