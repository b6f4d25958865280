// The scales of a run: from the categories that the data showed to ordered categories.
//
// A scale's raw categories are those of the Specification; its ordered categories run from 0 to
// ScaleTopCategory without gaps over the categories that are observed in estimable data.  An
// unobserved category has no place.  The tables are first built from what the data pass counted,
// and again after each recount, since extreme elements take observations, and so perhaps a
// category, out of play.
//
// Tested by tests/unit/estimate/scale_build_test.cpp.
#ifndef FLANKS_ESTIMATE_SCALE_BUILD_H
#define FLANKS_ESTIMATE_SCALE_BUILD_H

#include "run/design.h"
#include "run/scale_tables.h"

namespace flanks {

// Sizes all tables and orders the categories by the counts of the structures.  Thresholds start at
// 0, the discrimination of a binomial or Poisson scale at 1.
void BuildScales(const Design& design, const StructureTable& structures, ScaleTables& scales);

// After a recount: categories whose ObservedCount is 0 lose their place.  True when a recode or a
// top category has changed: scores counted with the old ones are no longer right.
bool RebuildScales(ScaleTables& scales);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_SCALE_BUILD_H
