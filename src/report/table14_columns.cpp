#include "report/table14_columns.h"

#include <algorithm>
#include <string_view>

#include "report/format/box.h"
#include "report/format/clip_field.h"
#include "report/format/edit_word.h"
#include "report/format/fixed_field.h"
#include "stats/bias_measures.h"

namespace flanks {
namespace {

constexpr int kSizeWidth = 6, kErrorWidth = 5;
constexpr int kStatisticDecimals = 2, kProbabilityDecimals = 4;

constexpr std::string_view kTargetHead = "Target";
// The blank in front puts "Obs-Exp" above "Average" and "Context" above its labels.
constexpr std::string_view kMeasureFirstHead = "  Target     Obs-Exp ";
constexpr std::string_view kContextHead = "Context";
constexpr std::string_view kMeasureSecondHead = " Measr  S.E. Average ";
constexpr std::string_view kMeasureWord = " \\    \\ \\   \\ \\    \\ ";
constexpr std::string_view kContrastFirstHead = "         Joint    Rasch-Welch   ";
constexpr std::string_view kContrastSecondHead = "Contrast  S.E.   t   d.f. Prob. ";
constexpr std::string_view kContrastWord = " \\    \\ \\   \\\\    \\\\    \\ \\   \\ ";

std::string Blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

std::string TextField(int width) {
  return "\\" + Blanks(width - 2) + "\\";
}

// The five groups of a line with their separators.
struct Groups {
  std::string firstTarget, firstMeasure, secondTarget, secondMeasure, contrast;
  std::string Join() const {
    std::string line(1, kBoxColumn);
    for (const std::string* group :
         {&firstTarget, &firstMeasure, &secondTarget, &secondMeasure, &contrast})
      line += *group + kBoxColumn;
    return line;
  }
};

std::string CellHead(const Table14Layout& layout, const FlankTable& flanks, const BiasCell& cell) {
  return "Num" + Blanks(cell.numberWidth - 3) + " " +
         ClipField(flanks.FlankName[cell.flank], cell.labelWidth, layout.encoding);
}

std::string CellText(const Table14Layout& layout, const ElementTable& elements,
                     const BiasCell& cell, ElementSlot slot) {
  const std::string number = std::to_string(elements.ElementNumber[slot]);
  return Blanks(cell.numberWidth - static_cast<int>(number.size())) + number + " " +
         ClipField(elements.ElementLabel[slot], cell.labelWidth, layout.encoding);
}

std::string ContextHead(const Table14Layout& layout, const FlankTable& flanks) {
  std::string head;
  for (std::size_t which = 0; which < layout.cells.size(); ++which)
    if (which != layout.target)
      head += (head.empty() ? "" : " ") + CellHead(layout, flanks, layout.cells[which]);
  return head;
}

std::string ContextText(const Table14Layout& layout, const ElementTable& elements,
                        const BiasResults& results, BiasTermRow term) {
  std::string text;
  for (std::size_t which = 0; which < layout.cells.size(); ++which)
    if (which != layout.target)
      text += (text.empty() ? "" : " ") +
              CellText(layout, elements, layout.cells[which], results.list.element(term, which));
  return text;
}

void FillHeads(const FlankTable& flanks, Table14Layout& layout) {
  const BiasCell& target = layout.cells[layout.target];
  const std::string name =
      std::string(kTargetHead) + (IsPositive(flanks, target.flank) ? "+" : "-");
  const std::string firstHead = ClipField(name, layout.targetWidth + 1, layout.encoding);
  const std::string secondHead =
      " " + ClipField(CellHead(layout, flanks, target), layout.targetWidth, layout.encoding);
  const std::string firstMeasure(kMeasureFirstHead), secondMeasure(kMeasureSecondHead);
  const Groups first{firstHead, firstMeasure, firstHead,
                     firstMeasure + ClipField(kContextHead, layout.contextWidth),
                     std::string(kContrastFirstHead)};
  const std::string context =
      ClipField(ContextHead(layout, flanks), layout.contextWidth, layout.encoding);
  const Groups second{secondHead, secondMeasure, secondHead, secondMeasure + context,
                      std::string(kContrastSecondHead)};
  layout.headingRows = {"", first.Join(), second.Join(), ""};
}

void FillRow(Table14Layout& layout) {
  const std::string label = " " + TextField(layout.targetWidth);
  const std::string measure(kMeasureWord);
  const Groups word{label, measure, label, measure + TextField(layout.contextWidth),
                    std::string(kContrastWord)};
  layout.row = word.Join();
  // Fields are as wide as they are shown, so the word shows where the separators stand.
  layout.rulePattern = RulePattern(layout.row);
}

void AppendTarget(EditLine& line, const Analysis& analysis, const Table14Layout& layout,
                  const BiasResults& results, BiasTermRow row) {
  const Settings& settings = analysis.settings;
  const ElementSlot slot = results.list.element(row, layout.target);
  const BiasTerm& term = results.terms[row];
  const BiasMeasure measure =
      MeasureWithBias(settings, analysis.design, analysis.estimates, slot, term);
  line.EditString(CellText(layout, analysis.design.elements, layout.cells[layout.target], slot));
  line.EditString(BiasSizeText(measure.absolute, term.standing, settings.Udecimals));
  line.EditString(FixedField(measure.standardError, kErrorWidth, settings.Udecimals));
  line.EditString(FixedField(term.ResidualAverage(), kSizeWidth, kStatisticDecimals));
}

// Without a test the columns of t are blank.
void AppendContrast(EditLine& line, const Settings& settings, const BiasContrast& contrast) {
  const PairFigures figures = FiguresOf(settings, contrast);
  line.EditString(FixedField(figures.size, kSizeWidth, settings.Udecimals));
  line.EditString(FixedField(figures.standardError, kErrorWidth, settings.Udecimals));
  if (!contrast.tested) {
    line.EditString("").EditString("").EditString("");
    return;
  }
  line.EditString(FixedField(figures.t, kSizeWidth, kStatisticDecimals));
  line.EditString(FixedField(contrast.DegreesOfFreedom, kSizeWidth, 0));
  line.EditString(FixedField(contrast.Probability, kErrorWidth, kProbabilityDecimals));
}

}  // namespace

Table14Layout LayOutTable14(const Analysis& analysis, const BiasResults& results,
                            std::size_t target) {
  const FlankTable& flanks = analysis.design.flanks;
  Table14Layout layout;
  layout.target = target;
  layout.encoding = EncodingOf(analysis.settings);
  for (const Position position : results.interaction.positions)
    layout.cells.push_back(BiasCellOf(analysis, analysis.design.maps.ModelFlank[position]));
  const auto widthOf = [&](const std::string& head) { return DisplayWidth(head, layout.encoding); };
  layout.targetWidth = std::max(static_cast<int>(kTargetHead.size()),  // the sign in the blank
                                widthOf(CellHead(layout, flanks, layout.cells[target])));
  layout.contextWidth =
      std::max(static_cast<int>(kContextHead.size()), widthOf(ContextHead(layout, flanks)));
  FillHeads(flanks, layout);
  FillRow(layout);
  return layout;
}

std::string PairLine(const Analysis& analysis, const Table14Layout& layout,
                     const BiasResults& results, BiasPair pair) {
  EditLine line(layout.row, layout.encoding);
  AppendTarget(line, analysis, layout, results, pair.first);
  AppendTarget(line, analysis, layout, results, pair.second);
  line.EditString(ContextText(layout, analysis.design.elements, results, pair.first));
  AppendContrast(line, analysis.settings,
                 ContrastOf(results.terms[pair.first], results.terms[pair.second]));
  return line.Finish();
}

}  // namespace flanks
