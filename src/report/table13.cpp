#include "report/table13.h"

#include <algorithm>
#include <cmath>

#include "base/single.h"
#include "base/utf8.h"
#include "report/bias_columns.h"
#include "report/format/join_number.h"
#include "report/format/key_sort.h"
#include "report/format/sort_key.h"
#include "report/mean_lines.h"
#include "report/separation_lines.h"
#include "report/table7_sort.h"
#include "run/messages.h"
#include "run/report_page.h"
#include "stats/bias_summary.h"

namespace flanks {
namespace {

constexpr std::string_view kDefaultOrder = "mN";

std::string NumberPiece(std::int32_t number) {
  return Swapl(MKLhex(number));
}

// Extreme terms sort apart from the others, at the end where their size would be.
char ClassDigit(const Settings& settings, BiasStanding standing, bool descending) {
  if (standing == BiasStanding::none) return '4';
  if (standing == BiasStanding::estimable) return '2';
  const bool turned = static_cast<double>(settings.Bias) * settings.Uscale < 0.0;
  const bool low = (standing == BiasStanding::minimum) != turned;
  return low != descending ? '1' : '3';
}

// As it is shown: in user units and by the direction of `Bias=`.
std::string ValuePiece(const Settings& settings, const BiasTerm& term, double value,
                       bool descending) {
  std::string piece(1, ClassDigit(settings, term.standing, descending));
  if (term.standing == BiasStanding::none) return piece + std::string(9, ' ');
  return piece + FloatKey(Single(descending ? -value : value));
}

// The labels from the last position to the first.
std::string LabelPiece(const Analysis& analysis, const BiasResults& results, BiasTermRow term,
                       bool descending) {
  std::vector<ElementSlot> elements;
  results.list.FillElements(term, elements);
  std::string piece;
  for (std::size_t which = elements.size(); which-- > 0;) {
    const ElementTable& table = analysis.design.elements;
    std::string label = table.ElementLabel[elements[which]];
    const int length = LongestLabel(analysis.design, table.ElementFlank[elements[which]]);
    label.resize(static_cast<std::size_t>(length), ' ');
    piece += label;
  }
  return descending ? Complement(piece) : piece;
}

std::string Piece(const Analysis& analysis, const BiasResults& results, BiasTermRow row,
                  char letter) {
  const Settings& settings = analysis.settings;
  const BiasTerm& term = results.terms[row];
  switch (letter) {
    case 'N':
      return NumberPiece(row.number());
    case 'n':
      return NumberPiece(-row.number());
    case 'A':
    case 'a':
      return LabelPiece(analysis, results, row, letter == 'a');
    case 'M':
    case 'F':
    case 'm':
    case 'f':
      return ValuePiece(settings, term, FiguresOf(settings, term).size,
                        letter == 'm' || letter == 'f');
    case 'T':
    case 'Z':
    case 't':
    case 'z':
      return ValuePiece(settings, term, FiguresOf(settings, term).t,
                        letter == 't' || letter == 'z');
    default:
      return {};
  }
}

std::vector<BiasTermRow> InOrder(Run& run, const BiasResults& results, const std::string& letters) {
  KeyArray keys(message::kTable13SortLength);
  for (const BiasTermRow term : Upward(results.terms))
    if (IsBiasShown(run.analysis.settings, results.terms[term]))
      keys.Add(BiasTermKey(run.analysis, results, term, letters));
  keys.Sort([&run] { return run.console.stopping(); });
  std::vector<BiasTermRow> ordered;
  for (const std::string& key : keys)
    ordered.push_back(BiasTermRow(CVLhex(Swapl(key.substr(key.size() - 8)))));
  return ordered;
}

// ---- The foot

BiasFigures FootFigures(const BiasSummary& summary, const MeanLine& line) {
  const auto figure = line.figure;
  const double count = summary.terms.Count;
  const auto of = [&](SummarySlot slot) {
    return figure(summary.measures.slots[static_cast<std::size_t>(slot)], count);
  };
  BiasFigures figures;
  figures.score = of(SummarySlot::score);
  figures.count = of(SummarySlot::count);
  figures.size = of(SummarySlot::measure);
  figures.standardError = of(SummarySlot::standardError);
  figures.infitMeanSquare = of(SummarySlot::infitMeanSquare);
  figures.outfitMeanSquare = of(SummarySlot::outfitMeanSquare);
  figures.expected = figure(summary.terms.slots[0], count);
  figures.residualAverage = figure(summary.terms.slots[1], count);
  figures.t = figure(summary.terms.slots[2], count);
  return figures;
}

void WriteMeans(Console& console, const Table13Layout& layout, const BiasSummary& summary) {
  for (const MeanLine& line : MeanLines(summary.terms.Count, layout.label.width))
    WriteReportLine(
        console, BiasFootLine(console.settings(), layout, FootFigures(summary, line), line.words));
}

// The errors are those of the model, whatever `Standard errors=` says of measures.
std::vector<std::string> StatisticLines(const Settings& settings, const BiasSets& sets,
                                        float tinyValue) {
  const MeasureSummary& without = sets.without.measures;
  if (!sets.hasExtremes()) return SeparationLines(settings, without, tinyValue, "Model");
  std::vector<std::string> lines =
      SeparationLines(settings, sets.with.measures, tinyValue, "   With extremes, Model");
  const std::vector<std::string> rest =
      SeparationLines(settings, without, tinyValue, "Without extremes, Model");
  lines.insert(lines.end(), rest.begin(), rest.end());
  return lines;
}

// What all orders of an interaction share.
struct Foot {
  BiasSets sets;
  std::vector<std::string> statistics;
};

void WriteFoot(Console& console, const Table13Layout& layout, const Foot& foot) {
  MidRule(console);
  WriteMeans(console, layout, foot.sets.without);
  if (foot.sets.hasExtremes()) WriteMeans(console, layout, foot.sets.with);
  for (const std::string& line : foot.statistics)
    WriteReportLine(console, BiasLineAcross(layout, line));
  BottomRule(console);
  if (const auto test = ZeroChiSquare(foot.sets.without))
    WriteReportLine(console, "Fixed (all = 0)" + ChiSquareText(*test));
}

void WriteRows(Run& run, const Table13Layout& layout, const BiasResults& results,
               const std::string& letters) {
  for (const BiasTermRow term : InOrder(run, results, letters)) {
    if (run.console.YieldToWindow()) return;
    Juxtapose(run.console);
    WriteReportLine(run.console, TermLine(run.analysis, layout, results, term));
  }
}

int WidestOf(const std::vector<std::string>& lines) {
  std::size_t widest = 0;
  for (const std::string& line : lines) widest = std::max(widest, line.size());
  return static_cast<int>(widest);
}

}  // namespace

std::vector<std::string> BiasOrders(std::string_view arrange) {
  std::vector<std::string> orders;
  for (const ArrangeItem& item : ReadArrange(arrange))
    if (!item.numbered || item.flank == 0) orders.push_back(item.letters);
  if (orders.empty()) orders.emplace_back(kDefaultOrder);
  return orders;
}

bool IsBiasShown(const Settings& settings, const BiasTerm& term) {
  if (settings.Zscore[0] == 0.0f && settings.Zscore[1] == 0.0f) return true;
  const BiasFigures figures = FiguresOf(settings, term);
  return std::abs(figures.size) >= settings.Zscore[0] && std::abs(figures.t) >= settings.Zscore[1];
}

std::string BiasTermKey(const Analysis& analysis, const BiasResults& results, BiasTermRow term,
                        std::string_view letters) {
  std::string key;
  for (const char letter : letters) key += Piece(analysis, results, term, letter);
  return key + NumberPiece(term.number());
}

void WriteTable13(Run& run, const BiasResults& results) {
  Console& console = run.console;
  SelectTable(console, 13);
  if (console.report().switchedOff) return;
  const Settings& settings = run.analysis.settings;
  Foot foot{SumUpBias(settings, results), {}};
  foot.statistics = StatisticLines(settings, foot.sets, run.analysis.estimates.TinyValue);
  const Table13Layout layout = LayOutTable13(run.analysis, results, WidestOf(foot.statistics));
  int subtable = 0;
  for (const std::string& letters : BiasOrders(settings.Arrange)) {
    if (console.YieldToWindow()) return;
    TableHeading(console, "Table 13." + std::to_string(results.interaction.number) + "." +
                              std::to_string(++subtable) +
                              "  Bias/Interaction Report (arranged by " + letters + ")");
    BeginBox(console, layout.headingRows, layout.rulePattern);
    WriteRows(run, layout, results, letters);
    WriteFoot(console, layout, foot);
  }
}

}  // namespace flanks
