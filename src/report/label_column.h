// The label column of Tables 7 and 13: behind the figures or, with Left-hand placement, in front of
// them.
//
// The figures of heads and edit words are written with "|" for the column separator and begin and
// end with one.  A row is filled from left to right, so its edit word has a free field on the side
// where the label does not stand; that takes an empty text.
//
// Tested by tests/unit/report/table7_columns_test.cpp and tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_REPORT_LABEL_COLUMN_H
#define FLANKS_REPORT_LABEL_COLUMN_H

#include <array>
#include <string>
#include <string_view>

#include "base/utf8.h"
#include "report/format/edit_word.h"

namespace flanks {

constexpr int kSmallestLabelWidth = 20;

struct LabelColumn {
  bool leftHand = false;
  int width = kSmallestLabelWidth;  // display width
  Utf8Encoded encoding = Utf8Encoded::detect;
};

// The heads of the figures, with `head` above the labels.
std::array<std::string, 4> HeadingRowsWith(const LabelColumn& label, std::string_view firstFigures,
                                           std::string_view secondFigures, const std::string& head);
// The rule of a box whose head has these figures.
std::string RulePatternWith(const LabelColumn& label, std::string_view figures);
// The edit word of a row.
std::string RowWordWith(const LabelColumn& label, std::string_view figures);

// A row of `word`: the figures are put in between these two.
EditLine BeginRow(const LabelColumn& label, const std::string& word, const std::string& text);
std::string EndRow(EditLine& line, const LabelColumn& label, const std::string& text);

}  // namespace flanks

#endif  // FLANKS_REPORT_LABEL_COLUMN_H
