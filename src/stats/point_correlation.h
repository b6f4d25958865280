// Point-measure correlation of an element, observed and expected.
//
// Each observation of an element is a pair: the signed measure sum B of all its elements, and the
// scored category as a fraction x of the scale's top category m.  Their weighted product-moment
// correlation should be positive: a higher measure sum, a higher category.  What it should be
// under the model follows from the expected scores r = E / m and the model variances v = V / m²:
// the variance of x is that of r plus the mean of v.
//
// The fit pass fills the sums (run/fit_sums.h).  Tested by
// tests/unit/stats/point_correlation_test.cpp.
#ifndef FLANKS_STATS_POINT_CORRELATION_H
#define FLANKS_STATS_POINT_CORRELATION_H

#include "run/fit_sums.h"

namespace flanks {

// The observed correlation, -1 to 1; 0 when all B or all x are equal, or without weight.
[[nodiscard]] float MeasureCorrelation(const CorrelationSums& sums);

// Its expectation under the model, -1 to 1; 0 when all B are equal, or without weight.
[[nodiscard]] float ExpectedCorrelation(const CorrelationSums& sums);

}  // namespace flanks

#endif  // FLANKS_STATS_POINT_CORRELATION_H
