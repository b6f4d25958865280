// The passes of a bias analysis beside a pass of JMLE by the secant method: 1 million observations
// of 3 positions and 5 categories, from work files, with 200,000 terms.
//
//   Find        finding the terms
//   First       the first pass
//   Expected    a further pass
//   Fit         the pass at the final biases
//   Jmle        a pass of JMLE over the same data
//
// `table`: persons by items, whose keys index a table.  `scattered`: persons by raters, whose keys
// are too far apart for one.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "base/single.h"
#include "data/element_file.h"
#include "data/response_file.h"
#include "estimate/bias_pass.h"
#include "pass_cases.h"
#include "stats/bias_fit.h"
#include "support/work_file_design.h"

namespace flanks {
namespace {

constexpr std::int64_t kObservations = 1'000'000;

struct BiasCase {
  std::string name;
  std::int32_t persons, raters, items;
  int marked;  // the second marked position, from 0
};

// 20,000 persons on 10 items; 50,000 persons, each with 4 of 5,000 raters.
const BiasCase kCases[] = {{"table", 20'000, 50, 10, 2}, {"scattered", 50'000, 5'000, 5, 1}};

struct Setup {
  Design design;
  StructureTable structures;
  WorkFiles work;
  ScaleTables scales;
  Estimates estimates;

  explicit Setup(const BiasCase& c);
  PassParts parts() { return {design, structures, work, scales, estimates, false, nullptr}; }

 private:
  void MakeScale();
  void WriteRecords(const BiasCase& c);
};

Setup::Setup(const BiasCase& c) : design(WorkFileDesign({c.persons, c.raters, c.items})) {
  design.flanks.FlankOrientation.assign(3, kNegativeOrientation);
  design.flanks.FlankOrientation[FlankNo(1)] = kPositiveOrientation;
  design.elements.ElementWeight.assign(design.ElementTotal, 1.0f);
  design.models.references.assign(1, 3, {});
  design.models.ModelWeight.assign(1, 1.0f);
  design.models.references.at(ModelRow(0), 0).bias = true;
  design.models.references.at(ModelRow(0), c.marked).bias = true;
  MakeScale();
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0.0, 1.2);
  estimates.elements.assign(design.ElementTotal, {});
  for (ElementState& element : estimates.elements) {
    element.ElementMeasure = Single(normal(random));
    element.ElementStatus = kStatusFree;
  }
  WriteRecords(c);
}

void Setup::MakeScale() {
  constexpr int kTop = 4;
  structures.structureModel.assign(1, ModelRow(0));
  structures.structureScale.assign(1, ScaleRow(0));
  structures.structureCount.assign(1, kCategories, 0);
  scales.width = kTop + 1;
  scales.scaleType.assign(1, ScaleType::rating);
  scales.ScaleTopCategory.assign(1, kTop);
  scales.lowestCategory.assign(1, 0);
  scales.orderedCategory.assign(1, scales.width, 0);
  scales.ThresholdTable.assign(1, scales.width, 0.0f);
  scales.CategoryFlag.assign(1, scales.width, kCategoryFree);
  scales.ExpectedCount.assign(1, scales.width, 0.0);
  scales.ObservedCount.assign(1, scales.width, 0.0);
  scales.DiscriminationSums.assign(1, scales.width, 0.0);
  for (int k = 0; k <= kTop; ++k) {
    scales.orderedCategory.at(ScaleRow(0), k) = static_cast<std::int16_t>(k);
    structures.structureCount.at(StructureRow(0), k) = 1;
    if (k > 0) scales.ThresholdTable.at(ScaleRow(0), k) = Single(0.9 * k - 2.25);
  }
}

// Persons in the order of the data, each with all items; raters in random order, or four to a
// person.
void Setup::WriteRecords(const BiasCase& c) {
  OpenResponseFile(1, work);
  if (PrepareElementFile(design, Settings{}, 1, work) != Fault::none) std::abort();
  std::mt19937 random(11);
  Column<Position, std::int32_t> status(3, 0);
  const std::int64_t each = kObservations / c.persons;
  const bool fourRaters = c.marked == 1;
  for (std::int64_t r = 0; r < kObservations; ++r) {
    const auto person = static_cast<std::int32_t>(r / each);
    const auto turn = static_cast<std::int32_t>(r % each);
    const auto anyRater = static_cast<std::int32_t>(random() % static_cast<unsigned>(c.raters));
    const std::int32_t rater = fourRaters ? (person * 131 + turn % 4 * 1237) % c.raters : anyRater;
    status[Position(1)] = 1 + person;
    status[Position(2)] = c.persons + 1 + rater;
    status[Position(3)] = c.persons + c.raters + 1 + (fourRaters ? turn / 4 : turn) % c.items;
    WriteElementRecord(status, work);
    WriteResponseRecord({StructureRow(0), 1.0f, static_cast<std::int16_t>(random() % 5)}, work);
  }
  FlushElementRecords(work);
  FlushResponseRecords(work);
}

Setup& SetupFor(const BiasCase& c) {
  static KeptCase<Setup> kept;
  return kept.Of(c.name, [&c] { return std::make_unique<Setup>(c); });
}

void Finish(benchmark::State& state, std::int32_t terms) {
  state.SetItemsProcessed(state.iterations() * kObservations);
  state.SetLabel(std::to_string(terms) + " terms");
}

void Jmle(benchmark::State& state, const BiasCase& c) {
  RunJmlePasses(state, SetupFor(c));
  Finish(state, 0);
}

void Find(benchmark::State& state, const BiasCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  const BiasInteraction interaction = BiasInteractionsOf(setup.design).at(0);
  std::int32_t terms = 0;
  for (auto _ : state) {
    BiasTermList list(setup.parts(), interaction);
    list.Find(reader);
    terms = list.count();
  }
  Finish(state, terms);
}

// With biases as they may be in the course of the iterations.
BiasEstimates Found(Setup& setup, ObservationReader& reader) {
  BiasEstimates bias(setup.parts(), BiasInteractionsOf(setup.design).at(0));
  bias.terms.Find(reader);
  bias.states.assign(bias.terms.count(), {});
  bias.scores.assign(bias.terms.count(), {});
  for (const BiasTermRow term : Upward(bias.states)) {
    bias.states[term].Bias = Single(term.number() % 7 * 0.1 - 0.3);
    bias.states[term].BiasStatus = 1;
  }
  return bias;
}

void First(benchmark::State& state, const BiasCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  BiasEstimates bias = Found(setup, reader);
  BiasPass pass(bias.parts, bias.terms);
  Column<BiasTermRow, BiasFirstSums> sums(bias.terms.count());
  for (auto _ : state) pass.First(reader, sums);
  Finish(state, bias.terms.count());
}

void Expected(benchmark::State& state, const BiasCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  BiasEstimates bias = Found(setup, reader);
  BiasPass pass(bias.parts, bias.terms);
  for (auto _ : state) pass.Expected(reader, bias.states);
  Finish(state, bias.terms.count());
}

void Fit(benchmark::State& state, const BiasCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  BiasEstimates bias = Found(setup, reader);
  BiasFitPass pass(bias);
  Column<BiasTermRow, BiasFitSums> sums(bias.terms.count());
  for (auto _ : state) pass.Run(reader, sums);
  Finish(state, bias.terms.count());
}

const bool registered = [] {
  using Function = void (*)(benchmark::State&, const BiasCase&);
  const std::pair<const char*, Function> kForms[] = {
      {"Jmle", Jmle}, {"Find", Find}, {"First", First}, {"Expected", Expected}, {"Fit", Fit}};
  for (const BiasCase& c : kCases)
    for (const auto& [form, function] : kForms)
      benchmark::RegisterBenchmark(("Bias/" + c.name + "/" + form).c_str(), function, c)
          ->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
}  // namespace flanks
