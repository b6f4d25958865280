// The data pass: every line of the data source once, from text to the work files.
//
//   for each line    split it (data_line), find its elements (resolve_elements),
//   for each datum   find its statement and category (matching), its structure (structures),
//                    and write a record to both work files (element_file, response_file)
//
// What goes wrong is counted for Table 2 with the line of its first event; a few messages tell the
// first of a kind on the screen.  Nothing of a line is kept, so memory does not grow with the data.
//
// Nearly all lines of a large file are numbers or labels between commas, have all their elements in
// the tables and only valid responses.  They take a short cut that reads the fields where they
// stand.  It does nothing before it knows that the line is of that kind, and leaves all others to
// the general procedure: both give the same, and a property test compares them.
//
// Tested by tests/unit/data/data_pass_test.cpp, tests/properties/data_pass_test.cpp and
// tests/damage/data_pass_test.cpp; measured by bench/bench_read.cpp.
#ifndef FLANKS_DATA_DATA_PASS_H
#define FLANKS_DATA_DATA_PASS_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_line.h"
#include "data/data_messages.h"
#include "data/line_elements.h"
#include "data/matching.h"
#include "data/resolve_elements.h"
#include "data/structures.h"
#include "run/run.h"
#include "spec/specification_reader.h"

namespace flanks {

// Step: opens the data source and reads it: the lines of the Specification, a file, or the text
// that the importer made of one.  Faults: fileNotFound, badFileFormat, and those of data lines.
void ReadData(Run& run);
// The same of an imported text, whose lines stand elsewhere.
void ReadImportedData(Run& run, const PlaceInSource& placeInSource);

// The file that the data stand in, as the user named it.
const std::string& DataName(const Settings& settings);

// What the pass works on.
struct DataPassParts {
  const Design& design;
  const Settings& settings;
  RunControl& control;
  ReadState& reading;
  DataCounts& counts;
  StructureTable& structures;
  WorkFiles& work;
  Console& console;
  Dialogs& dialogs;
  PlaceInSource placeInSource = {};
};
DataPassParts DataPassPartsOf(Run& run);

enum class PlainLines : std::uint8_t { shortCut, generalProcedure };

class DataPass {
 public:
  // The parts and the source must outlive the pass.  The work files are open.
  DataPass(const DataPassParts& parts, SpecificationSource& source, PlainLines plainLines);

  // Reads lines to the end of the source, a line "*", a fault in `reading`, or a request to stop.
  void ReadLines();
  // Hands over what the pass has gathered, and writes out the buffers of the work files.
  void Finish();

 private:
  bool TickOver();
  bool ReadPlainLine(std::string_view text);
  bool BeginsWithNoField(std::string_view text) const;
  bool TakePlainElements(const char*& at, const char* end);
  bool TakePlainResponses(const char* at, const char* end);
  bool ReadLine(std::string_view text);
  int FieldsInUse();
  void ReadResponses(int fieldCount);
  void ReadResponse(int field);
  ResponseFate MatchResponse(std::string_view text);
  void WriteRecords(ModelRow model, std::int32_t category);
  bool Fail(const LineProblem& problem);

  bool querying() const { return parts_.control.QueryMode; }
  LinePlace place() const { return {source_.original(), source_.lineNumber()}; }
  std::int32_t eventLine() const;

  DataPassParts parts_;
  SpecificationSource& source_;
  SplitRules rules_;
  ElementFinder finder_;
  LabelFinder labels_;
  ElementResolver resolver_;
  StructureFinder structures_;
  CategoryTable categories_;
  DataMessages messages_;

  DataLine line_;
  LineElements elements_;
  StatementSearch search_;  // for the elements of the line
  bool searched_ = false;
  int datumNumber_ = 0;

  bool shortCut_ = false;                          // lines of this run may be plain
  bool plainLinesNow_ = false;                     // and the first active line has been shown
  std::array<bool, kCategories> missingNumber_{};  // the number is a missing code
  std::vector<std::int16_t> plainResponses_;
  int linesUntilTick_;
};

// Whether `text` stands in a list with a comma before and after each item.
bool IsListed(std::string_view list, std::string_view text);

}  // namespace flanks

#endif  // FLANKS_DATA_DATA_PASS_H
