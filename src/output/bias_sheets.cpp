#include "output/bias_sheets.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/text.h"
#include "stats/bias_measures.h"
#include "stats/bias_pairing.h"

namespace flanks {
namespace {

constexpr int kStatisticDecimals = 2;
// Each has three lines then, and a chart takes only so many.
constexpr std::size_t kElementsWithErrors = kChartSeries / 3;

// A point of a plot: none is a gap in the line; S.E. where it has one.
struct Point {
  std::optional<double> value;
  std::optional<double> error;
};

// What a sheet has of a term or pair; the points are one for each of its sheets.
struct PlotRow {
  ElementSlot element;  // of the target: whose series it is
  std::string label;
  std::vector<Point> points;
};

// The points of one element of the target, one behind the other.
struct ElementPoints {
  ElementSlot element;
  std::size_t firstRow = 0;
  std::vector<Point> points;
};

// "Raters x Criteria".
std::string NameOf(const Analysis& analysis, const BiasInteraction& interaction) {
  std::string name;
  for (const Position position : interaction.positions) {
    const FlankNo flank = analysis.design.maps.ModelFlank[position];
    name += (name.empty() ? "" : " x ") + analysis.design.flanks.FlankName[flank];
  }
  return name;
}

std::string ElementName(const Analysis& analysis, ElementSlot slot) {
  const ElementTable& elements = analysis.design.elements;
  return std::string(
      Trim(std::to_string(elements.ElementNumber[slot]) + " " + elements.ElementLabel[slot]));
}

// "2 Lindqvist x 4 Pronunciation", the target's element in front.
class TermLabels {
 public:
  TermLabels(const Analysis& analysis, const BiasResults& results, std::size_t target)
      : analysis_(analysis), results_(results), target_(target) {}

  ElementSlot ElementOf(BiasTermRow term) const { return results_.list.element(term, target_); }
  std::string NameOf(BiasTermRow term) const { return ElementName(analysis_, ElementOf(term)); }
  std::string ContextOf(BiasTermRow term) const {
    std::string text;
    for (std::size_t which = 0; which < results_.list.positions(); ++which)
      if (which != target_)
        text += " x " + ElementName(analysis_, results_.list.element(term, which));
    return text;
  }

 private:
  const Analysis& analysis_;
  const BiasResults& results_;
  std::size_t target_;
};

// A term in its place: element after element of the target, context after context.
struct PlacedTerm {
  BiasTermRow term;
  std::size_t context = 0, place = 0;  // of the pairing
};

std::vector<PlacedTerm> InOrderOfElements(const BiasPairing& pairing, const TermLabels& labels) {
  std::vector<PlacedTerm> placed;
  for (std::size_t context = 0; context < pairing.contexts(); ++context)
    for (std::size_t place = 0; place < pairing.context(context).size(); ++place)
      placed.push_back({pairing.context(context)[place], context, place});
  std::stable_sort(placed.begin(), placed.end(), [&](const PlacedTerm& a, const PlacedTerm& b) {
    return labels.ElementOf(a.term) < labels.ElementOf(b.term);
  });
  return placed;
}

// The first pairs, in the order of their first terms; one more than are plotted shows that there
// are more.
std::vector<BiasPair> FirstPairs(const BiasPairing& pairing,
                                 const std::vector<PlacedTerm>& placed) {
  std::vector<BiasPair> pairs;
  for (const PlacedTerm& first : placed) {
    const std::span<const BiasTermRow> terms = pairing.context(first.context);
    for (std::size_t second = first.place + 1; second < terms.size(); ++second) {
      pairs.push_back({first.term, terms[second]});
      if (pairs.size() > kChartRows) return pairs;
    }
  }
  return pairs;
}

enum class Shows : std::uint8_t { measures, statistics };

struct SheetKind {
  std::string_view name, words;
  Shows shows;
};

// In the order of the points of TermRow and of PairRow.
constexpr SheetKind kTermSheets[] = {{"AM", "Absolute Measure", Shows::measures},
                                     {"RM", "Relative-to-overall Measure", Shows::measures},
                                     {"TV", "t-value relative-to-overall", Shows::statistics},
                                     {"AO", "Average Observation", Shows::statistics}};
constexpr SheetKind kPairSheets[] = {{"PM", "Pairwise Relative Measure", Shows::measures},
                                     {"PT", "Pairwise t-statistic", Shows::statistics}};

PlotRow TermRow(const Analysis& analysis, const BiasResults& results, const TermLabels& labels,
                BiasTermRow row) {
  const BiasTerm& term = results.terms[row];
  const ElementSlot element = labels.ElementOf(row);
  const BiasMeasure measure =
      MeasureWithBias(analysis.settings, analysis.design, analysis.estimates, element, term);
  const double count = term.Count;
  return {element,
          labels.NameOf(row) + labels.ContextOf(row),
          {{measure.absolute, measure.standardError},
           {measure.relative, measure.standardError},
           {measure.t, std::nullopt},
           {count > 0.0 ? term.RawScore / count : 0.0, std::nullopt}}};
}

PlotRow PairRow(const Analysis& analysis, const BiasResults& results, const TermLabels& labels,
                const BiasPair& pair) {
  const BiasContrast contrast = ContrastOf(results.terms[pair.first], results.terms[pair.second]);
  const PairFigures figures = FiguresOf(analysis.settings, contrast);
  const Point t = contrast.tested ? Point{figures.t, std::nullopt} : Point();
  return {
      labels.ElementOf(pair.first),
      labels.NameOf(pair.first) + " - " + labels.NameOf(pair.second) + labels.ContextOf(pair.first),
      {{figures.size, figures.standardError}, t}};
}

// The rows of as many items as a plot takes.
template <class Item, class MakeRow>
std::vector<PlotRow> RowsOf(const std::vector<Item>& items, const MakeRow& makeRow, bool& pruned) {
  const std::size_t count = std::min(items.size(), kChartRows);
  pruned = pruned || count < items.size();
  std::vector<PlotRow> rows;
  for (std::size_t i = 0; i < count; ++i) rows.push_back(makeRow(items[i]));
  return rows;
}

// A column of the sheet with values in the rows of the points alone.
ChartSeries SeriesOf(const std::string& name, SeriesRole role, const ElementPoints& of,
                     const std::function<std::optional<double>(const Point&)>& value) {
  ChartSeries series{name, {}, role};
  series.values.resize(of.firstRow);
  for (const Point& point : of.points) series.values.push_back(value(point));
  return series;
}

void AppendSeries(const std::string& name, const ElementPoints& of, bool withErrors,
                  ChartSheet& sheet) {
  const auto append = [&](const std::string& end, SeriesRole role, auto value) {
    sheet.series.push_back(SeriesOf(name + end, role, of, value));
  };
  append("", SeriesRole::main, [](const Point& point) { return point.value; });
  if (!withErrors) return;
  const auto shifted = [](const Point& point, double sign) {
    std::optional<double> value = point.value;
    if (value && point.error) *value += sign * *point.error;
    return point.error ? value : std::nullopt;
  };
  append(" (+)", SeriesRole::errorLine, [&](const Point& point) { return shifted(point, 1.0); });
  append(" (-)", SeriesRole::errorLine, [&](const Point& point) { return shifted(point, -1.0); });
}

std::vector<ElementPoints> PointsOf(const std::vector<PlotRow>& rows, std::size_t sheet) {
  std::vector<ElementPoints> elements;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (elements.empty() || elements.back().element != rows[row].element)
      elements.push_back({rows[row].element, row, {}});
    elements.back().points.push_back(rows[row].points[sheet]);
  }
  return elements;
}

ChartSheet SheetOf(const Analysis& analysis, const std::string& interaction, const SheetKind& kind,
                   const std::vector<PlotRow>& rows, const std::vector<ElementPoints>& elements) {
  const bool isMeasures = kind.shows == Shows::measures;
  const bool withErrors = isMeasures && elements.size() <= kElementsWithErrors;
  ChartSheet sheet;
  sheet.name = kind.name;
  sheet.title = "Bias/Interaction: " + interaction;
  sheet.categoryAxis = interaction;
  sheet.valueAxis = kind.words;
  sheet.decimals = isMeasures ? analysis.settings.Udecimals : kStatisticDecimals;
  for (const PlotRow& row : rows) sheet.categories.push_back(row.label);
  for (const ElementPoints& of : elements)
    AppendSeries(ElementName(analysis, of.element) + ": " + sheet.valueAxis, of, withErrors, sheet);
  return sheet;
}

void AddSheets(const Analysis& analysis, const std::string& interaction,
               std::span<const SheetKind> kinds, const std::vector<PlotRow>& rows,
               std::vector<ChartSheet>& sheets) {
  for (std::size_t i = 0; i < kinds.size(); ++i)
    sheets.push_back(SheetOf(analysis, interaction, kinds[i], rows, PointsOf(rows, i)));
}

}  // namespace

BiasPlots MakeBiasPlots(const Analysis& analysis, const BiasResults& results, std::size_t target,
                        BiasPlotChoice choice) {
  const BiasPairing pairing(results, target);
  const TermLabels labels(analysis, results, target);
  const std::vector<PlacedTerm> placed = InOrderOfElements(pairing, labels);
  const std::string interaction = NameOf(analysis, results.interaction);
  BiasPlots plots;
  if (choice.terms) {
    const auto row = [&](const PlacedTerm& of) {
      return TermRow(analysis, results, labels, of.term);
    };
    AddSheets(analysis, interaction, kTermSheets, RowsOf(placed, row, plots.pruned), plots.sheets);
  }
  if (choice.pairs) {
    const auto row = [&](const BiasPair& of) { return PairRow(analysis, results, labels, of); };
    AddSheets(analysis, interaction, kPairSheets,
              RowsOf(FirstPairs(pairing, placed), row, plots.pruned), plots.sheets);
  }
  return plots;
}

}  // namespace flanks
