// The slow judge: the same model as the program's, estimated in the plainest way.
//
// All data are in memory, everything is 64 bits, each method is a page of code that can be laid
// beside its formula.  It shares nothing with src/, so that an error there can't hide here.  It is
// for designs of up to a few thousand observations and a few hundred parameters.
//
// The model: an observation of the elements n of the Flanks f is category k of 0 .. n with
//
//   P(k) proportional to exp(r(k)),   B = sum over the Flanks of sign(f) times measure(f, n)
//                                     in a reversed position the other sign
//   rating     r(k) = k B - sum over j from 1 to k of T(j)              a skipped j has no T(j)
//   binomial   r(k) = k B - c sum over j to k of ln(j / (m - j + 1))    m trials
//   Poisson    r(k) = k B - c ln k!                                     c: the discrimination
//
// A skipped category has the probability 0.  A scale with two categories is a dichotomy, whatever
// its kind.  A Poisson scale ends at category 10, or at twice the largest count m when m is 5 or
// more; with c exactly 1 its expected score is exp(B) all the same.
//
// The estimates are joint maximum likelihood under linear constraints: every Flank but one is
// centered on its measured elements unless an anchor or a group ties it, a group keeps the mean
// that it was given, the free thresholds of an unanchored scale sum to 0, and what is anchored
// stays at its value.  The likelihood is concave in all parameters together (each of them
// multiplies a statistic of the category), so that Newton's method finds its one maximum:
//
//   1. PrepareDesign   extreme elements are removed until none is left; the categories that the
//                      rest uses are renumbered from 0, structure by structure
//   2. SolveMeasures   Newton steps of all parameters together under the constraints, shortened
//                      while they lower the likelihood; then each extreme element from its
//                      adjusted score
//   3. Summarize       standard errors, fit, correlations, fair averages, discriminations
//
// `Judge` does the three.  An element counts its observations in which no other element is extreme;
// the counts and the fit of a measured element come from observations without extreme elements.
//
// Constraints that only choose an origin take nothing from the likelihood.  Where they do, as with
// structures that are crossed with all Flanks or without a non-centered Flank, `restriction` tells
// how many score points they hold back; the program's own update then has another fixed point.
//
// Tested by tests/unit/support/slow_judge_test.cpp on closed forms and independent solutions.
#ifndef FLANKS_TESTS_SUPPORT_SLOW_JUDGE_H
#define FLANKS_TESTS_SUPPORT_SLOW_JUDGE_H

#include <vector>

namespace judge {

struct Observation {
  std::vector<int> elements;  // one for each Flank, from 0; -1: none
  int category = 0;           // as in the data
  double weight = 1.0;
  int structure = 0;
  std::vector<bool> reversed = {};  // one for each Flank, or empty: none
  bool isReversed(std::size_t f) const { return !reversed.empty() && reversed[f]; }
};

// An element that stays at `measure`, whatever its score.
struct ElementAnchor {
  std::size_t flank = 0;
  int element = 0;
  double measure = 0.0;
};

// Elements whose mean stays at `mean`.  Extreme ones do not count.
struct ElementGroup {
  std::size_t flank = 0;
  std::vector<int> elements;
  double mean = 0.0;
};

enum class Kind { rating, binomial, poisson };

// A category whose threshold stays at `threshold`, observed or not.
struct CategoryAnchor {
  int category = 0;  // as in the data
  double threshold = 0.0;
};

// What is known of a structure beforehand.
struct StructurePlan {
  Kind kind = Kind::rating;
  bool keep = false;  // rating: unobserved categories inside keep their place, with probability 0
  int trials = 1;     // binomial
  bool discriminationAnchored = false;  // binomial, Poisson: c stays at `discrimination`
  double discrimination = 1.0;
  std::vector<CategoryAnchor> anchors;  // rating
};

struct Design {
  std::vector<int> elementCounts;  // by Flank
  std::vector<int> signs;          // by Flank: +1 positive, -1 negative
  int noncenteredFlank = 0;        // -1: none
  std::vector<StructurePlan> structures{StructurePlan{}};
  std::vector<ElementAnchor> anchors;
  std::vector<ElementGroup> groups;
  std::vector<Observation> observations;

  // +1 or -1: how the measure of Flank f enters B.
  int sign(const Observation& o, std::size_t f) const {
    return o.isReversed(f) ? -signs[f] : signs[f];
  }

  double extremeAdjustment = 0.3;   // score points, times the smallest weight
  bool exactWilsonHilferty = true;  // ZStd with the term q / 3
  bool realStandardErrors = false;  // enlarged by an infit mean-square above 1
  bool fairAtMean = true;           // against the mean of the other Flanks, else against 0
};

enum class Standing { measured, zeroScore, perfectScore, dropped };

struct Element {
  Standing standing = Standing::measured;
  bool anchored = false;
  double measure = 0.0;  // logits
  double count = 0.0, score = 0.0,
         largestScore = 0.0;  // of ordered categories, from the top where reversed
  double rawScore = 0.0;      // of categories as in the data
  double smallestWeight = 0.0;

  double standardError = 0.0;
  double infit = 1.0, infitZStd = 0.0, outfit = 1.0, outfitZStd = 0.0;
  double displacement = 0.0;
  double discrimination = 1.0;
  double pointMeasure = 0.0, pointExpected = 0.0;
  double fairAverage = 0.0;
};

enum class CategoryStanding { free, anchored, skipped };

struct Structure {
  Kind kind = Kind::rating;
  std::vector<int> rawCategories;          // by ordered category
  std::vector<double> thresholds;          // by ordered category; the first is 0
  std::vector<CategoryStanding> standing;  // by ordered category
  std::vector<double> observed;            // weighted counts, by ordered category
  double discrimination = 1.0;
  bool discriminationAnchored = false;
  int top() const { return static_cast<int>(rawCategories.size()) - 1; }
  int ordered(int rawCategory) const;  // -1: no place
  // A dichotomy is one whatever its kind.
  bool counts() const { return kind != Kind::rating && top() >= 2; }
  bool skipped(int k) const {
    return standing[static_cast<std::size_t>(k)] == CategoryStanding::skipped;
  }
};

struct Verdict {
  std::vector<std::vector<Element>> elements;  // by Flank and element
  std::vector<Structure> structures;
  bool identified = true;  // the constraints leave one maximum
  int steps = 0;
  double largestResidual = 0.0;  // score points, of parameters and what the constraints hold back
  double restriction = 0.0;      // score points: the most that one constraint holds back
  bool converged = false;
};

// Everything: prepare, solve, summarize.
[[nodiscard]] Verdict Judge(const Design& design);

// The three steps.
[[nodiscard]] Verdict PrepareDesign(const Design& design);
void SolveMeasures(const Design& design, Verdict& verdict);
void Summarize(const Design& design, Verdict& verdict);

// What an observation is good for.
enum class Use {
  none,     // without weight or place for its category, a dropped element, two extreme elements
  extreme,  // one extreme element: for that element only
  full,     // all elements are measured
};
[[nodiscard]] Use UseOf(const Design& design, const Verdict& verdict, const Observation& o);

// Whether element n of Flank f takes its part of the observation.
[[nodiscard]] bool Takes(const Verdict& verdict, Use use, std::size_t f, int n);

// B.
[[nodiscard]] double MeasureSum(const Design& design, const Verdict& verdict, const Observation& o);

// r(0) .. r(n); a skipped category has a value that means nothing.
[[nodiscard]] std::vector<double> Exponents(const Structure& structure, double B);

// P(0) .. P(n).
[[nodiscard]] std::vector<double> Probabilities(const Structure& structure, double B);

// ln k!
[[nodiscard]] double LogFactorialOf(int k);

// The first moments of the category, the last two central.  Of a binomial or Poisson scale with
// c exactly 1 the mean is that of the whole distribution, and the others are taken about it.
struct Moments {
  double mean = 0.0, variance = 0.0, fourth = 0.0;
};
[[nodiscard]] Moments MomentsOf(const Structure& structure, double B);

}  // namespace judge

#endif  // FLANKS_TESTS_SUPPORT_SLOW_JUDGE_H
