#include "output/element_texts.h"

#include <algorithm>

#include "output/score_fields.h"

namespace flanks {
namespace {

constexpr int kSmallestLabelColumns = 10;  // with the quote marks

// As wide as the longest label needs and one blank, so that labels stand apart.
int WidthOf(const Analysis& analysis, FlankNo flank, const RowForm& form) {
  const int marks = 2 * static_cast<int>(form.OutputQuote.size());
  return std::max(kSmallestLabelColumns - marks, LabelWidth(analysis, flank) + 1);
}

void AppendText(std::string& text, const RowForm& form, const std::string& label, int width) {
  const std::size_t before = text.size();
  // Kept: one blank stands before the first label of a row only (docs/quirks.md).
  AppendLabel(text, form, label, width);
  if (form.isFixed()) text.erase(before, 1);
}

}  // namespace

ElementTexts::ElementTexts(const Analysis& analysis, const RowForm& form,
                           const ElementTextOptions& options)
    : elements_(static_cast<std::size_t>(analysis.design.ElementTotal)) {
  const Design& design = analysis.design;
  const Settings& settings = analysis.settings;
  labelWidth_.assign(design.FlankCount, 0);
  for (const FlankNo flank : Upward(labelWidth_))
    if (form.isFixed()) labelWidth_[flank] = WidthOf(analysis, flank, form);
  const auto wants = [&](ElementText what) {
    return options.wanted[static_cast<std::size_t>(what)];
  };
  const auto add = [&](std::int32_t number, double measure, const std::string& label, int width) {
    begin_.push_back(texts_.size());
    if (wants(ElementText::number)) AppendWhole(texts_, form, number);
    begin_.push_back(texts_.size());
    if (wants(ElementText::measure)) AppendDecimals(texts_, form, measure, options.decimals);
    begin_.push_back(texts_.size());
    if (wants(ElementText::label)) AppendText(texts_, form, label, width);
  };
  for (const ElementSlot slot : Upward(design.elements.ElementNumber)) {
    const double logits = analysis.estimates.elements[slot].ElementMeasure;
    add(design.elements.ElementNumber[slot], settings.Umean + settings.Uscale * logits,
        design.elements.ElementLabel[slot], labelWidth_[design.elements.ElementFlank[slot]]);
  }
  for (Position position(1); position.number() <= design.ModelFlankCount; ++position)
    add(0, 0.0, "", labelWidth_[design.maps.ModelFlank[position]]);
  begin_.push_back(texts_.size());
  for (std::size_t at = 0; at + 1 < begin_.size(); ++at) {
    std::size_t& longest = longest_[at % kElementTexts];
    longest = std::max(longest, begin_[at + 1] - begin_[at]);
  }
  texts_.append(kCopySlack, ' ');
}

}  // namespace flanks
