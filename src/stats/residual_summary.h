// Means and S.D.s of the responses of a run: what Tables 5 and 11 show in their boxes.
//
// Means and sums of squares are made block by block: the mean of a block, the squares of the
// deviations from it, and then the two joined to what came before (T. F. Chan, G. H. Golub and
// R. J. LeVeque, Updating Formulae and a Pairwise Algorithm for Computing Sample Variances,
// Stanford University, 1979).  Blocks depend on the records alone, so the bits are the same on
// every machine, and there is no division for each observation.
//
// Tested by tests/unit/stats/residual_pass_test.cpp.
#ifndef FLANKS_STATS_RESIDUAL_SUMMARY_H
#define FLANKS_STATS_RESIDUAL_SUMMARY_H

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace flanks {

// What is summed of an observation.  Scores and expected scores are in scored categories: ordered
// categories that begin with the lowest category of the scale.
enum class ResidualColumn : std::uint8_t { category, score, expected, residual, StRes };
constexpr std::size_t kResidualColumns = 5;

struct ResidualMoments {
  double Mean = 0.0;
  double SumOfSquares = 0.0;  // of deviations from the mean

  // The S.D. over the count as a whole population.
  double PopulationDeviation(double count) const {
    return count > 0.0 ? std::sqrt(SumOfSquares / count) : 0.0;
  }
};

struct ResidualSummary {
  double Count = 0.0;     // total weight of the observations
  bool weighted = false;  // a weight other than 1 was met
  std::array<ResidualMoments, kResidualColumns> columns;

  const ResidualMoments& of(ResidualColumn column) const {
    return columns[static_cast<std::size_t>(column)];
  }
  double PopulationVariance(ResidualColumn column) const {
    const double deviation = of(column).PopulationDeviation(Count);
    return deviation * deviation;
  }
};

// The sums, block by block.
class ResidualSums {
 public:
  using Values = std::array<double, kResidualColumns>;

  // Room for the observations of a block.
  explicit ResidualSums(std::size_t blockSize);

  void Clear() { summary_ = {}; }
  // An observation of the block at work.
  void Add(const Values& values, double weight) {
    for (std::size_t column = 0; column < kResidualColumns; ++column)
      columns_[column][count_] = values[column];
    weight_[count_++] = weight;
  }
  void EndBlock();
  const ResidualSummary& summary() const { return summary_; }

 private:
  std::size_t count_ = 0;
  std::vector<double> weight_;
  std::array<std::vector<double>, kResidualColumns> columns_;
  ResidualSummary summary_;
};

}  // namespace flanks

#endif  // FLANKS_STATS_RESIDUAL_SUMMARY_H
