#include "support/slow_judge/slow_judge.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace judge {
namespace {

constexpr double kExact = 1E-8;  // of numbers given with nine digits

// A complete table of a positive Flank (rows) by a negative one (columns); a blank is no datum.
Design TableDesign(const std::vector<std::string>& rows) {
  Design design;
  design.elementCounts = {static_cast<int>(rows.size()), static_cast<int>(rows.front().size())};
  design.signs = {1, -1};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j < rows[i].size(); ++j) {
      if (rows[i][j] == ' ') continue;
      design.observations.push_back(
          {{static_cast<int>(i), static_cast<int>(j)}, rows[i][j] - '0', 1.0, 0});
    }
  }
  return design;
}

std::vector<double> MeasuresOf(const Verdict& verdict, std::size_t flank) {
  std::vector<double> measures;
  for (const Element& e : verdict.elements[flank]) measures.push_back(e.measure);
  return measures;
}

void ExpectNear(const std::vector<double>& found, const std::vector<double>& expected,
                double tolerance) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], tolerance) << i;
}

struct Expected {
  std::size_t flank, element;
  double standardError, infit, infitZStd, outfit, outfitZStd;
  double discrimination, fairAverage, pointMeasure, pointExpected;
};

void ExpectStatistics(const Verdict& verdict, const std::vector<Expected>& expected) {
  for (const Expected& x : expected) {
    const Element& e = verdict.elements[x.flank][x.element];
    EXPECT_NEAR(e.standardError, x.standardError, kExact);
    EXPECT_NEAR(e.infit, x.infit, kExact);
    EXPECT_NEAR(e.infitZStd, x.infitZStd, kExact);
    EXPECT_NEAR(e.outfit, x.outfit, kExact);
    EXPECT_NEAR(e.outfitZStd, x.outfitZStd, kExact);
    EXPECT_NEAR(e.discrimination, x.discrimination, kExact);
    EXPECT_NEAR(e.fairAverage, x.fairAverage, kExact);
    EXPECT_NEAR(e.pointMeasure, x.pointMeasure, kExact);
    EXPECT_NEAR(e.pointExpected, x.pointExpected, kExact);
    EXPECT_NEAR(e.displacement, 0.0, kExact);
  }
}

// Two items: whoever succeeds on one of them is at 0, and each item is as far from 0 as the log of
// the ratio of successes, twice the distance of conditional estimation.
TEST(SlowJudge, TwoItemsHaveAClosedForm) {
  const Verdict verdict = Judge(TableDesign({"10", "10", "10", "10", "10", "01", "01"}));
  EXPECT_TRUE(verdict.converged);
  EXPECT_TRUE(verdict.identified);
  ExpectNear(MeasuresOf(verdict, 0), std::vector<double>(7, 0.0), 1E-9);
  ExpectNear(MeasuresOf(verdict, 1), {std::log(2.0 / 5.0), std::log(5.0 / 2.0)}, 1E-9);
}

// One element, many ratings: the model is saturated, so the probabilities are the frequencies.
TEST(SlowJudge, OneElementReproducesTheFrequencies) {
  Design design;
  design.elementCounts = {1};
  design.signs = {1};
  for (const int category : {0, 0, 0, 1, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3}) {
    design.observations.push_back({{0}, category, 1.0, 0});
  }
  const Verdict verdict = Judge(design);
  const Element& e = verdict.elements[0][0];
  EXPECT_NEAR(e.measure, std::log(2.0 / 3.0) / 3.0, 1E-9);
  ExpectNear(verdict.structures[0].thresholds,
             {0.0, e.measure - std::log(5.0 / 3.0), e.measure - std::log(4.0 / 5.0),
              e.measure - std::log(2.0 / 4.0)},
             1E-9);
  EXPECT_NEAR(e.standardError, 0.2750921221621508, 1E-9);
  EXPECT_NEAR(e.infit, 1.0, 1E-9);
  EXPECT_NEAR(e.outfit, 1.0, 1E-9);
}

// The expected numbers of the next three tests come from a program of another kind: one linear
// exponential family with the centered parameters as its coordinates, full Newton steps.
TEST(SlowJudge, ADichotomousTable) {
  const Verdict verdict = Judge(TableDesign({"1100", "1010", "0111", "1101", "0100", "1001"}));
  EXPECT_TRUE(verdict.converged);
  ExpectNear(MeasuresOf(verdict, 0),
             {-0.011548260, -0.011548260, 1.204396563, 1.204396563, -1.209176071, -0.011548260},
             kExact);
  ExpectNear(MeasuresOf(verdict, 1), {-0.601170324, -0.601170324, 1.000687159, 0.201653490},
             kExact);
  ExpectStatistics(verdict, {{0, 0, 1.053144753, 0.582579387, -1.439910929, 0.570118116,
                              -1.382150735, 1.0, 0.497112967, 0.905052092, 0.423154444},
                             {1, 1, 0.928816761, 1.219826669, 0.659804583, 1.054446265, 0.276982634,
                              1.0, 0.688975145, 0.175166077, 0.426165890}});
}

// Examinees, raters (negative) and tasks; a third of the ratings weigh 1.5.
Design RatingDesign() {
  const std::vector<std::string> rows = {"312213", "221122", "131201", "200112", "021100"};
  Design design;
  design.elementCounts = {5, 3, 2};
  design.signs = {1, -1, 1};
  for (int i = 0; i < 5; ++i) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 2; ++k) {
        const int category =
            rows[static_cast<std::size_t>(i)][static_cast<std::size_t>(2 * j + k)] - '0';
        design.observations.push_back({{i, j, k}, category, (i + j + k) % 3 == 0 ? 1.5 : 1.0, 0});
      }
    }
  }
  return design;
}

TEST(SlowJudge, ARatingScaleOfThreeFlanksWithWeights) {
  const Verdict verdict = Judge(RatingDesign());
  EXPECT_TRUE(verdict.converged);
  EXPECT_TRUE(verdict.identified);
  ExpectNear(MeasuresOf(verdict, 0),
             {1.136682162, 0.286828730, -0.143661519, -0.658938935, -1.594104376}, kExact);
  ExpectNear(MeasuresOf(verdict, 1), {-0.609380866, 0.403354553, 0.206026313}, kExact);
  ExpectNear(MeasuresOf(verdict, 2), {-0.391040932, 0.391040932}, kExact);
  ExpectNear(verdict.structures[0].thresholds, {0.0, -1.533990942, -0.024928178, 1.558919120},
             kExact);
  ExpectStatistics(verdict, {{0, 1, 0.498914120, 0.384188789, -1.545448719, 0.373911754,
                              -1.588810217, 1.809609296, 1.676678589, 0.371438302, 0.452077786},
                             {1, 2, 0.399200734, 0.863527283, -0.257241433, 0.849449363,
                              -0.297232352, 1.326651697, 1.265198281, 0.794014532, 0.644885494},
                             {2, 0, 0.333068775, 0.711644661, -0.927514104, 0.736081991,
                              -0.823160222, 1.415630068, 1.156580577, 0.760429908, 0.627911896}});
}

// Each item has its own categories: 0 to 2, 0 to 3, 0 to 1.
TEST(SlowJudge, PartialCredit) {
  Design design = TableDesign({"120", "221", "011", "220", "101", "130"});
  design.structures.resize(3);
  for (Observation& o : design.observations) o.structure = o.elements[1];
  const Verdict verdict = Judge(design);
  EXPECT_TRUE(verdict.converged);
  EXPECT_TRUE(verdict.identified);
  ExpectNear(MeasuresOf(verdict, 0),
             {-0.163938252, 1.831766897, -0.880488489, 0.668892364, -0.880488489, 0.668892364},
             kExact);
  ExpectNear(MeasuresOf(verdict, 1), {-0.270675045, 0.084090412, 0.186584633}, kExact);
  ExpectNear(verdict.structures[0].thresholds, {0.0, -1.107786875, 1.107786875}, kExact);
  ExpectNear(verdict.structures[1].thresholds, {0.0, -0.588692538, -1.174364048, 1.763056586},
             kExact);
  ExpectNear(verdict.structures[2].thresholds, {0.0, 0.0}, kExact);
  ExpectStatistics(verdict, {{0, 1, 1.214501788, 0.460699535, -0.492848556, 0.401060942,
                              -0.571613552, 1.634769373, 1.661226023, 0.303501006, 0.069491441},
                             {1, 1, 0.532784729, 0.664548585, -0.591044687, 0.713390187,
                              -0.384578156, 1.252879205, 1.783188186, 0.683517734, 0.650294349}});
}

// A perfect score of 4 items at 0: 4 P = 3.7.
TEST(SlowJudge, AnExtremeElementGetsItsAdjustedScore) {
  const Verdict verdict = Judge(TableDesign({"1100", "0011", "1010", "0101", "1111", "0000"}));
  ExpectNear(MeasuresOf(verdict, 1), {0.0, 0.0, 0.0, 0.0}, 1E-9);
  const Element& perfect = verdict.elements[0][4];
  EXPECT_EQ(perfect.standing, Standing::perfectScore);
  EXPECT_NEAR(perfect.measure, std::log(3.7 / 0.3), 1E-9);
  EXPECT_NEAR(perfect.standardError, 1.0 / std::sqrt(4 * 0.925 * 0.075), 1E-9);
  EXPECT_EQ(perfect.infit, 1.0);
  EXPECT_EQ(perfect.outfitZStd, 0.0);
  EXPECT_EQ(perfect.count, 4.0);
  EXPECT_NEAR(verdict.elements[0][5].measure, -std::log(3.7 / 0.3), 1E-9);
  EXPECT_EQ(verdict.elements[0][5].standing, Standing::zeroScore);
  EXPECT_EQ(verdict.elements[1][0].count, 4.0);  // the extreme rows do not count for the columns
  // They do for the correlation: 6 pairs, two of them far out.
  EXPECT_GT(verdict.elements[1][0].pointMeasure, 0.5);
}

// Everyone succeeds on the last item; without it the fifth person has nothing.
TEST(SlowJudge, ExtremesAreRemovedUntilNoneIsLeft) {
  const Verdict verdict = Judge(TableDesign({"11001", "00111", "10101", "01011", "00001"}));
  EXPECT_EQ(verdict.elements[1][4].standing, Standing::perfectScore);
  EXPECT_EQ(verdict.elements[0][4].standing, Standing::zeroScore);
  EXPECT_EQ(verdict.elements[0][0].standing, Standing::measured);
  EXPECT_EQ(verdict.elements[0][0].largestScore, 4.0);
  EXPECT_EQ(verdict.elements[1][4].count, 4.0);  // not the meeting of two extreme elements
  EXPECT_EQ(verdict.elements[0][4].count, 4.0);
  // A perfect score is an easy item: low on a negative Flank.
  EXPECT_NEAR(verdict.elements[1][4].measure, -std::log(3.7 / 0.3), 1E-9);
  EXPECT_TRUE(verdict.converged);
}

TEST(SlowJudge, CategoriesAreRenumberedWithoutGaps) {
  const Design plain = TableDesign({"0121", "1200", "2011", "1102", "0210"});
  Design spread = plain;
  for (Observation& o : spread.observations) o.category = 1 + 2 * o.category;
  const Verdict a = Judge(plain), b = Judge(spread);
  EXPECT_EQ(b.structures[0].rawCategories, (std::vector<int>{1, 3, 5}));
  ExpectNear(MeasuresOf(a, 0), MeasuresOf(b, 0), 1E-12);
  ExpectNear(a.structures[0].thresholds, b.structures[0].thresholds, 1E-12);
  EXPECT_NEAR(b.elements[0][0].fairAverage, a.elements[0][0].fairAverage + 1.0, 1E-12);
  EXPECT_EQ(b.elements[0][0].rawScore, 12.0);
  EXPECT_EQ(b.elements[0][0].score, 4.0);
}

// Only the last row uses category 9: without other data it has nothing to be measured with.
TEST(SlowJudge, ACategoryOfExtremeScoresHasNoPlace) {
  const Verdict verdict = Judge(TableDesign({"0121", "1200", "2011", "1102", "0210", "9999"}));
  EXPECT_EQ(verdict.structures[0].rawCategories, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(verdict.elements[0][5].standing, Standing::dropped);
  EXPECT_EQ(verdict.elements[1][0].largestScore, 10.0);
}

TEST(SlowJudge, AWeightOfTwoIsTheObservationTwice) {
  Design weighted = RatingDesign(), doubled = RatingDesign();
  for (Observation& o : weighted.observations) o.weight *= 2.0;
  const std::vector<Observation> copy = doubled.observations;
  doubled.observations.insert(doubled.observations.end(), copy.begin(), copy.end());
  const Verdict a = Judge(weighted), b = Judge(doubled);
  for (std::size_t f = 0; f < 3; ++f) {
    ExpectNear(MeasuresOf(a, f), MeasuresOf(b, f), 1E-9);
    EXPECT_NEAR(a.elements[f][0].outfitZStd, b.elements[f][0].outfitZStd, 1E-9);
    EXPECT_NEAR(a.elements[f][0].pointExpected, b.elements[f][0].pointExpected, 1E-9);
  }
}

TEST(SlowJudge, ANegativeFlankIsThePositiveOneMirrored) {
  Design mirrored = RatingDesign();
  mirrored.signs = {-1, 1, -1};
  const Verdict a = Judge(RatingDesign()), b = Judge(mirrored);
  for (std::size_t f = 0; f < 3; ++f) {
    for (std::size_t n = 0; n < a.elements[f].size(); ++n) {
      EXPECT_NEAR(a.elements[f][n].measure, -b.elements[f][n].measure, 1E-9);
      EXPECT_NEAR(a.elements[f][n].fairAverage, b.elements[f][n].fairAverage, 1E-9);
    }
  }
}

// One origin is left over: two Flanks move against each other.
TEST(SlowJudge, SaysWhenADesignIsNotDetermined) {
  Design design = TableDesign({"10  ", "01  ", "  10", "  01"});  // two halves that never meet
  EXPECT_FALSE(Judge(design).identified);
}

// Constraints that choose an origin hold nothing back; others do, and the maximum is another.
TEST(SlowJudge, TellsWhatTheConstraintsHoldBack) {
  Design design = RatingDesign();
  EXPECT_LT(Judge(design).restriction, 1E-8);
  design.noncenteredFlank = -1;
  EXPECT_GT(Judge(design).restriction, 0.1);
  design = RatingDesign();
  design.structures.resize(2);  // two scales, both used by every element of every Flank
  for (std::size_t i = 0; i < design.observations.size(); ++i) {
    const std::vector<int>& n = design.observations[i].elements;
    design.observations[i].structure = (n[0] + n[1] + n[2]) % 2;
  }
  EXPECT_GT(Judge(design).restriction, 0.01);
}

// One element and five trials each: the binomial proportion, and the expected score of its logit.
TEST(SlowJudge, AnAnchoredBinomialScaleReproducesTheProportion) {
  Design design;
  design.elementCounts = {1};
  design.signs = {1};
  design.structures[0] = {Kind::binomial, false, 5, true, 1.0, {}};
  for (const int category : {0, 2, 3, 5, 1}) design.observations.push_back({{0}, category, 1.0, 0});
  const Verdict verdict = Judge(design);
  EXPECT_NEAR(verdict.elements[0][0].measure, std::log(11.0 / 14.0), 1E-9);
  // 25 trials of variance p (1 - p).
  EXPECT_NEAR(verdict.elements[0][0].standardError, 1.0 / std::sqrt(25 * .44 * .56), 1E-9);
  EXPECT_EQ(verdict.elements[0][0].largestScore, 25.0);
}

TEST(SlowJudge, AnAnchoredPoissonScaleReproducesTheMeanCount) {
  Design design;
  design.elementCounts = {1};
  design.signs = {1};
  design.structures[0] = {Kind::poisson, false, 1, true, 1.0, {}};
  for (const int category : {0, 2, 3, 5, 1}) design.observations.push_back({{0}, category, 1.0, 0});
  EXPECT_NEAR(Judge(design).elements[0][0].measure, std::log(2.2), 1E-9);
}

// One element: two parameters and the sums of k and of t(k) are matched.
TEST(SlowJudge, AnEstimatedDiscriminationMatchesItsSum) {
  Design design;
  design.elementCounts = {1};
  design.signs = {1};
  design.structures[0] = {Kind::binomial, false, 3, false, 1.0, {}};
  const std::vector<int> data = {0, 0, 1, 1, 1, 1, 2, 2, 2, 3};
  for (const int category : data) design.observations.push_back({{0}, category, 1.0, 0});
  const Verdict verdict = Judge(design);
  const std::vector<double> p =
      Probabilities(verdict.structures[0], verdict.elements[0][0].measure);
  EXPECT_NEAR(p[1] + 2 * p[2] + 3 * p[3], 1.3, 1E-9);
  // t = 0, -ln 3, -ln 3, 0: what is matched is the share of the two categories inside.
  EXPECT_NEAR(p[1] + p[2], .7, 1E-9);
}

// Skipped and anchored categories: probabilities .016236 .119972 0 .537675 .326117 by hand.
TEST(SlowJudge, ASkippedCategoryHasNoProbability) {
  Structure structure;
  structure.rawCategories = {0, 1, 2, 3, 4};
  structure.thresholds = {0.0, -1.0, 0.0, .5, 1.5};
  structure.standing.assign(5, CategoryStanding::free);
  structure.standing[2] = CategoryStanding::skipped;
  ExpectNear(Probabilities(structure, 1.0), {.016236, .119972, 0.0, .537675, .326117}, 1E-6);
  const Moments moments = MomentsOf(structure, 1.0);
  EXPECT_NEAR(moments.mean, 3.037464, 1E-6);
  EXPECT_NEAR(moments.variance, .950727, 1E-6);
}

TEST(SlowJudge, KeptAndAnchoredCategoriesHaveTheirPlaces) {
  Design design = TableDesign({"0131", "1300", "3011", "1103", "0310"});
  design.structures[0].keep = true;
  EXPECT_EQ(Judge(design).structures[0].rawCategories, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_TRUE(Judge(design).structures[0].skipped(2));
  design.structures[0].keep = false;
  design.structures[0].anchors = {{1, -.5}, {4, 1.0}};
  const Verdict verdict = Judge(design);
  EXPECT_EQ(verdict.structures[0].rawCategories, (std::vector<int>{0, 1, 3, 4}));
  EXPECT_EQ(verdict.structures[0].thresholds[1], -.5);
  EXPECT_EQ(verdict.structures[0].thresholds[3], 1.0);
  EXPECT_NE(verdict.structures[0].thresholds[2], 0.0);
}

}  // namespace
}  // namespace judge
