#include "spec/label_loader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/parse_integer.h"
#include "base/text.h"
#include "base/utf8.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "run/work_files.h"
#include "spec/element_finder.h"
#include "spec/element_range.h"
#include "spec/element_values.h"
#include "spec/given_value.h"
#include "spec/label_list.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr std::int64_t kLargestQuietRange = 999;  // a longer range shows a progress line
constexpr std::size_t kFirstRoom = 1000;          // for ranges
constexpr std::int64_t kLinesBetweenTicks = 256;

// The two readings of the labels file and what they leave behind.
class LabelLoader {
 public:
  LabelLoader(Run& run, TextWorkFile& file)
      : console_(run.console),
        reading_(run.analysis.reading),
        design_(run.analysis.design),
        settings_(run.analysis.settings),
        former_(run.process.former),
        source_(run.analysis.specification.source.get()),
        file_(file) {}

  void Load();

 private:
  void ReadNumbers();
  void ReadFlankLine(const LabelLine& line);
  void ReadNumber(const LabelLine& line);
  void WarnOfNullElement(const LabelLine& line);
  void SetFlankWeight(std::string_view text);
  void OrderNumbers();
  void SizeElementTable();
  void ReadLabels();
  SlotRange SlotsOfLine(const LabelLine& line, ElementFinder& finder) const;
  void TellOpenQuote(std::string_view label, std::int64_t lineNumber);
  void SetElements(const LabelLine& line, SlotRange slots);
  void SetTargets(const LabelLine& line, SlotRange slots, ElementFinder& finder);
  void FinishLabels();
  void FinishTargets();
  void FailAtTargetOf(ElementSlot slot);
  void TellPlaceOfMeasure();
  void Fail(const LabelLine& line, Fault fault, std::int64_t number = 0);
  bool Halted() const { return reading_.faulty() || console_.stopping(); }
  bool Tick(const LabelLine& line);

  Console& console_;
  ReadState& reading_;
  Design& design_;
  const Settings& settings_;
  FormerRun& former_;
  const SpecificationSource* source_;  // tells where lines stand; null when none was read
  TextWorkFile& file_;
  FlankNo flank_;       // of the block at work
  FlankNo nullWarned_;  // the last Flank with Warning (16)
  bool openQuoteTold_ = false;
  Column<FlankNo, std::uint8_t> flankSeen_;
  std::vector<NumberRange> ranges_;
  std::int64_t numbers_ = 0;  // in ranges_
  ElementTexts texts_;
  std::int64_t linesRead_ = 0;
};

void LabelLoader::Fail(const LabelLine& line, Fault fault, std::int64_t number) {
  reading_.SourceLine = line.text;
  reading_.LineNumber = line.lineNumber;
  SetNumberedFault(reading_, fault, number);
}

// False when the run is to stop.
bool LabelLoader::Tick(const LabelLine& line) {
  if (++linesRead_ % kLinesBetweenTicks == 0) console_.Tick(line.lineNumber);
  return !Halted();
}

void LabelLoader::Load() {
  ReadNumbers();
  if (Halted()) return;
  OrderNumbers();
  if (Halted()) return;
  GiveSlots(ranges_, settings_.NullElement, design_);
  ranges_ = {};
  if (design_.ElementTotal == 0) return;
  SizeElementTable();
  ReadLabels();
  if (Halted()) return;
  FinishLabels();
  FinishTargets();
  if (Halted()) return;
  SetElementValues(texts_, settings_, design_, reading_, former_, console_);
  if (console_.stopping()) TellPlaceOfMeasure();
}

// Behind a measure out of range, which is a slip of the user: as behind a fault.
void LabelLoader::TellPlaceOfMeasure() {
  FilePlace place;
  if (source_ != nullptr) place = source_->PlaceOf(reading_.LineNumber);
  if (place.line > 0)
    console_.ShowFlagged("  See line " + std::to_string(place.line) + " of \"" + place.file +
                         "\".");
  console_.ShowFlagged(
      "  To mend it: Check the measure against Umean= and Uscale=, which turn it into logits, and "
      "against Hardware=, the limit of logits.");
}

// First reading: the Flanks and the element numbers.
void LabelLoader::ReadNumbers() {
  console_.ShowPart("Processing element numbers and labels: flank");
  console_.TickStart();
  flankSeen_.assign(design_.FlankCount, 0);
  ranges_.reserve(kFirstRoom);
  LabelLines lines(file_);
  LabelLine line;
  while (Tick(line) && lines.Next(line)) {
    if (line.beginsFlank)
      ReadFlankLine(line);
    else
      ReadNumber(line);
  }
  console_.TickEnd();
}

void LabelLoader::ReadFlankLine(const LabelLine& line) {
  const WholeNumber number = ParseInteger(line.fields[kFlankNumberField], design_.FlankCount);
  if (number.fault == NumberFault::notWhole) return Fail(line, Fault::notWhole);
  if (number.fault != NumberFault::none)
    return Fail(line, Fault::flankOutOfRange, design_.FlankCount);
  if (number.value == 0) return Fail(line, Fault::labelsFlankZero, design_.FlankCount);
  flank_ = FlankNo(number.value);
  if (flankSeen_[flank_] != 0) return Fail(line, Fault::flankTwiceInLabels);
  flankSeen_[flank_] = 1;
  console_.ShowMore(" " + std::to_string(number.value));
  reading_.LineNumber = line.lineNumber;  // a malformed weight ends the process
  const std::string_view name = line.fields[kFlankNameField];
  design_.flanks.FlankName[flank_] = name.empty() ? std::to_string(number.value) : name;
  design_.flanks.FlankOptions[flank_] = " " + UpperCase(line.fields[kFlankOptionsField]);
  SetFlankWeight(line.fields[kFlankWeightField]);
}

// Kept: a weight above 0 is cut to a whole number, so that .5 is 0 (docs/quirks.md).
void LabelLoader::SetFlankWeight(std::string_view text) {
  const GivenValue weight = EvaluateGiven(console_, text);
  if (weight.given && weight.value >= 0.0f)
    design_.flanks.FlankWeight[flank_] = std::trunc(weight.value);
}

void LabelLoader::ReadNumber(const LabelLine& line) {
  const ElementRange range = ParseElementRange(line.fields[kNumberField]);
  if (range.fault != Fault::none) return Fail(line, range.fault);
  const std::int64_t count = std::int64_t{range.high} - range.low + 1;
  numbers_ += count;
  if (count > kLargestQuietRange)
    console_.ShowLine(JoinNumber(std::string(line.fields[kNumberField]) + ".adding", count) +
                      " elements to list.");
  if (numbers_ > kLargestElementCount) return Fail(line, Fault::tooManyElements, numbers_);
  ranges_.push_back({flank_, range.low, range.high});
  if (range.low <= settings_.NullElement && settings_.NullElement <= range.high)
    WarnOfNullElement(line);
}

// The null element gets no slot; its label is kept.  Said once for a Flank, however often its lines
// hold the number.
void LabelLoader::WarnOfNullElement(const LabelLine& line) {
  if (std::exchange(nullWarned_, flank_) != flank_) {
    console_.ShowLine("");
    console_.WarnLine(JoinNumber(message::kNullElement, settings_.NullElement) +
                      JoinNumber(" is specified in Labels= for flank", flank_.number()));
  }
  if (!line.fields[kLabelField].empty())
    design_.flanks.FlankNullLabel[flank_] = line.fields[kLabelField];
}

void LabelLoader::OrderNumbers() {
  if (OrderOf(ranges_) == RangeOrder::inOrder) return;
  console_.ShowLine("Sorting element labels: ");
  SortRanges(ranges_);
  const RangeOrder order = OrderOf(ranges_);
  if (order == RangeOrder::numbersOutOfOrder) console_.FailureStop(message::kLabelSequenceNumbers);
  if (order == RangeOrder::flanksOutOfOrder) console_.FailureStop(message::kLabelSequenceFlanks);
}

void LabelLoader::SizeElementTable() {
  ElementTable& elements = design_.elements;
  const std::int32_t total = design_.ElementTotal;
  elements.ElementLabel.assign(total, {});
  elements.ElementAnchor.assign(total, AnchorKind::none);
  elements.PresetMeasure.assign(total, 0.0f);
  elements.ElementGroup.assign(total, 0);
  elements.ElementTarget.assign(total, ElementSlot());
  elements.ElementWeight.assign(total, 1.0f);
  // An element without a weight of its own has its Flank's.
  for (const ElementSlot slot : Upward(elements.ElementWeight)) {
    const float weight = design_.flanks.FlankWeight[elements.ElementFlank[slot]];
    elements.ElementWeight[slot] = weight;
    elements.ElementWeightsInUse = elements.ElementWeightsInUse || weight != 1.0f;
  }
}

// Second reading: labels, weights, targets, and the texts of measures and groups.
void LabelLoader::ReadLabels() {
  console_.ShowPart("Loading element labels: ");
  console_.TickStart();
  ElementFinder finder(design_.flanks, design_.elements);
  LabelLines lines(file_);
  LabelLine line;
  while (Tick(line) && lines.Next(line)) {
    if (line.beginsFlank) {
      flank_ = FlankNo(ParseInteger(line.fields[kFlankNumberField], design_.FlankCount).value);
      continue;
    }
    const SlotRange slots = SlotsOfLine(line, finder);
    if (slots.empty()) continue;
    SetElements(line, slots);
    SetTargets(line, slots, finder);
  }
  console_.TickEnd();
}

// The slots of the elements on a line.  All numbers of a range have slots but the null element, so
// they stand side by side.
SlotRange LabelLoader::SlotsOfLine(const LabelLine& line, ElementFinder& finder) const {
  ElementRange range = ParseElementRange(line.fields[kNumberField]);
  if (range.low == settings_.NullElement) ++range.low;
  if (range.high == settings_.NullElement) --range.high;
  if (range.high < range.low) return {ElementSlot(1), ElementSlot(0)};
  const ElementSlot low = finder.FindElementSlot(range.low, flank_).slot;
  if (range.high == range.low) return {low, low};
  return {low, finder.FindElementSlot(range.high, flank_).slot};
}

// A comma ends a label, between quotes too.  Said once.
void LabelLoader::TellOpenQuote(std::string_view label, std::int64_t lineNumber) {
  const bool isOpen = label.size() > 1 && label.front() == '"' && label.back() != '"';
  if (!isOpen || std::exchange(openQuoteTold_, true)) return;
  console_.ShowFlagged("The label " + std::string(ShownPart(label)) +
                       JoinNumber(" in line", lineNumber) +
                       " begins with a quote mark and ends without: a comma ends a label, also "
                       "between quotes. Write it without the comma.");
}

// What a line does not give stays as an earlier line left it.
void LabelLoader::SetElements(const LabelLine& line, SlotRange slots) {
  ElementTable& elements = design_.elements;
  const std::string_view label = line.fields[kLabelField];
  TellOpenQuote(label, line.lineNumber);
  reading_.LineNumber = line.lineNumber;  // a malformed weight ends the process
  const GivenValue weight = EvaluateGiven(console_, line.fields[kWeightField]);
  elements.ElementWeightsInUse =
      elements.ElementWeightsInUse || (weight.given && weight.value != 1.0f);
  for (const ElementSlot slot : Upward(slots.low, slots.high)) {
    if (!label.empty()) elements.ElementLabel[slot] = label;
    if (weight.given) elements.ElementWeight[slot] = weight.value;
  }
  texts_.Set(slots.low, slots.high, line.fields[kMeasureField], line.fields[kGroupField],
             line.lineNumber, design_.ElementTotal);
}

void LabelLoader::SetTargets(const LabelLine& line, SlotRange slots, ElementFinder& finder) {
  const std::string_view text = line.fields[kTargetField];
  if (text.empty() || text.front() == '-') return;  // a negative number is no target
  const WholeNumber number = ParseElementNumber(text);
  if (number.fault != NumberFault::none) return Fail(line, Fault::invalidTarget);
  const FoundElement target = finder.FindElementSlot(number.value, flank_);
  if (!target.found()) return Fail(line, Fault::invalidTarget);
  for (const ElementSlot slot : Upward(slots.low, slots.high)) {
    const Fault fault = SetTarget(design_.elements, slot, target.slot);
    if (fault != Fault::none) return Fail(line, fault);
  }
}

// An element without a label has its number as text.
void LabelLoader::FinishLabels() {
  ElementTable& elements = design_.elements;
  const Utf8Encoded encoded = settings_.UTF8enc == "Y" ? Utf8Encoded::yes : Utf8Encoded::detect;
  for (const ElementSlot slot : Upward(elements.ElementLabel)) {
    std::string& label = elements.ElementLabel[slot];
    if (label.empty()) label = std::to_string(elements.ElementNumber[slot]);
    elements.ElementLabelWidth = std::max(elements.ElementLabelWidth, DisplayWidth(label, encoded));
  }
}

void LabelLoader::FinishTargets() {
  const ElementSlot slot = CollapseTargets(design_.elements);
  if (slot.number() == 0) return;
  FailAtTargetOf(slot);
}

// The fault of a chain that grew too long at its end stands at the line that gave the element its
// target: the last one.  The lines are looked through again for it.
void LabelLoader::FailAtTargetOf(ElementSlot slot) {
  ElementFinder finder(design_.flanks, design_.elements);
  LabelLines lines(file_);
  LabelLine line;
  std::string text;
  std::int64_t lineNumber = 0;
  while (lines.Next(line)) {
    if (line.beginsFlank) {
      flank_ = FlankNo(ParseInteger(line.fields[kFlankNumberField], design_.FlankCount).value);
      continue;
    }
    const std::string_view target = line.fields[kTargetField];
    if (target.empty() || target.front() == '-') continue;
    const SlotRange slots = SlotsOfLine(line, finder);
    if (slot.number() < slots.low.number() || slots.high.number() < slot.number()) continue;
    text = line.text;
    lineNumber = line.lineNumber;
  }
  reading_.SourceLine = text;
  reading_.LineNumber = lineNumber;
  SetSpecificationFault(reading_, Fault::circularTarget);
}

// The Flank table of a run without elements.
void SetNoElements(Design& design) {
  GiveSlots({}, 0, design);
}

}  // namespace

void LoadLabels(Run& run) {
  Analysis& analysis = run.analysis;
  Design& design = analysis.design;
  if (design.FlankCount == 0) return;
  const std::int64_t lineNumber = analysis.reading.LineNumber;
  if (analysis.work.labelsFile)
    LabelLoader(run, *analysis.work.labelsFile).Load();
  else
    SetNoElements(design);
  if (Halted(run)) return;
  analysis.reading.LineNumber = lineNumber;  // of the last line that was read
  if (design.ElementTotal > 0) return;
  run.console.WarnLine(message::kNoLabels);
  if (!analysis.settings.labelsNobuild) return;
  analysis.reading.LineNumber = analysis.specification.labelsLine;
  SetSpecificationFault(analysis.reading, Fault::noElementLabels, "Labels=N");
}

}  // namespace flanks
