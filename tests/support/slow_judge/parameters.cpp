// What is free and what holds it.
#include "support/slow_judge/parameters.h"

namespace judge {
namespace {

bool HasAnchor(const Structure& structure) {
  for (std::size_t k = 1; k < structure.standing.size(); ++k) {
    if (structure.standing[k] == CategoryStanding::anchored) return true;
  }
  return false;
}

// By an anchor or a group.
bool IsTied(const Design& design, std::size_t f) {
  for (const ElementAnchor& anchor : design.anchors) {
    if (anchor.flank == f) return true;
  }
  for (const ElementGroup& group : design.groups) {
    if (group.flank == f) return true;
  }
  return false;
}

}  // namespace

Parameters ParametersOf(Verdict& verdict) {
  Parameters parameters;
  const auto add = [&parameters](double& value) {
    parameters.value.push_back(&value);
    return static_cast<int>(parameters.value.size()) - 1;
  };
  for (auto& flank : verdict.elements) {
    parameters.element.emplace_back(flank.size(), -1);
    for (std::size_t n = 0; n < flank.size(); ++n) {
      if (flank[n].standing == Standing::measured && !flank[n].anchored) {
        parameters.element.back()[n] = add(flank[n].measure);
      }
    }
  }
  for (Structure& structure : verdict.structures) {
    parameters.threshold.emplace_back(structure.thresholds.size(), -1);
    for (std::size_t k = 1; k < structure.thresholds.size(); ++k) {
      const bool free = structure.standing[k] == CategoryStanding::free;
      if (structure.kind == Kind::rating && structure.top() >= 2 && free) {
        parameters.threshold.back()[k] = add(structure.thresholds[k]);
      }
    }
    const bool estimated = structure.counts() && !structure.discriminationAnchored;
    parameters.discrimination.push_back(estimated ? add(structure.discrimination) : -1);
  }
  return parameters;
}

std::vector<Constraint> ConstraintsOf(const Design& design, const Verdict& verdict,
                                      const Parameters& parameters) {
  std::vector<Constraint> constraints;
  const auto addMean = [&](const std::vector<int>& members, double mean) {
    Constraint constraint{Vector(parameters.count(), 0.0), 0.0};
    bool any = false;
    for (const int member : members) {
      if (member < 0) continue;
      constraint.coefficients[static_cast<std::size_t>(member)] = 1.0;
      constraint.constant += mean;
      any = true;
    }
    if (any) constraints.push_back(constraint);
  };
  for (std::size_t f = 0; f < parameters.element.size(); ++f) {
    if (static_cast<int>(f) != design.noncenteredFlank && !IsTied(design, f)) {
      addMean(parameters.element[f], 0.0);
    }
  }
  for (const ElementGroup& group : design.groups) {
    std::vector<int> members;
    for (const int n : group.elements) {
      members.push_back(parameters.element[group.flank][static_cast<std::size_t>(n)]);
    }
    addMean(members, group.mean);
  }
  for (std::size_t s = 0; s < parameters.threshold.size(); ++s) {
    if (!HasAnchor(verdict.structures[s])) addMean(parameters.threshold[s], 0.0);
  }
  return constraints;
}

}  // namespace judge
