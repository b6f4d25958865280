// Evaluating a block of observations: the kernel called for each scale that occurs in it.
//
// The observations that feed estimation are put into *lanes*, those of one scale together and in
// the order of their records, and the kernel fills its rows by lane.  Where all observations of a
// block are of the usual kind and on one scale, which is most of the time, the lanes are the
// observations as they stand and nothing is moved.
//
//   BlockKernel kernel(scaleCount);             // once: allocates
//   kernel.Begin(scales, limit);                // at the head of each pass: looks up thresholds
//   kernel.Arrange(block, Lanes::byScale);      // for each block
//   for (const LaneRun& run : kernel.runs()) ...   kernel.Evaluate(run) ...
//
// A Poisson scale reads probabilities beyond those that its call fills: what earlier calls left
// behind.  Where no call fills more than it does, as with one Poisson scale, these are all 0 and
// add nothing, and its sums end where it is filled.  Otherwise the observations are taken one by
// one, in the order of their records, through the shared array: `oneByOne()` tells so, and the
// lanes are then in record order whatever their scales.  Top categories change at recounts, which
// come before the first call of the kernel.
//
// Tested by tests/unit/estimate/block_kernel_test.cpp and through the passes.
#ifndef FLANKS_ESTIMATE_BLOCK_KERNEL_H
#define FLANKS_ESTIMATE_BLOCK_KERNEL_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/vector_width.h"
#include "estimate/kernel.h"
#include "estimate/observation.h"
#include "run/estimates.h"
#include "run/scale_tables.h"

namespace flanks {

// Lanes first to first + count - 1, all on one scale; or mixed, on scales that differ in their
// steps alone, in the order of their records (`scale` is then that of the first lane).
struct LaneRun {
  ScaleRow scale;
  std::size_t first = 0;
  std::size_t count = 0;
  bool mixed = false;
};

// How the lanes of a block may be put together.
enum class Lanes : std::uint8_t {
  byScale,    // each run on one scale
  mayBeMixed  // where many scales leave few lanes to each, those of one shape make a run
};

class BlockKernel {
 public:
  explicit BlockKernel(std::int32_t scaleCount);

  // `filledTo`: the last entry of the shared array that earlier passes have filled.
  void Begin(const ScaleTables& scales, float exponentLimit, std::int32_t filledTo = 0);
  bool oneByOne() const { return oneByOne_; }
  // The last category that a call of this pass fills.
  std::int32_t filledTo() const { return filledTo_; }
  const KernelScale& scale(ScaleRow row) const { return scales_[row.offset()]; }

  void Arrange(const ObservationBlock& block, Lanes lanes = Lanes::byScale);
  std::span<const LaneRun> runs() const { return runs_; }
  std::size_t lanes() const { return lanes_; }
  // The entry of the block that a lane holds.
  std::size_t entry(std::size_t lane) const { return inPlace_ ? lane : entries_[lane]; }
  // The lanes are the block's entries as they stand.
  bool inPlace() const { return inPlace_; }
  // By lane.
  const float* measures() const { return measures_; }

  // Fills the rows of a run's lanes at their measures plus `shift` (logits; 0 for as they are).
  // The first form leaves the variance out.
  void EvaluateScores(const LaneRun& run, float shift, float* expected);
  void Evaluate(const LaneRun& run, float* expected, float* variance);
  // The same at other measures, by lane; a null `variance` is left out.
  void EvaluateAt(const LaneRun& run, const float* measures, float* expected,
                  float* variance = nullptr);
  // The steps of a mixed run's lanes.
  LaneSteps steps(const LaneRun& run) const {
    return {laneSteps_.data() + run.first, kKernelStride};
  }
  // The probability of category k of a run's first lane; the next lane follows it.
  const float* probability(const LaneRun& run, int k) const {
    return probability_.data() + static_cast<std::size_t>(k) * kKernelStride + run.first;
  }

 private:
  bool ReadsWhatOthersLeft(const ScaleTables& scales, std::int32_t filledTo) const;
  void EndPoissonSums(const ScaleTables& scales);
  void ArrangeInRecordOrder(const ObservationBlock& block);
  void ArrangeByGroups(const ObservationBlock& block, Lanes lanes);
  void ArrangeByGroup(const ObservationBlock& block, const std::vector<std::int32_t>& groups);
  std::size_t CountGroups(const ObservationBlock& block, const std::vector<std::int32_t>& groups);
  void FillLaneSteps(const ObservationBlock& block);
  void Call(const LaneRun& run, const float* measures, const KernelRows& rows);
  KernelRows RowsOf(const LaneRun& run, float* expected, float* variance);

  std::vector<KernelScale> scales_;
  bool oneByOne_ = false;
  std::int32_t filledTo_ = 0;
  VectorWidth width_ = ChosenVectorWidth();

  bool inPlace_ = false;
  std::size_t lanes_ = 0;
  const float* measures_ = nullptr;
  std::vector<LaneRun> runs_;
  std::vector<std::uint32_t> entries_;  // by lane
  std::vector<float> laneMeasures_;
  std::vector<float> shifted_;
  std::vector<float> probability_;
  // A group of lanes is a scale, or a shape: the scales that may stand in one mixed run.
  std::vector<std::int32_t> scaleGroup_, shapeGroup_;  // by scale
  std::vector<std::int32_t> laneOfGroup_;    // by group: where its next observation goes; -1: none
  std::vector<std::int32_t> groupsOfBlock_;  // in order of their first observation
  std::vector<double> laneSteps_;            // by category and lane, of mixed runs
};

// One observation through the shared array, which keeps count of what has been filled.
KernelResult EvaluateOne(const KernelScale& scale, float measure, KernelWork& work);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_BLOCK_KERNEL_H
