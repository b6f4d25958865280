// The text that imported data become, in the form that the data pass reads:
//
//   one line for a row, a tab between cells, as many cells as the widest row so far has, and one
//   behind replication and elements at least; a row without any is an empty line
//   whole numbers without a point, others in the shortest form of 15 digits
//   a comma, semicolon, quote mark, "=" or tab inside a text is a blank: it would split the cell;
//   several blanks are one
//   variable names are a first line that begins with ";"
//   row n of the first sheet is line n; each further sheet begins with a line `; Sheet "NAME"`
//
// The first row of a sheet may be a heading.  It is when its cells behind the elements are words,
// none of them a code of responses, the row has no number, and one of the rows below has a number
// below one of those words: the first fifty are looked at.  It becomes a comment, and the user
// is told.
//
//   ImportText text(rule, watch, put);
//   text.BeginSheet("Marks");
//   text.BeginRow(1); text.AddNumber(1, 12.0); text.AddText(2, "Ann"); text.EndRow();
//   text.EndSheet();
//   if (const ConversionEnd end = text.Finish(); !end.done()) ...
//
// Memory is the rows that are looked at and a buffer.  Tested by
// tests/unit/import/import_text_test.cpp and fuzz/import_text_fuzz.cpp.
#ifndef FLANKS_IMPORT_IMPORT_TEXT_H
#define FLANKS_IMPORT_IMPORT_TEXT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "import/conversion.h"

namespace flanks {

// 3, 2.5, 0.1, 1e+21, in 15 digits but for whole numbers; empty for a value that is no number.
std::string ImportedNumber(double value);
std::string ImportedNumber(float value);  // shortest for 32 bits

// Where a line of such a text came from.
struct TextPlace {
  std::int64_t row = 0;  // of the sheet or table; 0 when the line is none of its rows
  std::string sheet;     // empty for the first sheet, and for a table
  std::string line;
};
enum class TextRows : std::uint8_t { ofSheets, ofTable };
TextPlace FindTextPlace(const std::string& file, TextRows rows, std::int64_t lineNumber);

// Whether the first cell of a line is a replication, "R2".
bool BeginsWithReplication(std::string_view line, std::string_view replication);

// "A" for column 1, "AA" for 27.
std::string ColumnLetters(int column);

class ImportText {
 public:
  // Takes finished pieces of text; false when they cannot be written.
  using Put = std::function<bool(std::string_view)>;

  ImportText(HeadingRule rule, const ConversionWatch& watch, Put put);

  // A sheet; its rows come in ascending order, with gaps where they are empty.
  void BeginSheet(std::string_view name);
  void EndSheet();
  // Behind BeginSheet of the only sheet that is read: tells that the file has several.
  void TellSheets(std::size_t sheets);
  // A table with variable names in place of a sheet.
  void BeginTable(const std::vector<std::string>& names);

  // Cells come in ascending columns, from 1 on; those left out are empty.
  void BeginRow(std::int64_t row);
  void AddNumber(int column, double value) { AddPlain(column, ImportedNumber(value)); }
  void AddNumber(int column, float value) { AddPlain(column, ImportedNumber(value)); }
  void AddText(int column, std::string_view text);
  void EndRow();

  // The text may grow by so many bytes from here on; beyond them it is broken off.
  void AllowBytes(std::int64_t bytes) { mostBytes_ = bytes_ + bytes; }
  // Something is wrong with the cell: the end is its place and `words`.
  void Refuse(int column, std::string_view words);
  // No more rows are of use.
  bool broken() const { return !end_.done(); }
  // Writes what is left.  A text without a row fails.
  ConversionEnd Finish();

 private:
  enum class CellKind : std::uint8_t { empty, number, code, word };
  struct Row {
    std::int64_t number = 0;
    int columns = 0;  // up to its last cell
    std::string line;
    std::vector<CellKind> kinds;  // while a heading is looked for

    bool isComment() const;
  };

  void AddPlain(int column, std::string_view text);
  void StartCell(int column, CellKind kind);
  void SettleHeading();
  bool IsHeading(std::ptrdiff_t first) const;
  void WriteRow(Row& row);
  bool IsCode(std::string_view text) const;
  std::string Place(std::int64_t row) const;
  void WriteLine(std::string_view line);
  void Flush();

  HeadingRule rule_;
  const ConversionWatch& watch_;
  Put put_;
  std::string sheet_;
  bool isSheet_ = false;
  int sheets_ = 0;

  std::string line_;
  std::vector<CellKind> kinds_;  // of the row, while a heading is looked for
  std::int64_t row_ = 0;         // at work
  std::int64_t lastRow_ = 0;     // written, of the sheet
  int lastColumn_ = 0;
  int widest_ = 0;  // columns, of the rows so far

  bool looking_ = false;   // for a heading
  std::vector<Row> held_;  // meanwhile

  std::string clean_;
  std::string buffer_;
  std::int64_t rows_ = 0;
  std::int64_t bytes_ = 0;
  std::int64_t mostBytes_;
  ConversionEnd end_;
};

}  // namespace flanks

#endif  // FLANKS_IMPORT_IMPORT_TEXT_H
