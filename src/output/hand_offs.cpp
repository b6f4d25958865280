#include "output/hand_offs.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <system_error>

#include "base/replaced_file.h"
#include "base/temp_file.h"
#include "base/text.h"
#include "output/destination.h"
#include "output/r_program.h"
#include "output/rda_writer.h"
#include "output/sav_writer.h"
#include "output/tab_text.h"
#include "output/xlsx_charts.h"
#include "output/xlsx_writer.h"
#include "spec/file_names.h"

namespace flanks {
namespace {

TableSource SourceOf(Run& run, const std::string& textName) {
  Console& console = run.console;
  return {textName, [&console] { return console.YieldToWindow(); }};
}

FileStamp StampOf(const Run& run) {
  return MakeFileStamp(run.analysis.settings.Title);
}

// Kept: the words name the helper programs of another system (docs/quirks.md).
void TellMissing(Run& run, const std::string& module, const std::string& form) {
  Console& console = run.console;
  run.process.control.ExitCode = kExitFault;
  console.WarnLine("F63 Module " + module + " not found. Flanks is not installed correctly.");
  console.ShowFlagged("This build of Flanks cannot write " + form +
                      " files: it was made without their library.");
}

void TellCut(Console& console, std::int64_t cells, std::size_t limit) {
  if (cells == 0) return;
  console.ShowFlagged("Labels cut: " + std::to_string(cells) +
                      ", since a cell takes no more than " + std::to_string(limit) +
                      " characters.");
}

// Has `write` fill a file that replaces `name` when it is complete.  What goes wrong is told, but
// for a missing library, which is for the caller to tell.
WriteEnd WriteReplaced(Run& run, const char* routine, const std::string& name,
                       const std::function<WriteEnd(ReplacedFile&)>& write) {
  ReplacedFile file;
  if (const std::error_code code = file.Open(name)) {
    TellOpenFailure(run, name, code.message());
    return WriteEnd::failed;
  }
  try {
    const WriteEnd end = write(file);
    if (end == WriteEnd::complete) file.Commit();
    if (end == WriteEnd::stopped) run.console.ShowFlagged("\"" + name + "\" was not written.");
    return end;
  } catch (const std::exception& failure) {
    TellWriteFailure(run, routine, name, failure.what());
    return WriteEnd::failed;
  }
}

std::string ToldWorkbookName(Console& console, const std::string& name) {
  const std::string made = WorkbookName(name);
  if (made != name) console.ShowLine("Excel file is written as \"" + made + "\".");
  return made;
}

void OpenWithProgram(Run& run, const std::string& name) {
  if (!run.launcher.Open(name)) run.console.ShowLine("No program opens \"" + name + "\" here.");
}

std::string LastLineOf(const std::string& name) {
  std::ifstream file(name);
  std::string line, last;
  while (std::getline(file, line))
    if (!Trim(line).empty()) last = line;
  return last;
}

// Has R read the text and save it to the file.
WriteEnd WriteByR(Run& run, const std::string& program, const std::string& textName,
                  const RTable& table, const ReplacedFile& target) {
  TempFile script;
  if (const std::error_code error = script.Create("Rs", "txt"))
    ThrowFileFailure("write", script.name(), error);
  const std::string logName = script.name() + "x";
  std::ofstream(script.name()) << RScript(textName, target.partName(), table.objectName,
                                          table.isLabel);
  const int status =
      RunR(program, script.name(), logName, [&run] { return run.console.YieldToWindow(); });
  const std::string last = LastLineOf(logName);
  std::error_code ignored;
  std::filesystem::remove(logName, ignored);
  if (run.console.stopping()) return WriteEnd::stopped;
  const bool made = std::filesystem::file_size(target.partName(), ignored) > 0 && !ignored;
  if (status == 0 && made) return WriteEnd::complete;
  throw std::runtime_error("R ended with exit status " + std::to_string(status) + ": " + last);
}

// Opens the file in R by a profile beside it, which R reads at its start there.  A profile of the
// user's is left alone; one that no R has read is taken away again.
void ShowInR(Run& run, const std::string& targetName) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const fs::path target = fs::absolute(targetName, ignored);
  const std::string profile = (target.parent_path() / ".Rprofile").string();
  const bool ours = !fs::exists(profile, ignored);
  if (ours) std::ofstream(profile) << RProfile(target.string(), profile);
  if (run.launcher.Open(targetName)) return;
  if (ours) fs::remove(profile, ignored);
  run.console.ShowLine("No program opens \"" + targetName + "\" here.");
}

bool EndsIn(const std::string& upper, std::initializer_list<std::string_view> ends) {
  for (const std::string_view end : ends)
    if (upper.ends_with(end)) return true;
  return false;
}

}  // namespace

OutputForm FormOfName(std::string_view name) {
  const std::string upper = UpperCase(name);
  if (EndsIn(upper, {".XLS", ".XLSX"})) return OutputForm::excel;
  if (EndsIn(upper, {".SAV"})) return OutputForm::spss;
  if (EndsIn(upper, {".RDA", ".RDATA"})) return OutputForm::rstat;
  if (EndsIn(upper, {".HTM", ".HTML"})) return OutputForm::webpage;
  return OutputForm::text;
}

std::string_view IsExcelName(std::string_view name) {
  return FormOfName(name) == OutputForm::excel ? "Excel" : "N";
}

bool LaunchExcel(Run& run, const std::string& textName, const std::string& targetName,
                 const ExcelOptions& wanted) {
  const std::string name = ToldWorkbookName(run.console, targetName);
  run.console.ShowLine("Launching Excel ....");
  XlsxOptions options;
  options.hasHeading = wanted.hasHeading;
  options.sheetName = std::filesystem::path(name).stem().string();
  XlsxEnd made;
  const WriteEnd end = WriteReplaced(run, "LaunchExcel", name, [&](ReplacedFile& file) {
    made = WriteXlsx(SourceOf(run, textName), StampOf(run), options, file);
    return made.end;
  });
  if (end == WriteEnd::missing) TellMissing(run, "gridexcel.exe", ".xlsx");
  if (end != WriteEnd::complete) return false;
  TellCut(run.console, made.cutCells, kCellCharacters);
  if (made.sheets > 1)
    run.console.ShowLine("\"" + name + "\" has " + std::to_string(made.sheets) +
                         " sheets: a sheet takes " + std::to_string(kSheetRows) + " rows.");
  run.console.ShowLine("Ready ....");
  if (wanted.source != ExcelSource::run) OpenWithProgram(run, name);
  return true;
}

bool WriteChartWorkbook(Run& run, const std::string& targetName,
                        const std::vector<ChartSheet>& sheets) {
  const std::string name = ToldWorkbookName(run.console, targetName);
  run.console.ShowLine("Launching Excel ....");
  const WriteEnd end = WriteReplaced(run, "WriteChartWorkbook", name, [&](ReplacedFile& file) {
    return WriteCharts(sheets, StampOf(run), file);
  });
  if (end == WriteEnd::missing) TellMissing(run, "gridexcel.exe", ".xlsx");
  if (end != WriteEnd::complete) return false;
  for (const ChartSheet& sheet : sheets)
    if (sheet.series.size() > kChartSeries)
      run.console.ShowLine("The chart of sheet " + sheet.name + " shows the first " +
                           std::to_string(kChartSeries) + " series; its table has all of them.");
  run.console.ShowLine("Ready ....");
  return true;
}

bool LaunchSpss(Run& run, std::string_view kind, const std::string& textName,
                const std::string& targetName) {
  SavEnd made;
  const WriteEnd end = WriteReplaced(run, "LaunchSpss", targetName, [&](ReplacedFile& file) {
    made = WriteSav(SourceOf(run, textName), StampOf(run), file);
    return made.end;
  });
  const std::string what(kind);
  if (end == WriteEnd::missing) TellMissing(run, "gridspss.exe", ".sav");
  if (end == WriteEnd::failed) run.console.WarnLine("F64 SPSS " + what + " file creation failed");
  if (end != WriteEnd::complete) return false;
  TellCut(run.console, made.cutCells, kSavTextBytes);
  run.console.ShowLine("SPSS " + what + " file created: " + targetName);
  return true;
}

bool RunRStatistics(Run& run, const std::string& textName, const std::string& targetName,
                    const RTable& table, bool show) {
  const std::string program = show ? FindR() : "";
  if (show && program.empty()) run.console.ShowLine(" R Statistics not found");
  const WriteEnd end = WriteReplaced(run, "RunRStatistics", targetName, [&](ReplacedFile& file) {
    if (!program.empty()) return WriteByR(run, program, textName, table, file);
    return WriteRda(SourceOf(run, textName), StampOf(run),
                    {.objectName = table.objectName, .isLabel = table.isLabel}, file);
  });
  if (end == WriteEnd::missing) TellMissing(run, "R", ".rda");
  if (end != WriteEnd::complete) return false;
  if (!program.empty()) ShowInR(run, targetName);
  return true;
}

}  // namespace flanks
