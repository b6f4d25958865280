// The pairs of terms that a report contrasts: two elements of one position, the target, in one
// context, which is the elements of all other positions.
//
//   BiasPairing pairing(results, 0);              // the first position is the target
//   pairing.pairs()                               // how many there are
//   pairing.ForEachPair([&](BiasPair pair) { ...; return true; });
//
// Contexts stand in the order of their terms' keys (the last position counts most), the terms of a
// context in the order of the target's elements, and the first term of a pair comes before the
// second.  Terms without an estimate are in no pair.  Memory depends on the terms alone, however
// many pairs there are.
//
// Tested by tests/unit/stats/bias_pairing_test.cpp against a comparison of all terms.
#ifndef FLANKS_STATS_BIAS_PAIRING_H
#define FLANKS_STATS_BIAS_PAIRING_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "stats/bias_statistics.h"

namespace flanks {

struct BiasPair {
  BiasTermRow first, second;
};

class BiasPairing {
 public:
  // `target`: which position of the interaction, from 0 on.
  BiasPairing(const BiasResults& results, std::size_t target);

  std::int64_t pairs() const { return pairs_; }
  std::size_t contexts() const { return starts_.size() - 1; }
  // The terms of a context.
  std::span<const BiasTermRow> context(std::size_t which) const {
    return std::span(terms_).subspan(starts_[which], starts_[which + 1] - starts_[which]);
  }

  // Until `visit` gives false.
  template <class Visit>
  void ForEachPair(Visit visit) const {
    for (std::size_t which = 0; which < contexts(); ++which) {
      const std::span<const BiasTermRow> terms = context(which);
      for (std::size_t p = 0; p < terms.size(); ++p)
        for (std::size_t q = p + 1; q < terms.size(); ++q)
          if (!visit(BiasPair{terms[p], terms[q]})) return;
    }
  }

 private:
  std::vector<BiasTermRow> terms_;   // context after context
  std::vector<std::size_t> starts_;  // of each context in `terms_`, and their end
  std::int64_t pairs_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_STATS_BIAS_PAIRING_H
