#include "data/structures.h"

#include <algorithm>
#include <compare>

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

// The order of the scales: by statement, then by key.  Structures of a shared definition stand
// where its first statement with data stands, so that those of one scale are neighbours.
class ScaleOrder {
 public:
  ScaleOrder(const Design& design, const StructureTable& structures)
      : design_(design), structures_(structures), firstModel_(design.ScaleLast + 1) {
    for (const ModelRow model : structures.structureModel) {
      const ScaleDefinitionRow shared = SharedDefinition(design, model);
      if (!firstModel_.has(shared)) continue;
      ModelRow& first = firstModel_[shared];
      if (first < ModelRow(0) || model < first) first = model;
    }
  }

  std::vector<StructureRow> Sorted() const {
    std::vector<StructureRow> rows;
    for (const StructureRow row : Upward(structures_.structureModel)) rows.push_back(row);
    std::sort(rows.begin(), rows.end(), [this](StructureRow left, StructureRow right) {
      if (Leader(left) != Leader(right)) return Leader(left) < Leader(right);
      const std::weak_ordering keys = CompareKeys(left, right);
      if (std::is_neq(keys)) return std::is_lt(keys);
      return structures_.structureModel[left] < structures_.structureModel[right];
    });
    return rows;
  }
  bool SharesScale(StructureRow left, StructureRow right) const {
    return Leader(left) == Leader(right) && std::is_eq(CompareKeys(left, right));
  }

 private:
  // The statement in whose place the structure stands.
  ModelRow Leader(StructureRow row) const {
    const ModelRow model = structures_.structureModel[row];
    const ScaleDefinitionRow shared = SharedDefinition(design_, model);
    return firstModel_.has(shared) ? firstModel_[shared] : model;
  }
  std::weak_ordering CompareKeys(StructureRow left, StructureRow right) const {
    const std::int32_t width = structures_.structureKey.width();
    const ElementSlot* const leftKey = structures_.structureKey.row(left);
    const ElementSlot* const rightKey = structures_.structureKey.row(right);
    return std::lexicographical_compare_three_way(leftKey, leftKey + width, rightKey,
                                                  rightKey + width);
  }

  const Design& design_;
  const StructureTable& structures_;
  Column<ScaleDefinitionRow, ModelRow> firstModel_;
};

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
  const ScaleOrder order(design, structures);
  scales = ScaleTables{};
  scales.width = structures.structureCount.width();
  StructureRow previous;
  for (const StructureRow row : order.Sorted()) {
    if (!structures.structureModel.has(previous) || !order.SharesScale(previous, row)) {
      const ModelRow model = structures.structureModel[row];
      scales.scaleType.push(design.models.ModelScaleType[model]);
      scales.scaleDefinition.push(design.models.ModelScale[model]);
      scales.scaleModel.push(model);
      scales.scaleKeep.push(design.models.ModelKeep[model]);
      scales.scaleMaximum.push(design.models.ModelCategoryMax[model]);
    }
    structures.structureScale[row] = scales.scaleType.lastRow();
    previous = row;
  }
}

}  // namespace flanks
