#include "data/matching.h"

#include "base/parse_integer.h"
#include "base/text.h"

namespace flanks {
namespace {

bool Fits(const PositionReference& reference, std::int32_t number) {
  return reference.ModelLow < 0 || (number >= reference.ModelLow && number <= reference.ModelHigh);
}

bool FitsAnything(const PositionReference& reference) {
  return reference.empty || reference.ModelLow < -1;
}

// The usual line: every position has its element.
StatementSearch SearchKnown(const Design& design, const LineElements& elements) {
  const Column<Position, std::int32_t>& number = elements.PositionElement;
  for (ModelRow model(0); model.number() <= design.ModelLast; ++model) {
    const PositionReference* references = design.models.references.row(model);
    std::int32_t a = design.ModelFlankCount;
    while (a > 0 && Fits(references[a - 1], number[Position(a)])) --a;
    if (a == 0) return {ResponseFate::valid, model};
  }
  return {};
}

enum class StatementFit : std::uint8_t { fits, fitsNot, needsNumber, decidesUnspecified };

// Whether a statement fits a line where some position has no element in the tables.
StatementFit FitOf(const Design& design, ModelRow model, const LineElements& elements) {
  bool anyElementIsUnspecified = false, numberIsUnspecified = false;
  for (const Position a : Downward(elements.PositionStatus)) {
    const PositionReference& reference = design.models.reference(model, a);
    if (FitsAnything(reference) || elements.active[a] == 0) continue;
    const std::int32_t status = elements.PositionStatus[a];
    if (status > 0) {
      if (!Fits(reference, elements.PositionElement[a]))
        return numberIsUnspecified ? StatementFit::needsNumber : StatementFit::fitsNot;
    } else if (status == kStatusUnspecified) {
      (reference.ModelLow < 0 ? anyElementIsUnspecified : numberIsUnspecified) = true;
    } else if (reference.ModelLow >= 0) {
      return numberIsUnspecified ? StatementFit::needsNumber : StatementFit::fitsNot;
    }
  }
  if (numberIsUnspecified) return StatementFit::needsNumber;
  return anyElementIsUnspecified ? StatementFit::decidesUnspecified : StatementFit::fits;
}

// A Flank without any element says nothing; a line where it is the only hope of a position in the
// measurement holds no element at all.
bool HoldsNoElement(const Design& design, ModelRow model, const LineElements& elements) {
  bool emptyFlank = false;
  for (const Position a : Downward(elements.PositionStatus)) {
    if (!design.models.reference(model, a).measures()) continue;
    if (elements.PositionStatus[a] > 0) return false;
    emptyFlank |= elements.PositionStatus[a] == kStatusEmptyFlank;
  }
  return emptyFlank;
}

StatementSearch SearchWithGaps(const Design& design, const LineElements& elements) {
  StatementSearch result;
  for (ModelRow model(0); model.number() <= design.ModelLast; ++model) {
    const StatementFit fit = FitOf(design, model, elements);
    if (fit == StatementFit::fits) {
      const bool none = HoldsNoElement(design, model, elements);
      return {none ? ResponseFate::unspecified : ResponseFate::valid, model};
    }
    // Kept: a later statement may ignore the position (docs/quirks.md).
    if (fit == StatementFit::decidesUnspecified) return {ResponseFate::unspecified, ModelRow()};
    if (fit == StatementFit::needsNumber) result.fate = ResponseFate::unspecified;
  }
  return result;
}

// The item of the scale's recoding list that takes `text`; null when none does.
const RecodeItem* FindRecode(const ScaleDefinition& scale, std::string_view text) {
  for (const RecodeItem& item : scale.recodes)
    if (item.text == text) return &item;
  const NumericPrefix number = ReadNumericPrefix(text);
  if (number.length == 0 || number.length != text.size()) return nullptr;
  for (const RecodeItem& item : scale.recodes)
    if (item.isRange && number.value >= item.low && number.value <= item.high) return &item;
  return nullptr;
}

}  // namespace

StatementSearch FindStatement(const Design& design, const LineElements& elements) {
  for (const Position a : Downward(elements.PositionStatus))
    if (elements.PositionStatus[a] < 0 && elements.active[a] != 0)
      return SearchWithGaps(design, elements);
  return SearchKnown(design, elements);
}

ScoredResponse ScoreResponse(const Design& design, ModelRow model, std::string_view text) {
  ScoredResponse result;
  const ScaleType type = design.models.ModelScaleType[model];
  if (type == ScaleType::missing) return {ResponseFate::invalidModel, 0, {}};
  if (const ScaleDefinitionRow scale = design.models.ModelScale[model]; design.scales.has(scale)) {
    if (const RecodeItem* item = FindRecode(design.scales[scale], text)) {
      if (item->category != text) result.recodedTo = item->category;
      text = item->category;
    }
  }
  // Kept: a sign anywhere (docs/quirks.md).
  if (text.find_first_of("-_") != std::string_view::npos) {
    result.fate = ResponseFate::negative;
    return result;
  }
  const WholeNumber number = ParseInteger(text, kLargestCategory);
  const bool limited = type != ScaleType::poisson;
  if (number.fault != NumberFault::none ||
      (limited && number.value > design.models.ModelCategoryMax[model]))
    return result;
  result.fate = ResponseFate::valid;
  result.category = number.value;
  return result;
}

CategoryTable::CategoryTable(const Design& design) : design_(design), rows_(design.ModelLast + 1) {}

void CategoryTable::Fill(ModelRow model) {
  std::vector<std::int16_t>& row = rows_[model];
  row.assign(kCategories, kLookClosely);
  for (std::int32_t number = 0; number < kCategories; ++number) {
    const ScoredResponse scored = ScoreResponse(design_, model, std::to_string(number));
    if (scored.fate == ResponseFate::valid)
      row[static_cast<std::size_t>(number)] = static_cast<std::int16_t>(scored.category);
  }
}

}  // namespace flanks
