#include "report/table7_foot.h"

#include <cmath>
#include <string>

#include "base/utf8.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/mean_lines.h"
#include "report/separation_lines.h"
#include "report/table7_rows.h"
#include "run/report_page.h"

namespace flanks {
namespace {

// One figure of each column that the foot shows.
MeasureRow FootFigures(const MeasureSummary& summary, const MeanLine& line) {
  const auto figure = line.figure;
  const auto of = [&](SummarySlot slot) {
    return figure(summary.slots[static_cast<std::size_t>(slot)], summary.Count);
  };
  MeasureRow row;
  row.measure = of(SummarySlot::measure);
  row.standardError = of(SummarySlot::standardError);
  row.infitMeanSquare = of(SummarySlot::infitMeanSquare);
  row.infitZStd = of(SummarySlot::infitZStd);
  row.outfitMeanSquare = of(SummarySlot::outfitMeanSquare);
  row.outfitZStd = of(SummarySlot::outfitZStd);
  row.score = of(SummarySlot::score);
  row.count = of(SummarySlot::count);
  row.observedAverage = of(SummarySlot::observedAverage);
  row.fairAverage = of(SummarySlot::fairAverage);
  row.weight = of(SummarySlot::weight);
  // Rows without fit have no correlations; those that have them are a set of their own.
  const double fitted = summary.fitted.Count;
  row.isFitted = fitted > 0.0;
  row.correlation = figure(summary.fitted.slots[0], fitted);
  row.expectedCorrelation = figure(summary.fitted.slots[1], fitted);
  row.displacement = figure(summary.fitted.slots[2], fitted);
  // Raters without a pair have no agreement; those that have one are a set of their own.
  const double raters = summary.agreement.Count;
  row.hasAgreement = raters > 0.0;
  row.agreementObserved = figure(summary.agreement.slots[0], raters);
  row.agreementExpected = figure(summary.agreement.slots[1], raters);
  return row;
}

void WriteMeans(Console& console, const Table7Layout& layout, const MeasureSummary& summary,
                const std::string& group) {
  for (const MeanLine& line : MeanLines(summary.Count, layout.label.width))
    WriteReportLine(console, FootLine(console.settings(), layout, FootFigures(summary, line),
                                      line.words, group));
}

// What stands before the value of Reliability: raters are to be alike, not to be told apart.
std::string_view ReliabilityNote(const Settings& settings, FlankNo flank) {
  return settings.InterRaterSetting.front() == flank.number() ? "(not inter-rater) " : "";
}

void WriteSeparation(Console& console, FlankNo flank, const MeasureSummary& summary,
                     float tinyValue, std::string_view prefix) {
  const Settings& settings = console.settings();
  const std::string start = std::string(prefix) + std::string(ErrorWord(settings));
  for (const std::string& line :
       SeparationLines(settings, summary, tinyValue, start, ReliabilityNote(settings, flank)))
    WriteReportLine(console, line);
}

void WriteChiSquare(Console& console, const ChiSquareTest& test, std::string_view prefix,
                    std::string_view label) {
  std::string line(prefix);
  line += ErrorWord(console.settings());
  line += label;
  line += ChiSquareText(test);
  WriteReportLine(console, line);
}

void WriteChiSquares(Console& console, const Table7Sets& sets, float tinyValue,
                     std::string_view prefix) {
  if (const auto fixed = FixedChiSquare(sets.SummaryWith, tinyValue))
    WriteChiSquare(console, *fixed, prefix, ", Fixed (all same)");
  if (const auto random = RandomChiSquare(sets.SummaryWith, sets.measured, tinyValue))
    WriteChiSquare(console, *random, prefix, ",  Random (normal)");
}

bool HasExtremes(const Table7Sets& sets) {
  return sets.SummaryWith.Count > sets.SummaryWithout.Count;
}

void WriteStatistics(Console& console, const Analysis& analysis, FlankNo flank,
                     const Table7Sets& sets) {
  const bool extremes = HasExtremes(sets);
  const float tiny = analysis.estimates.TinyValue;
  if (sets.SummaryWith.Count < 2.0) return;
  if (extremes) {
    WriteSeparation(console, flank, sets.SummaryWith, tiny, "   With extremes, ");
    WriteSeparation(console, flank, sets.SummaryWithout, tiny, "Without extremes, ");
  } else {
    WriteSeparation(console, flank, sets.SummaryWithout, tiny, "");
  }
  WriteChiSquares(console, sets, tiny, extremes ? "With extremes, " : "");
}

}  // namespace

void AddToSets(const Analysis& analysis, ElementSlot slot, Table7Sets& sets) {
  const std::int16_t status = analysis.estimates.elements[slot].ElementStatus;
  const RowKind kind = RowKindOf(analysis, slot);
  if (kind != RowKind::full && kind != RowKind::extreme) return;
  const MeasureRow row = FiguresOf(analysis, slot);
  if (IsInPlay(status)) AddRow(sets.SummaryWithout, row);
  AddRow(sets.SummaryWith, row);
  sets.measured.push_back({row.measure, row.standardError});
}

void WriteFootRows(Console& console, const Table7Layout& layout, const Table7Sets& sets,
                   const std::string& group) {
  if (sets.SummaryWithout.Count > 0.0) WriteMeans(console, layout, sets.SummaryWithout, group);
  if (HasExtremes(sets)) WriteMeans(console, layout, sets.SummaryWith, group);
}

void WriteTable7Foot(Console& console, const Analysis& analysis, const Table7Layout& layout,
                     const Table7Sets& sets) {
  MidRule(console);
  WriteFootRows(console, layout, sets);
  BottomRule(console);
  WriteStatistics(console, analysis, layout.flank, sets);
}

void WriteAgreement(Console& console, const Analysis& analysis, FlankNo flank) {
  const RaterAgreement& agreement = analysis.estimates.agreement;
  if (agreement.raterFlank != flank) return;
  const double pairs = agreement.AgreementOpportunities;
  const auto percent = [pairs](double part) {
    return OneDecimalText(pairs > 0.0 ? 100.0 * part / pairs : 0.0);
  };
  WriteReportLine(console, "Inter-Rater agreement opportunities: " + NumberText(pairs) +
                               "  Exact agreements: " + NumberText(agreement.AgreementExact) +
                               " = " + percent(agreement.AgreementExact) +
                               "%  Expected: " + OneDecimalText(agreement.AgreementExpected) +
                               " = " + percent(agreement.AgreementExpected) + "%");
}

}  // namespace flanks
