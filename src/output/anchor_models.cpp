#include "output/anchor_models.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <set>
#include <utility>

#include "base/text.h"

namespace flanks {
namespace {

constexpr std::string_view kStem = "RS";  // of a scale without a name

class Planner {
 public:
  Planner(const Design& design, const StructureTable& structures, const ScaleTables& scales)
      : design_(design),
        structures_(structures),
        structuresOf_(design.ModelLast + 1),
        nameOf_(scales.scales()),
        plainNameOf_(design.ScaleLast + 1),
        statementsOf_(design.ScaleLast + 1, 0) {}

  AnchorModels Plan();

 private:
  void Look();
  void PlanStatement(ModelRow model);
  void PlanElements(ModelRow model);
  void PlanRest(ModelRow model);
  bool SomeElementHasNone(ModelRow model) const;
  const std::string& NameOf(StructureRow structure, const std::string& elements);
  std::string NameOfDefinition(ModelRow model);
  std::string BaseName(ModelRow model) const;
  bool BearsPlainName(ModelRow model) const;
  std::string Unique(const std::string& name);
  bool HasElements(ModelRow model) const;
  std::vector<std::string> References(ModelRow model, const ElementSlot* key) const;
  void AddStatement(ModelRow model, const std::vector<std::string>& references,
                    std::string_view scale);

  const Design& design_;
  const StructureTable& structures_;
  Column<ModelRow, std::vector<StructureRow>> structuresOf_;
  Column<ScaleRow, std::string> nameOf_;                   // empty: not named yet
  Column<ScaleDefinitionRow, std::string> plainNameOf_;    // of a definition without thresholds
  Column<ScaleDefinitionRow, std::int32_t> statementsOf_;  // statements that name a definition
  std::set<std::string> used_;                             // names in upper case
  AnchorModels plan_;
};

// The structures of each statement, in the order of their elements; and names that stay.
void Planner::Look() {
  for (const StructureRow row : Upward(structures_.structureModel))
    structuresOf_[structures_.structureModel[row]].push_back(row);
  const std::int32_t width = structures_.structureKey.width();
  // Where an element is missing in the key, any element stands in the statement: such come last.
  const auto isBefore = [&](StructureRow left, StructureRow right) {
    const ElementSlot* a = structures_.structureKey.row(left);
    const ElementSlot* b = structures_.structureKey.row(right);
    const auto holes = [width](const ElementSlot* key) {
      return std::count(key, key + width, ElementSlot(0));
    };
    if (holes(a) != holes(b)) return holes(a) < holes(b);
    return std::lexicographical_compare(a, a + width, b, b + width);
  };
  for (const ModelRow model : Upward(structuresOf_)) {
    std::sort(structuresOf_[model].begin(), structuresOf_[model].end(), isBefore);
    const ScaleDefinitionRow definition = design_.models.ModelScale[model];
    if (!design_.scales.has(definition)) continue;
    ++statementsOf_[definition];
    used_.insert(UpperCase(design_.scales[definition].name));
  }
}

AnchorModels Planner::Plan() {
  Look();
  for (const ModelRow model : Upward(structuresOf_)) PlanStatement(model);
  return std::move(plan_);
}

bool Planner::HasElements(ModelRow model) const {
  for (Position a(1); a.number() <= design_.ModelFlankCount; ++a)
    if (design_.models.reference(model, a).structured) return true;
  return false;
}

void Planner::PlanStatement(ModelRow model) {
  if (HasElements(model)) {
    PlanElements(model);
    if (SomeElementHasNone(model)) PlanRest(model);
    return;
  }
  if (structuresOf_[model].empty()) return PlanRest(model);
  AddStatement(model, References(model, nullptr), NameOf(structuresOf_[model].front(), ""));
}

// One statement for each set of elements that had observations.
void Planner::PlanElements(ModelRow model) {
  for (const StructureRow structure : structuresOf_[model]) {
    const ElementSlot* key = structures_.structureKey.row(structure);
    std::string elements;
    for (std::int32_t a = 0; a < design_.ModelFlankCount; ++a)
      if (design_.models.reference(model, Position(a + 1)).structured)
        elements +=
            "." + (key[a].number() > 0 ? std::to_string(design_.elements.ElementNumber[key[a]])
                                       : std::string("0"));
    AddStatement(model, References(model, key), NameOf(structure, elements));
  }
}

// The statement as it was.
void Planner::PlanRest(ModelRow model) {
  const std::string& type =
      design_.models.ModelText[model][static_cast<std::size_t>(design_.ModelTypeField() - 1)];
  const bool named = design_.scales.has(design_.models.ModelScale[model]);
  AddStatement(model, References(model, nullptr), named ? NameOfDefinition(model) : type);
}

// Whether more sets of elements match the statement than had observations.
bool Planner::SomeElementHasNone(ModelRow model) const {
  double matching = 1.0;
  for (Position a(1); a.number() <= design_.ModelFlankCount; ++a) {
    const PositionReference& reference = design_.models.reference(model, a);
    if (!reference.structured) continue;
    const auto [low, high] = SlotsOf(design_.flanks, design_.maps.ModelFlank[a]);
    std::int32_t elements = 0;
    if (low.number() > 0)
      for (const ElementSlot slot : Upward(low, high)) {
        const std::int32_t number = design_.elements.ElementNumber[slot];
        elements += reference.ModelLow < 0 ||
                    (number >= reference.ModelLow && number <= reference.ModelHigh);
      }
    matching *= elements;
  }
  const auto complete = std::count_if(
      structuresOf_[model].begin(), structuresOf_[model].end(), [&](StructureRow row) {
        const ElementSlot* key = structures_.structureKey.row(row);
        for (Position a(1); a.number() <= design_.ModelFlankCount; ++a)
          if (design_.models.reference(model, a).structured && key[a.offset()].number() == 0)
            return false;
        return true;
      });
  return static_cast<double>(complete) < matching;
}

// ---- Names

std::string Planner::Unique(const std::string& name) {
  if (used_.insert(UpperCase(name)).second) return name;
  for (int further = 2;; ++further) {
    const std::string longer = name + "." + std::to_string(further);
    if (used_.insert(UpperCase(longer)).second) return longer;
  }
}

std::string Planner::BaseName(ModelRow model) const {
  const ScaleDefinitionRow definition = design_.models.ModelScale[model];
  if (design_.scales.has(definition) && !design_.scales[definition].name.empty())
    return design_.scales[definition].name;
  return std::string(kStem) + std::to_string(model.number() + 1);
}

// Whether the thresholds of a statement without "#" may bear the definition's own name: those of
// all its statements, or of its only one.
bool Planner::BearsPlainName(ModelRow model) const {
  const ScaleDefinitionRow definition = design_.models.ModelScale[model];
  if (!design_.scales.has(definition) || design_.scales[definition].name.empty()) return false;
  return !design_.scales[definition].specific || statementsOf_[definition] == 1;
}

const std::string& Planner::NameOf(StructureRow structure, const std::string& elements) {
  const ScaleRow scale = structures_.structureScale[structure];
  const ModelRow model = structures_.structureModel[structure];
  std::string& name = nameOf_[scale];
  if (!name.empty()) return name;
  const std::string base = BaseName(model);
  name = elements.empty() && BearsPlainName(model) ? base : Unique(base + elements);
  plan_.scales.push_back({name, model, scale, design_.models.ModelScale[model], !elements.empty()});
  return name;
}

// A definition as the Specification has it, for statements without thresholds.
std::string Planner::NameOfDefinition(ModelRow model) {
  const ScaleDefinitionRow definition = design_.models.ModelScale[model];
  if (!design_.scales[definition].specific && !HasElements(model)) {
    // A General scale is shared: its thresholds may come from another statement.
    for (const ModelRow other : Upward(structuresOf_))
      if (design_.models.ModelScale[other] == definition && !HasElements(other) &&
          !structuresOf_[other].empty())
        return NameOf(structuresOf_[other].front(), "");
  }
  std::string& name = plainNameOf_[definition];
  if (!name.empty()) return name;
  bool taken = design_.scales[definition].name.empty();
  for (const ModelRow other : Upward(structuresOf_))
    taken = taken || (design_.models.ModelScale[other] == definition && !HasElements(other) &&
                      !structuresOf_[other].empty() && BearsPlainName(other));
  name = taken ? Unique(BaseName(model) + ".0") : BaseName(model);
  plan_.scales.push_back({name, model, ScaleRow(-1), definition, false});
  return name;
}

// ---- Statements

// The selectors of a statement, with the elements of `key` in the place of "#".
std::vector<std::string> Planner::References(ModelRow model, const ElementSlot* key) const {
  std::vector<std::string> references;
  for (Position a(1); a.number() <= design_.ModelFlankCount; ++a) {
    const PositionReference& reference = design_.models.reference(model, a);
    std::string text = design_.models.ModelText[model][a.offset()];
    if (reference.structured && key != nullptr) {
      const ElementSlot slot = key[a.offset()];
      text = reference.reversed ? "-" : "";
      text += slot.number() > 0 ? std::to_string(design_.elements.ElementNumber[slot]) : "?";
    } else if (text.starts_with('B')) {
      text.erase(0, 1);
    }
    // Behind the rest: a line that begins with B would begin with a keyword.
    if (reference.bias && !text.empty()) text += 'B';
    references.push_back(std::move(text));
  }
  return references;
}

void Planner::AddStatement(ModelRow model, const std::vector<std::string>& references,
                           std::string_view scale) {
  const std::vector<std::string>& fields = design_.models.ModelText[model];
  std::string line;
  for (const std::string& reference : references) line += reference + ",";
  line += scale;
  line += "," + fields[static_cast<std::size_t>(design_.ModelWeightField() - 1)];
  plan_.statements.push_back(
      WithComment(std::move(line), fields[static_cast<std::size_t>(design_.ModelMaxFields() - 1)]));
}

}  // namespace

AnchorModels PlanAnchorModels(const Design& design, const StructureTable& structures,
                              const ScaleTables& scales) {
  return Planner(design, structures, scales).Plan();
}

void WriteAnchorModels(const AnchorModels& models, SpecificationLines& lines) {
  lines.Line("Models =");
  for (const std::string& statement : models.statements) lines.Line(statement);
  lines.Line("*");
}

}  // namespace flanks
