// Faults of the data, of files and of the command line, as a user meets them.
#include <gtest/gtest.h>

#include "support/message_case.h"

namespace flanks {
namespace {

// The data begin in line 15.  These runs have a report, which holds the fault as well.
TEST(DataFaultMessages, NameFilePositionAndLine) {
  struct Case {
    const char* name;
    const char* data;
    std::string line;
  };
  const Case cases[] = {
      {"too few fields", "1,1",
       "1,1 Data line in s.txt line: 15 is: Data record does not contain 2 flank references + "
       "data. Please start comments with ;: 15 in line Error F27"},
      {"no element number", "1,1,3\nx,1,3",
       "x,1,3 Data line in s.txt(1) line: 16 is: Invalid element number. Must be integers in range "
       "0 - 2147483646 \"x\" at flank location in data: 1  Is this an element label? If so, "
       "Delements=LN: 16 in line Error F231"},
      {"two ranges", "1-2,1-2,3,3",
       "1-2,1-2,3,3 Data line in s.txt(2) line: 15 is: Only one flank may have a range (-) in a "
       "data line: 15 in line Error F29"},
      {"a range that is too long", "1-40000,1,3",
       "1-40000,1,3 Data line in s.txt(1) line: 15 is: Too many elements in the element range for "
       "a flank. If nnn-nnn is an element label, please add letter in front of this label "
       "everywhere.: 15 in line Error F77"},
  };
  for (const Case& c : cases) {
    MessageCase run{c.name, WithData(c.data)};
    run.screen = run.report = {c.line};
    CheckFaultCase(run, FLANKS_PROGRAM);
  }
}

TEST(DataFaultMessages, OfAnUnusedPositionAndOfALongLine) {
  MessageCase unused{"a range where no statement looks",
                     WithData(Changed(3, "Models=X,?,R5"), "1-2,1,3")};
  unused.screen = unused.report = {
      "1-2,1,3 Data line in s.txt(1) line: 15 is: Element range for flank with X in Models=. "
      "Please replace X with blank in Models=.: 15 in line Error F78"};
  CheckFaultCase(unused, FLANKS_PROGRAM);

  std::string fields = "1,1";
  for (int i = 0; i < 32'001; ++i) fields += ",3";
  MessageCase longLine{"32,003 fields", WithData(fields)};
  // Of a text of more than 300 bytes the first 300 are shown.
  longLine.screen = longLine.report = {
      fields.substr(0, 300) +
      "... Data line in s.txt line: 15 is: More than 32,000 fields in the data record: 15 in line "
      "Error F67"};
  CheckFaultCase(longLine, FLANKS_PROGRAM);
}

TEST(DataFaultMessages, NameTheIncludeFileOfTheData) {
  MessageCase c{"data in an include file", WithData(Changed(14, "Data=d.txt"), "")};
  c.files = {{"d.txt", "1,1,3\n%more.txt\n"}, {"more.txt", "1,2,4\n2,1\n"}};
  // Lines 1 and 2 of d.txt, then lines 1 and 2 of more.txt.
  c.screen = c.report = {
      "Reading line 2 of % include file \"more.txt\":",
      "2,1 Data line in d.txt line: 4 is: Data record does not contain 2 flank references + data. "
      "Please start comments with ;: 4 in line Error F27"};
  CheckFaultCase(c, FLANKS_PROGRAM);
}

// Nothing to estimate from: the file of the data is named, and Table 2 tells the rest.
TEST(DataFaultMessages, WithoutUsableData) {
  MessageCase none{"unknown elements", WithData("9,9,3")};
  none.screen = none.report = {
      "Check (1)? Element not specified in Labels=: flank: 1 element: 9 in line 15 - see Table 2. "
      "Delements = N",
      "\"s.txt\" No usable data.  Use Query=Y to check Models= and Labels=: Error F35"};
  CheckFaultCase(none, FLANKS_PROGRAM);

  MessageCase empty{"an empty file", WithData(Changed(14, "Data=d.txt"), "")};
  empty.files = {{"d.txt", ""}};
  empty.screen = empty.report = {
      "\"d.txt\" No usable data.  Use Query=Y to check Models= and Labels=: Error F35"};
  empty.absent = {"Warning (10)"};
  CheckFaultCase(empty, FLANKS_PROGRAM);

  MessageCase extreme{"the same score for all",
                      WithData(Changed(3, "Models=?,?,D"), "1,1,1\n1,2,1\n2,1,1\n2,2,1")};
  extreme.screen = extreme.report = {"All data eliminated as extreme.: Error F36"};
  CheckFaultCase(extreme, FLANKS_PROGRAM);
}

TEST(DataFaultMessages, WithoutActiveElements) {
  // Flank 2 alone is in the data, and only Flank 1 has elements.
  MessageCase c{"no element in an active position",
                {"Flanks=2", "Entered-in-data=0,2", "Models=?,R5", "*", "Labels=N", "1,Persons",
                 "1=Ann", "*", "Data=", "1,1,3"}};
  c.screen = c.report = {
      "Labels=N Specification is: No active element numbers: Models= and Labels=: Error F62",
      "  See the Specification file \"s.txt\"."};
  CheckFaultCase(c, FLANKS_PROGRAM);
}

TEST(FileFaultMessages, NameTheFile) {
  const std::string check =
      "  To mend it: Check the name and the folder: a file is looked for in the current folder, "
      "then beside the Specification.";
  MessageCase missing{"no data file", WithData(Changed(14, "Data=d.txt"), "")};
  missing.screen = missing.report = {"\"d.txt\" File not found: Error F43", check};
  CheckFaultCase(missing, FLANKS_PROGRAM);

  MessageCase sheet{"a spreadsheet", WithData(Changed(14, "Data=d.xlsx"), "")};
  sheet.screen = sheet.report = {"Conversion failed: d.xlsx: there is no such file",
                                 "\"d.xlsx\" File not found: Error F43"};
  CheckFaultCase(sheet, FLANKS_PROGRAM);

  MessageCase wild{"a name with a question mark", Changed(14, "Data=d?.txt")};
  wild.screen = {
      "Data=d?.txt Specification is: File name contains * or ?, or ends with \\ / or : 14 in line "
      "Error F42"};
  CheckFaultCase(wild, FLANKS_PROGRAM);

  MessageCase rtf{"no text at all", {"{\\rtf1 Title=x}"}};
  rtf.screen = {"Specification file - s.txt - has RTF format. Please re-format.",
                "\"s.txt\" Specification is: Invalid file format: not in DOS-Text (ASCII) format.: "
                "Error F44"};
  CheckFaultCase(rtf, FLANKS_PROGRAM);
}

TEST(CommandLineFaultMessages, NameTheWord) {
  const SpecificationLines none;
  const std::vector<MessageCase> cases = {
      {"no Specification", none, {"\"s.txt\" Command line is: File not found: Error F43"}},
      {"no Specification in batch",
       none,
       {"\"s.txt\" Command line is: File not found in batch mode: Error F52"},
       {"s.txt", "out.txt", "Batch=Y"}},
      {"an open quote",
       BaseLines(),
       {"\"s.txt Command line is: Missing quote (+chr$(34)+) in command line: Error F49",
        "  To mend it: Put a quote mark behind the name as well."},
       {"\"s.txt"}},
      {"a name with a blank",
       BaseLines(),
       {"a b Command line is: Extra specification should be: specification=value: Error F17"},
       {"s.txt", "out.txt", "a b"}},
      {"a name with a star",
       BaseLines(),
       {"\"out*.txt\" Command line is: File name contains * or ?, or ends with \\ / or : Error "
        "F42"},
       {"s.txt", "out*.txt"}},
      {"a value without a keyword",
       BaseLines(),
       {"=3 Extra specifications is: \"Specification=value\" expected: Error F1"},
       {"s.txt", "out.txt", "=3"}},
  };
  for (const MessageCase& c : cases) CheckFaultCase(c, FLANKS_PROGRAM);
}

}  // namespace
}  // namespace flanks
