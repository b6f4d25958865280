#include "base/column.h"

#include <gtest/gtest.h>
#include <type_traits>
#include <vector>

#include "base/grid.h"

namespace flanks {
namespace {

struct FromOneTag {
  static constexpr std::int32_t first = 1;
};
struct FromZeroTag {
  static constexpr std::int32_t first = 0;
};
using FromOne = Row<FromOneTag>;
using FromZero = Row<FromZeroTag>;

static_assert(!std::is_convertible_v<FromOne, FromZero>, "kinds of rows do not mix");
static_assert(!std::is_convertible_v<int, FromOne>, "a number is no row");

template <class Range>
std::vector<std::int32_t> Numbers(const Range& range) {
  std::vector<std::int32_t> numbers;
  for (const auto row : range) numbers.push_back(row.number());
  return numbers;
}

using Rows = std::vector<std::int32_t>;

TEST(Column, CountsItsRowsFromTheTagsFirst) {
  Column<FromOne, int> column(3, 7);
  column[FromOne(1)] = 10;
  column[FromOne(3)] = 30;
  EXPECT_EQ(column.data()[0], 10);
  EXPECT_EQ(column.data()[2], 30);
  EXPECT_EQ(column[FromOne(2)], 7);
  EXPECT_EQ(column.lastRow(), FromOne(3));
  EXPECT_FALSE(column.has(FromOne(0)));
  EXPECT_FALSE(column.has(FromOne(4)));
  EXPECT_EQ(column.push(5), FromOne(4));
  column.resize(6, 9);
  EXPECT_EQ(column[FromOne(4)], 5);
  EXPECT_EQ(column[FromOne(6)], 9);
}

TEST(Column, ADefaultRowIsNone) {
  EXPECT_EQ(FromOne().number(), 0);
  EXPECT_EQ(FromZero().number(), -1);
}

TEST(Column, LoopsUpwardAndDownward) {
  const Column<FromOne, int> fromOne(3);
  const Column<FromZero, int> fromZero(3);
  EXPECT_EQ(Numbers(Upward(fromOne)), (Rows{1, 2, 3}));
  EXPECT_EQ(Numbers(Downward(fromOne)), (Rows{3, 2, 1}));
  EXPECT_EQ(Numbers(Downward(fromZero)), (Rows{2, 1, 0}));
}

TEST(Column, AnEmptyRangeHasNoRow) {
  const Column<FromOne, int> none;
  EXPECT_EQ(Numbers(Upward(none)), Rows{});
  EXPECT_EQ(Numbers(Downward(none)), Rows{});
  EXPECT_EQ(Numbers(Upward(FromOne(5), FromOne(4))), Rows{});
  EXPECT_EQ(Numbers(Downward(FromOne(5), FromOne(4))), Rows{});
}

TEST(Grid, KeepsARowsCellsTogether) {
  Grid<FromOne, int> grid(2, 3, 0);
  grid.at(FromOne(2), 0) = 20;
  grid.at(FromOne(2), 2) = 22;
  EXPECT_EQ(grid.row(FromOne(2))[2], 22);
  EXPECT_EQ(grid.row(FromOne(1)) + 3, grid.row(FromOne(2)));
  grid.resizeRows(3, 5);
  EXPECT_EQ(grid.rows(), 3);
  EXPECT_EQ(grid.at(FromOne(2), 0), 20);
  EXPECT_EQ(grid.at(FromOne(3), 1), 5);
}

}  // namespace
}  // namespace flanks
