#include "report/table7_rows.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include "base/held_single.h"
#include "report/format/edit_word.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kMeasureWidth = 6;
constexpr int kErrorWidth = 5;
constexpr int kDiscriminationWidth = 5;
constexpr int kStatisticDecimals = 2;

double PerCount(double sum, float count) {
  return count > 0.0f ? sum / count : 0.0;
}

void AppendMeasure(EditLine& line, const Settings& settings, const MeasureRow& figures) {
  line.EditString(FixedField(figures.measure, kMeasureWidth, settings.Udecimals));
  line.EditString(FixedField(figures.standardError, kErrorWidth, settings.Udecimals));
}

void AppendScores(EditLine& line, const MeasureRow& figures) {
  line.EditCount(HeldSingle(figures.score));
  line.EditCount(HeldSingle(figures.count));
  line.EditDouble(figures.observedAverage);
}

void AppendFit(EditLine& line, const MeasureRow& figures) {
  line.EditDouble(figures.infitMeanSquare);
  line.EditDouble(figures.infitZStd);
  line.EditDouble(figures.outfitMeanSquare);
  line.EditDouble(figures.outfitZStd);
}

void AppendCells(EditLine& line, const std::vector<std::string>& cells) {
  for (const std::string& cell : cells) line.EditString(cell);
}

// "A" for an anchored measure, "G" for a group-anchored one.
std::string_view AnchorFlag(const Analysis& analysis, ElementSlot slot) {
  if (analysis.design.elements.ElementAnchor[slot] == AnchorKind::groupAnchored) return "G";
  return analysis.estimates.elements[slot].ElementStatus == kStatusAnchored ? "A" : " ";
}

// A rater without a pair has none.
void AddAgreement(const RaterAgreement& agreement, ElementSlot slot, MeasureRow& row) {
  const ElementSlot rater = agreement.RowOf(slot);
  if (!agreement.RaterOpportunities.has(rater)) return;
  row.hasAgreement = agreement.RaterOpportunities[rater] > 0.0f;
  row.agreementObserved = agreement.RaterExact[rater];
  row.agreementExpected = agreement.RaterExpected[rater];
}

std::string FullLine(const Analysis& analysis, const Table7Layout& layout, ElementSlot slot) {
  const MeasureRow figures = FiguresOf(analysis, slot);
  const FinishedStatistics fit(analysis.estimates, slot);
  const std::string label =
      NumberedLabel(layout, analysis.design.elements, slot) + SubsetNote(analysis, slot);
  EditLine line = BeginRow(layout.label, layout.fullRow, label);
  AppendScores(line, figures);
  line.EditDouble(figures.fairAverage);
  line.EditString(AnchorFlag(analysis, slot));
  AppendMeasure(line, analysis.settings, figures);
  AppendFit(line, figures);
  line.EditString(FixedField(fit->Discrimination, kDiscriminationWidth, kStatisticDecimals));
  for (const Table7Column column : layout.optional)
    AppendCells(line, FullCells(analysis, column, slot));
  return EndRow(line, layout.label, label);
}

// Extreme and Status rows: a word stands in the place of the fit.
std::string UnfittedLine(const Analysis& analysis, const Table7Layout& layout, ElementSlot slot,
                         RowKind kind) {
  const bool extreme = kind == RowKind::extreme;
  const MeasureRow figures = FiguresOf(analysis, slot);
  const std::int16_t status = analysis.estimates.elements[slot].ElementStatus;
  const std::string label =
      NumberedLabel(layout, analysis.design.elements, slot) + SubsetNote(analysis, slot);
  EditLine line = BeginRow(layout.label, extreme ? layout.extremeRow : layout.statusRow, label);
  AppendScores(line, figures);
  if (extreme) line.EditDouble(figures.fairAverage);
  line.EditString(AnchorFlag(analysis, slot));
  if (extreme)
    AppendMeasure(line, analysis.settings, figures);
  else
    line.EditString(FixedField(figures.measure, kMeasureWidth, analysis.settings.Udecimals));
  line.EditString(StatusWord(status));
  for (const Table7Column column : layout.optional)
    AppendCells(line, UnfittedCells(analysis, column, slot));
  return EndRow(line, layout.label, label);
}

}  // namespace

RowKind RowKindOf(const Analysis& analysis, ElementSlot slot) {
  const std::int16_t status = analysis.estimates.elements[slot].ElementStatus;
  const bool hasData = analysis.estimates.scores[slot].MaxScore > 0.0;
  if (IsInPlay(status) && hasData) return RowKind::full;
  if (IsExtreme(status)) return RowKind::extreme;
  const bool observed = status == kStatusDropped || status == kStatusHeld;
  return observed || !analysis.settings.OmitUnobserved ? RowKind::status : RowKind::none;
}

std::string_view StatusWord(std::int16_t status) {
  constexpr std::string_view kWords[] = {"Unknown", "Anchored",     "Minimum",
                                         "Maximum", "Unmeasurable", "One datum"};
  const int magnitude = std::abs(status);
  return magnitude <= 5 ? kWords[magnitude] : kWords[0];
}

MeasureRow FiguresOf(const Analysis& analysis, ElementSlot slot) {
  const Settings& settings = analysis.settings;
  const ElementScores& scores = analysis.estimates.scores[slot];
  const FinishedStatistics fit(analysis.estimates, slot);
  const double uscale = settings.Uscale;
  MeasureRow row;
  row.measure = settings.Umean + uscale * analysis.estimates.elements[slot].ElementMeasure;
  row.standardError = std::abs(uscale) * fit->StandardError;
  row.infitMeanSquare = fit->InfitMeanSquare;
  row.infitZStd = fit->InfitZStd;
  row.outfitMeanSquare = fit->OutfitMeanSquare;
  row.outfitZStd = fit->OutfitZStd;
  row.score = settings.TotalScoreMode ? scores.FirstRawScore : scores.RawScore;
  row.count = settings.TotalScoreMode ? scores.FirstCount : scores.Count;
  row.observedAverage = PerCount(row.score, HeldSingle(row.count));
  row.fairAverage = PerCount(fit->FairSum, scores.Count);
  row.weight = analysis.design.elements.ElementWeight[slot];
  row.isFitted = RowKindOf(analysis, slot) == RowKind::full;
  row.correlation = fit->PointMeasure;
  row.expectedCorrelation = fit->PointResidual;
  row.displacement = UserDisplacement(analysis, slot);
  AddAgreement(analysis.estimates.agreement, slot, row);
  return row;
}

std::string ElementLine(const Analysis& analysis, const Table7Layout& layout, ElementSlot slot) {
  const RowKind kind = RowKindOf(analysis, slot);
  return kind == RowKind::full ? FullLine(analysis, layout, slot)
                               : UnfittedLine(analysis, layout, slot, kind);
}

std::string FootLine(const Settings& settings, const Table7Layout& layout,
                     const MeasureRow& figures, const std::string& words,
                     const std::string& group) {
  EditLine line = BeginRow(layout.label, layout.footRow, words);
  AppendScores(line, figures);
  line.EditDouble(figures.fairAverage);
  AppendMeasure(line, settings, figures);
  AppendFit(line, figures);
  for (const Table7Column column : layout.optional) {
    const bool named = column == Table7Column::group && !group.empty();
    AppendCells(line,
                named ? std::vector<std::string>{group} : FootCells(settings, column, figures));
  }
  return EndRow(line, layout.label, words);
}

}  // namespace flanks
