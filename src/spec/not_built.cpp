#include "spec/not_built.h"

#include <string_view>
#include <utility>

#include "base/column.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

std::string StatementPlace(ModelRow model) {
  return "statement " + std::to_string(model.number() + 1);
}

// The place of the first row that `uses` the feature; empty when none does.
template <class Rows, class Uses, class Place>
std::string FirstPlace(const Rows& rows, Uses uses, Place place) {
  for (const auto row : Upward(rows))
    if (uses(row)) return place(row);
  return {};
}

template <class Uses>
std::string FirstStatement(const Design& design, Uses uses) {
  return FirstPlace(design.models.ModelScaleType, uses, StatementPlace);
}

// The first statement with a reference that has the mark.
template <class Marked>
std::string FirstReference(const Design& design, Marked marked) {
  return FirstStatement(design, [&](ModelRow model) {
    for (Position position(1); position.number() <= design.ModelFlankCount; ++position)
      if (marked(design.models.reference(model, position))) return true;
    return false;
  });
}

// The first statement whose named scale has the trait.
template <class Has>
std::string FirstScale(const Design& design, Has has) {
  return FirstStatement(design, [&](ModelRow model) {
    const ScaleDefinitionRow row = design.models.ModelScale[model];
    return row.number() >= 0 && has(design.scales[row]);
  });
}

// B1 is the same as D.
std::string BinomialTrials(const Design& design) {
  return FirstStatement(design, [&](ModelRow model) {
    return design.models.ModelScaleType[model] == ScaleType::binomial &&
           design.models.ModelCategoryMax[model] > 1;
  });
}

std::string PoissonCounts(const Design& design) {
  return FirstStatement(design, [&](ModelRow model) {
    return design.models.ModelScaleType[model] == ScaleType::poisson;
  });
}

std::string OwnStructures(const Design& design) {
  return FirstReference(design, [](const PositionReference& r) { return r.structured; });
}

std::string SpecificScale(const Design& design) {
  return FirstScale(design, [](const ScaleDefinition& scale) { return scale.specific; });
}

std::string CategoryAnchor(const Design& design) {
  return FirstScale(design, [](const ScaleDefinition& scale) {
    for (const ScaleCategory& category : scale.categories)
      if (category.hasAnchorValue || category.flag == 'A') return true;
    return false;
  });
}

std::string KeptCategories(const Design& design) {
  return FirstStatement(design,
                        [&](ModelRow model) { return design.models.ModelKeep[model] != 0; });
}

struct Feature {
  std::string_view name;
  std::string_view cure;
  std::string (*place)(const Design&);  // of the first use; empty when it is not used
};

constexpr Feature kNotBuilt[] = {
    {"binomial scales (B)", "use R or D", BinomialTrials},
    {"Poisson scales (P)", "use R or D", PoissonCounts},
    {"\"#\" in a model statement", "use ?", OwnStructures},
    {"Specific rating scales", "use General", SpecificScale},
    {"anchored categories and category values of a rating scale", "leave them out", CategoryAnchor},
    {"\"Keep\" of unobserved categories", "leave out K or Keep", KeptCategories},
};

}  // namespace

std::string FeatureNotBuilt(const Design& design) {
  for (const Feature& feature : kNotBuilt) {
    const std::string place = feature.place(design);
    if (place.empty()) continue;
    return std::string(feature.name) + " (" + place + "): please " + std::string(feature.cure);
  }
  return {};
}

void RefuseWhatIsNotBuilt(const Design& design, ReadState& reading) {
  FaultParticulars particulars;
  particulars.value = FeatureNotBuilt(design);
  if (particulars.value.empty()) return;
  particulars.name = kSpecificationName;
  particulars.lineNumber = kNoLineNumber;
  SetFault(reading, Fault::notBuiltYet, std::move(particulars));
}

}  // namespace flanks
