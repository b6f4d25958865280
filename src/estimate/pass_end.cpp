#include "estimate/pass_end.h"

#include <cmath>
#include <stdexcept>

#include "base/held_single.h"

namespace flanks {

void CutPassSums(Estimates& estimates) {
  for (const ElementSlot e : Upward(estimates.elements)) {
    ElementState& element = estimates.elements[e];
    if (!std::isfinite(element.ExpectedSum) || !std::isfinite(element.ShiftedExpected) ||
        !std::isfinite(element.Information))
      throw std::overflow_error("a sum of an element is not finite");
    element.Information = HeldSingle(element.Information);
  }
}

}  // namespace flanks
