// Score, Residual and Graph files for spreadsheets and statistics packages.
//
// A writer of output files puts its rows, tab-separated, into a temporary text and hands that over.
// The files are made here by libraries; no Excel, SPSS or R need be there.  Where a build lacks a
// library, the message about the missing module says so and a line which form cannot be written.
//
//   switch (FormOfName(name)) {
//     case OutputForm::excel: LaunchExcel(run, textName, name, ExcelSource::run); ...
//
// A file takes the place of a former one only when it is complete.  Whatever fails is told, leaves
// the former file, and the run goes on.
//
// Tested by tests/unit/output/hand_offs_test.cpp and tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_HAND_OFFS_H
#define FLANKS_OUTPUT_HAND_OFFS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"

namespace flanks {

struct ChartSheet;  // output/xlsx_charts.h

enum class OutputForm : std::uint8_t { text, webpage, excel, spss, rstat };

// The form that the end of a file's name asks for, in any case: .xls and .xlsx, .sav, .rda and
// .rdata, .htm and .html; anything else is text.
OutputForm FormOfName(std::string_view name);
// "Excel" or "N".
std::string_view IsExcelName(std::string_view name);

// Who asks for the workbook: the Specification, a dialog, or a dialog that keeps no file.
enum class ExcelSource : std::uint8_t { run, dialog, temporary };

struct ExcelOptions {
  ExcelSource source = ExcelSource::run;
  bool hasHeading = true;  // the first line of the text is one
};

// Makes the workbook `targetName` of the text.  A name in .xls becomes one in .xlsx, which is told.
// A dialog's workbook is opened by its registered program.  True when the workbook stands.
bool LaunchExcel(Run& run, const std::string& textName, const std::string& targetName,
                 const ExcelOptions& wanted);

// Makes a workbook of line charts.  A name in .xls becomes one in .xlsx, which is told.
bool WriteChartWorkbook(Run& run, const std::string& name, const std::vector<ChartSheet>& sheets);

// Makes the SPSS file of a text in the form that output/sav_writer.h tells.  `kind` is "Score" or
// "Residual".
bool LaunchSpss(Run& run, std::string_view kind, const std::string& textName,
                const std::string& targetName);

struct RTable {
  std::string objectName;          // of the data frame
  std::vector<bool> isLabel = {};  // by column: text, though a label may look like a number
};
// Makes the R workspace of the text, which has a heading line, with one data frame.  To show it, R
// itself is asked to make the file, and the file is then opened by its registered program.
bool RunRStatistics(Run& run, const std::string& textName, const std::string& targetName,
                    const RTable& table, bool show);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_HAND_OFFS_H
