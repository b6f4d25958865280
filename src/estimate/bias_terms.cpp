#include "estimate/bias_terms.h"

#include <algorithm>

#include "base/program_fault.h"
#include "run/messages.h"

namespace flanks {
namespace {

constexpr std::uint64_t kLargestSpan = std::uint64_t{1} << 62;
constexpr std::size_t kAhead = 32;  // keys; what a look-up takes, times that, is longer than memory

std::vector<Position> MarkedPositions(const Design& design, ModelRow model) {
  std::vector<Position> positions;
  for (Position position(1); position.number() <= design.ModelFlankCount; ++position) {
    const PositionReference& reference = design.models.reference(model, position);
    if (reference.bias && reference.measures()) positions.push_back(position);
  }
  return positions;
}

// A combination that the pass before did not meet: the work files have changed.
std::int32_t PlaceOf(const KeyIndex& keys, std::uint64_t key) {
  const std::int32_t place = keys.Find(key);
  if (place < 0) throw ProgramFault(std::string(message::kBiasSort));
  return place;
}

}  // namespace

std::vector<BiasInteraction> BiasInteractionsOf(const Design& design) {
  std::vector<BiasInteraction> interactions;
  for (const ModelRow model : Upward(design.models.ModelWeight)) {
    const std::vector<Position> positions = MarkedPositions(design, model);
    if (positions.size() < 2) continue;
    auto same = std::find_if(interactions.begin(), interactions.end(),
                             [&](const BiasInteraction& i) { return i.positions == positions; });
    if (same == interactions.end()) {
      BiasInteraction added;
      added.number = static_cast<int>(interactions.size()) + 1;
      added.positions = positions;
      added.marksIt.assign(design.models.ModelWeight.rows(), 0);
      interactions.push_back(std::move(added));
      same = interactions.end() - 1;
    }
    same->marksIt[model] = 1;
  }
  return interactions;
}

BiasTermList::BiasTermList(const PassParts& parts, const BiasInteraction& interaction)
    : keys_(kKernelBlock), absent_(kKernelBlock) {
  const std::vector<ElementLayout::Field>& fields = parts.work.layout.fields;
  for (const Position position : interaction.positions) {
    const auto field =
        std::find_if(fields.begin(), fields.end(),
                     [&](const ElementLayout::Field& f) { return f.position == position; });
    if (field == fields.end()) {
      complete_ = false;
      continue;
    }
    digits_.push_back({static_cast<std::size_t>(field - fields.begin()), field->firstSlot,
                       static_cast<std::uint64_t>(std::max(field->count, 1))});
  }
  for (const StructureRow structure : Upward(parts.structures.structureModel)) {
    belongs_.push_back(interaction.marksIt[parts.structures.structureModel[structure]]);
    allBelong_ = allBelong_ && belongs_.back() != 0;
  }
}

// The next digits downward, as many as fit beside the place of those above.
void BiasTermList::AddLevel() {
  const std::size_t last = levels_.empty() ? digits_.size() - 1 : levels_.back().first - 1;
  std::uint64_t span =
      levels_.empty() ? 1 : std::max<std::uint64_t>(static_cast<std::uint64_t>(count()), 1);
  std::size_t first = last + 1;
  while (first > 0 && span <= kLargestSpan / digits_[first - 1].radix)
    span *= digits_[--first].radix;
  levels_.push_back({first, last, KeyIndex(span)});
}

void BiasTermList::Find(ObservationReader& reader) {
  levels_.clear();
  while (complete_ && (levels_.empty() || levels_.back().first > 0)) {
    AddLevel();
    KeyIndex& keys = levels_.back().keys;
    reader.Begin(Categories::wanted);
    while (reader.Next()) {
      FillKeys(reader, levels_.size());
      for (std::size_t i = 0; i < reader.block().count; ++i)
        if (absent_[i] == 0) keys.Insert(keys_[i]);
    }
    keys.Number();
  }
}

void BiasTermList::FillAbsent(const ObservationReader& reader) {
  const ObservationBlock& block = reader.block();
  if (block.usual && allBelong_) {
    std::fill_n(absent_.begin(), block.count, 0);
    return;
  }
  for (std::size_t i = 0; i < block.count; ++i) {
    bool present = block.state[i] == ObservationState::inPlay &&
                   belongs_[static_cast<std::size_t>(block.structure[i])] != 0;
    for (const Digit& digit : digits_) present = present && block.slots[digit.field][i] != 0;
    absent_[i] = present ? 0 : 1;
  }
}

// An absent observation gets a digit of 0, which stays below the span.
void BiasTermList::AppendDigit(const ObservationBlock& block, const Digit& digit) {
  const std::int32_t* const slots = block.slots[digit.field].data();
  for (std::size_t i = 0; i < block.count; ++i) {
    const std::int32_t offset = absent_[i] != 0 ? 0 : slots[i] - digit.firstSlot.number();
    keys_[i] = keys_[i] * digit.radix + static_cast<std::uint32_t>(offset);
  }
}

// The keys of the block's observations on the last of the first `levels` levels.
void BiasTermList::FillKeys(const ObservationReader& reader, std::size_t levels) {
  const ObservationBlock& block = reader.block();
  FillAbsent(reader);
  std::fill_n(keys_.begin(), block.count, 0);
  for (std::size_t level = 0; level < levels; ++level) {
    if (level > 0) {
      const KeyIndex& above = levels_[level - 1].keys;
      for (std::size_t i = 0; i < block.count; ++i)
        keys_[i] = absent_[i] != 0 ? 0 : static_cast<std::uint32_t>(PlaceOf(above, keys_[i]));
    }
    for (std::size_t digit = levels_[level].last + 1; digit-- > levels_[level].first;)
      AppendDigit(block, digits_[digit]);
  }
}

void BiasTermList::FillTerms(const ObservationReader& reader, std::span<std::int32_t> terms) {
  if (levels_.empty()) {
    std::fill_n(terms.begin(), reader.block().count, kNoTerm);
    return;
  }
  FillKeys(reader, levels_.size());
  const KeyIndex& keys = levels_.back().keys;
  const std::size_t count = reader.block().count;
  for (std::size_t i = 0; i < count; ++i) {
    if (i + kAhead < count) keys.Prefetch(keys_[i + kAhead]);
    terms[i] = absent_[i] != 0 ? kNoTerm : PlaceOf(keys, keys_[i]) + 1;
  }
}

void BiasTermList::FillElements(BiasTermRow term, std::vector<ElementSlot>& elements) const {
  elements.resize(digits_.size());
  std::int32_t place = static_cast<std::int32_t>(term.offset());
  for (std::size_t level = levels_.size(); level-- > 0;) {
    std::uint64_t key = levels_[level].keys.key(place);
    for (std::size_t digit = levels_[level].first; digit <= levels_[level].last; ++digit) {
      const auto offset = static_cast<std::int32_t>(key % digits_[digit].radix);
      elements[digit] = digits_[digit].firstSlot + offset;
      key /= digits_[digit].radix;
    }
    place = static_cast<std::int32_t>(key);
  }
}

ElementSlot BiasTermList::element(BiasTermRow term, std::size_t which) const {
  std::vector<ElementSlot> elements;
  FillElements(term, elements);
  return elements[which];
}

}  // namespace flanks
