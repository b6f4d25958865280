#include "data/resolve_elements.h"

#include <algorithm>
#include <utility>

#include "base/parse_integer.h"
#include "base/text.h"

namespace flanks {
namespace {

// The letters of FlankDelements: the one tried first, and the fall-back or ".".
bool LabelsFirst(std::string_view letters) {
  return letters.starts_with('L');
}
bool LabelsAllowed(std::string_view letters) {
  return letters.find('L') != std::string_view::npos;
}

}  // namespace

ElementResolver::ElementResolver(const Design& design, std::int64_t nullElement,
                                 const SplitRules& rules, ElementFinder& finder,
                                 LabelFinder& labels, DataCounts& counts)
    : design_(design),
      nullElement_(nullElement),
      rules_(rules),
      finder_(finder),
      labels_(labels),
      counts_(counts),
      plans_(design.DataFlankCount),
      dvalueTexts_(design.DataFlankCount),
      resolved_(design.DataFlankCount),
      plainFields_(rules.dvalues.empty()) {
  for (const DataPosition p : Upward(plans_)) MakePlan(p);
}

void ElementResolver::MakePlan(DataPosition position) {
  PositionPlan& plan = plans_[position];
  plan.position = position;
  plan.flank = design_.maps.EntryMap[position];
  plan.active = design_.maps.ActiveMap[position];
  plan.inUse = plan.flank.number() > 0 && plan.active.number() > 0 &&
               design_.maps.DataPositionActive[position] != 0;
  if (plan.flank.number() <= 0) {
    plan.plainField = PlainField::ignored;
    return;
  }
  const std::string& letters = design_.flanks.FlankDelements[plan.flank];
  if (LabelsFirst(letters))
    plan.identifier = letters == "LN" ? Identifier::labelThenNumber : Identifier::label;
  else
    plan.identifier = LabelsAllowed(letters) ? Identifier::numberThenLabel : Identifier::number;
  plan.low = design_.flanks.FlankLow[plan.flank];
  plan.high = design_.flanks.FlankHigh[plan.flank];
  plan.firstSlot = design_.flanks.FlankFirstSlot[plan.flank].number();
  const std::int32_t count = design_.flanks.FlankElementCount[plan.flank];
  plan.emptyFlank = count == 0;
  plan.gapFree = count > 0 && std::int64_t{plan.high} - plan.low + 1 == count;
  if (!plan.inUse) return;
  if (LabelsFirst(letters)) plan.plainField = PlainField::label;
  plan.cut = design_.flanks.identifierStart[plan.flank] != 0 ||
             design_.flanks.identifierWidth[plan.flank] != 0;
  plainFields_ = plainFields_ && !plan.cut;
}

LineProblem ElementResolver::ResolveElements(DataLine& line, std::int64_t lineNumber,
                                             LineElements& elements) {
  elements.rangePosition = Position();
  elements.followers.clear();
  if (!rules_.dvalues.empty()) return ResolveWithDvalues(line, lineNumber, elements);
  for (const DataPosition p : Upward(plans_)) {
    const LineProblem problem = ResolvePosition(p, line.Field(p.number()), elements);
    if (problem.fault != Fault::none) return problem;
  }
  return {};
}

LineProblem ElementResolver::ResolveWithDvalues(DataLine& line, std::int64_t lineNumber,
                                                LineElements& elements) {
  // A source may itself have a Dvalue: positions wait until theirs is known.
  resolved_.assign(design_.DataFlankCount, 0);
  int left = design_.DataFlankCount;
  for (int pass = 0; pass < design_.DataFlankCount && left > 0; ++pass) {
    for (const DataPosition p : Upward(plans_)) {
      if (resolved_[p] != 0) continue;
      const DvalueEntry* entry = rules_.dvalue(p.number());
      if (entry != nullptr && !TakeDvalue(*entry, line, lineNumber, elements)) continue;
      if (entry != nullptr && entry->fromPosition > 0 &&
          elements.ChangesWithRange(DataPosition(entry->fromPosition))) {
        elements.followers.push_back(p);
      } else {
        const LineProblem problem = ResolvePosition(p, line.Field(p.number()), elements);
        if (problem.fault != Fault::none) return problem;
      }
      resolved_[p] = 1;
      --left;
    }
  }
  if (left > 0) return {Fault::dvaluesCircular, 0, {}};
  return elements.followers.empty() ? LineProblem{} : ResolveFollowers(line, lineNumber, elements);
}

// Fills the followers for each element of the range, whether it has a response or not: so are the
// elements of the range looked up, too.
LineProblem ElementResolver::ResolveFollowers(DataLine& line, std::int64_t lineNumber,
                                              LineElements& elements) {
  const std::string_view range = line.Field(elements.rangeDataPosition.number());
  elements.followerValues.clear();
  for (std::size_t index = 0; index < elements.RangeList.size(); ++index) {
    TakeRangeNumber(index, line, elements);
    for (const DataPosition p : elements.followers) {
      TakeDvalue(*rules_.dvalue(p.number()), line, lineNumber, elements);
      const std::string_view field = line.Field(p.number());
      const LineProblem problem = ResolvePosition(p, field, elements);
      if (problem.fault != Fault::none) {
        line.Fields[elements.rangeDataPosition.offset()] = range;
        return problem;
      }
      FollowerValue value{{}, std::string(field)};
      if (const Position active = plans_[p].active; active.number() > 0)
        value.found = {elements.PositionElement[active], elements.PositionStatus[active]};
      elements.followerValues.push_back(std::move(value));
    }
  }
  TakeRangeElement(0, line, elements);
  line.Fields[elements.rangeDataPosition.offset()] = range;
  return {};
}

void ElementResolver::TakeRangeNumber(std::size_t index, DataLine& line,
                                      LineElements& elements) const {
  elements.PositionElement[elements.rangePosition] = elements.RangeList[index].number;
  elements.PositionStatus[elements.rangePosition] = elements.RangeList[index].status;
  elements.rangeText =
      std::to_string(std::int64_t{elements.rangeLow} + static_cast<std::int64_t>(index));
  line.Fields[elements.rangeDataPosition.offset()] = elements.rangeText;
}

void ElementResolver::TakeRangeElement(std::size_t index, DataLine& line,
                                       LineElements& elements) const {
  TakeRangeNumber(index, line, elements);
  const std::size_t first = index * elements.followers.size();
  for (std::size_t i = 0; i < elements.followers.size(); ++i) {
    const DataPosition p = elements.followers[i];
    const FollowerValue& value = elements.followerValues[first + i];
    line.Fields[p.offset()] = value.text;
    const Position active = plans_[p].active;
    if (active.number() <= 0) continue;
    elements.PositionElement[active] = value.found.number;
    elements.PositionStatus[active] = value.found.status;
  }
}

// Puts the value of `entry` into its field; false while its source is not known.
bool ElementResolver::TakeDvalue(const DvalueEntry& entry, DataLine& line, std::int64_t lineNumber,
                                 const LineElements& elements) {
  const DataPosition position(entry.position);
  std::string& text = dvalueTexts_[position];
  if (entry.fromPosition == 0) {
    const std::string upper = UpperCase(entry.text);
    if (upper == "$L")
      text = std::to_string(lineNumber);
    else if (upper == "$C")
      text = counts_.DataLines.text();
    else
      text = entry.text;
  } else {
    const DataPosition source(entry.fromPosition);
    if (resolved_[source] == 0) return false;
    if (entry.start == 0) {
      const Position active = plans_[source].active;
      const std::int32_t status = plans_[source].inUse ? elements.PositionStatus[active] : 0;
      text = status > 0 ? std::to_string(design_.elements.ElementGroup[ElementSlot(status)]) : "";
    } else {
      text = Trim(Mid(SourceText(source, line, elements), static_cast<std::size_t>(entry.start),
                      static_cast<std::size_t>(entry.length)));
    }
  }
  ReplaceCharacter(text, '_', '-');
  line.Fields[position.offset()] = text;
  return true;
}

// The text that a Dvalue is cut from: the label of the source's element when it has one of its
// own, otherwise the field.
std::string_view ElementResolver::SourceText(DataPosition source, const DataLine& line,
                                             const LineElements& elements) const {
  const std::string_view field = line.Field(source.number());
  const PositionPlan& plan = plans_[source];
  if (!plan.inUse || elements.PositionStatus[plan.active] <= 0) return field;
  const ElementSlot slot(elements.PositionStatus[plan.active]);
  const std::string& label = design_.elements.ElementLabel[slot];
  if (label == std::to_string(design_.elements.ElementNumber[slot])) return field;
  return label;
}

LineProblem ElementResolver::ResolvePosition(DataPosition position, std::string_view field,
                                             LineElements& elements) {
  const PositionPlan& plan = plans_[position];
  if (plan.flank.number() <= 0 || plan.active.number() <= 0) return {};
  const bool numbersFirst =
      plan.identifier == Identifier::number || plan.identifier == Identifier::numberThenLabel;
  FoundIdentifier found;
  const std::string_view text =
      plan.cut ? Trim(CutIdentifier(design_.flanks, plan.flank, field)) : field;
  if (numbersFirst && !text.empty()) {
    const WholeNumber number = ParseElementNumber(text);
    if (number.fault != NumberFault::none) {
      if (const ElementRange range = ParseElementRange(text);
          range.fault == Fault::none && range.isRange) {
        if (!plan.inUse) return {Fault::rangeInUnusedFlank, position.number(), field};
        return ResolveRange(position, range.low, range.high, elements);
      }
      if (plan.inUse && plan.identifier == Identifier::number)
        return {Fault::invalidElementNumberInData, position.number(), text};
      if (plan.inUse) found = ByLabel(plan, text);
    } else if (plan.inUse) {
      found = ByNumber(plan, number.value, text);
    }
  } else if (plan.inUse && !text.empty()) {
    found = ByLabel(plan, text);
  }
  elements.PositionElement[plan.active] = found.number;
  elements.PositionStatus[plan.active] = found.status;
  return {};
}

LineProblem ElementResolver::ResolveRange(DataPosition position, std::int32_t low,
                                          std::int32_t high, LineElements& elements) {
  const PositionPlan& plan = plans_[position];
  if (elements.hasRange()) return {Fault::twoRanges, position.number(), {}};
  if (std::int64_t{high} - low + 1 > kMostRangeElements)
    return {Fault::rangeTooLong, position.number(), {}};
  elements.rangePosition = plan.active;
  elements.rangeDataPosition = position;
  elements.rangeLow = low;
  elements.RangeList.clear();
  for (std::int64_t number = low; number <= high; ++number)
    elements.RangeList.push_back(
        ByNumber(plan, static_cast<std::int32_t>(number), std::to_string(number)));
  elements.PositionElement[plan.active] = elements.RangeList.front().number;
  elements.PositionStatus[plan.active] = elements.RangeList.front().status;
  return {};
}

FoundIdentifier ElementResolver::ByNumber(const PositionPlan& plan, std::int32_t number,
                                          std::string_view text) {
  if (number == nullElement_) {
    // Kept: listed, with a note for the user who gave it a label (docs/quirks.md).
    unspecified_.AddNumber(plan.flank, number, text);
    return {};
  }
  if (const std::int32_t slot = SlotOfNumber(plan, number); slot > 0) return {number, slot};
  if (plan.identifier == Identifier::numberThenLabel)
    if (const std::int32_t slot = SlotOfLabel(plan, text); slot > 0)
      return {design_.elements.ElementNumber[ElementSlot(slot)], slot};
  return Unspecified(plan, number, text);
}

FoundIdentifier ElementResolver::ByLabel(const PositionPlan& plan, std::string_view text) {
  if (const std::int32_t slot = SlotOfLabel(plan, text); slot > 0)
    return {design_.elements.ElementNumber[ElementSlot(slot)], slot};
  if (text == design_.flanks.FlankNullLabel[plan.flank]) return {};
  if (plan.identifier == Identifier::labelThenNumber) {
    const WholeNumber number = ParseElementNumber(text);
    if (number.fault == NumberFault::none) return ByNumber(plan, number.value, text);
  }
  return Unspecified(plan, kNoElementNumber, text);
}

FoundIdentifier ElementResolver::Unspecified(const PositionPlan& plan, std::int32_t number,
                                             std::string_view text) {
  const bool byLabel = number == kNoElementNumber;
  if (byLabel)
    unspecified_.AddLabel(plan.flank, text);
  else
    unspecified_.AddNumber(plan.flank, number, text);
  if (!first_ && !firstTaken_)
    first_ = FirstUnspecified{plan.flank, plan.position, std::string(text), byLabel};
  return {number, plan.emptyFlank ? kStatusEmptyFlank : kStatusUnspecified};
}

std::optional<FirstUnspecified> ElementResolver::TakeFirstUnspecified() {
  if (!first_) return std::nullopt;
  firstTaken_ = true;
  return std::exchange(first_, std::nullopt);
}

}  // namespace flanks
