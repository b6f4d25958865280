// The rating scale columns of a ruler: the category that is expected in each row.
//
// The expected score half a row below and half a row above a row's value are taken from the kernel;
// the category of their rounded mean is shown.  The end row towards higher measures shows the
// highest category.  "---" marks a row whose category is another one than that of the row below it.
//
// Tested by tests/unit/report/table6_categories_test.cpp.
#ifndef FLANKS_REPORT_TABLE6_CATEGORIES_H
#define FLANKS_REPORT_TABLE6_CATEGORIES_H

#include <cstdint>
#include <string>
#include <vector>

#include "report/table6_scale.h"
#include "report/table6_settings.h"
#include "run/analysis.h"

namespace flanks {

// More columns would be no map; those behind them are told in number.
constexpr std::int32_t kMostScaleColumns = 50;

struct RulerScaleColumn {
  ScaleRow scale;
  std::string head;                 // "Scale", or "S.2"
  std::vector<std::string> models;  // "S.2: Model = ?,?,R4", one for each statement
  int width = 5;                    // places between its separators
  std::vector<std::string> cells;   // by row of the grid, as wide as the column
};

// The scales of two categories and more, ascending.
std::vector<ScaleRow> ScalesOfRulers(const ScaleTables& scales);

// The ordered category of each row, from the top.
std::vector<int> RowCategories(const Analysis& analysis, ScaleRow scale, const RulerScale& ruler);

// The columns that the list asks for, none when it asks for none.
std::vector<RulerScaleColumn> BuildScaleColumns(const Analysis& analysis, const RulerList& list,
                                                const RulerScale& ruler);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE6_CATEGORIES_H
