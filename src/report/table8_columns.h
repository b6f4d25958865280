// The columns of Table 8: heads and edit words as rows of data.
//
// A line is put together from groups of columns: the counts of a category, the averages behind
// them, where the category stands on the measure, a diagnosis of anchored thresholds, its name.
// Each group brings its three heading rows, its rules and the edit word of each kind of line; which
// groups a scale's Table has follows from the scale.  All words of a group are equally wide and
// have their separators in the same places, so that figures stand under their heads.
//
// Tested by tests/unit/report/table8_columns_test.cpp.
#ifndef FLANKS_REPORT_TABLE8_COLUMNS_H
#define FLANKS_REPORT_TABLE8_COLUMNS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/utf8.h"

namespace flanks {

// The kinds of cells in a group.  The counts and the places on the measure of one line may be of
// different kinds: an unobserved category that is kept has a place and no figures.
enum class CellKind : std::uint8_t {
  blank,     // little is known
  unplaced,  // responses that have no place in the scale
  first,     // the lowest category
  other,
  top,
};
constexpr std::size_t kCellKinds = 5;

// "|" stands for the column separator in all of these; the outer separators are not in them.
struct Table8Group {
  std::array<std::string_view, 3> heads;
  std::string_view topRule, rule;
  std::array<std::string_view, kCellKinds> words;
};

// The places of a scale's categories on the measure, or none for counts.
enum class Table8Structure : std::uint8_t { none, dichotomy, rating };

struct Table8Request {
  bool codes = false;  // the categories of the data are not numbered as they are scored
  Table8Structure structure = Table8Structure::none;
  bool diagnostic = false;
  int nameWidth = 0;  // of the longest category name; 0: none has one
  bool leftHand = false;
};

// What one scale's Table 8 looks like.
struct Table8Layout {
  Table8Request request;
  Utf8Encoded encoding = Utf8Encoded::detect;
  std::array<std::string, 4> headingRows;  // rows 1 to 3
  std::string topRule, rule;               // patterns
  std::string nameWord;                    // edit word of the name; empty without one
  std::vector<const Table8Group*> counts;  // groups left and right of the places
  const Table8Group* structure = nullptr;
  const Table8Group* diagnostic = nullptr;
};

Table8Layout LayOutTable8(const Table8Request& request, Utf8Encoded encoding);

// The edit word of a line: of its counts, and of its places and diagnosis.
std::string Table8Word(const Table8Layout& layout, CellKind counts, CellKind structure);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE8_COLUMNS_H
