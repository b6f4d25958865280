// What the pass over pairs of ratings finds: how often raters agreed, and how often the model
// expects it.
//
// Filled by stats/agreement, shown by Table 7.  A pair counts once for the run and once for each of
// its two raters.  Tested by tests/unit/stats/agreement_test.cpp.
#ifndef FLANKS_RUN_RATER_AGREEMENT_H
#define FLANKS_RUN_RATER_AGREEMENT_H

#include "base/column.h"
#include "run/design.h"

namespace flanks {

struct RaterAgreement {
  FlankNo raterFlank;  // no Flank: nothing was computed

  // Over the whole run: the sum of the pairs' weights, of those that agree, and of the chances.
  double AgreementOpportunities = 0.0;
  double AgreementExact = 0.0;
  double AgreementExpected = 0.0;

  // For each element of the Flank, from RaterLow to RaterHigh.  The last two are per cent of the
  // first, and 0 for a rater without a pair.
  ElementSlot RaterLow, RaterHigh;
  Column<ElementSlot, float> RaterOpportunities, RaterExact, RaterExpected;  // row 1: RaterLow

  // The row of a rater in these columns.
  ElementSlot RowOf(ElementSlot rater) const {
    return ElementSlot(rater - RaterLow + ElementSlot::first);
  }
};

}  // namespace flanks

#endif  // FLANKS_RUN_RATER_AGREEMENT_H
