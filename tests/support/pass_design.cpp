#include "support/pass_design.h"

#include <algorithm>
#include <stdexcept>

#include "data/element_file.h"
#include "data/response_file.h"

namespace flanks {
namespace {

PositionReference ReferenceOf(const std::string& mark) {
  PositionReference reference;
  reference.empty = mark == "empty";
  reference.ignored = mark.starts_with('X');
  reference.dummy = mark.starts_with('@');
  reference.reversed = mark.starts_with('-');
  reference.bias = mark.ends_with('B');
  return reference;
}

}  // namespace

PassDesign& PassDesign::Flank(std::int32_t elements, std::int16_t orientation) {
  elementCounts_.push_back(elements);
  orientations_.push_back(orientation);
  positionFlanks_.push_back(static_cast<std::int32_t>(elementCounts_.size()));
  return *this;
}

PassDesign& PassDesign::Repeat(std::int32_t flank) {
  positionFlanks_.push_back(flank);
  design.repeatedFlanks = true;
  return *this;
}

int PassDesign::Statement(const std::vector<std::string>& references, float weight) {
  statements_.push_back(references);
  statementWeights_.push_back(weight);
  return static_cast<int>(statements_.size()) - 1;
}

int PassDesign::Rating(const std::vector<float>& thresholds) {
  scaleRows_.push_back({ScaleType::rating, thresholds});
  scaleRows_.back().thresholds.insert(scaleRows_.back().thresholds.begin(), 0.0f);
  return static_cast<int>(scaleRows_.size()) - 1;
}

int PassDesign::CountScale(ScaleType type, int top, float discrimination) {
  scaleRows_.push_back({type, std::vector<float>(static_cast<std::size_t>(top) + 1, 0.0f)});
  scaleRows_.back().thresholds[0] = discrimination;
  return static_cast<int>(scaleRows_.size()) - 1;
}

int PassDesign::Structure(int statement, int scale) {
  structureRows_.emplace_back(statement, scale);
  return static_cast<int>(structureRows_.size()) - 1;
}

void PassDesign::Build() {
  const auto flankCount = static_cast<std::int32_t>(elementCounts_.size());
  const auto positionCount = static_cast<std::int32_t>(positionFlanks_.size());
  design.FlankCount = flankCount;
  design.ModelFlankCount = positionCount;
  design.flanks.FlankElementCount.assign(flankCount, 0);
  design.flanks.FlankFirstSlot.assign(flankCount, ElementSlot(0));
  design.flanks.FlankOrientation.assign(flankCount, 0);
  std::int32_t slot = 1;
  for (const FlankNo f : Upward(design.flanks.FlankElementCount)) {
    design.flanks.FlankElementCount[f] = elementCounts_[f.offset()];
    design.flanks.FlankFirstSlot[f] = ElementSlot(slot);
    design.flanks.FlankOrientation[f] = orientations_[f.offset()];
    slot += elementCounts_[f.offset()];
  }
  design.ElementTotal = slot - 1;
  design.elements.ElementWeight.assign(design.ElementTotal, 1.0f);
  design.elements.ElementAnchor.assign(design.ElementTotal, AnchorKind::none);
  design.maps.ModelFlank.assign(positionCount, FlankNo(0));
  for (const Position p : Upward(design.maps.ModelFlank))
    design.maps.ModelFlank[p] = FlankNo(positionFlanks_[p.offset()]);

  const auto statementCount = static_cast<std::int32_t>(statements_.size());
  design.models.references.assign(statementCount, positionCount, {});
  design.models.ModelWeight.assign(statementCount, 1.0f);
  for (const ModelRow m : Upward(design.models.ModelWeight)) {
    design.models.ModelWeight[m] = statementWeights_[m.offset()];
    for (std::int32_t p = 0; p < positionCount; ++p) {
      const std::vector<std::string>& marks = statements_[m.offset()];
      if (static_cast<std::size_t>(p) >= marks.size()) continue;
      design.models.references.at(m, p) = ReferenceOf(marks[static_cast<std::size_t>(p)]);
      if (design.models.references.at(m, p).reversed) design.models.anyReversed = true;
    }
  }

  std::size_t width = 2;
  for (const ScaleRowData& scale : scaleRows_) width = std::max(width, scale.thresholds.size());
  const auto scaleCount = static_cast<std::int32_t>(scaleRows_.size());
  scales.width = static_cast<int>(width);
  scales.scaleType.assign(scaleCount, ScaleType::rating);
  scales.ScaleTopCategory.assign(scaleCount, 0);
  scales.orderedCategory.assign(scaleCount, scales.width, kNoOrderedCategory);
  scales.ThresholdTable.assign(scaleCount, scales.width, 0.0f);
  scales.CategoryFlag.assign(scaleCount, scales.width, kCategoryFree);
  scales.ObservedCount.assign(scaleCount, scales.width, 0.0);
  scales.ExpectedCount.assign(scaleCount, scales.width, 0.0);
  scales.DiscriminationSums.assign(scaleCount, scales.width, 0.0);
  for (const ScaleRow s : Upward(scales.scaleType)) {
    const ScaleRowData& row = scaleRows_[s.offset()];
    scales.scaleType[s] = row.type;
    scales.ScaleTopCategory[s] = static_cast<std::int16_t>(row.thresholds.size() - 1);
    for (std::size_t k = 0; k < row.thresholds.size(); ++k) {
      scales.ThresholdTable.at(s, static_cast<int>(k)) = row.thresholds[k];
      scales.orderedCategory.at(s, static_cast<int>(k)) = static_cast<std::int16_t>(k);
    }
  }

  const auto structureCount = static_cast<std::int32_t>(structureRows_.size());
  structures.structureModel.assign(structureCount, ModelRow(0));
  structures.structureScale.assign(structureCount, ScaleRow(0));
  structures.structureCount.assign(structureCount, kCategories, 0);
  for (const StructureRow s : Upward(structures.structureModel)) {
    structures.structureModel[s] = ModelRow(structureRows_[s.offset()].first);
    structures.structureScale[s] = ScaleRow(structureRows_[s.offset()].second);
  }

  estimates.elements.assign(design.ElementTotal, {});
  estimates.scores.assign(design.ElementTotal, {});
  for (ElementState& state : estimates.elements) state.ElementStatus = kStatusFree;

  OpenResponseFile(1, work);
  if (PrepareElementFile(design, Settings{}, 1, work) != Fault::none)
    throw std::logic_error("no element file");
  open_ = true;
}

void PassDesign::Observe(const std::vector<std::int32_t>& slots, int structure, int response,
                         float replication) {
  Column<Position, std::int32_t> status(design.ModelFlankCount, -1);
  for (const Position p : Upward(status))
    if (slots[p.offset()] > 0) status[p] = slots[p.offset()];
  WriteElementRecord(status, work);
  WriteResponseRecord({StructureRow(structure), replication, static_cast<std::int16_t>(response)},
                      work);
  ++structures.structureCount.at(StructureRow(structure), response);
}

void PassDesign::EndOfData() {
  if (!open_) return;
  FlushElementRecords(work);
  FlushResponseRecords(work);
  open_ = false;
}

PassParts PassDesign::parts() {
  EndOfData();
  return {design, structures, work, scales, estimates, design.models.anyReversed, console};
}

void PassDesign::SetMeasures(const std::vector<float>& measures) {
  for (std::size_t e = 0; e < measures.size(); ++e)
    element(static_cast<std::int32_t>(e) + 1).ElementMeasure = measures[e];
}

}  // namespace flanks
