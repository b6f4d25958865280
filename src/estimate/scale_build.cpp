#include "estimate/scale_build.h"

#include <algorithm>
#include <span>
#include <vector>

#include "base/single.h"

namespace flanks {
namespace {

// What is known of one raw category of a scale.
struct RawCategory {
  double count = 0.0;
  float threshold = 0.0f;  // logits: anchored, estimated or to start with
  bool anchored = false;
};
using RawCategories = std::vector<RawCategory>;  // by raw category

// A category that has a place in the order.
struct Place {
  int raw = 0;
  std::int16_t flag = kCategoryFree;
};

// The places of a rating scale: categories that are observed or anchored, and, when unobserved ones
// are kept, those that lie between.
std::vector<Place> RatingPlaces(const RawCategories& categories, bool keep) {
  std::vector<Place> places;
  std::vector<Place> between;
  for (int raw = 0; raw < static_cast<int>(categories.size()); ++raw) {
    const RawCategory& category = categories[static_cast<std::size_t>(raw)];
    if (!category.anchored && !(category.count > 0.0)) {
      between.push_back({raw, kCategorySkipped});
      continue;
    }
    if (keep && !places.empty()) places.insert(places.end(), between.begin(), between.end());
    between.clear();
    places.push_back({raw, category.anchored ? kCategoryAnchored : kCategoryFree});
  }
  return places;
}

// Every count from 0 to `top` has its place.
std::vector<Place> CountPlaces(int top) {
  std::vector<Place> places;
  for (int raw = 0; raw <= top; ++raw) places.push_back({raw, kCategoryFree});
  return places;
}

int HighestObserved(const RawCategories& categories) {
  int highest = static_cast<int>(categories.size()) - 1;
  while (highest >= 0 && !(categories[static_cast<std::size_t>(highest)].count > 0.0)) --highest;
  return highest;
}

// The places of any scale: the trials of a binomial scale never shrink, a Poisson scale ends at its
// highest count.
std::vector<Place> PlacesOf(ScaleRow scale, const RawCategories& categories,
                            const ScaleTables& scales) {
  switch (scales.scaleType[scale]) {
    case ScaleType::binomial: {
      std::vector<Place> places = CountPlaces(scales.scaleMaximum[scale]);
      // A dichotomy has a threshold, which never moves and may be said to be an anchor.
      if (places.size() == 2 && categories[1].anchored) places[1].flag = kCategoryAnchored;
      return places;
    }
    case ScaleType::poisson:
      return CountPlaces(HighestObserved(categories));
    default:
      return RatingPlaces(categories, scales.scaleKeep[scale] != 0);
  }
}

// Orders the categories.  True when a recode or the top category has changed.
bool OrderCategories(ScaleRow scale, const std::vector<Place>& places, ScaleTables& scales) {
  const int formerTop = scales.ScaleTopCategory[scale];
  const std::vector<std::int16_t> former(scales.orderedCategory.row(scale),
                                         scales.orderedCategory.row(scale) + scales.width);
  std::fill_n(scales.orderedCategory.row(scale), scales.width, kNoOrderedCategory);
  std::fill_n(scales.rawCategory.row(scale), scales.width, std::int16_t{0});
  for (std::size_t k = 0; k < places.size(); ++k) {
    scales.orderedCategory.at(scale, places[k].raw) = static_cast<std::int16_t>(k);
    scales.rawCategory.at(scale, static_cast<int>(k)) = static_cast<std::int16_t>(places[k].raw);
  }
  scales.ScaleTopCategory[scale] = static_cast<std::int16_t>(static_cast<int>(places.size()) - 1);
  scales.lowestCategory[scale] = static_cast<std::int16_t>(places.empty() ? 0 : places.front().raw);
  return formerTop != scales.ScaleTopCategory[scale] ||
         !std::equal(former.begin(), former.end(), scales.orderedCategory.row(scale));
}

// The thresholds of a rating scale, or of any with two categories, go where their raw categories
// have gone.  The lowest category has no threshold, and a skipped one's, which stands in no
// exponent, is 0: the mean that centers the others counts it.
void PlaceThresholds(ScaleRow scale, const std::vector<Place>& places,
                     const RawCategories& categories, ScaleTables& scales) {
  std::fill_n(scales.CategoryFlag.row(scale), scales.width, kCategoryFree);
  std::fill_n(scales.ThresholdTable.row(scale), scales.width, 0.0f);
  for (std::size_t k = 0; k < places.size(); ++k) {
    const int cell = static_cast<int>(k);
    scales.CategoryFlag.at(scale, cell) = places[k].flag;
    if (k == 0 || places[k].flag == kCategorySkipped) continue;
    scales.ThresholdTable.at(scale, cell) =
        categories[static_cast<std::size_t>(places[k].raw)].threshold;
  }
}

// The values and anchors of the scale's definition, in logits by raw category.
void LayInValues(const ScaleDefinition& definition, float uscale, RawCategories& categories) {
  for (const ScaleCategory& category : definition.categories) {
    if (category.number < 0 || category.number >= static_cast<int>(categories.size())) continue;
    RawCategory& raw = categories[static_cast<std::size_t>(category.number)];
    raw.anchored = category.flag == 'A';
    raw.threshold = Single(static_cast<double>(category.anchor) / uscale);
  }
}

// The discrimination stands in category 0; it is a slope, and has no unit to be converted.
void LayInDiscrimination(const ScaleDefinition& definition, ScaleRow scale, ScaleTables& scales) {
  for (const ScaleCategory& category : definition.categories) {
    if (category.number != 0) continue;
    if (category.hasAnchorValue) scales.ThresholdTable.at(scale, 0) = category.anchor;
    if (category.flag == 'A') scales.CategoryFlag.at(scale, 0) = kCategoryAnchored;
  }
}

bool IsRating(const ScaleTables& scales, ScaleRow scale) {
  return scales.scaleType[scale] == ScaleType::rating;
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

// Counts of the data by scale and raw category.
Grid<ScaleRow, double> CountsOfData(const StructureTable& structures, const ScaleTables& scales) {
  const int categories = structures.structureCount.width();
  Grid<ScaleRow, double> counts(scales.scales(), std::max(categories, scales.width), 0.0);
  for (StructureRow row : Upward(structures.structureScale))
    for (int category = 0; category < categories; ++category)
      counts.at(structures.structureScale[row], category) +=
          static_cast<double>(structures.structureCount.at(row, category));
  return counts;
}

void BuildScale(ScaleRow scale, const ScaleDefinition* definition, float uscale,
                RawCategories& categories, ScaleTables& scales) {
  if (definition != nullptr) LayInValues(*definition, uscale, categories);
  const std::vector<Place> places = PlacesOf(scale, categories, scales);
  OrderCategories(scale, places, scales);
  if (!IsRating(scales, scale)) {
    if (scales.scaleMaximum[scale] == 1) PlaceThresholds(scale, places, categories, scales);
    scales.ThresholdTable.at(scale, 0) = 1.0f;
    if (definition != nullptr) LayInDiscrimination(*definition, scale, scales);
  } else {
    PlaceThresholds(scale, places, categories, scales);
  }
  std::copy_n(scales.ThresholdTable.row(scale), scales.width, scales.PreviousThreshold.row(scale));
}

// What the tables hold, by raw category again.
RawCategories CategoriesNow(ScaleRow scale, const ScaleTables& scales) {
  RawCategories categories(static_cast<std::size_t>(scales.width));
  for (int k = 0; k <= scales.ScaleTopCategory[scale]; ++k) {
    RawCategory& raw = categories[static_cast<std::size_t>(scales.rawCategory.at(scale, k))];
    raw.count = scales.ObservedCount.at(scale, k);
    raw.threshold = scales.ThresholdTable.at(scale, k);
    raw.anchored = scales.CategoryFlag.at(scale, k) == kCategoryAnchored;
  }
  return categories;
}

}  // namespace

void BuildScales(const Design& design, const StructureTable& structures, float uscale,
                 ScaleTables& scales) {
  SizeTables(design, scales.scales(), scales);
  const Grid<ScaleRow, double> counts = CountsOfData(structures, scales);
  for (ScaleRow scale : Upward(scales.scaleType)) {
    RawCategories categories(static_cast<std::size_t>(scales.width));
    for (int raw = 0; raw < scales.width; ++raw)
      categories[static_cast<std::size_t>(raw)].count = counts.at(scale, raw);
    const ScaleDefinitionRow row = scales.scaleDefinition[scale];
    const bool defined = design.scales.has(row);
    BuildScale(scale, defined ? &design.scales[row] : nullptr, uscale, categories, scales);
  }
}

bool RebuildScales(ScaleTables& scales) {
  bool changed = false;
  for (ScaleRow scale : Downward(scales.scaleType)) {
    if (scales.scaleType[scale] == ScaleType::binomial) continue;
    const RawCategories categories = CategoriesNow(scale, scales);
    const std::vector<Place> places = PlacesOf(scale, categories, scales);
    if (OrderCategories(scale, places, scales)) changed = true;
    if (IsRating(scales, scale)) PlaceThresholds(scale, places, categories, scales);
  }
  return changed;
}

}  // namespace flanks
