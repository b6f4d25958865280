#include "stats/agreement.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "base/single.h"
#include "estimate/scale_build.h"
#include "run/console.h"
#include "support/data_design.h"
#include "support/pass_design.h"
#include "support/recording_shell.h"

namespace flanks {
namespace {

// One rating as the test wrote it.
struct Rated {
  std::vector<std::int32_t> slots;  // by position
  int structure = 0;
  int response = 0;
  float weight = 1.0f;
};

struct Sums {
  double opportunities = 0.0, exact = 0.0, expected = 0.0;
};

// A design whose measures are set by hand, with the answer of the program and of a direct count
// over all pairs of ratings, in 64 bits and in the order of the data.
class AgreementCase {
 public:
  PassDesign d;
  std::vector<Rated> data;
  std::vector<int> setting{2};
  std::vector<int> lowest;  // by scale; empty: all 0

  void Rate(const Rated& rating) {
    data.push_back(rating);
    d.Observe(rating.slots, rating.structure, rating.response, rating.weight);
  }
  PassParts Parts() {
    d.scales.lowestCategory.assign(d.scales.scales(), 0);
    for (std::size_t s = 0; s < lowest.size(); ++s)
      d.scales.lowestCategory[ScaleRow(static_cast<std::int32_t>(s))] =
          static_cast<std::int16_t>(lowest[s]);
    return d.parts();
  }
  RaterAgreement Compute(std::size_t kept = AgreementPass::kKeptProbabilities) {
    const PassParts parts = Parts();
    std::string message;
    const auto plan = PlanAgreement(setting, parts, message);
    EXPECT_TRUE(plan) << message;
    AgreementPass pass(parts, *plan, kept);
    EXPECT_TRUE(pass.Allocate(d.work.records));
    pass.Load();
    pass.Sort();
    RaterAgreement agreement;
    pass.Walk(agreement);
    return agreement;
  }

  // The direct count.
  Sums total;
  std::vector<Sums> raters;  // by slot

  bool Matches(std::size_t position) const {
    const std::int32_t flank = FlankOf(position);
    if (setting.size() == 1) return position != RaterPosition();
    return flank != setting[0] &&
           std::find(setting.begin() + 1, setting.end(), flank) != setting.end();
  }
  std::int32_t FlankOf(std::size_t position) const {
    return d.design.maps.ModelFlank[Position(static_cast<std::int32_t>(position) + 1)].number();
  }
  std::size_t RaterPosition() const {
    std::size_t position = 0;
    while (FlankOf(position) != setting[0]) ++position;
    return position;
  }
  const PositionReference& Reference(const Rated& r, std::size_t position) const {
    return d.design.models.reference(d.structures.structureModel[StructureRow(r.structure)],
                                     Position(static_cast<std::int32_t>(position) + 1));
  }
  std::int32_t SlotOf(const Rated& r, std::size_t position) const {
    return Reference(r, position).measures() ? r.slots[position] : 0;
  }
  ScaleRow ScaleOf(const Rated& r) const {
    return d.structures.structureScale[StructureRow(r.structure)];
  }

  // Not when two elements or more are extreme and none is left in play.
  bool IsKept(const Rated& r) const {
    int extreme = 0, inPlay = 0;
    for (std::size_t p = 0; p < r.slots.size(); ++p) {
      if (SlotOf(r, p) == 0) continue;
      const ElementState& element = d.estimates.elements[ElementSlot(SlotOf(r, p))];
      ++(IsInPlay(element.ElementStatus) ? inPlay : extreme);
    }
    return extreme < 2 || inPlay > 0;
  }

  // By category as scored, from 0 on; empty for a rating with an extreme element.
  std::vector<double> ChancesOf(const Rated& r) const {
    double B = 0.0;
    for (std::size_t p = 0; p < r.slots.size(); ++p) {
      if (SlotOf(r, p) == 0) continue;
      const ElementState& element = d.estimates.elements[ElementSlot(SlotOf(r, p))];
      if (!IsInPlay(element.ElementStatus)) return {};
      const bool adds =
          IsPositive(d.design.flanks, FlankNo(FlankOf(p))) != Reference(r, p).reversed;
      B += (adds ? 1.0 : -1.0) * static_cast<double>(element.ElementMeasure);
    }
    const ScaleRow scale = ScaleOf(r);
    const int low = d.scales.lowestCategory[scale];
    std::vector<double> chances(static_cast<std::size_t>(low), 0.0);
    double logit = 0.0, sum = 0.0;
    for (int k = 0; k <= d.scales.ScaleTopCategory[scale]; ++k) {
      if (k > 0) logit += B - static_cast<double>(d.scales.ThresholdTable.at(scale, k));
      chances.push_back(std::exp(logit));
      sum += chances.back();
    }
    for (double& chance : chances) chance /= sum;
    return chances;
  }
  int Scored(const Rated& r) const { return r.response + d.scales.lowestCategory[ScaleOf(r)]; }

  void CountDirectly() {
    total = {};
    raters.assign(static_cast<std::size_t>(d.design.ElementTotal) + 1, {});
    const std::size_t position = RaterPosition();
    for (std::size_t i = 0; i < data.size(); ++i) {
      for (std::size_t j = i + 1; j < data.size(); ++j) {
        const Rated &a = data[i], &b = data[j];
        bool same = IsKept(a) && IsKept(b) && SlotOf(a, position) != 0 &&
                    SlotOf(b, position) != 0 && SlotOf(a, position) != SlotOf(b, position);
        for (std::size_t p = 0; p < a.slots.size(); ++p)
          same = same && (!Matches(p) || SlotOf(a, p) == SlotOf(b, p));
        if (same) CountPair(a, b, SlotOf(a, position), SlotOf(b, position));
      }
    }
  }

  void CountPair(const Rated& a, const Rated& b, std::int32_t raterA, std::int32_t raterB) {
    std::vector<double> p = ChancesOf(a), q = ChancesOf(b);
    const auto certain = [](int category) {
      std::vector<double> chances(static_cast<std::size_t>(category), 0.0);
      chances.push_back(1.0);
      return chances;
    };
    if (p.empty()) p = certain(Scored(a));
    if (q.empty()) q = certain(Scored(b));
    double chance = 0.0;
    for (std::size_t k = 0; k < std::min(p.size(), q.size()); ++k) chance += p[k] * q[k];
    const double w = (static_cast<double>(a.weight) + static_cast<double>(b.weight)) / 2.0;
    const double exact = Scored(a) == Scored(b) ? w : 0.0;
    for (Sums* sums : {&total, &raters[static_cast<std::size_t>(raterA)],
                       &raters[static_cast<std::size_t>(raterB)]}) {
      sums->opportunities += w;
      sums->exact += exact;
      sums->expected += chance * w;
    }
  }

  void Compare(const RaterAgreement& found) {
    CountDirectly();
    EXPECT_NEAR(found.AgreementOpportunities, total.opportunities, 1E-9);
    EXPECT_NEAR(found.AgreementExact, total.exact, 1E-9);
    EXPECT_NEAR(found.AgreementExpected, total.expected, 1E-6 * (1.0 + total.opportunities));
    for (ElementSlot e = found.RaterLow; e <= found.RaterHigh; ++e) {
      const Sums& sums = raters[static_cast<std::size_t>(e.number())];
      const ElementSlot row = found.RowOf(e);
      EXPECT_NEAR(found.RaterOpportunities[row], sums.opportunities, 1E-4) << e.number();
      if (sums.opportunities == 0.0) {
        EXPECT_EQ(found.RaterExact[row], 0.0f);
        EXPECT_EQ(found.RaterExpected[row], 0.0f);
        continue;
      }
      EXPECT_NEAR(found.RaterExact[row], 100.0 * sums.exact / sums.opportunities, 1E-4);
      EXPECT_NEAR(found.RaterExpected[row], 100.0 * sums.expected / sums.opportunities, 1E-4);
    }
  }
};

// Two persons (slots 1, 2) and four raters (slots 3 to 6) on a scale 0 to 3 with thresholds -1, 0
// and 1.
class FourRaters : public ::testing::Test {
 protected:
  AgreementCase c;
  int structure = 0;

  void SetUp() override {
    c.d.Flank(2, kPositiveOrientation).Flank(4, kNegativeOrientation);
    const int statement = c.d.Statement({"", ""});
    structure = c.d.Structure(statement, c.d.Rating({-1.0f, 0.0f, 1.0f}));
    c.d.Build();
    // Person 1 stands at B = .5 before rater 3 and at -.2 before rater 4.
    c.d.SetMeasures({0.0f, 0.0f, -0.5f, 0.2f, 0.0f, 0.0f});
  }
};

// exp(0, 1.5, 2, 1.5) = 1, 4.481689, 7.389056, 4.481689, sum 17.352434: p = .057629, .258274,
// .425822, .258274.  exp(0, .8, .6, -.6) = 1, 2.225541, 1.822119, .548812, sum 5.596472: q =
// .178684, .397668, .325583, .098064.  The sum of the products is .276973.
TEST_F(FourRaters, APairIsExpectedToAgreeByTheSumOfTheProducts) {
  c.Rate({{1, 3}, structure, 2});
  c.Rate({{1, 4}, structure, 2});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.raterFlank, FlankNo(2));
  EXPECT_EQ(found.AgreementOpportunities, 1.0);
  EXPECT_EQ(found.AgreementExact, 1.0);
  EXPECT_NEAR(found.AgreementExpected, .276973, 1E-6);
  for (const std::int32_t rater : {3, 4}) {
    const ElementSlot row = found.RowOf(ElementSlot(rater));
    EXPECT_EQ(found.RaterOpportunities[row], 1.0f);
    EXPECT_EQ(found.RaterExact[row], 100.0f);
    EXPECT_NEAR(found.RaterExpected[row], 27.6973, 1E-4);
  }
  EXPECT_EQ(found.RaterOpportunities[found.RowOf(ElementSlot(5))], 0.0f);
}

TEST_F(FourRaters, MakeSixPairsOfATargetAndNoneAcrossTargets) {
  for (const std::int32_t rater : {3, 4, 5, 6}) c.Rate({{1, rater}, structure, 1});
  c.Rate({{2, 3}, structure, 1});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 6.0);
  EXPECT_EQ(found.AgreementExact, 6.0);
  c.Compare(found);
}

TEST_F(FourRaters, APairHasTheMeanOfItsWeights) {
  c.Rate({{1, 3}, structure, 1, 1.0f});
  c.Rate({{1, 4}, structure, 1, 2.0f});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 1.5);
  EXPECT_EQ(found.AgreementExact, 1.5);
  EXPECT_NEAR(found.AgreementExpected, 1.5 * .276973, 1E-6);
}

TEST_F(FourRaters, ARaterIsNoPairWithItself) {
  c.Rate({{1, 3}, structure, 1});
  c.Rate({{1, 3}, structure, 1});
  c.Rate({{1, 4}, structure, 0});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 2.0);
  EXPECT_EQ(found.AgreementExact, 0.0);
  EXPECT_EQ(found.RaterOpportunities[found.RowOf(ElementSlot(3))], 2.0f);
  c.Compare(found);
}

// Rater 4 always gives 0: a rating without probabilities.
TEST_F(FourRaters, TheRatingOfAnExtremeRaterIsCertain) {
  c.d.element(4).ElementStatus = kStatusMinimum;
  c.Rate({{1, 3}, structure, 2});
  c.Rate({{1, 4}, structure, 0});
  const RaterAgreement found = c.Compute();
  EXPECT_NEAR(found.AgreementExpected, .057629, 1E-6) << "the chance of category 0";
  EXPECT_EQ(found.AgreementExact, 0.0);
}

TEST_F(FourRaters, TwoCertainRatingsAgreeOrDoNot) {
  for (const std::int32_t rater : {3, 4, 5}) c.d.element(rater).ElementStatus = kStatusMaximum;
  c.Rate({{1, 3}, structure, 3});
  c.Rate({{1, 4}, structure, 3});
  c.Rate({{1, 5}, structure, 2});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 3.0);
  EXPECT_EQ(found.AgreementExact, 1.0);
  EXPECT_EQ(found.AgreementExpected, 1.0);
  c.Compare(found);
}

// A rating of an extreme person by an extreme rater leaves no element in play, and one by a dropped
// rater is of no use either.
TEST_F(FourRaters, RatingsWithoutAnElementInPlayDoNotCount) {
  c.d.element(1).ElementStatus = kStatusMaximum;
  c.d.element(3).ElementStatus = kStatusMaximum;
  c.d.element(5).ElementStatus = kStatusDropped;
  c.Rate({{1, 3}, structure, 3});
  c.Rate({{1, 4}, structure, 3});
  c.Rate({{1, 5}, structure, 3});
  c.Rate({{1, 6}, structure, 3});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 1.0);
  EXPECT_EQ(found.AgreementExpected, 1.0);
  EXPECT_EQ(found.RaterOpportunities[found.RowOf(ElementSlot(3))], 0.0f);
}

// Person and rater are extreme and the task is not: the rating feeds no estimate and is compared
// all the same.
TEST(Agreement, RatingsWithTwoExtremeElementsCountBesideOneInPlay) {
  AgreementCase c;
  c.d.Flank(1, kPositiveOrientation).Flank(2, kNegativeOrientation).Flank(1, kNegativeOrientation);
  const int structure = c.d.Structure(c.d.Statement({"", "", ""}), c.d.Rating({-0.5f, 0.5f}));
  c.d.Build();
  c.d.element(1).ElementStatus = kStatusMaximum;
  c.d.element(2).ElementStatus = kStatusMaximum;
  c.Rate({{1, 2, 4}, structure, 2});
  c.Rate({{1, 3, 4}, structure, 2});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 1.0);
  EXPECT_EQ(found.AgreementExpected, 1.0);
}

TEST_F(FourRaters, AnObservationWithoutARaterIsLeftOut) {
  c.Rate({{1, 0}, structure, 1});
  c.Rate({{1, 3}, structure, 1});
  c.Rate({{1, 4}, structure, 1});
  EXPECT_EQ(c.Compute().AgreementOpportunities, 1.0);
}

// Categories are compared as they are scored: 1 of a scale that begins at 1 is 0 of its ordered
// ones, and chances beyond the end of the other's scale are none.
TEST(Agreement, RatersOnDifferentScalesAreComparedAsScored) {
  AgreementCase c;
  c.d.Flank(1, kPositiveOrientation).Flank(3, kNegativeOrientation);
  const int any = c.d.Statement({"", ""});
  const int first = c.d.Structure(any, c.d.Rating({-1.0f, 0.0f, 1.0f}));  // 0 to 3
  const int second = c.d.Structure(any, c.d.Rating({0.5f}));              // 1 and 2
  c.lowest = {0, 1};
  c.d.Build();
  c.d.SetMeasures({0.5f, 0.1f, -0.3f, 0.0f});
  c.d.element(4).ElementStatus = kStatusMaximum;
  c.Rate({{1, 2}, first, 1});
  c.Rate({{1, 3}, second, 0});
  c.Rate({{1, 4}, first, 3});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementExact, 1.0);
  c.Compare(found);
}

// Persons, raters, tasks: with a match list of persons alone, ratings of other tasks are of the
// same target.
TEST(Agreement, TheMatchListSaysWhatATargetIs) {
  AgreementCase c;
  c.d.Flank(2, kPositiveOrientation).Flank(2, kNegativeOrientation).Flank(2, kNegativeOrientation);
  const int structure = c.d.Structure(c.d.Statement({"", "", ""}), c.d.Rating({-0.5f, 0.5f}));
  c.d.Build();
  c.d.SetMeasures({0.5f, -0.5f, 0.1f, -0.3f, 0.2f, -0.2f});
  for (const std::int32_t task : {5, 6})
    for (const std::int32_t rater : {3, 4}) c.Rate({{1, rater, task}, structure, task - 5});
  EXPECT_EQ(c.Compute().AgreementOpportunities, 2.0);
  c.setting = {2, 1};
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 4.0);
  EXPECT_EQ(found.AgreementExact, 2.0);
  c.Compare(found);
  c.setting = {2, 1, 2, 3};  // the raters' own Flank in the list changes nothing
  EXPECT_EQ(c.Compute().AgreementOpportunities, 2.0);
}

// The elements are those that the statement takes: the ignored position is no part of a target.
TEST(Agreement, AnIgnoredPositionIsNoPartOfATarget) {
  AgreementCase c;
  c.d.Flank(2, kPositiveOrientation).Flank(2, kNegativeOrientation).Flank(2, kNegativeOrientation);
  const int structure = c.d.Structure(c.d.Statement({"", "", "X"}), c.d.Rating({-0.5f, 0.5f}));
  c.d.Build();
  c.Rate({{1, 3, 5}, structure, 1});
  c.Rate({{1, 4, 6}, structure, 1});
  EXPECT_EQ(c.Compute().AgreementOpportunities, 1.0);
}

// A Flank in two positions: the first is the rater, the second part of the target.
TEST(Agreement, ARepeatedRaterFlankIsTheRaterInItsFirstPosition) {
  AgreementCase c;
  c.d.Flank(2, kPositiveOrientation).Flank(3, kNegativeOrientation).Repeat(2);
  const int structure = c.d.Structure(c.d.Statement({"", "", ""}), c.d.Rating({-0.5f, 0.5f}));
  c.d.Build();
  c.Rate({{1, 3, 5}, structure, 1});
  c.Rate({{1, 4, 5}, structure, 1});
  c.Rate({{1, 4, 3}, structure, 1});
  const RaterAgreement found = c.Compute();
  EXPECT_EQ(found.AgreementOpportunities, 1.0);
  c.Compare(found);
}

// Persons by raters by tasks, not all of them, some twice, with weights, extreme and anchored
// elements, a reversed position and two scales.
AgreementCase RandomCase(unsigned seed, bool weighted) {
  std::mt19937 random(seed);
  const auto draw = [&random](int count) {
    return static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
  };
  AgreementCase c;
  c.d.Flank(6, kPositiveOrientation).Flank(5, kNegativeOrientation).Flank(3, kPositiveOrientation);
  const int plain = c.d.Statement({"", "", ""});
  const int reversed = c.d.Statement({"", "", "-"}, weighted ? 0.5f : 1.0f);
  const int structures[] = {c.d.Structure(plain, c.d.Rating({-1.0f, 0.2f, 0.8f})),
                            c.d.Structure(reversed, c.d.Rating({-0.4f, 0.4f}))};
  c.d.Build();
  std::normal_distribution<double> normal(0.0, 1.0);
  for (ElementState& element : c.d.estimates.elements) {
    element.ElementMeasure = Single(normal(random));
    const std::int16_t statuses[] = {kStatusFree, kStatusFree, kStatusFree, kStatusAnchored,
                                     kStatusMinimum};
    element.ElementStatus = statuses[draw(5)];
  }
  c.lowest = {0, static_cast<int>(seed % 2)};
  for (int n = 0; n < 150; ++n) {
    const int s = draw(2);
    Rated r{{1 + draw(6), 7 + draw(5), 12 + draw(3)}, structures[s], draw(s == 0 ? 4 : 3)};
    if (weighted) r.weight = 0.5f * static_cast<float>(1 + draw(4));
    c.data.push_back(r);
    c.d.Observe(r.slots, r.structure, r.response, r.weight);
    // What the pass sees of the weight.
    if (weighted && s == 1) c.data.back().weight *= 0.5f;
  }
  if (seed % 3 == 0) c.setting = {2, 1};
  return c;
}

TEST(Agreement, IsThatOfADirectCountOverAllPairs) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    AgreementCase c = RandomCase(seed, seed % 2 == 0);
    const RaterAgreement found = c.Compute();
    EXPECT_GT(found.AgreementOpportunities, 50.0);
    c.Compare(found);
  }
}

// With room for the probabilities of a few ratings, or of none, the rest is worked out pair by
// pair.
TEST(Agreement, WhatIsKeptOfATargetDoesNotShow) {
  AgreementCase c = RandomCase(3, true);
  const RaterAgreement all = c.Compute();
  for (const std::size_t kept : {0u, 4u, 13u}) {
    const RaterAgreement found = c.Compute(kept);
    EXPECT_EQ(found.AgreementExpected, all.AgreementExpected);
    EXPECT_EQ(found.AgreementExact, all.AgreementExact);
    for (const ElementSlot row : Upward(all.RaterExpected))
      EXPECT_EQ(found.RaterExpected[row], all.RaterExpected[row]);
  }
}

// The step of the run, with its console: eight persons, three raters, each pair agrees.
class AgreementStep : public ::testing::Test {
 protected:
  DataRun data;

  void Prepare(int raters, std::vector<int> setting, const std::string& lines) {
    data.Flank({{1, ""}, {2, ""}, {3, ""}, {4, ""}, {5, ""}, {6, ""}, {7, ""}, {8, ""}});
    DataRun::Elements elements;
    for (int n = 1; n <= raters; ++n) elements.push_back({n, ""});
    data.Flank(elements);
    data.Model("?,?,R5");
    data.Read(lines);
    Estimates& e = data.analysis.estimates;
    e.elements.assign(data.design().ElementTotal, {});
    for (ElementState& element : e.elements) element.ElementStatus = kStatusFree;
    ScaleTables& s = data.analysis.scales;
    BuildScales(data.design(), data.analysis.structures, 1.0f, s);
    data.settings().InterRaterSetting = std::move(setting);
  }
  static std::string EightPersons() {
    std::string lines;
    for (int person = 1; person <= 8; ++person)
      for (int rater = 1; rater <= 3; ++rater)
        lines += std::to_string(person) + "," + std::to_string(rater) + "," +
                 std::to_string(person % 2) + "\n";
    return lines;
  }
  const RaterAgreement& Found() const { return data.analysis.estimates.agreement; }
  bool Shown(const std::string& line) const {
    return ("\n" + data.Screen()).find("\n" + line + "\n") != std::string::npos;
  }
};

TEST_F(AgreementStep, SaysWhatItDoesAndDrawsABar) {
  Prepare(3, {2}, EightPersons());
  data.shell.progress.clear();
  ComputeAgreement(data.run);
  EXPECT_TRUE(Shown("Computing inter-rater agreement for flank 2: press Ctrl+F to exit"));
  EXPECT_TRUE(Shown("Loading up to 24 observations ..."));
  EXPECT_TRUE(Shown("Sorting 24 observations ..."));
  EXPECT_TRUE(Shown("Matching ..."));
  EXPECT_EQ(data.shell.progress, ">" + std::string(50, '=') + "<");
  EXPECT_EQ(Found().AgreementOpportunities, 24.0);
  EXPECT_EQ(Found().AgreementExact, 24.0);
}

TEST_F(AgreementStep, CtrlFEndsTheWalkAndKeepsThePairsFound) {
  Prepare(3, {2}, EightPersons());
  data.shell.progress.clear();
  // One look at the keys for each line shown, one for the sort, one for each rating.
  const int before = data.shell.pumps + 5;
  data.shell.KeysAtPump(before + 4, "\x06");  // behind the fourth rating: the second person's first
  ComputeAgreement(data.run);
  EXPECT_EQ(Found().raterFlank, FlankNo(2));
  EXPECT_EQ(Found().AgreementOpportunities, 3.0 + 2.0);
  EXPECT_EQ(Found().RaterOpportunities[Found().RowOf(ElementSlot(9))], 2.0f + 2.0f);
  EXPECT_EQ(data.shell.progress.back(), '<');
  EXPECT_LT(data.shell.progress.size(), 52u);
  EXPECT_FALSE(data.console.finishRequested()) << "what follows goes on";
}

TEST_F(AgreementStep, AKeyFromBeforeDoesNotEndIt) {
  Prepare(3, {2}, EightPersons());
  data.process.control.FinishRequested = true;
  ComputeAgreement(data.run);
  EXPECT_EQ(Found().AgreementOpportunities, 24.0);
}

TEST_F(AgreementStep, WithoutASettingThereIsNothingToDo) {
  Prepare(3, {0}, EightPersons());
  ComputeAgreement(data.run);
  EXPECT_EQ(Found().raterFlank, FlankNo());
  EXPECT_FALSE(Shown("Matching ..."));
}

TEST_F(AgreementStep, AFlankThatIsNotInTheDataIsToldAndSwitchedOff) {
  Prepare(3, {7}, EightPersons());
  ComputeAgreement(data.run);
  EXPECT_TRUE(
      Shown("Inter-rater agreement flank 7 is not active in the data: interrater agreement "
            "not computed"));
  EXPECT_EQ(data.settings().InterRaterSetting, std::vector<int>{0});
  EXPECT_EQ(Found().raterFlank, FlankNo());
}

TEST_F(AgreementStep, WithNothingToMatchOnItIsSwitchedOff) {
  Prepare(3, {2, 5}, EightPersons());
  ComputeAgreement(data.run);
  EXPECT_TRUE(Shown("No active agreement flanks: interrater agreement not computed"));
  EXPECT_EQ(data.settings().InterRaterSetting, std::vector<int>{0});
}

TEST_F(AgreementStep, OneRaterHasNoAgreementAndNoMessage) {
  Prepare(3, {2}, EightPersons());
  for (const std::int32_t slot : {10, 11})
    data.analysis.estimates.elements[ElementSlot(slot)].ElementStatus = kStatusUnused;
  const std::size_t shown = data.shell.statuses.size();
  ComputeAgreement(data.run);
  EXPECT_EQ(data.shell.statuses.size(), shown);
  EXPECT_EQ(Found().raterFlank, FlankNo());
}

TEST_F(AgreementStep, WithoutAnyRatingItIsSwitchedOff) {
  Prepare(3, {2}, EightPersons());
  for (std::int32_t slot = 1; slot <= 8; ++slot)
    data.analysis.estimates.elements[ElementSlot(slot)].ElementStatus = kStatusDropped;
  ComputeAgreement(data.run);
  EXPECT_TRUE(Shown("Interrater=0 ; no relevant observations"));
  EXPECT_EQ(data.settings().InterRaterSetting, std::vector<int>{0});
  EXPECT_EQ(Found().raterFlank, FlankNo());
}

TEST_F(AgreementStep, MoreRatingsThanCanBeNumberedAreToldBeforeTheyAreRead) {
  Prepare(3, {2}, EightPersons());
  data.analysis.work.records = 2'147'483'648;
  ComputeAgreement(data.run);
  EXPECT_TRUE(Shown("Interrater=0 ; too many observations to match"));
  EXPECT_EQ(data.settings().InterRaterSetting, std::vector<int>{0});
}

TEST_F(AgreementStep, ARunThatIsBrokenOffHasNone) {
  Prepare(3, {2}, EightPersons());
  data.process.control.CancelRequested = true;
  ComputeAgreement(data.run);
  EXPECT_FALSE(Shown("Matching ..."));
}

}  // namespace
}  // namespace flanks
