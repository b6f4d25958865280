// Small random Specifications with data that often can't be estimated: one element, all extreme,
// parts that share nobody, anchors against the data, dummies only, a single category, weights of 0
// and of 1E30, 255 categories, counts of 255, an element with one datum.
//
// The same seed gives the same design on every system: the engine's own numbers are used, not the
// library's distributions.
#ifndef FLANKS_TESTS_SUPPORT_ODD_DESIGN_H
#define FLANKS_TESTS_SUPPORT_ODD_DESIGN_H

#include <string>

namespace flanks {

struct OddDesign {
  std::string specification;  // names data.txt
  std::string data;
};

OddDesign MakeOddDesign(unsigned seed);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_ODD_DESIGN_H
