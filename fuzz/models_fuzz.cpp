// Model statements: references, scale types, weights.
//
// The input begins behind "Models=" and may go on with other keywords; three Flanks stand before
// it.  Each of its fields is also read alone, as a reference and as a scale type.
#include "base/text.h"
#include "fuzz_checks.h"
#include "spec/delements.h"
#include "spec/label_loader.h"
#include "spec/model_grammar.h"
#include "spec/models.h"
#include "spec/scales.h"

namespace flanks {
namespace {

constexpr std::string_view kHead = "Flanks=3\nModels=";

void CheckScaleType(std::string_view text) {
  const ScaleTypeText type = ParseScaleType(text, kDefaultCategoryMaximum, kLargestCategoryMaximum);
  if (type.fault != Fault::none) {
    Require(type.fault == Fault::invalidScaleType, "the fault of a scale type", text);
    return;
  }
  const bool missing = type.type == ScaleType::missing;
  Require(missing ? type.maximum == -1 : type.maximum >= 1 && type.maximum <= 255,
          "a category maximum", text);
  const ScaleTypeText again =
      ParseScaleType(UpperCase(text), kDefaultCategoryMaximum, kLargestCategoryMaximum);
  Require(again.type == type.type && again.maximum == type.maximum && again.keep == type.keep,
          "case changes nothing", text);
}

void CheckReference(std::string_view text) {
  const ElementReference first = ParseElementReference(text);
  if (first.fault != Fault::none) {
    Require(first.fault == Fault::invalidElementNumber, "the fault of a reference", text);
    return;
  }
  const ElementReference again = ParseElementReference(first.normalised);
  Require(again.fault == Fault::none && again.normalised == first.normalised,
          "a shown reference is shown again", text);
  Require(again.reference.ModelLow == first.reference.ModelLow &&
              again.reference.ModelHigh == first.reference.ModelHigh &&
              again.reference.measures() == first.reference.measures(),
          "a shown reference means the same", text);
}

void CheckModels(std::string_view input) {
  for (const std::string_view field : CommaFields(input)) {
    CheckScaleType(field);
    CheckReference(field);
  }
  if (HasWideRanges(input)) return;
  GoToScratchFolder();
  SpecRun run;
  const Ending ending = ReadAndTake(
      run, std::string(kHead) + WithoutOuterFiles(input),
      {BuildModelTable, LoadScales, LoadLabels, PrepareDelements, MatchElementsToModels});
  RequireLegalEnding(ending, run);
  if (ending == Ending::settled) {
    RequireMaps(run.analysis.design);
    RequireModels(run.analysis.design);
  }
  RequireNothingLeft(run);
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  flanks::CheckModels(flanks::TextOf(data, size));
  return 0;
}
