#include "report/table7_optional.h"

#include <algorithm>
#include <cmath>

#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kWideCell = 6;  // displacement, group, weight
constexpr int kCell = 5;      // correlations, agreement
constexpr int kCorrelationDecimals = 2;
constexpr int kPercentDecimals = 1;
constexpr int kWeightDecimals = 2;
constexpr double kLargestDisplacement = 10.0;  // logits
constexpr float kTellingShare = 0.25f;         // of the standard error

SlotRange ElementsOf(const Analysis& analysis, FlankNo flank) {
  return SlotsOf(analysis.design.flanks, flank);
}

std::string DisplacementText(const Settings& settings, double displacement) {
  return FixedField(displacement, kWideCell, settings.Udecimals);
}

// Whether an anchored element stands so far off that its displacement is worth a column.
bool IsDisplaced(const Analysis& analysis, ElementSlot slot) {
  if (analysis.estimates.elements[slot].ElementStatus != kStatusAnchored) return false;
  const FinishedStatistics fit(analysis.estimates, slot);
  if (fit->Displacement == 0.0f) return false;
  if (!(std::abs(fit->Displacement) > kTellingShare * fit->StandardError)) return false;
  return DisplacementText(analysis.settings, UserDisplacement(analysis, slot)) !=
         DisplacementText(analysis.settings, 0.0);
}

bool ShowsDisplacement(const Analysis& analysis, FlankNo flank) {
  const SlotRange range = ElementsOf(analysis, flank);
  for (const ElementSlot slot : Upward(range.low, range.high))
    if (IsDisplaced(analysis, slot)) return true;
  return false;
}

template <char kLetter>
bool ShowsCorrelation(const Analysis& analysis, FlankNo) {
  return analysis.settings.PointCorrelationKind == kLetter;
}

bool ShowsAgreement(const Analysis& analysis, FlankNo flank) {
  return analysis.estimates.agreement.raterFlank == flank;
}

bool ShowsGroup(const Analysis& analysis, FlankNo flank) {
  return MeasuredGroups(analysis, flank).size() > 1;
}

bool ShowsWeight(const Analysis& analysis, FlankNo flank) {
  const SlotRange range = ElementsOf(analysis, flank);
  for (const ElementSlot slot : Upward(range.low, range.high))
    if (analysis.design.elements.ElementWeight[slot] != 1.0f) return true;
  return false;
}

constexpr Table7OptionalColumn kColumns[] = {
    {Table7Column::displacement, "       ", " Displ.", "\\    \\ ", ShowsDisplacement},
    {Table7Column::biserial, " Corr. ", " PtBis ", " \\   \\ ", ShowsCorrelation<'Y'>},
    {Table7Column::biserialInclude, " Corr. ", " PtBisI", " \\   \\ ", ShowsCorrelation<'I'>},
    {Table7Column::correlationMeasure, " Correlation ", " PtMea PtExp ", " \\   \\ \\   \\ ",
     ShowsCorrelation<'M'>},
    {Table7Column::agreement, " Exact Agree. ", " Obs %  Exp % ", " \\   \\  \\   \\ ",
     ShowsAgreement},
    {Table7Column::group, "       ", " Group ", "\\    \\ ", ShowsGroup},
    {Table7Column::weight, "Element", " Weight", "\\    \\ ", ShowsWeight},
};

std::string CorrelationText(double correlation) {
  return FixedField(correlation, kCell, kCorrelationDecimals);
}

std::string PercentText(double percent) {
  return FixedField(percent, kCell, kPercentDecimals);
}

// A rater without a pair has no agreement to show.
std::vector<std::string> AgreementCells(const RaterAgreement& agreement, ElementSlot slot) {
  const ElementSlot row = agreement.RowOf(slot);
  if (!(agreement.RaterOpportunities[row] > 0.0f)) return {"", ""};
  return {PercentText(agreement.RaterExact[row]), PercentText(agreement.RaterExpected[row])};
}

std::vector<std::string> EmptyCells(Table7Column column) {
  const bool pair = column == Table7Column::correlationMeasure || column == Table7Column::agreement;
  return pair ? std::vector<std::string>{"", ""} : std::vector<std::string>{""};
}

}  // namespace

std::span<const Table7OptionalColumn> Table7OptionalColumns() {
  return kColumns;
}

std::vector<std::int16_t> MeasuredGroups(const Analysis& analysis, FlankNo flank) {
  std::vector<std::int16_t> numbers;
  const SlotRange range = ElementsOf(analysis, flank);
  for (const ElementSlot slot : Upward(range.low, range.high)) {
    const std::int16_t status = analysis.estimates.elements[slot].ElementStatus;
    if (!IsInPlay(status) && !IsExtreme(status)) continue;
    const std::int16_t group = analysis.design.elements.ElementGroup[slot];
    // Elements of one group stand together as a rule.
    if (numbers.empty() || numbers.back() != group) numbers.push_back(group);
  }
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

double UserDisplacement(const Analysis& analysis, ElementSlot slot) {
  const FinishedStatistics fit(analysis.estimates, slot);
  const double logits = std::clamp(static_cast<double>(fit->Displacement), -kLargestDisplacement,
                                   kLargestDisplacement);
  const FlankNo flank = analysis.design.elements.ElementFlank[slot];
  const double sign = IsPositive(analysis.design.flanks, flank) ? 1.0 : -1.0;
  return sign * static_cast<double>(analysis.settings.Uscale) * logits;
}

std::vector<std::string> FullCells(const Analysis& analysis, Table7Column column,
                                   ElementSlot slot) {
  const FinishedStatistics fit(analysis.estimates, slot);
  switch (column) {
    case Table7Column::displacement:
      return {DisplacementText(analysis.settings, UserDisplacement(analysis, slot))};
    case Table7Column::biserial:
    case Table7Column::biserialInclude:
      return {CorrelationText(fit->PointMeasure)};
    case Table7Column::correlationMeasure:
      return {CorrelationText(fit->PointMeasure), CorrelationText(fit->PointResidual)};
    default:
      return UnfittedCells(analysis, column, slot);
  }
}

std::vector<std::string> UnfittedCells(const Analysis& analysis, Table7Column column,
                                       ElementSlot slot) {
  const ElementTable& elements = analysis.design.elements;
  switch (column) {
    case Table7Column::agreement:
      return AgreementCells(analysis.estimates.agreement, slot);
    case Table7Column::group:
      return {FixedFieldInteger(elements.ElementGroup[slot], kWideCell, 0)};
    case Table7Column::weight:
      return {FixedFieldSingle(elements.ElementWeight[slot], kWideCell, kWeightDecimals)};
    default:
      return EmptyCells(column);
  }
}

std::vector<std::string> FootCells(const Settings& settings, Table7Column column,
                                   const MeasureRow& figures) {
  const bool ofFit = column == Table7Column::displacement || column == Table7Column::biserial ||
                     column == Table7Column::biserialInclude ||
                     column == Table7Column::correlationMeasure;
  if (ofFit && !figures.isFitted) return EmptyCells(column);
  switch (column) {
    case Table7Column::displacement:
      return {DisplacementText(settings, figures.displacement)};
    case Table7Column::biserial:
    case Table7Column::biserialInclude:
      return {CorrelationText(figures.correlation)};
    case Table7Column::correlationMeasure:
      return {CorrelationText(figures.correlation), CorrelationText(figures.expectedCorrelation)};
    case Table7Column::agreement:
      if (!figures.hasAgreement) return EmptyCells(column);
      return {PercentText(figures.agreementObserved), PercentText(figures.agreementExpected)};
    case Table7Column::weight:
      return {FixedField(figures.weight, kWideCell, kWeightDecimals)};
    default:
      return EmptyCells(column);
  }
}

}  // namespace flanks
