// The list of `Labels=`: Flanks, elements, ranges, measures, groups, weights, targets.
//
// The input begins behind "Labels=" and may go on with other keywords; three Flanks stand before
// it.  What is accepted must be a table in order in which every element is found.
#include "base/text.h"
#include "fuzz_checks.h"
#include "spec/delements.h"
#include "spec/label_loader.h"
#include "spec/models.h"
#include "spec/scales.h"

namespace flanks {
namespace {

constexpr std::string_view kHead = "Flanks=3\nLabels=";

// The text that data would give for the element's label.
std::string LabelInData(const std::string& label) {
  std::string text(TrimRight(std::string_view(label).substr(0, label.find(':'))));
  ReplaceCharacter(text, '_', '-');
  return text;
}

void RequireFoundByLabel(SpecRun& run) {
  const Design& design = run.analysis.design;
  LabelFinder labels(design.flanks, design.elements, run.console);
  for (const ElementSlot slot : Upward(design.elements.ElementLabel)) {
    const std::string& label = design.elements.ElementLabel[slot];
    const std::string text = LabelInData(label);
    const ElementSlot found = labels.FindElementByLabel(text, design.elements.ElementFlank[slot]);
    if (text.empty()) {
      Require(found.number() == 0, "a label without a text is not found", label);
      continue;
    }
    Require(found.number() > 0 && found <= slot, "an element is found by its label", label);
    Require(LabelInData(design.elements.ElementLabel[found]) == text, "the label found", label);
  }
}

void CheckLabels(std::string_view input) {
  if (HasWideRanges(input)) return;
  GoToScratchFolder();
  SpecRun run;
  const Ending ending = ReadAndTake(run, std::string(kHead) + WithoutOuterFiles(input),
                                    {BuildModelTable, LoadScales, LoadLabels, PrepareDelements});
  RequireLegalEnding(ending, run);
  if (ending == Ending::settled) {
    RequireMaps(run.analysis.design);
    RequireElements(run.analysis.design, run.analysis.settings);
    RequireFoundByLabel(run);
  }
  RequireNothingLeft(run);
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  flanks::CheckLabels(flanks::TextOf(data, size));
  return 0;
}
