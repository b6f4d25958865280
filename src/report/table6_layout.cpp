#include "report/table6_layout.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"
#include "report/format/sort_key.h"
#include "run/messages.h"

namespace flanks {
namespace {

// Class digits: extreme elements at the top end, measured ones, extreme elements at the bottom end.
constexpr char kTopEnd = '1', kMeasured = '2', kBottomEnd = '3';
constexpr std::size_t kRowDigits = 4;
constexpr std::int32_t kMostAsterisks = 10;
constexpr int kLabelGap = 2, kNumberGap = 1;  // blanks between entries, and what a column adds
constexpr int kCutHead = 5;                   // names and columns of this width cut the head

struct Place {
  char classDigit;
  int row;
};

Place PlaceOf(const Analysis& analysis, ElementSlot slot, const RulerScale& scale,
              const Yardstick& yardstick) {
  const ElementState& element = analysis.estimates.elements[slot];
  if (!IsExtreme(element.ElementStatus) || yardstick.extremesAtMeasures)
    return {kMeasured, scale.RowOf(UserMeasure(analysis.settings, element.ElementMeasure))};
  return IsAtHighEnd(analysis.settings, element.ElementStatus) ? Place{kTopEnd, 0}
                                                               : Place{kBottomEnd, scale.last};
}

std::string KeyOf(Place place, ElementSlot slot) {
  return place.classDigit + iSwap(MKIhex(static_cast<std::int16_t>(place.row))) +
         Swapl(MKLhex(slot.number()));
}

int RowOfKey(std::string_view key) {
  return CVIhex(iSwap(key.substr(1, kRowDigits)));
}
ElementSlot SlotOfKey(std::string_view key) {
  return ElementSlot(CVLhex(Swapl(key.substr(1 + kRowDigits))));
}

void AddFlankMeasure(RulerFlank& flank, float measure) {
  flank.lowest = flank.shown == 0 ? measure : std::min(flank.lowest, measure);
  flank.highest = flank.shown == 0 ? measure : std::max(flank.highest, measure);
  ++flank.shown;
}

void Widen(RulerFlank& range, const RulerFlank& flank) {
  if (flank.shown == 0) return;
  AddFlankMeasure(range, flank.lowest);
  AddFlankMeasure(range, flank.highest);
}

// What stands for an element: its label or its number.  An element without a label has its number.
std::string EntryOf(const ElementTable& elements, RulerForm form, ElementSlot slot) {
  const std::string& label = elements.ElementLabel[slot];
  if (form == RulerForm::labels && !Trim(label).empty()) return label;
  return std::to_string(elements.ElementNumber[slot]);
}

bool ListsElements(RulerForm form) {
  return form == RulerForm::labels || form == RulerForm::numbers;
}

std::string HeadOf(const FlankTable& flanks, const RulerItem& item, std::int32_t group) {
  std::string head = (IsPositive(flanks, item.flank) ? "+" : "-") + flanks.FlankName[item.flank];
  if (item.form == RulerForm::asterisks) head += " * =" + std::to_string(group);
  if (item.form == RulerForm::counts) head += " Count";
  return head;
}

// Labels begin at the left, numbers end at the right of their place.
std::string EntryField(const Analysis& analysis, const RulerColumn& column, ElementSlot slot) {
  const ElementTable& elements = analysis.design.elements;
  if (column.item.form == RulerForm::numbers)
    return FixedField(elements.ElementNumber[slot], column.entryWidth, 0);
  return ClipField(EntryOf(elements, column.item.form, slot), column.entryWidth,
                   EncodingOf(analysis.settings));
}

// Wide characters take parts of columns: the text so far is brought to the place of each entry, so
// that these parts do not add up.
std::string EntriesCell(const Analysis& analysis, const RulerColumn& column, int row,
                        std::int32_t line) {
  const PlacedElements& placed = column.placed;
  const Utf8Encoded encoding = EncodingOf(analysis.settings);
  const int gap = column.item.form == RulerForm::labels ? kLabelGap : kNumberGap;
  const auto at = static_cast<std::size_t>(row);
  const auto perLine = static_cast<std::size_t>(column.perLine);
  const std::size_t first = placed.begin[at] + static_cast<std::size_t>(line) * perLine;
  const std::size_t last = std::min(first + perLine, placed.begin[at + 1]);
  // One blank in front, where the fullest line leaves room for it.
  const int full = column.perLine * (column.entryWidth + gap) - gap;
  int place = full < column.width ? 1 : 0;
  std::string cell;
  for (std::size_t e = first; e < last; ++e, place += column.entryWidth + gap)
    cell = ClipField(cell, place, encoding) + EntryField(analysis, column, placed.order[e]);
  return ClipField(cell, column.width, encoding);
}

std::string CountCell(const RulerColumn& column, int row) {
  const std::int32_t count = column.placed.counts[static_cast<std::size_t>(row)];
  const auto width = static_cast<std::size_t>(column.width);
  if (column.item.form == RulerForm::counts)
    return count == 0 ? std::string(width, ' ') : FixedField(count, column.width, 0);
  std::string cell(static_cast<std::size_t>((count + column.group - 1) / column.group), '*');
  cell.resize(width, ' ');
  return cell;
}

// The sorted keys are read back: the elements in order, and where those of each row begin.
void ReadKeys(const KeyArray& keys, PlacedElements& placed) {
  placed.begin.assign(placed.counts.size() + 1, 0);
  placed.order.reserve(static_cast<std::size_t>(keys.count()));
  for (const std::string& key : keys) {
    placed.order.push_back(SlotOfKey(key));
    placed.begin[static_cast<std::size_t>(RowOfKey(key)) + 1] = placed.order.size();
  }
  // A row without elements begins where the one above it ends.
  for (std::size_t row = 1; row < placed.begin.size(); ++row)
    placed.begin[row] = std::max(placed.begin[row], placed.begin[row - 1]);
}

int WidestEntry(const Analysis& analysis, const RulerColumn& column) {
  int widest = 1;
  for (const ElementSlot slot : column.placed.order)
    widest =
        std::max(widest, DisplayWidth(EntryOf(analysis.design.elements, column.item.form, slot),
                                      EncodingOf(analysis.settings)));
  return widest;
}

}  // namespace

double UserMeasure(const Settings& settings, float measure) {
  return settings.Umean + static_cast<double>(settings.Uscale) * measure;
}

bool IsAtHighEnd(const Settings& settings, std::int16_t status) {
  return (status == kStatusMaximum) == (settings.Uscale > 0.0f);
}

bool IsOnRuler(const Analysis& analysis, ElementSlot slot) {
  const std::int16_t status = analysis.estimates.elements[slot].ElementStatus;
  if (IsExtreme(status)) return true;
  const bool hasData = analysis.estimates.scores[slot].MaxScore > 0.0;
  return IsInPlay(status) && (hasData || !analysis.settings.OmitUnobserved);
}

RulerElements ElementsOfRuler(const Analysis& analysis) {
  RulerElements elements(analysis.design.FlankCount);
  for (const FlankNo flank : Upward(elements)) {
    const SlotRange range = SlotsOf(analysis.design.flanks, flank);
    for (const ElementSlot slot : Upward(range.low, range.high))
      if (IsOnRuler(analysis, slot)) elements[flank].push_back(slot);
  }
  return elements;
}

RulerElements ElementsOfRuler(const Analysis& analysis, const std::vector<ElementSlot>& members) {
  RulerElements elements(analysis.design.FlankCount);
  for (const ElementSlot slot : members)
    if (IsOnRuler(analysis, slot))
      elements[analysis.design.elements.ElementFlank[slot]].push_back(slot);
  return elements;
}

Column<FlankNo, RulerFlank> SumUpElements(const Analysis& analysis, const RulerElements& elements) {
  Column<FlankNo, RulerFlank> shown(elements.rows());
  for (const FlankNo flank : Upward(elements))
    for (const ElementSlot slot : elements[flank])
      AddFlankMeasure(shown[flank], analysis.estimates.elements[slot].ElementMeasure);
  return shown;
}

RulerScale ScaleOfRuler(const Settings& settings, const RulerList& list,
                        const Column<FlankNo, RulerFlank>& shown, const Yardstick& yardstick) {
  RulerFlank range;
  for (const RulerItem& item : list.items) Widen(range, shown[item.flank]);
  if (list.items.empty())
    for (const FlankNo flank : Upward(shown)) Widen(range, shown[flank]);
  const auto [low, high] =
      std::minmax({UserMeasure(settings, range.lowest), UserMeasure(settings, range.highest)});
  return ScaleRuler(low, high, yardstick, settings.Uscale);
}

std::int32_t PlacedElements::largestCount() const {
  return counts.empty() ? 0 : *std::max_element(counts.begin(), counts.end());
}

PlacedElements PlaceElements(const Analysis& analysis, const std::vector<ElementSlot>& elements,
                             RulerForm form, const RulerScale& scale, const Yardstick& yardstick,
                             const StopTest& isStopping) {
  PlacedElements placed;
  placed.counts.assign(static_cast<std::size_t>(scale.rows()), 0);
  KeyArray keys(message::kRulerSortLength);
  for (const ElementSlot slot : elements) {
    const Place place = PlaceOf(analysis, slot, scale, yardstick);
    ++placed.counts[static_cast<std::size_t>(place.row)];
    if (ListsElements(form)) keys.Add(KeyOf(place, slot));
  }
  keys.Sort(isStopping);
  ReadKeys(keys, placed);
  return placed;
}

std::int32_t RulerColumn::LinesOf(int row) const {
  if (!ListsElements(item.form)) return 1;
  const std::int32_t count = placed.counts[static_cast<std::size_t>(row)];
  return std::max((count + perLine - 1) / perLine, 1);
}

ColumnFit FitColumn(const ColumnNeeds& needs) {
  ColumnFit fit;
  const int gap = needs.form == RulerForm::labels ? kLabelGap : kNumberGap;
  const std::int32_t count = std::max(needs.largestCount, 1);
  switch (needs.form) {
    case RulerForm::asterisks:
      if (count > kMostAsterisks) fit.group = (count + kMostAsterisks - 1) / kMostAsterisks;
      fit.width = (count + fit.group - 1) / fit.group;
      break;
    case RulerForm::counts:
      fit.width = static_cast<int>(std::to_string(count).size());
      break;
    case RulerForm::labels:
    case RulerForm::numbers:
      fit.width =
          needs.fixedWidth > 0 ? std::max(needs.fixedWidth, gap + 1) : needs.entryWidth + gap;
      break;
  }
  const bool headIsCut = needs.nameWidth >= kCutHead && fit.width >= kCutHead;
  if (!headIsCut) fit.width = std::max(fit.width, needs.nameWidth - 1);
  if (!ListsElements(needs.form)) return fit;
  fit.entryWidth = std::min(needs.entryWidth, fit.width - gap);
  fit.perLine = (fit.width + gap) / (fit.entryWidth + gap);
  return fit;
}

void FitColumns(const Analysis& analysis, const Yardstick& yardstick,
                std::vector<RulerColumn>& columns) {
  for (RulerColumn& column : columns) {
    ColumnNeeds needs;
    needs.form = column.item.form;
    needs.nameWidth = DisplayWidth(analysis.design.flanks.FlankName[column.item.flank],
                                   EncodingOf(analysis.settings));
    needs.entryWidth = WidestEntry(analysis, column);
    needs.largestCount = column.placed.largestCount();
    needs.fixedWidth = yardstick.columns;
    const ColumnFit fit = FitColumn(needs);
    column.width = fit.width;
    column.entryWidth = fit.entryWidth;
    column.perLine = fit.perLine;
    column.group = fit.group;
    column.head = HeadOf(analysis.design.flanks, column.item, fit.group);
  }
}

std::string RulerCell(const Analysis& analysis, const RulerColumn& column, int row,
                      std::int32_t line) {
  if (ListsElements(column.item.form)) return EntriesCell(analysis, column, row, line);
  return line == 0 ? CountCell(column, row)
                   : std::string(static_cast<std::size_t>(column.width), ' ');
}

}  // namespace flanks
