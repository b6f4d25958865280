#include "report/table8_rows.h"

#include <cmath>

#include "report/format/clip_field.h"
#include "report/format/edit_word.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kCountWidth = 8;
constexpr int kPercentWidth = 3;
constexpr int kMeasureWidth = 6;
constexpr int kErrorWidth = 5;
constexpr int kOutfitWidth = 5;
constexpr int kMostProbableWidth = 7;
constexpr int kThurstoneWidth = 8;
constexpr int kResidualWidth = 10;
constexpr int kDisplacementWidth = 8;
constexpr std::string_view kInfinite = "infin.";

// Exactly `width` places, however many decimals are asked for.
std::string UserField(double logits, const Table8Units& units, int width) {
  return ClipField(FixedField(logits * units.uscale, width, units.udecimals), width);
}

std::string UserField(const std::optional<double>& logits, const Table8Units& units, int width) {
  return logits ? UserField(*logits, units, width) : "";
}

// Whole as it is, else with one decimal.
std::string CountField(double count) {
  return FixedField(count, kCountWidth, count == std::floor(count) ? 0 : 1);
}

std::string PercentField(double percent) {
  return FixedField(percent, kPercentWidth, 0);
}

// Average, its mark, expected average and outfit in 19 places.  The mark takes the place that the
// expected average leaves free, or its last one.
std::string QualityText(const Table8Units& units, const CategoryRow& row) {
  std::string text = UserField(row.figures.average, units, kMeasureWidth);
  text += row.disordered ? "*" + UserField(row.figures.expectedAverage, units, kMeasureWidth - 1)
                         : UserField(row.figures.expectedAverage, units, kMeasureWidth);
  return text + " " + FixedField(row.figures.outfit, kOutfitWidth, 2);
}

void EditCounts(const Table8Layout& layout, const Table8Units& units, const CategoryRow& row,
                EditLine& line) {
  line.EditInteger(row.score);
  const bool figures = row.counts >= CellKind::first;
  if (figures && layout.request.codes) line.EditInteger(row.code);
  line.EditString(CountField(row.total));
  if (!figures) return;
  line.EditString(CountField(row.used));
  line.EditString(PercentField(row.percent)).EditString(PercentField(row.cumulative));
  line.EditString(QualityText(units, row));
}

std::string ThresholdText(const Table8Units& units, const CategoryRow& row, int width) {
  if (row.infinite) return ClipField(std::string(kInfinite), width);
  return row.threshold ? UserField(static_cast<double>(*row.threshold), units, width) : "";
}

std::string ErrorText(const Table8Units& units, const CategoryRow& row) {
  Table8Units size = units;
  size.uscale = std::abs(units.uscale);
  return UserField(row.standardError, size, kErrorWidth);
}

// The field of 8 places ends in the flag of an anchor.
void EditDichotomy(const Table8Units& units, const CategoryRow& row, EditLine& line) {
  if (row.structure < CellKind::other) return;
  line.EditString(ThresholdText(units, row, kMostProbableWidth) + (row.anchored ? "A" : ""));
}

void EditRating(const Table8Units& units, const CategoryRow& row, EditLine& line) {
  if (row.structure >= CellKind::other) {
    line.EditString(ThresholdText(units, row, kMeasureWidth)).EditString(row.anchored ? "A" : " ");
    line.EditString(ErrorText(units, row));
  }
  if (row.structure >= CellKind::first)
    line.EditString(UserField(row.landmarks.expectation, units, kMeasureWidth));
  if (row.structure < CellKind::other) return;
  line.EditString(UserField(row.landmarks.half, units, kMeasureWidth));
  line.EditString(UserField(row.landmarks.mostProbable, units, kMostProbableWidth));
  line.EditString(UserField(row.landmarks.thurstone, units, kThurstoneWidth));
  if (row.structure == CellKind::other) line.EditInteger(RoundInteger(100.0 * row.landmarks.peak));
}

void EditDiagnosis(const Table8Units& units, const CategoryRow& row, EditLine& line) {
  if (row.structure < CellKind::first) return;
  line.EditString(FixedField(row.residual, kResidualWidth, 1));
  line.EditString(UserField(row.displacement, units, kDisplacementWidth));
}

}  // namespace

std::string CategoryLine(const Table8Layout& layout, const Table8Units& units,
                         const CategoryRow& row) {
  const std::string word = Table8Word(layout, row.counts, row.structure);
  EditLine line(word, layout.encoding);
  const bool named = !layout.nameWord.empty();
  if (named && layout.request.leftHand) line.EditString(row.name);
  EditCounts(layout, units, row, line);
  if (layout.request.structure == Table8Structure::dichotomy) EditDichotomy(units, row, line);
  if (layout.request.structure == Table8Structure::rating) EditRating(units, row, line);
  if (layout.diagnostic != nullptr) EditDiagnosis(units, row, line);
  if (named && !layout.request.leftHand) line.EditString(row.name);
  return line.Finish();
}

}  // namespace flanks
