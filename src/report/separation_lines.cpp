#include "report/separation_lines.h"

#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kRatioDecimals = 2;
constexpr int kTextWidth = 1;  // a left-trimmed text: as wide as it needs to be

std::string Trimmed(double value, int decimals) {
  std::string text = FixedField(value, decimals + kTextWidth + 15, decimals);
  return text.substr(text.find_first_not_of(' '));
}

}  // namespace

std::string_view ErrorWord(const Settings& settings) {
  return settings.RealStandardErrors ? "Real" : "Model";
}

std::vector<std::string> SeparationLines(const Settings& settings, const MeasureSummary& summary,
                                         float tinyValue, std::string_view prefix,
                                         std::string_view reliabilityNote) {
  std::vector<std::string> lines;
  if (summary.Count < 2.0) return lines;
  for (const Spread spread : {Spread::population, Spread::sample}) {
    const SeparationStatistics s = SeparationOf(summary, spread, tinyValue);
    std::string line(prefix);
    line += spread == Spread::population ? ", Populn" : ", Sample";
    line += ": RMSE " + Trimmed(s.RMSE, settings.Udecimals);
    line += "  Adj (True) S.D. " + Trimmed(s.AdjustedDeviation, settings.Udecimals);
    line += "  Separation " + Trimmed(s.Separation, kRatioDecimals);
    line += "  Strata " + Trimmed(s.Strata, kRatioDecimals);
    line += "  Reliability ";
    line += reliabilityNote;
    line += Trimmed(s.Reliability, kRatioDecimals);
    lines.push_back(std::move(line));
  }
  return lines;
}

std::string ChiSquareText(const ChiSquareTest& test) {
  return " chi-squared: " + OneDecimalText(test.chiSquared) +
         "  d.f.:" + OneDecimalText(test.degreesOfFreedom) +
         "  significance (probability): " + DecimalsText(test.probability, kRatioDecimals);
}

}  // namespace flanks
