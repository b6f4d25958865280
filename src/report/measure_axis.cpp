#include "report/measure_axis.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/text.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr std::string_view kMeasureHead = "Measr: ";
constexpr int kFrame = 2;              // a column on each side
constexpr int kShortestLabel = 3;      // a shorter one takes as much
constexpr int kLabelSpace = 3;         // between two labels
constexpr int kWidestLabel = 20;       // more than any measure in reach
constexpr double kNearlyWhole = 1e-9;  // of a multiple: what rounding may take off the ends

// A step of the ticks: digit times ten to the exponent.
struct Step {
  int digit = 1;
  int exponent = 0;
  double power() const { return std::pow(10.0, std::abs(exponent)); }
  // The largest ideal step that this one is the nearest to: half way to the next.
  double reach() const { return size() * (digit == 5 ? 1.5 : digit == 2 ? 1.75 : 1.5); }
  double size() const { return exponent < 0 ? digit / power() : digit * power(); }
  int decimals() const { return std::max(0, -exponent); }
  // A multiple, by one division so that .3 is the number nearest to it.
  double multiple(std::int64_t n) const {
    const double whole = static_cast<double>(n * digit);
    return exponent < 0 ? whole / power() : whole * power();
  }
};

std::string TickLabel(double value, int decimals) {
  std::string label(Trim(FixedField(value, kWidestLabel, decimals)));
  const std::size_t point = label.find('.');
  if (point != std::string::npos && label.find_first_not_of('0', point + 1) == std::string::npos)
    label.erase(point);
  return label.empty() ? "0" : label;
}

// The ticks of a step, their columns not yet set, and the longest label.
std::vector<double> TicksWithin(const MeasureAxis& axis, const Step& step) {
  std::vector<double> ticks;
  const auto first = static_cast<std::int64_t>(std::ceil(axis.low / step.size() - kNearlyWhole));
  const auto last = static_cast<std::int64_t>(std::floor(axis.high / step.size() + kNearlyWhole));
  for (std::int64_t n = first; n <= last; ++n) ticks.push_back(step.multiple(n));
  return ticks;
}

// How many labels of this length fit the axis, the last one perhaps in part.
int LabelsThatFit(std::size_t longest) {
  const int spacing = std::max(static_cast<int>(longest), kShortestLabel) + kLabelSpace;
  return (kAxisColumns + spacing - 1) / spacing;
}

// Where a label begins, behind the frame's column 0.
int StartOf(const AxisTick& tick) {
  const int length = static_cast<int>(tick.label.size());
  const int centred = tick.column + 1 - length / 2;
  return std::clamp(centred, 0, std::max(0, kAxisColumns + kFrame - length));
}

bool LabelsAreApart(const std::vector<AxisTick>& ticks) {
  int end = -1;  // of the label before and a blank
  for (const AxisTick& tick : ticks) {
    if (StartOf(tick) < end) return false;
    end = StartOf(tick) + static_cast<int>(tick.label.size()) + 1;
  }
  return true;
}

// False where a larger step is nearer to the ideal one, or labels touch.
bool LayTicks(MeasureAxis& axis, const Step& step) {
  axis.ticks.clear();
  std::size_t longest = 0;
  for (const double value : TicksWithin(axis, step)) {
    axis.ticks.push_back({ColumnOf(axis, value), TickLabel(value, step.decimals())});
    longest = std::max(longest, axis.ticks.back().label.size());
  }
  const double ideal = (axis.high - axis.low) / LabelsThatFit(longest);
  return step.reach() >= ideal * (1.0 - kNearlyWhole) && LabelsAreApart(axis.ticks);
}

}  // namespace

MeasureAxis LayOutAxis(double oneEnd, double otherEnd) {
  MeasureAxis axis;
  if (!std::isfinite(oneEnd) || !std::isfinite(otherEnd)) oneEnd = otherEnd = 0.0;
  axis.low = std::min(oneEnd, otherEnd);
  axis.high = std::max(oneEnd, otherEnd);
  if (!(axis.high > axis.low)) {
    axis.low -= 1.0;
    axis.high += 1.0;
  }
  const double finest = (axis.high - axis.low) / LabelsThatFit(0);
  for (int exponent = static_cast<int>(std::floor(std::log10(finest)));; ++exponent)
    for (const int digit : {1, 2, 5})
      if (const Step step{digit, exponent};
          step.reach() >= finest * (1.0 - kNearlyWhole) && LayTicks(axis, step))
        return axis;
}

int ColumnOf(const MeasureAxis& axis, double userMeasure) {
  const double share = (userMeasure - axis.low) / (axis.high - axis.low);
  return RoundInteger(std::clamp(share, 0.0, 1.0) * (kAxisColumns - 1));
}

double MeasureAt(const MeasureAxis& axis, double column) {
  return axis.low + (axis.high - axis.low) * column / (kAxisColumns - 1);
}

std::string AxisRule(const MeasureAxis& axis, BoxPosition position, bool ascii) {
  std::string pattern(kAxisColumns + kFrame, '-');
  pattern.front() = 'x';
  pattern.back() = 'x';
  for (const AxisTick& tick : axis.ticks) pattern[static_cast<std::size_t>(tick.column) + 1] = 'x';
  return BoxLine(pattern, position, kCrossedJunctionsTag, ascii);
}

std::string AxisLabels(const MeasureAxis& axis) {
  std::string line(kAxisColumns + kFrame, ' ');
  for (const AxisTick& tick : axis.ticks) {
    line.replace(static_cast<std::size_t>(StartOf(tick)), tick.label.size(), tick.label);
  }
  return line;
}

std::string MeasureLine(const MeasureAxis& axis) {
  return std::string(kMeasureHead) + AxisLabels(axis);
}

}  // namespace flanks
