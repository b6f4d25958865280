#include "report/bias_tables.h"

#include <algorithm>

#include "report/measure_bars.h"
#include "report/summary_box.h"
#include "run/analysis.h"
#include "run/report_page.h"
#include "stats/bias_summary.h"

namespace flanks {
namespace {

constexpr int kNoBarchart = 0, kExtremesAtMeasures = 2;  // of `Barchart=`

std::string CountLine(const ResidualSummary& summary) {
  if (summary.weighted)
    return "Count of measurable responses (weighted)= " + ZeroField(summary.Count, 14, 3);
  return "Count of measurable responses           = " + ZeroField(summary.Count, 11, 0);
}

}  // namespace

void WriteTable11(Run& run, const BiasResults& results) {
  Console& console = run.console;
  SelectTable(console, 11);
  TableHeading(console, "Table 11." + std::to_string(results.interaction.number) +
                            "  Bias/Interaction Measurement Summary");
  WriteResidualBox(console, results.withBias);
  const double observed = results.withBias.PopulationVariance(ResidualColumn::score);
  const double before = results.residualsWithoutBias.PopulationVariance(0);
  const double after = results.withBias.PopulationVariance(ResidualColumn::residual);
  const auto write = [&](const std::string& line) { WriteReportLine(console, line); };
  write(CountLine(results.withBias));
  write(VarianceLine("Raw-score variance of observations      =", observed));
  write(VarianceLine("Variance explained by Rasch measures    =", observed - before, observed));
  write(VarianceLine("Variance of residuals                   =", before, observed));
  write(VarianceLine("Variance explained by bias/interactions =", before - after, observed));
  write(VarianceLine("Variance remaining in residuals         =", after, observed));
}

std::vector<std::string> BiasSummaryLines(const Settings& settings, const BiasResults& results) {
  double low = 0.0, high = 0.0;
  bool any = false;
  for (const BiasTerm& term : results.terms) {
    if (term.standing == BiasStanding::none) continue;
    const double size = FiguresOf(settings, term).size;
    low = any ? std::min(low, size) : size;
    high = any ? std::max(high, size) : size;
    any = true;
  }
  if (!any) return {};
  MeasureBars bars(LayOutAxis(low, high));
  const bool turned = static_cast<double>(settings.Bias) * settings.Uscale < 0.0;
  for (const BiasTerm& term : results.terms) {
    if (term.standing == BiasStanding::none) continue;
    if (term.standing == BiasStanding::estimable || settings.Barchart == kExtremesAtMeasures) {
      bars.AddAtMeasure(FiguresOf(settings, term).size);
    } else if ((term.standing == BiasStanding::maximum) != turned) {
      bars.AddAtHighEnd();
    } else {
      bars.AddAtLowEnd();
    }
  }
  return bars.Lines(settings.Ascii == 'Y', "terms");
}

void WriteTable12(Run& run, const BiasResults& results) {
  Console& console = run.console;
  if (run.analysis.settings.Barchart == kNoBarchart) return;
  SelectTable(console, 12);
  TableHeading(console, "Table 12." + std::to_string(results.interaction.number) +
                            "  Bias/Interaction Summary Report");
  for (const std::string& line : BiasSummaryLines(run.analysis.settings, results))
    WriteReportLine(console, line);
}

}  // namespace flanks
