// The passes after convergence beside a JMLE pass (secant method) over the same work files: 10
// million observations of 3 positions.  The fit pass evaluates the kernel once for the observation
// and once for each position, and adds twenty sums for each position where JMLE adds three; it may
// cost four JMLE passes.  The residual pass evaluates the kernel once, where JMLE does twice, and
// keeps the rows of Table 4: none, the default hundred, or all that are unexpected.
#include <benchmark/benchmark.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/single.h"
#include "pass_cases.h"
#include "stats/fair_average.h"
#include "stats/fit_pass.h"
#include "stats/residual_pass.h"
#include "stats/unexpected_list.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

constexpr std::int64_t kObservations = 10'000'000;
constexpr std::int32_t kPersons = 100'000;
constexpr std::int32_t kRaters = 50;
constexpr std::int32_t kItems = 250;

enum class Order { byPerson, random };

// What is out of the usual.
enum class Kind { usual, weighted, extreme, reversed, binomial, poisson };

struct FitCase {
  const char* name;
  Order order;
  int top;
  int scales;  // partial credit: the items share them in turn
  Kind kind = Kind::usual;
};

std::vector<float> Thresholds(int top) {
  std::vector<float> thresholds;
  for (int k = 1; k <= top; ++k) {
    thresholds.push_back(Single(0.9 * k - 0.45 * static_cast<double>(top + 1)));
  }
  return thresholds;
}

int MakeScale(const FitCase& c, PassDesign& data) {
  if (c.kind == Kind::binomial) return data.CountScale(ScaleType::binomial, c.top, .8f);
  if (c.kind == Kind::poisson) return data.CountScale(ScaleType::poisson, c.top, .8f);
  return data.Rating(Thresholds(c.top));
}

std::unique_ptr<PassDesign> MakeData(const FitCase& c) {
  auto data = std::make_unique<PassDesign>();
  data->Flank(kPersons, kPositiveOrientation);
  data->Flank(kRaters, kNegativeOrientation);
  data->Flank(kItems, kNegativeOrientation);
  const int statement = data->Statement({"", "", c.kind == Kind::reversed ? "-" : ""});
  for (int s = 0; s < c.scales; ++s) data->Structure(statement, MakeScale(c, *data));
  data->Build();
  data->scales.lowestCategory.assign(c.scales, 0);
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0.0, 1.2);
  for (ElementState& element : data->estimates.elements) {
    element.ElementMeasure = Single(normal(random));
  }
  for (std::int32_t person = 1; person <= kPersons && c.kind == Kind::extreme; person += 20) {
    data->element(person).ElementStatus = kStatusMinimum;
  }
  const std::int64_t each = kObservations / kPersons;
  for (std::int64_t r = 0; r < kObservations; ++r) {
    const auto person = c.order == Order::byPerson ? static_cast<std::int32_t>(r / each)
                                                   : static_cast<std::int32_t>(random() % kPersons);
    const auto n = static_cast<std::int32_t>(r % each);
    const std::int32_t item = (person + n) % kItems;
    data->Observe(
        {1 + person, 1 + kPersons + (person + n / 5) % kRaters, 1 + kPersons + kRaters + item},
        item % c.scales, static_cast<int>(random() % (static_cast<unsigned>(c.top) + 1)),
        c.kind == Kind::weighted ? 2.0f : 1.0f);
  }
  data->EndOfData();
  FlankMeans(data->design, data->estimates);
  return data;
}

PassDesign& DataOf(const FitCase& c) {
  static KeptCase<PassDesign> kept;
  return kept.Of(c.name, [&c] { return MakeData(c); });
}

void Finish(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kObservations);
}

void Jmle(benchmark::State& state, const FitCase& c) {
  RunJmlePasses(state, DataOf(c));
  Finish(state);
}

void Fit(benchmark::State& state, const FitCase& c) {
  PassDesign& data = DataOf(c);
  FitPass pass(data.parts(), FairKind::mean);
  for (auto _ : state) {
    if (!pass.Run()) state.SkipWithError("the recode tables contradict each other");
  }
  Finish(state);
}

// `T4maximum` rows at most.  The ratings are random, so 29 in 100 of 5 categories are candidates.
void Residuals(benchmark::State& state, const FitCase& c, std::int32_t T4maximum) {
  PassDesign& data = DataOf(c);
  ResidualPass pass(data.parts());
  std::size_t kept = 0;
  for (auto _ : state) {
    UnexpectedList list(3.0f, T4maximum, data.design.ModelFlankCount);
    benchmark::DoNotOptimize(pass.Run(list));
    kept = list.Finish().rows.size();
  }
  state.counters["kept"] = static_cast<double>(kept);
  Finish(state);
}

const bool registered = [] {
  static constexpr FitCase kCases[] = {
      {"5 categories, by person", Order::byPerson, 4, 1},
      {"5 categories, random order", Order::random, 4, 1},
      {"partial credit, by person", Order::byPerson, 4, 250},
      {"dichotomies, by person", Order::byPerson, 1, 1},
      {"weighted", Order::byPerson, 4, 1, Kind::weighted},
      {"one person in 20 extreme", Order::byPerson, 4, 1, Kind::extreme},
      {"reversed", Order::byPerson, 4, 1, Kind::reversed},
      {"binomial", Order::byPerson, 4, 1, Kind::binomial},
      {"Poisson", Order::byPerson, 4, 1, Kind::poisson}};
  for (const FitCase& c : kCases) {
    const auto add = [&](const char* form, auto function) {
      const std::string name = "Fit/" + std::string(c.name) + "/" + form;
      benchmark::RegisterBenchmark(name.c_str(), function, c)->Unit(benchmark::kMillisecond);
    };
    add("JMLE", Jmle);
    add("Fit", Fit);
    add("Residuals", [](benchmark::State& state, const FitCase& fit) { Residuals(state, fit, 0); });
    add("Residuals, 100 kept",
        [](benchmark::State& state, const FitCase& fit) { Residuals(state, fit, 100); });
    add("Residuals, all kept",
        [](benchmark::State& state, const FitCase& fit) { Residuals(state, fit, 2'000'000'000); });
  }
  return true;
}();

}  // namespace
}  // namespace flanks
