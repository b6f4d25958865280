#include "estimate/scale_build.h"

#include <algorithm>
#include <vector>

namespace flanks {
namespace {

// Orders the raw categories of a scale: `raw` ascending.
void OrderCategories(ScaleRow scale, const std::vector<int>& raw, ScaleTables& scales) {
  std::fill_n(scales.orderedCategory.row(scale), scales.width, kNoOrderedCategory);
  std::fill_n(scales.rawCategory.row(scale), scales.width, std::int16_t{0});
  for (std::size_t k = 0; k < raw.size(); ++k) {
    scales.orderedCategory.at(scale, raw[k]) = static_cast<std::int16_t>(k);
    scales.rawCategory.at(scale, static_cast<int>(k)) = static_cast<std::int16_t>(raw[k]);
  }
  scales.ScaleTopCategory[scale] = static_cast<std::int16_t>(static_cast<int>(raw.size()) - 1);
  scales.lowestCategory[scale] = static_cast<std::int16_t>(raw.empty() ? 0 : raw.front());
}

// Every category up to the maximum has its place: the trials of a binomial scale.
std::vector<int> AllCategories(int maximum) {
  std::vector<int> raw;
  for (int category = 0; category <= maximum; ++category) raw.push_back(category);
  return raw;
}

void SizeTables(const Design& design, int scaleCount, ScaleTables& scales) {
  scales.width = std::max(design.MaxCategory + 1, 2);
  scales.ScaleTopCategory.assign(scaleCount, 0);
  scales.lowestCategory.assign(scaleCount, 0);
  scales.orderedCategory.assign(scaleCount, scales.width, kNoOrderedCategory);
  scales.rawCategory.assign(scaleCount, scales.width, 0);
  scales.ThresholdTable.assign(scaleCount, scales.width, 0.0f);
  scales.PreviousThreshold.assign(scaleCount, scales.width, 0.0f);
  scales.CategoryFlag.assign(scaleCount, scales.width, kCategoryFree);
  scales.ObservedCount.assign(scaleCount, scales.width, 0.0);
  scales.ExpectedCount.assign(scaleCount, scales.width, 0.0);
  scales.DiscriminationSums.assign(scaleCount, scales.width, 0.0);
}

// Moves the thresholds to the places that their raw categories have now.
void CarryThresholds(ScaleRow scale, const std::vector<std::int16_t>& formerRaw,
                     ScaleTables& scales) {
  std::vector<float> byRaw(static_cast<std::size_t>(scales.width), 0.0f);
  for (std::size_t k = 1; k < formerRaw.size(); ++k)
    byRaw[static_cast<std::size_t>(formerRaw[k])] =
        scales.ThresholdTable.at(scale, static_cast<int>(k));
  std::fill_n(scales.ThresholdTable.row(scale), scales.width, 0.0f);
  for (int k = 1; k <= scales.ScaleTopCategory[scale]; ++k)
    scales.ThresholdTable.at(scale, k) =
        byRaw[static_cast<std::size_t>(scales.rawCategory.at(scale, k))];
}

bool RebuildScale(ScaleRow scale, ScaleTables& scales) {
  const int top = scales.ScaleTopCategory[scale];
  std::vector<int> observed;
  std::vector<std::int16_t> former;
  for (int k = 0; k <= top; ++k) {
    former.push_back(scales.rawCategory.at(scale, k));
    if (scales.ObservedCount.at(scale, k) > 0.0) observed.push_back(former.back());
  }
  if (static_cast<int>(observed.size()) == top + 1) return false;
  OrderCategories(scale, observed, scales);
  CarryThresholds(scale, former, scales);
  return true;
}

}  // namespace

void BuildScales(const Design& design, const StructureTable& structures, ScaleTables& scales) {
  const std::int32_t scaleCount = scales.scales();
  SizeTables(design, scaleCount, scales);
  const int categories = structures.structureCount.width();
  Grid<ScaleRow, std::int64_t> counts(scaleCount, std::max(categories, scales.width));
  for (StructureRow row : Upward(structures.structureScale))
    for (int category = 0; category < categories; ++category)
      counts.at(structures.structureScale[row], category) +=
          structures.structureCount.at(row, category);
  for (ScaleRow scale : Upward(scales.scaleType)) {
    if (scales.scaleType[scale] != ScaleType::rating) {
      OrderCategories(scale, AllCategories(scales.scaleMaximum[scale]), scales);
      scales.ThresholdTable.at(scale, 0) = 1.0f;
      continue;
    }
    std::vector<int> observed;
    for (int category = 0; category < scales.width; ++category)
      if (counts.at(scale, category) > 0) observed.push_back(category);
    OrderCategories(scale, observed, scales);
  }
}

bool RebuildScales(ScaleTables& scales) {
  bool changed = false;
  for (ScaleRow scale : Downward(scales.scaleType))
    if (scales.scaleType[scale] == ScaleType::rating && RebuildScale(scale, scales)) changed = true;
  return changed;
}

}  // namespace flanks
