// The scales that Table 8 reports on, and what is known of each of their categories.
//
// Each set of thresholds has a block of its own.  The blocks of one definition, or of one statement
// that has none, share a number; where these are several, as with categories of their own for each
// element (#), a second number counts them: 8.1, or 8.1.1, 8.1.2, ...
//
// Tested by tests/unit/report/table8_scale_test.cpp.
#ifndef FLANKS_REPORT_TABLE8_SCALE_H
#define FLANKS_REPORT_TABLE8_SCALE_H

#include <optional>
#include <string>
#include <vector>

#include "report/table8_columns.h"
#include "run/analysis.h"
#include "stats/category_pass.h"
#include "stats/scale_landmarks.h"

namespace flanks {

// A block of Table 8.
struct Table8Block {
  ScaleRow scale;
  std::string number;                    // "1", "1.2"
  std::vector<StructureRow> structures;  // all that use the scale
};
std::vector<Table8Block> Table8Blocks(const Analysis& analysis);

// " Model = ?,3,R4  ; Items: essay" for each statement and set of "#" elements, the first twenty.
std::vector<std::string> ModelLines(const Analysis& analysis, const Table8Block& block);
// "Quality,R4,General,Ordinal"; of a scale without a name its type.
std::string ScaleIdentification(const Analysis& analysis, ScaleRow scale);

// A line of the box.  Measures are logits.
struct CategoryRow {
  CellKind counts = CellKind::blank, structure = CellKind::blank;
  std::int16_t score = 0;          // the ordered category and the lowest one's number
  std::int16_t code = 0;           // the category as the data have it
  double total = 0.0, used = 0.0;  // responses, weighted
  double percent = 0.0, cumulative = 0.0;
  CategoryFigures figures;
  bool disordered = false;  // its average measure is not above that of the category below
  std::optional<float> threshold;
  bool infinite = false;  // a threshold that no measure reaches
  bool anchored = false;
  std::optional<double> standardError;
  CategoryLandmarks landmarks;
  double residual = 0.0;               // observed less expected count
  std::optional<double> displacement;  // of an anchored threshold
  std::string name;
};

struct ScaleReport {
  Table8Structure structure = Table8Structure::none;
  bool codes = false;
  bool diagnostic = false;
  std::vector<CategoryRow> rows;             // ascending
  std::optional<KernelScale> kernel;         // none with fewer than two categories
  std::vector<CategoryLandmarks> landmarks;  // by ordered category; empty likewise
  int lowest = 0;                            // the score of ordered category 0
};
ScaleReport ReportOnScale(const Analysis& analysis, ScaleRow scale, const CategorySums& sums);

// "Binomial trials S.E. .05 discrimination:  1.02", "Poisson Anchored discrimination:  1.00"; empty
// for other scales.
std::string DiscriminationLine(const ScaleTables& scales, ScaleRow scale);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE8_SCALE_H
