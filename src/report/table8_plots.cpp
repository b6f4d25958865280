#include "report/table8_plots.h"

#include <algorithm>
#include <cstddef>
#include <functional>

#include "base/single.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kPlotRows = 21;             // from 1 to 0, or from the highest score to the lowest
constexpr double kBeyondLandmarks = 1.0;  // logits
constexpr std::string_view kProbabilityAxis = "1    Probability    0";
static_assert(kProbabilityAxis.size() == kPlotRows);

using PlotRows = std::vector<std::string>;  // kPlotRows of 68 columns

std::size_t At(int index) {
  return static_cast<std::size_t>(index);
}

char DigitOf(int score) {
  return static_cast<char>('0' + score % 10);
}

// A row of the axis' columns between the marks `open` and `close`.
std::string Framed(const std::string& margin, char open, const std::string& cells, char close) {
  return margin + open + cells + close;
}

std::string Margin(std::string_view text) {
  const auto width = static_cast<std::size_t>(kAxisMargin);
  std::string margin(width, ' ');
  return margin.replace(width - 1 - text.size(), text.size(), text);  // a blank before the frame
}

// Numbers of categories in a row of dashes.  One that would overlap a former one takes its place.
class NumberRow {
 public:
  void Put(int column, int number) {
    const std::string digits = std::to_string(number);
    const int start = std::min(column, kAxisColumns - static_cast<int>(digits.size()));
    for (std::size_t i = 0; i < digits.size(); ++i) Clear(owners_[At(start) + i]);
    for (std::size_t i = 0; i < digits.size(); ++i) {
      cells_[At(start) + i] = digits[i];
      owners_[At(start) + i] = number;
    }
  }
  const std::string& cells() const { return cells_; }

 private:
  static constexpr int kNobody = -1;

  void Clear(int owner) {
    if (owner == kNobody) return;
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      if (owners_[i] != owner) continue;
      cells_[i] = '-';
      owners_[i] = kNobody;
    }
  }

  std::string cells_ = std::string(kAxisColumns, '-');
  std::vector<int> owners_ = std::vector<int>(kAxisColumns, kNobody);
};

using Landmark = std::optional<double> CategoryLandmarks::*;

// The lowest category begins at the left end.
std::string StructureLine(const Table8Plot& plot, const MeasureAxis& axis, std::string_view head,
                          Landmark landmark) {
  NumberRow row;
  row.Put(0, plot.report.lowest);
  for (std::size_t k = 1; k < plot.report.landmarks.size(); ++k)
    if (const std::optional<double>& mark = plot.report.landmarks[k].*landmark)
      row.Put(ColumnOf(axis, *mark * plot.uscale), plot.report.lowest + static_cast<int>(k));
  return Framed(std::string(head), '<', row.cells(), '>');
}

// The scale's answer at each column of the axis.
struct ColumnCurve {
  ProbabilityArray probability{};
  double expected = 0.0;
};

void ForEachColumn(const Table8Plot& plot, const MeasureAxis& axis,
                   const std::function<void(int, const ColumnCurve&)>& draw) {
  ColumnCurve curve;
  for (int column = 0; column < kAxisColumns; ++column) {
    const float measure = Single(MeasureAt(axis, column) / plot.uscale);
    curve.expected =
        CategoryProbabilities(*plot.report.kernel, measure, curve.probability).expected;
    draw(column, curve);
  }
}

// The plot between its rules, with the measures below it; `margins` has a text for each row.
std::vector<std::string> FramePlot(const Table8Plot& plot, const MeasureAxis& axis,
                                   std::string_view title, const PlotRows& rows,
                                   const std::vector<std::string>& margins) {
  const std::string blanks(kAxisMargin, ' ');
  std::vector<std::string> lines{"", std::string(title),
                                 blanks + AxisRule(axis, BoxPosition::top, plot.ascii)};
  for (std::size_t row = 0; row < rows.size(); ++row)
    lines.push_back(Framed(Margin(margins[row]), kBoxColumn, rows[row], kBoxColumn));
  lines.push_back(blanks + AxisRule(axis, BoxPosition::bot, plot.ascii));
  lines.push_back(MeasureLine(axis));
  return lines;
}

// The row of a height between 0 and 1; 1 is the topmost.
std::size_t RowAt(double height) {
  return At(RoundInteger((1.0 - std::clamp(height, 0.0, 1.0)) * (kPlotRows - 1)));
}

PlotRows EmptyRows() {
  return {At(kPlotRows), std::string(kAxisColumns, ' ')};
}

}  // namespace

MeasureAxis AxisOf(const Table8Plot& plot) {
  double low = 0.0, high = 0.0;
  RangeOfLandmarks(plot.report.landmarks, low, high);
  return LayOutAxis((low - kBeyondLandmarks) * plot.uscale,
                    (high + kBeyondLandmarks) * plot.uscale);
}

std::vector<std::string> ScaleStructureLines(const Table8Plot& plot,
                                             const std::string& identification) {
  const MeasureAxis axis = AxisOf(plot);
  const std::string blanks(kAxisMargin, ' ');
  return {"",
          "Scale structure: " + identification,
          blanks + AxisRule(axis, BoxPosition::top, plot.ascii),
          StructureLine(plot, axis, "  Mode:", &CategoryLandmarks::mostProbable),
          StructureLine(plot, axis, "Median:", &CategoryLandmarks::thurstone),
          StructureLine(plot, axis, "  Mean:", &CategoryLandmarks::half),
          blanks + AxisRule(axis, BoxPosition::bot, plot.ascii),
          MeasureLine(axis)};
}

std::vector<std::string> ProbabilityLines(const Table8Plot& plot) {
  const MeasureAxis axis = AxisOf(plot);
  PlotRows rows = EmptyRows();
  const int top = plot.report.kernel->top;
  ForEachColumn(plot, axis, [&](int column, const ColumnCurve& curve) {
    for (int k = 0; k <= top; ++k) {
      char& cell = rows[RowAt(static_cast<double>(curve.probability[At(k)]))][At(column)];
      cell = cell == ' ' ? DigitOf(plot.report.lowest + k) : '*';
    }
  });
  std::vector<std::string> margins;
  for (const char letter : kProbabilityAxis) margins.emplace_back(1, letter);
  return FramePlot(plot, axis, "Probability Curves", rows, margins);
}

std::vector<std::string> OgiveLines(const Table8Plot& plot) {
  const MeasureAxis axis = AxisOf(plot);
  PlotRows rows = EmptyRows();
  const int top = plot.report.kernel->top;
  ForEachColumn(plot, axis, [&](int column, const ColumnCurve& curve) {
    rows[RowAt(curve.expected / top)][At(column)] =
        DigitOf(plot.report.lowest + RoundInteger(std::min<double>(curve.expected, top)));
  });
  std::vector<std::string> margins(At(kPlotRows));
  for (int k = 0; k <= top; ++k)  // of several in one row the highest is named
    margins[RowAt(static_cast<double>(k) / top)] = std::to_string(plot.report.lowest + k);
  return FramePlot(plot, axis, "Expected Score Ogive (Model ICC)", rows, margins);
}

}  // namespace flanks
