// Category structures: which row a response record points to, found or added.
//
// A statement without "#" has one structure, added at its first response.  A statement with "#"
// has one for each set of elements in its "#" positions, the key.  A row belongs to one statement
// only, so that a record leads to the statement's weight and marks.
//
// Several structures may share one set of thresholds, a *scale*:
//   a General definition (by name)   one scale for all its statements; with "#", one for each key
//   anything else                    one scale for each structure
// The scales are laid out when the data pass has ended, in the order of the statements and, within
// a statement, of the key elements: so their order does not depend on the order of the data.
//
// Tested by tests/unit/data/structures_test.cpp.
#ifndef FLANKS_DATA_STRUCTURES_H
#define FLANKS_DATA_STRUCTURES_H

#include <cstdint>
#include <vector>

#include "base/column.h"
#include "data/line_elements.h"
#include "run/design.h"
#include "run/scale_tables.h"

namespace flanks {

// ModelStructure where it is not a structure's row.
constexpr std::int32_t kStructureByKey = -1;
constexpr std::int32_t kStructureNotYet = -2;

// Finds the structure row of a response; adds what is not there.  Lives as long as the data pass.
class StructureFinder {
 public:
  StructureFinder(const Design& design, StructureTable& structures);

  // The row for `model` and the elements of a line.
  StructureRow Find(ModelRow model, const Column<Position, std::int32_t>& positionStatus) {
    const std::int32_t known = ModelStructure_[model];
    if (known >= 0) return StructureRow(known);
    return FindByKey(model, positionStatus);
  }
  // Raises the row's count for the category.
  void Count(StructureRow row, std::int32_t category) {
    ++structures_.structureCount.at(row, category);
  }

 private:
  StructureRow FindByKey(ModelRow model, const Column<Position, std::int32_t>& positionStatus);
  StructureRow Add(ModelRow model);
  bool HasKey(StructureRow row, ModelRow model) const;
  std::size_t HashOfKey(ModelRow model) const;
  void Rehash();

  const Design& design_;
  StructureTable& structures_;
  Column<ModelRow, std::int32_t> ModelStructure_;
  std::vector<ElementSlot> key_;       // of the response at work, by position less 1
  std::vector<std::int32_t> buckets_;  // open addressing over the structure rows; -1: free
};

// Lays out the scales of the structures that the data pass found: `structureScale`, and what each
// scale is (`scaleType` to `scaleMaximum`) with the width of the tables by category.
void LayOutScales(const Design& design, StructureTable& structures, ScaleTables& scales);

}  // namespace flanks

#endif  // FLANKS_DATA_STRUCTURES_H
