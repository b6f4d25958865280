#include "output/gridrank_table.h"

#include <algorithm>
#include <unordered_map>

#include "data/record_reader.h"
#include "run/console.h"

namespace flanks {
namespace {

using Key = std::vector<std::int32_t>;  // slots

struct KeyHash {
  std::size_t operator()(const Key& key) const {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15ULL;
    std::uint64_t hash = 1;
    for (const std::int32_t slot : key) {
      hash = (hash ^ static_cast<std::uint64_t>(slot)) * kOdd;
      hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
  }
};

// The rows, or the columns, found or added.
class LineFinder {
 public:
  // `fields` of the element records: of each Flank of the list those that hold its elements.
  LineFinder(const ElementLayout& layout, std::span<const FlankNo> flanks,
             std::vector<GridrankLine>& lines)
      : fields_(flanks.size()), lines_(lines), key_(flanks.size()) {
    for (std::size_t n = 0; n < flanks.size(); ++n)
      for (std::size_t f = 0; f < layout.fields.size(); ++f)
        if (layout.fields[f].flank == flanks[n]) fields_[n].push_back(f);
  }

  std::uint32_t Find(const std::vector<std::vector<std::int32_t>>& slots, std::size_t i) {
    for (std::size_t n = 0; n < fields_.size(); ++n) {
      key_[n] = 0;
      // A Flank that stands in two positions counts with the first that has an element.
      for (const std::size_t f : fields_[n])
        if (key_[n] == 0) key_[n] = slots[f][i];
    }
    const auto [found, added] =
        numbers_.try_emplace(key_, static_cast<std::uint32_t>(lines_.size()));
    if (added) {
      GridrankLine& line = lines_.emplace_back();
      for (const std::int32_t slot : key_) line.elements.emplace_back(slot);
    }
    return found->second;
  }

 private:
  std::vector<std::vector<std::size_t>> fields_;
  std::vector<GridrankLine>& lines_;
  Key key_;
  std::unordered_map<Key, std::uint32_t, KeyHash> numbers_;
};

bool IsSameCell(const GridrankCell& a, const GridrankCell& b) {
  return a.row == b.row && a.column == b.column;
}

// Observations in their order become cells.
void JoinCells(GridrankTable& table, CellRule rule) {
  std::vector<GridrankCell>& cells = table.CellTable;
  std::stable_sort(cells.begin(), cells.end(), [](const GridrankCell& a, const GridrankCell& b) {
    return a.row != b.row ? a.row < b.row : a.column < b.column;
  });
  std::size_t count = 0;
  for (const GridrankCell& cell : cells) {
    if (count == 0 || !IsSameCell(cells[count - 1], cell)) {
      cells[count++] = cell;
      continue;
    }
    table.MultipleInCell = true;
    if (rule == CellRule::last) cells[count - 1].value = cell.value;
    if (rule == CellRule::sum) cells[count - 1].value += cell.value;
  }
  cells.resize(count);
  for (const GridrankCell& cell : cells) table.largest = std::max(table.largest, cell.value);
}

}  // namespace

GridrankTable BuildGridrankTable(const PassParts& parts, std::span<const FlankNo> rowFlanks,
                                 std::span<const FlankNo> columnFlanks, CellRule rule) {
  GridrankTable table;
  const ElementLayout& layout = parts.work.layout;
  LineFinder rows(layout, rowFlanks, table.RowTable);
  LineFinder columns(layout, columnFlanks, table.ColumnTable);
  // The elements as the data have them: the reader leaves out what does not measure.
  std::vector<std::vector<std::int32_t>> slots(layout.fields.size(),
                                               std::vector<std::int32_t>(kKernelBlock));
  ObservationReader reader(parts);
  reader.Begin(Categories::wanted);
  while (reader.Next()) {
    const ObservationBlock& block = reader.block();
    const RecordBlock records = ReadRecordBlock(parts.work, block.firstRecord, block.count);
    for (std::size_t f = 0; f < slots.size(); ++f)
      DecodeElements(records, layout.fields[f], slots[f]);
    for (std::size_t i = 0; i < block.count; ++i)
      if (FeedsEstimation(block.state[i]))
        table.CellTable.push_back({rows.Find(slots, i), columns.Find(slots, i), block.category[i]});
  }
  JoinCells(table, rule);
  return table;
}

}  // namespace flanks
