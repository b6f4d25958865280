// Reading observations for a pass: from records of the work files to what the kernel wants.
//
// An observation is a response with the elements that stand in its positions.  Reading it gives
// the weight (replication times the statement's weight times the elements' weights), the scale, the
// ordered category, the elements, their measures' sum and the observation's state: whether all its
// elements are in play, one is extreme, and so on.  Only states `inPlay` and `oneExtreme` feed
// estimation.
//
// Observations come in blocks of up to kKernelBlock, each value in an array of its own.  The usual
// case (an element of the usual kind in every position, no weight, no reversed position) is decided
// for a block as a whole, which so needs no test for each record; the records of other blocks are
// treated one by one into the same arrays.
//
//   ObservationReader reader(parts);      // once: allocates
//   reader.Begin(Categories::wanted);     // at the head of each pass: looks up status and scales
//   while (reader.Next()) {               // the run is given its turn from time to time
//     const ObservationBlock& block = reader.block();
//     ...
//   }
//
// The measure sum of an observation runs over its positions from the last to the first.  A positive
// Flank adds its element's measure, a negative one subtracts it; a reversed position does the
// opposite.  The same element in a plain and in a reversed position cancels and drops out.  A
// position that the statement leaves empty, ignores (X) or takes as a dummy (@) holds no element
// here, whatever the record has.
//
// Tested by tests/unit/estimate/observation_test.cpp; timed by bench/bench_pass.cpp.
#ifndef FLANKS_ESTIMATE_OBSERVATION_H
#define FLANKS_ESTIMATE_OBSERVATION_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/record_reader.h"
#include "estimate/kernel.h"
#include "run/design.h"
#include "run/estimates.h"
#include "run/scale_tables.h"
#include "run/work_files.h"

namespace flanks {

struct Analysis;
class Console;

// What a pass over the observations works on.
struct PassParts {
  const Design& design;
  const StructureTable& structures;
  WorkFiles& work;
  ScaleTables& scales;
  Estimates& estimates;
  bool reversals = false;      // `Reversed=` is yes and some statement has a reversed position
  Console* console = nullptr;  // given its turn while a pass lasts; none in benchmarks
};
PassParts PassPartsOf(Analysis& analysis, Console& console);

enum class ObservationState : std::int8_t {
  inPlay = 1,        // all elements are in play
  oneExtreme = 2,    // one element is extreme or held
  ignored = -1,      // no scale to speak of, no weight, or no place for its category
  dropped = -2,      // an element is dropped or not in use
  manyExtreme = -3,  // two or more elements are extreme or held
  noneInPlay = -4,   // so many that no element in play is left, or no element at all
};
constexpr bool FeedsEstimation(ObservationState state) {
  return state == ObservationState::inPlay || state == ObservationState::oneExtreme;
}

// How a structure's statement takes the elements in one field of the element records.
struct FieldSense {
  std::int8_t sign = 0;  // +1 adds the measure, -1 subtracts it, 0: no element for this statement
  bool reversed = false;
};

// Observations firstRecord to firstRecord + count - 1: entry i of each array is one of them.
struct ObservationBlock {
  std::int64_t firstRecord = 1;
  std::size_t count = 0;
  bool usual = false;     // all: state inPlay, weight 1, an element in every field, none reversed
  bool oneScale = false;  // all on the scale of entry 0

  std::vector<std::int32_t> structure;  // StructureRow numbers
  std::vector<std::int32_t> scale;      // ScaleRow numbers
  std::vector<std::int16_t> response;   // the raw observation
  std::vector<std::int16_t> category;   // ordered; filled when wanted
  std::vector<float> weight;
  std::vector<float> MeasureSum;  // logits
  std::vector<ObservationState> state;
  // By field of the element records, in the order of the positions: the element's slot, 0 for none.
  std::vector<std::vector<std::int32_t>> slots;

  std::size_t fields() const { return slots.size(); }
};

enum class Categories : std::uint8_t { wanted, notWanted };

class ObservationReader {
 public:
  // The parts must outlive the reader.
  explicit ObservationReader(const PassParts& parts);

  void Begin(Categories categories);
  // Reads the next block.  False when there is none, or when the run is to stop.
  bool Next();
  const ObservationBlock& block() const { return block_; }
  const PassParts& parts() const { return parts_; }

  // By field, for a structure row's number.
  std::span<const FieldSense> sense(std::int32_t structure) const {
    return {senses_.data() + static_cast<std::size_t>(structure) * fields_, fields_};
  }
  // The position of a field.
  Position position(std::size_t field) const;

 private:
  // What is the same for all observations of a structure.
  struct StructureInfo {
    std::int32_t scale = 0;
    float weight = 1.0f;
    bool usual = false;      // weight 1, an element in every field, none reversed
    bool mayCancel = false;  // an element may stand in a plain and in a reversed position
  };

  void SetUpStructure(StructureRow structure);
  void MarkElements();
  void RecodeScales();
  void ReadUsual();
  bool UsualStructures();
  bool UsualStructure(std::int32_t structure);
  bool UsualManyStructures();
  bool UsualElements();
  void AddMeasures(std::size_t field, bool first);
  void FillCategories();
  void ReadOneByOne();
  void ReadObservation(std::size_t i);
  void CancelPairs(std::size_t i, std::span<const FieldSense> senses);
  ObservationState StateOf(std::size_t i) const;
  void TellIgnoredWeight(std::size_t i);

  PassParts parts_;
  std::size_t fields_;
  std::vector<StructureInfo> structures_;
  std::vector<FieldSense> senses_;  // by structure and field
  std::vector<float> fieldSign_;    // +1 or -1: of a field in usual structures
  // By scale: the ordered category of each raw one, -1 for no place.
  std::vector<std::array<std::int16_t, kCategories>> recode_;
  // By scale: nothing that the data hold makes an observation `ignored`.
  std::vector<std::uint8_t> everyCategoryHasPlace_;

  ObservationBlock block_;
  std::int64_t nextRecord_ = 1;
  Categories categories_ = Categories::wanted;
  bool allElementsUsual_ = false;
  int blocksUntilTurn_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_OBSERVATION_H
