// The order of Table 14's rows: the work record of a pair, which holds its two terms and a sort key
// by the letters of an `Arrange=` item.
//
// The letters are those of Table 13:
//
//   N n        the number of the first term, then that of the second
//   A a        the labels of the first term, from the last position to the first, then the label of
//              the second target
//   M m, F f   the contrast as it is shown; T t, Z z its t
//
// Small letters descend.  A pair with an extreme term stands apart, where its contrast would be if
// the extreme bias were without end: before all others when the first bias is the lower one, behind
// them when it is the higher one; two biases of the same extreme come last of all.  What the
// letters leave equal keeps the order of the pairing.
//
// A record is one line of hexadecimal digits and has the same length for all pairs of an order.
// Labels stand in it by their place in the alphabet of their Flank.
//
// Tested by tests/unit/report/table14_test.cpp.
#ifndef FLANKS_REPORT_TABLE14_SORT_H
#define FLANKS_REPORT_TABLE14_SORT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"
#include "stats/bias_measures.h"
#include "stats/bias_pairing.h"

namespace flanks {

// The column of a record from which on it is sorted.
constexpr std::size_t kPairSortColumn = 17;

class PairRecords {
 public:
  // `results` and `settings` must outlive it.
  PairRecords(const Analysis& analysis, const BiasResults& results, std::size_t target,
              std::string_view letters);

  // Valid until the next call.
  std::string_view RecordOf(BiasPair pair, const PairFigures& figures);
  static BiasPair PairOf(std::string_view record);

 private:
  void AppendLabels(BiasPair pair, bool descending);
  void AppendValue(char pairClass, double value, bool descending);

  const Settings& settings_;
  const BiasResults& results_;
  std::size_t target_;
  std::string letters_;
  // By position and element of its Flank: the place of the label, from 0 on; only where a letter
  // asks for it.
  std::vector<std::vector<std::int32_t>> labelPlace_;
  std::vector<ElementSlot> firstSlot_;
  std::vector<ElementSlot> elements_;
  std::string record_;
};

// Whether `Zscore=` lets a pair be shown: contrast and t are large enough.
bool IsPairShown(const Settings& settings, const PairFigures& figures);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE14_SORT_H
