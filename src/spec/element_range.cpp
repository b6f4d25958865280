#include "spec/element_range.h"

#include <algorithm>
#include <cstddef>

#include "base/parse_integer.h"

namespace flanks {

ElementRange ParseElementRange(std::string_view text) {
  const std::size_t mark = text.find_first_of("-_");
  const bool isRange = mark != std::string_view::npos;
  const WholeNumber from = ParseElementNumber(text.substr(0, mark));
  const WholeNumber to = isRange ? ParseElementNumber(text.substr(mark + 1)) : from;
  if (from.fault != NumberFault::none || to.fault != NumberFault::none)
    return {.isRange = isRange, .fault = Fault::invalidElementNumber};
  const auto [low, high] = std::minmax(from.value, to.value);
  return {low, high, isRange, Fault::none};
}

}  // namespace flanks
