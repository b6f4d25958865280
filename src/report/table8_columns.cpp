#include "report/table8_columns.h"

#include <algorithm>

#include "report/format/box.h"
#include "report/format/clip_field.h"

namespace flanks {
namespace {

constexpr int kSmallestNameWidth = 8;  // of its head

// Words in the order of CellKind: blank, unplaced, first, other, top.
constexpr Table8Group kCounts = {{"           DATA                 ",  //
                                  "      Category Counts       Cum.",  //
                                  "Score Total      Used    %    % "},
                                 "--------------------------------",
                                 "--------------------------------",
                                 {"### \\      \\                    ",        //
                                  "### \\      \\                    ",        //
                                  "### \\      \\  \\      \\ \\ \\% \\ \\%",  //
                                  "### \\      \\  \\      \\ \\ \\% \\ \\%",  //
                                  "### \\      \\  \\      \\ \\ \\% \\ \\%"}};

// The score and the category as the data have it.
constexpr Table8Group kCountsWithCodes = {{"               DATA                ",  //
                                           "Category      Counts           Cum.",  //
                                           "   Score  Total     Used    %    % "},
                                          "-----------------------------------",
                                          "-----------------------------------",
                                          {"###     \\      \\                   ",        //
                                           "    ### \\      \\                   ",        //
                                           "### ### \\      \\ \\      \\ \\ \\% \\ \\%",  //
                                           "### ### \\      \\ \\      \\ \\ \\% \\ \\%",  //
                                           "### ### \\      \\ \\      \\ \\ \\% \\ \\%"}};

constexpr Table8Group kQuality = {{"   QUALITY CONTROL ",  //
                                   "  Avge  Exp. OUTFIT",  //
                                   "  Meas  Meas  MnSq "},
                                  "-------------------",
                                  "-------------------",
                                  {"                   ",    //
                                   "                   ",    //
                                   "\\                 \\",  //
                                   "\\                 \\",  //
                                   "\\                 \\"}};

constexpr Table8Group kDichotomy = {{" ANDRICH",  //
                                     " Thresh.",  //
                                     " Measure"},
                                    "--------",
                                    "--------",
                                    {"        ",    //
                                     "        ",    //
                                     "        ",    //
                                     "\\      \\",  //
                                     "\\      \\"}};

// Kept: where the most probable and the median column meet, the top rule has no junction
// (docs/quirks.md).
constexpr Table8Group kRating = {
    {"RASCH-ANDRICH|  EXPECTATION  |  MOST  |  RASCH-  | Cat",  //
     " Thresholds  |  Measure at   |PROBABLE| THURSTONE|PEAK",  //
     "Measure  S.E.|Category  -0.5 |  from  |Thresholds|Prob"},
    "-------------x--(Mean)-------x-(Modal)--(Median)-x----",
    "-------------x---------------x--------x----------x----",
    {"             |               |        |          |    ",              //
     "             |               |        |          |    ",              //
     "             |(\\    \\)       |   low  |   low    |100%",            //
     "\\    \\& \\   \\| \\    \\  \\    \\|\\      \\|\\       \\ |###%",  //
     "\\    \\& \\   \\|(\\    \\) \\    \\|\\      \\|\\       \\ |100%"}};

constexpr Table8Group kDiagnostic = {{" Obsd-Expd  Andrich",  //
                                      "Diagnostic  Thresh.",  //
                                      " Residual   Displac"},
                                     "-------------------",
                                     "-------------------",
                                     {"                   ",      //
                                      "                   ",      //
                                      "\\        \\ \\      \\",  //
                                      "\\        \\ \\      \\",  //
                                      "\\        \\ \\      \\"}};

constexpr std::array<std::string_view, 3> kNameHeads = {"Response", "  Name", ""};

std::vector<const Table8Group*> GroupsOf(const Table8Layout& layout) {
  std::vector<const Table8Group*> groups = layout.counts;
  if (layout.structure != nullptr) groups.push_back(layout.structure);
  if (layout.diagnostic != nullptr) groups.push_back(layout.diagnostic);
  return groups;
}

std::string Columns(std::string text) {
  std::replace(text.begin(), text.end(), '|', kBoxColumn);
  return text;
}

// The cells of a line, each closed by a separator; the name's in front or at the end.
std::string JoinCells(const Table8Layout& layout, const std::string& cells, const std::string& name,
                      char separator) {
  const std::string nameCell = name.empty() ? "" : name + separator;
  const bool left = layout.request.leftHand;
  return separator + (left ? nameCell + cells : cells + nameCell);
}

std::string NameCell(const Table8Layout& layout, std::string_view text) {
  if (layout.request.nameWidth == 0) return "";
  return " " + ClipField(text, layout.request.nameWidth, layout.encoding);
}

std::string HeadingRow(const Table8Layout& layout, std::size_t row) {
  std::string cells;
  for (const Table8Group* group : GroupsOf(layout))
    cells += Columns(std::string(group->heads[row]) + "|");
  return JoinCells(layout, cells, NameCell(layout, kNameHeads[row]), kBoxColumn);
}

std::string Rule(const Table8Layout& layout, std::string_view Table8Group::*rule) {
  std::string cells;
  for (const Table8Group* group : GroupsOf(layout)) cells += std::string(group->*rule) + "x";
  const int width = layout.request.nameWidth;
  const std::string name(width == 0 ? 0 : static_cast<std::size_t>(width) + 1, '-');
  return JoinCells(layout, cells, name, 'x');
}

}  // namespace

Table8Layout LayOutTable8(const Table8Request& request, Utf8Encoded encoding) {
  Table8Layout layout;
  layout.request = request;
  layout.encoding = encoding;
  layout.counts = {request.codes ? &kCountsWithCodes : &kCounts, &kQuality};
  if (request.structure == Table8Structure::dichotomy) layout.structure = &kDichotomy;
  if (request.structure == Table8Structure::rating) layout.structure = &kRating;
  if (request.diagnostic) layout.diagnostic = &kDiagnostic;
  if (request.nameWidth > 0) {
    int& width = layout.request.nameWidth;
    width = std::max(width, kSmallestNameWidth);
    layout.nameWord = " \\" + std::string(static_cast<std::size_t>(width) - 2, ' ') + "\\";
  }
  for (std::size_t row = 0; row < 3; ++row) layout.headingRows[row + 1] = HeadingRow(layout, row);
  layout.topRule = Rule(layout, &Table8Group::topRule);
  layout.rule = Rule(layout, &Table8Group::rule);
  return layout;
}

std::string Table8Word(const Table8Layout& layout, CellKind counts, CellKind structure) {
  std::string cells;
  for (const Table8Group* group : layout.counts)
    cells += Columns(std::string(group->words[static_cast<std::size_t>(counts)]) + "|");
  for (const Table8Group* group : {layout.structure, layout.diagnostic})
    if (group != nullptr)
      cells += Columns(std::string(group->words[static_cast<std::size_t>(structure)]) + "|");
  return JoinCells(layout, cells, layout.nameWord, kBoxColumn);
}

}  // namespace flanks
