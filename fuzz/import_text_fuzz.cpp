// Names with lists of sheets, and cells of every kind as imported text.
//
// The first line of the input is a name, and a format and a place of a cell as well.  In the other
// lines a tab ends a cell; a cell that begins with "#" is a number, one with "!" an error, and "@"
// begins another sheet.  What is written must be split again into the cells that were put in.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/text.h"
#include "data/data_line.h"
#include "fuzz_checks.h"
#include "gathered_import.h"
#include "import/cell_format.h"
#include "import/import_name.h"

namespace flanks {
namespace {

constexpr double kFifteenDigits = 1e-14;

// Blanks in a row are one.
std::string OneBlank(std::string_view cell) {
  std::string kept;
  for (const char c : Trim(cell))
    if (c != ' ' || kept.empty() || kept.back() != ' ') kept += c;
  return kept;
}

void CheckName(std::string_view name) {
  const ImportName read = ReadImportName(name);
  Require(name.substr(0, read.file.size()) == read.file, "the file is the start of the name", name);
  Require(read.file.size() == name.size() || name[read.file.size()] == '(',
          "what is cut off is a list", name);
  const std::vector<std::string> names = {"One", "two", "2"};
  std::vector<std::size_t> chosen;
  const std::string reason = ChooseSheets(read.sheets, names, {false, true, false}, chosen);
  for (const std::size_t row : chosen) Require(row < names.size(), "a sheet of the book", name);
  Require(!reason.empty() || !chosen.empty(), "a sheet or words", name);
  IsDateFormat(name);
  WithoutHexadecimal(name);
  const int column = ColumnOfCell(name);
  Require(column >= 0 && column <= kMostColumns, "a column of a sheet", name);
  double day = 0;
  if (name.size() >= sizeof day) {
    std::memcpy(&day, name.data(), sizeof day);
    DateText(day, DateStart::year1900);
    const std::string number = ImportedNumber(day);
    if (!number.empty())
      Require(number == "0" || std::fabs(std::strtod(number.c_str(), nullptr) - day) <=
                                   std::fabs(day) * kFifteenDigits,
              "a number reads back", number);
  }
}

// Puts a line's cells in; what they are to become again.
std::vector<std::string> AddCells(ImportText& text, std::string_view line) {
  std::vector<std::string> cells;
  FieldCursor cursor(line, '\t');
  std::string_view cell;
  for (int column = 1; cursor.Next(cell); ++column) {
    if (cell.starts_with('!')) {
      text.Refuse(column, cell);
      cells.emplace_back();
      continue;
    }
    if (cell.starts_with('#')) {
      const double number = ReadNumericPrefix(cell.substr(1)).value;
      text.AddNumber(column, number);
      cells.push_back(ImportedNumber(number));
      continue;
    }
    text.AddText(column, cell);
    cells.push_back(OneBlank(cell));
  }
  while (!cells.empty() && cells.back().empty()) cells.pop_back();
  return cells;
}

bool IsPlain(const std::vector<std::string>& cells) {
  for (const std::string& cell : cells)
    for (const char c : cell)
      if (static_cast<unsigned char>(c) < ' ' || std::strchr(",;\"'=%*{_", c) != nullptr)
        return false;
  return cells.size() > 1;
}

void CheckText(std::string_view lines) {
  GatheredImport gathered;
  ImportText& text = gathered.text;
  text.BeginSheet("One");
  std::vector<std::vector<std::string>> rows;
  FieldCursor cursor(lines, '\n');
  std::string_view line;
  bool oneSheet = true;
  for (std::int64_t row = 1; cursor.Next(line); ++row) {
    if (line.starts_with('@')) {
      text.EndSheet();
      text.BeginSheet(line.substr(1));
      oneSheet = false;
      row = 0;
      continue;
    }
    text.BeginRow(row);
    rows.push_back(AddCells(text, line));
    text.EndRow();
  }
  text.EndSheet();
  const ConversionEnd end = text.Finish();
  Require(end.done() || !end.text.empty(), "words for what is wrong");
  if (!end.done() || !oneSheet) return;
  FieldCursor out(gathered.written, '\n');
  for (const std::vector<std::string>& cells : rows) {
    if (!out.Next(line)) break;  // empty rows at the end
    if (!IsPlain(cells) || line.starts_with(';')) continue;
    DataLine split;
    const Fault fault = SplitDataLine(line, SplitRules(), split);
    if (fault == Fault::tooManyFields) continue;
    const std::size_t skipped = split.replicationField.empty() ? 0 : 1;
    Require(split.Fields.size() + skipped >= cells.size(), "as many fields as cells", line);
    for (std::size_t i = 0; i < split.Fields.size(); ++i)
      Require(split.Fields[i] == (i + skipped < cells.size() ? cells[i + skipped] : std::string()),
              "a field is its cell, or empty behind them", line);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GoToScratchFolder();
  const std::string_view input = TextOf(data, size);
  const std::size_t end = input.find('\n');
  CheckName(input.substr(0, end));
  if (end != std::string_view::npos) CheckText(input.substr(end + 1));
  return 0;
}

}  // namespace flanks
