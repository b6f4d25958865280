#include "estimate/table9.h"

#include <string_view>

#include "estimate/table3.h"
#include "report/format/edit_word.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr std::string_view kSecondHead =
    "                Terms    %                  Terms   Moving ";

std::string Detail(const IterationState& iteration, std::int32_t BiasMoving) {
  const LargestChanges& changes = iteration.changes;
  const bool still = changes.MaxLogitChange == 0.0f && changes.MaxScoreResidual == 0.0;
  EditLine line(still ? " \\  \\#### ######.####                  #####.####          "
                      : " \\  \\#### ######.#### ###.#            #####.####  ####### ");
  line.EditString("BIAS");
  line.EditLong(iteration.IterationNumber);
  line.EditDouble(changes.MaxScoreResidual);
  if (!still) line.EditDouble(100.0 * changes.MaxScoreFraction);
  line.EditSingle(changes.MaxLogitChange);
  if (!still) line.EditLong(BiasMoving);
  return line.Finish();
}

}  // namespace

std::string BiasIterationDetail(const IterationState& iteration, std::int32_t BiasMoving) {
  return IterationBoxLine(Detail(iteration, BiasMoving));
}

void WriteTable9Head(Console& console, int number) {
  BeginIterationBox(console, "Table 9." + std::to_string(number) + "  Bias Iteration Report",
                    kSecondHead);
}

void ReportBiasIteration(Console& console, const IterationState& iteration,
                         std::int32_t BiasMoving) {
  const std::string header = IterationHeader(iteration);
  const bool longOnScreen = console.settings().T3onscreen == "N";
  if (console.settings().Write) console.WriteOutput(header);
  if (longOnScreen) console.ShowLine(header);
  const std::string detail = BiasIterationDetail(iteration, BiasMoving);
  console.WriteOutput(detail);
  if (!longOnScreen) console.ShowLine(detail);
}

void WriteTable9Foot(Console& console) {
  BottomRule(console);
}

}  // namespace flanks
