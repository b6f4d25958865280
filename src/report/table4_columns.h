// The columns that Tables 4 and 5 share: the figures of a response, and beside them its elements.
//
// Figures stand under " Cat  Score  Exp.  Resd StRes".  The element group has a cell for each model
// position: the element's number under "Num" and its label under the Flank's name, both as wide as
// the Flank needs.  In Table 5 the group is empty and holds the words of a row.  It comes behind
// the figures, with Left-hand placement before them.
//
// Tested by tests/unit/report/table4_columns_test.cpp.
#ifndef FLANKS_REPORT_TABLE4_COLUMNS_H
#define FLANKS_REPORT_TABLE4_COLUMNS_H

#include <array>
#include <span>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "run/analysis.h"

namespace flanks {

constexpr std::size_t kFigureColumns = 5;
using FigureTexts = std::array<std::string, kFigureColumns>;

// A cell of the element group.
struct ElementCell {
  FlankNo flank;
  int numberWidth = 3;
  int width = 0;  // number, blank and label: columns of the report
};

struct Table4Layout {
  bool leftHand = false;
  Utf8Encoded encoding = Utf8Encoded::detect;
  int groupWidth = 0;              // of the element group, without the blank in front of it
  std::vector<ElementCell> cells;  // by model position; none in Table 5
  std::array<std::string, 4> headingRows;
  std::string rulePattern;
  std::string row;      // edit word with a field for each figure and each cell
  std::string wordRow;  // the same with one field for words in the element group
};

// The element group of all model positions.  The box is at least as wide as `words`.
Table4Layout LayOutTable4(const Analysis& analysis, const std::string& words = "");

// The empty group; as wide as `words` when these are wider.
Table4Layout LayOutTable5(const Settings& settings, const std::string& words);

// A row of Table 4, without its sequence number; `elements` by model position, slot 0 for none.
std::string ResponseLine(const Table4Layout& layout, const ElementTable& elements,
                         const FigureTexts& figures, std::span<const ElementSlot> ofRow);

// A row of Table 5: `words` in the element group.
std::string WordLine(const Table4Layout& layout, const FigureTexts& figures,
                     const std::string& words);

// A line with `words` in the middle of the box.
std::string LineAcross(const Table4Layout& layout, const std::string& words);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE4_COLUMNS_H
