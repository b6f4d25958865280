#include "output/observation_figures.h"

#include <algorithm>
#include <cmath>

#include "base/single.h"
#include "estimate/moments.h"

namespace flanks {
namespace {

constexpr float kLargestDisplacement = 10.0f;  // logits
// Behind the lanes of a block: what has no figures.
constexpr std::size_t kNoFigures = kKernelBlock;

}  // namespace

ObservationFigures::ObservationFigures(const PassParts& parts)
    : parts_(parts),
      reader_(parts),
      kernel_(parts.scales.scales()),
      lane_(kKernelBlock),
      category_(kKernelBlock),
      mostProbable_(kKernelBlock + 1) {
  for (std::vector<float>* row : {&expected_, &residual_, &variance_, &square_, &standardized_,
                                  &logProbability_, &displacement_, &highest_})
    row->assign(kKernelBlock + 1, 0.0f);
  for (std::vector<float>& row : unused_) row.resize(kKernelBlock);
}

void ObservationFigures::Begin() {
  // A copy: what this pass leaves in the array is no business of the Tables'.
  work_ = parts_.estimates.work;
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit, work_.filledTo);
  reader_.Begin(Categories::wanted);
}

bool ObservationFigures::Next() {
  if (!reader_.Next()) return false;
  const ObservationBlock& block = reader_.block();
  kernel_.Arrange(block, Lanes::mayBeMixed);
  std::fill_n(lane_.begin(), block.count, static_cast<std::uint32_t>(kNoFigures));
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::size_t i = kernel_.entry(lane);
    lane_[i] = static_cast<std::uint32_t>(lane);
    category_[lane] = block.category[i];
  }
  for (const LaneRun& run : kernel_.runs()) {
    if (kernel_.oneByOne()) {
      EvaluateOneByOne(run);
      Derive(run, work_.CategoryProbability.data(), 1);
    } else {
      Evaluate(run);
      Derive(run, kernel_.probability(run, 0), kKernelStride);
    }
  }
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::int16_t lowest =
        parts_.scales.lowestCategory[ScaleRow(block.scale[kernel_.entry(lane)])];
    expected_[lane] = Single(static_cast<double>(expected_[lane]) + lowest);
    mostProbable_[lane] += lowest;
  }
  return true;
}

void ObservationFigures::Evaluate(const LaneRun& run) {
  const std::size_t at = run.first;
  kernel_.Evaluate(run, expected_.data(), nullptr);
  ObservationMoments(
      kernel_.scale(run.scale), {expected_.data() + at, kernel_.probability(run, 0), kKernelStride},
      {category_.data() + at, run.count},
      {variance_.data() + at, unused_[0].data(), unused_[1].data(), residual_.data() + at,
       unused_[2].data(), square_.data() + at, unused_[3].data()});
}

// A run of one observation: beside other scales a Poisson scale is taken so
// (estimate/block_kernel.h).
void ObservationFigures::EvaluateOneByOne(const LaneRun& run) {
  const KernelScale& scale = kernel_.scale(run.scale);
  const std::size_t lane = run.first;
  expected_[lane] = EvaluateOne(scale, kernel_.measures()[lane], work_).expected;
  const Moments moments =
      ObservationMoments(scale, expected_[lane], category_[lane], work_.CategoryProbability);
  variance_[lane] = moments.ModelVariance;
  residual_[lane] = moments.ScoreResidual;
  square_[lane] = moments.SquaredStandardizedResidual;
}

void ObservationFigures::Derive(const LaneRun& run, const float* probability, std::size_t stride) {
  const std::size_t first = run.first;
  for (std::size_t j = 0; j < run.count; ++j) {
    const std::size_t lane = first + j;
    standardized_[lane] = StandardizedResidualOf(square_[lane], residual_[lane]);
    const double variance = std::max(variance_[lane], kSmallestModelValue);
    displacement_[lane] =
        std::clamp(Single(residual_[lane] / variance), -kLargestDisplacement, kLargestDisplacement);
    const float observed = probability[static_cast<std::size_t>(category_[lane]) * stride + j];
    logProbability_[lane] =
        Single(std::log(static_cast<double>(std::max(observed, kSmallestModelValue))));
  }
  const int top = kernel_.scale(run.scale).top;
  float* const highest = highest_.data() + first;
  std::int32_t* const mode = mostProbable_.data() + first;
  const float* p = probability + static_cast<std::size_t>(top) * stride;
  for (std::size_t j = 0; j < run.count; ++j) {
    highest[j] = p[j];
    mode[j] = top;
  }
  for (std::int32_t k = top - 1; k >= 0; --k) {
    p -= stride;
    for (std::size_t j = 0; j < run.count; ++j) {
      const bool higher = p[j] > highest[j];
      mode[j] = higher ? k : mode[j];
      highest[j] = higher ? p[j] : highest[j];
    }
  }
}

}  // namespace flanks
