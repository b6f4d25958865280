// Means and S.D.s of the responses of a run: what Tables 5 and 11 show in their boxes.
//
// Tested by tests/unit/stats/residual_pass_test.cpp.
#ifndef FLANKS_STATS_RESIDUAL_SUMMARY_H
#define FLANKS_STATS_RESIDUAL_SUMMARY_H

#include <cstddef>
#include <cstdint>

#include "base/block_moments.h"

namespace flanks {

// What is summed of an observation.  Scores and expected scores are in scored categories: ordered
// categories that begin with the lowest category of the scale.
enum class ResidualColumn : std::uint8_t { category, score, expected, residual, StRes };
constexpr std::size_t kResidualColumns = 5;

using ResidualMoments = ColumnMoments;
using ResidualSummary = BlockSummary<kResidualColumns>;
using ResidualSums = BlockSums<kResidualColumns>;

}  // namespace flanks

#endif  // FLANKS_STATS_RESIDUAL_SUMMARY_H
