#include "report/format/key_sort.h"

#include <algorithm>
#include <utility>

#include "base/program_fault.h"
#include "base/text.h"

namespace flanks {
namespace {

constexpr std::string_view kUpperBoundFault = "Failure (9)! Array7 Ubound problem in vsort.";

// One pass of Shell's sort: afterwards keys that stand `gap` apart are in order.
void InsertAtGap(std::span<std::string> keys, std::size_t keyLength, std::size_t gap) {
  const auto before = [keyLength](std::string_view a, std::string_view b) {
    return a.substr(0, keyLength) < b.substr(0, keyLength);
  };
  for (std::size_t at = gap; at < keys.size(); ++at) {
    if (!before(keys[at], keys[at - gap])) continue;
    std::string key = std::move(keys[at]);
    std::size_t place = at;
    do {
      keys[place] = std::move(keys[place - gap]);
      place -= gap;
    } while (place >= gap && before(key, keys[place - gap]));
    keys[place] = std::move(key);
  }
}

}  // namespace

std::vector<std::int32_t> SortGaps(std::int32_t count) {
  // The largest power of 3 within twice the count, halved: 1, 4, 13, 40, 121 ...
  std::int64_t power = 1;
  while (power * 3 <= 2 * std::int64_t{count}) power *= 3;
  std::vector<std::int32_t> gaps;
  for (auto gap = static_cast<std::int32_t>(power / 2); gap > 1; gap /= 3) gaps.push_back(gap);
  gaps.push_back(1);
  return gaps;
}

void vsort(std::span<std::string> keys, std::int32_t count, std::size_t keyLength,
           const StopTest& isStopping) {
  const auto used = static_cast<std::size_t>(std::max(count, 0));
  if (used > keys.size()) throw ProgramFault(std::string(kUpperBoundFault));
  if (isStopping && isStopping()) return;
  for (const std::int32_t gap : SortGaps(count)) {
    InsertAtGap(keys.first(used), keyLength, static_cast<std::size_t>(gap));
  }
}

void KeyArray::Add(std::string_view key) {
  if (count_ == 0) keyLength_ = key.size();
  if (key.size() != keyLength_) throw ProgramFault(lengthFault_);
  if (count_ == upperBound()) keys_.resize(keys_.size() + kRoom);
  const auto at = static_cast<std::size_t>(count_++);
  keys_[at] = key;
  if (at > 0 && keys_[at] < keys_[at - 1]) ascending_ = false;
}

void KeyArray::Sort(const StopTest& isStopping) {
  if (ascending_) return;
  vsort(keys_, count_, keyLength_, isStopping);
}

void SortLines(std::vector<std::string>& lines, int column) {
  const auto start = static_cast<std::size_t>(std::max(column, 1));
  std::stable_sort(lines.begin(), lines.end(), [start](const std::string& a, const std::string& b) {
    return Mid(a, start) < Mid(b, start);
  });
}

}  // namespace flanks
