#include "stats/bias_measures.h"

#include <cmath>

namespace flanks {

BiasMeasure MeasureWithBias(const Settings& settings, const Design& design,
                            const Estimates& estimates, ElementSlot slot, const BiasTerm& term) {
  const double uscale = settings.Uscale;
  const FlankNo flank = design.elements.ElementFlank[slot];
  const double sign = IsPositive(design.flanks, flank) ? 1.0 : -1.0;
  BiasMeasure measure;
  measure.relative = sign * uscale * term.Bias;
  measure.absolute =
      settings.Umean + uscale * estimates.elements[slot].ElementMeasure + measure.relative;
  measure.standardError = std::abs(uscale) * term.StandardError;
  measure.t = sign * uscale < 0.0 ? -static_cast<double>(term.t) : term.t;
  return measure;
}

PairFigures FiguresOf(const Settings& settings, const BiasContrast& contrast) {
  const double direction = static_cast<double>(settings.Bias) * settings.Uscale;
  PairFigures figures;
  figures.size = direction * contrast.contrast;
  figures.standardError = std::abs(direction) * contrast.jointError;
  figures.t = direction < 0.0 ? -static_cast<double>(contrast.t) : contrast.t;
  return figures;
}

}  // namespace flanks
