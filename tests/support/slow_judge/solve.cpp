// Joint maximum likelihood by Newton steps, one parameter at a time.
#include <algorithm>
#include <cmath>
#include <utility>

#include "support/slow_judge/slow_judge.h"

namespace judge {
namespace {

constexpr double kResidualLimit = 1E-10;  // score points
constexpr int kSweepLimit = 20000;
constexpr double kLongestStep = 1.0;  // logits: keeps Newton from overshooting

using Pointers = std::vector<const Observation*>;

// The observations of each element and of each structure.
struct Index {
  std::vector<std::vector<Pointers>> byElement;  // all that the element takes part in
  std::vector<Pointers> byStructure;             // without extreme elements
};

Index IndexOf(const Design& design, const Verdict& verdict) {
  Index index;
  for (const auto& flank : verdict.elements) index.byElement.emplace_back(flank.size());
  index.byStructure.resize(verdict.structures.size());
  for (const Observation& o : design.observations) {
    const Use use = UseOf(design, verdict, o);
    if (use == Use::full) index.byStructure[static_cast<std::size_t>(o.structure)].push_back(&o);
    for (std::size_t f = 0; f < o.elements.size(); ++f) {
      if (!Takes(verdict, use, f, o.elements[f])) continue;
      index.byElement[f][static_cast<std::size_t>(o.elements[f])].push_back(&o);
    }
  }
  return index;
}

struct Sums {
  double expected = 0.0, variance = 0.0;
};

// Of the score of an element.
Sums ScoreOf(const Design& design, const Verdict& verdict, const Pointers& observations) {
  Sums sums;
  for (const Observation* o : observations) {
    const Structure& structure = verdict.structures[static_cast<std::size_t>(o->structure)];
    const Moments moments = MomentsOf(Probabilities(structure, MeasureSum(design, verdict, *o)));
    sums.expected += o->weight * moments.mean;
    sums.variance += o->weight * moments.variance;
  }
  return sums;
}

// Of the number of observations in category k or above.
Sums UpperCountOf(const Design& design, const Verdict& verdict, const Pointers& observations,
                  std::size_t k) {
  Sums sums;
  for (const Observation* o : observations) {
    const Structure& structure = verdict.structures[static_cast<std::size_t>(o->structure)];
    const std::vector<double> p = Probabilities(structure, MeasureSum(design, verdict, *o));
    double upper = 0.0;
    for (std::size_t j = k; j < p.size(); ++j) upper += p[j];
    sums.expected += o->weight * upper;
    sums.variance += o->weight * upper * (1.0 - upper);
  }
  return sums;
}

double NewtonStep(double residual, double variance) {
  return std::clamp(residual / std::max(variance, 1E-300), -kLongestStep, kLongestStep);
}

// One step of every measured element; the largest score residual that was met.
double StepElements(const Design& design, const Index& index, Verdict& verdict) {
  double largest = 0.0;
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
      Element& e = verdict.elements[f][n];
      if (e.standing != Standing::measured) continue;
      const Sums sums = ScoreOf(design, verdict, index.byElement[f][n]);
      const double residual = e.score - sums.expected;
      e.measure += design.signs[f] * NewtonStep(residual, sums.variance);
      largest = std::max(largest, std::abs(residual));
    }
  }
  return largest;
}

// One step of every threshold of a scale with more than two categories.
double StepThresholds(const Design& design, const Index& index, Verdict& verdict) {
  double largest = 0.0;
  for (std::size_t s = 0; s < verdict.structures.size(); ++s) {
    Structure& structure = verdict.structures[s];
    if (structure.top() < 2) continue;
    double observed = 0.0;
    for (std::size_t k = structure.thresholds.size() - 1; k >= 1; --k) {
      observed += structure.observed[k];
      const Sums sums = UpperCountOf(design, verdict, index.byStructure[s], k);
      const double residual = observed - sums.expected;
      structure.thresholds[k] -= NewtonStep(residual, sums.variance);
      largest = std::max(largest, std::abs(residual));
    }
  }
  return largest;
}

void Shift(std::vector<Element>& flank, double by) {
  for (Element& e : flank) {
    if (e.standing == Standing::measured) e.measure += by;
  }
}

double MeanMeasure(const std::vector<Element>& flank) {
  double sum = 0.0;
  int count = 0;
  for (const Element& e : flank) {
    if (e.standing != Standing::measured) continue;
    sum += e.measure;
    ++count;
  }
  return count == 0 ? 0.0 : sum / count;
}

// The elements of one Flank that all the observations of structure s, and no others, meet: they
// can take up what the centering of its thresholds takes off.  Flank -1: there are none.
struct Carrier {
  int flank = -1;
  std::vector<std::size_t> elements;
};

Carrier CarrierOf(const Index& index, const Verdict& verdict, int s) {
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    Carrier carrier{static_cast<int>(f), {}};
    bool complete = true;
    for (const Observation* o : index.byStructure[static_cast<std::size_t>(s)]) {
      complete = complete && o->elements[f] >= 0;
    }
    for (std::size_t n = 0; n < verdict.elements[f].size() && complete; ++n) {
      if (verdict.elements[f][n].standing != Standing::measured) continue;
      int own = 0, others = 0;
      for (const Observation* o : index.byElement[f][n]) ++(o->structure == s ? own : others);
      if (own > 0 && others > 0) complete = false;
      if (own > 0) carrier.elements.push_back(n);
    }
    if (complete) return carrier;
  }
  return {};
}

// Thresholds to the mean 0, Flanks to the mean 0, and B as it was.
void Center(const Design& design, const std::vector<Carrier>& carriers, Verdict& verdict) {
  for (std::size_t s = 0; s < verdict.structures.size(); ++s) {
    Structure& structure = verdict.structures[s];
    if (structure.top() < 2) continue;
    double mean = 0.0;
    for (std::size_t k = 1; k < structure.thresholds.size(); ++k) mean += structure.thresholds[k];
    mean /= structure.top();
    for (std::size_t k = 1; k < structure.thresholds.size(); ++k) structure.thresholds[k] -= mean;
    if (carriers[s].flank < 0) continue;
    const std::size_t f = static_cast<std::size_t>(carriers[s].flank);
    for (const std::size_t n : carriers[s].elements) {
      verdict.elements[f][n].measure -= design.signs[f] * mean;
    }
  }
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    if (static_cast<int>(f) == design.noncenteredFlank) continue;
    const double mean = MeanMeasure(verdict.elements[f]);
    Shift(verdict.elements[f], -mean);
    if (design.noncenteredFlank < 0) continue;
    const std::size_t g = static_cast<std::size_t>(design.noncenteredFlank);
    Shift(verdict.elements[g], design.signs[g] * design.signs[f] * mean);
  }
}

// The measure at which an extreme element expects its adjusted score, all else fixed.
void MeasureExtreme(const Design& design, const Pointers& observations, std::size_t f, Element& e,
                    Verdict& verdict) {
  const double adjustment = design.extremeAdjustment * e.smallestWeight;
  const double score = std::clamp(e.score, adjustment, e.largestScore - adjustment);
  double low = -200.0, high = 200.0;  // of the signed measure
  for (int halving = 0; halving < 200; ++halving) {
    const double middle = (low + high) / 2.0;
    e.measure = design.signs[f] * middle;
    (ScoreOf(design, verdict, observations).expected < score ? low : high) = middle;
  }
}

}  // namespace

void SolveMeasures(const Design& design, Verdict& verdict) {
  const Index index = IndexOf(design, verdict);
  std::vector<Carrier> carriers;
  verdict.identified = design.noncenteredFlank >= 0;
  for (int s = 0; s < design.structureCount; ++s) {
    carriers.push_back(CarrierOf(index, verdict, s));
    const bool needed = verdict.structures[static_cast<std::size_t>(s)].top() >= 2;
    if (needed && carriers.back().flank < 0) verdict.identified = false;
  }
  if (!verdict.identified) return;
  for (verdict.sweeps = 0; verdict.sweeps < kSweepLimit && !verdict.converged; ++verdict.sweeps) {
    verdict.largestResidual = StepElements(design, index, verdict);
    verdict.largestResidual =
        std::max(verdict.largestResidual, StepThresholds(design, index, verdict));
    Center(design, carriers, verdict);
    verdict.converged = verdict.largestResidual < kResidualLimit;
  }
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
      Element& e = verdict.elements[f][n];
      if (e.standing == Standing::zeroScore || e.standing == Standing::perfectScore) {
        MeasureExtreme(design, index.byElement[f][n], f, e, verdict);
      }
    }
  }
}

}  // namespace judge
