#include "base/exponential.h"

#include <cassert>
#include <cstddef>

namespace flanks {
namespace {

[[gnu::always_inline]] inline void ExponentialLoop(const float* __restrict arguments,
                                                   float* __restrict results, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) results[i] = Exponential(arguments[i]);
}

void ExponentialsNarrow(const float* arguments, float* results, std::size_t count) {
  ExponentialLoop(arguments, results, count);
}
#if defined(__x86_64__)
[[gnu::target("avx2")]] void ExponentialsAvx2(const float* arguments, float* results,
                                              std::size_t count) {
  ExponentialLoop(arguments, results, count);
}
[[gnu::target("avx512f,avx512dq,avx512bw,avx512vl,prefer-vector-width=512")]] void
ExponentialsAvx512(const float* arguments, float* results, std::size_t count) {
  ExponentialLoop(arguments, results, count);
}
#endif

}  // namespace

void Exponentials(std::span<const float> arguments, std::span<float> results, VectorWidth width) {
  assert(results.size() == arguments.size());
#if defined(__x86_64__)
  switch (width) {
    case VectorWidth::avx512:
      return ExponentialsAvx512(arguments.data(), results.data(), arguments.size());
    case VectorWidth::avx2:
      return ExponentialsAvx2(arguments.data(), results.data(), arguments.size());
    case VectorWidth::narrow:
      break;
  }
#else
  static_cast<void>(width);
#endif
  ExponentialsNarrow(arguments.data(), results.data(), arguments.size());
}

}  // namespace flanks
