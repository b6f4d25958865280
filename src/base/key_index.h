// Numbering distinct 64-bit keys: which keys there are, and the place of each in their order.
//
//   KeyIndex keys(span);                    // all keys are below `span`
//   for (...) keys.Insert(key);             // any order, any number of times
//   keys.Number();                          // from here on nothing is inserted
//   keys.Find(key)                          // 0 for the smallest key, -1 for one that is not there
//
// A small span has a table with a cell for each possible key, which a look-up reads once.  A large
// one has a table of keys at scattered places, at most half full, so that a look-up takes a step
// or two however many keys there are (D. E. Knuth, The Art of Computer Programming, volume 3,
// section 6.4: open addressing with linear probing).  Memory depends on the keys alone, not on how
// often they come.
//
// Tested by tests/unit/base/key_index_test.cpp.
#ifndef FLANKS_BASE_KEY_INDEX_H
#define FLANKS_BASE_KEY_INDEX_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace flanks {

class KeyIndex {
 public:
  explicit KeyIndex(std::uint64_t span);

  void Insert(std::uint64_t key);
  void Number();

  std::int32_t count() const { return static_cast<std::int32_t>(keys_.size()); }
  // The key at a place, ascending.
  std::uint64_t key(std::int32_t place) const { return keys_[static_cast<std::size_t>(place)]; }

  // Fetches what Find will look at first: keys that come in no order wait for memory otherwise.
  void Prefetch(std::uint64_t key) const {
    if (!cells_.empty()) {
      __builtin_prefetch(&cells_[static_cast<std::size_t>(key)]);
    } else {
      __builtin_prefetch(&scattered_[PlaceOf(key)]);
    }
  }

  std::int32_t Find(std::uint64_t key) const {
    if (!cells_.empty()) return cells_[static_cast<std::size_t>(key)];
    std::size_t at = PlaceOf(key);
    while (scattered_[at].number != kNone && scattered_[at].key != key) at = (at + 1) & mask_;
    return scattered_[at].number;
  }

 private:
  static constexpr std::int32_t kNone = -1;
  struct Entry {
    std::uint64_t key = 0;
    std::int32_t number = kNone;
  };

  // Fibonacci hashing: the upper bits of a product with 2^64 over the golden ratio.
  std::size_t PlaceOf(std::uint64_t key) const {
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15u) >> shift_);
  }
  void Scatter(std::uint64_t key, std::int32_t number);
  void MakeRoom(int bits);

  std::vector<std::int32_t> cells_;  // by key; none where the span is large
  std::vector<Entry> scattered_;
  std::size_t mask_ = 0;
  int shift_ = 64;
  std::size_t inserted_ = 0;
  std::vector<std::uint64_t> keys_;  // ascending
};

}  // namespace flanks

#endif  // FLANKS_BASE_KEY_INDEX_H
