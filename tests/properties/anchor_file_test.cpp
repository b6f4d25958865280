// The anchor file of any run is a Specification whose run shows the same measures and thresholds.
#include <gtest/gtest.h>
#include <string>

#include "support/anchored_again.h"
#include "support/odd_design.h"
#include "support/random_report.h"

namespace flanks {
namespace {

TEST(AnchorFile, OfARandomDesignRunsToTheSameMeasures) {
  int completed = 0;
  for (std::uint64_t seed = 1; seed <= 25; ++seed) {
    AnchoredAgain trip;
    trip.withinSinglePrecision = true;
    const std::string specification = RandomReport(seed).Specification();
    const std::string difference = trip.Difference(specification);
    if (!trip.firstCompleted) continue;
    ++completed;
    EXPECT_EQ(difference, "") << "seed " << seed << "\n" << trip.AnchorFile();
  }
  EXPECT_GT(completed, 12);
}

TEST(AnchorFile, OfAnOddDesignRunsToTheSameMeasures) {
  int completed = 0;
  for (unsigned seed = 1; seed <= 50; ++seed) {
    AnchoredAgain trip;
    trip.withinSinglePrecision = true;
    const OddDesign design = MakeOddDesign(seed);
    trip.run.Write("data.txt", design.data);
    const std::string difference = trip.Difference(design.specification);
    if (!trip.firstCompleted) continue;
    ++completed;
    EXPECT_EQ(difference, "") << "seed " << seed << "\n"
                              << design.specification << "\n"
                              << trip.AnchorFile();
  }
  EXPECT_GT(completed, 25);
}

}  // namespace
}  // namespace flanks
