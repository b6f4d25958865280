// Point-biserial correlation of an element: its observations with the averages of the elements that
// it met.
//
// `Pt-biserial=Yes` and `Include` ask for it.  It needs no measures, so it is made from the data as
// they are, before the estimation; the point-measure correlation of the fit pass takes its place
// otherwise (stats/point_correlation.h).  Each observation gives each of its elements a pair: the
// observed value x, and y, the mean over its other elements of the average of their observations.
// The averages leave this observation out (Yes), or count all (Include).  A pair whose y is 0, or
// that has none, is left out.
//
// The work files are read twice: for the totals of the elements, then for the pairs.
//
// Tested by tests/unit/stats/point_biserial_test.cpp against a direct computation.
#ifndef FLANKS_STATS_POINT_BISERIAL_H
#define FLANKS_STATS_POINT_BISERIAL_H

#include <cstdint>
#include <optional>
#include <vector>

#include "base/column.h"
#include "estimate/observation.h"
#include "run/run.h"

namespace flanks {

enum class BiserialForm : std::uint8_t {
  withoutOwn,  // Yes: the averages leave the observation itself out
  include,     // Include: the averages of all observations
};

// Weighted sums of the pairs, as deviations from the first pair, which so keep their digits.
struct BiserialSums {
  double firstX = 0.0, firstY = 0.0;
  double n = 0.0;  // the sum of the weights
  double Sx = 0.0, Sy = 0.0, Sxx = 0.0, Syy = 0.0, Sxy = 0.0;

  void Add(double x, double y, double w);
};

// -1 to 1; 0 when all x or all y are equal, or without pairs.
[[nodiscard]] float BiserialCorrelation(const BiserialSums& sums, float tinyValue);

// Both sweeps: the correlation of each element.  Ends early when the run is to stop.
[[nodiscard]] Column<ElementSlot, float> PointBiserials(const PassParts& parts, BiserialForm form);

// A step of the run, before the estimation: fills `PointMeasure` when the form is asked for.
void CorrelatePointBiserial(Run& run);

}  // namespace flanks

#endif  // FLANKS_STATS_POINT_BISERIAL_H
