#include "output/bias_plots.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <span>

#include "base/text.h"
#include "output/destination.h"
#include "output/hand_offs.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/messages.h"
#include "run/report_page.h"
#include "spec/file_names.h"
#include "stats/bias_measures.h"
#include "stats/bias_pairing.h"

namespace flanks {
namespace {

constexpr std::size_t kTermFlag = 12, kPairFlag = 13;  // places of `Tables=`, from 0 on
constexpr int kStatisticDecimals = 2;
// Each has three lines then, and a chart takes only so many.
constexpr std::size_t kElementsWithErrors = kChartSeries / 3;

// A point of a plot: none is a gap in the line; S.E. where it has one.
struct Point {
  std::optional<double> value;
  std::optional<double> error;
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

// What the sheets of one kind of point share.
struct Frame {
  std::string title, categoryAxis;
  std::vector<std::string> labels;
  std::vector<ElementSlot> elements;  // by row: who has the point; ascending
};

struct SheetKind {
  std::string name, words;
  int decimals = kStatisticDecimals;
  bool withErrors = false;
};

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

ChartSheet SheetOf(const Analysis& analysis, const Frame& frame, const SheetKind& kind,
                   const std::function<Point(std::size_t)>& pointOfRow) {
  ChartSheet sheet;
  sheet.name = kind.name;
  sheet.title = frame.title;
  sheet.categoryAxis = frame.categoryAxis;
  sheet.valueAxis = kind.words;
  sheet.categories = frame.labels;
  sheet.decimals = kind.decimals;
  std::vector<ElementPoints> elements;
  for (std::size_t row = 0; row < frame.elements.size(); ++row) {
    if (elements.empty() || elements.back().element != frame.elements[row])
      elements.push_back({frame.elements[row], row, {}});
    elements.back().points.push_back(pointOfRow(row));
  }
  const bool withErrors = kind.withErrors && elements.size() <= kElementsWithErrors;
  for (const ElementPoints& of : elements)
    AppendSeries(ElementName(analysis, of.element) + ": " + kind.words, of, withErrors, sheet);
  return sheet;
}

void AddTermSheets(const Analysis& analysis, const BiasResults& results, const TermLabels& labels,
                   std::vector<PlacedTerm> placed, Frame frame, BiasPlots& plots) {
  if (placed.size() > kChartRows) {
    plots.pruned = true;
    placed.resize(kChartRows);
  }
  std::vector<BiasMeasure> measures;
  for (const PlacedTerm& row : placed) {
    frame.labels.push_back(labels.NameOf(row.term) + labels.ContextOf(row.term));
    frame.elements.push_back(labels.ElementOf(row.term));
    measures.push_back(MeasureWithBias(analysis.settings, analysis.design, analysis.estimates,
                                       frame.elements.back(), results.terms[row.term]));
  }
  const int decimals = analysis.settings.Udecimals;
  const auto add = [&](const SheetKind& kind, auto point) {
    plots.sheets.push_back(SheetOf(analysis, frame, kind, point));
  };
  add({"AM", "Absolute Measure", decimals, true}, [&](std::size_t row) {
    return Point{measures[row].absolute, measures[row].standardError};
  });
  add({"RM", "Relative-to-overall Measure", decimals, true}, [&](std::size_t row) {
    return Point{measures[row].relative, measures[row].standardError};
  });
  add({"TV", "t-value relative-to-overall"}, [&](std::size_t row) {
    return Point{measures[row].t, std::nullopt};
  });
  add({"AO", "Average Observation"}, [&](std::size_t row) {
    const BiasTerm& term = results.terms[placed[row].term];
    const double count = term.Count;
    return Point{count > 0.0 ? term.RawScore / count : 0.0, std::nullopt};
  });
}

void AddPairSheets(const Analysis& analysis, const BiasResults& results, const TermLabels& labels,
                   std::vector<BiasPair> pairs, Frame frame, BiasPlots& plots) {
  if (pairs.size() > kChartRows) {
    plots.pruned = true;
    pairs.resize(kChartRows);
  }
  std::vector<BiasContrast> contrasts;
  for (const BiasPair& pair : pairs) {
    frame.labels.push_back(labels.NameOf(pair.first) + " - " + labels.NameOf(pair.second) +
                           labels.ContextOf(pair.first));
    frame.elements.push_back(labels.ElementOf(pair.first));
    contrasts.push_back(ContrastOf(results.terms[pair.first], results.terms[pair.second]));
  }
  const Settings& settings = analysis.settings;
  plots.sheets.push_back(SheetOf(analysis, frame,
                                 {"PM", "Pairwise Relative Measure", settings.Udecimals, true},
                                 [&](std::size_t row) {
                                   const PairFigures figures = FiguresOf(settings, contrasts[row]);
                                   return Point{figures.size, figures.standardError};
                                 }));
  plots.sheets.push_back(
      SheetOf(analysis, frame, {"PT", "Pairwise t-statistic"}, [&](std::size_t row) {
        if (!contrasts[row].tested) return Point{};
        return Point{FiguresOf(settings, contrasts[row]).t, std::nullopt};
      }));
}

bool IsX(const std::string& flags, std::size_t place) {
  return place < flags.size() && (flags[place] == 'X' || flags[place] == 'x');
}

std::string WithoutEnd(const std::string& name, std::string_view end) {
  const bool has = UpperCase(name).ends_with(end);
  return has ? name.substr(0, name.size() - end.size()) : name;
}

// Whether something that is no workbook stands under the name: somebody's file, not ours.
bool IsOfAnotherKind(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  char first[2] = {};
  if (!file.is_open() || !file.read(first, sizeof first)) return false;  // none, or empty
  return first[0] != 'P' || first[1] != 'K';
}

// Why the file of this name is not to be replaced; empty when it may be.
std::string ReasonToKeep(const Settings& settings, const std::string& name) {
  const bool holdsData =
      settings.dataSource == DataSource::file &&
      SameFile(name, FindFileToRead(settings.dataFile, settings.specificationFile));
  if (holdsData) return "the data of this run stand in it";
  return IsOfAnotherKind(name) ? "it is no workbook, and is left alone" : "";
}

}  // namespace

BiasPlotChoice BiasPlotsAsked(const Settings& settings) {
  const std::string& flags = settings.Tables;
  const bool areFlags = !flags.empty() && (flags[0] == '0' || flags[0] == '1');
  return {areFlags && IsX(flags, kTermFlag), areFlags && IsX(flags, kPairFlag)};
}

BiasPlots MakeBiasPlots(const Analysis& analysis, const BiasResults& results, std::size_t target,
                        BiasPlotChoice choice) {
  const BiasPairing pairing(results, target);
  const TermLabels labels(analysis, results, target);
  const std::vector<PlacedTerm> placed = InOrderOfElements(pairing, labels);
  const std::string name = NameOf(analysis, results.interaction);
  const Frame frame{"Bias/Interaction: " + name, name, {}, {}};
  BiasPlots plots;
  if (choice.terms) AddTermSheets(analysis, results, labels, placed, frame, plots);
  if (choice.pairs)
    AddPairSheets(analysis, results, labels, FirstPairs(pairing, placed), frame, plots);
  return plots;
}

std::string BiasPlotName(const Analysis& analysis, const BiasInteraction& interaction,
                         std::size_t target) {
  const Column<Position, FlankNo>& flanks = analysis.design.maps.ModelFlank;
  const FlankNo flank = flanks[interaction.positions[target]];
  std::size_t occurrence = 1;
  for (std::size_t which = 0; which < target; ++which)
    if (flanks[interaction.positions[which]] == flank) ++occurrence;
  return WithoutEnd(WithoutEnd(analysis.settings.OutputFile, ".TXT"), ".OUT") + ".bias" +
         std::to_string(interaction.number) + "." + std::to_string(flank.number()) +
         (occurrence > 1 ? "-" + std::to_string(occurrence) : "") + ".xlsx";
}

void WriteBiasPlots(Run& run, const BiasResults& results, bool& warned) {
  const BiasPlotChoice choice = BiasPlotsAsked(run.analysis.settings);
  if (!choice.any()) return;
  SelectTable(run.console, choice.terms ? 13 : 14);
  for (std::size_t target = 0; target < results.interaction.positions.size(); ++target) {
    if (run.console.YieldToWindow()) return;
    const BiasPlots plots = MakeBiasPlots(run.analysis, results, target, choice);
    if (plots.pruned && !warned) run.console.WarnLine(message::kPlotsPruned);
    warned = warned || plots.pruned;
    const std::string name = BiasPlotName(run.analysis, results.interaction, target);
    const std::string reason = ReasonToKeep(run.analysis.settings, name);
    if (!reason.empty()) {
      TellOpenFailure(run, name, reason);
    } else if (WriteChartWorkbook(run, name, plots.sheets)) {
      run.console.ShowLine("Bias/Interaction plots: " + name);
    }
  }
}

}  // namespace flanks
