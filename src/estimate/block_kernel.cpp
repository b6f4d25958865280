#include "estimate/block_kernel.h"

#include <algorithm>

namespace flanks {

BlockKernel::BlockKernel(std::int32_t scaleCount)
    : scales_(static_cast<std::size_t>(scaleCount)),
      entries_(kKernelBlock),
      laneMeasures_(kKernelBlock),
      shifted_(kKernelBlock),
      laneOfScale_(static_cast<std::size_t>(scaleCount), -1) {
  runs_.reserve(kKernelBlock);
  scalesOfBlock_.reserve(kKernelBlock);
}

void BlockKernel::Begin(const ScaleTables& scales, float exponentLimit) {
  oneByOne_ = false;
  int rows = 1;
  const auto width = static_cast<std::size_t>(scales.width);
  for (const ScaleRow row : Upward(scales.scaleType)) {
    const int top = scales.ScaleTopCategory[row];
    if (top < 1 || scales.scaleType[row] == ScaleType::missing) continue;  // never evaluated
    SetUpKernelScale(scales.scaleType[row], top, std::span(scales.ThresholdTable.row(row), width),
                     std::span(scales.CategoryFlag.row(row), width), exponentLimit,
                     scales_[row.offset()]);
    const KernelScale& scale = scales_[row.offset()];
    rows = std::max(rows, scale.varianceBound);
    oneByOne_ = oneByOne_ || (scale.type == ScaleType::poisson && top >= 2);
  }
  if (!oneByOne_) probability_.resize(static_cast<std::size_t>(rows + 1) * kKernelStride);
}

void BlockKernel::Arrange(const ObservationBlock& block) {
  runs_.clear();
  inPlace_ = block.usual && block.oneScale && !oneByOne_;
  if (inPlace_) {
    lanes_ = block.count;
    measures_ = block.MeasureSum.data();
    runs_.push_back({ScaleRow(block.scale[0]), 0, block.count});
    return;
  }
  if (oneByOne_) {
    ArrangeInRecordOrder(block);
  } else {
    ArrangeByScale(block);
  }
  for (std::size_t lane = 0; lane < lanes_; ++lane)
    laneMeasures_[lane] = block.MeasureSum[entries_[lane]];
  measures_ = laneMeasures_.data();
}

void BlockKernel::ArrangeInRecordOrder(const ObservationBlock& block) {
  lanes_ = 0;
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!FeedsEstimation(block.state[i])) continue;
    runs_.push_back({ScaleRow(block.scale[i]), lanes_, 1});
    entries_[lanes_++] = static_cast<std::uint32_t>(i);
  }
}

// Counted first, then put into place: within a scale the order of the records stays.
void BlockKernel::ArrangeByScale(const ObservationBlock& block) {
  scalesOfBlock_.clear();
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!FeedsEstimation(block.state[i])) continue;
    std::int32_t& count = laneOfScale_[static_cast<std::size_t>(block.scale[i])];
    if (count < 0) {
      count = 0;
      scalesOfBlock_.push_back(block.scale[i]);
    }
    ++count;
  }
  lanes_ = 0;
  for (const std::int32_t scale : scalesOfBlock_) {
    std::int32_t& lane = laneOfScale_[static_cast<std::size_t>(scale)];
    runs_.push_back({ScaleRow(scale), lanes_, static_cast<std::size_t>(lane)});
    lane = static_cast<std::int32_t>(lanes_);
    lanes_ += runs_.back().count;
  }
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!FeedsEstimation(block.state[i])) continue;
    std::int32_t& lane = laneOfScale_[static_cast<std::size_t>(block.scale[i])];
    entries_[static_cast<std::size_t>(lane++)] = static_cast<std::uint32_t>(i);
  }
  for (const std::int32_t scale : scalesOfBlock_)
    laneOfScale_[static_cast<std::size_t>(scale)] = -1;
}

KernelRows BlockKernel::RowsOf(const LaneRun& run, float* expected, float* variance) {
  return {expected + run.first, variance == nullptr ? nullptr : variance + run.first,
          probability_.data() + run.first, kKernelStride};
}

void BlockKernel::EvaluateScores(const LaneRun& run, float shift, float* expected) {
  const float* const from = measures_ + run.first;
  float* const to = shifted_.data() + run.first;
  for (std::size_t i = 0; i < run.count; ++i) to[i] = from[i] + shift;
  CategoryProbabilities(scale(run.scale), std::span(to, run.count), RowsOf(run, expected, nullptr),
                        width_);
}

void BlockKernel::Evaluate(const LaneRun& run, float* expected, float* variance) {
  CategoryProbabilities(scale(run.scale), std::span(measures_ + run.first, run.count),
                        RowsOf(run, expected, variance), width_);
}

KernelResult EvaluateOne(const KernelScale& scale, float measure, KernelWork& work) {
  work.filledTo = std::max(work.filledTo, scale.filled);
  return CategoryProbabilities(scale, measure, work.CategoryProbability);
}

}  // namespace flanks
