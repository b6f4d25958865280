// Joint maximum likelihood under linear constraints, by Newton steps of all parameters together.
#include <algorithm>
#include <cmath>
#include <limits>

#include "support/slow_judge/parameters.h"
#include "support/slow_judge/slow_judge.h"

namespace judge {
namespace {

constexpr double kResidualLimit = 1E-9;  // score points
constexpr int kStepLimit = 200;
constexpr double kLongestStep = 2.0;  // logits: keeps the first steps in reach
constexpr int kMostHalvings = 60;

// A Poisson scale that keeps c = 1 is the Poisson distribution as it stands.
bool IsPlainPoisson(const Structure& structure) {
  return structure.counts() && structure.kind == Kind::poisson &&
         structure.discriminationAnchored && structure.discrimination == 1.0;
}

double LogLikelihood(const Design& design, const Verdict& verdict) {
  double sum = 0.0;
  for (const Observation& o : design.observations) {
    if (UseOf(design, verdict, o) != Use::full) continue;
    const Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
    const double B = MeasureSum(design, verdict, o);
    const int category = structure.ordered(o.category);
    if (IsPlainPoisson(structure)) {
      sum += o.weight * (category * B - std::exp(B));
      continue;
    }
    const std::vector<double> p = Probabilities(structure, B);
    sum += o.weight * std::log(std::max(p[static_cast<std::size_t>(category)],
                                        std::numeric_limits<double>::min()));
  }
  return sum;
}

// A parameter of an observation with the statistic that it multiplies in each category's exponent.
struct Term {
  std::size_t parameter;
  Vector statistic;  // by category
};

std::vector<Term> TermsOf(const Design& design, const Structure& structure,
                          const Parameters& parameters, const Observation& o, std::size_t cells) {
  std::vector<Term> terms;
  const auto add = [&](int parameter, auto statistic) {
    if (parameter < 0) return;
    Term term{static_cast<std::size_t>(parameter), Vector(cells, 0.0)};
    for (std::size_t k = 0; k < cells; ++k) term.statistic[k] = statistic(static_cast<int>(k));
    terms.push_back(term);
  };
  for (std::size_t f = 0; f < o.elements.size(); ++f) {
    if (o.elements[f] < 0) continue;
    const int sign = design.sign(o, f);
    add(parameters.element[f][static_cast<std::size_t>(o.elements[f])],
        [sign](int k) { return sign * k; });
  }
  const std::size_t s = static_cast<std::size_t>(o.structure);
  for (std::size_t j = 1; j < parameters.threshold[s].size(); ++j) {
    add(parameters.threshold[s][j], [j](int k) { return k >= static_cast<int>(j) ? -1.0 : 0.0; });
  }
  const int m = structure.top();
  const bool binomial = structure.kind == Kind::binomial;
  add(parameters.discrimination[s], [m, binomial](int k) {
    const double factorials = LogFactorialOf(k);
    // The product over j to k of j / (m - j + 1) is k! (m - k)! / m!
    return binomial ? -(factorials + LogFactorialOf(m - k) - LogFactorialOf(m)) : -factorials;
  });
  return terms;
}

// The slope of the log-likelihood, and its curvature with the sign turned.
struct Slopes {
  Vector gradient;
  Matrix information;
};

void AddObservation(const Design& design, const Verdict& verdict, const Parameters& parameters,
                    const Observation& o, Slopes& slopes) {
  const Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
  const double B = MeasureSum(design, verdict, o);
  const std::vector<double> p = Probabilities(structure, B);
  const std::size_t category = static_cast<std::size_t>(structure.ordered(o.category));
  const std::vector<Term> terms = TermsOf(design, structure, parameters, o, p.size());
  Vector mean;
  for (const Term& term : terms) {
    double expected = 0.0;
    for (std::size_t k = 0; k < p.size(); ++k) expected += p[k] * term.statistic[k];
    // Only measures are free here; the statistic of category 1 is their sign.
    if (IsPlainPoisson(structure)) expected = term.statistic[1] * std::exp(B);
    mean.push_back(expected);
    slopes.gradient[term.parameter] += o.weight * (term.statistic[category] - expected);
  }
  for (std::size_t a = 0; a < terms.size(); ++a) {
    for (std::size_t b = 0; b < terms.size(); ++b) {
      double covariance = 0.0;
      for (std::size_t k = 0; k < p.size(); ++k) {
        covariance += p[k] * (terms[a].statistic[k] - mean[a]) * (terms[b].statistic[k] - mean[b]);
      }
      if (IsPlainPoisson(structure)) {
        covariance = terms[a].statistic[1] * terms[b].statistic[1] * std::exp(B);
      }
      slopes.information[terms[a].parameter][terms[b].parameter] += o.weight * covariance;
    }
  }
}

Slopes SlopesOf(const Design& design, const Verdict& verdict, const Parameters& parameters) {
  Slopes slopes{Vector(parameters.count(), 0.0),
                Matrix(parameters.count(), Vector(parameters.count(), 0.0))};
  for (const Observation& o : design.observations) {
    if (UseOf(design, verdict, o) == Use::full) {
      AddObservation(design, verdict, parameters, o, slopes);
    }
  }
  return slopes;
}

// The step d of the parameters and the multipliers u of the constraints A x = b:
//   information d + A' u = gradient,   A d = b - A x
// False when they are not determined.
bool NewtonStep(const Slopes& slopes, const std::vector<Constraint>& constraints,
                const Parameters& parameters, Vector& solution) {
  const std::size_t n = parameters.count();
  Matrix matrix(n + constraints.size(), Vector(n + constraints.size(), 0.0));
  solution.assign(n + constraints.size(), 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    std::copy(slopes.information[i].begin(), slopes.information[i].end(), matrix[i].begin());
    solution[i] = slopes.gradient[i];
  }
  for (std::size_t c = 0; c < constraints.size(); ++c) {
    double missing = constraints[c].constant;
    for (std::size_t i = 0; i < n; ++i) {
      matrix[i][n + c] = matrix[n + c][i] = constraints[c].coefficients[i];
      missing -= constraints[c].coefficients[i] * *parameters.value[i];
    }
    solution[n + c] = missing;
  }
  return SolveLinear(matrix, solution);
}

// The step, shortened while it lowers the likelihood.
void Take(const Design& design, const Vector& solution, const Parameters& parameters,
          Verdict& verdict) {
  Vector start;
  double longest = 0.0;
  for (std::size_t i = 0; i < parameters.count(); ++i) {
    start.push_back(*parameters.value[i]);
    longest = std::max(longest, std::abs(solution[i]));
  }
  const double before = LogLikelihood(design, verdict);
  double part = longest > kLongestStep ? kLongestStep / longest : 1.0;
  for (int halving = 0; halving < kMostHalvings; ++halving, part /= 2.0) {
    for (std::size_t i = 0; i < parameters.count(); ++i) {
      *parameters.value[i] = start[i] + part * solution[i];
    }
    // A last step may lower it by rounding.
    if (LogLikelihood(design, verdict) >= before - 1E-9) return;
  }
}

// What is left of the gradient, and what the constraints hold back.
void NoteResiduals(const Slopes& slopes, const std::vector<Constraint>& constraints,
                   const Vector& solution, Verdict& verdict) {
  verdict.largestResidual = verdict.restriction = 0.0;
  const std::size_t n = slopes.gradient.size();
  for (std::size_t i = 0; i < n; ++i) {
    double residual = slopes.gradient[i];
    for (std::size_t c = 0; c < constraints.size(); ++c) {
      residual -= constraints[c].coefficients[i] * solution[n + c];
    }
    verdict.largestResidual = std::max(verdict.largestResidual, std::abs(residual));
  }
  for (std::size_t c = 0; c < constraints.size(); ++c) {
    verdict.restriction = std::max(verdict.restriction, std::abs(solution[n + c]));
  }
}

// The measure at which an extreme element expects its adjusted score, all else fixed.
void MeasureExtreme(const Design& design, std::size_t f, int n, Verdict& verdict) {
  std::vector<const Observation*> observations;
  for (const Observation& o : design.observations) {
    if (o.elements[f] == n && Takes(verdict, UseOf(design, verdict, o), f, n)) {
      observations.push_back(&o);
    }
  }
  Element& e = verdict.elements[f][static_cast<std::size_t>(n)];
  const double adjustment = design.extremeAdjustment * e.smallestWeight;
  const double score = std::clamp(e.score, adjustment, e.largestScore - adjustment);
  double low = -200.0, high = 200.0;  // of the signed measure
  for (int halving = 0; halving < 200; ++halving) {
    const double middle = (low + high) / 2.0;
    e.measure = design.signs[f] * middle;
    double expected = 0.0;
    for (const Observation* o : observations) {
      const Structure& structure = verdict.structures[static_cast<std::size_t>(o->structure)];
      const double mean = MomentsOf(structure, MeasureSum(design, verdict, *o)).mean;
      expected += o->weight * (o->isReversed(f) ? structure.top() - mean : mean);
    }
    (expected < score ? low : high) = middle;
  }
}

}  // namespace

void SolveMeasures(const Design& design, Verdict& verdict) {
  const Parameters parameters = ParametersOf(verdict);
  const std::vector<Constraint> constraints = ConstraintsOf(design, verdict, parameters);
  for (verdict.steps = 0; verdict.steps < kStepLimit && !verdict.converged; ++verdict.steps) {
    const Slopes slopes = SlopesOf(design, verdict, parameters);
    Vector solution;
    verdict.identified = NewtonStep(slopes, constraints, parameters, solution);
    if (!verdict.identified) return;
    NoteResiduals(slopes, constraints, solution, verdict);
    verdict.converged = verdict.largestResidual < kResidualLimit;
    if (!verdict.converged) Take(design, solution, parameters, verdict);
  }
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
      const Standing standing = verdict.elements[f][n].standing;
      if (standing == Standing::zeroScore || standing == Standing::perfectScore) {
        MeasureExtreme(design, f, static_cast<int>(n), verdict);
      }
    }
  }
}

}  // namespace judge
