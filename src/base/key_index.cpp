#include "base/key_index.h"

#include <algorithm>
#include <stdexcept>

namespace flanks {
namespace {

constexpr std::uint64_t kLargestTable = std::uint64_t{1} << 22;  // cells of four bytes
constexpr int kFirstBits = 12;
constexpr std::int32_t kPresent = 0;  // until the keys are numbered

}  // namespace

KeyIndex::KeyIndex(std::uint64_t span) {
  if (span <= kLargestTable) {
    cells_.assign(static_cast<std::size_t>(std::max<std::uint64_t>(span, 1)), kNone);
  } else {
    MakeRoom(kFirstBits);
  }
}

void KeyIndex::MakeRoom(int bits) {
  scattered_.assign(std::size_t{1} << bits, Entry{});
  mask_ = scattered_.size() - 1;
  shift_ = 64 - bits;
}

void KeyIndex::Scatter(std::uint64_t key, std::int32_t number) {
  std::size_t at = PlaceOf(key);
  while (scattered_[at].number != kNone && scattered_[at].key != key) at = (at + 1) & mask_;
  if (scattered_[at].number == kNone) ++inserted_;
  scattered_[at] = {key, number};
}

void KeyIndex::Insert(std::uint64_t key) {
  if (!cells_.empty()) {
    cells_[static_cast<std::size_t>(key)] = kPresent;
    return;
  }
  Scatter(key, kPresent);
  if (inserted_ * 2 <= scattered_.size()) return;
  const std::vector<Entry> former = std::move(scattered_);
  MakeRoom(64 - shift_ + 1);
  inserted_ = 0;
  for (const Entry& entry : former)
    if (entry.number != kNone) Scatter(entry.key, kPresent);
}

void KeyIndex::Number() {
  keys_.clear();
  for (std::size_t key = 0; key < cells_.size(); ++key)
    if (cells_[key] != kNone) keys_.push_back(key);
  for (const Entry& entry : scattered_)
    if (entry.number != kNone) keys_.push_back(entry.key);
  if (keys_.size() > static_cast<std::size_t>(INT32_MAX))
    throw std::length_error("more than 2,147,483,647 combinations of elements");
  std::sort(keys_.begin(), keys_.end());
  for (std::size_t number = 0; number < keys_.size(); ++number) {
    if (!cells_.empty()) {
      cells_[static_cast<std::size_t>(keys_[number])] = static_cast<std::int32_t>(number);
    } else {
      Scatter(keys_[number], static_cast<std::int32_t>(number));
    }
  }
}

}  // namespace flanks
