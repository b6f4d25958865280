#include "estimate/free_parameters.h"

namespace flanks {

std::int32_t FreeParametersOf(const IterationState& iteration, const ScaleTables& scales) {
  std::int32_t count = iteration.FreeParameterCount;
  for (ScaleRow scale : Upward(scales.scaleType)) {
    const int top = scales.ScaleTopCategory[scale];
    if (scales.scaleType[scale] != ScaleType::rating || top < 2) continue;
    bool anchored = false;
    for (int k = 1; k <= top; ++k) {
      const std::int16_t flag = scales.CategoryFlag.at(scale, k);
      if (flag == kCategoryFree) ++count;
      anchored = anchored || flag == kCategoryAnchored;
    }
    if (!anchored) --count;
  }
  return count;
}

}  // namespace flanks
