#include "report/measure_bars.h"

#include <algorithm>

#include "report/format/join_number.h"

namespace flanks {
namespace {

constexpr std::int64_t kHighestDigit = 9;
constexpr std::int64_t kHighestStack = 20;  // lines
constexpr char kMean = 'M', kDeviation = 'S', kTwoDeviations = 'Q';

std::int64_t RoundedUp(std::int64_t count, std::int64_t group) {
  return (count + group - 1) / group;
}

std::string Framed(char open, const std::string& cells, char close) {
  return std::string(kAxisMargin, ' ') + open + cells + close;
}

// The digits of one line, line 0 at the foot of the stacks.
std::string StackLine(const std::array<std::int64_t, kAxisColumns>& counts, std::int64_t group,
                      std::int64_t line) {
  std::string cells(kAxisColumns, ' ');
  for (std::size_t column = 0; column < counts.size(); ++column) {
    const std::int64_t left = RoundedUp(counts[column], group) - line * kHighestDigit;
    if (left > 0) cells[column] = static_cast<char>('0' + std::min(left, kHighestDigit));
  }
  return Framed(kBoxColumn, cells, kBoxColumn);
}

}  // namespace

void MeasureBars::AddAtMeasure(double userMeasure) {
  ++counts_[static_cast<std::size_t>(ColumnOf(axis_, userMeasure))];
  measures_.Add(userMeasure);
}

std::string MeasureBars::MarksLine() const {
  std::string cells(kAxisColumns, '-');
  const auto mark = [&](double userMeasure, char letter) {
    if (userMeasure >= axis_.low && userMeasure <= axis_.high)
      cells[static_cast<std::size_t>(ColumnOf(axis_, userMeasure))] = letter;
  };
  if (measures_.Count > 0.0) {
    const double deviation = measures_.PopulationDeviation();
    // The nearer to the mean, the later: it stays where two marks meet.
    for (const double side : {-1.0, 1.0})
      mark(measures_.Mean + side * 2.0 * deviation, kTwoDeviations);
    for (const double side : {-1.0, 1.0}) mark(measures_.Mean + side * deviation, kDeviation);
    mark(measures_.Mean, kMean);
  }
  return "  Mean:<" + cells + ">";
}

std::vector<std::string> MeasureBars::Lines(bool ascii, const std::string& members) const {
  const std::string margin(kAxisMargin, ' ');
  const std::int64_t highest = *std::max_element(counts_.begin(), counts_.end());
  const std::int64_t group =
      std::max<std::int64_t>(RoundedUp(highest, kHighestStack * kHighestDigit), 1);
  const std::int64_t lines =
      std::max<std::int64_t>(RoundedUp(RoundedUp(highest, group), kHighestDigit), 1);
  std::vector<std::string> chart{margin + AxisRule(axis_, BoxPosition::top, ascii)};
  for (std::int64_t line = lines - 1; line >= 0; --line)
    chart.push_back(StackLine(counts_, group, line));
  chart.push_back(margin + AxisRule(axis_, BoxPosition::bot, ascii));
  chart.push_back(MarksLine());
  chart.push_back(MeasureLine(axis_));
  if (group > 1) chart.push_back(JoinNumber("Each count stands for", group) + " " + members + ".");
  return chart;
}

}  // namespace flanks
