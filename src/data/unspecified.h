// The elements that were met in the data and are not in `Labels=`.
//
// Each is kept once, however often it comes.  Elements read by number have their number; labels,
// which have none, are numbered when the pass has ended: from the number behind the Flank's last
// one upward, in the order of their first appearance, past numbers that are taken.  So the list can
// be pasted into a Specification.  The list stops at the number of elements that `Labels=` takes:
// it does not grow with a long file.
//
// Tested by tests/unit/data/unspecified_test.cpp.
#ifndef FLANKS_DATA_UNSPECIFIED_H
#define FLANKS_DATA_UNSPECIFIED_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "run/data_counts.h"
#include "run/design.h"

namespace flanks {

class UnspecifiedElements {
 public:
  static constexpr std::size_t kMost = 4000000;

  // Adds an element, unless it is there.  `text` is what stood in the data.
  void AddNumber(FlankNo flank, std::int64_t number, std::string_view text);
  void AddLabel(FlankNo flank, std::string_view text);

  // Numbers the labels, sorts by Flank, number and text, and hands the list over.
  std::vector<UnspecifiedElement> Take(const FlankTable& flanks, std::int64_t nullElement);

 private:
  static constexpr std::int64_t kNoNumber = -1;

  static std::uint64_t NumberKey(FlankNo flank, std::int64_t number) {
    return static_cast<std::uint64_t>(flank.number()) << 32 | static_cast<std::uint64_t>(number);
  }
  bool full() const { return list_.size() >= kMost; }

  std::vector<UnspecifiedElement> list_;
  std::unordered_set<std::uint64_t> numbers_;  // Flank and number
  std::unordered_set<std::string> labels_;     // Flank, a colon, text
  std::string key_;                            // of a label
};

}  // namespace flanks

#endif  // FLANKS_DATA_UNSPECIFIED_H
