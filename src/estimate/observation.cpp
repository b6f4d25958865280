#include "estimate/observation.h"

#include <algorithm>
#include <cassert>

#include "base/held_single.h"
#include "report/format/join_number.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/messages.h"

namespace flanks {
namespace {

// The window has its turn once for so many blocks: some tenths of a millisecond.
constexpr int kBlocksForATurn = 16;

bool IsUsual(std::int16_t status, float weight) {
  return IsInPlay(status) && weight == 1.0f;
}

// Kept apart because a statement's "@" and X positions stay in the records, and what they are in a
// measure is decided here alone.
FieldSense SenseOf(const PositionReference& reference, bool positive, bool reversals) {
  if (!reference.measures()) return {};
  const bool reversed = reversals && reference.reversed;
  return {static_cast<std::int8_t>(positive != reversed ? 1 : -1), reversed};
}

}  // namespace

PassParts PassPartsOf(Analysis& analysis, Console& console) {
  return {analysis.design,
          analysis.structures,
          analysis.work,
          analysis.scales,
          analysis.estimates,
          analysis.settings.Reversed && analysis.design.models.anyReversed,
          &console};
}

ObservationReader::ObservationReader(const PassParts& parts)
    : parts_(parts), fields_(parts.work.layout.fields.size()) {
  const auto structureCount = static_cast<std::size_t>(parts.structures.structureModel.rows());
  structures_.resize(structureCount);
  senses_.resize(structureCount * fields_);
  for (const StructureRow structure : Upward(parts.structures.structureModel))
    SetUpStructure(structure);
  for (const ElementLayout::Field& field : parts.work.layout.fields)
    fieldSign_.push_back(IsPositive(parts.design.flanks, field.flank) ? 1.0f : -1.0f);
  const auto scaleCount = static_cast<std::size_t>(parts.scales.scales());
  recode_.resize(scaleCount);
  everyCategoryHasPlace_.resize(scaleCount);

  block_.structure.resize(kKernelBlock);
  block_.scale.resize(kKernelBlock);
  block_.response.resize(kKernelBlock);
  block_.category.resize(kKernelBlock);
  block_.weight.resize(kKernelBlock);
  block_.MeasureSum.resize(kKernelBlock);
  block_.state.resize(kKernelBlock);
  block_.slots.assign(fields_, std::vector<std::int32_t>(kKernelBlock));
}

Position ObservationReader::position(std::size_t field) const {
  return parts_.work.layout.fields[field].position;
}

void ObservationReader::SetUpStructure(StructureRow structure) {
  const ModelRow model = parts_.structures.structureModel[structure];
  StructureInfo& info = structures_[structure.offset()];
  info.scale = parts_.structures.structureScale[structure].number();
  info.weight = parts_.design.models.ModelWeight[model];
  info.usual = info.weight == 1.0f;
  for (std::size_t f = 0; f < fields_; ++f) {
    const ElementLayout::Field& field = parts_.work.layout.fields[f];
    FieldSense& sense = senses_[structure.offset() * fields_ + f];
    sense = SenseOf(parts_.design.models.reference(model, field.position),
                    IsPositive(parts_.design.flanks, field.flank), parts_.reversals);
    info.usual = info.usual && sense.sign != 0 && !sense.reversed;
    info.mayCancel = info.mayCancel || (sense.reversed && parts_.design.repeatedFlanks);
  }
}

void ObservationReader::Begin(Categories categories) {
  categories_ = categories;
  nextRecord_ = 1;
  blocksUntilTurn_ = kBlocksForATurn;
  MarkElements();
  RecodeScales();
}

void ObservationReader::MarkElements() {
  allElementsUsual_ = true;
  for (const ElementSlot e : Upward(parts_.estimates.elements)) {
    ElementState& element = parts_.estimates.elements[e];
    const bool usual = IsUsual(element.ElementStatus, parts_.design.elements.ElementWeight[e]);
    element.attention = usual ? 0 : 1;
    allElementsUsual_ = allElementsUsual_ && usual;
  }
}

void ObservationReader::RecodeScales() {
  const ScaleTables& scales = parts_.scales;
  for (const ScaleRow scale : Upward(scales.scaleType)) {
    std::array<std::int16_t, kCategories>& recode = recode_[scale.offset()];
    const int top = scales.ScaleTopCategory[scale];
    const bool rating = scales.scaleType[scale] == ScaleType::rating;
    for (int raw = 0; raw < kCategories; ++raw) {
      std::int16_t& ordered = recode[static_cast<std::size_t>(raw)];
      ordered = kNoOrderedCategory;
      if (rating && raw < scales.width) ordered = scales.orderedCategory.at(scale, raw);
      if (!rating && raw <= top) ordered = static_cast<std::int16_t>(raw);
    }
    everyCategoryHasPlace_[scale.offset()] = top >= 1 ? 1 : 0;
  }
  for (const StructureRow structure : Upward(parts_.structures.structureScale)) {
    const std::size_t scale = parts_.structures.structureScale[structure].offset();
    for (int raw = 0; raw < parts_.structures.structureCount.width(); ++raw) {
      if (parts_.structures.structureCount.at(structure, raw) > 0 &&
          recode_[scale][static_cast<std::size_t>(raw)] == kNoOrderedCategory)
        everyCategoryHasPlace_[scale] = 0;
    }
  }
}

bool ObservationReader::Next() {
  if (nextRecord_ > parts_.work.records) return false;
  if (parts_.console != nullptr && --blocksUntilTurn_ == 0) {
    blocksUntilTurn_ = kBlocksForATurn;
    if (parts_.console->YieldToWindow()) return false;
  }
  const RecordBlock records = ReadRecordBlock(parts_.work, nextRecord_, kKernelBlock);
  block_.firstRecord = nextRecord_;
  block_.count = records.count;
  nextRecord_ += static_cast<std::int64_t>(records.count);
  // The weight begins as the replication.
  DecodeResponses(records, block_.structure, block_.weight, block_.response);
  for (std::size_t f = 0; f < fields_; ++f)
    DecodeElements(records, parts_.work.layout.fields[f], block_.slots[f]);
  ReadUsual();
  if (!block_.usual) ReadOneByOne();
  return true;
}

// The block as if all of it were of the usual kind; `usual` tells whether it is.
void ObservationReader::ReadUsual() {
  block_.usual = UsualStructures() && fields_ > 0 && UsualElements();
  if (!block_.usual) return;
  std::fill_n(block_.state.begin(), block_.count, ObservationState::inPlay);
  if (categories_ == Categories::wanted) FillCategories();
}

bool ObservationReader::UsualStructures() {
  int weighted = 0;
  for (std::size_t i = 0; i < block_.count; ++i) weighted |= block_.weight[i] != 1.0f ? 1 : 0;
  const std::int32_t first = block_.structure[0];
  int others = 0;
  for (std::size_t i = 0; i < block_.count; ++i) others |= block_.structure[i] ^ first;
  const bool usual = others == 0 ? UsualStructure(first) : UsualManyStructures();
  return usual && weighted == 0;
}

// A block with one structure.
bool ObservationReader::UsualStructure(std::int32_t structure) {
  const StructureInfo& info = structures_[static_cast<std::size_t>(structure)];
  std::fill_n(block_.scale.begin(), block_.count, info.scale);
  block_.oneScale = true;
  return info.usual && everyCategoryHasPlace_[static_cast<std::size_t>(info.scale)] != 0;
}

bool ObservationReader::UsualManyStructures() {
  const std::int32_t first = structures_[static_cast<std::size_t>(block_.structure[0])].scale;
  bool usual = true, oneScale = true;
  for (std::size_t i = 0; i < block_.count; ++i) {
    const StructureInfo& info = structures_[static_cast<std::size_t>(block_.structure[i])];
    block_.scale[i] = info.scale;
    usual &= info.usual & (everyCategoryHasPlace_[static_cast<std::size_t>(info.scale)] != 0);
    oneScale &= info.scale == first;
  }
  block_.oneScale = oneScale;
  return usual;
}

bool ObservationReader::UsualElements() {
  for (const std::vector<std::int32_t>& slots : block_.slots) {
    std::int32_t without = 0;
    for (std::size_t i = 0; i < block_.count; ++i) without |= slots[i] == 0 ? 1 : 0;
    if (without != 0) return false;
  }
  if (!allElementsUsual_) {
    const ElementState* const elements = parts_.estimates.elements.data();
    int attention = 0;
    for (const std::vector<std::int32_t>& slots : block_.slots)
      for (std::size_t i = 0; i < block_.count; ++i)
        attention |= elements[static_cast<std::size_t>(slots[i]) - 1].attention;
    if (attention != 0) return false;
  }
  for (std::size_t f = fields_; f-- > 0;) AddMeasures(f, f + 1 == fields_);
  return true;
}

void ObservationReader::AddMeasures(std::size_t field, bool first) {
  const ElementState* const elements = parts_.estimates.elements.data();
  const std::int32_t* const slots = block_.slots[field].data();
  const float sign = fieldSign_[field];
  float* const sum = block_.MeasureSum.data();
  const std::size_t count = block_.count;
  if (first) {
    for (std::size_t i = 0; i < count; ++i)
      sum[i] = sign * elements[static_cast<std::size_t>(slots[i]) - 1].ElementMeasure;
    return;
  }
  for (std::size_t i = 0; i < count; ++i)
    sum[i] += sign * elements[static_cast<std::size_t>(slots[i]) - 1].ElementMeasure;
}

void ObservationReader::FillCategories() {
  for (std::size_t i = 0; i < block_.count; ++i)
    block_.category[i] = recode_[static_cast<std::size_t>(block_.scale[i])]
                                [static_cast<std::size_t>(block_.response[i])];
}

void ObservationReader::ReadOneByOne() {
  FillCategories();
  for (std::size_t i = 0; i < block_.count; ++i) ReadObservation(i);
}

// Entry i: blanks the elements that do not count, and sets weight, measure sum and state.
void ObservationReader::ReadObservation(std::size_t i) {
  const StructureInfo& info = structures_[static_cast<std::size_t>(block_.structure[i])];
  const std::span<const FieldSense> senses = sense(block_.structure[i]);
  if (info.mayCancel) CancelPairs(i, senses);
  double weight = static_cast<double>(block_.weight[i]) * info.weight;
  float sum = 0.0f;
  for (std::size_t f = fields_; f-- > 0;) {
    std::int32_t& slot = block_.slots[f][i];
    if (senses[f].sign == 0) slot = 0;
    if (slot == 0) continue;
    const ElementSlot e(slot);
    const float measure = parts_.estimates.elements[e].ElementMeasure;
    sum = senses[f].sign > 0 ? sum + measure : sum - measure;
    weight *= parts_.design.elements.ElementWeight[e];
  }
  block_.weight[i] = HeldSingle(weight);
  block_.MeasureSum[i] = sum;
  block_.state[i] = StateOf(i);
  if (!(block_.weight[i] > 0.0f)) TellIgnoredWeight(i);
}

// From the last position to the first: an element that stands in an earlier position in the other
// sense cancels with it, and both drop out.
void ObservationReader::CancelPairs(std::size_t i, std::span<const FieldSense> senses) {
  for (std::size_t f = fields_; f-- > 1;) {
    std::int32_t& slot = block_.slots[f][i];
    if (slot == 0 || senses[f].sign == 0) continue;
    for (std::size_t earlier = f; earlier-- > 0;) {
      std::int32_t& other = block_.slots[earlier][i];
      if (other != slot || senses[earlier].sign == 0 ||
          senses[earlier].reversed == senses[f].reversed)
        continue;
      slot = other = 0;
      break;
    }
  }
}

ObservationState ObservationReader::StateOf(std::size_t i) const {
  const ScaleRow scale(block_.scale[i]);
  if (parts_.scales.ScaleTopCategory[scale] < 1 || !(block_.weight[i] > 0.0f) ||
      block_.category[i] < 0)
    return ObservationState::ignored;
  int inPlay = 0, extreme = 0;
  for (std::size_t f = 0; f < fields_; ++f) {
    const std::int32_t slot = block_.slots[f][i];
    if (slot == 0) continue;
    const std::int16_t status = parts_.estimates.elements[ElementSlot(slot)].ElementStatus;
    if (status == kStatusUnused || status == kStatusDropped) return ObservationState::dropped;
    if (IsInPlay(status)) {
      ++inPlay;
    } else {
      ++extreme;
    }
  }
  if (extreme == 1) return ObservationState::oneExtreme;
  if (inPlay == 0) return ObservationState::noneInPlay;
  return extreme == 0 ? ObservationState::inPlay : ObservationState::manyExtreme;
}

// Once in a run.
void ObservationReader::TellIgnoredWeight(std::size_t i) {
  bool& told = parts_.estimates.iteration.ignoredWeightTold;
  if (told || parts_.console == nullptr) return;
  told = true;
  const std::int64_t record = block_.firstRecord + static_cast<std::int64_t>(i);
  const std::string weighted = JoinNumber(message::kObservationWeight, record) + " is weighted";
  parts_.console->WarnLine(JoinNumber(weighted, block_.weight[i]) + " and is ignored");
}

}  // namespace flanks
