#include "output/score_file.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "output/protected_label.h"
#include "output/row_writer.h"
#include "output/score_fields.h"
#include "output/webpage_table.h"
#include "report/format/join_number.h"
#include "run/console.h"
#include "spec/file_names.h"

namespace flanks {
namespace {

constexpr int kHeadingColumns = 9;  // behind one blank
constexpr std::int32_t kRowsForATurn = 1024;
constexpr int kTwoDecimals = 2;
constexpr int kFourDecimals = 4;

// Kept: this one tag is misquoted (docs/quirks.md).
constexpr std::string_view kElementLabelCell = "</TD><TD ALIGN=LEFT\">";

// What the rows of one Flank are made of.
struct ScoreTable {
  const Analysis& analysis;
  FlankNo flank;
  RowForm form;
  std::vector<ScoreField> fields;  // all
  std::vector<int> positions;      // the selected ones in the order of the row
  int labelWidth = 0;

  const ScoreField& field(int position) const {
    return fields[static_cast<std::size_t>(position) - 1];
  }
};

ScoreTable MakeTable(const Analysis& analysis, FlankNo flank, OutputForm form,
                     const ScoreOptions& options) {
  return {analysis,
          flank,
          RowFormOf(form, options.table, analysis.settings),
          ScoreFieldsOf(analysis.settings, analysis.design.flanks, flank),
          SelectedScoreFields(options.ScoreSelection),
          LabelWidth(analysis, flank)};
}

std::string FixedHeading(const ScoreTable& table, const ScoreField& field) {
  const RowForm& form = table.form;
  std::string heading;
  switch (field.position) {
    case kScoreElementLabel:
      AppendLabel(heading, form, CutTo(field.heading, table.labelWidth, form.encoded),
                  table.labelWidth);
      return heading;
    case kScoreFlankLabel:
      AppendLabel(heading, form, field.heading, kUnpadded);
      return heading;
    case kScoreFlankNumber:
      return " " + RightAligned(form.OutputQuote + field.heading + form.OutputQuote,
                                kHeadingColumns + 1, form.encoded);
    default: {
      const int room = kHeadingColumns - 2 * static_cast<int>(form.OutputQuote.size());
      const std::string cut = CutTo(field.heading, std::max(room, 0), form.encoded);
      return " " +
             RightAligned(form.OutputQuote + cut + form.OutputQuote, kHeadingColumns, form.encoded);
    }
  }
}

void WriteHeadings(const ScoreTable& table, RowWriter& rows) {
  if (table.positions.empty()) return;
  rows.BeginRow();
  for (const int position : table.positions) {
    const ScoreField& field = table.field(position);
    if (table.form.isFixed())
      rows.Made(FixedHeading(table, field));
    else
      rows.Label(field.heading, kUnpadded);
  }
  rows.EndRow();
}

void PutLabels(const ScoreTable& table, ElementSlot slot, int position, RowWriter& rows) {
  const Design& design = table.analysis.design;
  if (position == kScoreElementLabel)
    rows.Label(design.elements.ElementLabel[slot], table.labelWidth, kElementLabelCell);
  else
    rows.Label(design.flanks.FlankName[table.flank], kUnpadded);
}

void PutField(const ScoreTable& table, ElementSlot slot, const ScoreValues& values, int position,
              RowWriter& rows) {
  const double value = values[static_cast<std::size_t>(position)];
  switch (table.field(position).form) {
    case ScoreForm::two:
      return rows.Decimals(value, kTwoDecimals);
    case ScoreForm::four:
      return rows.Decimals(value, kFourDecimals);
    case ScoreForm::user:
      return rows.Decimals(value, table.analysis.settings.Udecimals);
    case ScoreForm::text:
      return PutLabels(table, slot, position, rows);
    default:
      // The Flank's number stands apart from the label before it.
      if (position == kScoreFlankNumber && table.form.isFixed()) rows.Made(" ");
      return rows.Whole(static_cast<std::int32_t>(value));
  }
}

// All rows; ends early when the run is to stop.
void WriteRows(Run& run, const ScoreTable& table, bool omitUnobserved, RowWriter& rows) {
  const SlotRange range = SlotsOf(table.analysis.design.flanks, table.flank);
  std::int32_t untilTurn = kRowsForATurn;
  for (const ElementSlot slot : Upward(range.low, range.high)) {
    if (--untilTurn == 0) {
      untilTurn = kRowsForATurn;
      if (run.console.YieldToWindow()) break;
    }
    if (omitUnobserved && table.analysis.estimates.scores[slot].FirstCount == 0.0f) continue;
    const ScoreValues values = ScoreValuesOf(table.analysis, slot);
    rows.BeginRow();
    for (const int position : table.positions) PutField(table, slot, values, position, rows);
    rows.EndRow();
  }
  rows.Flush();
}

// A line of words with tabs between them, one for each field.
template <class WordOf>
void WriteWords(const ScoreTable& table, RowWriter& rows, const WordOf& wordOf) {
  rows.BeginRow();
  for (const int position : table.positions) rows.Label(wordOf(table.field(position)), kUnpadded);
  rows.EndRow();
}

std::size_t LongestText(const ScoreTable& table, int position) {
  const Design& design = table.analysis.design;
  std::size_t longest = 1;
  if (position == kScoreFlankLabel)
    return std::max(longest, design.flanks.FlankName[table.flank].size());
  const SlotRange range = SlotsOf(design.flanks, table.flank);
  for (const ElementSlot slot : Upward(range.low, range.high))
    longest = std::max(longest, design.elements.ElementLabel[slot].size());
  return longest;
}

std::string SpssFormat(const ScoreTable& table, const ScoreField& field) {
  if (field.form == ScoreForm::text) return std::to_string(LongestText(table, field.position));
  if (field.form == ScoreForm::whole) return "0";
  return field.position == kScoreMeasure ? FreeNumber(table.analysis.settings.Uscale) : "-4";
}

TableFile TableFileOf(Run& run, FlankNo flank, const ScoreOptions& options) {
  const std::string number = std::to_string(flank.number());
  TableFile table;
  table.routine = "WriteScoreFile";
  table.prefix = "Scorefile";
  table.caption = "Score File (" + number + ")";
  table.spssKind = "Score";
  table.rTable.objectName = "SCFILE." + number;
  const std::vector<ScoreField> fields =
      ScoreFieldsOf(run.analysis.settings, run.analysis.design.flanks, flank);
  for (const int position : SelectedScoreFields(options.ScoreSelection))
    table.rTable.isLabel.push_back(fields[static_cast<std::size_t>(position) - 1].form ==
                                   ScoreForm::text);
  table.write = [&run, flank, &options](OutputForm form, Destination& out) {
    if (form == OutputForm::webpage) return WriteScoreWebpage(run, flank, options, out);
    if (form == OutputForm::spss) return WriteScoreSpss(run, flank, options, out);
    WriteScoreFile(run, flank, form, options, out);
  };
  return table;
}

}  // namespace

ScoreOptions ScoreOptionsOf(const Settings& settings) {
  return {TableOptionsOf(settings), settings.OmitUnobserved, settings.ScoreSelection};
}

void WriteScoreFile(Run& run, FlankNo flank, OutputForm form, const ScoreOptions& options,
                    Destination& out) {
  const ScoreTable table = MakeTable(run.analysis, flank, form, options);
  RowWriter rows(table.form, out);
  if (options.table.IncludeHeadings || form == OutputForm::rstat) WriteHeadings(table, rows);
  WriteRows(run, table, options.OmitUnobserved, rows);
}

void WriteScoreSpss(Run& run, FlankNo flank, const ScoreOptions& options, Destination& out) {
  const ScoreTable table = MakeTable(run.analysis, flank, OutputForm::spss, options);
  RowWriter rows(table.form, out);
  rows.Line("1");  // the number of lines with names
  WriteWords(table, rows, [](const ScoreField& field) { return field.spssName; });
  WriteWords(table, rows, [](const ScoreField& field) { return field.spssLabel; });
  WriteWords(table, rows, [&](const ScoreField& field) { return SpssFormat(table, field); });
  WriteRows(run, table, options.OmitUnobserved, rows);
}

void WriteScoreWebpage(Run& run, FlankNo flank, const ScoreOptions& options, Destination& out) {
  const ScoreTable table = MakeTable(run.analysis, flank, OutputForm::webpage, options);
  std::string cells;
  for (const int position : table.positions) {
    const ScoreField& field = table.field(position);
    cells.append(field.form == ScoreForm::text ? kHeadLeft : kHeadRight);
    cells += PageText(field.heading);
  }
  out.Lines(WebpageHead(kScorePage, run.analysis.settings, cells));
  RowWriter rows(table.form, out);
  WriteRows(run, table, options.OmitUnobserved, rows);
  out.Lines(WebpageEnd());
}

bool WriteScoreFileNamed(Run& run, FlankNo flank, const std::string& name,
                         const ScoreOptions& options) {
  run.console.ShowLine("Writing Scorefile output file ... " + name);
  return WriteTableFile(run, name, TableFileOf(run, flank, options), options.table);
}

void WriteScoreFiles(Run& run) {
  const Settings& settings = run.analysis.settings;
  if (settings.ScoreFile.empty()) return;
  const ScoreOptions options = ScoreOptionsOf(settings);
  const std::string name = AbsoluteName(settings.ScoreFile);
  for (const FlankNo flank : Upward(run.analysis.design.flanks.FlankName)) {
    WriteScoreFileNamed(run, flank, MakeOutputFileName(name, flank.number()), options);
    if (run.console.stopping()) return;
  }
}

}  // namespace flanks
