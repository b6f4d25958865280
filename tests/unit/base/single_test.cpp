#include "base/single.h"

#include <cfloat>
#include <gtest/gtest.h>

#include "base/held_single.h"

namespace flanks {
namespace {

TEST(Single, RoundsToTheNearestAndTiesToEven) {
  EXPECT_EQ(Single(1.0 + 0x1p-25), 1.0f) << "nearer to 1";
  EXPECT_EQ(Single(1.0 + 0x1p-24), 1.0f) << "half-way: to even";
  EXPECT_EQ(Single(1.0 + 0x1.8p-24), 1.0f + 0x1p-23f) << "nearer to the next one";
  EXPECT_EQ(Single(1.0 + 3 * 0x1p-24), 1.0f + 0x1p-22f) << "half-way: to even";
}

TEST(HeldSingle, StaysAtTheEndsOfTheRange) {
  EXPECT_EQ(HeldSingle(.1), .1f);
  EXPECT_EQ(HeldSingle(1E+60), FLT_MAX);
  EXPECT_EQ(HeldSingle(-1E+60), -FLT_MAX);
}

TEST(Single, SmallerAndLargerOfTwo) {
  EXPECT_EQ(MinSingle(-1.0f, 2.0f), -1.0f);
  EXPECT_EQ(MinSingle(2.0f, -1.0f), -1.0f);
  EXPECT_EQ(MaxSingle(-1.0f, 2.0f), 2.0f);
  EXPECT_EQ(MaxSingle(2.0f, -1.0f), 2.0f);
}

TEST(FloorMin, AValueBelowTheFloorBecomesIt) {
  EXPECT_EQ(FloorMin(0.0), 1E-9);
  EXPECT_EQ(FloorMin(-3.0), 1E-9);
  EXPECT_EQ(FloorMin(2.0), 2.0);
  EXPECT_EQ(FloorMin(0.0f), 1E-9f);
  EXPECT_EQ(FloorMin(2.0f), 2.0f);
}

}  // namespace
}  // namespace flanks
