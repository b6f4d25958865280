// Whole runs, from the text of the data to the text of the report: 100 thousand, 1 million and 10
// million ratings, each examinee by 2 of 50 raters on 5 criteria in 5 categories, default settings.
//
// The promise: the time for an observation and iteration at 10 million ratings is at most 1.3 times
// that at 100 thousand.  And at 1 million ratings of 100,000 examinees all Tables take at most the
// time of 60 passes; an iteration is such a pass and the steps of the elements.
//
// Times are processor time, taken where the run says what it is about to do:
//   read       command line to the end of Table 2
//   iteration  from the first line of Table 3 to the last, for each iteration between them
//   fit        the pass after convergence and the sweep behind it
//   Table 7    the report of the elements
//   Tables     all that stand behind the fit pass, from 4 to 8
// The first iteration, which has the check of connectivity with it, is in the total alone.
#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"
#include "run/pipeline.h"
#include "silent_shell.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

constexpr int kRaters = 50;
constexpr int kCriteria = 5;
constexpr int kRatingsOfExaminee = 2 * kCriteria;

double ProcessorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Shows nothing, and looks at the clock at the lines that begin a part of the run.
class TimingShell : public SilentShell {
 public:
  using SilentShell::SilentShell;

  double table3 = 0.0, firstIteration = 0.0, lastIteration = 0.0, fit = 0.0, fitEnd = 0.0;
  std::array<double, 15> ofTable{};  // seconds
  int iterationsBetween = 0;

 protected:
  void DoShowStatus(std::string_view text, Emphasis) override {
    const double now = ProcessorSeconds();
    const auto says = [text](std::string_view words) {
      return text.find(words) != std::string_view::npos;
    };
    if (says("Table 3.")) table3 = now;
    if (says(" PROX") || says(" JMLE")) {
      if (firstIteration == 0.0)
        firstIteration = now;
      else
        ++iterationsBetween;
      lastIteration = now;
    }
    if (says("Calculating fit")) fit = now;
    if (fit != 0.0 && fitEnd == 0.0 && now > fit) fitEnd = now;
    ofTable[table_] += now - lastStatus_;
    lastStatus_ = now;
    if (text.starts_with("Table "))
      table_ = static_cast<std::size_t>(std::atoi(std::string(text.substr(6)).c_str()));
    if (says("Computing fit summary") || says("Analyzed in")) table_ = 0;
  }
  std::int64_t DoMilliseconds() override {
    return static_cast<std::int64_t>(1000.0 * ProcessorSeconds());
  }

 private:
  std::size_t table_ = 0;
  double lastStatus_ = 0.0;
};

// Ratings as of a latent level: examinee less rater less criterion, with a logistic deviation, in
// five steps of one logit.
std::string RatingLines(int examinees) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::uniform_real_distribution<double> uniform(1e-9, 1.0 - 1e-9);
  std::vector<double> severity, difficulty;
  for (int r = 0; r < kRaters; ++r) severity.push_back(.5 * normal(random));
  for (int c = 0; c < kCriteria; ++c) difficulty.push_back(.5 * normal(random));
  std::string text;
  text.reserve(static_cast<std::size_t>(examinees) * 48);
  for (int e = 0; e < examinees; ++e) {
    const double ability = normal(random);
    const int first = e % kRaters;
    const int second = (first + 1 + e / kRaters % (kRaters - 1)) % kRaters;
    for (const int rater : {first, second}) {
      text += std::to_string(e + 1) + "," + std::to_string(rater + 1) + ",1-5";
      for (int c = 0; c < kCriteria; ++c) {
        const double u = uniform(random);
        const double level = ability - severity[static_cast<std::size_t>(rater)] -
                             difficulty[static_cast<std::size_t>(c)] + std::log(u / (1.0 - u));
        text += "," + std::to_string(std::clamp(static_cast<int>(level + 2.5), 0, 4));
      }
      text += "\n";
    }
  }
  return text;
}

std::string SpecificationText(int examinees) {
  return "Title=Whole run\nFlanks=3\nPositive=1\nNoncenter=1\nModels=?,?,?,R4\n*\nLabels=\n"
         "1,Examinees\n1-" +
         std::to_string(examinees) + "=\n*\n2,Raters\n1-" + std::to_string(kRaters) +
         "=\n*\n3,Criteria\n1-" + std::to_string(kCriteria) + "=\n*\nData=data.txt\n";
}

void WholeRun(benchmark::State& state) {
  const std::int64_t ratings = state.range(0);
  const int examinees = static_cast<int>(ratings / kRatingsOfExaminee);
  const ScratchFolder folder;
  folder.write("data.txt", RatingLines(examinees));
  folder.write("spec.txt", SpecificationText(examinees));
  const std::string command =
      folder.file("spec.txt") + " " + folder.file("report.txt") + " Batch=Y";
  for (auto _ : state) {
    const auto process = std::make_unique<Process>();
    const auto analysis = std::make_unique<Analysis>();
    TimingShell shell(process->control);
    Dialogs dialogs;
    Launcher launcher;
    const double start = ProcessorSeconds();
    if (RunAnalysis(*process, *analysis, {shell, dialogs, launcher}, command) != 0)
      return state.SkipWithError("the run was halted");
    const double end = ProcessorSeconds();
    if (analysis->work.records != ratings) return state.SkipWithError("ratings were lost");
    const auto nanoseconds = [ratings](double seconds) {
      return 1e9 * seconds / static_cast<double>(ratings);
    };
    state.counters["1 read ns"] = nanoseconds(shell.table3 - start);
    const double iteration = (shell.lastIteration - shell.firstIteration) / shell.iterationsBetween;
    const double tables = std::accumulate(shell.ofTable.begin() + 4, shell.ofTable.end(), 0.0);
    state.counters["2 iteration ns"] = nanoseconds(iteration);
    state.counters["3 fit ns"] = nanoseconds(shell.fitEnd - shell.fit);
    state.counters["4 Table 7 ns"] = nanoseconds(shell.ofTable[7]);
    state.counters["4 Tables ns"] = nanoseconds(tables);
    state.counters["4 Tables / iteration"] = tables / iteration;
    state.counters["5 iterations"] = shell.iterationsBetween + 1;
    state.counters["6 whole ns"] = nanoseconds(end - start);
  }
  state.SetItemsProcessed(state.iterations() * ratings);
}

BENCHMARK(WholeRun)
    ->Name("Run/ratings")
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace flanks
