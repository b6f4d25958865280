// The design of a run: what the Specification describes.
//
// Flanks, elements, model statements and rating scale definitions stand in parallel columns that
// are indexed by typed row numbers.  spec/ fills them; the data pass adds category structures
// (run/structures.h); from the end of the data pass on every procedure sees `const Design&`.
//
// Four small integers that look alike are four types here: the Flank (`FlankNo`), the place of a
// Flank on a data line (`DataPosition`), the place among the active positions, which is the field
// of a model statement (`Position`), and the element's row in the element table (`ElementSlot`,
// not the number that the user gave it).
#ifndef FLANKS_RUN_DESIGN_H
#define FLANKS_RUN_DESIGN_H

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/column.h"
#include "base/grid.h"

namespace flanks {

struct FlankTag {
  static constexpr std::int32_t first = 1;
};
struct ElementTag {
  static constexpr std::int32_t first = 1;
};
struct DataPositionTag {
  static constexpr std::int32_t first = 1;
};
struct PositionTag {
  static constexpr std::int32_t first = 1;
};
struct ModelTag {
  static constexpr std::int32_t first = 0;
};
struct ScaleDefinitionTag {
  static constexpr std::int32_t first = 0;
};

using FlankNo = Row<FlankTag>;                       // 1 .. FlankCount
using ElementSlot = Row<ElementTag>;                 // 1 .. ElementTotal; slot 0 is no element
using DataPosition = Row<DataPositionTag>;           // 1 .. DataFlankCount
using Position = Row<PositionTag>;                   // 1 .. ModelFlankCount
using ModelRow = Row<ModelTag>;                      // 0 .. ModelLast
using ScaleDefinitionRow = Row<ScaleDefinitionTag>;  // 0 .. ScaleLast; -1 is no definition

// How a Flank's measures enter: a positive Flank adds its measure, a negative one subtracts it.
constexpr std::int16_t kPositiveOrientation = -1;
constexpr std::int16_t kNegativeOrientation = 0;

// How a Flank's origin is set.
constexpr std::int16_t kNonCentered = -1;          // the Flank floats
constexpr std::int16_t kCentered = 0;              // on its free elements
constexpr std::int16_t kCenteredWithExtremes = 1;  // on its free and extreme elements (letter Z)

// Row f describes Flank f; every column has the rows 1 to FlankCount.
struct FlankTable {
  Column<FlankNo, std::string> FlankName;
  Column<FlankNo, std::string> FlankOptions;          // upper case, behind one blank: " A"
  Column<FlankNo, std::int32_t> FlankLow, FlankHigh;  // element numbers in use; 0 for none
  Column<FlankNo, std::int32_t> FlankElementCount;    // slots
  Column<FlankNo, ElementSlot> FlankFirstSlot;        // slot of FlankLow
  Column<FlankNo, float> FlankWeight;                 // 1 by default
  Column<FlankNo, std::string> FlankNullLabel;
  Column<FlankNo, std::int16_t> FlankOrientation;   // kPositiveOrientation, kNegativeOrientation
  Column<FlankNo, std::int16_t> FlankCenter;        // kNonCentered, kCentered, ...WithExtremes
  Column<FlankNo, std::string> FlankDelements;      // "N.", "L.", "NL", "LN"
  Column<FlankNo, std::int32_t> identifierStart;    // Delements= E: column within a data field
  Column<FlankNo, std::int32_t> identifierWidth;    // Delements= W; both 0 when not given
  Column<FlankNo, std::int32_t> FlankHighestGroup;  // largest group number, 0 for none
};

inline bool IsPositive(const FlankTable& flanks, FlankNo flank) {
  return flanks.FlankOrientation[flank] == kPositiveOrientation;
}

// Data positions, active positions and Flanks.
struct EntryMaps {
  Column<DataPosition, FlankNo> EntryMap;                // Flank 0: the position is not used
  Column<DataPosition, Position> ActiveMap;              // Position 0: not active
  Column<DataPosition, std::int8_t> DataPositionActive;  // 0 unused, 1 used, -1 dummy ("@")
  Column<Position, FlankNo> ModelFlank;
};

enum class AnchorKind : std::uint8_t { none, anchored, groupAnchored };

// One row for each element of each Flank, Flank after Flank, numbers ascending within a Flank.
struct ElementTable {
  Column<ElementSlot, std::int32_t> ElementNumber;  // as the user wrote it
  Column<ElementSlot, std::string> ElementLabel;
  Column<ElementSlot, AnchorKind> ElementAnchor;
  Column<ElementSlot, float> PresetMeasure;  // logits; 0: none; never 0 for an anchor
  Column<ElementSlot, std::int16_t> ElementGroup;
  Column<ElementSlot, float> ElementWeight;
  Column<ElementSlot, ElementSlot> ElementTarget;  // slot 0: its own measure
  Column<ElementSlot, FlankNo> ElementFlank;
  bool ElementWeightsInUse = false;  // a weight that is not 1
  int ElementLabelWidth = 0;         // display width of the longest label
};

enum class ScaleType : std::int8_t { missing = -1, rating = 0, binomial = 1, poisson = 2 };

// What a model statement says of one position.
struct PositionReference {
  std::int32_t ModelLow = -1;  // -1 any element, -2 the position is ignored (X)
  std::int32_t ModelHigh = -1;
  bool empty = false;       // not used by this statement
  bool ignored = false;     // X
  bool dummy = false;       // @: matched, but takes no part in the measure
  bool structured = false;  // #: each element has its own category structure
  bool reversed = false;    // leading -
  bool bias = false;        // B
  // Whether the position's element enters the measure sum, the counts and the fit.
  bool measures() const { return !empty && !ignored && !dummy; }
};

// Row m is statement m in the order of the Specification; rows 0 to ModelLast.
struct ModelTable {
  Column<ModelRow, std::vector<std::string>> ModelText;  // normalised fields: positions, type, ...
  Grid<ModelRow, PositionReference> references;          // by active position less 1
  Column<ModelRow, ScaleType> ModelScaleType;
  Column<ModelRow, std::int32_t> ModelCategoryMax;
  Column<ModelRow, std::uint8_t> ModelKeep;
  Column<ModelRow, float> ModelWeight;
  Column<ModelRow, ScaleDefinitionRow> ModelScale;  // row -1: no named scale
  Column<ModelRow, std::int64_t> statementLine;     // in the Specification; 0: not from a line
  bool anyReversed = false;

  const PositionReference& reference(ModelRow model, Position position) const {
    return references.at(model, position.number() - 1);
  }
};

// The category of a line that only recodes responses ("-1 = label,,,9").
constexpr int kRecodingLine = -1;

// One category of a `Rating (or partial credit) scale=` definition.
struct ScaleCategory {
  int number = 0;  // or kRecodingLine
  std::string label;
  float anchor = 0.0f;  // user units
  bool hasAnchorValue = false;
  char flag = ' ';  // 'A': the threshold is anchored
};

// An item of a definition's recoding list: a text, or a range of numbers, and what it becomes.
struct RecodeItem {
  std::string category;  // the new text, as a rule a category number
  std::string text;      // as written
  bool isRange = false;
  double low = 0.0, high = 0.0;
};

// A `Rating (or partial credit) scale=` definition.
struct ScaleDefinition {
  std::string name;
  std::string type;       // upper case
  bool specific = false;  // one structure for each statement
  bool keep = false;      // unobserved intermediate categories are kept
  std::string tail;       // the sixth field
  std::vector<ScaleCategory> categories;
  std::vector<RecodeItem> recodes;
  bool referenced = false;  // set by Table 1's walk over the statements
};

// Group labels of `Glabel=`.
struct GroupLabel {
  FlankNo flank;
  std::int32_t group = 0;
  std::string label;
  std::int64_t line = 0;  // in the Specification; 0: not from a line
};

// What the Specification describes.  Written by spec/; const once the data pass has ended.
struct Design {
  int FlankCount = 0;
  int DataFlankCount = 0;
  int ModelFlankCount = 0;
  int ElementTotal = 0;
  int ModelLast = -1;
  int ScaleLast = -1;
  int MaxCategory = -1;
  FlankTable flanks;
  EntryMaps maps;
  ElementTable elements;
  ModelTable models;
  Column<ScaleDefinitionRow, ScaleDefinition> scales;
  std::vector<GroupLabel> groupLabels;
  bool repeatedFlanks = false;  // a Flank stands in two positions

  int ModelTypeField() const { return ModelFlankCount + 1; }
  int ModelWeightField() const { return ModelFlankCount + 2; }
  int ModelMaxFields() const { return ModelFlankCount + 3; }
  int FirstResponseField() const { return DataFlankCount + 1; }
};

// The slots of a Flank, first and last; an empty range when it has no element.
struct SlotRange {
  ElementSlot low;
  ElementSlot high;
  bool empty() const { return high < low; }
};
inline SlotRange SlotsOf(const FlankTable& flanks, FlankNo flank) {
  const std::int32_t count = flanks.FlankElementCount[flank];
  const ElementSlot first = flanks.FlankFirstSlot[flank];
  return {first, first + (count - 1)};
}

}  // namespace flanks

#endif  // FLANKS_RUN_DESIGN_H
