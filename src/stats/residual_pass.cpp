#include "stats/residual_pass.h"

#include <algorithm>

#include "base/single.h"
#include "estimate/moments.h"
#include "run/analysis.h"
#include "run/console.h"

namespace flanks {

ResidualPass::ResidualPass(const PassParts& parts)
    : parts_(parts),
      reader_(parts),
      kernel_(parts.scales.scales()),
      category_(kKernelBlock),
      laneOf_(kKernelBlock),
      sums_(kKernelBlock),
      elements_(static_cast<std::size_t>(parts.design.ModelFlankCount)) {
  for (std::vector<float>* row :
       {&lanes_.expected, &lanes_.ModelVariance, &lanes_.FourthMoment, &lanes_.ResidualVarianceTerm,
        &lanes_.ScoreResidual, &lanes_.SquaredResidual, &lanes_.SquaredStandardizedResidual,
        &lanes_.KurtosisRatio}) {
    row->resize(kKernelBlock);
  }
}

ResidualSummary ResidualPass::Run(UnexpectedList& list) {
  sums_.Clear();
  KernelWork& work = parts_.estimates.work;
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit, work.filledTo);
  work.filledTo = std::max(work.filledTo, kernel_.filledTo());
  reader_.Begin(Categories::wanted);
  while (reader_.Next()) {
    const ObservationBlock& block = reader_.block();
    Evaluate(block);
    Collect(block, list);
    sums_.EndBlock();
  }
  return sums_.summary();
}

void ResidualPass::Evaluate(const ObservationBlock& block) {
  kernel_.Arrange(block, Lanes::mayBeMixed);
  std::fill_n(laneOf_.begin(), block.count, -1);
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::size_t i = kernel_.entry(lane);
    laneOf_[i] = static_cast<std::int32_t>(lane);
    category_[lane] = block.category[i];
  }
  for (const LaneRun& run : kernel_.runs()) {
    if (kernel_.oneByOne()) {
      EvaluateOneByOne(run);
    } else {
      EvaluateBatch(run);
    }
  }
}

void ResidualPass::EvaluateBatch(const LaneRun& run) {
  const std::size_t at = run.first;
  kernel_.Evaluate(run, lanes_.expected.data(), nullptr);
  ObservationMoments(
      kernel_.scale(run.scale),
      {lanes_.expected.data() + at, kernel_.probability(run, 0), kKernelStride},
      {category_.data() + at, run.count},
      {lanes_.ModelVariance.data() + at, lanes_.FourthMoment.data() + at,
       lanes_.ResidualVarianceTerm.data() + at, lanes_.ScoreResidual.data() + at,
       lanes_.SquaredResidual.data() + at, lanes_.SquaredStandardizedResidual.data() + at,
       lanes_.KurtosisRatio.data() + at});
}

// A run of one observation, through the array that a Poisson scale reads beyond what is filled.
void ResidualPass::EvaluateOneByOne(const LaneRun& run) {
  const KernelScale& scale = kernel_.scale(run.scale);
  KernelWork& work = parts_.estimates.work;
  const std::size_t lane = run.first;
  lanes_.expected[lane] = EvaluateOne(scale, kernel_.measures()[lane], work).expected;
  const Moments moments =
      ObservationMoments(scale, lanes_.expected[lane], category_[lane], work.CategoryProbability);
  lanes_.ScoreResidual[lane] = moments.ScoreResidual;
  lanes_.SquaredStandardizedResidual[lane] = moments.SquaredStandardizedResidual;
}

void ResidualPass::Collect(const ObservationBlock& block, UnexpectedList& list) {
  for (std::size_t i = 0; i < block.count; ++i) {
    if (laneOf_[i] < 0) continue;
    const auto lane = static_cast<std::size_t>(laneOf_[i]);
    const double lowest = parts_.scales.lowestCategory[ScaleRow(block.scale[i])];
    const float StRes = StandardizedResidualOf(lanes_.SquaredStandardizedResidual[lane],
                                               lanes_.ScoreResidual[lane]);
    sums_.Add({static_cast<double>(block.response[i]), block.category[i] + lowest,
               lanes_.expected[lane] + lowest, lanes_.ScoreResidual[lane], StRes},
              block.weight[i]);
    if (!list.IsCandidate(StRes)) continue;
    FindElements(block, i);
    list.Add(Response(block, i, lane, StRes), elements_);
  }
}

KeptResponse ResidualPass::Response(const ObservationBlock& block, std::size_t i, std::size_t lane,
                                    float StRes) const {
  const std::int16_t lowest = parts_.scales.lowestCategory[ScaleRow(block.scale[i])];
  KeptResponse response;
  response.sequence = block.firstRecord + static_cast<std::int64_t>(i);
  response.category = block.response[i];
  response.score = static_cast<std::int16_t>(block.category[i] + lowest);
  response.expected = Single(static_cast<double>(lanes_.expected[lane]) + lowest);
  response.residual = lanes_.ScoreResidual[lane];
  response.StRes = StRes;
  response.MeasureSum = block.MeasureSum[i];
  return response;
}

// A position without a field, or whose element takes no part, has none.
void ResidualPass::FindElements(const ObservationBlock& block, std::size_t i) {
  std::fill(elements_.begin(), elements_.end(), ElementSlot(0));
  for (std::size_t field = 0; field < block.fields(); ++field)
    elements_[reader_.position(field).offset()] = ElementSlot(block.slots[field][i]);
}

ResidualSummary ComputeResiduals(Run& run) {
  Analysis& analysis = run.analysis;
  const Settings& settings = analysis.settings;
  UnexpectedList list(settings.Unexpected, settings.T4maximum, analysis.design.ModelFlankCount);
  ResidualPass pass(PassPartsOf(analysis, run.console));
  const ResidualSummary summary = pass.Run(list);
  if (!run.console.stopping()) analysis.unexpected = list.Finish();
  return summary;
}

}  // namespace flanks
