#include "estimate/pass_end.h"

#include <cmath>
#include <stdexcept>

#include "base/single.h"

namespace flanks {

void CutPassSums(Estimates& estimates) {
  for (const ElementSlot e : Upward(estimates.elements)) {
    ElementState& element = estimates.elements[e];
    if (!std::isfinite(element.ExpectedSum) || !std::isfinite(element.ShiftedExpected) ||
        !std::isfinite(element.Information))
      throw std::overflow_error("arithmetic overflow in the sums of an element (Hardware=)");
    element.Information = Single(element.Information);
  }
}

}  // namespace flanks
