#include "report/table5.h"

#include <string>
#include <string_view>
#include <utility>

#include "base/running_moments.h"
#include "estimate/free_parameters.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/summary_box.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/report_page.h"
#include "stats/distributions.h"
#include "stats/residual_pass.h"

namespace flanks {
namespace {

constexpr int kTestWidth = 20;

std::string PadRight(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string Trimmed(double value, int decimals) {
  const std::string text = FixedField(value, kTestWidth, decimals);
  return text.substr(text.find_first_not_of(' '));
}

void WriteTest(Console& console, const Estimates& estimates, const ScaleTables& scales) {
  const double observations = estimates.fitTotals.TotalWeightedCount;
  const double parameters = FreeParametersOf(estimates.iteration, scales);
  const double degrees = observations - parameters;
  const double chiSquared = estimates.fitTotals.SquaredStandardizedSum;
  WriteReportLine(console, JoinNumber("Estimable observations =", NumberText(observations)) +
                               JoinNumber(", Free parameters =", NumberText(parameters)) +
                               JoinNumber(", Degrees of freedom =", NumberText(degrees)));
  WriteReportLine(console,
                  "Global Pearson chi-squared = " + Trimmed(chiSquared, 2) +
                      ", probability = " + Trimmed(ChiSquareProbability(chiSquared, degrees), 4));
}

std::string TypeWords(int type) {
  constexpr std::pair<int, std::string_view> kWords[] = {
      {-5, "after end-of-file"},        {-4, "only in extreme scores"},
      {-3, "in two extreme scores"},    {-2, "with invalid elements"},
      {-1, "invalid after recounting"}, {1, "non-extreme estimable"},
      {2, "in one extreme score"},      {3, "anchored"}};
  for (const auto& [code, words] : kWords)
    if (code == type) return std::string(words);
  return JoinNumber("type:", type);
}

std::string CountedLine(const std::string& words, const WelfordCounter& counter) {
  return words + "=" + ZeroField(counter.Count, 10, 0) + ZeroField(counter.Mean, 7, 2) +
         ZeroField(counter.PopulationDeviation(), 7, 2);
}

void WriteTypes(Console& console, const FitTotals& totals) {
  WriteReportLine(console, "");
  WriteReportLine(console, std::string(41, ' ') + "Count   Mean   S.D.");
  WelfordCounter all;
  for (int type = -kLargestState; type <= kLargestState; ++type) {
    const WelfordCounter& counter = totals.ofState(type);
    if (counter.Count <= 0.0) continue;
    WriteReportLine(console, CountedLine("Responses " + PadRight(TypeWords(type), 25), counter));
    all.Add(counter.Mean, counter.Count);
    all.SumOfSquares += counter.SumOfSquares;
  }
  WriteReportLine(console, CountedLine("All Responses" + std::string(22, ' '), all));
}

void WriteVariance(Console& console, const ResidualSummary& summary) {
  if (summary.weighted) {
    WriteReportLine(console,
                    "Count of measurable responses (wtd)=" + ZeroField(summary.Count, 13, 3));
  } else {
    WriteReportLine(console,
                    "Count of measurable responses      =" + ZeroField(summary.Count, 10, 0));
  }
  const double observed = summary.PopulationVariance(ResidualColumn::score);
  const double residual = summary.PopulationVariance(ResidualColumn::residual);
  WriteReportLine(console, VarianceLine("Raw-score variance of observations   =", observed));
  const auto line = [&](std::string_view words, double part) {
    WriteReportLine(console, VarianceLine(words, part, observed));
  };
  line("Variance explained by Rasch measures =", observed - residual);
  line("Variance of residuals                =", residual);
}

}  // namespace

void WriteTable5(Run& run) {
  Console& console = run.console;
  SelectTable(console, 5);
  if (console.report().switchedOff) return;
  WriteReportLine(console, "");
  WriteReportLine(console, "Table 4. Unexpected Responses - appears after Table 8");
  TableHeading(console, "Table 5. Measurable Data Summary");
  const ResidualSummary summary = ComputeResiduals(run);
  if (console.stopping()) return;
  WriteResidualBox(console, summary);
  WriteTest(console, run.analysis.estimates, run.analysis.scales);
  WriteTypes(console, run.analysis.estimates.fitTotals);
  WriteVariance(console, summary);
}

}  // namespace flanks
