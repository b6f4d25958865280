#include "fuzz_checks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "base/text.h"
#include "base/utf8.h"
#include "spec/element_finder.h"
#include "spec/element_values.h"
#include "spec/label_loader.h"
#include "spec/model_grammar.h"
#include "spec/scales.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

constexpr std::int64_t kMostElements = 60000;  // of all ranges of an input

bool Finite(float value) {
  return std::isfinite(value);
}

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

// A line that names a file begins with a keyword or with "%"; one with neither a letter nor "%"
// holds numbers, where "/" divides.
bool MayNameFile(std::string_view line) {
  return line.find('%') != std::string_view::npos ||
         std::any_of(line.begin(), line.end(), IsLetter);
}

std::int64_t NumberAt(std::string_view text, std::size_t at) {
  std::int64_t number = 0;
  for (; at < text.size() && IsDigit(text[at]) && number < kLargestElementCount; ++at)
    number = number * 10 + (text[at] - '0');
  return number;
}

// Blanks, and the control characters that a reader takes for blanks.
bool IsBlankLike(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

// The number whose last digit stands before `end`, blanks between.
std::int64_t NumberBefore(std::string_view text, std::size_t end) {
  while (end > 0 && IsBlankLike(text[end - 1])) --end;
  std::size_t at = end;
  while (at > 0 && IsDigit(text[at - 1])) --at;
  return at == end ? 0 : NumberAt(text, at);
}

void RequireSlots(const Design& design, FlankNo flank, std::int32_t& nextSlot) {
  const FlankTable& flanks = design.flanks;
  const ElementTable& elements = design.elements;
  const std::int32_t count = flanks.FlankElementCount[flank];
  Require(count >= 0, "elements of a Flank");
  if (count == 0) {
    Require(flanks.FlankLow[flank] == 0 && flanks.FlankHigh[flank] == 0,
            "a Flank without elements");
    return;
  }
  const auto [low, high] = SlotsOf(flanks, flank);
  Require(low.number() == nextSlot, "the slots of a Flank follow those of the Flank before");
  nextSlot += count;
  Require(elements.ElementNumber[low] == flanks.FlankLow[flank], "FlankLow");
  Require(elements.ElementNumber[high] == flanks.FlankHigh[flank], "FlankHigh");
  for (ElementSlot slot = low; slot <= high; ++slot) {
    Require(elements.ElementFlank[slot] == flank, "the Flank of an element");
    if (slot > low)
      Require(elements.ElementNumber[slot] > elements.ElementNumber[slot - 1],
              "element numbers ascend");
    Require(elements.ElementGroup[slot] >= 0 &&
                elements.ElementGroup[slot] <= flanks.FlankHighestGroup[flank],
            "the highest group of a Flank");
  }
}

void RequireElement(const ElementTable& elements, ElementSlot slot, const Settings& settings) {
  const std::string& label = elements.ElementLabel[slot];
  Require(elements.ElementNumber[slot] >= 0, "an element number", label);
  Require(elements.ElementNumber[slot] != settings.NullElement, "the null element has no slot");
  Require(!label.empty(), "an element without a label");
  Require(DisplayWidth(label, EncodingOf(settings)) <= elements.ElementLabelWidth,
          "the width of the longest label", label);
  Require(Finite(elements.ElementWeight[slot]), "an element's weight", label);
  Require(elements.ElementWeight[slot] == 1.0f || elements.ElementWeightsInUse,
          "a weight that is not in use", label);
  Require(elements.ElementGroup[slot] <= kLargestGroupNumber, "a group number", label);
  const float measure = elements.PresetMeasure[slot];
  Require(Finite(measure), "a measure", label);
  Require(measure != 0.0f || elements.ElementAnchor[slot] != AnchorKind::anchored,
          "an anchored element without a measure", label);
  const ElementSlot target = elements.ElementTarget[slot];
  if (target.number() == 0) return;
  Require(elements.ElementNumber.has(target), "a target", label);
  Require(elements.ElementFlank[target] == elements.ElementFlank[slot], "a target's Flank", label);
  Require(elements.ElementTarget[target].number() == 0, "a target's target", label);
}

// What is shown of a reference means the same when it is read again.
void RequireShownReference(const std::string& shown, const PositionReference& reference) {
  const ElementReference again = ParseElementReference(shown);
  Require(again.fault == Fault::none, "a shown reference is a reference", shown);
  Require(again.normalised == shown, "a shown reference is shown again", shown);
  const PositionReference& read = again.reference;
  Require(read.ModelLow == reference.ModelLow && read.ModelHigh == reference.ModelHigh &&
              read.empty == reference.empty && read.ignored == reference.ignored &&
              read.dummy == reference.dummy && read.structured == reference.structured &&
              read.reversed == reference.reversed && read.bias == reference.bias,
          "a shown reference means the same", shown);
}

}  // namespace

void Require(bool good, std::string_view what, std::string_view text) {
  if (good) return;
  std::cerr << "\nnot so: " << what << "\n" << text << std::endl;
  std::abort();
}

void GoToScratchFolder() {
  static const ScratchFolder folder;
  static const bool there = [] {
    std::filesystem::current_path(folder.folder());
    return true;
  }();
  Require(there, "the scratch folder");
}

std::string WithoutOuterFiles(std::string_view text) {
  std::string harmless(text);
  for (std::size_t begin = 0; begin < harmless.size();) {
    std::size_t end = begin;
    while (end < harmless.size() && !IsLineEnd(harmless[end])) ++end;
    if (MayNameFile(std::string_view(harmless).substr(begin, end - begin)))
      std::replace(harmless.begin() + static_cast<std::ptrdiff_t>(begin),
                   harmless.begin() + static_cast<std::ptrdiff_t>(end), '/', '|');
    begin = end + 1;
  }
  return harmless;
}

bool HasWideRanges(std::string_view text) {
  std::int64_t wide = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '-' && text[at] != '_') continue;
    std::size_t next = at + 1;
    while (next < text.size() && IsBlankLike(text[next])) ++next;
    wide += std::abs(NumberAt(text, next) - NumberBefore(text, at));
  }
  return wide > kMostElements;
}

Ending ReadAndTake(SpecRun& run, std::string_view specification,
                   const std::vector<void (*)(Run&)>& steps, std::string_view extras) {
  try {
    run.Read(specification, extras);
    run.Do(steps);
  } catch (const ProcessEnd&) {
    return Ending::processEnd;
  }
  if (run.fault() != Fault::none) return Ending::fault;
  return run.console.stopping() ? Ending::stopped : Ending::settled;
}

void RequireLegalEnding(Ending ending, SpecRun& run) {
  switch (ending) {
    case Ending::settled:
      return RequireSettings(run.analysis.settings);
    case Ending::fault:
      return RequireFaultWords(run.FaultText());
    case Ending::stopped:
      return RequireKnownStop(run.dialogs.boxes);
    case Ending::processEnd: {
      const std::string screen = run.shell.Screen();
      return Require(screen.find("VLCOMPUTE: ") != std::string::npos ||
                         screen.find("COMPUTE1: DEPTH 27+: ") != std::string::npos,
                     "the end of the process is told", screen);
    }
  }
}

void RequireNothingLeft(SpecRun& run) {
  run.analysis = Analysis{};
  for (const std::string& name : run.folder.names())
    Require(name == "s.txt", "a file is left behind", name);
}

void RequireFaultWords(std::string_view line) {
  constexpr std::string_view kCode = "Error F";
  const std::size_t code = line.rfind(kCode);
  Require(code != std::string_view::npos, "a fault has a code", line);
  const std::int64_t number = NumberAt(line, code + kCode.size());
  const std::vector<Fault> faults = AllFaults();
  Require(std::any_of(faults.begin(), faults.end(),
                      [&](Fault fault) { return static_cast<std::int64_t>(fault) == number; }),
          "a code has words", line);
  Require(line.substr(0, code).ends_with(": ") || line.substr(0, code).ends_with(" in line "),
          "a fault has its words before its code", line);
}

void RequireKnownStop(const std::vector<std::string>& boxes) {
  for (const std::string& box : boxes)
    if (box.find("Failure (20)! Anchor value outside range: ") != std::string::npos) return;
  Require(false, "a stop that no input may bring about", boxes.empty() ? "" : boxes.front());
}

void RequireSettings(const Settings& settings) {
  for (const float value :
       {settings.Convergence[0], settings.Convergence[1], settings.Convergence[2],
        settings.Convergence[3], settings.Hardware, settings.Newton, settings.Umean,
        settings.Unexpected, settings.Uscale, settings.Xtreme[0], settings.Xtreme[1],
        settings.Zscore[0], settings.Zscore[1]})
    Require(Finite(value), "a setting is finite", std::to_string(value));
  Require(settings.Uscale != 0.0f, "Uscale is not 0");
  Require(settings.NullElement >= -1 && settings.NullElement <= 2147483646, "the null element");
}

void RequireMaps(const Design& design) {
  const FlankTable& flanks = design.flanks;
  const EntryMaps& maps = design.maps;
  Require(flanks.FlankName.rows() == design.FlankCount, "names of Flanks");
  Require(flanks.FlankCenter.rows() == design.FlankCount, "centers of Flanks");
  Require(flanks.FlankOrientation.rows() == design.FlankCount, "orientations of Flanks");
  Require(maps.ActiveMap.rows() == maps.EntryMap.rows(), "the maps of data positions");
  for (const FlankNo flank : maps.EntryMap)
    Require(flank.number() <= design.FlankCount, "the Flank of a data position");
  for (const FlankNo flank : maps.ModelFlank)
    Require(flank.number() >= 1 && flank.number() <= design.FlankCount,
            "the Flank of an active position");
}

void RequireElements(const Design& design, const Settings& settings) {
  const ElementTable& elements = design.elements;
  const std::int32_t total = design.ElementTotal;
  Require(elements.ElementNumber.rows() == total, "element numbers");
  if (total == 0) return;
  Require(elements.ElementLabel.rows() == total, "element labels");
  std::int32_t nextSlot = 1;
  for (const FlankNo flank : Upward(design.flanks.FlankName)) RequireSlots(design, flank, nextSlot);
  Require(nextSlot == total + 1, "each slot belongs to a Flank");
  ElementFinder finder(design.flanks, elements);
  for (const ElementSlot slot : Upward(elements.ElementNumber)) {
    RequireElement(elements, slot, settings);
    Require(
        finder.FindElementSlot(elements.ElementNumber[slot], elements.ElementFlank[slot]).slot ==
            slot,
        "an element is found by its number");
  }
}

void RequireModels(const Design& design) {
  const ModelTable& models = design.models;
  Require(design.ModelLast >= 0, "there is a statement");
  Require(models.ModelText.rows() == design.ModelLast + 1, "the table of statements");
  for (const ModelRow model : Upward(models.ModelText)) {
    const std::vector<std::string>& texts = models.ModelText[model];
    Require(static_cast<int>(texts.size()) >= design.ModelWeightField(), "fields of a statement");
    for (std::int32_t a = 1; a <= design.ModelFlankCount; ++a) {
      const PositionReference& reference = models.reference(model, Position(a));
      Require(reference.ModelLow <= reference.ModelHigh, "the range of a reference");
      Require(reference.ModelLow >= 0 || reference.ModelLow == reference.ModelHigh,
              "a reference to no number");
      Require((reference.ModelLow == -2) == reference.ignored, "an ignored position");
      RequireShownReference(texts[static_cast<std::size_t>(a - 1)], reference);
    }
    Require(Finite(models.ModelWeight[model]), "the weight of a statement");
    const std::int32_t maximum = models.ModelCategoryMax[model];
    const bool missing = models.ModelScaleType[model] == ScaleType::missing;
    Require(missing ? maximum == -1 : maximum >= 1 && maximum <= 255, "a category maximum");
    Require(maximum <= design.MaxCategory, "the largest category maximum");
    const ScaleDefinitionRow scale = models.ModelScale[model];
    Require(scale.number() == -1 || design.scales.has(scale), "the scale of a statement");
  }
}

void RequireScales(const Design& design) {
  Require(design.scales.rows() == design.ScaleLast + 1, "the table of scales");
  for (const ScaleDefinition& scale : design.scales) {
    const std::string record = ScaleRecord(scale);
    Require(ScaleRecord(ScaleFromRecord(record)) == record, "a definition keeps its record",
            record);
    const ScaleTypeText type =
        ParseScaleType(scale.type, kDefaultCategoryMaximum, kLargestCategoryMaximum);
    Require(type.fault == Fault::none, "the type of a scale", scale.type);
    const int limit = type.type == ScaleType::missing ? kLargestCategoryMaximum : type.maximum;
    std::vector<bool> seen(kLargestCategoryMaximum + 1);
    for (const ScaleCategory& category : scale.categories) {
      Require(Finite(category.anchor), "the anchor of a category", record);
      if (category.number == kRecodingLine) continue;
      Require(category.number >= 0 && category.number <= limit, "a category", record);
      Require(!seen[static_cast<std::size_t>(category.number)], "a category stands once", record);
      seen[static_cast<std::size_t>(category.number)] = true;
    }
    for (const RecodeItem& item : scale.recodes) {
      Require(!item.text.empty(), "a text that is recoded", record);
      Require(!item.isRange || item.low <= item.high, "the range of a recoding", item.text);
    }
  }
}

}  // namespace flanks
