// Reading a plain comma-separated file: the bare std::getline loop that the data pass is measured
// against, and the text reader.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

#include "base/temp_file.h"
#include "base/text_file.h"

namespace flanks {
namespace {

constexpr int kLines = 1'000'000;

// Lines "examinee,rater,criterion,rating".
const std::string& RatingsFile() {
  static TempFile file;
  if (!file.exists()) {
    if (file.Create("bench", "txt")) std::abort();
    std::ofstream output(file.name(), std::ios::binary);
    std::mt19937 random(1);
    for (int i = 0; i < kLines; ++i) {
      output << 1 + random() % 100000 << ',' << 1 + random() % 50 << ',' << 1 + random() % 5 << ','
             << random() % 5 << '\n';
    }
  }
  return file.name();
}

void GetLine(benchmark::State& state) {
  for (auto _ : state) {
    std::ifstream input(RatingsFile());
    std::string line;
    std::int64_t bytes = 0;
    while (std::getline(input, line)) bytes += static_cast<std::int64_t>(line.size());
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

void TextFileLines(benchmark::State& state) {
  for (auto _ : state) {
    TextFile input;
    if (input.Open(RatingsFile())) std::abort();
    std::string_view line;
    std::int64_t bytes = 0;
    while (input.ReadLine(line)) bytes += static_cast<std::int64_t>(line.size());
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

BENCHMARK(GetLine)->Unit(benchmark::kMillisecond);
BENCHMARK(TextFileLines)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace flanks
