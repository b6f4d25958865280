// A small Specification with one thing changed, run through the whole program, and what the program
// must say to it.
//
//   MessageCase c{"F9", Changed(5, "3,Persons")};
//   c.screen = {"3,Persons Specification is: Flank number out of range: 1-2: 5 in line Error F9"};
//   CheckFaultCase(c, FLANKS_PROGRAM);
//
// The Specification of all cases (line numbers 1 to 14, data from 15 on):
//
//    1 Title=Check          6 1=Ann      11 1=i1
//    2 Flanks=2             7 2=Bob      12 2=i2
//    3 Models=?,?,R5        8 3=Cy       13 *
//    4 Labels=              9 *          14 Data=
//    5 1,Persons           10 2,Items
#ifndef FLANKS_TESTS_SUPPORT_MESSAGE_CASE_H
#define FLANKS_TESTS_SUPPORT_MESSAGE_CASE_H

#include <map>
#include <string>
#include <vector>

namespace flanks {

using SpecificationLines = std::vector<std::string>;

// Its fourteen lines and six data lines in which no element is extreme.
SpecificationLines BaseLines();
// With `text`, which may be several lines, in place of line `number`; none when it is empty.
SpecificationLines Changed(int number, const std::string& text);
// With `text` behind line `number`.
SpecificationLines Added(int number, const std::string& text);
// With these data lines.
SpecificationLines WithData(const std::string& data);
SpecificationLines WithData(SpecificationLines lines, const std::string& data);

struct MessageCase {
  std::string name;
  SpecificationLines lines;              // of s.txt; no file when there are none
  std::vector<std::string> screen = {};  // whole lines of standard output
  std::vector<std::string> arguments = {"s.txt", "out.txt"};
  std::map<std::string, std::string> files = {};  // beside s.txt
  std::vector<std::string> report = {};           // whole lines of out.txt
  std::vector<std::string> absent = {};           // on the screen and in the report
};

// Runs the program; exit status 1, "Execution halted" as the last line, nothing on standard error,
// no work file, no report file unless `report` has lines.
void CheckFaultCase(const MessageCase& c, const std::string& program);

// Runs the program, however it ends: what is said is looked at, and that nothing is left behind.
void CheckSaidCase(const MessageCase& c, const std::string& program);

// Runs the program; exit status 1 and nothing said but what ended it.
void CheckEndCase(const MessageCase& c, const std::string& program);

// Runs the program: exit status 0 and a Table 7.
void CheckRunCase(const MessageCase& c, const std::string& program);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_MESSAGE_CASE_H
