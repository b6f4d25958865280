// The round trip of an anchor file: a run that writes one, a run of that file, and whether all
// labels, measures and thresholds show the same digits.
//
//   AnchoredAgain trip;
//   trip.folder().write("data.txt", ...);
//   EXPECT_EQ(trip.Difference(specification), "");
#ifndef FLANKS_TESTS_SUPPORT_ANCHORED_AGAIN_H
#define FLANKS_TESTS_SUPPORT_ANCHORED_AGAIN_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "support/analysis_run.h"

namespace flanks {

class AnchoredAgain {
 public:
  AnalysisRun run;
  bool firstCompleted = false;  // there was an anchor file to run
  int compared = 0;             // measures and thresholds
  // Digits beyond what the file's 32-bit numbers tell may differ.
  bool withinSinglePrecision = false;

  // Runs the Specification and then its anchor file.  What differs first; empty for nothing.
  std::string Difference(std::string_view specification, const std::string& extras = "");
  std::string AnchorFile() const { return run.folder.read("anchor.txt"); }

  // What a report shows of a measure, a threshold or a discrimination, and its value.
  struct Figure {
    std::string text;
    double value = 0.0;
  };
  using Figures = std::map<std::string, Figure>;  // by name

 private:
  Figures Measures() const;
  Figures Thresholds(bool ofAnchorFile) const;
  bool IsSame(const Figure& expected, const Figure& found) const;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_ANCHORED_AGAIN_H
