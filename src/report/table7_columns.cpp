#include "report/table7_columns.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "base/utf8.h"
#include "report/format/box.h"
#include "report/format/clip_field.h"

namespace flanks {
namespace {

constexpr std::size_t kSubsetsShown = 20;  // of one element

constexpr int kSmallestLabelWidth = 20;
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

std::string WithSeparators(std::string_view text) {
  std::string line(text);
  std::replace(line.begin(), line.end(), '|', kBoxColumn);
  return line;
}

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

int WidestLabel(const Table7Layout& layout, const Analysis& analysis, Utf8Encoded encoding) {
  const SlotRange range = SlotsOf(analysis.design.flanks, layout.flank);
  int widest = DisplayWidth(LabelHead(layout, analysis.design.flanks), encoding);
  for (ElementSlot e : Upward(range.low, range.high))
    widest = std::max(widest, layout.numberWidth + 1 +
                                  DisplayWidth(analysis.design.elements.ElementLabel[e], encoding) +
                                  DisplayWidth(SubsetNote(analysis, e)));
  return widest;
}

// Puts the label's cell behind or in front of the rest of a line.
std::string JoinLabel(const Table7Layout& layout, const std::string& rest,
                      const std::string& label) {
  if (layout.leftHand) return std::string(1, kBoxColumn) + label + rest;
  return rest + label + kBoxColumn;
}

// The label's cell of an edit word, with the free field that takes the empty text of the other
// side.
std::string RowWord(const Table7Layout& layout, std::string_view fixed,
                    const std::string& optionalWords) {
  std::string field = " \\";
  field.append(static_cast<std::size_t>(layout.labelWidth) - 2, ' ');
  field += '\\';
  const std::string rest = WithSeparators(fixed) + WithSeparators(optionalWords);
  const std::string line = JoinLabel(layout, rest, field);
  return layout.leftHand ? line + "&" : "&" + line;
}

std::string DashesFor(std::string_view head) {
  std::string pattern(head);
  for (char& c : pattern) c = c == '|' ? 'x' : '-';
  return pattern;
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
  const Utf8Encoded encoding = EncodingOf(settings);
  Table7Layout layout;
  layout.encoding = encoding;
  layout.flank = flank;
  layout.leftHand = settings.LeftHand;
  layout.numberWidth = std::max(kSmallestNumberWidth, DigitsOf(flanks.FlankHigh[flank]));
  layout.labelWidth = std::max(kSmallestLabelWidth, WidestLabel(layout, analysis, encoding));

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
  const std::string emptyCell(static_cast<std::size_t>(layout.labelWidth) + 1, ' ');
  const std::string labelCell =
      " " + ClipField(LabelHead(layout, flanks), layout.labelWidth, encoding);
  layout.headingRows = {"", JoinLabel(layout, WithSeparators(firstHead), emptyCell),
                        JoinLabel(layout, WithSeparators(secondHead), labelCell), ""};
  const std::string labelDashes(static_cast<std::size_t>(layout.labelWidth) + 1, '-');
  layout.rulePattern = layout.leftHand ? "x" + labelDashes + DashesFor(secondHead)
                                       : DashesFor(secondHead) + labelDashes + "x";
  layout.fullRow = RowWord(layout, kFullRow, optionalWords);
  layout.extremeRow = RowWord(layout, kExtremeRow, optionalWords);
  layout.statusRow = RowWord(layout, kStatusRow, optionalWords);
  layout.footRow = RowWord(layout, kFootRow, optionalWords);
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
