// What the Residual file shows of each observation: the model's figures at the final measures.
//
// The pass has the form of all passes: read a block, evaluate it in batches; the figures of a
// block's observations then lie ready, one in each array at the observation's lane.  What does not
// feed estimation has the figures of the last lane, all 0.  Nothing of the run is changed.
//
//   ObservationFigures figures(parts);
//   figures.Begin();
//   while (figures.Next()) {
//     for (std::size_t i = 0; i < figures.block().count; ++i) {
//       const std::size_t lane = figures.lanes()[i];
//       ... figures.expected()[lane] ...
//
// Tested by tests/unit/output/residual_file_test.cpp.
#ifndef FLANKS_OUTPUT_OBSERVATION_FIGURES_H
#define FLANKS_OUTPUT_OBSERVATION_FIGURES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "estimate/block_kernel.h"
#include "estimate/observation.h"

namespace flanks {

// The floor of a variance and of a probability.
constexpr float kSmallestModelValue = 1E-9f;

class ObservationFigures {
 public:
  // Sized once for the design of `parts`, which must outlive it.
  explicit ObservationFigures(const PassParts& parts);

  void Begin();
  // The next block; false behind the last, or when the run is to stop.
  bool Next();
  const ObservationBlock& block() const { return reader_.block(); }
  Position position(std::size_t field) const { return reader_.position(field); }
  // By entry of the block.
  std::span<const std::uint32_t> lanes() const { return lane_; }

  // By lane.  Scored categories: ordered ones that begin with the lowest category of the scale.
  std::span<const float> expected() const { return expected_; }
  std::span<const float> residual() const { return residual_; }
  std::span<const float> variance() const { return variance_; }
  // Held in -9 to 9.
  std::span<const float> standardized() const { return standardized_; }
  // Of the observed category, natural, of at least kSmallestModelValue.
  std::span<const float> logProbability() const { return logProbability_; }
  // Logits: residual over variance, held in -10 to 10.
  std::span<const float> displacement() const { return displacement_; }
  // Of equals the highest.
  std::span<const std::int32_t> mostProbable() const { return mostProbable_; }

 private:
  void Evaluate(const LaneRun& run);
  void EvaluateOneByOne(const LaneRun& run);
  // What follows from a run's probabilities: category k of its lane j at [k * stride + j].
  void Derive(const LaneRun& run, const float* probability, std::size_t stride);

  PassParts parts_;
  ObservationReader reader_;
  BlockKernel kernel_;
  KernelWork work_;
  std::vector<std::uint32_t> lane_;     // by entry of the block
  std::vector<std::int16_t> category_;  // by lane
  std::vector<float> expected_, residual_, variance_, square_;
  std::vector<float> standardized_, logProbability_, displacement_, highest_;
  std::vector<std::int32_t> mostProbable_;
  std::vector<float> unused_[4];  // moments that nobody asks for
};

}  // namespace flanks

#endif  // FLANKS_OUTPUT_OBSERVATION_FIGURES_H
