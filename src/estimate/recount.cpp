#include "estimate/recount.h"

#include <algorithm>

#include "base/held_single.h"
#include "estimate/count_terms.h"
#include "estimate/pass_end.h"
#include "estimate/prox.h"
#include "estimate/subsets.h"

namespace flanks {

void ClearScores(Estimates& estimates) {
  for (const ElementSlot e : Upward(estimates.scores)) {
    ElementScores& scores = estimates.scores[e];
    scores.ObservedScore = scores.MaxScore = 0.0;
    scores.Count = scores.RawScore = scores.SmallestWeight = 0.0f;
  }
}

void KeepFirstScores(Estimates& estimates) {
  for (const ElementSlot e : Upward(estimates.scores)) {
    ElementScores& scores = estimates.scores[e];
    scores.FirstRawScore = scores.RawScore;
    scores.FirstCount = scores.Count;
  }
}

CountingPass::CountingPass(const PassParts& parts)
    : parts_(parts),
      wide_(static_cast<std::size_t>(parts.design.ElementTotal)),
      countTerms_(static_cast<std::size_t>(parts.scales.scales())) {}

PassResult CountingPass::Run(ObservationReader& reader, Recount recount, SubsetCheck* subsets) {
  reader_ = &reader;
  result_ = {};
  std::fill(wide_.begin(), wide_.end(), WideScores{});
  for (const ScaleRow scale : Upward(parts_.scales.scaleType)) {
    const ScaleType type = parts_.scales.scaleType[scale];
    const int top = parts_.scales.ScaleTopCategory[scale];
    if (top >= 2 && (type == ScaleType::binomial || type == ScaleType::poisson))
      FillCountTerms(type, top, countTerms_[scale.offset()]);
    else
      countTerms_[scale.offset()].clear();
  }
  reader.Begin(Categories::wanted);
  while (reader.Next()) {
    if (subsets != nullptr) subsets->TakeBlock(reader.block());
    for (std::size_t i = 0; i < reader.block().count; ++i)
      if (FeedsEstimation(reader.block().state[i])) CountObservation(i, recount);
  }
  Finish(recount);
  return result_;
}

void CountingPass::CountObservation(std::size_t i, Recount recount) {
  const ObservationBlock& block = reader_->block();
  const ScaleRow scale(block.scale[i]);
  const bool inPlay = block.state[i] == ObservationState::inPlay;
  const bool poisson = parts_.scales.scaleType[scale] == ScaleType::poisson;
  const bool recounting = recount == Recount::needed;
  if (block.weight[i] != 1.0f) parts_.estimates.iteration.anyWeight = true;
  if (poisson) result_.poissonSeen = true;
  if (inPlay) result_.dataSeen = true;
  if (inPlay && recounting) CountCategory(i);
  if (poisson && !recounting) return;
  const std::span<const FieldSense> senses = reader_->sense(block.structure[i]);
  for (std::size_t f = block.fields(); f-- > 0;) {
    const std::int32_t slot = block.slots[f][i];
    if (slot == 0) continue;
    if (!inPlay && IsInPlay(parts_.estimates.elements[ElementSlot(slot)].ElementStatus)) continue;
    if (recounting) CountElement(i, slot, senses[f].reversed);
    if (!poisson) AddRestMeasure(i, slot, senses[f].sign);
  }
  const bool manyCategories = parts_.scales.ScaleTopCategory[scale] > 1;
  if (inPlay && manyCategories && parts_.scales.scaleType[scale] == ScaleType::rating)
    parts_.scales.ExpectedCount.at(scale, block.category[i]) +=
        static_cast<double>(block.MeasureSum[i]) * block.weight[i];
}

void CountingPass::CountCategory(std::size_t i) {
  const ObservationBlock& block = reader_->block();
  const ScaleRow scale(block.scale[i]);
  const std::int16_t category = block.category[i];
  const double weight = block.weight[i];
  parts_.scales.ObservedCount.at(scale, category) += weight;
  const std::vector<double>& terms = countTerms_[scale.offset()];
  if (!terms.empty())
    parts_.scales.DiscriminationSums.at(scale, 0) +=
        weight * terms[static_cast<std::size_t>(category)];
}

void CountingPass::CountElement(std::size_t i, std::int32_t slot, bool reversed) {
  const ObservationBlock& block = reader_->block();
  const int top = parts_.scales.ScaleTopCategory[ScaleRow(block.scale[i])];
  const int category = block.category[i];
  const float weight = block.weight[i];
  const double w = weight;
  ElementScores& scores = parts_.estimates.scores[ElementSlot(slot)];
  WideScores& wide = wide_[static_cast<std::size_t>(slot) - 1];
  wide.Count += w;
  wide.RawScore += w * block.response[i];
  scores.ObservedScore += w * (reversed ? top - category : category);
  scores.MaxScore += w * top;
  if (scores.SmallestWeight == 0.0f || weight < scores.SmallestWeight)
    scores.SmallestWeight = weight;
}

void CountingPass::AddRestMeasure(std::size_t i, std::int32_t slot, int sign) {
  const ObservationBlock& block = reader_->block();
  ElementState& element = parts_.estimates.elements[ElementSlot(slot)];
  const double own = static_cast<double>(sign) * element.ElementMeasure;
  AddProx(static_cast<double>(block.MeasureSum[i]) - own, block.weight[i], element);
}

void CountingPass::Finish(Recount recount) {
  CutPassSums(parts_.estimates);
  if (recount == Recount::notNeeded) return;
  for (const ElementSlot e : Upward(parts_.estimates.scores)) {
    ElementScores& scores = parts_.estimates.scores[e];
    scores.Count = HeldSingle(wide_[e.offset()].Count);
    scores.RawScore = HeldSingle(wide_[e.offset()].RawScore);
  }
}

}  // namespace flanks
