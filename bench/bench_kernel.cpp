// The kernel for each scale type and vector width: nanoseconds for an observation, in blocks as
// the passes use it and one at a time.
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/exponential.h"
#include "estimate/kernel.h"

namespace flanks {
namespace {

struct ScaleCase {
  std::string name;
  ScaleType type;
  int top;
  float discrimination;
};

const std::array<ScaleCase, 7> kCases = {{
    {"dichotomy", ScaleType::rating, 1, 1.0f},
    {"rating 5", ScaleType::rating, 4, 1.0f},
    {"rating 21", ScaleType::rating, 20, 1.0f},
    {"binomial 5, c free", ScaleType::binomial, 5, 0.9f},
    {"binomial 5, c = 1", ScaleType::binomial, 5, 1.0f},
    {"Poisson 8, c free", ScaleType::poisson, 8, 0.9f},
    {"Poisson 8, c = 1", ScaleType::poisson, 8, 1.0f},
}};

KernelScale ScaleOf(const ScaleCase& c) {
  std::vector<float> thresholds(static_cast<std::size_t>(c.top) + 1, c.discrimination);
  for (std::size_t k = 1; k < thresholds.size(); ++k)
    thresholds[k] = 0.3f * (static_cast<float>(k) - 0.5f * static_cast<float>(c.top + 1));
  const std::vector<std::int16_t> flags(thresholds.size(), kCategoryFree);
  KernelScale scale;
  SetUpKernelScale(c.type, c.top, thresholds, flags, 80.0f, scale);
  return scale;
}

std::vector<float> Measures() {
  std::vector<float> measures(kKernelBlock);
  for (std::size_t i = 0; i < measures.size(); ++i)
    measures[i] = 3.0f * std::sin(0.7f * static_cast<float>(i));
  return measures;
}

void Block(benchmark::State& state, const ScaleCase& c, VectorWidth width) {
  const KernelScale scale = ScaleOf(c);
  const std::vector<float> measures = Measures();
  std::vector<float> expected(kKernelBlock), variance(kKernelBlock);
  std::vector<float> probability(kKernelStride * static_cast<std::size_t>(scale.varianceBound + 1));
  const KernelRows rows{expected.data(), variance.data(), probability.data(), kKernelStride};
  for (auto _ : state) {
    CategoryProbabilities(scale, measures, rows, width);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kKernelBlock));
}

void One(benchmark::State& state, const ScaleCase& c, VectorWidth width) {
  const KernelScale scale = ScaleOf(c);
  const std::vector<float> measures = Measures();
  ProbabilityArray probability{};
  std::size_t i = 0;
  for (auto _ : state) {
    const KernelResult result = CategoryProbabilities(scale, measures[i], probability, width);
    benchmark::DoNotOptimize(result);
    i = (i + 1) % kKernelBlock;
  }
  state.SetItemsProcessed(state.iterations());
}

void BareExponentials(benchmark::State& state, VectorWidth width) {
  const std::vector<float> measures = Measures();
  std::vector<float> results(kKernelBlock);
  for (auto _ : state) {
    Exponentials(measures, results, width);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kKernelBlock));
}

const bool registered = [] {
  for (const VectorWidth width : UsableVectorWidths()) {
    const std::string suffix = "/" + std::string(NameOf(width));
    benchmark::RegisterBenchmark(("Exponentials" + suffix).c_str(), BareExponentials, width);
    for (const ScaleCase& c : kCases) {
      benchmark::RegisterBenchmark(("KernelBlock/" + c.name + suffix).c_str(), Block, c, width);
      benchmark::RegisterBenchmark(("KernelOne/" + c.name + suffix).c_str(), One, c, width);
    }
  }
  return true;
}();

}  // namespace
}  // namespace flanks
