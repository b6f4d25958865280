// Typed row numbers and the tables that they index.
//
// The tables of the program are parallel columns, and an element's number, its slot, a Flank's
// number, a data position and an active position are all small integers.  `Row<Tag>` makes mixing
// two of them a compile error; `Column<Row, T>` is a table column whose rows run from Tag::first
// (0 or 1) and whose range is checked in debug builds; `Downward` and `Upward` say the direction of
// a loop, which shows in the rounding of sums.
//
//   struct FlankTag { static constexpr std::int32_t first = 1; };
//   using FlankNo = Row<FlankTag>;
//   Column<FlankNo, float> FlankWeight(flankCount, 1.0f);
//   for (FlankNo f : Downward(FlankWeight)) ...
//
// Tested by tests/unit/base/column_test.cpp.
#ifndef FLANKS_BASE_COLUMN_H
#define FLANKS_BASE_COLUMN_H

#include <cassert>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace flanks {

// A row number of the kind that Tag names.  The value is the number itself, not an offset.
template <class Tag>
class Row {
 public:
  using tag = Tag;
  static constexpr std::int32_t first = Tag::first;

  constexpr Row() = default;
  constexpr explicit Row(std::int32_t number) : number_(number) {}

  constexpr std::int32_t number() const { return number_; }
  constexpr std::size_t offset() const { return static_cast<std::size_t>(number_ - first); }

  constexpr auto operator<=>(const Row&) const = default;
  constexpr Row& operator++() { return ++number_, *this; }
  constexpr Row& operator--() { return --number_, *this; }
  constexpr Row operator+(std::int32_t steps) const { return Row(number_ + steps); }
  constexpr Row operator-(std::int32_t steps) const { return Row(number_ - steps); }
  constexpr std::int32_t operator-(Row other) const { return number_ - other.number_; }

 private:
  std::int32_t number_ = first - 1;  // no row
};

// A column of a table: one T for each row from R::first on.  One block of memory.
template <class R, class T>
class Column {
  static_assert(!std::is_same_v<T, bool>, "use std::uint8_t or an enum: a column has addresses");

 public:
  using row_type = R;

  Column() = default;
  explicit Column(std::int32_t rows, const T& value = T{})
      : cells_(static_cast<std::size_t>(rows), value) {}

  T& operator[](R row) {
    assert(row.offset() < cells_.size());
    return cells_[row.offset()];
  }
  const T& operator[](R row) const {
    assert(row.offset() < cells_.size());
    return cells_[row.offset()];
  }

  std::int32_t rows() const { return static_cast<std::int32_t>(cells_.size()); }
  bool empty() const { return cells_.empty(); }
  R firstRow() const { return R(R::first); }
  R lastRow() const { return R(R::first + rows() - 1); }
  bool has(R row) const { return row >= firstRow() && row <= lastRow(); }

  // Keeps the rows that stand and gives new ones `value`.
  void resize(std::int32_t rows, const T& value = T{}) {
    cells_.resize(static_cast<std::size_t>(rows), value);
  }
  void assign(std::int32_t rows, const T& value) {
    cells_.assign(static_cast<std::size_t>(rows), value);
  }
  void clear() { cells_.clear(); }
  R push(const T& value) {
    cells_.push_back(value);
    return lastRow();
  }

  T* data() { return cells_.data(); }
  const T* data() const { return cells_.data(); }
  auto begin() { return cells_.begin(); }
  auto end() { return cells_.end(); }
  auto begin() const { return cells_.begin(); }
  auto end() const { return cells_.end(); }

 private:
  std::vector<T> cells_;
};

// The rows from `low` to `high`, both included, in one direction.
template <class R, int kStep>
class RowRange {
 public:
  struct Iterator {
    R row;
    R operator*() const { return row; }
    Iterator& operator++() {
      row = row + kStep;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return row != other.row; }
  };

  RowRange(R from, R pastTheEnd) : from_(from), end_(pastTheEnd) {}
  Iterator begin() const { return {from_}; }
  Iterator end() const { return {end_}; }

 private:
  R from_;
  R end_;
};

template <class R>
RowRange<R, +1> Upward(R low, R high) {
  return high < low ? RowRange<R, +1>(low, low) : RowRange<R, +1>(low, high + 1);
}
template <class R>
RowRange<R, -1> Downward(R low, R high) {
  return high < low ? RowRange<R, -1>(low, low) : RowRange<R, -1>(high, low - 1);
}
template <class R, class T>
RowRange<R, +1> Upward(const Column<R, T>& column) {
  return Upward(column.firstRow(), column.lastRow());
}
template <class R, class T>
RowRange<R, -1> Downward(const Column<R, T>& column) {
  return Downward(column.firstRow(), column.lastRow());
}

}  // namespace flanks

#endif  // FLANKS_BASE_COLUMN_H
