// Rating scales: categories, labels, anchors, recodings.
//
// The input begins behind "Rating scale=" and may go on with further definitions, which two model
// statements may name.  What is accepted must keep its record, and each recoding its meaning.
#include "base/text.h"
#include "data/matching.h"
#include "fuzz_checks.h"
#include "spec/delements.h"
#include "spec/label_loader.h"
#include "spec/models.h"
#include "spec/scales.h"

namespace flanks {
namespace {

constexpr std::string_view kHead = "Flanks=2\nModels=\n1,?,S\n?,?,R9\n*\nRating scale=";

void CheckRecodeItem(std::string_view text) {
  const RecodeText first = ParseRecodeItem(text);
  if (first.fault != Fault::none) {
    Require(first.fault == Fault::recodeRange, "the fault of a recoding", text);
    return;
  }
  const RecodeText again = ParseRecodeItem(first.item.text);
  Require(again.fault == Fault::none && again.item.text == first.item.text &&
              again.item.isRange == first.item.isRange && again.item.low == first.item.low &&
              again.item.high == first.item.high,
          "a shown recoding is read again", text);
}

// Whatever response comes, each statement makes a category of it or refuses it.
void RequireScoring(const Design& design) {
  CategoryTable categories(design);
  for (const ModelRow model : Upward(design.models.ModelText)) {
    for (int number = 0; number <= kLargestCategory; ++number) {
      const std::string text = std::to_string(number);
      const ScoredResponse scored = ScoreResponse(design, model, text);
      const bool valid = scored.fate == ResponseFate::valid;
      Require(!valid || (scored.category >= 0 &&
                         scored.category <= design.models.ModelCategoryMax[model]),
              "a category within its statement", text);
      const std::int16_t plain = categories.Of(model, number);
      Require(plain == CategoryTable::kLookClosely || (valid && plain == scored.category),
              "the table of categories says the same", text);
    }
    for (const ScaleDefinition& scale : design.scales)
      for (const RecodeItem& item : scale.recodes) {
        const ScoredResponse scored = ScoreResponse(design, model, item.text);
        Require(scored.category >= 0 && scored.category <= kLargestCategory, "a category",
                item.text);
      }
  }
}

void CheckScales(std::string_view input) {
  for (const std::string_view field : CommaFields(input)) CheckRecodeItem(field);
  if (HasWideRanges(input)) return;
  GoToScratchFolder();
  SpecRun run;
  const Ending ending = ReadAndTake(
      run, std::string(kHead) + WithoutOuterFiles(input),
      {BuildModelTable, LoadScales, LoadLabels, PrepareDelements, MatchElementsToModels});
  RequireLegalEnding(ending, run);
  if (ending == Ending::settled) {
    RequireScales(run.analysis.design);
    RequireModels(run.analysis.design);
    RequireScoring(run.analysis.design);
  }
  RequireNothingLeft(run);
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  flanks::CheckScales(flanks::TextOf(data, size));
  return 0;
}
