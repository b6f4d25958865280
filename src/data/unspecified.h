// The elements that were met in the data and are not in `Labels=`.
//
// Each is kept once, however often it comes.  Elements read by number have their number; labels,
// which have none, are numbered when the pass has ended: from the number behind the Flank's last
// one upward, in the order of their first appearance, past numbers that are taken; when the largest
// element number has been given, the lowest free ones follow.  So the list can be pasted into a
// Specification.
//
// The list does not grow with a long file: it stops at the number of elements that `Labels=` takes,
// and at a hundred megabytes of text.  An element costs about 60 bytes and what its text has beyond
// 15; which elements are there is looked up in a table of places in the list.
//
// Tested by tests/unit/data/unspecified_test.cpp.
#ifndef FLANKS_DATA_UNSPECIFIED_H
#define FLANKS_DATA_UNSPECIFIED_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/data_counts.h"
#include "run/design.h"
#include "spec/element_finder.h"

namespace flanks {

class UnspecifiedElements {
 public:
  struct Limits {
    std::size_t elements = 4'000'000;
    std::size_t textBytes = 100'000'000;
  };
  UnspecifiedElements() : UnspecifiedElements(Limits{}) {}
  explicit UnspecifiedElements(Limits limits);

  // Adds an element, unless it is there.  `text` is what stood in the data.
  void AddNumber(FlankNo flank, std::int64_t number, std::string_view text);
  void AddLabel(FlankNo flank, std::string_view text);

  // Whether elements were left out because the list was full.
  bool cut() const { return cut_; }
  // Numbers the labels, sorts by Flank, number and text, and hands the list over.
  // `finder` knows the elements of the same Flanks.
  std::vector<UnspecifiedElement> Take(const FlankTable& flanks, ElementFinder& finder,
                                       std::int64_t nullElement);

 private:
  static constexpr std::int64_t kNoNumber = -1;

  // An element is known by its Flank and its number or, without a number, its text.
  struct Key {
    FlankNo flank;
    std::int64_t number;
    std::string_view text;
  };
  static std::size_t HashOf(const Key& key);
  static bool Is(const UnspecifiedElement& element, const Key& key);
  std::int64_t FreeNumber(FlankNo flank, std::int64_t from, ElementFinder& finder,
                          std::int64_t nullElement) const;
  std::size_t PlaceOf(const Key& key) const;
  bool Has(const Key& key) const { return places_[PlaceOf(key)] >= 0; }
  void Add(const Key& key, std::string_view text);
  void Rehash();

  Limits limits_;
  std::vector<UnspecifiedElement> list_;
  std::vector<std::int32_t> places_;  // open addressing over the list; -1: free
  std::size_t textBytes_ = 0;
  bool cut_ = false;
};

}  // namespace flanks

#endif  // FLANKS_DATA_UNSPECIFIED_H
