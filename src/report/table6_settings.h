// What the rulers of Table 6 are asked to show: `Vertical=` and `Yardstick=` as lists and numbers.
//
// `Vertical=` is a list of items joined by commas.  An item is a Flank number and a letter: "1A" by
// element label, "1N" by element number, "1*" as asterisks, "1C" as counts; another letter counts
// as A.  A letter without a number is for every Flank.  "S" asks for the columns of the rating
// scales, "SL" for their category labels as well, "#S" for the category number in every row.  A
// list may stand in parentheses.  Without a list, or where it begins with Y, the list is made by
// rule: all Flanks but the dummy ones, large Flanks as asterisks, and "S".
//
// `Yardstick=` is up to four numbers, columns, lines, low and high, and a word: with an M in it
// extreme elements stand at their measures, otherwise at the ends.
//
// Tested by tests/unit/report/table6_settings_test.cpp.
#ifndef FLANKS_REPORT_TABLE6_SETTINGS_H
#define FLANKS_REPORT_TABLE6_SETTINGS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/design.h"

namespace flanks {

// How a Flank's column shows its elements.
enum class RulerForm : char { labels = 'A', numbers = 'N', asterisks = '*', counts = 'C' };

// One column of a Flank.
struct RulerItem {
  FlankNo flank;
  RulerForm form = RulerForm::labels;
};

// The elements of a Flank that a ruler shows, as far as the list depends on them.
struct RulerFlank {
  std::int32_t shown = 0;               // elements
  float lowest = 0.0f, highest = 0.0f;  // their measures, logits
  bool allTheSame() const { return lowest == highest; }
};

struct RulerList {
  std::vector<RulerItem> items;  // the Flank columns from left to right
  bool scales = false;           // rating scale columns
  bool legends = false;          // with category labels
  bool everyNumber = false;      // with a category number in each row, no marks
  std::size_t scalesAt = 0;      // the items in front of the scale columns
  std::vector<int> omitted;      // Flanks left out because all measures are the same, ascending
  std::vector<std::string> notThere;  // items of Flanks that the design does not have
  std::vector<std::string> misread;   // items that have more than a number and a form

  bool empty() const { return items.empty() && !scales; }
};

// Whether `Vertical=` asks for no Table 6 at all.
bool AreRulersOff(std::string_view vertical);

// The list of a ruler.  `shown` has a row for each Flank.
RulerList BuildRulerList(std::string_view vertical, const FlankTable& flanks,
                         const Column<FlankNo, RulerFlank>& shown);

// The list as the line under the title tells it: "1A,2*,S".
std::string RulerListText(const RulerList& list);

struct Yardstick {
  int columns = 0;     // places of a Flank column; 0: as its contents need
  double lines = 0.0;  // to a user unit; not above 0: the program chooses
  double low = 0.0;    // user units; equal to `high`: from the elements
  double high = 0.0;
  bool extremesAtMeasures = false;
};

Yardstick ReadYardstick(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE6_SETTINGS_H
