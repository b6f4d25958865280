// The free parameters of a design and the constraints on them, for the slow judge.
#ifndef FLANKS_TESTS_SUPPORT_SLOW_JUDGE_PARAMETERS_H
#define FLANKS_TESTS_SUPPORT_SLOW_JUDGE_PARAMETERS_H

#include <vector>

#include "support/slow_judge/dense.h"
#include "support/slow_judge/slow_judge.h"

namespace judge {

// Where each free parameter stands; -1: it is none.
struct Parameters {
  std::vector<std::vector<int>> element;    // by Flank and element
  std::vector<std::vector<int>> threshold;  // by structure and ordered category
  std::vector<int> discrimination;          // by structure
  std::vector<double*> value;               // into the verdict
  std::size_t count() const { return value.size(); }
};

// The parameters of `verdict`, whose elements and structures must outlive them.
Parameters ParametersOf(Verdict& verdict);

// coefficients . values = constant; `values` in the order of the parameters.
struct Constraint {
  Vector coefficients;
  double constant = 0.0;
};
std::vector<Constraint> ConstraintsOf(const Design& design, const Verdict& verdict,
                                      const Parameters& parameters);

}  // namespace judge

#endif  // FLANKS_TESTS_SUPPORT_SLOW_JUDGE_PARAMETERS_H
