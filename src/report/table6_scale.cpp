#include "report/table6_scale.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr double kUsualRows = 50.0;
constexpr double kFewestLines = 1.0, kMostLines = 10.0;
constexpr double kRowsOfALongRuler = 250.0;
constexpr double kRowsBetweenTicks = 5.0;
constexpr int kMostTickDecimals = 3;  // more do not fit the column beside a sign
// Measures are 32-bit numbers: what is a whole number of rows but for their last digit is one.
constexpr double kRowSlack = 1E-4;

double RoundHalfAway(double value) {
  return std::trunc(value + (value < 0.0 ? -0.5 : 0.5));
}

double WholeRows(double rows) {
  return std::floor(rows + kRowSlack);
}

// 1, 2, 5, 10, 20, 50 ... units.
double TickStep(double lines) {
  if (lines >= 1.0) return 1.0;
  for (double decade = 1.0;; decade *= 10.0)
    for (const double factor : {1.0, 2.0, 5.0})
      if (factor * decade * lines >= kRowsBetweenTicks) return factor * decade;
}

// Decimals with which a range below a unit has two ticks or more, but for the finest.
int FineDecimals(double range) {
  return std::clamp(static_cast<int>(-std::floor(std::log10(range / 2.0))), 1, kMostTickDecimals);
}

}  // namespace

int RulerScale::RowOf(double userMeasure) const {
  const int fromBottom = RoundInteger(lines * (userMeasure - low));
  return std::clamp(last - fromBottom, 0, last);
}

std::optional<double> RulerScale::TickOf(int row) const {
  const double unit = tick * RoundHalfAway(ValueOf(row) / tick);
  if (row != last - RoundInteger(lines * (unit - low))) return std::nullopt;
  return unit;
}

RulerScale ScaleRuler(double lowest, double highest, const Yardstick& yardstick, double uscale) {
  RulerScale scale;
  scale.low = lowest;
  scale.high = highest;
  if (!(scale.low < scale.high)) {
    scale.high = scale.low + 1.0;
    scale.low = scale.low - 1.0;
  }
  if (yardstick.low != yardstick.high)
    std::tie(scale.low, scale.high) = std::minmax(yardstick.low, yardstick.high);
  const double range = scale.high - scale.low;
  const bool fine = std::abs(uscale) < 1.0 && range < 1.0;
  const double most = fine ? kMostLines / std::abs(uscale) : kMostLines;
  scale.lines =
      yardstick.lines > 0.0 ? yardstick.lines : std::clamp(kUsualRows / range, kFewestLines, most);
  if (WholeRows(scale.lines * range) >= kMostRulerRows) scale.lines = kRowsOfALongRuler / range;
  scale.last = static_cast<int>(WholeRows(scale.lines * range));
  if (fine) {
    scale.tickDecimals = FineDecimals(range);
    scale.tick = std::pow(10.0, -scale.tickDecimals);
  } else {
    scale.tick = TickStep(scale.lines);
  }
  return scale;
}

}  // namespace flanks
