// The statistics of each element, straight from their definitions.
#include <algorithm>
#include <cmath>

#include "support/slow_judge/slow_judge.h"

namespace judge {
namespace {

constexpr double kFloor = 1E-9;  // of squared residuals, variances and fourth moments in a ratio

// What an element's observations add up to.
struct Sums {
  double count = 0.0, score = 0.0, expected = 0.0, information = 0.0;
  double squaredResiduals = 0.0, squaredVariance = 0.0;  // infit: numerator, variance
  double squaredStandardized = 0.0, kurtosis = 0.0;      // outfit: numerator, variance + count
  double logits = 0.0, logitVariance = 0.0;              // discrimination
  double fair = 0.0;
};

struct Pair {
  double weight, B, x, r, v;
};

double MeanOfMeasured(const std::vector<Element>& flank) {
  double sum = 0.0;
  int count = 0;
  for (const Element& e : flank) {
    if (e.standing != Standing::measured) continue;
    sum += e.measure;
    ++count;
  }
  return count == 0 ? 0.0 : sum / count;
}

// The signed measure at which the element would meet average, or zero, opponents.
double FairMeasure(const Design& design, const Verdict& verdict, const Observation& o,
                   std::size_t own) {
  double B = 0.0;
  for (std::size_t f = 0; f < o.elements.size(); ++f) {
    if (o.elements[f] < 0) continue;
    if (f == own) {
      B += design.sign(o, f) * verdict.elements[f][static_cast<std::size_t>(o.elements[f])].measure;
    } else if (design.fairAtMean) {
      B += design.sign(o, f) * MeanOfMeasured(verdict.elements[f]);
    }
  }
  return B;
}

void AddObservation(const Design& design, const Verdict& verdict, const Observation& o,
                    std::size_t f, Sums& sums) {
  const Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
  const double B = MeasureSum(design, verdict, o);
  const std::vector<double> p = Probabilities(structure, B);
  const Moments moments = MomentsOf(structure, B);
  const int category = structure.ordered(o.category);
  const double w = o.weight;
  const double V = moments.variance;
  const double squared = std::pow(category - moments.mean, 2);

  sums.count += w;
  const int m = structure.top();
  sums.score += w * (o.isReversed(f) ? m - category : category);
  sums.expected += w * (o.isReversed(f) ? m - moments.mean : moments.mean);
  sums.information += w * V;
  sums.squaredResiduals += w * squared;
  sums.squaredVariance += w * (moments.fourth - V * V);
  sums.squaredStandardized += w * std::max(squared, kFloor) / std::max(V, kFloor);
  sums.kurtosis += w * std::max(moments.fourth, kFloor) / std::max(V * V, kFloor);

  if (structure.top() >= 2) {
    // Over the categories to the top; a Poisson scale's own go on.
    const std::vector<double> logits = Exponents(structure, B);
    double mean = 0.0, square = 0.0;
    for (int k = 1; k <= structure.top(); ++k) {
      const std::size_t cell = static_cast<std::size_t>(k);
      mean += p[cell] * logits[cell];
      square += p[cell] * logits[cell] * logits[cell];
    }
    sums.logits += w * (logits[static_cast<std::size_t>(category)] - mean);
    sums.logitVariance += w * (square - mean * mean);
  }

  const double fairMean = MomentsOf(structure, FairMeasure(design, verdict, o, f)).mean;
  sums.fair += w * (fairMean + structure.rawCategories.front());
}

// Wilson and Hilferty: the mean-square numerator / denominator and its deviate.
void FitOf(const Design& design, double denominator, double variance, double numerator,
           double& meanSquare, double& zStd) {
  meanSquare = denominator > 0.0 ? std::min(numerator / denominator, 9.0) : 1.0;
  zStd = 0.0;
  if (denominator <= 0.0 || variance <= 0.0) return;
  const double q = std::sqrt(variance) / denominator;
  zStd = (std::cbrt(numerator / denominator) - 1.0) * 3.0 / q;
  if (design.exactWilsonHilferty) zStd += q / 3.0;
  zStd = std::clamp(zStd, -9.0, 9.0);
}

void FinishElement(const Design& design, const Sums& sums, Element& e) {
  if (e.standing == Standing::measured) {
    FitOf(design, sums.information, sums.squaredVariance, sums.squaredResiduals, e.infit,
          e.infitZStd);
    FitOf(design, sums.count, sums.kurtosis - sums.count, sums.squaredStandardized, e.outfit,
          e.outfitZStd);
    e.displacement = (sums.score - sums.expected) / sums.information;
    if (sums.logitVariance > 0.0) {
      e.discrimination = std::clamp(1.0 + sums.logits / sums.logitVariance, -10.0, 10.0);
    }
  }
  double information = sums.information;
  if (design.realStandardErrors) information /= std::max(1.0, e.infit);
  if (information > 0.0) e.standardError = 1.0 / std::sqrt(information);
  if (sums.count > 0.0) e.fairAverage = sums.fair / sums.count;
}

// Correlations by the two-pass formulas.
void Correlate(const std::vector<Pair>& pairs, Element& e) {
  double W = 0.0, B = 0.0, x = 0.0, r = 0.0, v = 0.0;
  for (const Pair& pair : pairs) {
    W += pair.weight;
    B += pair.weight * pair.B;
    x += pair.weight * pair.x;
    r += pair.weight * pair.r;
    v += pair.weight * pair.v;
  }
  if (W <= 0.0) return;
  double BB = 0.0, xx = 0.0, rr = 0.0, Bx = 0.0, Br = 0.0;
  for (const Pair& pair : pairs) {
    BB += pair.weight * std::pow(pair.B - B / W, 2);
    xx += pair.weight * std::pow(pair.x - x / W, 2);
    rr += pair.weight * std::pow(pair.r - r / W, 2);
    Bx += pair.weight * (pair.B - B / W) * (pair.x - x / W);
    Br += pair.weight * (pair.B - B / W) * (pair.r - r / W);
  }
  if (BB < 1E-20) return;
  if (xx > 1E-20) e.pointMeasure = Bx / std::sqrt(BB * xx);
  const double expectedSpread = rr + std::max(W - 2.0, 0.0) * v / W;
  if (expectedSpread > 0.0) e.pointExpected = Br / std::sqrt(BB * expectedSpread);
}

}  // namespace

void Summarize(const Design& design, Verdict& verdict) {
  std::vector<std::vector<Sums>> sums;
  std::vector<std::vector<std::vector<Pair>>> pairs;
  for (const auto& flank : verdict.elements) {
    sums.emplace_back(flank.size());
    pairs.emplace_back(flank.size());
  }
  for (const Observation& o : design.observations) {
    const Use use = UseOf(design, verdict, o);
    if (use == Use::none) continue;
    const Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
    const double B = MeasureSum(design, verdict, o);
    const Moments moments = MomentsOf(structure, B);
    const double m = structure.top();
    const Pair pair{o.weight, B, structure.ordered(o.category) / m, moments.mean / m,
                    moments.variance / (m * m)};
    for (std::size_t f = 0; f < o.elements.size(); ++f) {
      if (o.elements[f] < 0) continue;
      const std::size_t n = static_cast<std::size_t>(o.elements[f]);
      // The correlation counts all observations of an element, those with an extreme one too.
      pairs[f][n].push_back(pair);
      if (Takes(verdict, use, f, o.elements[f])) {
        AddObservation(design, verdict, o, f, sums[f][n]);
      }
    }
  }
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
      FinishElement(design, sums[f][n], verdict.elements[f][n]);
      Correlate(pairs[f][n], verdict.elements[f][n]);
    }
  }
}

}  // namespace judge
