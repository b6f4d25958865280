// The passes that estimate bias terms: each observation of a term is evaluated at its measure sum
// plus the term's bias; measures and thresholds stay as they are.
//
//   First     at no bias: scores, counts, expected scores and information of each term
//   Expected  at the present biases: expected scores alone
//
// A pass has the form of all passes: read a block, find the term of each observation, evaluate in
// batches, add in record order in 64 bits.  No allocation in a pass.
//
// Tested by tests/unit/estimate/bias_test.cpp; timed by bench/bench_bias.cpp.
#ifndef FLANKS_ESTIMATE_BIAS_PASS_H
#define FLANKS_ESTIMATE_BIAS_PASS_H

#include <cstdint>
#include <vector>

#include "base/block_moments.h"
#include "estimate/bias_step.h"
#include "estimate/bias_terms.h"
#include "estimate/block_kernel.h"
#include "estimate/observation.h"

namespace flanks {

// The measures of a block's observations with the biases of their terms, by lane of the kernel, and
// what the kernel makes of them.
class BiasBlock {
 public:
  BiasBlock(const PassParts& parts, BiasTermList& terms);

  // At the head of a pass.
  void Begin();
  // For each block: arranges it, finds the terms and adds their biases; null: none are added.
  void Arrange(const ObservationReader& reader, const Column<BiasTermRow, BiasState>* states);

  BlockKernel& kernel() { return kernel_; }
  std::int32_t term(std::size_t i) const { return terms_[i]; }  // by entry of the block
  float measure(std::size_t lane) const { return measures_[lane]; }
  const float* measures() const { return measures_.data(); }
  // The lane of an entry that feeds estimation.
  std::size_t lane(std::size_t i) const { return laneOf_[i]; }
  // Before entry i is added to its row: fetches that of a later entry.  Terms come in no order, and
  // each row would wait for memory.
  template <class T>
  void FetchAhead(std::size_t i, std::size_t count, const Column<BiasTermRow, T>& rows) const {
    constexpr std::size_t kAhead = 32;
    if (i + kAhead >= count || terms_[i + kAhead] == BiasTermList::kNoTerm) return;
    __builtin_prefetch(rows.data() + terms_[i + kAhead] - 1, 1);
  }
  // Fills expected scores by lane, and with `variance` the variances.
  void Evaluate(float* expected, float* variance);

 private:
  PassParts parts_;
  BiasTermList& termList_;
  BlockKernel kernel_;
  std::vector<std::int32_t> terms_;
  std::vector<std::size_t> laneOf_;
  std::vector<float> measures_;
};

class BiasPass {
 public:
  // `parts` and `terms` must outlive it.
  BiasPass(const PassParts& parts, BiasTermList& terms);

  // Both add to sums that the caller has cleared, and end early when the run is to stop.
  void First(ObservationReader& reader, Column<BiasTermRow, BiasFirstSums>& sums);
  // The residuals of the observations of terms without bias, of the first pass.
  const BlockSummary<1>& residuals() const { return residuals_.summary(); }
  void Expected(ObservationReader& reader, Column<BiasTermRow, BiasState>& states);

 private:
  PassParts parts_;
  BiasBlock block_;
  std::vector<float> expected_, variance_;  // by lane
  BlockSums<1> residuals_;
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_BIAS_PASS_H
