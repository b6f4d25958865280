// The check of connectivity beside a JMLE pass (secant method) over the same work files, 1 and 10
// million observations of 3 positions.  It rides on the counting pass of the first iteration, which
// is timed without it and with it; what a design that falls apart costs beyond (reading again and
// merging) is timed with it in the form "Check".
#include <benchmark/benchmark.h>
#include <memory>
#include <random>
#include <string>

#include "base/single.h"
#include "estimate/subsets.h"
#include "pass_cases.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

constexpr std::int64_t kMillion = 1'000'000;
constexpr std::int32_t kRatingsOfPerson = 100;
constexpr std::int32_t kRaters = 50;
constexpr std::int32_t kItems = 250;

enum class Shape {
  linked,        // each person meets 20 raters, person by person
  random,        // all at random
  nested,        // each person has one rater only: 50 disjoint subsets, the items in all of them
  nestedRandom,  // the same in random order
  anchored,      // linked, with all items at given measures
};

struct SubsetCase {
  const char* name;
  Shape shape;
  std::int64_t observations;
};

std::unique_ptr<PassDesign> MakeData(const SubsetCase& c) {
  auto data = std::make_unique<PassDesign>();
  const auto persons = static_cast<std::int32_t>(c.observations / kRatingsOfPerson);
  data->Flank(persons, kPositiveOrientation);
  data->Flank(kRaters, kNegativeOrientation);
  data->Flank(kItems, kNegativeOrientation);
  data->Structure(data->Statement({"", "", ""}), data->Rating({-1.35f, -.45f, .45f, 1.35f}));
  data->Build();
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0.0, 1.2);
  for (ElementState& element : data->estimates.elements)
    element.ElementMeasure = Single(normal(random));
  if (c.shape == Shape::anchored)
    for (std::int32_t item = 1; item <= kItems; ++item)
      data->design.elements.ElementAnchor[ElementSlot(persons + kRaters + item)] =
          AnchorKind::anchored;
  const bool shuffled = c.shape == Shape::random || c.shape == Shape::nestedRandom;
  const bool nested = c.shape == Shape::nested || c.shape == Shape::nestedRandom;
  for (std::int64_t r = 0; r < c.observations; ++r) {
    const auto n = static_cast<std::int32_t>(shuffled ? random() % kItems : r % kRatingsOfPerson);
    const auto person =
        static_cast<std::int32_t>(shuffled ? random() % static_cast<unsigned>(persons)
                                           : static_cast<unsigned>(r / kRatingsOfPerson));
    const std::int32_t rater = (nested ? person : person + n / 5) % kRaters;
    const std::int32_t item = (person + n) % kItems;
    data->Observe({1 + person, 1 + persons + rater, 1 + persons + kRaters + item}, 0,
                  static_cast<int>(random() % 5));
  }
  data->EndOfData();
  return data;
}

PassDesign& DataOf(const SubsetCase& c) {
  static KeptCase<PassDesign> kept;
  return kept.Of(c.name + std::to_string(c.observations), [&c] { return MakeData(c); });
}

void Jmle(benchmark::State& state, const SubsetCase& c) {
  RunJmlePasses(state, DataOf(c));
  state.SetItemsProcessed(state.iterations() * c.observations);
}

void CountObservations(PassDesign& data, ObservationReader& reader, CountingPass& pass,
                       SubsetCheck* subsets) {
  ClearPassSums(data.estimates);
  ClearScaleSums(Recount::needed, data.scales);
  ClearScores(data.estimates);
  pass.Run(reader, Recount::needed, subsets);
}

void Count(benchmark::State& state, const SubsetCase& c) {
  PassDesign& data = DataOf(c);
  ObservationReader reader(data.parts());
  CountingPass pass(data.parts());
  for (auto _ : state) CountObservations(data, reader, pass, nullptr);
  state.SetItemsProcessed(state.iterations() * c.observations);
}

void CountAndCheck(benchmark::State& state, const SubsetCase& c) {
  PassDesign& data = DataOf(c);
  ObservationReader reader(data.parts());
  CountingPass pass(data.parts());
  for (auto _ : state) {
    SubsetCheck check(data.parts());
    CountObservations(data, reader, pass, &check);
    check.Finish(reader);
    state.counters["subsets"] = check.SubsetCount;
  }
  state.SetItemsProcessed(state.iterations() * c.observations);
}

const bool registered = [] {
  static constexpr SubsetCase kCases[] = {
      {"linked", Shape::linked, kMillion},
      {"random order", Shape::random, kMillion},
      {"nested", Shape::nested, kMillion},
      {"nested, random order", Shape::nestedRandom, kMillion},
      {"items anchored", Shape::anchored, kMillion},
      {"linked", Shape::linked, 10 * kMillion},
      {"random order", Shape::random, 10 * kMillion},
      {"nested", Shape::nested, 10 * kMillion},
      {"nested, random order", Shape::nestedRandom, 10 * kMillion},
      {"items anchored", Shape::anchored, 10 * kMillion},
  };
  for (const SubsetCase& c : kCases) {
    const auto add = [&](const char* form, auto function) {
      const std::string name = "Subsets/" + std::to_string(c.observations / kMillion) +
                               " million/" + std::string(c.name) + "/" + form;
      benchmark::RegisterBenchmark(name.c_str(), function, c)->Unit(benchmark::kMillisecond);
    };
    add("JMLE", Jmle);
    add("Count", Count);
    add("Check", CountAndCheck);
  }
  return true;
}();

}  // namespace
}  // namespace flanks
