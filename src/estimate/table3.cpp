#include "estimate/table3.h"

#include "base/single.h"
#include "report/format/box.h"
#include "report/format/edit_word.h"
#include "report/format/join_number.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr std::size_t kDetailWidth = 59;

constexpr std::string_view kTitle = "Table 3. Iteration Report";
constexpr std::string_view kFirstHead =
    " Iteration      Max. Score Residual      Max. Logit Change ";
constexpr std::string_view kSecondHead = "             Elements    %  Categories   Elements    ";

constexpr std::string_view kRecountRequired = "Recount required";

constexpr std::string_view kLargestHead =
    "Largest Residuals  |----------Score------------|   logit Measure";
constexpr std::string_view kLargestColumns =
    "                      Raw  Expected Residual Resd%  Value    Change";
constexpr std::string_view kLargestElement =
    "\\                 \\####.# ######.## #####.## ###.#  ##.##  ###.####";
constexpr std::string_view kLargestCategory =
    "\\                 \\####.# ######.## #####.## ###.#";
constexpr std::string_view kFlankSummary =
    "\\            \\  Mean=####.## S.D.=####.## Count=######";

std::string_view PhaseWord(std::int32_t phase) {
  if (phase < kPhaseJmle) return "PROX";
  return phase == kPhaseJmle ? "JMLE" : "BIAS";
}

std::string_view RecountWord(const IterationState& iteration) {
  return iteration.RecountRequired ? kRecountRequired : std::string_view();
}

std::string ProxDetail(const IterationState& iteration) {
  const LargestChanges& changes = iteration.changes;
  const bool moved = changes.MaxThresholdChange != 0.0f;
  EditLine line(moved ? " PROX####     \\                      \\   ###.#### ###.#### "
                      : " PROX####     \\                      \\   ###.####          ");
  line.EditLong(iteration.IterationNumber);
  line.EditString(RecountWord(iteration));
  line.EditSingle(changes.MaxLogitChange);
  if (moved) line.EditSingle(changes.MaxThresholdChange);
  return line.Finish();
}

std::string JmleDetail(const IterationState& iteration) {
  const LargestChanges& changes = iteration.changes;
  if (changes.MaxLogitChange == 0.0f && changes.MaxScoreResidual == 0.0) {
    EditLine line(" \\  \\#### ######.####                  #####.####          ");
    line.EditString(PhaseWord(iteration.EstimationPhase));
    line.EditLong(iteration.IterationNumber);
    line.EditDouble(changes.MaxScoreResidual);
    line.EditSingle(changes.MaxLogitChange);
    return line.Finish();
  }
  EditLine line(" \\  \\#### ######.#### ###.# #####.#### #####.#### ###.#### ");
  line.EditString(PhaseWord(iteration.EstimationPhase));
  line.EditLong(iteration.IterationNumber);
  line.EditDouble(changes.MaxScoreResidual);
  line.EditDouble(100.0 * changes.MaxScoreFraction);
  line.EditDouble(changes.MaxCategoryResidual);
  line.EditSingle(changes.MaxLogitChange);
  line.EditSingle(changes.MaxThresholdChange);
  return line.Finish();
}

std::string ElementName(const Design& design, ElementSlot slot) {
  const FlankNo flank = design.elements.ElementFlank[slot];
  return JoinNumber("Flank", flank.number()) + " " +
         std::to_string(design.elements.ElementNumber[slot]) + " " +
         design.elements.ElementLabel[slot];
}

// The row's own fraction: the largest one may be another element's or category's.
double PerCent(double residual, double whole) {
  return whole > 0.0 ? 100.0 * residual / whole : 0.0;
}

// The element with the largest score residual, as its scores stood before the step.
std::string LargestElementLine(const Table3Input& input) {
  const IterationState& iteration = input.estimates.iteration;
  const LargestChanges& changes = iteration.changes;
  const ElementSlot slot = changes.scoreElement;
  const ElementScores& scores = input.estimates.scores[slot];
  EditLine line(kLargestElement);
  line.EditString(ElementName(input.design, slot));
  line.EditDouble(scores.ObservedScore);
  line.EditDouble(input.estimates.elements[slot].ExpectedSum);
  line.EditDouble(changes.MaxScoreResidual);
  line.EditDouble(PerCent(changes.MaxScoreResidual, scores.MaxScore));
  line.EditSingle(input.estimates.elements[slot].ElementMeasure);
  line.EditSingle(scores.StepWeight);
  return line.Finish();
}

std::string LargestCategoryLine(const Table3Input& input) {
  const LargestChanges& changes = input.estimates.iteration.changes;
  const ScaleRow scale = changes.categoryScale;
  const int category = changes.residualCategory;
  EditLine line(kLargestCategory);
  line.EditString(JoinNumber("Scale:", scale.number() + 1) + " category " +
                  std::to_string(input.scales.rawCategory.at(scale, category)));
  const double observed = input.scales.ObservedCount.at(scale, category);
  line.EditDouble(observed);
  line.EditDouble(input.scales.ExpectedCount.at(scale, category));
  line.EditDouble(changes.MaxCategoryResidual);
  line.EditDouble(PerCent(changes.MaxCategoryResidual, observed));
  return line.Finish();
}

// The discrimination of a binomial or Poisson scale: the sums of its terms, its value and change.
std::string DiscriminationLine(const Table3Input& input) {
  const LargestChanges& changes = input.estimates.iteration.changes;
  const ScaleRow scale = changes.categoryScale;
  const bool binomial = input.scales.scaleType[scale] == ScaleType::binomial;
  EditLine line(kLargestElement);
  line.EditString(JoinNumber(binomial ? "Bin Disc:" : "Poi Disc:", scale.number() + 1));
  const double observed = input.scales.DiscriminationSums.at(scale, 0);
  const float value = input.scales.ThresholdTable.at(scale, 0);
  line.EditDouble(observed);
  line.EditDouble(input.scales.ExpectedCount.at(scale, 0));
  line.EditDouble(changes.MaxCategoryResidual);
  line.EditDouble(PerCent(changes.MaxCategoryResidual, observed));
  line.EditSingle(value);
  line.EditSingle(Single(static_cast<double>(value) - input.scales.PreviousThreshold.at(scale, 0)));
  return line.Finish();
}

// The scale with the largest category residual.
std::string LargestScaleLine(const Table3Input& input) {
  const ScaleRow scale = input.estimates.iteration.changes.categoryScale;
  return input.scales.scaleType[scale] == ScaleType::rating ? LargestCategoryLine(input)
                                                            : DiscriminationLine(input);
}

// One line of the long form: to the report with Write=Yes, to the screen with T3onscreen=N.
void LongFormLine(Console& console, std::string_view line) {
  if (console.settings().Write) console.WriteOutput(line);
  if (console.settings().T3onscreen == "N") console.ShowLine(line);
}

void ReportLargest(Console& console, const Table3Input& input) {
  const LargestChanges& changes = input.estimates.iteration.changes;
  const bool element = changes.scoreElement >= ElementSlot(ElementSlot::first);
  const bool category = changes.categoryScale >= ScaleRow(ScaleRow::first);
  if (!element && !category) return;
  LongFormLine(console, kLargestHead);
  LongFormLine(console, kLargestColumns);
  if (element) LongFormLine(console, LargestElementLine(input));
  if (category) LongFormLine(console, LargestScaleLine(input));
}

}  // namespace

std::string IterationHeader(const IterationState& iteration) {
  const LargestChanges& changes = iteration.changes;
  if (iteration.EstimationPhase < kPhaseJmle) {
    EditLine line(
        "Iteration ####  PROX  \\                     \\                      max.=###.###");
    line.EditLong(iteration.IterationNumber);
    line.EditString(RecountWord(iteration));
    line.EditSingle(changes.MaxLogitChange);
    return line.Finish();
  }
  EditLine line(
      "Iteration ####  \\  \\                       max.=######.# ###.#     max.=###.###");
  line.EditLong(iteration.IterationNumber);
  line.EditString(PhaseWord(iteration.EstimationPhase));
  line.EditDouble(changes.MaxScoreResidual);
  line.EditDouble(100.0 * changes.MaxScoreFraction);
  line.EditSingle(changes.MaxLogitChange);
  return line.Finish();
}

std::string IterationDetail(const IterationState& iteration) {
  return IterationBoxLine(iteration.EstimationPhase < kPhaseJmle ? ProxDetail(iteration)
                                                                 : JmleDetail(iteration));
}

std::string IterationBoxLine(std::string_view text) {
  std::string line(1, kBoxColumn);
  line += text;
  line.resize(kDetailWidth + 1, ' ');
  return line + kBoxColumn;
}

void BeginIterationBox(Console& console, const std::string& title, std::string_view secondHead) {
  TableHeading(console, title);
  BeginBox(console, {"", IterationBoxLine(kFirstHead), IterationBoxLine(secondHead), ""},
           "x" + std::string(kDetailWidth, '-') + "x");
}

void WriteTable3Head(Console& console) {
  BeginIterationBox(console, std::string(kTitle), kSecondHead);
}

void WriteTable3Foot(Console& console) {
  BottomRule(console);
}

void ReportIteration(Console& console, const Table3Input& input) {
  const IterationState& iteration = input.estimates.iteration;
  LongFormLine(console, IterationHeader(iteration));
  ReportLargest(console, input);
  for (const FlankLine& line : input.flanks)
    ReportFlankSummary(console, input.design.flanks.FlankName[line.flank], line.summary);
  const std::string detail = IterationDetail(iteration);
  console.WriteOutput(detail);
  if (console.settings().T3onscreen != "N") console.ShowLine(detail);
}

void ReportFlankSummary(Console& console, const std::string& flankName,
                        const FlankSummary& summary) {
  const Settings& settings = console.settings();
  const double uscale = settings.Uscale;
  EditLine line(kFlankSummary);
  line.EditString(flankName);
  line.EditDouble(settings.Umean + uscale * summary.mean);
  line.EditDouble(std::abs(uscale) * summary.standardDeviation());
  line.EditLong(static_cast<std::int32_t>(summary.count));
  LongFormLine(console, line.Finish());
}

}  // namespace flanks
