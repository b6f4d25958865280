#include "output/anchor_labels.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

#include "base/held_single.h"
#include "base/single.h"
#include "base/text.h"
#include "report/format/join_number.h"

namespace flanks {
namespace {

bool HasQuoteAtAnEnd(std::string_view text) {
  constexpr std::string_view kQuotes = "\"'";
  return !text.empty() && (kQuotes.find(text.front()) != std::string_view::npos ||
                           kQuotes.find(text.back()) != std::string_view::npos);
}

bool HasMeasure(const AnchorLabelParts& parts, ElementSlot slot) {
  const std::int16_t status = parts.estimates.elements[slot].ElementStatus;
  if (status != kStatusUnused && status != kStatusDropped) return true;
  return parts.design.elements.ElementAnchor[slot] == AnchorKind::anchored;
}

// The value is read back as a logit that must lie within Hardware=; estimates may lie beyond it.
float WithinHardware(double value, const Settings& settings) {
  const double uscale = settings.Uscale;
  const auto isWithin = [&](float userMeasure) {
    return std::abs(Single((static_cast<double>(userMeasure) - settings.Umean) / uscale)) <
           settings.Hardware;
  };
  float nearest = HeldSingle(value);
  if (isWithin(nearest)) return nearest;
  const double limit =
      std::copysign(static_cast<double>(settings.Hardware), value - settings.Umean);
  nearest = HeldSingle(settings.Umean + std::abs(uscale) * limit);
  constexpr int kMostSteps = 1000;
  for (int step = 0; step < kMostSteps && !isWithin(nearest); ++step)
    nearest = std::nextafter(nearest, settings.Umean);
  return nearest;
}

std::string FlankLine(const AnchorLabelParts& parts, FlankNo flank, char mark) {
  const FlankTable& flanks = parts.design.flanks;
  const std::string& name = flanks.FlankName[flank];
  const std::string options(mark == 'A' ? "A" : Trim(flanks.FlankOptions[flank]));
  std::string line = std::to_string(flank.number()) + "," + name + "," + options;
  const float weight = flanks.FlankWeight[flank];
  // The last field of a line loses its quotes: a name must not be the last.
  if (weight != 1.0f || (options.empty() && HasQuoteAtAnEnd(name)))
    line += "," + FreeNumber(weight);
  return line;
}

// "1, 2": the subsets of an element.
std::string SubsetList(std::span<const std::int32_t> subsets) {
  std::string list;
  for (const std::int32_t subset : subsets)
    list += (list.empty() ? "" : ", ") + std::to_string(subset);
  return list;
}

std::string ElementLine(const AnchorLabelParts& parts, ElementSlot slot) {
  const ElementTable& elements = parts.design.elements;
  const std::string& label = elements.ElementLabel[slot];
  const std::string measure = AnchorMeasure(parts, slot);
  std::string line = std::to_string(elements.ElementNumber[slot]) + "=" + label;
  const int group = std::abs(int{elements.ElementGroup[slot]});
  const bool guardsQuotes = measure.empty() && HasQuoteAtAnEnd(label);
  if (!measure.empty() || group != 0 || guardsQuotes) line += "," + measure;
  if (group != 0 || guardsQuotes) line += "," + std::to_string(group);
  const std::string subsets = SubsetList(parts.subsets.Of(slot));
  return WithComment(std::move(line), subsets.empty() ? "" : "in subset: " + subsets);
}

}  // namespace

std::string AnchorMeasure(const AnchorLabelParts& parts, ElementSlot slot) {
  if (!HasMeasure(parts, slot)) return {};
  const double logit = parts.estimates.elements[slot].ElementMeasure;
  const double value = parts.settings.Umean + static_cast<double>(parts.settings.Uscale) * logit;
  if (!std::isfinite(value)) return {};
  return FreeNumber(WithinHardware(value, parts.settings));
}

void WriteAnchorLabels(const AnchorLabelParts& parts, char mark, SpecificationLines& lines) {
  const Design& design = parts.design;
  lines.Line(parts.settings.labelsNobuild ? "Labels = Nobuild" : "Labels =");
  for (const FlankNo flank : Upward(design.flanks.FlankName)) {
    if (design.flanks.FlankName[flank].empty()) continue;
    lines.Line(FlankLine(parts, flank, mark));
    const std::string null = std::to_string(parts.settings.NullElement);
    const std::string& nullLabel = design.flanks.FlankNullLabel[flank];
    if (!nullLabel.empty() && nullLabel != null)
      lines.Line(null + "=" + nullLabel + " ; Null element");
    const auto [low, high] = SlotsOf(design.flanks, flank);
    for (const ElementSlot slot : Upward(low, high)) {
      if (lines.stopping()) return;
      lines.Line(ElementLine(parts, slot));
    }
    lines.Line("*");
  }
}

}  // namespace flanks
