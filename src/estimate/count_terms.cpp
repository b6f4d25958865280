#include "estimate/count_terms.h"

#include <array>
#include <cmath>

#include "run/scale_tables.h"

namespace flanks {

std::span<const double> LogFactorial() {
  static const std::array<double, kProbabilityEntries> table = [] {
    std::array<double, kProbabilityEntries> sums{};
    for (std::size_t k = 2; k < sums.size(); ++k)
      sums[k] = sums[k - 1] + std::log(static_cast<double>(k));
    return sums;
  }();
  return table;
}

void FillCountTerms(ScaleType type, int top, std::vector<double>& terms) {
  terms.assign(static_cast<std::size_t>(top) + 1, 0.0);
  if (type == ScaleType::poisson) {
    for (std::size_t k = 0; k < terms.size(); ++k) terms[k] = LogFactorial()[k];
    return;
  }
  for (int k = 1; k <= top; ++k) {
    const auto cell = static_cast<std::size_t>(k);
    terms[cell] = terms[cell - 1] + std::log(static_cast<double>(k)) -
                  std::log(static_cast<double>(top - k + 1));
  }
}

}  // namespace flanks
