#include "stats/unexpected_list.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace flanks {

bool ComesBefore(const KeptResponse& a, const KeptResponse& b) {
  const float sizeOfA = std::abs(a.StRes), sizeOfB = std::abs(b.StRes);
  if (sizeOfA != sizeOfB) return sizeOfA > sizeOfB;
  const bool negative = std::signbit(a.StRes);
  if (negative != std::signbit(b.StRes)) return !negative;
  return negative ? a.sequence > b.sequence : a.sequence < b.sequence;
}

UnexpectedList::UnexpectedList(float Unexpected, std::int32_t T4maximum, int width)
    : keeps_(T4maximum > 0) {
  list_.Unexpected = Unexpected;
  list_.T4maximum = T4maximum;
  list_.width = width;
}

void UnexpectedList::Put(std::uint32_t place, const KeptResponse& response,
                         std::span<const ElementSlot> elements) {
  list_.rows[place] = response;
  const std::size_t first = static_cast<std::size_t>(place) * elements.size();
  std::copy(elements.begin(), elements.end(),
            list_.elements.begin() + static_cast<std::ptrdiff_t>(first));
}

void UnexpectedList::Add(const KeptResponse& response, std::span<const ElementSlot> elements) {
  const auto room = static_cast<std::size_t>(list_.T4maximum);
  if (list_.rows.size() < room) {
    list_.rows.push_back(response);
    list_.elements.insert(list_.elements.end(), elements.begin(), elements.end());
    return;
  }
  const auto before = [this](std::uint32_t a, std::uint32_t b) {
    return ComesBefore(list_.rows[a], list_.rows[b]);
  };
  if (heap_.empty()) {
    heap_.resize(room);
    std::iota(heap_.begin(), heap_.end(), 0u);
    std::make_heap(heap_.begin(), heap_.end(), before);
  }
  if (!ComesBefore(response, list_.rows[heap_.front()])) {
    ++list_.dropped;
    return;
  }
  std::pop_heap(heap_.begin(), heap_.end(), before);
  Put(heap_.back(), response, elements);
  std::push_heap(heap_.begin(), heap_.end(), before);
}

UnexpectedResponses UnexpectedList::Finish() {
  std::vector<std::uint32_t> order(list_.rows.size());
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
    return ComesBefore(list_.rows[a], list_.rows[b]);
  });
  std::vector<KeptResponse> rows;
  std::vector<ElementSlot> elements;
  rows.reserve(order.size());
  elements.reserve(list_.elements.size());
  for (const std::uint32_t place : order) {
    rows.push_back(list_.rows[place]);
    const std::span<const ElementSlot> ofRow = list_.ElementsOf(place);
    elements.insert(elements.end(), ofRow.begin(), ofRow.end());
  }
  list_.rows = std::move(rows);
  list_.elements = std::move(elements);
  list_.filled = true;
  return std::move(list_);
}

}  // namespace flanks
