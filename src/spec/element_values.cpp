#include "spec/element_values.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

#include "base/parse_integer.h"
#include "base/shown_text.h"
#include "base/single.h"
#include "base/text.h"
#include "run/messages.h"
#include "spec/anchoring.h"
#include "spec/given_value.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

constexpr char kTextSeparator = '\x01';

// The digits at the start of `text`, which are taken away with the blanks around them.
std::size_t TakeNumber(std::string_view& text) {
  text = TrimLeft(text);
  std::size_t value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  text = TrimLeft(text.substr(static_cast<std::size_t>(read.ptr - text.data())));
  return value;
}

// False when the text is no group number.
bool SetGroup(std::string_view text, Design& design, ElementSlot slot) {
  if (text.empty()) return true;
  const WholeNumber group = ParseInteger(text, kLargestGroupNumber);
  if (group.fault != NumberFault::none) return false;
  design.elements.ElementGroup[slot] = static_cast<std::int16_t>(group.value);
  std::int32_t& highest = design.flanks.FlankHighestGroup[design.elements.ElementFlank[slot]];
  highest = std::max(highest, group.value);
  return true;
}

// The last element of the chain from `slot`, which is `slot` itself when it has no target; slot 0
// when the chain comes back or is too long.
ElementSlot LastTarget(const ElementTable& elements, ElementSlot slot) {
  for (int links = 0; links < kTooManyTargets; ++links) {
    const ElementSlot target = elements.ElementTarget[slot];
    if (target.number() == 0) return slot;
    slot = target;
  }
  return ElementSlot();
}

// How the elements of a Flank with a measure stand.
AnchorKind KindOfAnchor(std::string_view options, std::int16_t group) {
  if (IsAnchoring(options)) return AnchorKind::anchored;
  if (IsGroupAnchoring(options) && group != 0) return AnchorKind::groupAnchored;
  return AnchorKind::none;
}

// What the measures of the elements are made with.
struct MeasureMaker {
  const Settings& settings;
  float zeroAnchor;
  Design& design;
  FormerRun& former;
  Console& console;

  // False when the measure is out of range; the run is stopped then.
  bool Set(std::string_view text, ElementSlot slot) {
    const FlankNo flank = design.elements.ElementFlank[slot];
    const std::string& options = design.flanks.FlankOptions[flank];
    if (IsDummyFlank(options)) {
      design.elements.PresetMeasure[slot] = zeroAnchor;
      design.elements.ElementAnchor[slot] = AnchorKind::anchored;
      return true;
    }
    const GivenValue measure = EvaluateGiven(console, text);
    if (!measure.given) return true;
    const float logit = Single((static_cast<double>(measure.value) - settings.Umean) /
                               static_cast<double>(settings.Uscale));
    if (!(std::abs(logit) < settings.Hardware)) {
      console.FailureStop(std::string(message::kAnchorOutOfRange) + std::string(text) + " (" +
                          DescribeElement(design, slot) + ")");
      return false;
    }
    const std::int16_t group = design.elements.ElementGroup[slot];
    design.elements.PresetMeasure[slot] = logit == 0.0f ? zeroAnchor : logit;
    design.elements.ElementAnchor[slot] = KindOfAnchor(options, group);
    if (IsGroupAnchoring(options) && group == 0)
      former.groupAnchoredFlankWithoutGroup = flank.number();
    return true;
  }
};

void SetGroupFault(ReadState& reading, std::int64_t lineNumber) {
  reading.SourceLine.clear();
  reading.LineNumber = lineNumber;
  SetSpecificationFault(reading, Fault::invalidGroupNumber);
}

}  // namespace

std::string DescribeElement(const Design& design, ElementSlot slot) {
  const ElementTable& elements = design.elements;
  return std::to_string(elements.ElementFlank[slot].number()) + "," +
         std::to_string(elements.ElementNumber[slot]) + "," + elements.ElementLabel[slot];
}

void ElementTexts::Set(ElementSlot low, ElementSlot high, std::string_view measure,
                       std::string_view group, std::int64_t lineNumber, std::int32_t elementTotal) {
  if (measure.empty() && group.empty()) return;
  if (entryOf_.empty()) entryOf_.assign(elementTotal, 0);
  // Neighbours with the same entry before share the same entry afterwards.
  std::int32_t former = -1;
  for (const ElementSlot slot : Upward(low, high)) {
    if (entryOf_[slot] != former) {
      former = entryOf_[slot];
      const std::string_view newMeasure = measure.empty() ? this->measure(slot) : measure;
      const std::string_view newGroup = group.empty() ? this->group(slot) : group;
      entries_.push_back(
          {std::string(newMeasure) + kTextSeparator + std::string(newGroup), lineNumber});
    }
    entryOf_[slot] = static_cast<std::int32_t>(entries_.size());
  }
}

const ElementTexts::Entry* ElementTexts::entry(ElementSlot slot) const {
  if (entryOf_.empty() || entryOf_[slot] == 0) return nullptr;
  return &entries_[static_cast<std::size_t>(entryOf_[slot] - 1)];
}

std::string_view ElementTexts::measure(ElementSlot slot) const {
  const Entry* found = entry(slot);
  if (found == nullptr) return {};
  return std::string_view(found->texts).substr(0, found->texts.find(kTextSeparator));
}

std::string_view ElementTexts::group(ElementSlot slot) const {
  const Entry* found = entry(slot);
  if (found == nullptr) return {};
  return std::string_view(found->texts).substr(found->texts.find(kTextSeparator) + 1);
}

std::int64_t ElementTexts::lineNumber(ElementSlot slot) const {
  const Entry* found = entry(slot);
  return found == nullptr ? 0 : found->lineNumber;
}

std::string_view ResolveGroupText(std::string_view text, std::string_view label) {
  if (!text.starts_with('$')) return text;
  text.remove_prefix(1);
  const std::size_t column = TakeNumber(text);
  std::size_t width = 1;
  if (!text.empty() && UpperCase(text.front()) == 'W') {
    text.remove_prefix(1);
    width = TakeNumber(text);
  }
  return column < 1 ? std::string_view() : Trim(Mid(label, column, width));
}

float ZeroAnchor(float hardware) {
  const float anchor = Single(std::exp(-static_cast<double>(hardware)));
  return MaxSingle(anchor, std::numeric_limits<float>::denorm_min());
}

void SetElementValues(const ElementTexts& texts, const Settings& settings, Design& design,
                      ReadState& reading, FormerRun& former, Console& console) {
  MeasureMaker maker{settings, ZeroAnchor(settings.Hardware), design, former, console};
  for (const ElementSlot slot : Upward(design.elements.ElementNumber)) {
    const std::string_view group =
        ResolveGroupText(texts.group(slot), design.elements.ElementLabel[slot]);
    if (!SetGroup(group, design, slot)) {
      console.WarnLine(
          "Invalid group number: " + WholeCharacters(group, design.elements.ElementLabel[slot]) +
          " (" + DescribeElement(design, slot) + " )");
      return SetGroupFault(reading, texts.lineNumber(slot));
    }
    reading.LineNumber = texts.lineNumber(slot);  // a malformed measure ends the process
    if (!maker.Set(texts.measure(slot), slot)) return;
  }
}

Fault SetTarget(ElementTable& elements, ElementSlot slot, ElementSlot target) {
  elements.ElementTarget[slot] = target;
  return LastTarget(elements, slot).number() > 0 ? Fault::none : Fault::circularTarget;
}

ElementSlot CollapseTargets(ElementTable& elements) {
  for (const ElementSlot slot : Upward(elements.ElementTarget))
    if (LastTarget(elements, slot).number() == 0) return slot;
  for (const ElementSlot slot : Upward(elements.ElementTarget)) {
    const ElementSlot last = LastTarget(elements, slot);
    if (last != slot) elements.ElementTarget[slot] = last;
  }
  return ElementSlot();
}

}  // namespace flanks
