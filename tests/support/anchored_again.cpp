#include "support/anchored_again.h"

#include <algorithm>
#include <cmath>

#include "output/anchor_models.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kWidth = 30;

// A number as a Table shows it.
AnchoredAgain::Figure FigureOf(double value, int decimals) {
  return {FixedField(value, kWidth, decimals), value};
}

bool HasEstimate(const Analysis& analysis, ElementSlot slot) {
  const std::int16_t status = analysis.estimates.elements[slot].ElementStatus;
  return (status != kStatusUnused && status != kStatusDropped) ||
         analysis.design.elements.ElementAnchor[slot] == AnchorKind::anchored;
}

}  // namespace

AnchoredAgain::Figures AnchoredAgain::Measures() const {
  const Analysis& analysis = run.analysis;
  const Settings& settings = analysis.settings;
  Figures shown;
  for (const ElementSlot slot : Upward(analysis.estimates.elements)) {
    const ElementTable& elements = analysis.design.elements;
    const std::string place = std::to_string(elements.ElementFlank[slot].number()) + "," +
                              std::to_string(elements.ElementNumber[slot]);
    shown["label " + place] = {elements.ElementLabel[slot] + "|" +
                               std::to_string(elements.ElementGroup[slot])};
    if (!HasEstimate(analysis, slot)) continue;
    shown["element " + place] = FigureOf(
        settings.Umean + static_cast<double>(settings.Uscale) *
                             static_cast<double>(analysis.estimates.elements[slot].ElementMeasure),
        settings.Udecimals);
  }
  return shown;
}

// The first run's scales by the names that they get, the second's by those that they have.
AnchoredAgain::Figures AnchoredAgain::Thresholds(bool ofAnchorFile) const {
  const Analysis& analysis = run.analysis;
  const ScaleTables& scales = analysis.scales;
  Figures shown;
  const auto add = [&](const std::string& scale, ScaleRow row) {
    for (int k = 0; k <= scales.ScaleTopCategory[row]; ++k) {
      const bool threshold =
          scales.scaleType[row] == ScaleType::rating || scales.scaleMaximum[row] == 1;
      if (threshold == (k == 0) || scales.CategoryFlag.at(row, k) == kCategorySkipped) continue;
      const double value = scales.ThresholdTable.at(row, k);
      const double unit = k == 0 ? 1.0 : static_cast<double>(analysis.settings.Uscale);
      shown["scale " + scale + " category " + std::to_string(scales.rawCategory.at(row, k))] =
          FigureOf(value * unit, k == 0 ? 2 : analysis.settings.Udecimals);
      if (k == 0) return;
    }
  };
  if (ofAnchorFile) {
    for (const ScaleRow row : Upward(scales.scaleType))
      if (analysis.design.scales.has(scales.scaleDefinition[row]))
        add(analysis.design.scales[scales.scaleDefinition[row]].name, row);
  } else {
    for (const AnchorScale& scale :
         PlanAnchorModels(analysis.design, analysis.structures, scales).scales)
      if (scales.scaleType.has(scale.scale)) add(scale.name, scale.scale);
  }
  return shown;
}

std::string AnchoredAgain::Difference(std::string_view specification, const std::string& extras) {
  const std::string anchor = run.folder.file("anchor.txt");
  run.Analyze(specification, anchor + " " + extras);
  firstCompleted = run.exitCode == 0 && !AnchorFile().empty();
  if (!firstCompleted) return "the first run: " + run.Screen();
  Figures expected = Measures();
  expected.merge(Thresholds(false));
  run.shell.statuses.clear();
  run.RunCommandLine(anchor + " " + run.folder.file("report2.txt"));
  if (run.exitCode != 0) return "the run of the anchor file: " + run.Screen();
  Figures found = Measures();
  found.merge(Thresholds(true));
  for (const auto& [name, figure] : expected) {
    ++compared;
    if (!IsSame(figure, found[name]))
      return name + " was " + figure.text + " and is " + found[name].text;
  }
  return {};
}

// The file has 24 binary digits of a number in user units, and beside 0 those that stand beside
// a 1.
bool AnchoredAgain::IsSame(const Figure& expected, const Figure& found) const {
  if (expected.text == found.text) return true;
  const bool isNumber = expected.text.find('|') == std::string::npos;
  if (!withinSinglePrecision || !isNumber || found.text.empty()) return false;
  const Settings& settings = run.analysis.settings;
  // An anchor within Hardware= takes the place of one beyond it.
  const double limit = std::abs(settings.Uscale) * static_cast<double>(settings.Hardware);
  if (std::abs(expected.value - settings.Umean) >= limit)
    return std::abs(std::abs(found.value - settings.Umean) - limit) <= 1e-5 * limit;
  // An anchor at 0 logits is held as exp(-Hardware).
  const double zero =
      1.001 * std::abs(settings.Uscale) * std::exp(-static_cast<double>(settings.Hardware));
  const double size = std::max(std::abs(expected.value), std::abs(settings.Umean * 1.0));
  return std::abs(expected.value - found.value) <=
         std::ldexp(size, -22) + std::ldexp(1.0, -23) + zero;
}

}  // namespace flanks
