// The grid of a ruler: which element stands in which row, and how wide each column is.
//
// PlaceElements puts the elements of one column into rows: a sort key for each, of a class digit
// (extreme elements apart where they stand at the ends), the row in hexadecimal digits and the
// element's slot, so that the sorted keys are the column from top to bottom.  Columns of asterisks
// and counts need no order, only how many elements a row has.  FitColumns then sets the widths:
// what a label, a number, the largest count of a row needs, or the fixed width of `Yardstick=`.
//
// A row of which an element column cannot take all elements goes on in further lines.
//
// Tested by tests/unit/report/table6_layout_test.cpp and tests/properties/report/table6_test.cpp.
#ifndef FLANKS_REPORT_TABLE6_LAYOUT_H
#define FLANKS_REPORT_TABLE6_LAYOUT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "report/format/key_sort.h"
#include "report/table6_scale.h"
#include "report/table6_settings.h"
#include "run/analysis.h"

namespace flanks {

// The elements that a ruler shows, ascending, by Flank.
using RulerElements = Column<FlankNo, std::vector<ElementSlot>>;

double UserMeasure(const Settings& settings, float measure);

// Whether an extreme element belongs at the end of high user measures; a unit below 0 turns the
// scale over.
bool IsAtHighEnd(const Settings& settings, std::int16_t status);

// Measured and extreme elements, and with Omit-unobserved=No anchored ones without data.
bool IsOnRuler(const Analysis& analysis, ElementSlot slot);

// All of the design, or those of `members` (ascending), that are on a ruler.
RulerElements ElementsOfRuler(const Analysis& analysis);
RulerElements ElementsOfRuler(const Analysis& analysis, const std::vector<ElementSlot>& members);

// What the list and the range of a ruler depend on.
Column<FlankNo, RulerFlank> SumUpElements(const Analysis& analysis, const RulerElements& elements);

// The scale over the Flanks of the list; over all of them where it names none.
RulerScale ScaleOfRuler(const Settings& settings, const RulerList& list,
                        const Column<FlankNo, RulerFlank>& shown, const Yardstick& yardstick);

// The elements of one column in their rows.
struct PlacedElements {
  std::vector<std::int32_t> counts;  // by row
  std::vector<std::size_t> begin;    // by row, and one more: where its elements begin in `order`
  std::vector<ElementSlot> order;    // from the top row down; empty for asterisks and counts
  std::int32_t largestCount() const;
};

PlacedElements PlaceElements(const Analysis& analysis, const std::vector<ElementSlot>& elements,
                             RulerForm form, const RulerScale& scale, const Yardstick& yardstick,
                             const StopTest& isStopping = {});

// One column of a Flank, fitted.
struct RulerColumn {
  RulerItem item;
  PlacedElements placed;
  std::string head;        // "+Persons", with " * =2" or " Count" behind it
  int width = 0;           // places between its separators
  int entryWidth = 0;      // places of a label or a number
  int perLine = 1;         // labels or numbers side by side
  std::int32_t group = 1;  // elements of an asterisk

  // The lines that a row of the grid needs for this column.
  std::int32_t LinesOf(int row) const;
};

// What the widths of a column depend on.
struct ColumnNeeds {
  RulerForm form = RulerForm::labels;
  int nameWidth = 0;              // of the Flank's name
  int entryWidth = 0;             // of the longest label or number
  std::int32_t largestCount = 0;  // of a row
  int fixedWidth = 0;             // of `Yardstick=`; 0: none
};
struct ColumnFit {
  int width = 0, entryWidth = 0, perLine = 1;
  std::int32_t group = 1;
};
ColumnFit FitColumn(const ColumnNeeds& needs);

// Sets the widths of the columns, whose elements have been placed.
void FitColumns(const Analysis& analysis, const Yardstick& yardstick,
                std::vector<RulerColumn>& columns);

// The cell of a column in line `line` of row `row`: exactly as wide as the column.
std::string RulerCell(const Analysis& analysis, const RulerColumn& column, int row,
                      std::int32_t line);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE6_LAYOUT_H
