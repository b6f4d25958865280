#include "report/table8.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "report/table8_columns.h"
#include "report/table8_plots.h"
#include "report/table8_rows.h"
#include "report/table8_scale.h"
#include "run/report_page.h"
#include "stats/category_pass.h"

namespace flanks {
namespace {

bool IsAsked(const Settings& settings, char flag) {
  return settings.T8NBC.find(flag) != std::string::npos;
}

void TellOfNoParts(Run& run) {
  const Settings& settings = run.analysis.settings;
  for (const char flag : {'N', 'B', 'C'})
    if (IsAsked(settings, flag)) return;
  run.console.ShowFlagged("T8NBC=" + settings.T8NBC +
                          " has none of the letters N, B, C: Table 8 has its headings alone.");
}

int NameWidth(const ScaleReport& report, Utf8Encoded encoding) {
  int widest = 0;
  for (const CategoryRow& row : report.rows)
    widest = std::max(widest, DisplayWidth(row.name, encoding));
  return widest;
}

void WriteLines(Console& console, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) WriteReportLine(console, line);
}

void WriteBox(Run& run, const ScaleReport& scale) {
  const Settings& settings = run.analysis.settings;
  const Utf8Encoded encoding = EncodingOf(settings);
  Console& console = run.console;
  const Table8Layout layout = LayOutTable8({scale.codes, scale.structure, scale.diagnostic,
                                            NameWidth(scale, encoding), settings.LeftHand},
                                           encoding);
  ReportState& report = console.report();
  report.headingRows = layout.headingRows;
  report.headingRowsInUse = 3;
  report.ruleTag = 0;
  report.rulePattern = layout.topRule;
  TopRule(console);
  report.rulePattern = layout.rule;
  HeadingRows(console);
  const Table8Units units{settings.Uscale, settings.Udecimals};
  for (const CategoryRow& row : scale.rows) {
    Juxtapose(console);
    WriteReportLine(console, CategoryLine(layout, units, row));
  }
  BottomRule(console);
}

void WritePlots(Run& run, const ScaleReport& scale, const std::string& identification) {
  const Settings& settings = run.analysis.settings;
  double low = 0.0, high = 0.0;
  if (!RangeOfLandmarks(scale.landmarks, low, high)) return;
  const Table8Plot plot{scale, settings.Uscale, settings.Ascii == 'Y'};
  if (IsAsked(settings, 'B') && settings.Barchart != 0)
    WriteLines(run.console, ScaleStructureLines(plot, identification));
  if (!IsAsked(settings, 'C')) return;
  WriteLines(run.console, ProbabilityLines(plot));
  WriteLines(run.console, OgiveLines(plot));
}

void WriteBlock(Run& run, const Table8Block& block, const CategorySums& sums) {
  const Analysis& analysis = run.analysis;
  Console& console = run.console;
  const std::string identification = ScaleIdentification(analysis, block.scale);
  TableHeading(console, "Table 8." + block.number + "  Category Statistics");
  WriteLines(console, ModelLines(analysis, block));
  WriteReportLine(console, " Rating (or partial credit) scale = " + identification);
  const ScaleReport scale = ReportOnScale(analysis, block.scale, sums);
  if (IsAsked(analysis.settings, 'N')) {
    WriteBox(run, scale);
    const std::string foot = DiscriminationLine(analysis.scales, block.scale);
    if (!foot.empty()) WriteReportLine(console, foot);
  }
  WritePlots(run, scale, identification);
}

}  // namespace

void WriteTable8(Run& run) {
  SelectTable(run.console, 8);
  if (run.console.report().switchedOff) return;
  TellOfNoParts(run);
  CategoryPass pass(PassPartsOf(run.analysis, run.console));
  pass.Run();
  for (const Table8Block& block : Table8Blocks(run.analysis)) {
    if (run.console.YieldToWindow()) return;
    run.at = "scale";
    WriteBlock(run, block, pass.sums());
  }
}

}  // namespace flanks
