// The model of the slow judge, and which observations count.
#include <algorithm>
#include <cmath>

#include "support/slow_judge/slow_judge.h"

namespace judge {

int Structure::ordered(int rawCategory) const {
  const auto place = std::find(rawCategories.begin(), rawCategories.end(), rawCategory);
  return place == rawCategories.end() ? -1 : static_cast<int>(place - rawCategories.begin());
}

double LogFactorialOf(int k) {
  double sum = 0.0;
  for (int j = 2; j <= k; ++j) sum += std::log(j);
  return sum;
}

std::vector<double> Exponents(const Structure& structure, double B) {
  const int m = structure.top();
  const bool poisson = structure.counts() && structure.kind == Kind::poisson;
  const int last = !poisson ? m : m < 5 ? 10 : 2 * m;
  std::vector<double> exponents{0.0};
  for (int k = 1; k <= last; ++k) {
    double step = B;
    if (poisson) {
      step -= structure.discrimination * std::log(k);
    } else if (structure.counts()) {
      step -= structure.discrimination * std::log(static_cast<double>(k) / (m - k + 1));
    } else if (!structure.skipped(k)) {
      step -= structure.thresholds[static_cast<std::size_t>(k)];
    }
    exponents.push_back(exponents.back() + step);
  }
  return exponents;
}

std::vector<double> Probabilities(const Structure& structure, double B) {
  std::vector<double> p = Exponents(structure, B);
  const double largest = *std::max_element(p.begin(), p.end());
  double total = 0.0;
  for (std::size_t k = 0; k < p.size(); ++k) {
    const bool skipped = !structure.counts() && structure.skipped(static_cast<int>(k));
    p[k] = skipped ? 0.0 : std::exp(p[k] - largest);
    total += p[k];
  }
  for (double& probability : p) probability /= total;
  return p;
}

Moments MomentsOf(const Structure& structure, double B) {
  const std::vector<double> p = Probabilities(structure, B);
  double S1 = 0.0, S2 = 0.0, S3 = 0.0, S4 = 0.0;
  for (std::size_t k = 0; k < p.size(); ++k) {
    const double x = static_cast<double>(k);
    S1 += x * p[k];
    S2 += x * x * p[k];
    S3 += x * x * x * p[k];
    S4 += x * x * x * x * p[k];
  }
  double E = S1;
  if (structure.counts() && structure.discrimination == 1.0) {
    E = structure.kind == Kind::binomial ? structure.top() / (1.0 + std::exp(-B)) : std::exp(B);
  }
  return {E, S2 - E * E, S4 - 4.0 * E * S3 + 6.0 * E * E * S2 - 3.0 * E * E * E * E};
}

double MeasureSum(const Design& design, const Verdict& verdict, const Observation& o) {
  double B = 0.0;
  for (std::size_t f = 0; f < o.elements.size(); ++f) {
    if (o.elements[f] < 0) continue;
    B += design.sign(o, f) * verdict.elements[f][static_cast<std::size_t>(o.elements[f])].measure;
  }
  return B;
}

Use UseOf(const Design& design, const Verdict& verdict, const Observation& o) {
  const Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
  if (o.weight <= 0.0 || structure.top() < 1 || structure.ordered(o.category) < 0) {
    return Use::none;
  }
  int extremes = 0;
  for (std::size_t f = 0; f < design.elementCounts.size(); ++f) {
    if (o.elements[f] < 0) continue;
    const Standing standing = verdict.elements[f][static_cast<std::size_t>(o.elements[f])].standing;
    if (standing == Standing::dropped) return Use::none;
    if (standing != Standing::measured) ++extremes;
  }
  return extremes == 0 ? Use::full : extremes == 1 ? Use::extreme : Use::none;
}

bool Takes(const Verdict& verdict, Use use, std::size_t f, int n) {
  if (n < 0 || use == Use::none) return false;
  const Standing standing = verdict.elements[f][static_cast<std::size_t>(n)].standing;
  return use == Use::full || standing != Standing::measured;
}

namespace {

// The weighted counts of each structure's categories, as in the data, over observations without
// extreme elements.
std::vector<std::vector<double>> CountCategories(const Design& design, const Verdict& verdict) {
  std::vector<std::vector<double>> counts(verdict.structures.size());
  for (const Observation& o : design.observations) {
    if (UseOf(design, verdict, o) != Use::full) continue;
    std::vector<double>& count = counts[static_cast<std::size_t>(o.structure)];
    const std::size_t category = static_cast<std::size_t>(o.category);
    if (count.size() <= category) count.resize(category + 1);
    count[category] += o.weight;
  }
  return counts;
}

void AddCategory(Structure& structure, int category, double count, CategoryStanding standing,
                 double threshold) {
  structure.rawCategories.push_back(category);
  structure.observed.push_back(count);
  structure.standing.push_back(standing);
  structure.thresholds.push_back(structure.rawCategories.size() == 1 ? 0.0 : threshold);
}

// Every count from 0 to the number of trials, or to the largest count.
Structure CountStructure(const StructurePlan& plan, std::vector<double> counts) {
  Structure structure;
  structure.kind = plan.kind;
  structure.discrimination = plan.discrimination;
  structure.discriminationAnchored = plan.discriminationAnchored;
  if (plan.kind == Kind::binomial) counts.resize(static_cast<std::size_t>(plan.trials) + 1);
  for (std::size_t k = 0; k < counts.size(); ++k) {
    AddCategory(structure, static_cast<int>(k), counts[k], CategoryStanding::free, 0.0);
  }
  return structure;
}

// The observed and the anchored categories, and with `keep` what lies between them.
Structure RatingStructure(const StructurePlan& plan, std::vector<double> counts) {
  for (const CategoryAnchor& anchor : plan.anchors) {
    const std::size_t needed = static_cast<std::size_t>(anchor.category) + 1;
    if (counts.size() < needed) counts.resize(needed);
  }
  Structure structure;
  std::vector<int> between;
  for (int category = 0; category < static_cast<int>(counts.size()); ++category) {
    const double count = counts[static_cast<std::size_t>(category)];
    CategoryStanding standing = CategoryStanding::free;
    double threshold = 0.0;
    for (const CategoryAnchor& anchor : plan.anchors) {
      if (anchor.category != category) continue;
      standing = CategoryStanding::anchored;
      threshold = anchor.threshold;
    }
    if (count == 0.0 && standing == CategoryStanding::free) {
      between.push_back(category);
      continue;
    }
    if (plan.keep && !structure.rawCategories.empty()) {
      for (const int skipped : between) {
        AddCategory(structure, skipped, 0.0, CategoryStanding::skipped, 0.0);
      }
    }
    between.clear();
    AddCategory(structure, category, count, standing, threshold);
  }
  return structure;
}

// The categories that observations without extreme elements use.  Changes nothing else.
bool RenumberCategories(const Design& design, Verdict& verdict) {
  const std::vector<std::vector<double>> counts = CountCategories(design, verdict);
  bool changed = false;
  for (std::size_t s = 0; s < verdict.structures.size(); ++s) {
    const StructurePlan& plan = design.structures[s];
    Structure found = plan.kind == Kind::rating ? RatingStructure(plan, counts[s])
                                                : CountStructure(plan, counts[s]);
    changed = changed || found.rawCategories != verdict.structures[s].rawCategories;
    verdict.structures[s] = std::move(found);
  }
  return changed;
}

void CountElements(const Design& design, Verdict& verdict) {
  for (auto& flank : verdict.elements) {
    for (Element& e : flank) {
      e.count = e.score = e.largestScore = e.rawScore = e.smallestWeight = 0.0;
    }
  }
  for (const Observation& o : design.observations) {
    const Use use = UseOf(design, verdict, o);
    const Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
    for (std::size_t f = 0; f < o.elements.size(); ++f) {
      if (!Takes(verdict, use, f, o.elements[f])) continue;
      Element& e = verdict.elements[f][static_cast<std::size_t>(o.elements[f])];
      e.count += o.weight;
      const int ordered = structure.ordered(o.category);
      e.score += o.weight * (o.isReversed(f) ? structure.top() - ordered : ordered);
      e.largestScore += o.weight * structure.top();
      e.rawScore += o.weight * o.category;
      e.smallestWeight = e.smallestWeight == 0.0 ? o.weight : std::min(e.smallestWeight, o.weight);
    }
  }
}

// Marks the measured elements that turn out extreme or without data.
bool RemoveElements(Verdict& verdict) {
  bool changed = false;
  for (auto& flank : verdict.elements) {
    for (Element& e : flank) {
      const Standing before = e.standing;
      if (e.anchored) continue;
      if (e.largestScore == 0.0) {
        e.standing = Standing::dropped;
      } else if (before == Standing::measured && e.score == 0.0) {
        e.standing = Standing::zeroScore;
      } else if (before == Standing::measured && e.score == e.largestScore) {
        e.standing = Standing::perfectScore;
      }
      changed = changed || e.standing != before;
    }
  }
  return changed;
}

}  // namespace

Verdict PrepareDesign(const Design& design) {
  Verdict verdict;
  for (const int count : design.elementCounts) {
    verdict.elements.emplace_back(static_cast<std::size_t>(count));
  }
  for (const ElementAnchor& anchor : design.anchors) {
    Element& e = verdict.elements[anchor.flank][static_cast<std::size_t>(anchor.element)];
    e.anchored = true;
    e.measure = anchor.measure;
  }
  // At first every category that stands in the data has a place.
  verdict.structures.resize(design.structures.size());
  int largest = 0;
  for (const Observation& o : design.observations) largest = std::max(largest, o.category);
  for (Structure& structure : verdict.structures) {
    for (int category = 0; category <= largest; ++category) {
      AddCategory(structure, category, 0.0, CategoryStanding::free, 0.0);
    }
  }
  bool changed = true;
  while (changed) {
    changed = RenumberCategories(design, verdict);
    CountElements(design, verdict);
    changed = RemoveElements(verdict) || changed;
  }
  return verdict;
}

Verdict Judge(const Design& design) {
  Verdict verdict = PrepareDesign(design);
  SolveMeasures(design, verdict);
  Summarize(design, verdict);
  return verdict;
}

}  // namespace judge
