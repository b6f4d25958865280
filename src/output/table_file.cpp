#include "output/table_file.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "base/temp_file.h"
#include "run/analysis.h"
#include "run/console.h"

namespace flanks {
namespace {

// The tab-separated text of a form, in a temporary file.
bool WriteTempText(Run& run, const std::string& name, const TableFile& table, OutputForm form,
                   TempFile& temp) {
  if (const std::error_code code = temp.Create(table.prefix, "txt")) {
    TellOpenFailure(run, name, temp.name() + ": " + code.message());
    return false;
  }
  ReplacedFile file;
  if (const std::error_code code = file.Open(temp.name())) {
    TellOpenFailure(run, name, temp.name() + ": " + code.message());
    return false;
  }
  try {
    Destination destination(file);
    table.write(form, destination);
    if (run.console.stopping()) return false;
    file.Commit();
    return true;
  } catch (const std::exception& failure) {
    TellWriteFailure(run, table.routine, name, failure.what());
    return false;
  }
}

bool HandOn(Run& run, const std::string& name, const TableFile& table, OutputForm form,
            const TableOptions& options) {
  TempFile text;
  if (!WriteTempText(run, name, table, form, text)) return false;
  switch (form) {
    case OutputForm::excel:
      return LaunchExcel(run, text.name(), name, {options.source, options.IncludeHeadings});
    case OutputForm::spss:
      return LaunchSpss(run, table.spssKind, text.name(), name);
    default:
      return RunRStatistics(run, text.name(), name, table.rTable, options.showInR);
  }
}

}  // namespace

TableOptions TableOptionsOf(const Settings& settings) {
  TableOptions options;
  options.OutputSeparator = settings.OutputSeparator;
  options.OutputQuote = settings.OutputQuote;
  options.IncludeHeadings = settings.IncludeHeadings;
  return options;
}

RowForm RowFormOf(OutputForm form, const TableOptions& options, const Settings& settings) {
  RowForm rows;
  rows.encoded = EncodingOf(settings);
  switch (form) {
    case OutputForm::text:
      rows.OutputSeparator = options.OutputSeparator;
      rows.OutputQuote = options.OutputQuote;
      break;
    case OutputForm::webpage:
      rows.layout = RowLayout::page;
      break;
    default:
      rows.OutputSeparator = "\t";
      rows.protectsLabels = form == OutputForm::excel;
  }
  return rows;
}

bool WriteTableFile(Run& run, const std::string& name, const TableFile& table,
                    const TableOptions& options) {
  const OutputForm form = FormOfName(name);
  if (form == OutputForm::spss && table.spssKind.empty()) {
    run.console.WarnLine("There is no SPSS form of this file: \"" + name + "\" is not written.");
    run.process.control.ExitCode = kExitFault;
    return false;
  }
  if (form != OutputForm::text && form != OutputForm::webpage)
    return HandOn(run, name, table, form, options);
  const bool written =
      WriteOutputFile(run, table.routine, name, [&](Destination& out) { table.write(form, out); });
  if (written) run.console.shell().EditFile(name, ViewAt::end, table.caption);
  return written;
}

std::string AbsoluteName(const std::string& name) {
  if (name.find_first_of("/\\") != std::string::npos) return name;
  std::error_code failed;
  const std::filesystem::path folder = std::filesystem::current_path(failed);
  return failed ? name : (folder / name).string();
}

}  // namespace flanks
