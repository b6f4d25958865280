#include "report/table7_columns.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "base/utf8.h"

namespace flanks {
namespace {

constexpr std::size_t kSubsetsShown = 20;  // of one element

constexpr int kSmallestNumberWidth = 3;

// The edit words of the fixed columns; "|" stands for the column separator here.
constexpr std::string_view kFullRow =
    "|######.# #####.# ####.## ###.## ! \\    \\ \\   \\ |##.## ##.# ##.## ##.# |\\    \\|";
constexpr std::string_view kExtremeRow =
    "|######.# #####.# ####.## ###.## !(\\    \\ \\   \\)|\\                   \\ |      |";
constexpr std::string_view kStatusRow =
    "|######.# #####.# ####.##        ! \\    \\       |\\                   \\ |      |";
constexpr std::string_view kFootRow =
    "|######.# #####.# ####.## ###.## | \\    \\ \\   \\ |##.## ##.# ##.## ##.# |      |";

std::string FirstHead(const Settings& settings, bool positive, bool weighted) {
  const std::string score = weighted ? "Weightd" : settings.TotalScoreMode ? "Total  " : "Obsvd  ";
  const std::string fair = settings.FairAverageKind == 'Z' ? "Fair(Z)" : "Fair(M)";
  const std::string model = settings.RealStandardErrors ? " Real" : "Model";
  return "|  " + score + " " + score + " Obsvd  " + fair + "|   " + (positive ? "+" : "-") +
         "    " + model + " | Infit      Outfit    |Estim.|";
}

constexpr std::string_view kSecondHead =
    "|  Score   Count  Average Average|Measure  S.E. | MnSq ZStd  MnSq ZStd |Discrm|";

int DigitsOf(std::int64_t number) {
  return static_cast<int>(std::to_string(number).size());
}

// "Num", blanks to the number field's width, and the Flank's name above the labels.
std::string LabelHead(const Table7Layout& layout, const FlankTable& flanks) {
  std::string head = "Num";
  head.resize(static_cast<std::size_t>(layout.numberWidth) + 1, ' ');
  return head + flanks.FlankName[layout.flank];
}

int WidestLabel(const Table7Layout& layout, const Analysis& analysis) {
  const Utf8Encoded encoding = layout.label.encoding;
  const SlotRange range = SlotsOf(analysis.design.flanks, layout.flank);
  int widest = DisplayWidth(LabelHead(layout, analysis.design.flanks), encoding);
  for (ElementSlot e : Upward(range.low, range.high))
    widest = std::max(widest, layout.numberWidth + 1 +
                                  DisplayWidth(analysis.design.elements.ElementLabel[e], encoding) +
                                  DisplayWidth(SubsetNote(analysis, e)));
  return widest;
}

}  // namespace

std::string SubsetNote(const Analysis& analysis, ElementSlot slot) {
  const std::span<const std::int32_t> subsets = analysis.subsets.Of(slot);
  if (subsets.empty()) return "";
  std::string note = " in subset:";
  std::size_t shown = 0;
  for (const std::int32_t subset : subsets) {
    if (++shown > kSubsetsShown) return note + " ...";
    note += " " + std::to_string(subset);
  }
  return note;
}

Table7Layout LayOutTable7(const Analysis& analysis, FlankNo flank) {
  const Settings& settings = analysis.settings;
  const FlankTable& flanks = analysis.design.flanks;
  Table7Layout layout;
  layout.flank = flank;
  layout.label.encoding = EncodingOf(settings);
  layout.label.leftHand = settings.LeftHand;
  layout.numberWidth = std::max(kSmallestNumberWidth, DigitsOf(flanks.FlankHigh[flank]));
  layout.label.width = std::max(kSmallestLabelWidth, WidestLabel(layout, analysis));

  std::string firstHead =
      FirstHead(settings, IsPositive(flanks, flank), analysis.estimates.iteration.anyWeight);
  std::string secondHead(kSecondHead);
  std::string optionalWords;
  for (const Table7OptionalColumn& column : Table7OptionalColumns()) {
    if (!column.shows(analysis, flank)) continue;
    layout.optional.push_back(column.column);
    firstHead += std::string(column.firstHead) + "|";
    secondHead += std::string(column.secondHead) + "|";
    optionalWords += std::string(column.editWord) + "|";
  }
  layout.headingRows =
      HeadingRowsWith(layout.label, firstHead, secondHead, LabelHead(layout, flanks));
  layout.rulePattern = RulePatternWith(layout.label, secondHead);
  const auto rowWord = [&](std::string_view fixed) {
    return RowWordWith(layout.label, std::string(fixed) + optionalWords);
  };
  layout.fullRow = rowWord(kFullRow);
  layout.extremeRow = rowWord(kExtremeRow);
  layout.statusRow = rowWord(kStatusRow);
  layout.footRow = rowWord(kFootRow);
  return layout;
}

std::string NumberedLabel(const Table7Layout& layout, const ElementTable& elements,
                          ElementSlot slot) {
  std::string number = std::to_string(elements.ElementNumber[slot]);
  const auto width = static_cast<std::size_t>(layout.numberWidth);
  if (number.size() < width) number.insert(0, width - number.size(), ' ');
  return number + " " + elements.ElementLabel[slot];
}

}  // namespace flanks
