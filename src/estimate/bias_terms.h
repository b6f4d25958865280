// The terms of a bias analysis: which interactions are asked for, and which combinations of
// elements the data have.
//
// An *interaction* is a set of two or more positions that a model statement marks with "B"; each
// distinct set is one, in the order of the first statement that has it.  An observation belongs to
// an interaction when its own statement marks exactly these positions, and, in play with all its
// elements, it belongs to the *term* of its elements in them.  One "B" alone asks for nothing.  A
// position that a statement ignores or takes as a dummy has no element and is in no set; an
// observation without an element in one of the positions belongs to no term.
//
// Terms are numbered from 1 in the order of their keys.  A key is a number in mixed radix with a
// digit for each position: the element's slot from the first slot of its Flank on, the first
// position the lowest digit.  Keys have 64 bits.  Where the digits of many positions do not fit,
// the upper ones are first replaced by the place of their combination among those that occur, which
// changes no order.
//
//   for (const BiasInteraction& interaction : BiasInteractionsOf(design)) {
//     BiasTermList terms(parts, interaction);
//     terms.Find(reader);                              // a pass, as a rule one
//     ... terms.FillTerms(reader, termOf);             // for each block of a later pass
//
// Tested by tests/unit/estimate/bias_terms_test.cpp; timed by bench/bench_bias.cpp.
#ifndef FLANKS_ESTIMATE_BIAS_TERMS_H
#define FLANKS_ESTIMATE_BIAS_TERMS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/key_index.h"
#include "estimate/observation.h"

namespace flanks {

struct BiasTermTag {
  static constexpr std::int32_t first = 1;
};
using BiasTermRow = Row<BiasTermTag>;  // 1 .. terms; in the order of their keys

struct BiasInteraction {
  int number = 1;                          // 1 for the first of the run
  std::vector<Position> positions;         // ascending, two or more
  Column<ModelRow, std::uint8_t> marksIt;  // by statement: its observations belong here
};
std::vector<BiasInteraction> BiasInteractionsOf(const Design& design);

class BiasTermList {
 public:
  static constexpr std::int32_t kNoTerm = 0;

  // `parts` are not kept.
  BiasTermList(const PassParts& parts, const BiasInteraction& interaction);

  // Finds the terms in a pass over all observations, or several.  Ends early when the run is to
  // stop.
  void Find(ObservationReader& reader);

  std::int32_t count() const { return levels_.empty() ? 0 : levels_.back().keys.count(); }
  std::size_t positions() const { return digits_.size(); }
  // The element of a term in position `which` of the interaction, from 0 on.
  ElementSlot element(BiasTermRow term, std::size_t which) const;
  // The elements of a term, in the order of the positions.
  void FillElements(BiasTermRow term, std::vector<ElementSlot>& elements) const;

  // The term of each observation of the reader's block, kNoTerm for none; `terms` has room for a
  // block.  No allocation.  A term that Find has not met is a fault of the program.
  void FillTerms(const ObservationReader& reader, std::span<std::int32_t> terms);

 private:
  struct Digit {
    std::size_t field = 0;  // of the element records
    ElementSlot firstSlot;
    std::uint64_t radix = 1;
  };
  // The digits first to last of a key, the last the highest, with the place of the digits above.
  struct Level {
    std::size_t first = 0, last = 0;
    KeyIndex keys;
  };

  void AddLevel();
  void FillKeys(const ObservationReader& reader, std::size_t levels);
  void FillAbsent(const ObservationReader& reader);
  void AppendDigit(const ObservationBlock& block, const Digit& digit);

  std::vector<Digit> digits_;          // by position of the interaction
  bool complete_ = true;               // every position has elements
  std::vector<std::uint8_t> belongs_;  // by structure
  bool allBelong_ = true;
  std::vector<Level> levels_;         // the one with the highest digits first
  std::vector<std::uint64_t> keys_;   // of the block at work
  std::vector<std::uint8_t> absent_;  // likewise: 1 for an observation without a term
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_BIAS_TERMS_H
