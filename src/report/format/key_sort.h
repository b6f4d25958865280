// The sorters: an array of keys sorted in memory, and the lines of a text file.
//
// Keys (sort_key.h) are texts of one length, which the first key fixes; another length is a fault
// of the program whose words the caller gives, because each kind of sort has its own number.  While
// keys come in they are compared with the one before, and when all came in ascending order the sort
// is skipped.
//
//   KeyArray keys(kTable7SortLength);
//   for (...) keys.Add(key);
//   keys.Sort(isStopping);
//   for (const std::string& key : keys) ...
//
// `vsort` is Shell's sort (D. L. Shell, A High-Speed Sorting Procedure, Communications of the ACM
// 2, 1959) with the gaps 1, 4, 13, 40 ... of D. E. Knuth (The Art of Computer Programming, volume
// 3, section 5.2.1).  It is not stable: keys end in their record number, so no two are equal.
//
// Tested by tests/unit/report/format/key_sort_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_KEY_SORT_H
#define FLANKS_REPORT_FORMAT_KEY_SORT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

// Whether the run is to stop; an empty one never says so.
using StopTest = std::function<bool()>;

// The gaps of a sort of `count` keys, the largest first, 1 last.
std::vector<std::int32_t> SortGaps(std::int32_t count);

// Sorts the first `count` keys by their first `keyLength` bytes, ascending.  Does nothing when the
// run is to stop.  More keys than the array holds are a fault of the program.
void vsort(std::span<std::string> keys, std::int32_t count, std::size_t keyLength,
           const StopTest& isStopping = {});

class KeyArray {
 public:
  static constexpr std::int32_t kRoom = 1000;  // to begin with, and at each growth

  // `lengthFault`: the whole failure text for a key of another length, without contact sentence.
  explicit KeyArray(std::string_view lengthFault) : lengthFault_(lengthFault), keys_(kRoom) {}

  void Add(std::string_view key);
  // Sorts unless the keys came in ascending order.
  void Sort(const StopTest& isStopping = {});

  std::int32_t count() const { return count_; }
  std::int32_t upperBound() const { return static_cast<std::int32_t>(keys_.size()); }
  std::size_t keyLength() const { return keyLength_; }
  bool isAscending() const { return ascending_; }

  // Key `number`, 1 to count().
  const std::string& operator[](std::int32_t number) const {
    return keys_[static_cast<std::size_t>(number - 1)];
  }
  auto begin() const { return keys_.begin(); }
  auto end() const { return keys_.begin() + count_; }

 private:
  std::string lengthFault_;
  std::vector<std::string> keys_;
  std::int32_t count_ = 0;
  std::size_t keyLength_ = 0;
  bool ascending_ = true;
};

// Sorts lines by their bytes from column `column` on (1 is the first; 0 too means the whole line).
// Lines that are equal there keep their order; a line that ends before the column comes first.
void SortLines(std::vector<std::string>& lines, int column);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_KEY_SORT_H
