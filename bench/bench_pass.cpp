// One pass of JMLE by the secant method over 10 million observations of 3 positions and 5
// categories, from work files:
//
//   Plain      one observation at a time, the library's exponential, the formulas as they stand
//   Batch      the program's pass
//   Floor      reading, decoding and adding as in the program's pass, with ten bare exponentials
//              for each observation in place of its two kernel calls
//
// and the batch pass over data that is not of the usual kind, whose blocks are taken record by
// record or have many scales.
//
// Before anything is timed the sums of Plain and Batch are compared: they must have the same bits.
#include <benchmark/benchmark.h>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/exponential.h"
#include "data/element_file.h"
#include "data/record_reader.h"
#include "data/response_file.h"
#include "estimate/jmle_pass.h"
#include "pass_cases.h"
#include "support/plain_kernel.h"
#include "support/work_file_design.h"

namespace flanks {
namespace {

constexpr std::int64_t kObservations = 10'000'000;
constexpr std::int32_t kPersons = 100'000;
constexpr std::int32_t kRaters = 50;
constexpr std::int32_t kItems = 20;

enum class Order { byPerson, random };
enum class Kind { usual, weighted, extreme, reversed, partialCredit, binomial, poisson };

struct PassCase {
  std::string name;
  Order order = Order::byPerson;
  int top = 4;
  Kind kind = Kind::usual;
};

// Everything that a pass works on.
struct Setup {
  Design design;
  StructureTable structures;
  WorkFiles work;
  ScaleTables scales;
  Estimates estimates;

  explicit Setup(const PassCase& c);
  PassParts parts() {
    return {design, structures, work, scales, estimates, design.models.anyReversed, nullptr};
  }

 private:
  void MakeDesign(Kind kind);
  void MakeScales(const PassCase& c);
  void MakeMeasures(Kind kind);
  void WriteRecords(const PassCase& c);
};

Setup::Setup(const PassCase& c) : design(WorkFileDesign({kPersons, kRaters, kItems})) {
  MakeDesign(c.kind);
  MakeScales(c);
  MakeMeasures(c.kind);
  WriteRecords(c);
}

void Setup::MakeDesign(Kind kind) {
  design.flanks.FlankOrientation.assign(3, kNegativeOrientation);
  design.flanks.FlankOrientation[FlankNo(1)] = kPositiveOrientation;
  design.elements.ElementWeight.assign(design.ElementTotal, 1.0f);
  design.models.references.assign(1, 3, {});
  design.models.ModelWeight.assign(1, kind == Kind::weighted ? 1.5f : 1.0f);
  design.models.anyReversed = kind == Kind::reversed;
  design.models.references.at(ModelRow(0), 2).reversed = kind == Kind::reversed;
}

// One scale and structure for all, or one for each item.
void Setup::MakeScales(const PassCase& c) {
  const std::int32_t count = c.kind == Kind::partialCredit ? kItems : 1;
  const ScaleType type = c.kind == Kind::binomial  ? ScaleType::binomial
                         : c.kind == Kind::poisson ? ScaleType::poisson
                                                   : ScaleType::rating;
  structures.structureModel.assign(count, ModelRow(0));
  structures.structureScale.assign(count, ScaleRow(0));
  structures.structureCount.assign(count, kCategories, 0);
  scales.width = c.top + 1;
  scales.scaleType.assign(count, type);
  scales.ScaleTopCategory.assign(count, static_cast<std::int16_t>(c.top));
  scales.orderedCategory.assign(count, scales.width, 0);
  scales.ThresholdTable.assign(count, scales.width, 0.0f);
  scales.CategoryFlag.assign(count, scales.width, kCategoryFree);
  scales.ExpectedCount.assign(count, scales.width, 0.0);
  scales.ObservedCount.assign(count, scales.width, 0.0);
  scales.DiscriminationSums.assign(count, scales.width, 0.0);
  for (const ScaleRow s : Upward(scales.scaleType)) {
    structures.structureScale[StructureRow(s.number())] = s;
    scales.ThresholdTable.at(s, 0) = 0.95f;  // the discrimination of a count scale
    for (int k = 0; k <= c.top; ++k) {
      scales.orderedCategory.at(s, k) = static_cast<std::int16_t>(k);
      structures.structureCount.at(StructureRow(s.number()), k) = 1;
      if (k > 0)
        scales.ThresholdTable.at(s, k) = Single(0.9 * k - 0.45 * static_cast<double>(c.top + 1));
    }
  }
}

// One person in twenty has an extreme score where there are extremes: in every block some.
void Setup::MakeMeasures(Kind kind) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0.0, 1.2);
  estimates.elements.assign(design.ElementTotal, {});
  for (const ElementSlot e : Upward(estimates.elements)) {
    ElementState& element = estimates.elements[e];
    element.ElementMeasure = Single(normal(random));
    const bool extreme = kind == Kind::extreme && e.number() <= kPersons && e.number() % 20 == 0;
    element.ElementStatus = extreme ? kStatusMaximum : kStatusFree;
  }
}

void Setup::WriteRecords(const PassCase& c) {
  OpenResponseFile(1, work);
  if (PrepareElementFile(design, Settings{}, 1, work) != Fault::none) std::abort();
  std::mt19937 random(11);
  Column<Position, std::int32_t> status(3, 0);
  const std::int64_t each = kObservations / kPersons;
  for (std::int64_t r = 0; r < kObservations; ++r) {
    const auto person = c.order == Order::byPerson
                            ? static_cast<std::uint32_t>(r / each)
                            : static_cast<std::uint32_t>(random()) % kPersons;
    const auto n = static_cast<std::int32_t>(r % each);
    status[Position(1)] = 1 + static_cast<std::int32_t>(person);
    status[Position(2)] = 1 + kPersons + (static_cast<std::int32_t>(person) + n / kItems) % kRaters;
    status[Position(3)] = 1 + kPersons + kRaters + n % kItems;
    WriteElementRecord(status, work);
    const StructureRow structure(c.kind == Kind::partialCredit ? n % kItems : 0);
    const auto category = random() % (static_cast<unsigned>(c.top) + 1);
    WriteResponseRecord({structure, 1.0f, static_cast<std::int16_t>(category)}, work);
  }
  FlushElementRecords(work);
  FlushResponseRecords(work);
}

void Clear(Setup& setup) {
  ClearPassSums(setup.estimates);
  ClearScaleSums(Recount::notNeeded, setup.scales);
}

// The pass as its formulas stand.
void PlainPass(Setup& setup) {
  const ScaleRow row(0);
  const PlainScale scale{ScaleType::rating, setup.scales.ScaleTopCategory[row],
                         setup.scales.ThresholdTable.row(row), setup.scales.CategoryFlag.row(row)};
  const auto top = static_cast<std::size_t>(scale.m);
  const float delta = setup.estimates.iteration.SecantDelta;
  std::vector<float> p(top + 1);
  RecordReader reader(setup.work);
  ResponseRecord record;
  for (std::int64_t r = 1; r <= reader.records(); ++r) {
    reader.ReadResponseRecord(r, record);
    reader.ReadElementRecord(r);
    float B = 0.0f;
    for (const Position position : Downward(reader.RecordElement)) {
      const float measure = setup.estimates.elements[reader.RecordElement[position]].ElementMeasure;
      B = position == Position(1) ? B + measure : B - measure;
    }
    const float shifted = PlainProbabilities(scale, B - delta, p.data());
    const float expected = PlainProbabilities(scale, B, p.data());
    const float variance = PlainVariance(scale, expected, p.data());
    if (top > 1)
      for (std::size_t k = top + 1; k-- > 0;)
        setup.scales.ExpectedCount.row(row)[k] += static_cast<double>(record.replication) * p[k];
    for (const Position position : Downward(reader.RecordElement)) {
      ElementState& element = setup.estimates.elements[reader.RecordElement[position]];
      element.Information += static_cast<double>(record.replication) * variance;
      element.ExpectedSum += static_cast<double>(record.replication) * expected;
      element.ShiftedExpected += static_cast<double>(record.replication) * shifted;
    }
  }
}

// What no pass can do without.
void FloorPass(Setup& setup, ObservationReader& reader, std::vector<float>& probability) {
  const auto categories = static_cast<std::size_t>(setup.scales.ScaleTopCategory[ScaleRow(0)]) + 1;
  double* const counts = setup.scales.ExpectedCount.row(ScaleRow(0));
  ElementState* const elements = setup.estimates.elements.data();
  const auto rowOf = [&](std::size_t k) { return probability.data() + k * kKernelStride; };
  reader.Begin(Categories::notWanted);
  while (reader.Next()) {
    const ObservationBlock& block = reader.block();
    const std::span<const float> measures(block.MeasureSum.data(), block.count);
    for (std::size_t k = 0; k < 2 * categories; ++k)
      Exponentials(measures, {rowOf(k), block.count});
    if (categories == 5) {
      double sums[5] = {counts[0], counts[1], counts[2], counts[3], counts[4]};
      for (std::size_t i = 0; i < block.count; ++i)
        for (std::size_t k = 0; k < 5; ++k) sums[k] += rowOf(k)[i];
      std::copy_n(sums, 5, counts);
    }
    const std::int32_t* const slots[3] = {block.slots[0].data(), block.slots[1].data(),
                                          block.slots[2].data()};
    for (std::size_t i = 0; i < block.count; ++i) {
      for (std::size_t f = 3; f-- > 0;) {
        ElementState& element = elements[static_cast<std::size_t>(slots[f][i]) - 1];
        element.ExpectedSum += rowOf(0)[i];
        element.ShiftedExpected += rowOf(1)[i];
        element.Information += rowOf(2)[i];
      }
    }
  }
}

struct Sums {
  std::vector<std::uint64_t> bits;
  bool operator==(const Sums&) const = default;
};

Sums SumsOf(const Setup& setup) {
  Sums sums;
  for (const ElementState& element : setup.estimates.elements) {
    sums.bits.push_back(std::bit_cast<std::uint64_t>(element.ExpectedSum));
    sums.bits.push_back(std::bit_cast<std::uint64_t>(element.ShiftedExpected));
    const double cut = Single(element.Information);  // as its field has it when the pass ends
    sums.bits.push_back(std::bit_cast<std::uint64_t>(cut));
  }
  for (int k = 0; k < setup.scales.width; ++k)
    sums.bits.push_back(
        std::bit_cast<std::uint64_t>(setup.scales.ExpectedCount.at(ScaleRow(0), k)));
  return sums;
}

Setup& SetupFor(const PassCase& c) {
  static KeptCase<Setup> kept;
  return kept.Of(c.name, [&c] { return std::make_unique<Setup>(c); });
}

void Finish(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kObservations);
}

void Compare(benchmark::State& state, const PassCase& c) {
  Setup& setup = SetupFor(c);
  Clear(setup);
  PlainPass(setup);
  const Sums plain = SumsOf(setup);
  ObservationReader reader(setup.parts());
  JmlePass pass(setup.parts());
  for (auto _ : state) {
    Clear(setup);
    pass.Run(reader, 0.0f);
    if (SumsOf(setup) == plain) continue;
    state.SkipWithError("the sums of the batch pass have other bits than those of the plain one");
    std::fputs("bench_pass: sums differ\n", stderr);
    std::exit(1);
  }
  state.SetLabel("same bits in every sum");
}

void Plain(benchmark::State& state, const PassCase& c) {
  Setup& setup = SetupFor(c);
  for (auto _ : state) {
    Clear(setup);
    PlainPass(setup);
  }
  Finish(state);
}

void Batch(benchmark::State& state, const PassCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  JmlePass pass(setup.parts());
  for (auto _ : state) {
    Clear(setup);
    pass.Run(reader, 0.0f);
  }
  Finish(state);
}

void Floor(benchmark::State& state, const PassCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  std::vector<float> probability(2 * static_cast<std::size_t>(c.top + 1) * kKernelStride);
  for (auto _ : state) {
    Clear(setup);
    FloorPass(setup, reader, probability);
  }
  Finish(state);
}

void ReadOnly(benchmark::State& state, const PassCase& c) {
  Setup& setup = SetupFor(c);
  ObservationReader reader(setup.parts());
  for (auto _ : state) {
    reader.Begin(Categories::notWanted);
    while (reader.Next()) benchmark::DoNotOptimize(reader.block().MeasureSum.data());
  }
  Finish(state);
}

using PassFunction = void (*)(benchmark::State&, const PassCase&);

benchmark::internal::Benchmark* Register(const PassCase& c, const char* form,
                                         PassFunction function) {
  const std::string name = "Pass/" + c.name + "/" + form;
  return benchmark::RegisterBenchmark(name.c_str(), function, c)->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
  const PassCase kCompared[] = {{"5 categories, by person"},
                                {"5 categories, random order", Order::random},
                                {"dichotomies, by person", Order::byPerson, 1}};
  for (const PassCase& c : kCompared) {
    Register(c, "Compare", Compare)->Iterations(1);
    Register(c, "Plain", Plain);
    Register(c, "Batch", Batch);
    Register(c, "Floor", Floor);
    Register(c, "ReadOnly", ReadOnly);
  }
  const PassCase kOthers[] = {{"weighted", Order::byPerson, 4, Kind::weighted},
                              {"one person in 20 extreme", Order::byPerson, 4, Kind::extreme},
                              {"reversed", Order::byPerson, 4, Kind::reversed},
                              {"partial credit, 20 items", Order::byPerson, 4, Kind::partialCredit},
                              {"binomial", Order::byPerson, 4, Kind::binomial},
                              {"Poisson", Order::byPerson, 4, Kind::poisson}};
  for (const PassCase& c : kOthers) Register(c, "Batch", Batch);
  return true;
}();

}  // namespace
}  // namespace flanks
