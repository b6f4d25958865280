// What the data pass says: the first line as it was understood, Checks and Warnings with their
// limits, the place of a fault, and the fate of each datum with Query=Yes.
//
// Check (1) and Warning (18) come once for a run, Check (2) for the first ten data; everything is
// counted all the same.
//
// Tested by tests/unit/data/data_pass_test.cpp.
#ifndef FLANKS_DATA_DATA_MESSAGES_H
#define FLANKS_DATA_DATA_MESSAGES_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "data/data_line.h"
#include "data/line_elements.h"
#include "data/matching.h"
#include "data/query_show.h"
#include "data/resolve_elements.h"
#include "run/console.h"
#include "run/design.h"
#include "run/faults.h"
#include "run/settings.h"
#include "run/shell_interface.h"

namespace flanks {

// The line at work.
struct LinePlace {
  std::string_view original;  // as it stands in the file
  std::int64_t number = 0;
};

// Where a field of a line stands in the file that the text was made of, `row 12, column B of sheet
// "Marks"`; of the whole line for field 0.  Empty where the user wrote the text.
using PlaceInSource = std::function<std::string(std::int64_t lineNumber, int field)>;

class DataMessages {
 public:
  DataMessages(const Design& design, const Settings& settings, Console& console, Dialogs& dialogs,
               std::string fileName, const PlaceInSource& placeInSource)
      : design_(design),
        settings_(settings),
        console_(console),
        dialogs_(dialogs),
        fileName_(std::move(fileName)),
        placeInSource_(placeInSource) {}

  void ShowFirstLine(const LinePlace& place);
  void ShowProcessed(const DataLine& line, const LineElements& elements);

  void TellUnspecified(const FirstUnspecified& first, const DataLine& line, const LinePlace& place);
  void TellExcess(int count, const LinePlace& place);
  // The datum stands in the line's field of this number.
  void TellInvalid(int field, const DataLine& line, const LineElements& elements,
                   const LinePlace& place);

  // The particulars of a fault in a line.
  FaultParticulars ParticularsOf(const LineProblem& problem, const LinePlace& place) const;

  // Query=Yes.
  void QueryBlank() { QueryShow(console_, QueryCode::blank, ""); }
  void QueryR0(float replication);
  void QueryMissing(std::string_view datum, int datumNumber, const DataLine& line,
                    const LineElements& elements);
  void QueryFate(std::string_view datum, int datumNumber, const StatementSearch& search,
                 const ScoredResponse& scored, const std::string& elementList);
  void QueryEnd() { QueryWait(console_, dialogs_); }

  // The element numbers of the line by data position, joined by commas; the field where a position
  // has no known element.
  std::string ElementList(const DataLine& line, const LineElements& elements) const;

 private:
  std::string PlaceText(int position, const LinePlace& place) const;
  void TellPlaceInSource(const LinePlace& place, int field);
  std::string ElementText(DataPosition position, const DataLine& line,
                          const LineElements& elements) const;
  void ShowDatum(const std::string& text, int datumNumber);

  const Design& design_;
  const Settings& settings_;
  Console& console_;
  Dialogs& dialogs_;
  std::string fileName_;
  PlaceInSource placeInSource_;
  int invalidTold_ = 0;
  bool excessTold_ = false;
};

}  // namespace flanks

#endif  // FLANKS_DATA_DATA_MESSAGES_H
