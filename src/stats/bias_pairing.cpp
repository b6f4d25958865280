#include "stats/bias_pairing.h"

#include <algorithm>

namespace flanks {
namespace {

// The elements of all terms, in the order in which they are compared: the last position of the
// context first, the target at the end.
class TermElements {
 public:
  TermElements(const BiasResults& results, std::size_t target)
      : width_(results.list.positions()),
        slots_(width_ * static_cast<std::size_t>(results.terms.rows())) {
    std::vector<ElementSlot> elements;
    for (const BiasTermRow term : Upward(results.terms)) {
      results.list.FillElements(term, elements);
      std::int32_t* to = slots_.data() + term.offset() * width_;
      for (std::size_t which = elements.size(); which-- > 0;)
        if (which != target) *to++ = elements[which].number();
      *to = elements[target].number();
    }
  }
  std::span<const std::int32_t> of(BiasTermRow term) const {
    return std::span(slots_).subspan(term.offset() * width_, width_);
  }
  bool SameContext(BiasTermRow a, BiasTermRow b) const {
    return std::ranges::equal(of(a).first(width_ - 1), of(b).first(width_ - 1));
  }

 private:
  std::size_t width_;
  std::vector<std::int32_t> slots_;
};

}  // namespace

BiasPairing::BiasPairing(const BiasResults& results, std::size_t target) {
  const TermElements elements(results, target);
  for (const BiasTermRow term : Upward(results.terms))
    if (results.terms[term].standing != BiasStanding::none) terms_.push_back(term);
  std::sort(terms_.begin(), terms_.end(), [&](BiasTermRow a, BiasTermRow b) {
    return std::ranges::lexicographical_compare(elements.of(a), elements.of(b));
  });
  for (std::size_t i = 0; i < terms_.size(); ++i)
    if (i == 0 || !elements.SameContext(terms_[i - 1], terms_[i])) starts_.push_back(i);
  starts_.push_back(terms_.size());
  for (std::size_t which = 0; which < contexts(); ++which) {
    const auto count = static_cast<std::int64_t>(context(which).size());
    pairs_ += count * (count - 1) / 2;
  }
}

}  // namespace flanks
