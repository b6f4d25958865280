#include "report/table5.h"

#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "base/running_moments.h"
#include "base/utf8.h"
#include "estimate/free_parameters.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/table4_columns.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/report_page.h"
#include "stats/distributions.h"
#include "stats/residual_pass.h"

namespace flanks {
namespace {

constexpr int kCellWidth = 5;
constexpr int kCellDecimals = 2;
constexpr std::size_t kSmallestGroup = 19;
constexpr int kTestWidth = 20;
constexpr double kNoVariance = 1E-9;  // what rounding may leave of the variance of equal scores

std::string PadLeft(std::string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

std::string PadRight(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string Trimmed(double value, int decimals) {
  const std::string text = FixedField(value, kTestWidth, decimals);
  return text.substr(text.find_first_not_of(' '));
}

// A number with a zero in front of its point: "0.50".
std::string ZeroText(double value, int decimals) {
  std::string text = Trimmed(value, decimals);
  const std::size_t point = text.find('.');
  const bool bare = point == 0 || (point == 1 && text[0] == '-');
  return bare ? text.insert(point, "0") : text;
}

std::string ZeroField(double value, std::size_t width, int decimals) {
  return PadLeft(ZeroText(value, decimals), width);
}

// "Mean (Count: 12)", shorter when that is wider than the column.
std::string MeanWords(const ResidualSummary& summary) {
  const std::string number = NumberText(summary.Count);
  const std::string words =
      JoinNumber(summary.weighted ? "Mean (Weighted:" : "Mean (Count:", number) + ")";
  if (words.size() <= kSmallestGroup) return words;
  return JoinNumber(summary.weighted ? "Mean (Wtd:" : "Mean (Cnt:", number) + ")";
}

template <class Figure>
FigureTexts Cells(const ResidualSummary& summary, Figure figure) {
  FigureTexts texts;
  for (std::size_t column = 0; column < kFigureColumns; ++column)
    texts[column] = FixedField(figure(summary.columns[column]), kCellWidth, kCellDecimals);
  return texts;
}

void WriteBox(Console& console, const ResidualSummary& summary) {
  const std::string meanWords = MeanWords(summary);
  const Table4Layout layout = LayOutTable5(console.settings(), meanWords);
  BeginBox(console, layout.headingRows, layout.rulePattern);
  const auto write = [&](const std::string& words, auto figure) {
    WriteReportLine(console, WordLine(layout, Cells(summary, figure), words));
  };
  const double count = summary.Count;
  write(meanWords, [](const ResidualMoments& column) { return column.Mean; });
  write("S.D. (Population)",
        [count](const ResidualMoments& column) { return column.PopulationDeviation(count); });
  if (count > 1.0) {
    write("S.D. (Sample)", [count](const ResidualMoments& column) {
      return SampleDeviation(column.PopulationDeviation(count), count);
    });
  }
  BottomRule(console);
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
  const auto variance = [&](ResidualColumn column) {
    const double deviation = summary.of(column).PopulationDeviation(summary.Count);
    return deviation * deviation;
  };
  const double observed = variance(ResidualColumn::score);
  const double residual = variance(ResidualColumn::residual);
  const double whole = observed < kNoVariance ? 1.0 : observed;
  const auto line = [&](std::string_view words, double part) {
    WriteReportLine(console, std::string(words) + ZeroField(part, 7, 3) + " " +
                                 PadLeft(ZeroText(100.0 * part / whole, 2) + "%", 7));
  };
  WriteReportLine(
      console, "Raw-score variance of observations   =" + ZeroField(observed, 7, 3) + " 100.00%");
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
  WriteBox(console, summary);
  WriteTest(console, run.analysis.estimates, run.analysis.scales);
  WriteTypes(console, run.analysis.estimates.fitTotals);
  WriteVariance(console, summary);
}

}  // namespace flanks
