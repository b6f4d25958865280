#include "base/fixed_count.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace flanks {
namespace {

TEST(FixedCount, TextHasNoTrailingZerosAndNoZeroBeforeThePoint) {
  EXPECT_EQ(FixedCount().text(), "0");
  EXPECT_EQ(FixedCount::Of(30).text(), "30");
  EXPECT_EQ(FixedCount::FromReplication(2.5f).text(), "2.5");
  EXPECT_EQ(FixedCount::FromReplication(12.25f).text(), "12.25");
  EXPECT_EQ(FixedCount::FromReplication(0.5f).text(), ".5");
  EXPECT_EQ(FixedCount::FromReplication(-0.5f).text(), "-.5");
  EXPECT_EQ(FixedCount::FromReplication(-3.0f).text(), "-3");
  EXPECT_EQ(FixedCount::FromScaled(10001).text(), "1.0001");
  EXPECT_EQ(FixedCount::FromScaled(1).text(), ".0001");
  EXPECT_EQ(FixedCount::Of(123456789012).text(), "123456789012");
}

TEST(FixedCount, AReplicationIsRoundedToFourDecimals) {
  EXPECT_EQ(FixedCount::FromReplication(1.0f / 3.0f).scaled(), 3333);
  EXPECT_EQ(FixedCount::FromReplication(2.0f / 3.0f).scaled(), 6667);
  // 1/32 is .03125 exactly: half away from zero.
  EXPECT_EQ(FixedCount::FromReplication(0.03125f).scaled(), 313);
  EXPECT_EQ(FixedCount::FromReplication(-0.03125f).scaled(), -313);
  EXPECT_EQ(FixedCount::FromReplication(0.1f).scaled(), 1000);
}

TEST(FixedCount, ACountOfOnesDoesNotStick) {
  FixedCount count = FixedCount::Of(16777216);  // where a 32-bit float sticks
  ++count;
  count.increment();
  EXPECT_EQ(count, FixedCount::Of(16777218));
  EXPECT_EQ(count.whole(), 16777218);
}

TEST(FixedCount, SumsAreExact) {
  FixedCount sum;
  for (int i = 0; i < 10000; ++i) sum += FixedCount::FromReplication(0.1f);
  EXPECT_EQ(sum, FixedCount::Of(1000));
  EXPECT_EQ((sum - FixedCount::FromReplication(0.25f)).value(), 999.75);
  EXPECT_LT(sum, FixedCount::Of(1001));
  EXPECT_GT(sum, FixedCount());
  EXPECT_TRUE(FixedCount().isZero());
  EXPECT_FALSE(FixedCount::FromScaled(1).isZero());
}

TEST(FixedCount, TheEndOfTheRangeIsNotPassed) {
  const FixedCount end = FixedCount::FromReplication(1E30f);
  EXPECT_EQ(end.scaled(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(end + end, end);
  const FixedCount low = FixedCount::FromReplication(-1E30f);
  EXPECT_EQ(low + low, low);
  EXPECT_EQ(low - end, low);
  EXPECT_EQ(FixedCount::Of(std::numeric_limits<std::int64_t>::max()).whole(), 922337203685477);
  EXPECT_TRUE(FixedCount::FromReplication(std::nanf("")).isZero());
}

}  // namespace
}  // namespace flanks
