#include "output/residual_file.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "output/element_texts.h"
#include "output/residual_fields.h"
#include "output/residual_rows.h"
#include "output/row_writer.h"
#include "output/webpage_table.h"
#include "report/format/clip_field.h"
#include "report/format/join_number.h"
#include "run/console.h"

namespace flanks {
namespace {

constexpr int kHeadingColumns = 10;
constexpr std::string_view kSequenceHeading = "Seq";

bool Has(const std::vector<ResponseColumn>& columns, ResponsePlace place) {
  return std::any_of(columns.begin(), columns.end(),
                     [place](const ResponseColumn& column) { return column.place == place; });
}

ResidualTable MakeTable(const Analysis& analysis, OutputForm form, const ResidualOptions& options) {
  const RowForm rows = RowFormOf(form, options.table, analysis.settings);
  const int decimals = ResponseDecimals(options.ResponseSelection);
  std::vector<ResponseColumn> columns =
      ResponseColumnsOf(analysis.design, options.ResponseSelection);
  const ElementTextOptions texts{
      {Has(columns, ResponsePlace::elementNumbers), Has(columns, ResponsePlace::elementMeasures),
       Has(columns, ResponsePlace::elementLabels)},
      decimals};
  ElementTexts elements(analysis, rows, texts);
  return {analysis, rows, decimals, std::move(columns), std::move(elements)};
}

// Right-aligned in ten columns; the name above labels left-aligned, and as wide as these.
std::string FixedHeading(const ResidualTable& table, const ResponseColumn& column) {
  const RowForm& form = table.form;
  const int marks = 2 * static_cast<int>(form.OutputQuote.size());
  if (column.place != ResponsePlace::elementLabels) {
    const std::string quoted = form.OutputQuote + column.heading + form.OutputQuote;
    return RightAligned(quoted, kHeadingColumns, form.encoded);
  }
  const FlankNo flank = table.analysis.design.maps.ModelFlank[column.position];
  const std::string cut = CutTo(column.heading, kHeadingColumns - marks, form.encoded);
  return ClipField(form.OutputQuote + cut + form.OutputQuote,
                   table.elements.labelWidth(flank) + marks, form.encoded);
}

void WriteHeadings(const ResidualTable& table, RowWriter& rows) {
  rows.BeginRow();
  for (std::size_t c = 0; c < table.columns.size(); ++c) {
    if (table.form.isFixed()) {
      if (IsFirstLabel(table, c)) rows.Made(" ");
      rows.Made(FixedHeading(table, table.columns[c]));
    } else {
      rows.Label(table.columns[c].heading, kUnpadded);
    }
  }
  rows.EndRow();
}

// A line of words with tabs between them, one for each column.
template <class WordOf>
void WriteWords(const ResidualTable& table, RowWriter& rows, const WordOf& wordOf) {
  rows.BeginRow();
  for (const ResponseColumn& column : table.columns) rows.Label(wordOf(column), kUnpadded);
  rows.EndRow();
}

std::string SpssFormat(const ResidualTable& table, const ResponseColumn& column) {
  switch (column.form) {
    case ResponseForm::whole:
      return "0";
    case ResponseForm::decimals:
      return "-4";
    case ResponseForm::user:
      return FreeNumber(table.analysis.settings.Uscale);
    default: {
      const Design& design = table.analysis.design;
      const SlotRange range = SlotsOf(design.flanks, design.maps.ModelFlank[column.position]);
      std::size_t longest = 1;
      for (const ElementSlot slot : Upward(range.low, range.high))
        longest = std::max(longest, design.elements.ElementLabel[slot].size());
      return std::to_string(longest);
    }
  }
}

TableFile TableFileOf(Run& run, const ResidualOptions& options) {
  TableFile table;
  table.routine = "WriteResidualFile";
  table.prefix = "Residualfile";
  table.caption = "Residual output file";
  table.spssKind = "Residual";
  table.rTable.objectName = "RESFILE";
  for (const ResponseColumn& column :
       ResponseColumnsOf(run.analysis.design, options.ResponseSelection))
    table.rTable.isLabel.push_back(column.form == ResponseForm::text);
  table.write = [&run, &options](OutputForm form, Destination& out) {
    if (form == OutputForm::webpage) return WriteResidualWebpage(run, options, out);
    if (form == OutputForm::spss) return WriteResidualSpss(run, options, out);
    WriteResidualFile(run, form, options, out);
  };
  return table;
}

}  // namespace

ResidualOptions ResidualOptionsOf(const Settings& settings) {
  return {TableOptionsOf(settings), settings.ResponseSelection, StatusFilter::both};
}

void WriteResidualFile(Run& run, OutputForm form, const ResidualOptions& options,
                       Destination& out) {
  const ResidualTable table = MakeTable(run.analysis, form, options);
  RowWriter rows(table.form, out);
  if (options.table.IncludeHeadings || form == OutputForm::rstat) WriteHeadings(table, rows);
  ResidualRows(run, table, options.statusFilter, rows).Write();
}

void WriteResidualSpss(Run& run, const ResidualOptions& options, Destination& out) {
  const ResidualTable table = MakeTable(run.analysis, OutputForm::spss, options);
  RowWriter rows(table.form, out);
  rows.Line("1");  // the number of lines with names
  WriteWords(table, rows, [](const ResponseColumn& column) { return column.spssName; });
  WriteWords(table, rows, [](const ResponseColumn& column) { return column.spssLabel; });
  WriteWords(table, rows, [&](const ResponseColumn& column) { return SpssFormat(table, column); });
  ResidualRows(run, table, options.statusFilter, rows).Write();
}

void WriteResidualWebpage(Run& run, const ResidualOptions& options, Destination& out) {
  const ResidualTable table = MakeTable(run.analysis, OutputForm::webpage, options);
  std::string cells = std::string(kHeadRight) + std::string(kSequenceHeading);
  for (const ResponseColumn& column : table.columns) {
    cells.append(column.form == ResponseForm::text ? kHeadLeft : kHeadRight);
    cells += PageText(column.heading);
  }
  out.Lines(WebpageHead(kResponsePage, run.analysis.settings, cells));
  RowWriter rows(table.form, out);
  ResidualRows(run, table, options.statusFilter, rows).Write();
  out.Lines(WebpageEnd());
}

bool WriteResidualFileNamed(Run& run, const std::string& name, const ResidualOptions& options) {
  return WriteTableFile(run, name, TableFileOf(run, options), options.table);
}

void WriteResiduals(Run& run) {
  const Settings& settings = run.analysis.settings;
  if (settings.ResidualFile.empty()) return;
  const std::string name = AbsoluteName(settings.ResidualFile);
  run.console.ShowLine("Writing residual output file ... " + name);
  WriteResidualFileNamed(run, name, ResidualOptionsOf(settings));
}

}  // namespace flanks
