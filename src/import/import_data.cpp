#include "import/import_data.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/text_file.h"
#include "import/conversion_child.h"
#include "import/import_text.h"
#include "run/analysis.h"
#include "run/run.h"
#include "spec/file_names.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr std::int64_t kMemoryTimesFile = 8;
constexpr std::int64_t kMemoryTimesPacked = 32;  // of R data, which are in memory as a whole
constexpr std::int64_t kBytesForASecond = std::int64_t{1} << 20;  // of the file, without a row
constexpr int kMostSeconds = 3600;

HeadingRule HeadingRuleOf(const Analysis& analysis) {
  HeadingRule rule;
  rule.elementColumns = analysis.design.DataFlankCount;
  for (const DvalueEntry& entry : analysis.settings.Dvalues)
    if (entry.position >= 1 && entry.position <= analysis.design.DataFlankCount)
      --rule.elementColumns;
  rule.replication = analysis.settings.Replication;
  rule.codes = analysis.settings.Missing;
  if (!rule.codes.ends_with(',')) rule.codes += ',';
  for (const ScaleDefinition& scale : analysis.design.scales)
    for (const RecodeItem& item : scale.recodes) rule.codes += item.text + ',';
  return rule;
}

ChildLimits LimitsFor(const ImportName& name) {
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(name.file, unknown);
  ChildLimits limits;
  if (unknown) return limits;
  const auto bytes = static_cast<std::int64_t>(size);
  limits.memory += bytes * (name.kind == DataKind::rdata ? kMemoryTimesPacked : kMemoryTimesFile);
  limits.secondsWithoutRows = static_cast<int>(
      std::min<std::int64_t>(kMostSeconds, limits.secondsWithoutRows + bytes / kBytesForASecond));
  return limits;
}

ImportName FoundName(const std::string& dataFile, const Settings& settings) {
  ImportName name = ReadImportName(dataFile);
  name.file = FindFileToRead(name.file, settings.specificationFile);
  return name;
}

// The name of the sheet that the text begins with.  It is not in the text, whose lines are those of
// the sheet.
std::string FirstSheet(const ImportName& name) {
  const auto read = [&name](const ConversionWatch&) {
    return ConversionEnd{ConversionEnd::Kind::done, FirstSheetName(name)};
  };
  return RunInChild(
             read, {}, [] { return false; }, LimitsFor(name))
      .text;
}

// The column that a field is read from; 0 for one that `Dvalues=` gives.
int ColumnOf(int field, std::string_view line, const Settings& settings) {
  int column = field;
  for (const DvalueEntry& entry : settings.Dvalues) {
    if (entry.position == field) return 0;
    if (entry.position >= 1 && entry.position < field) --column;
  }
  if (line.find('\t') == std::string_view::npos) return 1;  // split at the blanks of its one cell
  return BeginsWithReplication(line, settings.Replication) ? column + 1 : column;
}

bool Fail(Run& run, Fault fault, const std::string& text) {
  SetFault(run.analysis.reading, fault, TextAtFault(text));
  return false;
}

ConversionEnd Convert(Run& run, const ConversionRequest& request) {
  ConversionWatch watch;
  std::vector<std::string> told;  // behind the ticker's line
  watch.rows = [&run](std::int64_t rows) { run.console.Tick(rows); };
  watch.tell = [&told](const std::string& text) { told.push_back(text); };
  run.console.TickStart();
  ConversionEnd end = RunInChild(
      [&request](const ConversionWatch& inChild) { return ConvertFile(request, inChild); }, watch,
      [&run] { return run.console.YieldToWindow(); }, LimitsFor(request.name));
  run.console.TickEnd();
  for (const std::string& line : told) run.console.WarnLine(line);
  return end;
}

// A file of a kind that is not read, but that its program can save as one that is.  A text may have
// such a name, too.
void RefuseOtherKind(Run& run) {
  const Settings& settings = run.analysis.settings;
  const std::string_view ending = EndingToSaveAs(settings.dataFile);
  if (ending.empty()) return;
  if (!CheckTextFile(FindFileToRead(settings.dataFile, settings.specificationFile)).refused())
    return;
  run.console.WarnLine("Conversion failed: " + settings.dataFile +
                       ": such files are not read. Please save it as " + std::string(ending) + ".");
  Fail(run, Fault::badFileFormat, InQuotes(settings.dataFile));
}

void MakeTemporary(TempFile& file, std::string_view title, std::string_view caller) {
  if (const std::error_code code = file.Create(title, "txt"))
    ThrowOpenFailure(file.name(), caller, 0, code);
}

}  // namespace

bool TellConversionEnd(Run& run, const std::string& sourceName, const ConversionEnd& end) {
  if (run.console.stopping()) return false;
  run.console.ShowLine("Continuing ...");
  switch (end.kind) {
    case ConversionEnd::Kind::done:
      return true;
    case ConversionEnd::Kind::missingModule:
      // Kept: the words name the importer of another system (docs/quirks.md).
      run.console.WarnLine(
          "F63 Module flankinput.exe not found. Flanks is not installed correctly.");
      run.console.WarnLine("This build of Flanks cannot read " + InQuotes(sourceName) +
                           ": it was made without " + end.text + ".");
      return Fail(run, Fault::requiredFileNotFound, InQuotes(sourceName));
    case ConversionEnd::Kind::badCell:
      run.console.WarnLine("Conversion failed: " + sourceName + ": " + end.text);
      return Fail(run, Fault::invalidResponse, end.text);
    case ConversionEnd::Kind::failed:
      break;
  }
  run.console.WarnLine("Conversion failed: " + sourceName + ": " + end.text);
  return Fail(run, Fault::fileNotFound, InQuotes(sourceName));
}

bool ConvertWithImporter(Run& run, const std::string& sourceName, const std::string& targetName) {
  const Analysis& analysis = run.analysis;
  ConversionRequest request;
  request.name = FoundName(sourceName, analysis.settings);
  request.textFile = targetName;
  request.heading = HeadingRuleOf(analysis);
  TempFile scratch;
  if (request.name.kind == DataKind::rdata) {
    MakeTemporary(scratch, "unpacked", "ConvertWithImporter");
    request.scratchFile = scratch.name();
  }
  Console& console = run.console;
  console.ShowLine("Importing datafile= " + sourceName);
  console.ShowLine("Converting " + std::string(KindWord(request.name.kind)) +
                   " file: " + InQuotes(sourceName) + " to " + InQuotes(targetName));
  console.ShowLine("Waiting for imported datafile ... see Help menu: Waiting");
  return TellConversionEnd(run, sourceName, Convert(run, request));
}

void ImportData(Run& run) {
  const Settings& settings = run.analysis.settings;
  if (settings.dataSource != DataSource::file) return;
  run.analysis.reading.LineNumber = 0;  // a fault is of no line
  if (!NeedsImporter(settings.dataFile)) return RefuseOtherKind(run);
  run.at = "converting the data";
  TempFile& text = run.analysis.work.importedData;
  MakeTemporary(text, "imported", "ImportData");
  if (!ConvertWithImporter(run, settings.dataFile, text.name())) text.Remove();
}

std::string ImportedPlace(Run& run, std::int64_t lineNumber, int field) {
  const TempFile& text = run.analysis.work.importedData;
  if (!text.exists()) return {};
  const Settings& settings = run.analysis.settings;
  const ImportName name = FoundName(settings.dataFile, settings);
  const bool sheets = name.kind == DataKind::xlsx || name.kind == DataKind::xls;
  const TextPlace place =
      FindTextPlace(text.name(), sheets ? TextRows::ofSheets : TextRows::ofTable, lineNumber);
  if (place.row < 1) return {};
  std::string told = "row " + std::to_string(place.row);
  if (const int column = field > 0 ? ColumnOf(field, place.line, settings) : 0; column > 0)
    told += ", column " + ColumnLetters(column);
  if (!sheets) return told;
  return told + " of sheet " + InQuotes(place.sheet.empty() ? FirstSheet(name) : place.sheet);
}

}  // namespace flanks
