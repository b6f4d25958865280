// The pass of JMLE over the observations: expected scores, information, expected counts.
//
// For each observation the kernel is called at its measure sum, and by the secant method once
// before at the measure sum less SecantDelta.  Each element of an observation with all elements in
// play adds the expected score w E, the shifted one w E' and the information w V; with one extreme
// element only that element adds.  A reversed position adds w (m - E).  The scales add expected
// counts, or the terms of their discrimination.
//
// A pass is: read a block, gather measures, evaluate, add.  Additions go to each sum in the order
// of the records, from the last position to the first, in 64 bits; nothing else about the order of
// work shows in a result.  No allocation in a pass, and no test for each record where the block is
// of the usual kind.
//
// Order of calls in an iteration: ClearPassSums and ClearScaleSums, then JmlePass::Run, then the
// steps.
//
// Tested by tests/unit/estimate/jmle_pass_test.cpp; timed by bench/bench_pass.cpp.
#ifndef FLANKS_ESTIMATE_JMLE_PASS_H
#define FLANKS_ESTIMATE_JMLE_PASS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "estimate/recount.h"

namespace flanks {

// At the head of every pass: the sums of each element that is in use and not dropped.
void ClearPassSums(Estimates& estimates);
// Likewise the scales' expected counts; with a recount also what it counts.
void ClearScaleSums(Recount recount, ScaleTables& scales);

class JmlePass {
 public:
  // Sized once for the design of `parts`.
  explicit JmlePass(const PassParts& parts);

  // One pass.  `newtonStep` other than 0: Newton-Raphson, which has no shifted score.  Ends early
  // when the run is to stop.
  PassResult Run(ObservationReader& reader, float newtonStep);

 private:
  // The results of the block at work.
  struct Results {
    std::vector<float> expected, shifted, variance;
    explicit Results(std::size_t size) : expected(size), shifted(size), variance(size) {}
  };

  void FillTerms();
  void Evaluate(const ObservationBlock& block);
  void EvaluateOneByOne(const ObservationBlock& block);
  void NoteRange();
  void WeighLanes(const ObservationBlock& block);
  void AddCounts(const LaneRun& run);
  void AddRatingCounts(const LaneRun& run);
  void AddMixedCounts(const ObservationBlock& block, const LaneRun& run);
  void AddCountTerms(const LaneRun& run);
  void AddOneCount(const LaneRun& run);
  const Results& ByEntry();
  void AddUsual(const ObservationBlock& block, const Results& results);
  void AddOneByOne(const ObservationReader& reader, const Results& results);
  void AddObservation(const ObservationReader& reader, std::size_t i, const Results& results);

  PassParts parts_;
  BlockKernel kernel_;
  std::vector<std::vector<double>> countTerms_;  // by scale; empty where none are to be summed
  Results byLane_, byEntry_;
  std::vector<double> laneWeight_;  // 0 where the observation does not count for its scale
  std::vector<const std::int32_t*> slotRows_;  // of the block at work, by field
  bool weighted_ = false;                      // laneWeight_ holds other weights than 1
  float secantShift_ = 0.0f;                   // logits, below 0; 0: no shifted score is wanted
  PassResult result_;
};

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_JMLE_PASS_H
