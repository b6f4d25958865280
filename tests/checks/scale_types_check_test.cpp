// Every scale type against the slow judge, where each structure follows one Flank: measures,
// thresholds and discriminations within 0.001 logit, statistics within 0.002.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/judged_run.h"

namespace flanks {
namespace {

constexpr double kMeasureTolerance = .001;
constexpr double kStatisticTolerance = .002;

using judge::Kind;
using judge::StructurePlan;

StructurePlan Rating(std::vector<judge::CategoryAnchor> anchors = {}) {
  StructurePlan plan;
  plan.anchors = std::move(anchors);
  return plan;
}

StructurePlan Kept() {
  StructurePlan plan;
  plan.keep = true;
  return plan;
}

StructurePlan Counts(Kind kind, int trials) {
  StructurePlan plan;
  plan.kind = kind;
  plan.trials = trials;
  return plan;
}

StructurePlan AnchoredCounts(Kind kind, int trials, double discrimination) {
  StructurePlan plan = Counts(kind, trials);
  plan.discriminationAnchored = true;
  plan.discrimination = discrimination;
  return plan;
}

// Observations of a structure are drawn from these categories, at most `top`, with the logits of
// the kind and thresholds .9 apart.
struct Draw {
  int top = 3;
  double discrimination = 1.0;
  std::vector<int> unused;  // not drawn
};

struct ScalePlan {
  const char* name;
  std::vector<int> sizes;
  std::vector<StructurePlan> structures;  // of items in turn: runs of equal length
  std::vector<Draw> draws;                // by structure; the last one for all that follow
  std::string models;                     // with the definitions
  double spread = .8;                     // S.D. of the measures of the first Flank, logits
  double level = 0.0;                     // added to every measure sum, logits
  unsigned seed = 1;
};

int DrawCategory(const StructurePlan& plan, const Draw& draw, double B, std::mt19937& random) {
  std::vector<double> weights;
  double logit = 0.0;
  const int cells = plan.kind == Kind::poisson ? 4 * draw.top : draw.top;
  for (int k = 0; k <= cells; ++k) {
    if (k > 0) logit += B;
    if (k > 0 && plan.kind == Kind::rating) logit -= (k - (cells + 1) / 2.0) * .9;
    if (k > 0 && plan.kind == Kind::poisson) logit -= draw.discrimination * std::log(k);
    if (k > 0 && plan.kind == Kind::binomial)
      logit -= draw.discrimination * std::log(static_cast<double>(k) / (cells - k + 1));
    const bool unused = std::find(draw.unused.begin(), draw.unused.end(), k) != draw.unused.end();
    weights.push_back(unused ? 0.0 : std::exp(logit));
  }
  return std::discrete_distribution<int>(weights.begin(), weights.end())(random);
}

// Every element of the first Flank meets every item (the second Flank), about one in four of the
// further Flanks' elements.
judge::Design Simulate(const ScalePlan& plan) {
  std::mt19937 random(plan.seed);
  std::normal_distribution<double> normal;
  judge::Design design;
  design.elementCounts = plan.sizes;
  design.signs.assign(plan.sizes.size(), -1);
  design.signs.front() = 1;
  design.structures = plan.structures;
  std::vector<std::vector<double>> measures;
  for (std::size_t f = 0; f < plan.sizes.size(); ++f) {
    measures.emplace_back();
    for (int n = 0; n < plan.sizes[f]; ++n)
      measures.back().push_back(normal(random) * (f == 0 ? plan.spread : .4));
  }
  const int structures = static_cast<int>(plan.structures.size());
  std::vector<int> elements(plan.sizes.size(), 0);
  for (;;) {
    double B = plan.level;
    for (std::size_t f = 0; f < elements.size(); ++f)
      B += design.signs[f] * measures[f][static_cast<std::size_t>(elements[f])];
    judge::Observation o;
    o.elements = elements;
    o.structure = elements[1] * structures / plan.sizes[1];
    const std::size_t s = static_cast<std::size_t>(o.structure);
    o.category =
        DrawCategory(plan.structures[s], plan.draws[std::min(s, plan.draws.size() - 1)], B, random);
    if (elements.size() < 3 || random() % 4 != 0) design.observations.push_back(o);
    std::size_t f = elements.size();
    while (f > 0 && ++elements[f - 1] == plan.sizes[f - 1]) elements[--f] = 0;
    if (f == 0) return design;
  }
}

class ScaleTypes : public ::testing::TestWithParam<ScalePlan> {};

TEST_P(ScaleTypes, AgreeWithTheSlowJudge) {
  const ScalePlan& plan = GetParam();
  JudgedRun both;
  both.design = Simulate(plan);
  both.Estimate("Flanks=" + std::to_string(plan.sizes.size()) +
                "\nPositive=1\nNoncenter=1\nConvergence=.001,.00001\nUnexpected=0\n"
                "T4MAX=1000000\n" +
                plan.models + LabelLines(both.design) + "Data=data.txt\n");
  if (HasFatalFailure()) return;
  EXPECT_LT(both.verdict.restriction, 1E-6) << "the constraints choose an origin and no more";
  both.ExpectMeasures(kMeasureTolerance);
  both.ExpectScales(kMeasureTolerance);
  both.ExpectStatistics(kStatisticTolerance);
  both.ExpectScores();
  EXPECT_EQ(both.run.analysis.unexpected.rows.size(), both.design.observations.size());
  both.ExpectResiduals(kStatisticTolerance);
}

const std::vector<Draw> kThree = {{}};

INSTANTIATE_TEST_SUITE_P(
    Checks, ScaleTypes,
    ::testing::Values(
        ScalePlan{"PartialCredit",
                  {40, 5, 3},
                  std::vector<StructurePlan>(5),
                  kThree,
                  "Models=?,#,?,R3\n"},
        ScalePlan{"PartialCreditWithOtherCategories",
                  {50, 4},
                  std::vector<StructurePlan>(4),
                  {{4, 1.0, {0, 2}}, {1, 1.0, {}}, {3, 1.0, {}}, {5, 1.0, {3}}},
                  "Models=?,#,R5\n"},
        ScalePlan{"SpecificScale",
                  {40, 6, 2},
                  std::vector<StructurePlan>(2),
                  kThree,
                  "Models=\n?,1-3,?,S\n?,4-6,?,S\n*\nRating scale=S,R3,Specific\n*\n"},
        ScalePlan{"GeneralScaleOfTwoStatements",
                  {40, 6, 2},
                  std::vector<StructurePlan>(1),
                  kThree,
                  "Models=\n?,1-3,?,G\n?,4-6,?,G\n*\nRating scale=G,R3,General\n*\n"},
        ScalePlan{
            "KeptCategories", {50, 6}, {Kept()}, {{6, 1.0, {0, 2, 3, 5}}}, "Models=?,?,R6K\n"},
        ScalePlan{"KeptPartialCredit",
                  {60, 3},
                  {Kept(), Kept(), Kept()},
                  {{4, 1.0, {2}}, {4, 1.0, {1, 2}}, {4, 1.0, {}}},
                  "Models=?,#,K\nRating scale=K,R4,General,Keep\n*\n"},
        ScalePlan{"KeptCategoriesWithExtremes",
                  {60, 4},
                  {Kept()},
                  {{4, 1.0, {1}}},
                  "Models=?,?,R4K\n",
                  3.0},
        ScalePlan{"OneAnchoredThreshold",
                  {40, 6},
                  {Rating({{1, -1.5}})},
                  kThree,
                  "Models=?,?,A\nRating scale=A,R3\n1=low,-1.5,A\n*\n"},
        ScalePlan{"AllThresholdsAnchored",
                  {40, 6},
                  {Rating({{1, -1.5}, {2, 0.25}, {3, 1.75}})},
                  kThree,
                  "Uscale=2\nModels=?,?,A\nRating scale=A,R3\n0=none,0,A\n1=low,-3,A\n2=mid,.5,A\n"
                  "3=high,3.5,A\n*\n"},
        ScalePlan{"AnchoredWithACategoryThatNobodyUses",
                  {40, 6},
                  {Rating({{1, -1.5}, {2, 0.25}, {3, 1.75}})},
                  {{3, 1.0, {2}}},
                  "Models=?,?,A\nRating scale=A,R3\n1=low,-1.5,A\n2=mid,.25,A\n3=high,1.75,A\n*\n"},
        ScalePlan{
            "AnchoredThresholdOfEachSpecificScale",
            {40, 6, 2},
            {Rating({{1, -1.5}}), Rating({{1, -1.5}})},
            kThree,
            "Models=\n?,1-3,?,S\n?,4-6,?,S\n*\nRating scale=S,R3,Specific\n1=low,-1.5,A\n*\n"},
        ScalePlan{"StartingThresholds",
                  {40, 6},
                  std::vector<StructurePlan>(1),
                  kThree,
                  "Models=?,?,A\nRating scale=A,R3\n1=low,-3\n2=mid,1\n*\n"},
        ScalePlan{"BinomialTrials",
                  {40, 6, 2},
                  {Counts(Kind::binomial, 5)},
                  {{5, .7, {}}},
                  "Models=?,?,?,B5\n"},
        ScalePlan{"BinomialTrialsWithExtremes",
                  {60, 4},
                  {Counts(Kind::binomial, 4)},
                  {{4, 1.0, {}}},
                  "Models=?,?,B4\n",
                  2.5},
        ScalePlan{"BinomialAnchoredAtOne",
                  {40, 6},
                  {AnchoredCounts(Kind::binomial, 6, 1.0)},
                  {{6, 1.0, {}}},
                  "Models=?,?,T\nRating scale=T,B6\n0=,1,A\n*\n"},
        ScalePlan{"BinomialAnchoredElsewhere",
                  {40, 6},
                  {AnchoredCounts(Kind::binomial, 6, .6)},
                  {{6, 1.0, {}}},
                  "Uscale=10\nModels=?,?,T\nRating scale=T,B6\n0=,.6,A\n*\n"},
        ScalePlan{"TrialsOfEachItem",
                  {50, 3},
                  {Counts(Kind::binomial, 5), Counts(Kind::binomial, 5), Counts(Kind::binomial, 5)},
                  {{5, .8, {}}},
                  "Models=?,#,B5\n"},
        ScalePlan{"PoissonCounts",
                  {40, 6},
                  {Counts(Kind::poisson, 0)},
                  {{8, 1.2, {}}},
                  "Models=?,?,P\n",
                  .4,
                  1.2},
        ScalePlan{"PoissonAnchoredAtOne",
                  {40, 6},
                  {AnchoredCounts(Kind::poisson, 0, 1.0)},
                  {{8, 1.0, {}}},
                  "Models=?,?,C\nRating scale=C,P\n0=,1,A\n*\n",
                  .4,
                  .8},
        ScalePlan{"PoissonAnchoredElsewhere",
                  {40, 6},
                  {AnchoredCounts(Kind::poisson, 0, .7)},
                  {{8, 1.0, {}}},
                  "Models=?,?,C\nRating scale=C,P\n0=,.7,A\n*\n",
                  .4,
                  .8},
        ScalePlan{"SmallPoissonCounts",
                  {60, 8},
                  {Counts(Kind::poisson, 0)},
                  {{2, 1.6, {}}},
                  "Models=?,?,P\n",
                  .3,
                  -.4,
                  3},
        ScalePlan{"FourKindsTogether",
                  {50, 8},
                  {Rating(), Counts(Kind::binomial, 1), Counts(Kind::binomial, 4), Kept()},
                  {{3, 1.0, {}}, {1, 1.0, {}}, {4, .8, {}}, {5, 1.0, {2}}},
                  "Models=\n?,1-2,R3\n?,3-4,D\n?,5-6,B4\n?,7-8,R5K\n*\n"}),
    [](const auto& plan) { return std::string(plan.param.name); });

}  // namespace
}  // namespace flanks
