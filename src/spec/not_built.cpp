#include "spec/not_built.h"

#include <string_view>
#include <utility>

#include "base/column.h"
#include "spec/anchoring.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

std::string FlankPlace(FlankNo flank) {
  return "Flank " + std::to_string(flank.number());
}

std::string ElementPlace(const Design& design, ElementSlot slot) {
  return FlankPlace(design.elements.ElementFlank[slot]) + ", element " +
         std::to_string(design.elements.ElementNumber[slot]);
}

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
std::string FirstElement(const Design& design, Uses uses) {
  return FirstPlace(design.elements.ElementNumber, uses,
                    [&](ElementSlot slot) { return ElementPlace(design, slot); });
}

template <class Uses>
std::string FirstFlank(const Design& design, Uses uses) {
  return FirstPlace(design.flanks.FlankName, uses, FlankPlace);
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

std::string AnchoredElement(const Design& design) {
  return FirstElement(design, [&](ElementSlot slot) {
    return design.elements.ElementAnchor[slot] == AnchorKind::anchored;
  });
}

std::string GroupAnchoredFlank(const Design& design) {
  return FirstFlank(
      design, [&](FlankNo flank) { return IsGroupAnchoring(design.flanks.FlankOptions[flank]); });
}

std::string StartingMeasure(const Design& design) {
  return FirstElement(
      design, [&](ElementSlot slot) { return design.elements.PresetMeasure[slot] != 0.0f; });
}

std::string FlankWeight(const Design& design) {
  return FirstFlank(design,
                    [&](FlankNo flank) { return design.flanks.FlankWeight[flank] != 1.0f; });
}

std::string ElementWeight(const Design& design) {
  return FirstElement(
      design, [&](ElementSlot slot) { return design.elements.ElementWeight[slot] != 1.0f; });
}

std::string ElementGroup(const Design& design) {
  return FirstElement(design,
                      [&](ElementSlot slot) { return design.elements.ElementGroup[slot] > 0; });
}

std::string ElementTarget(const Design& design) {
  return FirstElement(
      design, [&](ElementSlot slot) { return design.elements.ElementTarget[slot].number() > 0; });
}

std::string ModelWeight(const Design& design) {
  return FirstStatement(design,
                        [&](ModelRow model) { return design.models.ModelWeight[model] != 1.0f; });
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

std::string DummyPositions(const Design& design) {
  return FirstReference(design, [](const PositionReference& r) { return r.dummy; });
}

std::string ReversedPositions(const Design& design) {
  return FirstReference(design, [](const PositionReference& r) { return r.reversed; });
}

std::string BiasMarks(const Design& design) {
  return FirstReference(design, [](const PositionReference& r) { return r.bias; });
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

// The wider features stand first: an anchor is a measure, a Flank's weight is its elements' weight.
constexpr Feature kNotBuilt[] = {
    {"group-anchored Flanks", "leave out the option G or X", GroupAnchoredFlank},
    {"anchored elements", "leave out the option A or D, and the measures", AnchoredElement},
    {"starting measures of elements", "leave the measures out", StartingMeasure},
    {"element group numbers", "leave the groups out", ElementGroup},
    {"weights of Flanks", "leave the weight out", FlankWeight},
    {"weights of elements", "leave the weights out", ElementWeight},
    {"target elements", "leave the targets out", ElementTarget},
    {"weights of model statements", "leave the weight out", ModelWeight},
    {"binomial scales (B)", "use R or D", BinomialTrials},
    {"Poisson scales (P)", "use R or D", PoissonCounts},
    {"\"#\" in a model statement", "use ?", OwnStructures},
    {"\"@\" in a model statement", "use ? or X", DummyPositions},
    {"\"-\" in front of a reference in a model statement",
     "use Positive= or Negative=", ReversedPositions},
    {"\"B\" in a reference of a model statement", "leave it out", BiasMarks},
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
