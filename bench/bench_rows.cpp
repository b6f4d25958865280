// The Residual file of 1 million ratings with all of its fields, beside copying a file of its size
// by `cp` to the same folder.
//
// The promise: at most four times the time of the copy.  File and copy are made in turns, ten
// times; the shortest of each counts, by the clock and in processor time (the system's included).
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <sys/resource.h>
#include <time.h>

#include "output/residual_file.h"
#include "run/console.h"
#include "run/pipeline.h"
#include "silent_shell.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

constexpr int kExaminees = 20'000;
constexpr int kRatersOfExaminee = 5;
constexpr int kRaters = 50;
constexpr int kItems = 10;
constexpr int kRounds = 10;

std::string DataLines() {
  std::mt19937 random(11);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::string text;
  for (int e = 0; e < kExaminees; ++e) {
    const double ability = 1.3 * normal(random);
    for (int n = 0; n < kRatersOfExaminee; ++n) {
      text += std::to_string(e + 1) + "," + std::to_string((e + 7 * n) % kRaters + 1) + ",1-10";
      for (int item = 0; item < kItems; ++item)
        text += "," + std::to_string(std::clamp(
                          static_cast<int>(std::lround(2.0 + ability + normal(random))), 0, 4));
      text += "\n";
    }
  }
  return text;
}

std::string SpecificationText() {
  std::string text =
      "Flanks=3\nPositive=1\nModels=?,?,?,R4\n*\nSubsets=N\nIterations=3\nTables=00000000000000\n"
      "Data=data.txt\nLabels=\n1,Examinees\n";
  const auto add = [&text](const char* name, int count) {
    for (int n = 1; n <= count; ++n)
      text += std::to_string(n) + "=" + name + " " + std::to_string(n) + "\n";
    text += "*\n";
  };
  add("Examinee", kExaminees);
  text += "2,Raters\n";
  add("Rater", kRaters);
  text += "3,Items\n";
  add("Item", kItems);
  return text;
}

struct Seconds {
  double clock = 1e9, processor = 1e9;
};

double SecondsOf(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double ProcessorSecondsOf(int who) {
  rusage usage{};
  getrusage(who, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <class Action>
void TakeShortest(int who, Seconds& shortest, const Action& action) {
  const double clock = SecondsOf(CLOCK_MONOTONIC), processor = ProcessorSecondsOf(who);
  action();
  shortest.clock = std::min(shortest.clock, SecondsOf(CLOCK_MONOTONIC) - clock);
  shortest.processor = std::min(shortest.processor, ProcessorSecondsOf(who) - processor);
}

void ResidualFile(benchmark::State& state, const std::string& separator) {
  const ScratchFolder folder;
  folder.write("data.txt", DataLines());
  folder.write("spec.txt", SpecificationText());
  const auto process = std::make_unique<Process>();
  const auto analysis = std::make_unique<Analysis>();
  SilentShell shell(process->control);
  Dialogs dialogs;
  Launcher launcher;
  if (RunAnalysis(*process, *analysis, {shell, dialogs, launcher},
                  folder.file("spec.txt") + " " + folder.file("report.txt") + " Batch=Y") != 0)
    return state.SkipWithError("the run was halted");
  Console console(shell, dialogs, process->control, analysis->settings, analysis->report);
  Run run{*process, *analysis, console, dialogs, launcher};
  ResidualOptions options = ResidualOptionsOf(analysis->settings);
  options.table.OutputSeparator = separator;
  options.ResponseSelection[0] = 'Y';
  const std::string name = folder.file("residuals.txt"), copy = folder.file("copy.txt");
  const std::string command = "cp '" + name + "' '" + copy + "'";
  Seconds writing, copying;
  bool failed = false;
  for (auto _ : state) {
    for (int round = 0; round < kRounds; ++round) {
      std::filesystem::remove(copy);
      std::filesystem::remove(name);
      TakeShortest(RUSAGE_SELF, writing,
                   [&] { failed |= !WriteResidualFileNamed(run, name, options); });
      TakeShortest(RUSAGE_CHILDREN, copying, [&] { failed |= std::system(command.c_str()) != 0; });
    }
  }
  if (failed) return state.SkipWithError("a file was not written");
  state.counters["1 MB"] = 1e-6 * static_cast<double>(std::filesystem::file_size(name));
  state.counters["2 write ms"] = 1e3 * writing.clock;
  state.counters["2 write cpu ms"] = 1e3 * writing.processor;
  state.counters["3 copy ms"] = 1e3 * copying.clock;
  state.counters["3 copy cpu ms"] = 1e3 * copying.processor;
  state.counters["4 times"] = writing.clock / copying.clock;
  state.counters["4 times cpu"] = writing.processor / copying.processor;
}
BENCHMARK_CAPTURE(ResidualFile, fixed, " ")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ResidualFile, comma, ",")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ResidualFile, tab, "\t")->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace flanks
