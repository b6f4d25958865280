// Reading a Specification: physical lines, include files, comments, fields.
//
// A Specification is a text file.  A line "%NAME" is replaced by the lines of the file NAME, up to
// 20 files deep; line numbers run on through all of them.  What stands behind a ";" is a comment,
// and a line with ";;" is a comment that the report shows as well.  What is left is a keyword, its
// value, and perhaps further lines of a list:
//
//   Title = My title, part 2     Fields[0] "Title", Fields[1] "My title", Fields[2] "part 2"
//   1 = Adam Smith, 2.5          Fields[0] "",      Fields[1] "1", "Adam Smith", "2.5"
//
// "=", a comma and a tab all separate fields.  `SpecificationSource` is the open file with its
// include files; the data pass reads data through one of its own, or goes on with the
// Specification's when the data are in line:
//
//   SpecificationSource source;
//   if (const Fault fault = source.Open(name, "Data", folder, console); fault != Fault::none) ...
//   std::string_view line;
//   while (source.NextSpecificationLine(console, BlankLines::keep, nullptr, line)) ...
//   if (source.fault() != Fault::none) ...      // an include file; source.faultText() is its name
//
// A handler of a keyword reads the lines of its list with `FetchLine`.  The list ends at a line
// "*", which is taken, at a line with a keyword, which is left in Fields for the main loop, or at
// the end of the file: `IsListLine` decides.
//
// Tested by tests/unit/spec/specification_reader_test.cpp.
#ifndef FLANKS_SPEC_SPECIFICATION_READER_H
#define FLANKS_SPEC_SPECIFICATION_READER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/kept_lines.h"
#include "base/text_file.h"
#include "run/run.h"
#include "spec/spec_context.h"

namespace flanks {

constexpr std::size_t kIncludeLevels = 20;
constexpr int kLargestFieldCount = 32000;

enum class BlankLines : std::uint8_t { skip, keep };

// Where a line stands: its file, and its number there.  Line 0: not known.
struct FilePlace {
  std::string file;
  std::int64_t line = 0;
};

// A text file with the include files that are open in it.
class SpecificationSource {
 public:
  // Opens `name` as the top file.  `kind` names the file in messages: "Specification", "Data".
  // Include files are looked for in the current folder and then in the folder of
  // `specificationFile`.  Faults: fileNotFound, badFileFormat; faultText() names the file.
  [[nodiscard]] Fault Open(const std::string& name, std::string_view kind,
                           const std::string& specificationFile, Console& console);

  // From now on the top file, just opened, has this name in messages: it holds another file's data.
  void TellAs(const std::string& name);

  // The next physical line, with its no-break spaces as blanks.  False at the end of the top file
  // and when an include file cannot be read.  The line is valid until the next read.
  bool ReadRawLine(Console& console, std::string_view& line);

  // The next line without comment, control characters (a tab stays) and blanks at its ends.  A line
  // of nothing but blanks, commas and tabs is empty.  Comments with ";;" go to `shownComments`, or
  // to the report when that is null.
  bool NextSpecificationLine(Console& console, BlankLines blankLines, KeptLines* shownComments,
                             std::string_view& line);

  // The line just read as it stands in the file; valid until the next read.
  std::string_view original() const { return original_; }
  // Its number, counted through all files from 1.
  std::int64_t lineNumber() const { return lineNumber_; }
  // The file in which the line of this number stands, also when all has been read.
  FilePlace PlaceOf(std::int64_t lineNumber) const;
  // Name of the top file.
  const std::string& name() const { return name_; }
  // Where the lines of a file of this name can be read again.
  const std::string& FileBehind(const std::string& name) const {
    return name == name_ ? openedName_ : name;
  }
  // Names of the include files that were opened so far.
  const std::vector<std::string>& includedFiles() const { return includedFiles_; }

  Fault fault() const { return fault_; }
  const std::string& faultText() const { return faultText_; }

 private:
  bool ReadPhysicalLine(Console& console, std::string_view& line);
  bool OpenIncluded(Console& console, std::string_view line);
  Fault OpenLevel(const std::string& name, std::string_view kind, Console& console);
  std::string_view WithoutNoBreakSpaces(Console& console, std::string_view line);
  std::string_view WithoutControls(std::string_view line);
  bool Fail(Fault fault, std::string text);

  // Lines in a row of one file; the first has the number `first`.
  struct Stretch {
    std::int64_t first;
    FilePlace place;  // of the first
  };

  std::vector<TextFile> levels_;    // level 0 is the top file
  std::vector<FilePlace> goesOn_;   // for each level above, where the file below it goes on
  std::vector<Stretch> stretches_;  // all that was read, in order
  std::string name_;                // of the top file in messages
  std::string openedName_;          // and in the file system
  std::string specificationFile_;
  std::vector<std::string> includedFiles_;
  std::string_view original_;
  std::string spaced_;    // a line whose no-break spaces were replaced
  std::string cleaned_;   // a line whose control characters were replaced
  unsigned classes_ = 0;  // what is special in the line just read
  std::int64_t lineNumber_ = 0;
  Fault fault_ = Fault::none;
  std::string faultText_;
};

// Cuts a line into fields[0], the keyword if it has one, and fields[1..fieldCount].  `fields` has
// at least kFewestFields entries afterwards, so that a handler may look at any of its fields.
// False when the line has more than kLargestFieldCount fields; the others are then dropped.
constexpr int kFewestFields = 12;
[[nodiscard]] bool SplitSpecification(std::string_view line, std::vector<std::string>& fields,
                                      int& fieldCount);

// Without the quotes and blanks at both ends.
std::string_view WithoutQuotes(std::string_view text);

// Puts the line into the text of the pending fault, which is the value at fault or nothing: the
// value with its keyword, "Flanks=x", or with its line when more stands there, "x in Center=1,x".
void ShowLineOfFault(ReadState& reading);

// What SetFault takes for a fault of which nothing but the text is known.
FaultParticulars TextAtFault(std::string_view text);

// The next line of the Specification into reading.CurrentLine, SourceLine and LineNumber.  At the
// end, on a fault of the source, and when the run is to stop: false, an empty CurrentLine, and
// EndOfSpecification is set.  Nothing is fetched while Extra specifications are applied.
bool FetchText(SpecContext& context);

// Cuts `line` into reading.Fields.  Fault: tooManyFields.
void SplitIntoFields(SpecContext& context, std::string_view line);

// FetchText and SplitIntoFields.  At the end all fields are empty and FieldCount is 0; among Extra
// specifications, where no list has further lines, Fields[1] is "*".
void FetchLine(SpecContext& context);

// For a list that may start behind its keyword or on the next line: fetches while there is no
// value.  At the end of the file Fields[1] is "*".  A line with a keyword is not passed over.
void FetchIfEmpty(SpecContext& context);

// Whether the line in Fields belongs to the list at work.  False at its end: a line "*" is taken, a
// line with a keyword is left for the main loop.
bool IsListLine(SpecContext& context);

// Leaves the line in Fields for the main loop.
inline void LeaveLine(SpecContext& context) {
  context.state.lineLeft = true;
}

// A whole number of a specification: the absolute value of the number at the start of `text`.
// Faults, with `text`: notNumeric, numberTooLarge (the value is then 0), notWhole.
std::int32_t ParseWhole(SpecContext& context, std::string_view text, std::int32_t limit);

// Step: reads the Specification file and applies its specifications in order.
void ReadSpecification(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_SPECIFICATION_READER_H
