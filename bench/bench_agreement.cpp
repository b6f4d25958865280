// The pass over pairs of ratings: 1 million ratings, 5 categories.  The cost of loading and sorting
// grows with the ratings, that of the walk with the pairs.
#include <benchmark/benchmark.h>
#include <memory>
#include <random>
#include <string>

#include "base/single.h"
#include "stats/agreement.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

constexpr std::int64_t kRatings = 1'000'000;
constexpr std::int32_t kCriteria = 5;

struct AgreementCase {
  const char* name;
  std::int32_t raters;    // of all targets
  std::int32_t ofTarget;  // that rate one target: pairs for a rating are half of the others
};

std::unique_ptr<PassDesign> MakeData(const AgreementCase& c) {
  const auto targets = static_cast<std::int32_t>(kRatings / c.ofTarget);
  const std::int32_t persons = targets / kCriteria;
  auto data = std::make_unique<PassDesign>();
  data->Flank(persons, kPositiveOrientation);
  data->Flank(c.raters, kNegativeOrientation);
  data->Flank(kCriteria, kNegativeOrientation);
  const int statement = data->Statement({"", "", ""});
  const int structure = data->Structure(statement, data->Rating({-1.5f, -0.5f, 0.5f, 1.5f}));
  data->Build();
  data->scales.lowestCategory.assign(1, 0);
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0.0, 1.2);
  for (ElementState& element : data->estimates.elements)
    element.ElementMeasure = Single(normal(random));
  // Rater after rater, as data come in: the ratings of a target lie far apart.
  for (std::int32_t n = 0; n < c.ofTarget; ++n)
    for (std::int32_t target = 0; target < targets; ++target)
      data->Observe({1 + target / kCriteria, 1 + persons + (target / kCriteria + n) % c.raters,
                     1 + persons + c.raters + target % kCriteria},
                    structure, static_cast<int>(random() % 5));
  data->EndOfData();
  return data;
}

void Agreement(benchmark::State& state, const AgreementCase& c) {
  const std::unique_ptr<PassDesign> data = MakeData(c);
  const PassParts parts = data->parts();
  std::string message;
  const auto plan = PlanAgreement({2}, parts, message);
  double pairs = 0.0;
  for (auto _ : state) {
    AgreementPass pass(parts, *plan);
    if (!pass.Allocate(data->work.records)) state.SkipWithError("no memory");
    pass.Load();
    pass.Sort();
    RaterAgreement agreement;
    pass.Walk(agreement);
    pairs = agreement.AgreementOpportunities;
  }
  state.counters["pairs"] = pairs;
  state.SetItemsProcessed(state.iterations() * kRatings);
}

const bool registered = [] {
  static constexpr AgreementCase kCases[] = {
      {"2 of 50 raters", 50, 2}, {"10 of 50 raters", 50, 10}, {"100 of 100 raters", 100, 100}};
  for (const AgreementCase& c : kCases) {
    const std::string name = "Agreement/" + std::string(c.name);
    benchmark::RegisterBenchmark(name.c_str(), Agreement, c)->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace flanks
