#include "report/table4_columns.h"

#include <algorithm>
#include <string_view>

#include "report/format/box.h"
#include "report/format/clip_field.h"
#include "report/format/edit_word.h"

namespace flanks {
namespace {

constexpr std::string_view kFigureHead = " Cat  Score  Exp.  Resd StRes";
constexpr std::string_view kFigureWord = "\\   \\ \\   \\ \\   \\ \\   \\\\   \\ ";
constexpr std::string_view kSequenceHead = " Sequence";

constexpr int kSmallestGroupWidth = 19;
constexpr int kSmallestNumberWidth = 3;

std::string Blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

// An edit field of `width` places, at least two.
std::string TextField(int width) {
  return "\\" + Blanks(width - 2) + "\\";
}

// Puts the element group and the figures in their order, with the three separators.
std::string JoinGroups(bool leftHand, std::string_view figures, const std::string& group) {
  std::string line(1, kBoxColumn);
  line += leftHand ? group : std::string(figures);
  line += kBoxColumn;
  line += leftHand ? std::string(figures) : group;
  line += kBoxColumn;
  return line;
}

ElementCell MakeCell(const Design& design, FlankNo flank, Utf8Encoded encoding) {
  const FlankTable& flanks = design.flanks;
  ElementCell cell;
  cell.flank = flank;
  if (!flanks.FlankName.has(flank)) {
    cell.width = kSmallestNumberWidth + 2;
    return cell;
  }
  const int digits = static_cast<int>(std::to_string(flanks.FlankHigh[flank]).size());
  cell.numberWidth = std::max(kSmallestNumberWidth, digits);
  int widest = std::max(1, DisplayWidth(flanks.FlankName[flank], encoding));
  const SlotRange range = SlotsOf(flanks, flank);
  for (const ElementSlot e : Upward(range.low, range.high))
    widest = std::max(widest, DisplayWidth(design.elements.ElementLabel[e], encoding));
  cell.width = cell.numberWidth + 1 + widest;
  return cell;
}

// "Num", blanks to the number's width, and the Flank's name.
std::string CellHead(const ElementCell& cell, const FlankTable& flanks, Utf8Encoded encoding) {
  std::string head = "Num" + Blanks(cell.numberWidth - 3) + " ";
  if (flanks.FlankName.has(cell.flank)) head += flanks.FlankName[cell.flank];
  return ClipField(head, cell.width, encoding);
}

std::string CellText(const ElementCell& cell, const ElementTable& elements, ElementSlot slot) {
  if (slot == ElementSlot(0)) return "";
  const std::string number = std::to_string(elements.ElementNumber[slot]);
  return Blanks(cell.numberWidth - static_cast<int>(number.size())) + number + " " +
         elements.ElementLabel[slot];
}

// Rule and edit words, once width and cells of the element group are known; `head` is the group's
// heading, as wide as the group.
void Complete(Table4Layout& layout, const std::string& head) {
  std::string word;
  int width = 0;
  for (const ElementCell& cell : layout.cells) {
    word += " " + TextField(cell.width);
    width += cell.width + 1;
  }
  word += Blanks(layout.groupWidth + 1 - width);
  layout.row = JoinGroups(layout.leftHand, kFigureWord, word);
  layout.wordRow = JoinGroups(layout.leftHand, kFigureWord, " " + TextField(layout.groupWidth));
  layout.headingRows = {"", JoinGroups(layout.leftHand, kFigureHead, " " + head), "", ""};
  const std::string figureDashes(kFigureHead.size(), '-');
  const std::string groupDashes(static_cast<std::size_t>(layout.groupWidth) + 1, '-');
  layout.rulePattern = layout.leftHand ? "x" + groupDashes + "x" + figureDashes + "x"
                                       : "x" + figureDashes + "x" + groupDashes + "x";
}

Table4Layout BeginLayout(const Settings& settings) {
  Table4Layout layout;
  layout.leftHand = settings.LeftHand;
  layout.encoding = EncodingOf(settings);
  return layout;
}

void AddFigures(EditLine& line, const FigureTexts& figures) {
  for (const std::string& figure : figures) line.EditString(figure);
}

}  // namespace

Table4Layout LayOutTable4(const Analysis& analysis, const std::string& words) {
  const Design& design = analysis.design;
  Table4Layout layout = BeginLayout(analysis.settings);
  std::string head;
  int width = -1;  // no blank in front of the first cell
  for (Position position(1); position.number() <= design.ModelFlankCount; ++position) {
    layout.cells.push_back(MakeCell(design, design.maps.ModelFlank[position], layout.encoding));
    head +=
        (head.empty() ? "" : " ") + CellHead(layout.cells.back(), design.flanks, layout.encoding);
    width += layout.cells.back().width + 1;
  }
  const int figures = static_cast<int>(kFigureHead.size());
  const int across = DisplayWidth(words) - figures - 2;  // a separator and a blank
  layout.groupWidth = std::max({kSmallestGroupWidth, width, across});
  head += Blanks(layout.groupWidth - std::max(width, 0));
  Complete(layout, head);
  layout.headingRows[1] += kSequenceHead;
  return layout;
}

Table4Layout LayOutTable5(const Settings& settings, const std::string& words) {
  Table4Layout layout = BeginLayout(settings);
  layout.groupWidth = std::max(kSmallestGroupWidth, DisplayWidth(words));
  Complete(layout, Blanks(layout.groupWidth));
  return layout;
}

std::string ResponseLine(const Table4Layout& layout, const ElementTable& elements,
                         const FigureTexts& figures, std::span<const ElementSlot> ofRow) {
  EditLine line(layout.row, layout.encoding);
  if (!layout.leftHand) AddFigures(line, figures);
  for (std::size_t position = 0; position < layout.cells.size(); ++position)
    line.EditString(CellText(layout.cells[position], elements, ofRow[position]));
  if (layout.leftHand) AddFigures(line, figures);
  return line.Finish();
}

std::string WordLine(const Table4Layout& layout, const FigureTexts& figures,
                     const std::string& words) {
  EditLine line(layout.wordRow, layout.encoding);
  if (layout.leftHand) line.EditString(words);
  AddFigures(line, figures);
  if (!layout.leftHand) line.EditString(words);
  return line.Finish();
}

std::string LineAcross(const Table4Layout& layout, const std::string& words) {
  const int inner = static_cast<int>(layout.rulePattern.size()) - 2;
  const int before = std::max(0, (inner - DisplayWidth(words)) / 2);
  return kBoxColumn + ClipField(Blanks(before) + words, inner) + kBoxColumn;
}

}  // namespace flanks
