// The responses that fit the model worst: what Table 4 lists, and graphs and requests show again.
//
// Filled by the pass of stats/residual_pass, which keeps the rows of largest standardized
// residuals; they stay until a new pass replaces them.
#ifndef FLANKS_RUN_UNEXPECTED_RESPONSES_H
#define FLANKS_RUN_UNEXPECTED_RESPONSES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "run/design.h"

namespace flanks {

// One kept response.
struct KeptResponse {
  std::int64_t sequence = 0;  // of the observation in the data, from 1
  std::int16_t category = 0;  // as observed
  std::int16_t score = 0;     // as scored: ordered category and lowest category of the scale
  float expected = 0.0f;      // expected score, in scored categories
  float residual = 0.0f;      // scored less expected
  float StRes = 0.0f;         // standardized residual, at most 9 in size
  float MeasureSum = 0.0f;    // logits
};

struct UnexpectedResponses {
  std::vector<KeptResponse> rows;     // by descending size of StRes
  std::vector<ElementSlot> elements;  // of row r: positions r * width to (r + 1) * width - 1
  int width = 0;                      // model positions; slot 0: the position names no element
  std::int64_t dropped = 0;           // candidates that found no room
  bool filled = false;                // a pass has been made
  float Unexpected = 0.0f;            // the limits of that pass
  std::int32_t T4maximum = 0;

  std::span<const ElementSlot> ElementsOf(std::size_t row) const {
    const auto places = static_cast<std::size_t>(width);
    return std::span(elements).subspan(row * places, places);
  }
};

}  // namespace flanks

#endif  // FLANKS_RUN_UNEXPECTED_RESPONSES_H
