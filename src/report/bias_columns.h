// The columns of Table 13: heads and edit words, and the label column that names a term.
//
// A term is named by its number ("Sq") and, for each position of the interaction in order, the
// number, the label and the measure of its element.  Without extreme bias the row has the figures
// of the term; a term that is not estimable has its scores and a word.
//
//   Terms have scores, bias, standard error, t, its degrees of freedom and probability, fit.
//   Elements are named the same way in Table 14, so the cells stand alone.
//
// Tested by tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_REPORT_BIAS_COLUMNS_H
#define FLANKS_REPORT_BIAS_COLUMNS_H

#include <array>
#include <string>
#include <vector>

#include "report/label_column.h"
#include "run/analysis.h"
#include "stats/bias_statistics.h"
#include "stats/bias_summary.h"

namespace flanks {

// How the elements of a Flank are named: number, label and measure, each with a blank between.
struct BiasCell {
  FlankNo flank;
  int numberWidth = 3;
  int labelWidth = 1;  // display width
};
BiasCell BiasCellOf(const Analysis& analysis, FlankNo flank);
// "Num Raters measr+" and "  2 Ben     -.52", of one width.
std::string BiasCellHead(const Analysis& analysis, const BiasCell& cell);
std::string BiasCellText(const Analysis& analysis, const BiasCell& cell, ElementSlot slot);

struct Table13Layout {
  LabelColumn label;
  int sequenceWidth = 2;
  std::vector<BiasCell> cells;  // by position of the interaction
  std::array<std::string, 4> headingRows;
  std::string rulePattern;
  std::string termRow, textRow, footRow;  // edit words
};
// The box is at least as wide as a line of `widest` columns across it.
Table13Layout LayOutTable13(const Analysis& analysis, const BiasResults& results, int widest = 0);

std::string TermLine(const Analysis& analysis, const Table13Layout& layout,
                     const BiasResults& results, BiasTermRow term);

// A row of the foot block: `figures` under the columns, `words` in the label column.
std::string BiasFootLine(const Settings& settings, const Table13Layout& layout,
                         const BiasFigures& figures, const std::string& words);

// A line of words across the box.
std::string BiasLineAcross(const Table13Layout& layout, const std::string& words);

// A bias in user units, six places; of an extreme term with "<" or ">" in front.
std::string BiasSizeText(double userSize, BiasStanding standing, int decimals);

}  // namespace flanks

#endif  // FLANKS_REPORT_BIAS_COLUMNS_H
