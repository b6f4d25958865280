#include "output/graph_file.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/single.h"
#include "estimate/kernel.h"
#include "output/row_writer.h"
#include "output/webpage_table.h"
#include "report/format/fixed_field.h"
#include "run/console.h"
#include "stats/scale_landmarks.h"

namespace flanks {
namespace {

constexpr double kBeyond = 1.0;         // logits, at both ends
constexpr double kStepsAcross = 100.0;  // at most
constexpr double kNiceSteps[] = {1.0, 3.0, 5.0, 10.0};
constexpr double kAlike = 1.0 + 1e-9;  // what rounding may make of one
constexpr int kMostDecimals = 9;
constexpr int kProbabilityDecimals = 4;
constexpr double kLargestExpected = kLargestCategory;
constexpr int kHeadingColumns = 10;

// The scales that have curves, and the categories, as they are scored, of all of them.
struct GraphScales {
  std::vector<ScaleRow> rows;
  int lowest = 0, highest = 0;
};

GraphScales ScalesOf(const ScaleTables& scales) {
  GraphScales graph;
  for (const ScaleRow scale : Upward(scales.scaleType)) {
    const int top = scales.ScaleTopCategory[scale];
    if (top < 1 || scales.scaleType[scale] == ScaleType::missing) continue;
    const int lowest = scales.lowestCategory[scale];
    graph.lowest = graph.rows.empty() ? lowest : std::min(graph.lowest, lowest);
    graph.highest = std::max(graph.highest, lowest + top);
    graph.rows.push_back(scale);
  }
  return graph;
}

struct GraphWords {
  std::string_view scale, measure, expected, category, probability;
};
constexpr GraphWords kWords = {"Scale", "Measure", "Expected", "ExpCat", "Prob:"};
constexpr GraphWords kExcelWords = {"Rating Scale", "Rasch Measure", "Expected Score",
                                    "Mean Category", "Probability of category "};

std::vector<std::string> HeadingsOf(const GraphWords& words, const GraphScales& scales) {
  std::vector<std::string> headings;
  for (const std::string_view word : {words.scale, words.measure, words.expected, words.category})
    headings.emplace_back(word);
  for (int k = scales.lowest; k <= scales.highest; ++k)
    headings.push_back(std::string(words.probability) + std::to_string(k));
  return headings;
}

void WriteHeadings(const std::vector<std::string>& headings, const RowForm& form, RowWriter& rows) {
  rows.BeginRow();
  for (const std::string& heading : headings) {
    if (form.isFixed())
      rows.Made(RightAligned(heading, kHeadingColumns, form.encoded));
    else
      rows.Label(heading, kUnpadded);
  }
  rows.EndRow();
}

// All points of one scale.
class ScaleCurves {
 public:
  ScaleCurves(const Analysis& analysis, ScaleRow scale, const GraphAxis& axis)
      : scale_(KernelScaleOf(analysis.scales, scale, analysis.estimates.ExponentLimit)),
        stride_(static_cast<std::size_t>(axis.points)),
        expected_(stride_),
        // A Poisson scale is read beyond what is filled: zeros.
        probability_(stride_ * kProbabilityEntries) {
    std::vector<float> measures;
    const double size = std::abs(static_cast<double>(analysis.settings.Uscale));
    for (int point = 0; point < axis.points; ++point)
      measures.push_back(Single(axis.ValueOf(point) / size));
    CategoryProbabilities(scale_, measures,
                          {expected_.data(), nullptr, probability_.data(), stride_});
  }
  int top() const { return scale_.top; }
  // In ordered categories.
  double expected(int point) const {
    return std::min<double>(expected_[static_cast<std::size_t>(point)], kLargestExpected);
  }
  double probability(int point, int k) const {
    if (k < 0 || k > scale_.top) return 0.0;
    return probability_[static_cast<std::size_t>(k) * stride_ + static_cast<std::size_t>(point)];
  }

 private:
  KernelScale scale_;
  std::size_t stride_;
  std::vector<float> expected_, probability_;
};

void WriteScale(const Analysis& analysis, ScaleRow scale, const GraphScales& scales,
                const GraphAxis& axis, RowWriter& rows) {
  const Settings& settings = analysis.settings;
  const ScaleCurves curves(analysis, scale, axis);
  const int lowest = analysis.scales.lowestCategory[scale];
  const double side = settings.Uscale < 0.0f ? -1.0 : 1.0;
  const int decimals = std::min(std::max(settings.Udecimals, axis.decimals), kMostDecimals);
  for (int point = 0; point < axis.points; ++point) {
    rows.BeginRow();
    rows.Whole(scale.number() + 1);
    rows.Decimals(side * axis.ValueOf(point) + settings.Umean, decimals);
    rows.Decimals(curves.expected(point) + lowest, kProbabilityDecimals);
    rows.Whole(RoundLong(curves.expected(point)) + lowest);
    for (int k = scales.lowest; k <= scales.highest; ++k)
      rows.Decimals(curves.probability(point, k - lowest), kProbabilityDecimals);
    rows.EndRow();
  }
}

void WriteRows(Run& run, const GraphScales& scales, RowWriter& rows) {
  const Analysis& analysis = run.analysis;
  const GraphRange range = GraphRangeOf(analysis.estimates);
  const GraphAxis axis = GraphAxisOf(range.GraphLow, range.GraphHigh, analysis.settings.Uscale);
  for (const ScaleRow scale : scales.rows) {
    if (run.console.YieldToWindow()) break;
    WriteScale(analysis, scale, scales, axis, rows);
  }
  rows.Flush();
}

}  // namespace

double NiceStep(double width) {
  const double power = std::pow(10.0, std::floor(std::log10(width)));
  for (const double nice : kNiceSteps)
    if (width <= nice * power * kAlike) return nice * power;
  return 10.0 * power;
}

GraphAxis GraphAxisOf(double low, double high, double uscale) {
  const double size = std::abs(uscale);
  const double width = size * (high - low + 2.0 * kBeyond);
  GraphAxis axis;
  axis.low = size * (low - kBeyond);
  axis.step = NiceStep(width / kStepsAcross);
  // The last is at the upper end or beyond.
  axis.points = static_cast<int>(std::ceil(width / axis.step / kAlike)) + 1;
  // One more than the step has: the axis begins anywhere.
  axis.decimals = 1 + std::max(0, -static_cast<int>(std::floor(std::log10(axis.step * kAlike))));
  return axis;
}

GraphRange GraphRangeOf(const Estimates& estimates) {
  bool any = false;
  double low = 0.0, high = 0.0;
  for (const ElementSlot slot : Upward(estimates.elements)) {
    if (!IsInPlay(estimates.elements[slot].ElementStatus)) continue;
    const double measure = estimates.elements[slot].ElementMeasure;
    low = any ? std::min(low, measure) : measure;
    high = any ? std::max(high, measure) : measure;
    any = true;
  }
  return high > low ? GraphRange{low, high} : GraphRange{low - 1.0, low + 1.0};
}

void WriteGraphTable(Run& run, OutputForm form, const TableOptions& options, Destination& out) {
  const RowForm rowForm = RowFormOf(form, options, run.analysis.settings);
  const GraphScales scales = ScalesOf(run.analysis.scales);
  RowWriter rows(rowForm, out);
  if (options.IncludeHeadings || form == OutputForm::rstat)
    WriteHeadings(HeadingsOf(form == OutputForm::excel ? kExcelWords : kWords, scales), rowForm,
                  rows);
  WriteRows(run, scales, rows);
}

void WriteGraphWebpage(Run& run, const TableOptions& options, Destination& out) {
  const GraphScales scales = ScalesOf(run.analysis.scales);
  std::string cells;
  for (const std::string& heading : HeadingsOf(kWords, scales))
    cells.append(kHeadRight).append(PageText(heading));
  out.Lines(WebpageHead(kGraphPage, run.analysis.settings, cells));
  RowWriter rows(RowFormOf(OutputForm::webpage, options, run.analysis.settings), out);
  WriteRows(run, scales, rows);
  out.Lines(WebpageEnd());
}

bool WriteGraphFileNamed(Run& run, const std::string& name, const TableOptions& options) {
  TableFile table;
  table.routine = "WriteGraphFile";
  table.prefix = "Graphfile";
  table.caption = "Graph output file";
  table.rTable.objectName = "GRFILE";
  table.write = [&run, &options](OutputForm form, Destination& out) {
    if (form == OutputForm::webpage) return WriteGraphWebpage(run, options, out);
    WriteGraphTable(run, form, options, out);
  };
  return WriteTableFile(run, name, table, options);
}

void WriteGraphFile(Run& run) {
  const Settings& settings = run.analysis.settings;
  if (settings.GraphFile.empty()) return;
  const std::string name = AbsoluteName(settings.GraphFile);
  run.console.ShowLine("Writing graph output file ... " + name);
  WriteGraphFileNamed(run, name, TableOptionsOf(settings));
}

}  // namespace flanks
