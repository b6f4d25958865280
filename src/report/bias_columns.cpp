#include "report/bias_columns.h"

#include <algorithm>
#include <string_view>

#include "base/held_single.h"
#include "report/format/box.h"
#include "report/format/clip_field.h"
#include "report/format/edit_word.h"
#include "report/format/fixed_field.h"
#include "report/table7_rows.h"

namespace flanks {
namespace {

constexpr int kSmallestNumberWidth = 3, kSmallestSequenceWidth = 2;
constexpr int kMeasureWidth = 6, kErrorWidth = 5;
constexpr int kStatisticDecimals = 2, kProbabilityDecimals = 4;
constexpr std::int16_t kUnmeasurable = 4;  // the status whose word a term without estimate has

// "|" stands for the column separator, "~" for the direction of the biases.
constexpr std::string_view kFirstHead =
    "|Observd  Expctd  Observd  Obs-Exp| Bias~  Model                    |Infit Outfit|";
constexpr std::string_view kSecondHead =
    "|  Score   Score    Count  Average|  Size   S.E.     t   d.f. Prob. | MnSq  MnSq |";
constexpr std::string_view kTermRow =
    "|#####.# #####.## #####.#   \\    \\| \\    \\ \\   \\ \\    \\\\    \\ \\   \\ |###.# ###.# "
    "|";
constexpr std::string_view kTextRow =
    "|#####.# #####.## #####.#         | \\                                          \\ |";
constexpr std::string_view kFootRow =
    "|#####.# #####.## #####.#   \\    \\| \\    \\ \\   \\ \\    \\             |###.# ###.# |";

std::string Blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

int DigitsOf(std::int64_t number) {
  return static_cast<int>(std::to_string(number).size());
}

std::string PadLeft(const std::string& text, int width) {
  return Blanks(width - static_cast<int>(text.size())) + text;
}

std::string LabelHead(const Analysis& analysis, const Table13Layout& layout) {
  std::string head = "Sq" + Blanks(layout.sequenceWidth - 2);
  for (const BiasCell& cell : layout.cells) head += " " + BiasCellHead(analysis, cell);
  return head;
}

std::string Label(const Analysis& analysis, const Table13Layout& layout, const BiasResults& results,
                  BiasTermRow term) {
  std::string label = PadLeft(std::to_string(term.number()), layout.sequenceWidth);
  std::vector<ElementSlot> elements;
  results.list.FillElements(term, elements);
  for (std::size_t which = 0; which < layout.cells.size(); ++which)
    label += " " + BiasCellText(analysis, layout.cells[which], elements[which]);
  return label;
}

void AppendScores(EditLine& line, const BiasFigures& figures) {
  line.EditCount(HeldSingle(figures.score));
  line.EditDouble(figures.expected);
  line.EditCount(HeldSingle(figures.count));
}

void AppendAverage(EditLine& line, const BiasFigures& figures) {
  line.EditString(FixedField(figures.residualAverage, kMeasureWidth, kStatisticDecimals));
}

void AppendTest(EditLine& line, const Settings& settings, const std::string& size,
                const BiasFigures& figures) {
  line.EditString(size);
  line.EditString(FixedField(figures.standardError, kErrorWidth, settings.Udecimals));
  line.EditString(FixedField(figures.t, kMeasureWidth, kStatisticDecimals));
}

}  // namespace

BiasCell BiasCellOf(const Analysis& analysis, FlankNo flank) {
  const FlankTable& flanks = analysis.design.flanks;
  const Utf8Encoded encoding = EncodingOf(analysis.settings);
  BiasCell cell;
  cell.flank = flank;
  cell.numberWidth = std::max(kSmallestNumberWidth, DigitsOf(flanks.FlankHigh[flank]));
  cell.labelWidth = std::max(1, DisplayWidth(flanks.FlankName[flank], encoding));
  const SlotRange range = SlotsOf(flanks, flank);
  for (const ElementSlot e : Upward(range.low, range.high))
    cell.labelWidth =
        std::max(cell.labelWidth, DisplayWidth(analysis.design.elements.ElementLabel[e], encoding));
  return cell;
}

std::string BiasCellHead(const Analysis& analysis, const BiasCell& cell) {
  const FlankTable& flanks = analysis.design.flanks;
  return "Num" + Blanks(cell.numberWidth - 3) + " " +
         ClipField(flanks.FlankName[cell.flank], cell.labelWidth, EncodingOf(analysis.settings)) +
         " measr" + (IsPositive(flanks, cell.flank) ? "+" : "-");
}

std::string BiasCellText(const Analysis& analysis, const BiasCell& cell, ElementSlot slot) {
  const ElementTable& elements = analysis.design.elements;
  const ElementState& state = analysis.estimates.elements[slot];
  const Settings& settings = analysis.settings;
  std::string number = PadLeft(std::to_string(elements.ElementNumber[slot]), cell.numberWidth);
  std::string measure = Blanks(kMeasureWidth);
  if (IsInPlay(state.ElementStatus) || IsExtreme(state.ElementStatus)) {
    const double user =
        settings.Umean + static_cast<double>(settings.Uscale) * state.ElementMeasure;
    measure = FixedField(user, kMeasureWidth, settings.Udecimals);
  } else {
    number.replace(0, 3, "---");
  }
  return number + " " +
         ClipField(elements.ElementLabel[slot], cell.labelWidth, EncodingOf(settings)) + " " +
         measure;
}

Table13Layout LayOutTable13(const Analysis& analysis, const BiasResults& results, int widest) {
  const Settings& settings = analysis.settings;
  Table13Layout layout;
  layout.label.leftHand = settings.LeftHand;
  layout.label.encoding = EncodingOf(settings);
  layout.sequenceWidth = std::max(kSmallestSequenceWidth, DigitsOf(results.terms.rows()));
  for (const Position position : results.interaction.positions)
    layout.cells.push_back(BiasCellOf(analysis, analysis.design.maps.ModelFlank[position]));
  const std::string head = LabelHead(analysis, layout);
  // Across the box: between its outer separators, behind a blank.
  const int figures = static_cast<int>(kSecondHead.size()) - 1;
  layout.label.width =
      std::max({kSmallestLabelWidth, DisplayWidth(head, layout.label.encoding), widest - figures});

  std::string firstHead(kFirstHead);
  firstHead[firstHead.find('~')] = settings.Bias > 0 ? '+' : '-';
  layout.headingRows = HeadingRowsWith(layout.label, firstHead, kSecondHead, head);
  layout.rulePattern = RulePatternWith(layout.label, kSecondHead);
  layout.termRow = RowWordWith(layout.label, kTermRow);
  layout.textRow = RowWordWith(layout.label, kTextRow);
  layout.footRow = RowWordWith(layout.label, kFootRow);
  return layout;
}

// Kept: "<" for the largest score and ">" for a score of 0, whatever the direction
// (docs/quirks.md).
std::string BiasSizeText(double userSize, BiasStanding standing, int decimals) {
  if (standing == BiasStanding::minimum || standing == BiasStanding::maximum)
    return (standing == BiasStanding::maximum ? "<" : ">") +
           FixedField(userSize, kMeasureWidth - 1, decimals);
  return FixedField(userSize, kMeasureWidth, decimals);
}

std::string TermLine(const Analysis& analysis, const Table13Layout& layout,
                     const BiasResults& results, BiasTermRow row) {
  const Settings& settings = analysis.settings;
  const BiasTerm& term = results.terms[row];
  const BiasFigures figures = FiguresOf(settings, term);
  const std::string label = Label(analysis, layout, results, row);
  const bool estimated = term.standing != BiasStanding::none;
  EditLine line = BeginRow(layout.label, estimated ? layout.termRow : layout.textRow, label);
  AppendScores(line, figures);
  if (!estimated) {
    line.EditString(StatusWord(kUnmeasurable));
    return EndRow(line, layout.label, label);
  }
  AppendAverage(line, figures);
  AppendTest(line, settings, BiasSizeText(figures.size, term.standing, settings.Udecimals),
             figures);
  line.EditString(FixedField(term.DegreesOfFreedom, kMeasureWidth, 0));
  line.EditString(FixedField(term.Probability, kErrorWidth, kProbabilityDecimals));
  line.EditDouble(figures.infitMeanSquare);
  line.EditDouble(figures.outfitMeanSquare);
  return EndRow(line, layout.label, label);
}

std::string BiasFootLine(const Settings& settings, const Table13Layout& layout,
                         const BiasFigures& figures, const std::string& words) {
  EditLine line = BeginRow(layout.label, layout.footRow, words);
  AppendScores(line, figures);
  AppendAverage(line, figures);
  AppendTest(line, settings, FixedField(figures.size, kMeasureWidth, settings.Udecimals), figures);
  line.EditDouble(figures.infitMeanSquare);
  line.EditDouble(figures.outfitMeanSquare);
  return EndRow(line, layout.label, words);
}

std::string BiasLineAcross(const Table13Layout& layout, const std::string& words) {
  const int inner = static_cast<int>(layout.rulePattern.size()) - 2;
  return kBoxColumn + ClipField(" " + words, inner, layout.label.encoding) + kBoxColumn;
}

}  // namespace flanks
