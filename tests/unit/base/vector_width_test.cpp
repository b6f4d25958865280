#include "base/vector_width.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace flanks {
namespace {

TEST(VectorWidth, HasTheNarrowWidthOnEveryMachine) {
  const std::vector<VectorWidth> usable = UsableVectorWidths();
  ASSERT_FALSE(usable.empty());
  EXPECT_EQ(usable.front(), VectorWidth::narrow);
  EXPECT_TRUE(std::is_sorted(usable.begin(), usable.end()));
}

TEST(VectorWidth, IsFoundByItsName) {
  for (const VectorWidth width : {VectorWidth::narrow, VectorWidth::avx2, VectorWidth::avx512})
    EXPECT_EQ(VectorWidthNamed(NameOf(width)), width);
  EXPECT_FALSE(VectorWidthNamed("wide").has_value());
  EXPECT_FALSE(VectorWidthNamed("").has_value());
}

TEST(VectorWidth, IsChosenAmongThoseOfTheMachine) {
  const std::vector<VectorWidth> usable = UsableVectorWidths();
  EXPECT_NE(std::find(usable.begin(), usable.end(), ChosenVectorWidth()), usable.end());
}

}  // namespace
}  // namespace flanks
