// Table 1 behind a Specification, line by line.
//
//   const Table1Run test(kTable1Base + kTable1Data, "Umean=50");
//   EXPECT_THAT(test.lines, Contains("Umean = 50,1,2 ; Umean, Uscale, Udecimals"));
#ifndef FLANKS_TESTS_SUPPORT_TABLE1_RUN_H
#define FLANKS_TESTS_SUPPORT_TABLE1_RUN_H

#include <string>
#include <string_view>
#include <vector>

#include "support/spec_run.h"

namespace flanks {

// Two Flanks, with their data in line.
inline const std::string kTable1Base =
    "Title=Check\n"
    "Flanks=2\n"
    "Models=?,?,R5\n"
    "Labels=\n"
    "1,Persons\n"
    "1=Ann\n"
    "2=Bob\n"
    "3=Cy\n"
    "*\n"
    "2,Items\n"
    "1=i1\n"
    "2=i2\n"
    "*\n";
inline const std::string kTable1Data = "Data=\n1,1,3\n";

struct Table1Run : SpecRun {
  std::vector<std::string> lines;  // without the blanks at their ends
  explicit Table1Run(const std::string& text, const std::string& extras = "");
  ~Table1Run();
  // The lines from the one that is `first` on.
  std::vector<std::string> From(std::string_view first) const;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_TABLE1_RUN_H
