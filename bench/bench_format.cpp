// The number formatter, for each number of a report and of the files, against snprintf.
#include <array>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kWidth = 10;
constexpr int kDecimals = 2;
constexpr std::size_t kValues = 4096;
constexpr std::size_t kBlock = kValues * kWidth;

std::vector<double> Values() {
  std::mt19937_64 random(7);
  std::normal_distribution<double> measure(0.0, 30.0);
  std::vector<double> values(kValues);
  for (double& value : values) value = measure(random);
  return values;
}

void FixedFieldOfMeasures(benchmark::State& state) {
  const std::vector<double> values = Values();
  std::string text;
  text.reserve(kBlock);
  for (auto _ : state) {
    text.clear();
    for (const double value : values) AppendFixedField(text, value, kWidth, kDecimals);
    benchmark::DoNotOptimize(text.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kValues));
}
BENCHMARK(FixedFieldOfMeasures);

void SnprintfOfMeasures(benchmark::State& state) {
  const std::vector<double> values = Values();
  std::string text;
  text.reserve(kBlock);
  std::array<char, 64> field;
  for (auto _ : state) {
    text.clear();
    for (const double value : values) {
      const int length =
          std::snprintf(field.data(), field.size(), "%*.*f", kWidth, kDecimals, value);
      text.append(field.data(), static_cast<std::size_t>(length));
    }
    benchmark::DoNotOptimize(text.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kValues));
}
BENCHMARK(SnprintfOfMeasures);

}  // namespace
}  // namespace flanks
