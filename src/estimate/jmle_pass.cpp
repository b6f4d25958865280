#include "estimate/jmle_pass.h"

#include <algorithm>
#include <array>
#include <span>

#include "base/single.h"
#include "estimate/count_terms.h"
#include "estimate/discrimination_step.h"
#include "estimate/pass_end.h"

namespace flanks {
namespace {

bool IsCountScale(ScaleType type) {
  return type == ScaleType::binomial || type == ScaleType::poisson;
}

// Adds weight times probability to `kCount` sums, lane after lane.  The sums do not wait for each
// other, so several are raised together.
template <int kCount, bool kWeighted>
void AddRows(const float* probability, std::size_t lanes, const double* weight, double* sums) {
  std::array<double, kCount> sum;
  std::copy_n(sums, kCount, sum.begin());
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    for (std::size_t k = 0; k < kCount; ++k) {
      const double p = probability[k * kKernelStride + lane];
      sum[k] += kWeighted ? weight[lane] * p : p;
    }
  }
  std::copy_n(sum.begin(), kCount, sums);
}

template <bool kWeighted>
void AddAllRows(const float* probability, std::size_t lanes, const double* weight,
                std::span<double> sums) {
  constexpr int kTogether = 8;
  std::size_t k = 0;
  const auto from = [&] { return probability + k * kKernelStride; };
  for (; sums.size() - k >= kTogether; k += kTogether)
    AddRows<kTogether, kWeighted>(from(), lanes, weight, sums.data() + k);
  switch (sums.size() - k) {
    case 7:
      return AddRows<7, kWeighted>(from(), lanes, weight, sums.data() + k);
    case 6:
      return AddRows<6, kWeighted>(from(), lanes, weight, sums.data() + k);
    case 5:
      return AddRows<5, kWeighted>(from(), lanes, weight, sums.data() + k);
    case 4:
      return AddRows<4, kWeighted>(from(), lanes, weight, sums.data() + k);
    case 3:
      return AddRows<3, kWeighted>(from(), lanes, weight, sums.data() + k);
    case 2:
      return AddRows<2, kWeighted>(from(), lanes, weight, sums.data() + k);
    case 1:
      return AddRows<1, kWeighted>(from(), lanes, weight, sums.data() + k);
    default:
      return;
  }
}

void AddTo(ElementState& element, double expected, double shifted, double variance) {
  element.ExpectedSum += expected;
  element.ShiftedExpected += shifted;
  element.Information += variance;
}

}  // namespace

void ClearPassSums(Estimates& estimates) {
  for (const ElementSlot e : Upward(estimates.elements)) {
    ElementState& element = estimates.elements[e];
    if (element.ElementStatus == kStatusUnused || element.ElementStatus == kStatusDropped) continue;
    element.ExpectedSum = element.ShiftedExpected = element.Information = 0.0;
  }
}

void ClearScaleSums(Recount recount, ScaleTables& scales) {
  for (const ScaleRow scale : Downward(scales.scaleType)) {
    std::fill_n(scales.ExpectedCount.row(scale), scales.width, 0.0);
    if (recount == Recount::needed) {
      std::fill_n(scales.ObservedCount.row(scale), scales.width, 0.0);
      std::fill_n(scales.DiscriminationSums.row(scale), scales.width, 0.0);
    } else if (IsCountScale(scales.scaleType[scale])) {
      scales.DiscriminationSums.at(scale, 1) = 0.0;
    }
  }
}

JmlePass::JmlePass(const PassParts& parts)
    : parts_(parts),
      kernel_(parts.scales.scales()),
      countTerms_(static_cast<std::size_t>(parts.scales.scales())),
      byLane_(kKernelBlock),
      byEntry_(kKernelBlock),
      laneWeight_(kKernelBlock),
      slotRows_(parts.work.layout.fields.size()) {}

PassResult JmlePass::Run(ObservationReader& reader, float newtonStep) {
  result_ = {};
  secantShift_ = newtonStep == 0.0f ? -parts_.estimates.iteration.SecantDelta : 0.0f;
  std::fill(byLane_.shifted.begin(), byLane_.shifted.end(), 0.0f);  // by Newton-Raphson they stay
  KernelWork& work = parts_.estimates.work;
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit, work.filledTo);
  work.filledTo = std::max(work.filledTo, kernel_.filledTo());
  FillTerms();
  reader.Begin(Categories::notWanted);
  while (reader.Next()) {
    Evaluate(reader.block());
    if (reader.block().usual) {
      AddUsual(reader.block(), ByEntry());
    } else {
      AddOneByOne(reader, ByEntry());
    }
  }
  CutPassSums(parts_.estimates);
  return result_;
}

// A binomial scale has terms to its top, a Poisson scale to where it is filled.
void JmlePass::FillTerms() {
  for (const ScaleRow scale : Upward(parts_.scales.scaleType)) {
    std::vector<double>& terms = countTerms_[scale.offset()];
    terms.clear();
    if (EstimatesDiscrimination(parts_.scales, scale))
      FillCountTerms(parts_.scales.scaleType[scale], kernel_.scale(scale).filled, terms);
  }
}

void JmlePass::Evaluate(const ObservationBlock& block) {
  kernel_.Arrange(block, Lanes::mayBeMixed);
  NoteRange();
  WeighLanes(block);
  if (kernel_.oneByOne()) return EvaluateOneByOne(block);
  for (const LaneRun& run : kernel_.runs()) {
    if (secantShift_ != 0.0f) kernel_.EvaluateScores(run, secantShift_, byLane_.shifted.data());
    kernel_.Evaluate(run, byLane_.expected.data(), byLane_.variance.data());
    if (run.mixed) {
      AddMixedCounts(block, run);
    } else {
      AddCounts(run);
    }
  }
}

// Through the shared array, whose upper entries a Poisson scale reads: so in the order of the
// records, and everything that reads it before the next call.
void JmlePass::EvaluateOneByOne(const ObservationBlock& block) {
  KernelWork& work = parts_.estimates.work;
  for (const LaneRun& run : kernel_.runs()) {
    const KernelScale& scale = kernel_.scale(run.scale);
    const float measure = kernel_.measures()[run.first];
    if (secantShift_ != 0.0f)
      byLane_.shifted[run.first] = EvaluateOne(scale, measure + secantShift_, work).expected;
    const KernelResult result = EvaluateOne(scale, measure, work);
    byLane_.expected[run.first] = result.expected;
    byLane_.variance[run.first] = result.variance;
    if (block.state[kernel_.entry(run.first)] == ObservationState::inPlay) AddOneCount(run);
  }
}

// The smallest and the largest measure sum: sixteen of each, since one would have to wait for
// itself.
void JmlePass::NoteRange() {
  constexpr std::size_t kTogether = 16;
  std::array<float, kTogether> low{}, high{};
  const float* const measures = kernel_.measures();
  std::size_t lane = 0;
  for (; lane + kTogether <= kernel_.lanes(); lane += kTogether) {
    for (std::size_t j = 0; j < kTogether; ++j) {
      low[j] = MinSingle(low[j], measures[lane + j]);
      high[j] = MaxSingle(high[j], measures[lane + j]);
    }
  }
  for (; lane < kernel_.lanes(); ++lane) {
    low[0] = MinSingle(low[0], measures[lane]);
    high[0] = MaxSingle(high[0], measures[lane]);
  }
  IterationState& state = parts_.estimates.iteration;
  for (std::size_t j = 0; j < kTogether; ++j) {
    state.smallestMeasureSum = std::min<double>(state.smallestMeasureSum, low[j]);
    state.largestMeasureSum = std::max<double>(state.largestMeasureSum, high[j]);
  }
}

// Only observations with all elements in play count for their scale.
void JmlePass::WeighLanes(const ObservationBlock& block) {
  weighted_ = !block.usual;
  if (!weighted_) {
    result_.dataSeen = result_.dataSeen || block.count > 0;
    return;
  }
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::size_t i = kernel_.entry(lane);
    const bool inPlay = block.state[i] == ObservationState::inPlay;
    laneWeight_[lane] = inPlay ? static_cast<double>(block.weight[i]) : 0.0;
    result_.dataSeen = result_.dataSeen || inPlay;
  }
}

void JmlePass::AddCounts(const LaneRun& run) {
  if (parts_.scales.ScaleTopCategory[run.scale] < 2) return;
  if (parts_.scales.scaleType[run.scale] == ScaleType::rating) {
    AddRatingCounts(run);
  } else if (!countTerms_[run.scale.offset()].empty()) {
    AddCountTerms(run);
  }
}

void JmlePass::AddRatingCounts(const LaneRun& run) {
  const auto categories = static_cast<std::size_t>(parts_.scales.ScaleTopCategory[run.scale]) + 1;
  const std::span<double> sums(parts_.scales.ExpectedCount.row(run.scale), categories);
  const float* const probability = kernel_.probability(run, 0);
  const double* const weight = laneWeight_.data() + run.first;
  if (weighted_) {
    AddAllRows<true>(probability, run.count, weight, sums);
  } else {
    AddAllRows<false>(probability, run.count, weight, sums);
  }
}

// Each lane to its own scale, all with the same top category.
void JmlePass::AddMixedCounts(const ObservationBlock& block, const LaneRun& run) {
  const auto top = static_cast<std::size_t>(parts_.scales.ScaleTopCategory[run.scale]);
  if (top < 2) return;
  for (std::size_t lane = 0; lane < run.count; ++lane) {
    const std::size_t i = kernel_.entry(run.first + lane);
    double* const sums = parts_.scales.ExpectedCount.row(ScaleRow(block.scale[i]));
    const float* const probability = kernel_.probability(run, 0) + lane;
    const double weight = weighted_ ? laneWeight_[run.first + lane] : 1.0;
    for (std::size_t k = 0; k <= top; ++k) sums[k] += weight * probability[k * kKernelStride];
  }
}

// The mean and the variance of the terms in each observation of a binomial or Poisson scale.
void JmlePass::AddCountTerms(const LaneRun& run) {
  const std::vector<double>& terms = countTerms_[run.scale.offset()];
  double& expected = parts_.scales.ExpectedCount.at(run.scale, 0);
  double& variance = parts_.scales.DiscriminationSums.at(run.scale, 1);
  for (std::size_t lane = 0; lane < run.count; ++lane) {
    const float* const probability = kernel_.probability(run, 0) + lane;
    double first = 0.0, second = 0.0;
    for (std::size_t k = 1; k < terms.size(); ++k) {
      const double term = terms[k] * probability[k * kKernelStride];
      first += term;
      second += terms[k] * term;
    }
    const double weight = weighted_ ? laneWeight_[run.first + lane] : 1.0;
    expected += weight * first;
    variance += weight * (second - first * first);
  }
}

// The same from the shared array, for one observation on any scale.
// Kept: a Poisson scale sums to the end of the array, over what earlier calls left there; entries
// that no call has filled yet are 0.
void JmlePass::AddOneCount(const LaneRun& run) {
  const ProbabilityArray& probability = parts_.estimates.work.CategoryProbability;
  const ScaleType type = parts_.scales.scaleType[run.scale];
  const auto top = static_cast<std::size_t>(parts_.scales.ScaleTopCategory[run.scale]);
  const double weight = weighted_ ? laneWeight_[run.first] : 1.0;
  if (type == ScaleType::poisson) result_.poissonSeen = true;
  if (top < 2) return;
  if (type == ScaleType::rating) {
    for (std::size_t k = top + 1; k-- > 0;)
      parts_.scales.ExpectedCount.at(run.scale, static_cast<int>(k)) += weight * probability[k];
    return;
  }
  const std::vector<double>& own = countTerms_[run.scale.offset()];
  if (own.empty()) return;
  const bool poisson = type == ScaleType::poisson;
  const std::span<const double> terms = poisson ? LogFactorial() : std::span<const double>(own);
  const std::size_t last = poisson ? static_cast<std::size_t>(parts_.estimates.work.filledTo) : top;
  double first = 0.0, second = 0.0;
  for (std::size_t k = poisson ? 2 : 1; k <= last; ++k) {
    const double term = terms[k] * probability[k];
    first += term;
    second += terms[k] * term;
  }
  parts_.scales.ExpectedCount.at(run.scale, 0) += weight * first;
  parts_.scales.DiscriminationSums.at(run.scale, 1) += weight * (second - first * first);
}

// The results by entry of the block.
const JmlePass::Results& JmlePass::ByEntry() {
  if (kernel_.inPlace()) return byLane_;
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::size_t i = kernel_.entry(lane);
    byEntry_.expected[i] = byLane_.expected[lane];
    byEntry_.shifted[i] = byLane_.shifted[lane];
    byEntry_.variance[i] = byLane_.variance[lane];
  }
  return byEntry_;
}

void JmlePass::AddUsual(const ObservationBlock& block, const Results& results) {
  ElementState* const elements = parts_.estimates.elements.data();
  for (std::size_t f = 0; f < block.fields(); ++f) slotRows_[f] = block.slots[f].data();
  for (std::size_t i = 0; i < block.count; ++i) {
    const double expected = results.expected[i];
    const double shifted = results.shifted[i];
    const double variance = results.variance[i];
    for (std::size_t f = slotRows_.size(); f-- > 0;)
      AddTo(elements[static_cast<std::size_t>(slotRows_[f][i]) - 1], expected, shifted, variance);
  }
}

void JmlePass::AddOneByOne(const ObservationReader& reader, const Results& results) {
  const ObservationBlock& block = reader.block();
  for (std::size_t i = 0; i < block.count; ++i)
    if (FeedsEstimation(block.state[i])) AddObservation(reader, i, results);
}

void JmlePass::AddObservation(const ObservationReader& reader, std::size_t i,
                              const Results& results) {
  const ObservationBlock& block = reader.block();
  const bool inPlay = block.state[i] == ObservationState::inPlay;
  const double weight = block.weight[i];
  const double top = parts_.scales.ScaleTopCategory[ScaleRow(block.scale[i])];
  const double expected = results.expected[i];
  const double shifted = results.shifted[i];
  const double variance = weight * results.variance[i];
  const std::span<const FieldSense> senses = reader.sense(block.structure[i]);
  for (std::size_t f = block.fields(); f-- > 0;) {
    const std::int32_t slot = block.slots[f][i];
    if (slot == 0) continue;
    ElementState& element = parts_.estimates.elements[ElementSlot(slot)];
    if (!inPlay && IsInPlay(element.ElementStatus)) continue;
    if (senses[f].reversed) {
      AddTo(element, weight * (top - expected), weight * (top - shifted), variance);
    } else {
      AddTo(element, weight * expected, weight * shifted, variance);
    }
  }
}

}  // namespace flanks
