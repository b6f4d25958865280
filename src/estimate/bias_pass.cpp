#include "estimate/bias_pass.h"

#include <algorithm>

namespace flanks {
namespace {

void AddFirst(float w, double category, double raw, double top, BiasFirstSums& sums) {
  const double weight = w;
  if (sums.SmallestWeight == 0.0f || w < sums.SmallestWeight) sums.SmallestWeight = w;
  sums.Count += weight;
  sums.ObservedScore += weight * category;
  sums.RawScore += weight * raw;
  sums.MaxScore += weight * top;
}

}  // namespace

BiasBlock::BiasBlock(const PassParts& parts, BiasTermList& terms)
    : parts_(parts),
      termList_(terms),
      kernel_(parts.scales.scales()),
      terms_(kKernelBlock),
      laneOf_(kKernelBlock),
      measures_(kKernelBlock) {}

void BiasBlock::Begin() {
  KernelWork& work = parts_.estimates.work;
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit, work.filledTo);
  work.filledTo = std::max(work.filledTo, kernel_.filledTo());
}

void BiasBlock::Arrange(const ObservationReader& reader,
                        const Column<BiasTermRow, BiasState>* states) {
  const ObservationBlock& block = reader.block();
  termList_.FillTerms(reader, terms_);
  kernel_.Arrange(block, Lanes::mayBeMixed);
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) laneOf_[kernel_.entry(lane)] = lane;
  const float* const plain = kernel_.measures();
  if (states == nullptr) {
    std::copy_n(plain, kernel_.lanes(), measures_.begin());
    return;
  }
  const BiasState* const state = states->data();
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::int32_t term = terms_[kernel_.entry(lane)];
    const float bias =
        term == BiasTermList::kNoTerm ? 0.0f : state[static_cast<std::size_t>(term) - 1].Bias;
    measures_[lane] = plain[lane] + bias;
  }
}

// One by one the observations of a term alone: what others would leave in the shared array is not
// asked for.
void BiasBlock::Evaluate(float* expected, float* variance) {
  for (const LaneRun& run : kernel_.runs()) {
    if (!kernel_.oneByOne()) {
      kernel_.EvaluateAt(run, measures_.data(), expected, variance);
      continue;
    }
    if (terms_[kernel_.entry(run.first)] == BiasTermList::kNoTerm) continue;
    const KernelResult result =
        EvaluateOne(kernel_.scale(run.scale), measures_[run.first], parts_.estimates.work);
    expected[run.first] = result.expected;
    if (variance != nullptr) variance[run.first] = result.variance;
  }
}

BiasPass::BiasPass(const PassParts& parts, BiasTermList& terms)
    : parts_(parts),
      block_(parts, terms),
      expected_(kKernelBlock),
      variance_(kKernelBlock),
      residuals_(kKernelBlock) {}

void BiasPass::First(ObservationReader& reader, Column<BiasTermRow, BiasFirstSums>& sums) {
  residuals_.Clear();
  block_.Begin();
  reader.Begin(Categories::wanted);
  while (reader.Next()) {
    const ObservationBlock& block = reader.block();
    block_.Arrange(reader, nullptr);
    block_.Evaluate(expected_.data(), variance_.data());
    for (std::size_t i = 0; i < block.count; ++i) {
      block_.FetchAhead(i, block.count, sums);
      if (block_.term(i) == BiasTermList::kNoTerm) continue;
      BiasFirstSums& term = sums[BiasTermRow(block_.term(i))];
      const double weight = block.weight[i];
      const std::size_t lane = block_.lane(i);
      AddFirst(block.weight[i], block.category[i], block.response[i],
               parts_.scales.ScaleTopCategory[ScaleRow(block.scale[i])], term);
      term.ExpectedSum += weight * expected_[lane];
      term.Information += weight * variance_[lane];
      residuals_.Add({static_cast<double>(block.category[i]) - expected_[lane]}, weight);
    }
    residuals_.EndBlock();
  }
}

void BiasPass::Expected(ObservationReader& reader, Column<BiasTermRow, BiasState>& states) {
  block_.Begin();
  reader.Begin(Categories::notWanted);
  BiasState* const state = states.data();
  while (reader.Next()) {
    const ObservationBlock& block = reader.block();
    block_.Arrange(reader, &states);
    block_.Evaluate(expected_.data(), nullptr);
    for (std::size_t i = 0; i < block.count; ++i) {
      const std::int32_t term = block_.term(i);
      if (term == BiasTermList::kNoTerm) continue;
      const double weight = block.weight[i];
      state[static_cast<std::size_t>(term) - 1].ExpectedSum += weight * expected_[block_.lane(i)];
    }
  }
}

}  // namespace flanks
