// The slow judge: the same model as the program's, estimated in the plainest way.
//
// All data are in memory, everything is 64 bits, each method is a page of code that can be laid
// beside its formula.  It shares nothing with src/, so that an error there can't hide here.  It is
// for designs of up to a few thousand observations.
//
// The model: an observation of the elements n of the Flanks f is category k of 0 .. m with
//
//   ln(P(k) / P(k-1)) = B - T(k),   B = sum over the Flanks of sign(f) times measure(f, n)
//
// where the thresholds T(1) .. T(m) of each structure sum to 0 (a dichotomy has T(1) = 0), every
// Flank but one is centered on its measured elements, and the estimates are joint maximum
// likelihood: each element's score and each category's count are what the model expects.
//
//   1. PrepareDesign   extreme elements are removed until none is left; the categories that the
//                      rest uses are renumbered from 0 without gaps, structure by structure
//   2. SolveMeasures   Newton steps, one parameter at a time, sweep after sweep, until every
//                      residual is below 1E-10; then each extreme element from its adjusted score
//   3. Summarize       standard errors, fit, correlations, fair averages, discriminations
//
// `Judge` does the three.  An element counts its observations in which no other element is extreme;
// the counts and the fit of a measured element come from observations without extreme elements.
//
// Two designs have no joint maximum likelihood solution of this form, and `identified` is false
// for them and nothing is solved: structures that are crossed with all Flanks (their centering is
// then a real restriction), and no non-centered Flank.
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
};

struct Design {
  std::vector<int> elementCounts;  // by Flank
  std::vector<int> signs;          // by Flank: +1 positive, -1 negative
  int noncenteredFlank = 0;        // -1: none
  int structureCount = 1;
  std::vector<Observation> observations;

  double extremeAdjustment = 0.3;   // score points, times the smallest weight
  bool exactWilsonHilferty = true;  // ZStd with the term q / 3
  bool realStandardErrors = false;  // enlarged by an infit mean-square above 1
  bool fairAtMean = true;           // against the mean of the other Flanks, else against 0
};

enum class Standing { measured, zeroScore, perfectScore, dropped };

struct Element {
  Standing standing = Standing::measured;
  double measure = 0.0;                                 // logits
  double count = 0.0, score = 0.0, largestScore = 0.0;  // of ordered categories
  double rawScore = 0.0;                                // of categories as in the data
  double smallestWeight = 0.0;

  double standardError = 0.0;
  double infit = 1.0, infitZStd = 0.0, outfit = 1.0, outfitZStd = 0.0;
  double displacement = 0.0;
  double discrimination = 1.0;
  double pointMeasure = 0.0, pointExpected = 0.0;
  double fairAverage = 0.0;
};

struct Structure {
  std::vector<int> rawCategories;  // by ordered category
  std::vector<double> thresholds;  // by ordered category; the first is 0
  std::vector<double> observed;    // weighted counts, by ordered category
  int top() const { return static_cast<int>(rawCategories.size()) - 1; }
  int ordered(int rawCategory) const;  // -1: no place
};

struct Verdict {
  std::vector<std::vector<Element>> elements;  // by Flank and element
  std::vector<Structure> structures;
  bool identified = true;
  int sweeps = 0;
  double largestResidual = 0.0;  // score points, over elements and category counts
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

// P(0) .. P(m).
[[nodiscard]] std::vector<double> Probabilities(const Structure& structure, double B);

// The first moments of the category under the probabilities.
struct Moments {
  double mean = 0.0, variance = 0.0, fourth = 0.0;  // the last two central
};
[[nodiscard]] Moments MomentsOf(const std::vector<double>& probabilities);

}  // namespace judge

#endif  // FLANKS_TESTS_SUPPORT_SLOW_JUDGE_H
