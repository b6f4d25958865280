// The columns of Table 14: two elements of the target, the context that they share, and the
// contrast of their biases in it.
//
//   |Target-   |  Target     Obs-Exp|Target-   |  Target     Obs-Exp Context    |         Joint ...
//   | Num Raters| Measr  S.E. Average | Num Raters| Measr  S.E. Average Num Tasks|Contrast  S.E.
//   ...
//
// The measure of a target is its own with its bias in this context, by the Flank's sign; S.E. and
// Obs-Exp average are those of the term.  The contrast has the direction of the sizes in Table 13.
//
// Tested by tests/unit/report/table14_test.cpp.
#ifndef FLANKS_REPORT_TABLE14_COLUMNS_H
#define FLANKS_REPORT_TABLE14_COLUMNS_H

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "report/bias_columns.h"
#include "run/analysis.h"
#include "stats/bias_pairing.h"

namespace flanks {

struct Table14Layout {
  std::size_t target = 0;  // which position of the interaction, from 0 on
  Utf8Encoded encoding = Utf8Encoded::detect;
  std::vector<BiasCell> cells;  // by position of the interaction
  int targetWidth = 0, contextWidth = 0;
  std::array<std::string, 4> headingRows;
  std::string rulePattern;
  std::string row;  // edit word
};
Table14Layout LayOutTable14(const Analysis& analysis, const BiasResults& results,
                            std::size_t target);

std::string PairLine(const Analysis& analysis, const Table14Layout& layout,
                     const BiasResults& results, BiasPair pair);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE14_COLUMNS_H
