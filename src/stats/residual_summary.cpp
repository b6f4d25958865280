#include "stats/residual_summary.h"

namespace flanks {

ResidualSums::ResidualSums(std::size_t blockSize) : weight_(blockSize) {
  for (std::vector<double>& column : columns_) column.resize(blockSize);
}

void ResidualSums::EndBlock() {
  const std::size_t count = count_;
  count_ = 0;
  std::array<double, kResidualColumns> means{}, squares{};
  double weight = 0.0;
  for (std::size_t n = 0; n < count; ++n) {
    const double w = weight_[n];
    weight += w;
    if (w != 1.0) summary_.weighted = true;
    for (std::size_t c = 0; c < kResidualColumns; ++c) means[c] += w * columns_[c][n];
  }
  if (!(weight > 0.0)) return;
  for (double& mean : means) mean /= weight;
  for (std::size_t n = 0; n < count; ++n) {
    for (std::size_t c = 0; c < kResidualColumns; ++c) {
      const double deviation = columns_[c][n] - means[c];
      squares[c] += weight_[n] * deviation * deviation;
    }
  }
  const double total = summary_.Count + weight;
  for (std::size_t c = 0; c < kResidualColumns; ++c) {
    ResidualMoments& moments = summary_.columns[c];
    const double step = means[c] - moments.Mean;
    moments.SumOfSquares += squares[c] + step * step * (summary_.Count * weight / total);
    moments.Mean += step * (weight / total);
  }
  summary_.Count = total;
}

}  // namespace flanks
