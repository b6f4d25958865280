// Observations of many Flanks as a rectangle: the Flanks chosen for the rows make one label, those
// chosen for the columns another, and each observation falls into one cell.
//
// Rows and columns stand in the order in which the observations show them first.  Only cells with
// an observation take memory: 16 bytes for each observation, rows and columns beside.
//
// Tested by tests/unit/output/gridrank_file_test.cpp.
#ifndef FLANKS_OUTPUT_GRIDRANK_TABLE_H
#define FLANKS_OUTPUT_GRIDRANK_TABLE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "estimate/observation.h"
#include "run/design.h"

namespace flanks {

// What becomes of several observations in one cell.
enum class CellRule : std::uint8_t { first, last, sum };

// Rows, or columns: each is the elements of its Flanks, slot 0 where the data name none.
struct GridrankLine {
  std::vector<ElementSlot> elements;  // by Flank of the list
};

struct GridrankCell {
  std::uint32_t row = 0, column = 0;  // from 0
  std::int64_t value = 0;
};

struct GridrankTable {
  std::vector<GridrankLine> RowTable, ColumnTable;
  std::vector<GridrankCell>
      CellTable;                // by row, then by column; cells without a value are not here
  bool MultipleInCell = false;  // a cell got a second observation
  std::int64_t largest = 0;     // of the values
};

// Reads the observations that feed estimation; a cell takes their ordered categories.  Ends early
// when the run is to stop.
GridrankTable BuildGridrankTable(const PassParts& parts, std::span<const FlankNo> rowFlanks,
                                 std::span<const FlankNo> columnFlanks, CellRule rule);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_GRIDRANK_TABLE_H
