// The pass behind the category statistics: every observation is read once more, at the final
// measures, and its measure sum is added to the category that it is in and, by their probabilities,
// to all categories of its scale.  Nothing of the run is changed.
//
// It has the form of all passes (stats/fit_pass.h): read a block, evaluate it in batches, add in
// record order, in 64 bits, categories from the last to the first.  Only observations with all
// elements in play enter the sums of measures; `Total` counts every response that has a weight.
//
// With w the weight of an observation, B its measure sum, x its ordered category, p(k) the
// probability of category k and z the standardized residual (B. D. Wright and G. N. Masters, Rating
// Scale Analysis, 1982):
//
//   average measure of k    sum of w B over x = k       / sum of w over x = k
//   expected average of k   sum of w p(k) B             / sum of w p(k)
//   outfit of k             sum of w z squared, x = k   / sum of w over x = k
//   displacement of threshold k, with P(k) the probability of k and above
//                           sum of w (P(k) - [x >= k])  / sum of w P(k) (1 - P(k))
//
// Tested by tests/unit/stats/category_pass_test.cpp.
#ifndef FLANKS_STATS_CATEGORY_PASS_H
#define FLANKS_STATS_CATEGORY_PASS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "run/scale_tables.h"

namespace flanks {

// By scale; `Total` by raw category, the others by ordered category.  Logits.
struct CategorySums {
  Grid<ScaleRow, double> Total;             // w, whatever the state of the observation
  Grid<ScaleRow, double> Used;              // w over x = k
  Grid<ScaleRow, double> MeasureTotal;      // w B over x = k
  Grid<ScaleRow, double> OutfitTotal;       // w z squared over x = k
  Grid<ScaleRow, double> Expected;          // w p(k)
  Grid<ScaleRow, double> ExpectedMeasures;  // w p(k) B
  Grid<ScaleRow, double> Information;       // of threshold k: w P(k) (1 - P(k)), P of k and above
};

// What the sums say of one category; all 0 where nothing is known.
struct CategoryFigures {
  double average = 0.0, expectedAverage = 0.0;  // logits
  double outfit = 0.0;
};
CategoryFigures FiguresOf(const CategorySums& sums, ScaleRow scale, int category);

// What is to be added to threshold `category`, 1 to `top`, to come to where the data would put it:
// residual over variance, a step of Newton's, as the displacement of an element is.  Logits; none
// where no observation has a say.
std::optional<double> DisplacementOf(const CategorySums& sums, ScaleRow scale, int category,
                                     int top);

// The pass itself.  Sized once for the design of `parts`, which must outlive it.
class CategoryPass {
 public:
  explicit CategoryPass(const PassParts& parts);

  // Adds all observations; ends early when the run is to stop.
  void Run();
  const CategorySums& sums() const { return sums_; }

 private:
  void AddTotals(const ObservationBlock& block);
  void Evaluate(const LaneRun& run);
  void EvaluateOneByOne(const LaneRun& run);
  void AddRun(const ObservationBlock& block, const LaneRun& run, const float* probability,
              std::size_t stride);

  PassParts parts_;
  ObservationReader reader_;
  BlockKernel kernel_;
  KernelWork work_;
  CategorySums sums_;
  // By lane.
  std::vector<std::int16_t> category_;
  std::vector<float> expected_, square_;
  std::vector<float> scratch_[6];  // moments that nobody asks for
};

}  // namespace flanks

#endif  // FLANKS_STATS_CATEGORY_PASS_H
