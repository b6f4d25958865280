// The scales of a run: from the categories that the data showed to ordered categories.
//
// A rating scale's raw categories are those of the Specification; its ordered categories run from 0
// to ScaleTopCategory over the categories that have a place:
//   - those observed in estimable data;
//   - those with an anchored threshold, observed or not;
//   - with "Keep", unobserved ones that lie between such: they are *skipped*, which gives them a
//     place in the ordering and the probability 0.
// The tables are first built from what the data pass counted, and again after each recount, since
// extreme elements take observations, and so perhaps a category, out of play.  Thresholds belong to
// raw categories and go with them.
//
// A binomial scale has all its trials, whatever was observed.  A Poisson scale ends at its highest
// count, and is built again after a recount like a rating scale.
//
// Tested by tests/unit/estimate/scale_build_test.cpp.
#ifndef FLANKS_ESTIMATE_SCALE_BUILD_H
#define FLANKS_ESTIMATE_SCALE_BUILD_H

#include "run/design.h"
#include "run/scale_tables.h"

namespace flanks {

// Sizes all tables and orders the categories by the counts of the structures.  Thresholds start at
// 0, the discrimination of a binomial or Poisson scale at 1; over these come the values and anchors
// of the scale's definition: thresholds in user units (`uscale` of them to a logit), the
// discrimination, in category 0, as it stands.
void BuildScales(const Design& design, const StructureTable& structures, float uscale,
                 ScaleTables& scales);

// After a recount: categories whose ObservedCount is 0 lose their place, or are skipped.  True when
// a recode or a top category has changed: scores counted with the old ones are no longer right.
bool RebuildScales(ScaleTables& scales);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_SCALE_BUILD_H
