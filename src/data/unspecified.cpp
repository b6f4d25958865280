#include "data/unspecified.h"

#include <algorithm>

namespace flanks {

void UnspecifiedElements::AddNumber(FlankNo flank, std::int64_t number, std::string_view text) {
  const std::uint64_t key = NumberKey(flank, number);
  if (full() || numbers_.contains(key)) return;
  numbers_.insert(key);
  list_.push_back({flank, number, std::string(text)});
}

void UnspecifiedElements::AddLabel(FlankNo flank, std::string_view text) {
  key_.assign(std::to_string(flank.number())).append(":").append(text);
  if (full() || labels_.contains(key_)) return;
  labels_.insert(key_);
  list_.push_back({flank, kNoNumber, std::string(text)});
}

std::vector<UnspecifiedElement> UnspecifiedElements::Take(const FlankTable& flanks,
                                                          std::int64_t nullElement) {
  Column<FlankNo, std::int64_t> next(flanks.FlankHigh.rows());
  for (const FlankNo f : Upward(next)) next[f] = std::int64_t{flanks.FlankHigh[f]} + 1;
  for (UnspecifiedElement& element : list_) {
    if (element.number != kNoNumber) continue;
    std::int64_t& number = next[element.flank];
    while (number == nullElement || numbers_.contains(NumberKey(element.flank, number))) ++number;
    element.number = number++;
  }
  std::sort(list_.begin(), list_.end());
  numbers_.clear();
  labels_.clear();
  return std::move(list_);
}

}  // namespace flanks
