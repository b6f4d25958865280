// Running counts, means and sums of squared deviations: one value at a time, in one pass.
//
// Summing squares and subtracting the squared mean loses all digits when the mean is large beside
// the spread; these updates do not.
//
//   WelfordCounter   Welford, Note on a Method for Calculating Corrected Sums of Squares and
//                    Products, Technometrics 4 (1962), 419-420: for values met in a pass.
//   RunningMoments   West, Updating Mean and Variance Estimates: An Improved Method,
//                    Communications of the ACM 22 (1979), 532-535: for the rows of a Table, plain
//                    or weighted.
//
// The two differ in rounding only, which shows in a last digit; each place keeps its own.  The
// count or total weight of a RunningMoments stands with the set that it belongs to, since all
// columns of a set share it.  Tested by tests/unit/base/running_moments_test.cpp.
#ifndef FLANKS_BASE_RUNNING_MOMENTS_H
#define FLANKS_BASE_RUNNING_MOMENTS_H

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/single.h"

namespace flanks {

struct WelfordCounter {
  double Count = 0.0;
  double Mean = 0.0;
  double SumOfSquares = 0.0;  // of deviations from the mean

  void Add(double value) {
    const double deviation = value - Mean;
    Count += 1.0;
    Mean += deviation / Count;
    SumOfSquares += deviation * (value - Mean);
  }
  // The same value `times` over, at once.
  void Add(double value, double times) {
    if (times <= 0.0) return;
    const double deviation = value - Mean;
    Count += times;
    Mean += times * deviation / Count;
    SumOfSquares += times * deviation * (value - Mean);
  }
  // The S.D. of the counted values taken as a whole population; 0 without any.
  [[nodiscard]] double PopulationDeviation() const {
    return Count > 0.0 ? std::sqrt(SumOfSquares / Count) : 0.0;
  }
};

struct RunningMoments {
  double Mean = 0.0;
  double SumOfSquares = 0.0;  // of deviations from the mean

  // Adds a value of weight 1 to the `count` values that are in.
  void Add(double value, double count) {
    const double deviation = value - Mean;
    SumOfSquares += deviation * deviation * count / (count + 1.0);
    Mean += deviation / (count + 1.0);
  }
  // Adds a value of weight w to values of the total weight W.
  void AddWeighted(double value, double w, double W) {
    const double deviation = value - Mean;
    SumOfSquares += deviation * deviation * w * W / (W + w);
    Mean += w * deviation / (W + w);
  }
  // The S.D. over `count` values as a whole population; the variance is at least 1E-9.
  [[nodiscard]] double PopulationDeviation(double count) const {
    return std::sqrt(FloorMin(count > 0.0 ? SumOfSquares / count : 0.0));
  }
};

// From the S.D. of a population to that of a sample; the same for a single value.
[[nodiscard]] inline double SampleDeviation(double populationDeviation, double count) {
  if (count <= 1.0) return populationDeviation;
  return populationDeviation * std::sqrt(count / (count - 1.0));
}

// The columns of a set of rows that share a count.
template <std::size_t kSlots>
struct RunningSummary {
  double Count = 0.0;  // rows; total weight when rows are weighted
  std::array<RunningMoments, kSlots> slots{};
  bool weighted = false;  // a weight other than 1 was met

  void Add(const std::array<double, kSlots>& row) {
    for (std::size_t slot = kSlots; slot-- > 0;) slots[slot].Add(row[slot], Count);
    Count += 1.0;
  }
  // A row without weight changes nothing.
  void AddWeighted(const std::array<double, kSlots>& row, double weight) {
    if (weight != 1.0) weighted = true;
    if (weight <= 0.0) return;
    for (std::size_t slot = kSlots; slot-- > 0;) {
      slots[slot].AddWeighted(row[slot], weight, Count);
    }
    Count += weight;
  }
};

}  // namespace flanks

#endif  // FLANKS_BASE_RUNNING_MOMENTS_H
