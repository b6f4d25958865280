// Loading of element numbers and labels, beside the sorting of as many of them.
//
// The promise: four million numbers, in order, load in at most 10 times the time that it takes to
// sort as many integers and as many labels.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <vector>

#include "spec/delements.h"
#include "spec/label_list.h"
#include "spec/label_loader.h"
#include "support/run_bench.h"

namespace flanks {
namespace {

enum class Form { inOrder, withGaps, outOfOrder, withMeasures };

// A run whose labels file holds so many elements of one Flank.
struct LabelsBench : RunBench {
  LabelsBench(std::int64_t elements, Form form) {
    Design& design = analysis.design;
    design.FlankCount = 1;
    design.flanks.FlankName.assign(1, {});
    design.flanks.FlankOptions.assign(1, " ");
    design.flanks.FlankWeight.assign(1, 1.0f);
    design.flanks.FlankNullLabel.assign(1, {});
    design.flanks.FlankHighestGroup.assign(1, 0);
    analysis.work.labelsFile = std::make_unique<TextWorkFile>();
    TextWorkFile& file = *analysis.work.labelsFile;
    if (file.Create("labels", "txt")) std::abort();
    file.WriteLine(LabelRecord("1,Persons", 1));
    for (std::int64_t i = 1; i <= elements; ++i) {
      std::int64_t number = i;
      if (form == Form::withGaps) number = i * 3;
      if (form == Form::outOfOrder) number = i * 1000003 % 1000000007;
      std::string line = std::to_string(number) + "=Person " + std::to_string(i);
      if (form == Form::withMeasures) line += ",1.25,3";
      file.WriteLine(LabelRecord(line, i + 1));
    }
  }
};

void BM_LoadLabels(benchmark::State& state, Form form) {
  const std::int64_t elements = state.range(0);
  for (auto _ : state) {
    state.PauseTiming();
    {
      LabelsBench bench(elements, form);
      state.ResumeTiming();
      LoadLabels(bench.run);
      state.PauseTiming();
      if (bench.analysis.design.ElementTotal != elements) state.SkipWithError("not all loaded");
    }
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * elements);
}
BENCHMARK_CAPTURE(BM_LoadLabels, in_order, Form::inOrder)
    ->Arg(4000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadLabels, with_gaps, Form::withGaps)
    ->Arg(4000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadLabels, out_of_order, Form::outOfOrder)
    ->Arg(4000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadLabels, with_measures, Form::withMeasures)
    ->Arg(4000000)
    ->Unit(benchmark::kMillisecond);

// The yardstick: as many integers, and as many labels, in no order.
void BM_SortNumbersAndLabels(benchmark::State& state) {
  const std::int64_t elements = state.range(0);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::int32_t> numbers;
    std::vector<std::string> labels;
    for (std::int64_t i = 1; i <= elements; ++i) {
      numbers.push_back(static_cast<std::int32_t>(i * 1000003 % 1000000007));
      labels.push_back("Person " + std::to_string(numbers.back()));
    }
    state.ResumeTiming();
    std::sort(numbers.begin(), numbers.end());
    std::sort(labels.begin(), labels.end());
    benchmark::DoNotOptimize(numbers.data());
    benchmark::DoNotOptimize(labels.data());
  }
  state.SetItemsProcessed(state.iterations() * elements);
}
BENCHMARK(BM_SortNumbersAndLabels)->Arg(4000000)->Unit(benchmark::kMillisecond);

// The same, sorted already.
void BM_SortOrderedNumbersAndLabels(benchmark::State& state) {
  const std::int64_t elements = state.range(0);
  std::vector<std::int32_t> numbers;
  std::vector<std::string> labels;
  for (std::int64_t i = 1; i <= elements; ++i) {
    numbers.push_back(static_cast<std::int32_t>(i));
    labels.push_back("Person " + std::to_string(1000000000 + i));
  }
  for (auto _ : state) {
    std::sort(numbers.begin(), numbers.end());
    std::sort(labels.begin(), labels.end());
    benchmark::DoNotOptimize(numbers.data());
    benchmark::DoNotOptimize(labels.data());
  }
  state.SetItemsProcessed(state.iterations() * elements);
}
BENCHMARK(BM_SortOrderedNumbersAndLabels)->Arg(4000000)->Unit(benchmark::kMillisecond);

// Labels looked up in data order in a Flank of 100,000.
void BM_FindByLabel(benchmark::State& state) {
  LabelsBench bench(state.range(0), Form::inOrder);
  LoadLabels(bench.run);
  LabelFinder finder(bench.analysis.design.flanks, bench.analysis.design.elements, bench.console);
  std::int64_t i = 0;
  std::string text;
  for (auto _ : state) {
    i = (i * 7919 + 1) % state.range(0);
    text = "Person " + std::to_string(i + 1);
    benchmark::DoNotOptimize(finder.FindElementByLabel(text, FlankNo(1)));
  }
}
BENCHMARK(BM_FindByLabel)->Arg(100000);

}  // namespace
}  // namespace flanks
