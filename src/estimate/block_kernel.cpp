#include "estimate/block_kernel.h"

#include <algorithm>
#include <numeric>

namespace flanks {

namespace {

// With fewer lanes to a scale the calls cost more than what they evaluate.
constexpr std::size_t kFewLanes = 32;

bool IsEvaluated(const ScaleTables& scales, ScaleRow row) {
  return scales.ScaleTopCategory[row] >= 1 && scales.scaleType[row] != ScaleType::missing;
}

bool IsPoisson(const KernelScale& scale) {
  return scale.type == ScaleType::poisson && scale.top >= 2;
}

bool HasSkipped(const KernelScale& scale) {
  return std::find(scale.skipped.begin(), scale.skipped.end(), 1) != scale.skipped.end();
}

}  // namespace

BlockKernel::BlockKernel(std::int32_t scaleCount)
    : scales_(static_cast<std::size_t>(scaleCount)),
      entries_(kKernelBlock),
      laneMeasures_(kKernelBlock),
      shifted_(kKernelBlock),
      scaleGroup_(static_cast<std::size_t>(scaleCount)),
      shapeGroup_(static_cast<std::size_t>(scaleCount)),
      // The shapes, by their top category, come behind the scales.
      laneOfGroup_(static_cast<std::size_t>(scaleCount) + kCategories, -1) {
  std::iota(scaleGroup_.begin(), scaleGroup_.end(), 0);
  runs_.reserve(kKernelBlock);
  groupsOfBlock_.reserve(kKernelBlock);
}

void BlockKernel::Begin(const ScaleTables& scales, float exponentLimit, std::int32_t filledTo) {
  filledTo_ = 0;
  const auto width = static_cast<std::size_t>(scales.width);
  shapeGroup_ = scaleGroup_;
  for (const ScaleRow row : Upward(scales.scaleType)) {
    if (!IsEvaluated(scales, row)) continue;
    const int top = scales.ScaleTopCategory[row];
    KernelScale& scale = scales_[row.offset()];
    SetUpKernelScale(scales.scaleType[row], top, std::span(scales.ThresholdTable.row(row), width),
                     std::span(scales.CategoryFlag.row(row), width), exponentLimit, scale);
    filledTo_ = std::max(filledTo_, scale.filled);
    if ((scale.type == ScaleType::rating || top < 2) && !HasSkipped(scale))
      shapeGroup_[row.offset()] = scales.scales() + top;
  }
  oneByOne_ = ReadsWhatOthersLeft(scales, filledTo);
  if (oneByOne_) return;
  EndPoissonSums(scales);
  const std::size_t cells = static_cast<std::size_t>(filledTo_ + 1) * kKernelStride;
  probability_.resize(cells);
  if (scales.scales() > 1) laneSteps_.resize(cells);
}

// Whether a Poisson scale may find more behind its own probabilities than zeros.
bool BlockKernel::ReadsWhatOthersLeft(const ScaleTables& scales, std::int32_t filledTo) const {
  const std::int32_t largest = std::max(filledTo, filledTo_);
  for (const ScaleRow row : Upward(scales.scaleType)) {
    if (!IsEvaluated(scales, row)) continue;
    const KernelScale& own = scale(row);
    if (IsPoisson(own) && own.filled < largest) return true;
  }
  return false;
}

// With nothing but zeros there, the sums end where the scale is filled.
void BlockKernel::EndPoissonSums(const ScaleTables& scales) {
  for (const ScaleRow row : Upward(scales.scaleType)) {
    if (!IsEvaluated(scales, row)) continue;
    KernelScale& own = scales_[row.offset()];
    if (IsPoisson(own)) own.varianceBound = own.filled;
  }
}

void BlockKernel::Arrange(const ObservationBlock& block, Lanes lanes) {
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
    ArrangeByGroups(block, lanes);
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

void BlockKernel::ArrangeByGroups(const ObservationBlock& block, Lanes lanes) {
  const std::size_t scales = CountGroups(block, scaleGroup_);
  if (lanes == Lanes::byScale || scales < 2 || scales * kFewLanes <= lanes_)
    return ArrangeByGroup(block, scaleGroup_);
  for (const std::int32_t group : groupsOfBlock_)
    laneOfGroup_[static_cast<std::size_t>(group)] = -1;
  CountGroups(block, shapeGroup_);
  ArrangeByGroup(block, shapeGroup_);
  FillLaneSteps(block);
}

// Counts the lanes, and those of each group; returns how many groups there are.
std::size_t BlockKernel::CountGroups(const ObservationBlock& block,
                                     const std::vector<std::int32_t>& groups) {
  lanes_ = 0;
  groupsOfBlock_.clear();
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!FeedsEstimation(block.state[i])) continue;
    const std::int32_t group = groups[static_cast<std::size_t>(block.scale[i])];
    std::int32_t& count = laneOfGroup_[static_cast<std::size_t>(group)];
    if (count < 0) {
      count = 0;
      groupsOfBlock_.push_back(group);
    }
    ++count;
    ++lanes_;
  }
  return groupsOfBlock_.size();
}

// Puts the counted observations into their lanes: within a group the order of the records stays.
void BlockKernel::ArrangeByGroup(const ObservationBlock& block,
                                 const std::vector<std::int32_t>& groups) {
  std::size_t first = 0;
  for (const std::int32_t group : groupsOfBlock_) {
    std::int32_t& lane = laneOfGroup_[static_cast<std::size_t>(group)];
    runs_.push_back({ScaleRow(-1), first, static_cast<std::size_t>(lane)});
    lane = static_cast<std::int32_t>(first);
    first += runs_.back().count;
  }
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!FeedsEstimation(block.state[i])) continue;
    const std::int32_t group = groups[static_cast<std::size_t>(block.scale[i])];
    std::int32_t& lane = laneOfGroup_[static_cast<std::size_t>(group)];
    entries_[static_cast<std::size_t>(lane++)] = static_cast<std::uint32_t>(i);
  }
  for (std::size_t run = 0; run < runs_.size(); ++run) {
    runs_[run].scale = ScaleRow(block.scale[entries_[runs_[run].first]]);
    laneOfGroup_[static_cast<std::size_t>(groupsOfBlock_[run])] = -1;
  }
}

// The runs by shape are mixed ones: each lane brings the steps of its scale.
void BlockKernel::FillLaneSteps(const ObservationBlock& block) {
  for (LaneRun& run : runs_) {
    run.mixed = shapeGroup_[run.scale.offset()] != scaleGroup_[run.scale.offset()];
    if (!run.mixed) continue;
    const auto top = static_cast<std::size_t>(scale(run.scale).top);
    for (std::size_t lane = run.first; lane < run.first + run.count; ++lane) {
      const KernelScale& own = scales_[static_cast<std::size_t>(block.scale[entries_[lane]])];
      for (std::size_t k = 1; k <= top; ++k) laneSteps_[k * kKernelStride + lane] = own.step[k];
    }
  }
}

void BlockKernel::Call(const LaneRun& run, const float* measures, const KernelRows& rows) {
  const std::span<const float> values(measures + run.first, run.count);
  if (run.mixed) {
    CategoryProbabilities(scale(run.scale), {laneSteps_.data() + run.first, kKernelStride}, values,
                          rows, width_);
  } else {
    CategoryProbabilities(scale(run.scale), values, rows, width_);
  }
}

KernelRows BlockKernel::RowsOf(const LaneRun& run, float* expected, float* variance) {
  return {expected + run.first, variance == nullptr ? nullptr : variance + run.first,
          probability_.data() + run.first, kKernelStride};
}

void BlockKernel::EvaluateScores(const LaneRun& run, float shift, float* expected) {
  const float* const from = measures_ + run.first;
  float* const to = shifted_.data() + run.first;
  for (std::size_t i = 0; i < run.count; ++i) to[i] = from[i] + shift;
  Call(run, shifted_.data(), RowsOf(run, expected, nullptr));
}

void BlockKernel::Evaluate(const LaneRun& run, float* expected, float* variance) {
  Call(run, measures_, RowsOf(run, expected, variance));
}

void BlockKernel::EvaluateAt(const LaneRun& run, const float* measures, float* expected,
                             float* variance) {
  Call(run, measures, RowsOf(run, expected, variance));
}

KernelResult EvaluateOne(const KernelScale& scale, float measure, KernelWork& work) {
  work.filledTo = std::max(work.filledTo, scale.filled);
  return CategoryProbabilities(scale, measure, work.CategoryProbability);
}

}  // namespace flanks
