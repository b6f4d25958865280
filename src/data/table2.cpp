#include "data/table2.h"

#include <cstdint>
#include <utility>

#include "data/data_pass.h"
#include "data/element_file.h"
#include "data/query_show.h"
#include "data/response_file.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "run/report_page.h"
#include "spec/file_names.h"
#include "spec/list_reading.h"
#include "spec/models.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr int kStatementsOnScreen = 10;
constexpr int kStatementsAllOnScreen = 12;  // a longer list is cut at kStatementsOnScreen

std::string AtOrNear(const std::string& line, std::int32_t firstLine) {
  return JoinNumber(line + " first at or near line", firstLine);
}

void WriteQueryStatements(Run& run) {
  const Design& design = run.analysis.design;
  run.console.ShowLine(QueryText(QueryCode::header, ""));
  for (const ModelRow model : Upward(design.models.ModelText)) {
    std::string line = std::to_string(model.number() + 1) + ": ";
    // All fields, also the empty ones at the end.
    for (const std::string& field : design.models.ModelText[model]) line += field + ",";
    line.pop_back();
    run.console.ShowLine(line + " ; active model statement for Query=Yes");
  }
}

void WriteStatementCounts(Console& console, const Design& design, const DataCounts& counts) {
  const int statements = design.ModelLast + 1;
  for (const ModelRow model : Upward(counts.ModelCounter)) {
    std::string line =
        JoinNumber("Responses matched to model: " + StatementText(design.models, model) + " =",
                   counts.ModelCounter[model]);
    if (design.models.ModelScaleType[model] == ScaleType::missing) line += "  ; treated as missing";
    const bool cut = statements > kStatementsAllOnScreen && model.number() >= kStatementsOnScreen;
    if (cut && model.number() == kStatementsOnScreen)
      console.ShowLine(
          JoinNumber(" See Output Table 2 for further", statements - kStatementsOnScreen) +
          " models");
    if (!cut) console.ShowLine(line);
    console.WriteOutput(line);
  }
}

void WriteEvent(Console& console, std::string_view words, const CountedEvent& event,
                std::string_view note = {}) {
  if (event.count.isZero()) return;
  const std::string line = JoinNumber(words, event.count.text()) + std::string(note);
  console.ShowAndWrite(AtOrNear(line, event.firstLine));
}

// Missing= without its outer commas.
std::string MissingCodes(const Settings& settings) {
  const std::string& codes = settings.Missing;
  return codes.size() < 2 ? "" : codes.substr(1, codes.size() - 2);
}

// The Flanks of the statements' positions, without those that are X in every statement.
Column<FlankNo, std::uint8_t> FlanksInUse(const Design& design) {
  Column<FlankNo, std::uint8_t> inUse(design.FlankCount);
  const auto set = [&](FlankNo flank, bool used) {
    if (inUse.has(flank)) inUse[flank] = used;
  };
  const EntryMaps& maps = design.maps;
  for (const FlankNo flank : maps.ModelFlank) set(flank, true);
  for (const FlankNo flank : maps.EntryMap) set(flank, false);
  for (const DataPosition place : Upward(maps.EntryMap))
    if (maps.DataPositionActive[place] != 0) set(maps.EntryMap[place], true);
  return inUse;
}

void WarnOfEmptyFlanks(Run& run) {
  const Design& design = run.analysis.design;
  const DataCounts& counts = run.analysis.counts;
  if (counts.DataLines.isZero()) return;  // the data are at fault, not the lists of elements
  const Column<FlankNo, std::uint8_t> inUse = FlanksInUse(design);
  for (const FlankNo flank : Upward(inUse))
    if (inUse[flank] != 0 && counts.flankLookedUp[flank] == 0)
      run.console.WarnLine(JoinNumber(message::kNoElementsForFlank, flank.number()));
}

void WriteUnusedResponses(Run& run) {
  Console& console = run.console;
  const DataCounts& counts = run.analysis.counts;
  const std::string codes = " (" + MissingCodes(run.analysis.settings) + ")";
  WriteEvent(console, "              Number of blank lines =", counts.BlankLines);
  WriteEvent(console, "Number of missing-code observations =", counts.MissingCodeResponses, codes);
  WriteEvent(console, "Number of missing-null observations =", counts.MissingNullResponses);
  WriteEvent(console, "Number of lines with R0 or less replications=", counts.R0Lines);
  WriteEvent(console,
             "Number of invalid observations treated as missing =", counts.InvalidResponses);
  WriteEvent(console,
             "Number of negative observations treated as missing =", counts.NegativeResponses);
  WriteEvent(console, "Number of observations matching invalid models treated as missing =",
             counts.InvalidModelResponses);
}

// The list, and the end of its life.
void WriteUnspecified(Run& run) {
  DataCounts& counts = run.analysis.counts;
  const bool listed = !run.analysis.settings.labelsNobuild && !counts.UnspecifiedList.empty();
  if (listed) {
    run.console.ShowLine(
        JoinNumber(" See Output Table 2 for list of", counts.UnspecifiedList.size()) +
        " elements not specified in Labels=");
    WriteUnspecifiedList(run.console, counts, run.analysis.design.flanks,
                         run.analysis.settings.NullElement);
  }
  counts.UnspecifiedList = {};
}

std::string FlankLine(const FlankTable& flanks, FlankNo flank) {
  const std::string number = std::to_string(flank.number());
  const std::string& name = flanks.FlankName[flank];
  const std::string& options = flanks.FlankOptions[flank];
  std::string line = number + ", " + (name.empty() ? number : name) + ", ";
  line += (options.empty() ? " " : options) + ",";
  if (flanks.FlankWeight[flank] != 1.0f) line += FreeNumber(flanks.FlankWeight[flank]);
  return line + JoinNumber(" ; flank", flank.number());
}

}  // namespace

void OpenWorkFiles(Run& run) {
  run.console.ShowLine("Opening work files");
}

void WriteTable2Head(Run& run) {
  Analysis& analysis = run.analysis;
  SelectTable(run.console, 2);
  TableHeading(run.console, "Table 2. Data Summary Report");
  if (analysis.settings.Query) WriteQueryStatements(run);
  OpenResponseFile(analysis.reading.LineNumber, analysis.work);
  const Fault fault = PrepareElementFile(analysis.design, analysis.settings,
                                         analysis.reading.LineNumber, analysis.work);
  if (fault != Fault::none) SetFaultOfLine(analysis.reading, fault, 0, "Labels=N");
}

void WriteTable2Body(Run& run) {
  Console& console = run.console;
  const DataCounts& counts = run.analysis.counts;
  console.ShowAndWrite(JoinNumber("Total data lines =", counts.DataLines.text()));
  WriteStatementCounts(console, run.analysis.design, counts);
  console.ShowAndWrite(
      JoinNumber("    Total non-blank responses found =", counts.NonBlankResponses.text()));
  WriteEvent(console, "Responses with elements not specified in Labels= are ignored =",
             counts.UnspecifiedResponses);
  WarnOfEmptyFlanks(run);
  WriteEvent(console,
             " Responses not matched to any model are ignored =", counts.UnmatchedResponses);
  WriteUnusedResponses(run);
  console.ShowAndWrite(
      JoinNumber("Valid responses used for estimation =", counts.ValidResponses.text()));
  WriteUnspecified(run);
  run.analysis.reading.LineNumber = 0;  // later faults have no line
  if (counts.ValidResponses.isZero())
    SetFault(run.analysis.reading, Fault::noUsableData,
             TextAtFault(InQuotes(DataName(run.analysis.settings))));
}

void WriteUnspecifiedList(Console& console, const DataCounts& counts, const FlankTable& flanks,
                          std::int64_t nullElement) {
  console.WriteOutput(
      "List of elements not specified in Labels=. Please copy and paste into your specification "
      "file, where needed");
  console.WriteOutput("Labels=");
  FlankNo flank;
  for (const UnspecifiedElement& element : counts.UnspecifiedList) {
    if (element.flank != flank) {
      if (flank.number() > 0) console.WriteOutput(" *");
      flank = element.flank;
      console.WriteOutput(FlankLine(flanks, flank));
    }
    std::string line = std::to_string(element.number);
    if (!element.text.empty()) line += " = " + element.text;
    if (element.number == nullElement)
      line += JoinNumber(" ; this element number is ignored, because Null=", nullElement);
    console.WriteOutput(line);
  }
  console.WriteOutput(" *");
  console.WriteOutput(" *");
  if (counts.UnspecifiedListCut)
    console.WriteOutput("; This list is full: the data hold more elements that are not in it.");
}

}  // namespace flanks
