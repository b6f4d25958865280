// Linear equations by elimination, for the slow judge.
#ifndef FLANKS_TESTS_SUPPORT_SLOW_JUDGE_DENSE_H
#define FLANKS_TESTS_SUPPORT_SLOW_JUDGE_DENSE_H

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace judge {

using Vector = std::vector<double>;
using Matrix = std::vector<Vector>;

// Solves a x = b by Gaussian elimination with row pivots; x replaces b.  False when `a` is
// singular.
inline bool SolveLinear(Matrix a, Vector& b) {
  const std::size_t n = b.size();
  for (std::size_t i = 0; i < n; ++i) {
    std::size_t pivot = i;
    for (std::size_t row = i + 1; row < n; ++row) {
      if (std::abs(a[row][i]) > std::abs(a[pivot][i])) pivot = row;
    }
    if (std::abs(a[pivot][i]) < 1E-9) return false;
    std::swap(a[i], a[pivot]);
    std::swap(b[i], b[pivot]);
    for (std::size_t row = i + 1; row < n; ++row) {
      const double factor = a[row][i] / a[i][i];
      if (factor == 0.0) continue;
      for (std::size_t column = i; column < n; ++column) a[row][column] -= factor * a[i][column];
      b[row] -= factor * b[i];
    }
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t column = i + 1; column < n; ++column) b[i] -= a[i][column] * b[column];
    b[i] /= a[i][i];
  }
  return true;
}

}  // namespace judge

#endif  // FLANKS_TESTS_SUPPORT_SLOW_JUDGE_DENSE_H
