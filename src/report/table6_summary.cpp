#include "report/table6_summary.h"

#include <string>

#include "report/measure_bars.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr int kNoBarchart = 0, kExtremesAtMeasures = 2;  // of `Barchart=`

}  // namespace

MeasureAxis SummaryAxis(const Settings& settings, const Column<FlankNo, RulerFlank>& shown,
                        const Yardstick& yardstick) {
  const RulerScale scale = ScaleOfRuler(settings, {}, shown, yardstick);
  return LayOutAxis(scale.low, scale.high);
}

std::vector<std::string> FlankSummaryLines(const Analysis& analysis,
                                           const std::vector<ElementSlot>& elements,
                                           const MeasureAxis& axis) {
  const Settings& settings = analysis.settings;
  MeasureBars bars(axis);
  for (const ElementSlot slot : elements) {
    const ElementState& element = analysis.estimates.elements[slot];
    if (!IsExtreme(element.ElementStatus) || settings.Barchart == kExtremesAtMeasures) {
      bars.AddAtMeasure(UserMeasure(settings, element.ElementMeasure));
    } else if (IsAtHighEnd(settings, element.ElementStatus)) {
      bars.AddAtHighEnd();
    } else {
      bars.AddAtLowEnd();
    }
  }
  return bars.Lines(settings.Ascii == 'Y', "elements");
}

void WriteFlankSummaries(Run& run, const RulerElements& elements) {
  const Settings& settings = run.analysis.settings;
  if (settings.Barchart == kNoBarchart) return;
  const MeasureAxis axis = SummaryAxis(settings, SumUpElements(run.analysis, elements),
                                       ReadYardstick(settings.Yardstick));
  for (const FlankNo flank : Upward(elements)) {
    if (run.console.YieldToWindow()) return;
    if (elements[flank].empty()) continue;
    TableHeading(run.console, "Table 6." + std::to_string(flank.number()) + "  " +
                                  run.analysis.design.flanks.FlankName[flank] + " Flank Summary");
    for (const std::string& line : FlankSummaryLines(run.analysis, elements[flank], axis))
      WriteReportLine(run.console, line);
  }
}

}  // namespace flanks
