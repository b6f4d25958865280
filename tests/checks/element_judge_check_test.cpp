// What is said of single elements against the slow judge: anchors, groups, extremes, weights and
// reversed positions.  Where the program's update ends at the maximum of the likelihood, measures
// and thresholds agree within 0.001 logit and statistics within 0.002; where it is known to end
// elsewhere, the distance is held.
#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/judged_run.h"

namespace flanks {
namespace {

constexpr double kMeasureTolerance = .001;
constexpr double kStatisticTolerance = .002;

// The three Flanks' lists of elements, and the settings in front of them.
struct Text {
  std::string settings = "Models=?,?,?,R4\n";
  std::string noncenter = "1";
  std::string persons = "1,Persons\n1-40=p\n";
  std::string raters = "2,Raters\n1-6=r\n";
  std::string items = "3,Items\n1-4=i\n";
};

struct ElementPlan {
  const char* name;
  Text text = {};
  // What the judge is told; the observations are drawn before.  Weights of elements and statements
  // are multiplied into the observations' weights here.
  std::function<void(judge::Design&)> tell = [](judge::Design&) {};
  // Before the data lines are written: replications, empty positions.
  std::function<void(judge::Design&)> change = [](judge::Design&) {};
  double spread = 1.0;                   // S.D. of the persons, logits
  std::vector<int> reversedRaters = {};  // their positions add where others subtract
};

bool Holds(const std::vector<int>& numbers, int number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// Persons by raters by items, two in three of the cells, five categories.
judge::Design Simulate(const ElementPlan& plan) {
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  judge::Design design;
  design.elementCounts = {40, 6, 4};
  design.signs = {1, -1, -1};
  std::vector<std::vector<double>> measures;
  for (const int count : design.elementCounts) {
    measures.emplace_back();
    for (int n = 0; n < count; ++n)
      measures.back().push_back(normal(random) * (measures.size() == 1 ? plan.spread : .5));
  }
  for (int cell = 0; cell < 40 * 6 * 4; ++cell) {
    judge::Observation o;
    o.elements = {cell / 24, cell / 4 % 6, cell % 4};
    o.reversed = {false, Holds(plan.reversedRaters, o.elements[1] + 1), false};
    double B = 0.0;
    for (std::size_t f = 0; f < 3; ++f)
      B += design.sign(o, f) * measures[f][static_cast<std::size_t>(o.elements[f])];
    std::vector<double> weights{1.0};
    for (int k = 1; k <= 4; ++k) weights.push_back(weights.back() * std::exp(B - (k - 2.5) * .9));
    o.category = std::discrete_distribution<int>(weights.begin(), weights.end())(random);
    if (random() % 3 != 0) design.observations.push_back(o);
  }
  return design;
}

std::string SpecificationOf(const Text& text) {
  return "Flanks=3\nPositive=1\nNoncenter=" + text.noncenter + "\nConvergence=.0005,.000005\n" +
         text.settings + "Labels=\n" + text.persons + "*\n" + text.raters + "*\n" + text.items +
         "*\nData=data.txt\n";
}

// The judge on what it was told, the program on the lines.
void EstimateBoth(const ElementPlan& plan, JudgedRun& both) {
  both.design = Simulate(plan);
  plan.change(both.design);
  both.run.Write("data.txt", DataLines(both.design));
  plan.tell(both.design);
  both.verdict = judge::Judge(both.design);
  ASSERT_TRUE(both.verdict.identified);
  ASSERT_TRUE(both.verdict.converged) << both.verdict.largestResidual;
  ASSERT_EQ(both.run.Analyze(SpecificationOf(plan.text)), 0) << both.run.Screen();
  ASSERT_TRUE(both.run.analysis.estimates.iteration.converged) << both.run.Screen();
}

// Observations of element `n` (from 1) of Flank `f` (from 0) count `weight` times.
void Weigh(judge::Design& design, std::size_t f, int n, double weight) {
  for (judge::Observation& o : design.observations)
    if (o.elements[f] == n - 1) o.weight *= weight;
}

void AnchorAll(judge::Design& design, std::size_t f, const std::vector<double>& measures) {
  for (std::size_t n = 0; n < measures.size(); ++n)
    design.anchors.push_back({f, static_cast<int>(n), measures[n]});
}

class ElementJudge : public ::testing::TestWithParam<ElementPlan> {};

TEST_P(ElementJudge, Agrees) {
  JudgedRun both;
  EstimateBoth(GetParam(), both);
  if (HasFatalFailure()) return;
  both.ExpectMeasures(kMeasureTolerance);
  both.ExpectScales(kMeasureTolerance);
  both.ExpectStatistics(kStatisticTolerance);
  both.ExpectScores();
  both.ForEachElement([&](const judge::Element& expected, ElementSlot slot) {
    EXPECT_NEAR(FinishedStatistics(both.run.analysis.estimates, slot)->Displacement,
                expected.displacement, kStatisticTolerance);
  });
}

INSTANTIATE_TEST_SUITE_P(
    Checks, ElementJudge,
    ::testing::Values(
        ElementPlan{.name = "OneAnchoredRater",
                    .text = {.raters = "2,Raters,A\n1-6=r\n3=r,1.25\n"},
                    .tell =
                        [](judge::Design& d) {
                          d.anchors = {{1, 2, 1.25}};
                        }},
        ElementPlan{
            .name = "AllRatersAnchored",
            .text = {.raters = "2,Raters,A\n1=r,-1\n2=r,0\n3=r,.5\n4=r,-.5\n5=r,1\n6=r,0\n"},
            .tell =
                [](judge::Design& d) {
                  AnchorAll(d, 1, {-1.0, 0.0, .5, -.5, 1.0, 0.0});
                }},
        ElementPlan{.name = "RatersAndItemsAnchored",
                    .text = {.raters = "2,Raters,A\n1=r,-1\n2=r,0\n3=r,.5\n4=r,-.5\n5=r,1\n6=r,0\n",
                             .items = "3,Items,A\n1-4=i,.75\n"},
                    .tell =
                        [](judge::Design& d) {
                          AnchorAll(d, 1, {-1.0, 0.0, .5, -.5, 1.0, 0.0});
                          AnchorAll(d, 2, {.75, .75, .75, .75});
                        }},
        ElementPlan{.name = "DummyItems",
                    .text = {.items = "3,Items,D\n1-4=i,7\n"},
                    .tell =
                        [](judge::Design& d) {
                          AnchorAll(d, 2, {0.0, 0.0, 0.0, 0.0});
                        }},
        ElementPlan{.name = "OneGroupOfRaters",
                    .text = {.raters = "2,Raters,G\n1-6=r,.8,1\n"},
                    .tell =
                        [](judge::Design& d) {
                          d.groups = {{1, {0, 1, 2, 3, 4, 5}, .8}};
                        }},
        ElementPlan{.name = "AGroupAndFreeRaters",
                    .text = {.raters = "2,Raters,X\n1-4=r,.8,1\n5-6=r\n"},
                    .tell =
                        [](judge::Design& d) {
                          d.groups = {{1, {0, 1, 2, 3}, .8}};
                        }},
        ElementPlan{
            .name = "ExtremePersonsAmongAnchors",
            .text = {.raters = "2,Raters,A\n1=r,-1\n2=r,0\n3=r,.5\n4=r,-.5\n5=r,1\n6=r,0\n"},
            .tell =
                [](judge::Design& d) {
                  AnchorAll(d, 1, {-1.0, 0.0, .5, -.5, 1.0, 0.0});
                },
            .spread = 4.0},
        ElementPlan{.name = "WeightedElements",
                    .text = {.raters = "2,Raters\n1-6=r\n2=r,,,.5\n5=r,,,3\n",
                             .items = "3,Items,,2\n1-3=i\n4=i,,,1\n"},
                    .tell =
                        [](judge::Design& d) {
                          Weigh(d, 1, 2, .5);
                          Weigh(d, 1, 5, 3.0);
                          for (const int n : {1, 2, 3}) Weigh(d, 2, n, 2.0);
                        }},
        ElementPlan{
            .name = "WeightedStatementsAndReplications",
            .text = {.settings = "Models=\n?,?,2,S,2.5\n?,?,?,S\n*\nRating scale=S,R4\n*\n"},
            .tell = [](judge::Design& d) { Weigh(d, 2, 2, 2.5); },
            .change =
                [](judge::Design& d) {
                  for (std::size_t i = 0; i < d.observations.size(); i += 7)
                    d.observations[i].weight = 1.5;
                }},
        ElementPlan{.name = "WeightedExtremes",
                    .text = {.raters = "2,Raters\n1-6=r\n2=r,,,.5\n5=r,,,3\n"},
                    .tell =
                        [](judge::Design& d) {
                          Weigh(d, 1, 2, .5);
                          Weigh(d, 1, 5, 3.0);
                        },
                    .spread = 4.0},
        ElementPlan{
            .name = "ReversedRaters",
            .text = {.settings = "Models=\n?,-2-3,?,S\n?,?,?,S\n*\nRating scale=S,R4,General\n*\n"},
            .reversedRaters = {2, 3}},
        ElementPlan{
            .name = "ReversedWeightedExtremes",
            .text = {.settings =
                         "Models=\n?,-2-3,?,S,.5\n?,?,?,S\n*\nRating scale=S,R4,General\n*\n"},
            .tell =
                [](judge::Design& d) {
                  Weigh(d, 1, 2, .5);
                  Weigh(d, 1, 3, .5);
                },
            .spread = 4.0,
            .reversedRaters = {2, 3}},
        ElementPlan{
            .name = "ReversedRatersInTheFloatingFlank",
            .text = {.settings =
                         "Models=\n?,-2-3,?,S,2\n?,?,?,S\n*\nRating scale=S,R4,General\n*\n",
                     .noncenter = "2"},
            .tell =
                [](judge::Design& d) {
                  d.noncenteredFlank = 1;
                  Weigh(d, 1, 2, 2.0);
                  Weigh(d, 1, 3, 2.0);
                },
            .reversedRaters = {2, 3}}),
    [](const auto& plan) { return std::string(plan.param.name); });

// Where the update stops elsewhere: how far the farthest measure is from the maximum of the
// likelihood, in logits (docs/quirks.md has these figures).
double DistanceOf(const ElementPlan& plan) {
  JudgedRun both;
  EstimateBoth(plan, both);
  return both.LargestMeasureError();
}

constexpr double kDistanceTolerance = .002;

TEST(ElementJudgeDistance, SeveralAnchorsBesideFreeElements) {
  const ElementPlan plan{.name = "",
                         .text = {.raters = "2,Raters,A\n1=r,1\n2=r,0\n3=r,-1\n4-6=r\n"},
                         .tell = [](judge::Design& d) {
                           d.anchors = {{1, 0, 1.0}, {1, 1, 0.0}, {1, 2, -1.0}};
                         }};
  EXPECT_NEAR(DistanceOf(plan), .033, kDistanceTolerance);
}

TEST(ElementJudgeDistance, AnAnchorInTheFloatingFlank) {
  const ElementPlan plan{.name = "",
                         .text = {.persons = "1,Persons,A\n1=p,0\n2-40=p\n"},
                         .tell = [](judge::Design& d) {
                           d.anchors = {{0, 0, 0.0}};
                         }};
  EXPECT_NEAR(DistanceOf(plan), .525, kDistanceTolerance);
}

TEST(ElementJudgeDistance, TwoGroupsThatTheDataCouldTie) {
  const ElementPlan plan{.name = "",
                         .text = {.raters = "2,Raters,G\n1-3=r,.3,1\n4-6=r,-.3,2\n"},
                         .tell = [](judge::Design& d) {
                           d.groups = {{1, {0, 1, 2}, .3}, {1, {3, 4, 5}, -.3}};
                         }};
  EXPECT_NEAR(DistanceOf(plan), .037, kDistanceTolerance);
}

// Ratings without a rater, a category higher than they were drawn.
TEST(ElementJudgeDistance, NullElementsOfACenteredFlank) {
  const ElementPlan plan{.name = "", .change = [](judge::Design& d) {
                           for (std::size_t i = 0; i < d.observations.size(); i += 5) {
                             judge::Observation& o = d.observations[i];
                             o.elements[1] = -1;
                             o.category = std::min(o.category + 1, 4);
                           }
                         }};
  EXPECT_NEAR(DistanceOf(plan), .049, kDistanceTolerance);
}

// Four raters plain with weight 1, two reversed with weight 2.
TEST(ElementJudgeDistance, ReversedAndPlainElementsOfOneWeightInACenteredFlank) {
  const ElementPlan plan{
      .name = "",
      .text = {.settings = "Models=\n?,-2-3,?,S,2\n?,?,?,S\n*\nRating scale=S,R4,General\n*\n"},
      .tell =
          [](judge::Design& d) {
            Weigh(d, 1, 2, 2.0);
            Weigh(d, 1, 3, 2.0);
          },
      .reversedRaters = {2, 3}};
  EXPECT_NEAR(DistanceOf(plan), .65, .05);
}

}  // namespace
}  // namespace flanks
