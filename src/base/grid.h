// Two-dimensional tables: a typed row by a small index, in one block of memory.
//
// Scale by category, model by position: each row has the same number of cells, numbered from 0.
// `row(r)` is a plain pointer to the cells of a row, which is what the passes want.
//
// Tested by tests/unit/base/column_test.cpp.
#ifndef FLANKS_BASE_GRID_H
#define FLANKS_BASE_GRID_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace flanks {

template <class R, class T>
class Grid {
 public:
  using row_type = R;

  Grid() = default;
  Grid(std::int32_t rows, std::int32_t width, const T& value = T{})
      : width_(width), cells_(Cells(rows, width), value) {}

  T& at(R row, std::int32_t index) { return cells_[Offset(row, index)]; }
  const T& at(R row, std::int32_t index) const { return cells_[Offset(row, index)]; }
  T* row(R row) { return cells_.data() + Offset(row, 0); }
  const T* row(R row) const { return cells_.data() + Offset(row, 0); }

  std::int32_t width() const { return width_; }
  std::int32_t rows() const {
    return width_ == 0 ? 0 : static_cast<std::int32_t>(cells_.size()) / width_;
  }
  R firstRow() const { return R(R::first); }
  R lastRow() const { return R(R::first + rows() - 1); }

  void assign(std::int32_t rows, std::int32_t width, const T& value) {
    width_ = width;
    cells_.assign(Cells(rows, width), value);
  }
  // Keeps the rows that stand; the width does not change.
  void resizeRows(std::int32_t rows, const T& value = T{}) {
    cells_.resize(Cells(rows, width_), value);
  }

 private:
  static std::size_t Cells(std::int32_t rows, std::int32_t width) {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(width);
  }
  std::size_t Offset(R row, std::int32_t index) const {
    assert(index >= 0 && index < width_);
    const std::size_t offset =
        row.offset() * static_cast<std::size_t>(width_) + static_cast<std::size_t>(index);
    assert(offset < cells_.size());
    return offset;
  }

  std::int32_t width_ = 0;
  std::vector<T> cells_;
};

}  // namespace flanks

#endif  // FLANKS_BASE_GRID_H
