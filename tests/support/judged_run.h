// A design that the program and the slow judge both estimate, and what must agree.
//
//   JudgedRun both;
//   both.design = ...;                        // structures in the order of the program's scales
//   both.Estimate("Flanks=2\n...");           // the judge, then a run over the same data
//   both.ExpectMeasures(.001);
//
// The data lines are made from the design: "R2.5," in front where an observation has a weight.
#ifndef FLANKS_TESTS_SUPPORT_JUDGED_RUN_H
#define FLANKS_TESTS_SUPPORT_JUDGED_RUN_H

#include <functional>
#include <string>

#include "support/analysis_run.h"
#include "support/slow_judge/slow_judge.h"

namespace flanks {

class JudgedRun {
 public:
  judge::Design design;
  judge::Verdict verdict;
  AnalysisRun run;

  // The Specification names its data "data.txt".
  void Estimate(const std::string& specification);

  // Measures and status, thresholds and discriminations with their categories, the statistics of
  // Table 7, scores and counts: each a failure of the test when it is off.
  void ExpectMeasures(double tolerance);
  void ExpectScales(double tolerance);
  void ExpectStatistics(double tolerance);
  void ExpectScores();
  // Each response that the run kept for Table 4, in scored categories, and the chi-squared of all.
  void ExpectResiduals(double tolerance);

  // How far the farthest measure and the farthest threshold or discrimination are off, logits.
  double LargestMeasureError();
  double LargestScaleError();

  ElementSlot SlotOf(std::size_t flank, std::size_t element) const;
  void ForEachElement(const std::function<void(const judge::Element&, ElementSlot)>& look);
};

// The lines of the design's data.
std::string DataLines(const judge::Design& design);

// "1,Flank1\n1-30=e\n*\n..." for every Flank of the design.
std::string LabelLines(const judge::Design& design);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_JUDGED_RUN_H
