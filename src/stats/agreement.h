// Inter-rater agreement: how often two raters give the same target the same rating, and how often
// the model expects it.
//
// `Inter-rater=` names the Flank of the raters.  Two ratings are of the same target when they have
// the same element in every other position, or in those of the match list.  Every pair of ratings
// of one target by two different raters counts once, with the mean of the two weights, and adds to
// both raters.  With the probabilities P of the scored categories, the chance that a pair agrees is
//
//   sum over the categories k of  P(rating A = k) P(rating B = k)
//
// where a rating with an extreme element, which has no probabilities, is taken as certain.
//
// The ratings are loaded once and put in the order of their matched elements, then of their
// records, so that the ratings of a target are neighbours and the walk over the pairs has one order
// whatever the data's.  A rating takes 20 bytes, 4 for each matched position, and 8 for the order.
// The cost grows with the square of a target's ratings, so the walk shows a bar and ends at Ctrl+F,
// with the pairs found so far.
//
// What is made of it is in run/rater_agreement.h.  Tested by tests/unit/stats/agreement_test.cpp
// against a direct count over all pairs, timed by bench/bench_agreement.cpp.
#ifndef FLANKS_STATS_AGREEMENT_H
#define FLANKS_STATS_AGREEMENT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "run/estimates.h"
#include "run/rater_agreement.h"
#include "run/run.h"

namespace flanks {

// What is compared.
struct AgreementPlan {
  FlankNo raterFlank;
  std::size_t raterField = 0;            // the field of the element records that holds the rater
  std::vector<std::size_t> matchFields;  // those on which two ratings of a target agree
  ElementSlot RaterLow, RaterHigh;
};

// The plan for a value of `Inter-rater=`: the rater Flank and the match list, Flank numbers.
// Without a plan `message` says why, or is empty when there is nothing to say.
[[nodiscard]] std::optional<AgreementPlan> PlanAgreement(const std::vector<int>& InterRaterSetting,
                                                         const PassParts& parts,
                                                         std::string& message);

// The ratings in memory and the walk over their pairs.
class AgreementPass {
 public:
  // The probabilities of a target's ratings are kept while its pairs are formed, as far as they
  // fit into so many numbers; those of the rest are worked out again for each pair.
  static constexpr std::size_t kKeptProbabilities = 1 << 20;

  // The parts and the plan must outlive the pass.
  AgreementPass(const PassParts& parts, const AgreementPlan& plan,
                std::size_t keptProbabilities = kKeptProbabilities);

  // Room for `count` ratings.  False when there is none.
  [[nodiscard]] bool Allocate(std::int64_t count);
  // Reads the observations and keeps those that count: read, not ignored, by a rater.
  void Load();
  std::int64_t loaded() const { return static_cast<std::int64_t>(ratings_.size()); }
  // Puts the ratings of each target side by side.
  void Sort();
  // All pairs, into `agreement`; ends early at Ctrl+F, and when the run is to stop.
  void Walk(RaterAgreement& agreement);

 private:
  struct Rating {
    float MeasureSum = 0.0f;
    float weight = 0.0f;
    std::int32_t scale = 0;
    std::int32_t rater = 0;     // slot
    std::int16_t category = 0;  // as scored: ordered, from the lowest category of the scale on
    bool inPlay = false;        // otherwise the rating is certain
  };
  static_assert(sizeof(Rating) == 20);

  // The probabilities of a rating's scored categories low to top; none when it is certain.
  struct Chances {
    const float* probability = nullptr;
    int low = 0, top = 0;
  };
  // The sums of the walk, 64 bits.
  struct RaterSums {
    double opportunities = 0.0, exact = 0.0, expected = 0.0;
  };

  void SortBy(const std::vector<std::int32_t>& slots);
  bool SameTarget(std::int32_t a, std::int32_t b) const;
  std::size_t EndOfRun(std::size_t first) const;
  void BeginRun(std::size_t first, std::size_t end);
  void Evaluate(const Rating& rating, std::vector<float>& probability);
  Chances ChancesOf(std::size_t row, std::vector<float>& probability);
  void PairsOf(std::size_t row, std::size_t end, RaterAgreement& agreement);
  void AddPair(const Rating& a, const Rating& b, double chance, RaterAgreement& agreement);
  static double ChanceOfAgreement(const Rating& a, const Chances& ofA, const Rating& b,
                                  const Chances& ofB);
  void Finish(RaterAgreement& agreement) const;
  bool BreaksOff() const;

  const PassParts& parts_;
  const AgreementPlan& plan_;
  std::size_t keptProbabilities_;
  BlockKernel kernel_;
  KernelWork work_;  // of its own: what estimation left in the run's array stays
  std::vector<Rating> ratings_;
  std::vector<std::vector<std::int32_t>> matched_;  // by match field, then by rating: the slot
  std::vector<std::int32_t> order_, orderBefore_;
  std::vector<RaterSums> raters_;

  // The run of one target's ratings: the probabilities of the first so many.
  std::size_t runFirst_ = 0, runKept_ = 0;
  std::vector<float> runProbability_;
  std::vector<float> probabilityA_, probabilityB_;  // of ratings that are not kept
};

// A step of the run; it does nothing without `Inter-rater=`.
void ComputeAgreement(Run& run);

}  // namespace flanks

#endif  // FLANKS_STATS_AGREEMENT_H
