// The lines of figures of Table 8.
//
// Measures are shown as logits times Uscale=, without Umean=: they are distances from the point
// where the measures of an observation sum to 0.
//
// Tested by tests/unit/report/table8_rows_test.cpp.
#ifndef FLANKS_REPORT_TABLE8_ROWS_H
#define FLANKS_REPORT_TABLE8_ROWS_H

#include <string>

#include "report/table8_columns.h"
#include "report/table8_scale.h"

namespace flanks {

struct Table8Units {
  double uscale = 1.0;
  int udecimals = 2;
};

std::string CategoryLine(const Table8Layout& layout, const Table8Units& units,
                         const CategoryRow& row);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE8_ROWS_H
