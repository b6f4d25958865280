// Files for other programs are opened by those programs, and every cell is compared with the text
// that the file was made of: .xlsx in LibreOffice, .sav in PSPP, .rda in R.  A program that is not
// installed skips its test.
//
// Starting one of them takes seconds, so that each is started once for all of its files.

#include <cstdio>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "output/rda_writer.h"
#include "output/sav_writer.h"
#include "output/xlsx_charts.h"
#include "output/xlsx_writer.h"
#include "support/other_programs.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;

const std::string kNoBreak = "\xC2\xA0";

std::string TabSeparated(const TableCells& cells) {
  std::string text;
  for (const std::vector<std::string>& row : cells) {
    for (std::size_t i = 0; i < row.size(); ++i) text += (i == 0 ? "" : "\t") + row[i];
    text += "\n";
  }
  return text;
}

FileStamp SomeStamp() {
  FileStamp stamp;
  stamp.title = "R\xC3\xA9sum\xC3\xA9 of <all> & \"more\"";
  stamp.program = "Flanks 1.2.3";
  stamp.time = 1'700'000'000;  // 14 November 2023
  return stamp;
}

// Each kind of cell that a file may hold.  Numbers of a column have one number of decimals, as the
// writers of output files give them.
TableCells EveryKindOfCell() {
  const std::string longLabel(3000, 'x');
  return {{"Measure", "Count", "1", "Pers\xC3\xB6n", "F-Label"},
          {"0.05", "12", "1", "Ann", "Persons"},
          {"-1.50", "0", "2", "", "Persons"},
          {"", "", "3", "Ann \"the\" O'Brien", ""},
          {"???", "2147483646", "4", "=1+2" + kNoBreak, "a,b;c"},
          {"123456.79", "-5", "5", "=SUM(A1:A2)", " led by a blank"},
          {"0.00", "7", "6", "\xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x8E\xA8", "+49 30 1234" + kNoBreak},
          {"1.00", "8", "7", "12-3" + kNoBreak, longLabel},
          {"2.00", "9", "8", "<b>&amp;</b>", "M\xC3\xBCller\\n"}};
}

TableCells ManyColumns() {
  TableCells cells(3);
  for (int column = 1; column <= 300; ++column) {
    cells[0].push_back("C" + std::to_string(column));
    cells[1].push_back(std::to_string(column * 7));
    cells[2].push_back(column % 2 == 0 ? "" : std::to_string(-column));
  }
  return cells;
}

TableCells OnlyAHeading() {
  return {{"Measure", "Label"}};
}

TableCells TwentyFiveRows() {
  TableCells cells = {{"N", "Label"}};
  for (int row = 1; row <= 25; ++row)
    cells.push_back({std::to_string(row), "row " + std::to_string(row)});
  return cells;
}

TableCells RowsOf(const TableCells& cells, std::size_t from, std::size_t to) {
  TableCells part = {cells[0]};
  for (std::size_t row = from; row <= to; ++row) part.push_back(cells[row]);
  return part;
}

void ExpectSameCells(const TableCells& shown, const TableCells& expected, const std::string& what) {
  ASSERT_EQ(shown.size(), expected.size()) << what;
  for (std::size_t row = 0; row < expected.size(); ++row) {
    ASSERT_EQ(shown[row].size(), expected[row].size()) << what << " row " << row;
    for (std::size_t i = 0; i < expected[row].size(); ++i)
      EXPECT_EQ(shown[row][i], expected[row][i]) << what << " row " << row << " column " << i;
  }
}

// Makes the file NAME of the cells, by way of their text.
template <class Write>
void MakeFile(const ScratchFolder& folder, const std::string& name, const TableCells& cells,
              const Write& write) {
  const TableSource source{.name = folder.write(name + ".txt", TabSeparated(cells))};
  ReplacedFile file;
  ASSERT_FALSE(file.Open(folder.file(name)));
  write(source, file);
  file.Commit();
}

void MakeWorkbook(const ScratchFolder& folder, const std::string& name, const TableCells& cells,
                  const XlsxOptions& options) {
  MakeFile(folder, name, cells, [&](const TableSource& source, ReplacedFile& file) {
    EXPECT_EQ(WriteXlsx(source, SomeStamp(), options, file).end, WriteEnd::complete);
  });
}

// One row more than a sheet takes below its heading goes to a second sheet.
TEST(SlowReadBack, AMillionRowsGoOnOnASecondSheet) {
  if (!HasProgram("soffice")) GTEST_SKIP() << "LibreOffice (soffice) is not installed";
  const ScratchFolder folder;
  constexpr std::size_t kRows = 1'048'576;
  std::string text = "N\tLabel\n";
  for (std::size_t row = 1; row <= kRows; ++row) text += std::to_string(row) + "\tr\n";
  const TableSource source{.name = folder.write("a.txt", text)};
  ReplacedFile file;
  ASSERT_FALSE(file.Open(folder.file("a.xlsx")));
  EXPECT_EQ(WriteXlsx(source, SomeStamp(), {}, file).sheets, 2);
  file.Commit();
  const std::map<std::string, TableCells> sheets = SheetsInLibreOffice(folder, {"a.xlsx"});
  const TableCells& first = sheets.at("a-Data");
  ASSERT_EQ(first.size(), kRows);
  for (std::size_t row = 1; row < kRows; ++row)
    ASSERT_EQ(first[row], (std::vector<std::string>{std::to_string(row), "r"}));
  ExpectSameCells(sheets.at("a-Data (2)"), {{"N", "Label"}, {"1048576", "r"}}, "second sheet");
}

// Two series with their error lines; a value is missing in one.
std::vector<ChartSheet> SomeCharts() {
  ChartSheet sheet;
  sheet.name = "AM";
  sheet.title = "Bias/Interaction: 1. R\xC3\xA4ter, 2. Tasks";
  sheet.categoryAxis = "2. Tasks";
  sheet.valueAxis = "Absolute Measure";
  sheet.categories = {"1 Essay", "2 Letter", "3 Talk"};
  sheet.series = {{"1 Ann: Absolute Measure", {0.5, {}, -1.25}},
                  {"1 Ann: Absolute Measure (+)", {0.75, {}, -1.0}, SeriesRole::errorLine},
                  {"1 Ann: Absolute Measure (-)", {0.25, {}, -1.5}, SeriesRole::errorLine},
                  {"2 Ben: Absolute Measure", {0.0, 1.0, 2.0}}};
  ChartSheet other = sheet;
  other.name = "TV";
  other.decimals = 0;
  other.series.resize(1);
  return {sheet, other};
}

const TableCells kChartTable = {{"", "1 Ann: Absolute Measure", "1 Ann: Absolute Measure (+)",
                                 "1 Ann: Absolute Measure (-)", "2 Ben: Absolute Measure"},
                                {"1 Essay", "0.50", "0.75", "0.25", "0.00"},
                                {"2 Letter", "", "", "", "1.00"},
                                {"3 Talk", "-1.25", "-1.00", "-1.50", "2.00"}};

int CountOf(const std::string& part, const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

void MakeCharts(const ScratchFolder& folder) {
  ReplacedFile file;
  ASSERT_FALSE(file.Open(folder.file("charts.xlsx")));
  EXPECT_EQ(WriteCharts(SomeCharts(), SomeStamp(), file), WriteEnd::complete);
  file.Commit();
}

TEST(ReadBack, AWorkbookHasEveryCellInLibreOffice) {
  if (!HasProgram("soffice")) GTEST_SKIP() << "LibreOffice (soffice) is not installed";
  const ScratchFolder folder;
  const TableCells bare = {{"1", "Ann"}, {"2", "Ben"}};
  MakeWorkbook(folder, "cells.xlsx", EveryKindOfCell(), {.sheetName = "S:1"});
  MakeWorkbook(folder, "wide.xlsx", ManyColumns(), {});
  MakeWorkbook(folder, "empty.xlsx", OnlyAHeading(), {});
  MakeWorkbook(folder, "bare.xlsx", bare, {.hasHeading = false});
  MakeCharts(folder);
  MakeWorkbook(folder, "split.xlsx", TwentyFiveRows(), {.sheetName = "r", .sheetRows = 11});
  const std::map<std::string, TableCells> sheets = SheetsInLibreOffice(
      folder, {"cells.xlsx", "wide.xlsx", "empty.xlsx", "bare.xlsx", "split.xlsx", "charts.xlsx"});
  ASSERT_EQ(sheets.size(), 9u);
  ExpectSameCells(sheets.at("cells-S_1"), EveryKindOfCell(), "cells");
  EXPECT_THAT(folder.read("cells-S_1.csv"), HasSubstr("\n-1.50,0,2,,\"Persons\"\n"))
      << "numbers are numbers, without quotes";
  ExpectSameCells(sheets.at("wide-Data"), ManyColumns(), "wide");
  ExpectSameCells(sheets.at("empty-Data"), OnlyAHeading(), "empty");
  ExpectSameCells(sheets.at("bare-Data"), bare, "bare");
  ExpectSameCells(sheets.at("split-r"), RowsOf(TwentyFiveRows(), 1, 10), "first sheet");
  ExpectSameCells(sheets.at("split-r (2)"), RowsOf(TwentyFiveRows(), 11, 20), "second sheet");
  ExpectSameCells(sheets.at("split-r (3)"), RowsOf(TwentyFiveRows(), 21, 25), "third sheet");
  TableCells table = sheets.at("charts-AM");
  ASSERT_EQ(table.size(), 31u) << "27 rows below the chart, then the table";
  table.erase(table.begin(), table.begin() + 27);
  ExpectSameCells(table, kChartTable, "table of a chart");
}

// The charts are what LibreOffice makes of them.
TEST(ReadBack, ChartsHaveTheirLinesInLibreOffice) {
  if (!HasProgram("soffice")) GTEST_SKIP() << "LibreOffice (soffice) is not installed";
  const ScratchFolder folder;
  MakeCharts(folder);
  const std::string flat = FlatFormInLibreOffice(folder, "charts.xlsx");
  EXPECT_EQ(CountOf("chart:class=\"chart:line\" chart:style-name=\"ch1\"", flat), 2) << "charts";
  EXPECT_EQ(CountOf("<chart:series ", flat), 5);
  EXPECT_EQ(CountOf("loext:hide-legend=\"true\"", flat), 2) << "the error lines";
  for (const char* part : {"chart:values-cell-range-address=\"AM.B29:AM.B31\"",
                           "chart:label-cell-address=\"AM.B28:AM.B28\"",
                           "chart:values-cell-range-address=\"AM.E29:AM.E31\"",
                           "chart:values-cell-range-address=\"TV.B29:TV.B31\"",
                           "table:cell-range-address=\"AM.A29:AM.A31\"",
                           "<text:p>Bias/Interaction: 1. R\xC3\xA4ter, 2. Tasks</text:p>",
                           "<text:p>2. Tasks</text:p>", "<text:p>Absolute Measure</text:p>"})
    EXPECT_THAT(flat, HasSubstr(part));
}

// Head lines: their number, names, labels, format values.
const TableCells kSpssHead = {
    {"1"},
    {"Obs", "Measure", "S.E.", "F-Number", "E-Label", "F1-Measure", "F1-Label", "Displacement"},
    {"Observed Category", "User-Scaled Measure (1 logit =0.5 units", "Standard Error",
     "Flank Number",
     "Gr\xC3\xB6\xC3\x9F"
     "e",
     "Element measure: A", "A", "Uscale * Logit"},
    {"0", "0.5", "0.5", "0", "5", "-4", "0", "-4"}};
const TableCells kSpssRows = {
    {"1", "0.05", "1.00", "1", "Ann", "0.1234", "x", "-0.5"},
    {"", "", "", "", "", "", "", ""},
    {"-5", "???", "-0.50", "2147483646", "\xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x8E\xA8", "999999.9999",
     std::string(3000, 'x'), "0"},
    {"3", "123456.79", "0.00", "3", " lead", "0", "\"q\" O'B", "10"}};

// As PSPP shows them: numbers by value, a missing one as a blank.
TableCells PsppRows() {
  TableCells rows = {
      {"Obs", "Measure", "S.E.", "F_Number", "E_Label", "F1_Measure", "F1_Label", "Displacement"}};
  rows.insert(rows.end(), kSpssRows.begin(), kSpssRows.end());
  rows[1] = {"1", "0.05", "1", "1", "Ann", "0.1234", "x", "-0.5"};
  rows[2] = {" ", " ", " ", " ", "", " ", "", " "};
  rows[3][1] = " ";
  rows[3][2] = "-0.5";
  rows[4][2] = "0";
  return rows;
}

void MakeSpssFile(const ScratchFolder& folder, const std::string& name, TableCells head,
                  const TableCells& rows) {
  head.insert(head.end(), rows.begin(), rows.end());
  MakeFile(folder, name, head, [](const TableSource& source, ReplacedFile& file) {
    const SavEnd made = WriteSav(source, SomeStamp(), file);
    EXPECT_EQ(made.end, WriteEnd::complete);
    EXPECT_EQ(made.cutCells, 0);
  });
}

TEST(ReadBack, AnSpssFileHasEveryCellInPspp) {
  if (!HasProgram("pspp-convert")) GTEST_SKIP() << "PSPP (pspp-convert) is not installed";
  const ScratchFolder folder;
  MakeSpssFile(folder, "a.sav", kSpssHead, kSpssRows);
  ExpectSameCells(CasesInPspp(folder, "a.sav"), PsppRows(), "a.sav");

  MakeSpssFile(folder, "none.sav", kSpssHead, {});
  ExpectSameCells(CasesInPspp(folder, "none.sav"), {PsppRows()[0]}, "none.sav");

  TableCells wide = {{"1"}, {}, {}, {}, {}};
  for (int column = 1; column <= 300; ++column) {
    wide[1].push_back("C" + std::to_string(column));
    wide[2].push_back("label");
    wide[3].push_back("0");
    wide[4].push_back(std::to_string(column * 7));
  }
  MakeSpssFile(folder, "wide.sav", {wide[0], wide[1], wide[2], wide[3]}, {wide[4]});
  ExpectSameCells(CasesInPspp(folder, "wide.sav"), {wide[1], wide[4]}, "wide.sav");
}

// Formats, levels and labels of the variables, and what the file says of its analysis.
TEST(ReadBack, AnSpssFileDescribesItsVariablesInPspp) {
  if (!HasProgram("pspp")) GTEST_SKIP() << "PSPP (pspp) is not installed";
  const ScratchFolder folder;
  MakeSpssFile(folder, "a.sav", kSpssHead, kSpssRows);
  const std::string shown =
      OutputOfPspp(folder, "GET FILE='a.sav'.\nDISPLAY DICTIONARY.\nSYSFILE INFO 'a.sav'.\n");
  for (const char* line :
       {"Obs,1,Observed Category,Ordinal,Input,8,Right,F11.0,F11.0",
        "Measure,2,User-Scaled Measure (1 logit =0.5 units,Scale,Input,8,Right,F12.2,F12.2",
        "F_Number,4,Flank Number,Nominal,Input,8,Right,F11.0,F11.0",
        "E_Label,5,Gr\xC3\xB6\xC3\x9F"
        "e,Nominal,Input,8,Left,A11,A11",
        "F1_Measure,6,Element measure: A,Scale,Input,8,Right,F12.4,F12.4",
        "F1_Label,7,A,Nominal,Input,8,Left,A3000,A3000",
        "Label,\"R\xC3\xA9sum\xC3\xA9 of <all> & \"\"more\"\"; Flanks 1.2.3, 2023-11-14 "})
    EXPECT_THAT(shown, HasSubstr(line));
}

// As R has them: numbers by value, NA for what is missing or too large.
TableCells FrameOf(const TableCells& cells) {
  TableCells frame = {cells[0], {"numeric", "numeric", "numeric", "character", "character"}};
  for (std::size_t row = 1; row < cells.size(); ++row) {
    frame.push_back(cells[row]);
    for (std::size_t i = 0; i < 3; ++i) {
      const std::string& cell = cells[row][i];
      char shown[40];
      std::snprintf(shown, sizeof shown, "%.17g", std::atof(cell.c_str()));
      frame.back()[i] = cell.empty() || cell == "???" ? "NA" : shown;
    }
  }
  return frame;
}

TEST(ReadBack, AWorkspaceHasEveryCellInR) {
  if (!HasProgram("R")) GTEST_SKIP() << "R is not installed";
  const ScratchFolder folder;
  const auto make = [&folder](const std::string& name, const TableCells& cells,
                              RdaOptions options) {
    MakeFile(folder, name, cells, [&](const TableSource& source, ReplacedFile& file) {
      EXPECT_EQ(WriteRda(source, SomeStamp(), options, file), WriteEnd::complete);
    });
  };
  make("cells.rda", EveryKindOfCell(), {.objectName = "SCFILE.1"});
  ExpectSameCells(FrameInR(folder, "cells.rda", "SCFILE.1"), FrameOf(EveryKindOfCell()), "cells");

  // Room for one column at a time: the text is read for each.
  make("small.rda", EveryKindOfCell(), {.objectName = "RESFILE", .roomBytes = 1});
  ExpectSameCells(FrameInR(folder, "small.rda", "RESFILE"), FrameOf(EveryKindOfCell()), "small");

  const TableCells alike = {
      {"F-Label", "Status", "Status"}, {"001", "1", "2"}, {"1e3", "3", "4"}, {"", "5", ""}};
  make("labels.rda", alike, {.objectName = "L", .isLabel = {true, false, false}});
  ExpectSameCells(FrameInR(folder, "labels.rda", "L"),
                  {{"F-Label", "Status", "Status.1"},
                   {"character", "numeric", "numeric"},
                   {"001", "1", "2"},
                   {"1e3", "3", "4"},
                   {"", "5", "NA"}},
                  "labels");
  make("wide.rda", ManyColumns(), {.objectName = "W"});
  make("none.rda", OnlyAHeading(), {.objectName = "E"});
  EXPECT_EQ(OutputOfR(folder,
                      "load('wide.rda'); load('none.rda'); load('cells.rda')\n"
                      "cat(dim(W), sum(W[1,]), sum(W[2,], na.rm = TRUE), sum(is.na(W)))\n"
                      "cat('', dim(E), names(E), attr(SCFILE.1, 'datalabel'))\n"),
            "2 300 316050 -22500 150 0 2 Measure Label R\xC3\xA9sum\xC3\xA9 of <all> & \"more\"; "
            "Flanks 1.2.3, " +
                StampDate(SomeStamp()));
}

}  // namespace
}  // namespace flanks
