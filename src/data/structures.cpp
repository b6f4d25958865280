#include "data/structures.h"

#include <algorithm>

namespace flanks {
namespace {

constexpr std::int32_t kFirstBuckets = 256;  // a power of two

bool HasStructuredPosition(const Design& design, ModelRow model) {
  for (std::int32_t a = 1; a <= design.ModelFlankCount; ++a)
    if (design.models.reference(model, Position(a)).structured) return true;
  return false;
}

// The definition whose thresholds several statements share; no row when the statement's structures
// are its own.
ScaleDefinitionRow SharedDefinition(const Design& design, ModelRow model) {
  const ScaleDefinitionRow definition = design.models.ModelScale[model];
  if (!design.scales.has(definition) || design.scales[definition].specific)
    return ScaleDefinitionRow();
  return definition;
}

}  // namespace

StructureFinder::StructureFinder(const Design& design, StructureTable& structures)
    : design_(design),
      structures_(structures),
      key_(static_cast<std::size_t>(design.ModelFlankCount)),
      buckets_(kFirstBuckets, -1) {
  const std::int32_t width = std::max(design.MaxCategory, 1) + 1;
  structures_.structureModel.clear();
  structures_.structureScale.clear();
  structures_.structureKey.assign(0, std::max(design.ModelFlankCount, 1), ElementSlot());
  structures_.structureCount.assign(0, width, 0);
  ModelStructure_.assign(design.ModelLast + 1, kStructureNotYet);
  for (const ModelRow model : Upward(ModelStructure_))
    if (HasStructuredPosition(design, model)) ModelStructure_[model] = kStructureByKey;
}

StructureRow StructureFinder::Add(ModelRow model) {
  const StructureRow row = structures_.structureModel.push(model);
  structures_.structureScale.push(ScaleRow());
  structures_.structureKey.resizeRows(row.number() + 1, ElementSlot());
  std::copy(key_.begin(), key_.end(), structures_.structureKey.row(row));
  structures_.structureCount.resizeRows(row.number() + 1, 0);
  return row;
}

StructureRow StructureFinder::FindByKey(ModelRow model,
                                        const Column<Position, std::int32_t>& positionStatus) {
  std::fill(key_.begin(), key_.end(), ElementSlot());
  if (ModelStructure_[model] == kStructureNotYet) {
    const StructureRow row = Add(model);
    ModelStructure_[model] = row.number();
    return row;
  }
  for (const Position a : Downward(positionStatus))
    if (design_.models.reference(model, a).structured && positionStatus[a] > 0)
      key_[a.offset()] = ElementSlot(positionStatus[a]);
  const std::size_t mask = buckets_.size() - 1;
  std::size_t bucket = HashOfKey(model) & mask;
  while (buckets_[bucket] >= 0) {
    const StructureRow row(buckets_[bucket]);
    if (HasKey(row, model)) return row;
    bucket = (bucket + 1) & mask;
  }
  const StructureRow row = Add(model);
  buckets_[bucket] = row.number();
  if (static_cast<std::size_t>(row.number()) * 2 > buckets_.size()) Rehash();
  return row;
}

bool StructureFinder::HasKey(StructureRow row, ModelRow model) const {
  return structures_.structureModel[row] == model &&
         std::equal(key_.begin(), key_.end(), structures_.structureKey.row(row));
}

// Mixes the statement and the slots of the key (multiplication by an odd constant, then the upper
// bits are brought down).
std::size_t StructureFinder::HashOfKey(ModelRow model) const {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15ULL;
  std::uint64_t hash = static_cast<std::uint64_t>(model.number()) + 1;
  for (const ElementSlot slot : key_) {
    hash = (hash ^ static_cast<std::uint64_t>(slot.number())) * kOdd;
    hash ^= hash >> 32;
  }
  return static_cast<std::size_t>(hash);
}

void StructureFinder::Rehash() {
  buckets_.assign(buckets_.size() * 4, -1);
  const std::size_t mask = buckets_.size() - 1;
  for (const StructureRow row : Upward(structures_.structureModel)) {
    const ModelRow model = structures_.structureModel[row];
    if (ModelStructure_[model] != kStructureByKey) continue;
    std::copy_n(structures_.structureKey.row(row), key_.size(), key_.begin());
    std::size_t bucket = HashOfKey(model) & mask;
    while (buckets_[bucket] >= 0) bucket = (bucket + 1) & mask;
    buckets_[bucket] = row.number();
  }
}

void LayOutScales(const Design& design, StructureTable& structures, ScaleTables& scales) {
  // Structures in the order of their statements, then of their keys.  Those of a shared definition
  // stand together: where the definition's first statement with data stands.
  Column<ScaleDefinitionRow, ModelRow> firstModel(design.ScaleLast + 1);
  for (const ModelRow model : structures.structureModel) {
    const ScaleDefinitionRow shared = SharedDefinition(design, model);
    if (!design.scales.has(shared)) continue;
    ModelRow& first = firstModel[shared];
    if (first < ModelRow(0) || model < first) first = model;
  }
  const auto leader = [&](StructureRow row) {
    const ModelRow model = structures.structureModel[row];
    const ScaleDefinitionRow shared = SharedDefinition(design, model);
    return design.scales.has(shared) ? firstModel[shared] : model;
  };
  const auto keyOrder = [&](StructureRow left, StructureRow right) {
    const ElementSlot* leftKey = structures.structureKey.row(left);
    const ElementSlot* rightKey = structures.structureKey.row(right);
    const std::int32_t width = structures.structureKey.width();
    return std::lexicographical_compare_three_way(leftKey, leftKey + width, rightKey,
                                                  rightKey + width);
  };
  std::vector<StructureRow> order(static_cast<std::size_t>(structures.structureModel.rows()));
  for (std::size_t i = 0; i < order.size(); ++i)
    order[i] = StructureRow(static_cast<std::int32_t>(i));
  std::sort(order.begin(), order.end(), [&](StructureRow left, StructureRow right) {
    if (leader(left) != leader(right)) return leader(left) < leader(right);
    const auto keys = keyOrder(left, right);
    if (keys != 0) return keys < 0;
    return structures.structureModel[left] < structures.structureModel[right];
  });

  scales = ScaleTables{};
  scales.width = structures.structureCount.width();
  const StructureRow* previous = nullptr;
  for (const StructureRow& row : order) {
    const bool same =
        previous != nullptr && leader(*previous) == leader(row) && keyOrder(*previous, row) == 0;
    if (!same) {
      const ModelRow model = structures.structureModel[row];
      scales.scaleType.push(design.models.ModelScaleType[model]);
      scales.scaleDefinition.push(design.models.ModelScale[model]);
      scales.scaleModel.push(model);
      scales.scaleKeep.push(design.models.ModelKeep[model]);
      scales.scaleMaximum.push(design.models.ModelCategoryMax[model]);
    }
    structures.structureScale[row] = scales.scaleType.lastRow();
    previous = &row;
  }
}

}  // namespace flanks
