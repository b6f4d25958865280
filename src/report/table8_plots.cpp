#include "report/table8_plots.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/single.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kPlotRows = 21;             // from 1 to 0, or from the highest score to the lowest
constexpr double kBeyondLandmarks = 1.0;  // logits
constexpr double kOutOfSight = 2.0;       // a height that is as good as any above the plot
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

// Numbers of categories in a row of dashes, put from the highest to the lowest.  One that would
// overlap a former one is left out, and so is one that would touch it where some have several
// digits: they would run together.
class NumberRow {
 public:
  explicit NumberRow(int highest) : apart_(highest > kLastDigit ? 1 : 0) {}

  void Put(int column, int number) {
    const std::string digits = std::to_string(number);
    const int length = static_cast<int>(digits.size());
    const int start = std::min(column, kAxisColumns - length);
    const int first = std::max(start - apart_, 0);
    const int end = std::min(start + length + apart_, kAxisColumns);
    for (int at = first; at < end; ++at)
      if (cells_[At(at)] != kFree) return;
    cells_.replace(At(start), digits.size(), digits);
  }
  const std::string& cells() const { return cells_; }

 private:
  static constexpr char kFree = '-';
  static constexpr int kLastDigit = 9;

  int apart_;  // free columns between two numbers
  std::string cells_ = std::string(kAxisColumns, kFree);
};

using Landmark = std::optional<double> CategoryLandmarks::*;

// The lowest category begins at the low end; a unit below 0 turns the axis over.
std::string StructureLine(const Table8Plot& plot, const MeasureAxis& axis, std::string_view head,
                          Landmark landmark) {
  NumberRow row(plot.report.lowest + static_cast<int>(plot.report.landmarks.size()) - 1);
  for (std::size_t k = plot.report.landmarks.size() - 1; k >= 1; --k)
    if (const std::optional<double>& mark = plot.report.landmarks[k].*landmark)
      row.Put(ColumnOf(axis, *mark * plot.uscale), plot.report.lowest + static_cast<int>(k));
  row.Put(plot.uscale < 0.0 ? kAxisColumns - 1 : 0, plot.report.lowest);
  return Framed(std::string(head), '<', row.cells(), '>');
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

// The row of a height, 1 the topmost, 0 the lowest; a height above 1 has one above the plot.
int RowAt(double height) {
  return RoundInteger((1.0 - std::clamp(height, 0.0, kOutOfSight)) * (kPlotRows - 1));
}

double HeightOf(int row) {
  return 1.0 - static_cast<double>(row) / (kPlotRows - 1);
}

// What a scale answers at the columns of the axis and half way between them: point 2 c is column c.
struct PlotPoint {
  ProbabilityArray probability{};
  double expected = 0.0;
};

std::vector<PlotPoint> PointsOf(const Table8Plot& plot, const MeasureAxis& axis) {
  std::vector<PlotPoint> points(2 * kAxisColumns - 1);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const float measure = Single(MeasureAt(axis, static_cast<double>(i) / 2.0) / plot.uscale);
    points[i].expected =
        CategoryProbabilities(*plot.report.kernel, measure, points[i].probability).expected;
  }
  return points;
}

// The cells of a plot, and which curve is in each.
class Canvas {
 public:
  // Rows beside the plot are left out.
  void Mark(int row, int column, int curve, char digit) {
    if (row < 0 || row >= kPlotRows) return;
    int& owner = owners_[At(row)][At(column)];
    char& cell = rows_[At(row)][At(column)];
    if (owner == curve) return;
    cell = owner == kNobody ? digit : kSeveral;
    owner = curve;
  }
  const PlotRows& rows() const { return rows_; }

 private:
  static constexpr int kNobody = -1;
  static constexpr char kSeveral = '*';

  PlotRows rows_{At(kPlotRows), std::string(kAxisColumns, ' ')};
  std::vector<std::array<int, kAxisColumns>> owners_ = std::vector(At(kPlotRows), EmptyRow());

  static std::array<int, kAxisColumns> EmptyRow() {
    std::array<int, kAxisColumns> row{};
    row.fill(kNobody);
    return row;
  }
};

// Calls `mark` with the rows between two, both left out.
template <class Mark>
void ForEachBetween(int oneRow, int otherRow, Mark mark) {
  const auto [first, last] = std::minmax(oneRow, otherRow);
  for (int row = first + 1; row < last; ++row) mark(row);
}

// Draws the curve whose height at each point is `heightAt(point)`: a mark in each column, and where
// the curve goes over rows between two of them, marks in those rows, each in the column nearer to
// where the curve crosses it.  `mark` takes row, column and the height there.
template <class HeightAt, class Mark>
void DrawCurve(const std::vector<PlotPoint>& points, HeightAt heightAt, Mark mark) {
  mark(RowAt(heightAt(points[0])), 0, heightAt(points[0]));
  for (int column = 0; column + 1 < kAxisColumns; ++column) {
    const double leftHeight = heightAt(points[At(2 * column)]);
    const double middleHeight = heightAt(points[At(2 * column + 1)]);
    const int left = RowAt(leftHeight), middle = RowAt(middleHeight);
    const double rightHeight = heightAt(points[At(2 * column + 2)]);
    const int right = RowAt(rightHeight);
    mark(right, column + 1, rightHeight);
    if (std::max({left, middle, right}) - std::min({left, middle, right}) < 2) continue;
    ForEachBetween(left, middle, [&](int row) { mark(row, column, HeightOf(row)); });
    ForEachBetween(middle, right, [&](int row) { mark(row, column + 1, HeightOf(row)); });
    if (middle == left || middle == right) continue;
    // Whether the curve has come to the middle of its row before it is half way.
    const double level = HeightOf(middle);
    const bool before = (leftHeight - level) * (middleHeight - level) <= 0.0;
    mark(middle, before ? column : column + 1, level);
  }
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
  const std::vector<PlotPoint> points = PointsOf(plot, axis);
  Canvas canvas;
  for (int k = 0; k <= plot.report.kernel->top; ++k) {
    DrawCurve(
        points, [k](const PlotPoint& at) { return static_cast<double>(at.probability[At(k)]); },
        [&](int row, int column, double /*height*/) {
          canvas.Mark(row, column, k, DigitOf(plot.report.lowest + k));
        });
  }
  std::vector<std::string> margins;
  for (const char letter : kProbabilityAxis) margins.emplace_back(1, letter);
  return FramePlot(plot, axis, "Probability Curves", canvas.rows(), margins);
}

std::vector<std::string> OgiveLines(const Table8Plot& plot) {
  const MeasureAxis axis = AxisOf(plot);
  const int top = plot.report.kernel->top;
  Canvas canvas;
  DrawCurve(
      PointsOf(plot, axis), [top](const PlotPoint& at) { return at.expected / top; },
      [&](int row, int column, double height) {
        const int score = RoundInteger(std::min(height, 1.0) * top);
        canvas.Mark(row, column, 0, DigitOf(plot.report.lowest + score));
      });
  std::vector<std::string> margins(At(kPlotRows));
  for (int k = 0; k <= top; ++k)  // of several in one row the highest is named
    margins[At(RowAt(static_cast<double>(k) / top))] = std::to_string(plot.report.lowest + k);
  return FramePlot(plot, axis, "Expected Score Ogive (Model ICC)", canvas.rows(), margins);
}

}  // namespace flanks
