// The model of the slow judge, and which observations count.
#include <algorithm>
#include <cmath>

#include "support/slow_judge/slow_judge.h"

namespace judge {

int Structure::ordered(int rawCategory) const {
  const auto place = std::find(rawCategories.begin(), rawCategories.end(), rawCategory);
  return place == rawCategories.end() ? -1 : static_cast<int>(place - rawCategories.begin());
}

std::vector<double> Probabilities(const Structure& structure, double B) {
  std::vector<double> logits{0.0};
  for (std::size_t k = 1; k < structure.thresholds.size(); ++k) {
    logits.push_back(logits.back() + B - structure.thresholds[k]);
  }
  const double largest = *std::max_element(logits.begin(), logits.end());
  double total = 0.0;
  for (double& logit : logits) {
    logit = std::exp(logit - largest);
    total += logit;
  }
  for (double& probability : logits) probability /= total;
  return logits;
}

Moments MomentsOf(const std::vector<double>& probabilities) {
  Moments moments;
  for (std::size_t k = 0; k < probabilities.size(); ++k) {
    moments.mean += static_cast<double>(k) * probabilities[k];
  }
  for (std::size_t k = 0; k < probabilities.size(); ++k) {
    const double square = std::pow(static_cast<double>(k) - moments.mean, 2);
    moments.variance += square * probabilities[k];
    moments.fourth += square * square * probabilities[k];
  }
  return moments;
}

double MeasureSum(const Design& design, const Verdict& verdict, const Observation& o) {
  double B = 0.0;
  for (std::size_t f = 0; f < o.elements.size(); ++f) {
    if (o.elements[f] < 0) continue;
    B += design.signs[f] * verdict.elements[f][static_cast<std::size_t>(o.elements[f])].measure;
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

// The categories that observations without extreme elements use.  Changes nothing else.
bool RenumberCategories(const Design& design, Verdict& verdict) {
  std::vector<Structure> found(verdict.structures.size());
  std::vector<std::vector<double>> counts(verdict.structures.size());
  for (const Observation& o : design.observations) {
    if (UseOf(design, verdict, o) != Use::full) continue;
    std::vector<double>& count = counts[static_cast<std::size_t>(o.structure)];
    const std::size_t category = static_cast<std::size_t>(o.category);
    if (count.size() <= category) count.resize(category + 1);
    count[category] += o.weight;
  }
  bool changed = false;
  for (std::size_t s = 0; s < found.size(); ++s) {
    for (std::size_t category = 0; category < counts[s].size(); ++category) {
      if (counts[s][category] == 0.0) continue;
      found[s].rawCategories.push_back(static_cast<int>(category));
      found[s].observed.push_back(counts[s][category]);
    }
    found[s].thresholds.assign(found[s].rawCategories.size(), 0.0);
    changed = changed || found[s].rawCategories != verdict.structures[s].rawCategories;
  }
  verdict.structures = std::move(found);
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
      e.score += o.weight * structure.ordered(o.category);
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
  // At first every category that stands in the data has a place.
  verdict.structures.resize(static_cast<std::size_t>(design.structureCount));
  int largest = 0;
  for (const Observation& o : design.observations) largest = std::max(largest, o.category);
  for (Structure& structure : verdict.structures) {
    for (int category = 0; category <= largest; ++category) {
      structure.rawCategories.push_back(category);
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
