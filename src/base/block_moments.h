// Means and sums of squared deviations of several columns of weighted values, block by block: the
// mean of a block, the squares of the deviations from it, and then the two joined to what came
// before (T. F. Chan, G. H. Golub and R. J. LeVeque, Updating Formulae and a Pairwise Algorithm for
// Computing Sample Variances, Stanford University, 1979).  Blocks depend on the records alone, so
// the bits are the same on every machine, and there is no division for each value.
//
//   BlockSums<2> sums(kKernelBlock);                   // once: allocates
//   for (...) sums.Add({a, b}, weight);                // the values of a block
//   sums.EndBlock();
//   sums.summary().columns[0].PopulationDeviation(sums.summary().Count)
//
// Tested by tests/unit/base/running_moments_test.cpp and through the passes.
#ifndef FLANKS_BASE_BLOCK_MOMENTS_H
#define FLANKS_BASE_BLOCK_MOMENTS_H

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace flanks {

struct ColumnMoments {
  double Mean = 0.0;
  double SumOfSquares = 0.0;  // of deviations from the mean

  // The S.D. over the count as a whole population.
  double PopulationDeviation(double count) const {
    return count > 0.0 ? std::sqrt(SumOfSquares / count) : 0.0;
  }
};

template <std::size_t kColumns>
struct BlockSummary {
  double Count = 0.0;     // total weight of the values
  bool weighted = false;  // a weight other than 1 was met
  std::array<ColumnMoments, kColumns> columns;

  // By a number from 0 on, or by an enumeration of the columns.
  template <class Column>
  const ColumnMoments& of(Column column) const {
    return columns[static_cast<std::size_t>(column)];
  }
  template <class Column>
  double PopulationVariance(Column column) const {
    const double deviation = of(column).PopulationDeviation(Count);
    return deviation * deviation;
  }
};

template <std::size_t kColumns>
class BlockSums {
 public:
  using Values = std::array<double, kColumns>;

  // Room for the values of a block.
  explicit BlockSums(std::size_t blockSize) : values_(blockSize), weight_(blockSize) {}

  void Clear() {
    summary_ = {};
    count_ = 0;
  }
  // A row of the block at work.
  void Add(const Values& values, double weight) {
    values_[count_] = values;
    weight_[count_++] = weight;
  }
  void EndBlock();
  const BlockSummary<kColumns>& summary() const { return summary_; }

 private:
  std::size_t count_ = 0;
  std::vector<Values> values_;
  std::vector<double> weight_;
  BlockSummary<kColumns> summary_;
};

template <std::size_t kColumns>
void BlockSums<kColumns>::EndBlock() {
  const std::size_t count = count_;
  count_ = 0;
  Values means{}, squares{};
  double weight = 0.0;
  bool weighted = summary_.weighted;
  for (std::size_t n = 0; n < count; ++n) {
    const double w = weight_[n];
    weight += w;
    weighted = weighted || w != 1.0;
    for (std::size_t c = 0; c < kColumns; ++c) means[c] += w * values_[n][c];
  }
  summary_.weighted = weighted;
  if (!(weight > 0.0)) return;
  for (double& mean : means) mean /= weight;
  for (std::size_t n = 0; n < count; ++n) {
    const double w = weight_[n];
    for (std::size_t c = 0; c < kColumns; ++c) {
      const double deviation = values_[n][c] - means[c];
      squares[c] += w * deviation * deviation;
    }
  }
  const double total = summary_.Count + weight;
  for (std::size_t c = 0; c < kColumns; ++c) {
    ColumnMoments& moments = summary_.columns[c];
    const double step = means[c] - moments.Mean;
    moments.SumOfSquares += squares[c] + step * step * (summary_.Count * weight / total);
    moments.Mean += step * (weight / total);
  }
  summary_.Count = total;
}

}  // namespace flanks

#endif  // FLANKS_BASE_BLOCK_MOMENTS_H
