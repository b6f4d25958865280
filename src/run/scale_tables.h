// Category structures and thresholds: what the data showed of the scales, and what was estimated.
//
// A *structure* is what a response record points to: one row for each pair of a model statement
// and, where the statement has "#" positions, a set of key elements.  Structure rows are found or
// added by the data pass, with their counts by raw category.
//
// A *scale* is a set of thresholds.  Several structures may share one: all statements that name a
// General definition without "#" do.  `structureScale` maps the one to the other.  The tables of
// this header are by scale and ordered category; raw categories reach the ordered ones through the
// recode table of the scale, which the recount rebuilds (categories without data have no place,
// unless they are kept).
//
// All columns have a row for each scale, cells 0 to `width - 1`.
#ifndef FLANKS_RUN_SCALE_TABLES_H
#define FLANKS_RUN_SCALE_TABLES_H

#include <array>
#include <cstdint>
#include <vector>

#include "base/column.h"
#include "base/grid.h"
#include "run/design.h"

namespace flanks {

struct StructureTag {
  static constexpr std::int32_t first = 0;
};
struct ScaleTag {
  static constexpr std::int32_t first = 0;
};
using StructureRow = Row<StructureTag>;  // 0 .. ; the first field of a response record
using ScaleRow = Row<ScaleTag>;          // 0 .. ; rows of the threshold tables

constexpr int kLargestCategory = 255;  // the limit of all scales
constexpr int kCategories = kLargestCategory + 1;

// Entries of the array of category probabilities, 0 to 1,023: four times the largest category.  A
// Poisson scale is filled to twice its top category and read to four times it.
constexpr int kProbabilityEntries = 1024;
using ProbabilityArray = std::array<float, kProbabilityEntries>;

// Found or added by the data pass.
struct StructureTable {
  Column<StructureRow, ModelRow> structureModel;
  Column<StructureRow, ScaleRow> structureScale;
  Grid<StructureRow, ElementSlot> structureKey;     // by position less 1; slot 0 for no key
  Grid<StructureRow, std::int64_t> structureCount;  // by raw category, 0 to kLargestCategory
};

// How a category stands in its scale.
constexpr std::int16_t kCategoryFree = 0;
constexpr std::int16_t kCategoryAnchored = -1;
constexpr std::int16_t kCategorySkipped = -3;  // in the ordering, with probability zero

constexpr std::int16_t kNoOrderedCategory = -1;

struct ScaleTables {
  int width = 0;  // cells in a row: the largest category maximum + 1, at least 2

  // What each scale is.
  Column<ScaleRow, ScaleType> scaleType;
  Column<ScaleRow, ScaleDefinitionRow> scaleDefinition;  // row -1: none
  Column<ScaleRow, ModelRow> scaleModel;                 // the first statement that uses it
  Column<ScaleRow, std::uint8_t> scaleKeep;
  Column<ScaleRow, std::int32_t> scaleMaximum;  // the statement's category maximum

  // Rebuilt by a recount.
  Column<ScaleRow, std::int16_t> ScaleTopCategory;  // m: the highest ordered category
  Column<ScaleRow, std::int16_t> lowestCategory;    // raw category of ordered 0: the offset
  Grid<ScaleRow, std::int16_t> orderedCategory;     // by raw category; -1: no place
  Grid<ScaleRow, std::int16_t> rawCategory;         // by ordered category

  // Thresholds, logits.  Cell 0 of a binomial or Poisson scale is its discrimination.
  Grid<ScaleRow, float> ThresholdTable;
  Grid<ScaleRow, float> PreviousThreshold;
  Grid<ScaleRow, std::int16_t> CategoryFlag;

  // Sums of a pass, 64 bits, weighted.
  Grid<ScaleRow, double> ObservedCount;  // by ordered category
  Grid<ScaleRow, double> ExpectedCount;
  Grid<ScaleRow, double> DiscriminationSums;

  std::int32_t scales() const { return scaleType.rows(); }
};

}  // namespace flanks

#endif  // FLANKS_RUN_SCALE_TABLES_H
