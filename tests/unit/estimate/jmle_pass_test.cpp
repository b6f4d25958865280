#include "estimate/jmle_pass.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <stdexcept>

#include "support/pass_design.h"
#include "support/plain_pass.h"
#include "support/scratch_folder.h"

// Of the address sanitizer's run-time library, under which these tests are built.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void*,
                                                                           std::size_t),
                                                         void (*freed)(const volatile void*));

namespace flanks {
namespace {

class JmlePassTest : public ::testing::Test {
 protected:
  void Clear() {
    ClearPassSums(d.estimates);
    ClearScaleSums(Recount::notNeeded, d.scales);
  }
  PassResult Run(float newtonStep = 0.0f) {
    ObservationReader reader(d.parts());
    JmlePass pass(d.parts());
    Clear();
    return pass.Run(reader, newtonStep);
  }

  ScratchFolder folder;
  PassDesign d;
};

TEST_F(JmlePassTest, SumsADichotomyByHand) {
  d.Flank(1, kPositiveOrientation).Flank(2, kNegativeOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f}));
  d.Build();
  d.SetMeasures({1.0f, 0.0f, 2.0f});
  d.estimates.iteration.SecantDelta = .5f;
  d.Observe({1, 2}, 0, 1);
  d.Observe({1, 3}, 0, 0, 3.0f);
  EXPECT_TRUE(Run().dataSeen);
  const auto P = [](double B) { return 1.0 / (1.0 + std::exp(-B)); };
  EXPECT_NEAR(d.element(1).ExpectedSum, P(1) + 3 * P(-1), 1E-6);
  EXPECT_NEAR(d.element(1).ShiftedExpected, P(.5) + 3 * P(-1.5), 1E-6);
  EXPECT_NEAR(d.element(1).Information, 4 * P(1) * P(-1), 1E-6);
  EXPECT_NEAR(d.element(2).ExpectedSum, P(1), 1E-6);
  EXPECT_NEAR(d.element(3).Information, 3 * P(1) * P(-1), 1E-6);
  EXPECT_EQ(d.estimates.iteration.smallestMeasureSum, -1.0);
  EXPECT_EQ(d.estimates.iteration.largestMeasureSum, 1.0);
}

TEST_F(JmlePassTest, ExpectedCountsOfARatingScaleSumToTheWeights) {
  d.Flank(2, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({-1.0f, 0.0f, 1.0f}));
  d.Build();
  d.SetMeasures({.5f, -.5f});
  for (int r = 0; r < 100; ++r) d.Observe({1 + r % 2}, 0, r % 4, r % 5 == 0 ? 2.0f : 1.0f);
  Run();
  double sum = 0.0;
  for (int k = 0; k <= 3; ++k) sum += d.scales.ExpectedCount.at(ScaleRow(0), k);
  EXPECT_NEAR(sum, 120.0, 1E-4);
  // p at .5 is .057629 .258274 .425822 .258274, and the other way about at -.5; 60 and 60 of each.
  EXPECT_NEAR(d.scales.ExpectedCount.at(ScaleRow(0), 0), 60 * (.057629 + .258274), 1E-3);
  EXPECT_NEAR(d.scales.ExpectedCount.at(ScaleRow(0), 1), 60 * (.258274 + .425822), 1E-3);
}

TEST_F(JmlePassTest, NewtonRaphsonLeavesTheShiftedScoreOut) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f}));
  d.Build();
  d.Observe({1}, 0, 1);
  Run(.5f);
  EXPECT_EQ(d.element(1).ExpectedSum, .5);
  EXPECT_EQ(d.element(1).ShiftedExpected, 0.0);
}

TEST_F(JmlePassTest, CutsInformationWhenThePassEnds) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f}));
  d.Build();
  // .25 a million times and a bit: 32-bit addition would lose the bit, the cut of the sum keeps it.
  d.Observe({1}, 0, 1, 16777216.0f);
  for (int r = 0; r < 8; ++r) d.Observe({1}, 0, 1);
  Run();
  EXPECT_EQ(d.element(1).Information, 4194306.0);
  const double information = d.element(1).Information;
  EXPECT_EQ(information, static_cast<double>(static_cast<float>(information)));
}

TEST_F(JmlePassTest, ClearsWhatIsInUse) {
  d.Flank(4, kPositiveOrientation);
  d.Structure(d.Statement({}), d.CountScale(ScaleType::binomial, 3, 1.0f));
  d.Build();
  for (int slot = 1; slot <= 4; ++slot)
    d.element(slot).ExpectedSum = d.element(slot).ShiftedExpected = d.element(slot).Information = 7;
  d.element(2).ElementStatus = kStatusMinimum;
  d.element(3).ElementStatus = kStatusDropped;
  d.element(4).ElementStatus = kStatusUnused;
  ClearPassSums(d.estimates);
  EXPECT_EQ(d.element(1).Information, 0.0);
  EXPECT_EQ(d.element(2).ShiftedExpected, 0.0);
  EXPECT_EQ(d.element(3).ExpectedSum, 7.0);
  EXPECT_EQ(d.element(4).ExpectedSum, 7.0);

  d.scales.ExpectedCount.at(ScaleRow(0), 1) = 5.0;
  d.scales.ObservedCount.at(ScaleRow(0), 1) = 5.0;
  d.scales.DiscriminationSums.at(ScaleRow(0), 0) = 5.0;
  d.scales.DiscriminationSums.at(ScaleRow(0), 1) = 5.0;
  ClearScaleSums(Recount::notNeeded, d.scales);
  EXPECT_EQ(d.scales.ExpectedCount.at(ScaleRow(0), 1), 0.0);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 1), 5.0);
  EXPECT_EQ(d.scales.DiscriminationSums.at(ScaleRow(0), 0), 5.0) << "the observed sum stays";
  EXPECT_EQ(d.scales.DiscriminationSums.at(ScaleRow(0), 1), 0.0);
  ClearScaleSums(Recount::needed, d.scales);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 1), 0.0);
  EXPECT_EQ(d.scales.DiscriminationSums.at(ScaleRow(0), 0), 0.0);
}

TEST_F(JmlePassTest, TellsASumThatIsNotFinite) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f, std::numeric_limits<float>::quiet_NaN()}));
  d.Build();
  d.Observe({1}, 0, 1);
  EXPECT_THROW(Run(), std::overflow_error);
}

TEST_F(JmlePassTest, ComesThroughAnExponentLimitBeyondThirtyTwoBits) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f, 0.0f}));
  d.Build();
  d.estimates.ExponentLimit = 200.0f;
  d.Observe({1}, 0, 1);
  EXPECT_NO_THROW(Run());
}

int allocations = 0;
void CountAllocation(const volatile void*, std::size_t) {
  ++allocations;
}
void IgnoreFree(const volatile void*) {}

TEST_F(JmlePassTest, AllocatesNothing) {
  d.Flank(40, kPositiveOrientation).Flank(5, kNegativeOrientation);
  const int statement = d.Statement({});
  d.Structure(statement, d.Rating({-1.0f, 0.0f, 1.0f}));
  d.Structure(statement, d.Rating({-1.0f, 1.0f}));
  d.Structure(statement, d.CountScale(ScaleType::binomial, 4, .9f));
  d.Build();
  for (int r = 0; r < 30000; ++r)
    d.Observe({1 + r % 40, 41 + r % 5}, r % 7 == 0 ? r % 3 : 0, r % 3, r > 20000 ? 2.0f : 1.0f);
  ObservationReader reader(d.parts());
  JmlePass pass(d.parts());
  Clear();
  pass.Run(reader, 0.0f);  // the first sizes what depends on the scales
  Clear();
  allocations = 0;
  ASSERT_GT(__sanitizer_install_malloc_and_free_hooks(CountAllocation, IgnoreFree), 0);
  pass.Run(reader, 0.0f);
  EXPECT_EQ(allocations, 0);
  const int* const counted = new int(0);  // the count itself must work
  EXPECT_GT(allocations, 0);
  delete counted;
}

// Random designs with everything that an observation can have, against the plain pass.
class PassBits : public ::testing::TestWithParam<std::uint32_t> {
 protected:
  PassBits() : random_(GetParam()) {}
  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  float Normal() { return std::normal_distribution<float>(0.0f, 1.5f)(random_); }
  bool Once(int in) { return Whole(1, in) == 1; }

  enum class Poisson { none, some };
  void MakeDesign(PassDesign& d, Poisson poisson);
  int MakeScale(PassDesign& d, Poisson poisson);
  void MakeObservations(PassDesign& d);

  std::mt19937 random_;
  std::vector<int> tops_;  // by structure
  bool usual_ = Once(3);   // nothing out of the usual: blocks are not taken record by record
  ScratchFolder folder_;
};

int PassBits::MakeScale(PassDesign& d, Poisson poisson) {
  if (poisson == Poisson::some && Once(3)) {
    tops_.push_back(Whole(1, 9));
    return d.CountScale(ScaleType::poisson, tops_.back(), Once(2) ? 1.0f : .8f);
  }
  if (Once(4)) {
    tops_.push_back(Whole(1, 7));
    return d.CountScale(ScaleType::binomial, tops_.back(), Once(2) ? 1.0f : 1.2f);
  }
  std::vector<float> thresholds(static_cast<std::size_t>(Once(6) ? Whole(13, 24) : Whole(1, 6)));
  for (float& threshold : thresholds) threshold = Normal();
  tops_.push_back(static_cast<int>(thresholds.size()));
  return d.Rating(thresholds);
}

void PassBits::MakeDesign(PassDesign& d, Poisson poisson) {
  const int flanks = Whole(1, 3);
  for (int f = 0; f < flanks; ++f)
    d.Flank(Whole(2, 300), Once(2) ? kPositiveOrientation : kNegativeOrientation);
  if (Once(3)) d.Repeat(1);
  const int structures = Once(3) ? 70 : Whole(1, 4);  // 70: few observations of a block to each
  for (int s = 0; s < structures; ++s) {
    std::vector<std::string> marks;
    for (int p = 0; p <= flanks; ++p)
      marks.push_back(usual_ ? "" : Once(6) ? "-" : Once(9) ? "X" : Once(9) ? "@" : "");
    const int scale = s > 0 && Once(3) ? 0 : MakeScale(d, poisson);
    if (scale == 0 && s > 0) tops_.push_back(tops_[0]);
    d.Structure(d.Statement(marks, !usual_ && Once(5) ? .5f : 1.0f), scale);
  }
  d.Build();
  for (ElementState& element : d.estimates.elements) {
    element.ElementMeasure = Normal();
    if (usual_) continue;
    element.ElementStatus = Once(25)   ? kStatusMinimum
                            : Once(60) ? kStatusDropped
                            : Once(9)  ? kStatusAnchored
                                       : kStatusFree;
  }
  for (float& weight : d.design.elements.ElementWeight)
    if (!usual_ && Once(30)) weight = 1.5f;
  for (const ScaleRow s : Upward(d.scales.scaleType)) {
    if (d.scales.scaleType[s] == ScaleType::rating && d.scales.ScaleTopCategory[s] > 2 && Once(2))
      d.scales.CategoryFlag.at(s, 2) = kCategorySkipped;
    if (d.scales.scaleType[s] != ScaleType::rating && Once(4))
      d.scales.CategoryFlag.at(s, 0) = kCategoryAnchored;
  }
  d.estimates.iteration.SecantDelta = .1f + std::abs(Normal());
}

void PassBits::MakeObservations(PassDesign& d) {
  const int records = Whole(1, 6000);
  const bool weights = !usual_ && Once(2);
  for (int r = 0; r < records; ++r) {
    std::vector<std::int32_t> slots;
    for (const Position p : Upward(d.design.maps.ModelFlank)) {
      const FlankNo flank = d.design.maps.ModelFlank[p];
      const int count = d.design.flanks.FlankElementCount[flank];
      slots.push_back(!usual_ && Once(80)
                          ? 0
                          : d.design.flanks.FlankFirstSlot[flank].number() + Whole(0, count - 1));
    }
    const int structure = Whole(0, static_cast<int>(tops_.size()) - 1);
    d.Observe(slots, structure, Whole(0, tops_[static_cast<std::size_t>(structure)]),
              weights && Once(50) ? 2.5f : 1.0f);
  }
}

struct SumsOfPass {
  std::vector<std::uint64_t> elements, scales;
  bool operator==(const SumsOfPass&) const = default;
};

SumsOfPass SumsOf(const PassDesign& d) {
  SumsOfPass sums;
  for (const ElementState& element : d.estimates.elements)
    for (const double sum : {element.ExpectedSum, element.ShiftedExpected, element.Information})
      sums.elements.push_back(std::bit_cast<std::uint64_t>(sum));
  for (const ScaleRow s : Upward(d.scales.scaleType)) {
    for (int k = 0; k < d.scales.width; ++k) {
      sums.scales.push_back(std::bit_cast<std::uint64_t>(d.scales.ExpectedCount.at(s, k)));
      sums.scales.push_back(std::bit_cast<std::uint64_t>(d.scales.DiscriminationSums.at(s, k)));
    }
  }
  return sums;
}

void ClearAll(PassDesign& d) {
  ClearPassSums(d.estimates);
  ClearScaleSums(Recount::needed, d.scales);
  d.estimates.work = {};
}

TEST_P(PassBits, AreThoseOfThePlainPass) {
  PassDesign d;
  MakeDesign(d, GetParam() % 3 == 0 ? Poisson::some : Poisson::none);
  MakeObservations(d);
  const float newtonStep = Once(4) ? .5f : 0.0f;
  ClearAll(d);
  PlainJmlePass(d, newtonStep);
  const SumsOfPass plain = SumsOf(d);
  ObservationReader reader(d.parts());
  JmlePass pass(d.parts());
  for (int round = 1; round <= 2; ++round) {
    ClearAll(d);
    pass.Run(reader, newtonStep);
    const SumsOfPass batch = SumsOf(d);
    EXPECT_EQ(batch.elements, plain.elements) << "seed " << GetParam() << " round " << round;
    EXPECT_EQ(batch.scales, plain.scales) << "seed " << GetParam() << " round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PassBits, ::testing::Range(1U, 61U));

}  // namespace
}  // namespace flanks
