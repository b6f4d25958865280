// What the iterations move, and what the fit pass makes of it.
//
// Measures are logits in 32 bits, never user units.  The record that a pass touches for each
// position of each observation is `ElementState`: 32 bytes, half a cache line, with the measure,
// the status and the three sums of a pass.  The wide records that are read once for each element
// and iteration stand apart: `ElementScores` (what a recount finds) and `ElementFinal` (finished
// statistics, valid from StatisticsStage::finished on).
//
// Life of the sums: cleared at the head of a pass, added to in record order in 64 bits, cut to the
// width of their field when the pass ends.  In a PROX pass the three sums have other meanings, so
// they have other names there (see ProxSums).
#ifndef FLANKS_RUN_ESTIMATES_H
#define FLANKS_RUN_ESTIMATES_H

#include <array>
#include <cassert>
#include <cstdint>
#include <string>

#include "base/column.h"
#include "run/design.h"
#include "run/fit_sums.h"
#include "run/process.h"
#include "run/rater_agreement.h"
#include "run/scale_tables.h"

namespace flanks {

// ElementStatus.  The magnitude is the kind; a positive 1 is an anchored element.
constexpr std::int16_t kStatusAnchored = 1;
constexpr std::int16_t kStatusUnused = 0;
constexpr std::int16_t kStatusFree = -1;
constexpr std::int16_t kStatusMinimum = -2;  // extreme: zero score on a positive Flank
constexpr std::int16_t kStatusMaximum = -3;  // extreme: perfect score on a positive Flank
constexpr std::int16_t kStatusDropped = -4;  // no usable observations
constexpr std::int16_t kStatusHeld = -5;     // marked by a negative MaxScore

constexpr bool IsInPlay(std::int16_t status) {
  return status == kStatusAnchored || status == kStatusFree;
}
constexpr bool IsExtreme(std::int16_t status) {
  return status == kStatusMinimum || status == kStatusMaximum;
}

// The hot record of an element.
struct alignas(32) ElementState {
  float ElementMeasure = 0.0f;  // logits
  std::int16_t ElementStatus = 0;
  std::int16_t attention = 0;    // not 0: observations of the element are not of the usual kind
  double ExpectedSum = 0.0;      // JMLE: sum of w E        PROX: sum of (rest measure times w)
  double ShiftedExpected = 0.0;  // JMLE: sum of w E'       PROX: sum of weights
  double Information = 0.0;      // JMLE: sum of w V        PROX: sum of (rest measure times w)²
};
static_assert(sizeof(ElementState) == 32);

// What a recount finds for an element, and its last step.
struct ElementScores {
  double ObservedScore = 0.0;   // sum of w times ordered category (w (m - category) reversed)
  double MaxScore = 0.0;        // sum of w m; negative marks a held element
  float Count = 0.0f;           // sum of weights
  float RawScore = 0.0f;        // sum of w times raw observation
  float SmallestWeight = 0.0f;  // smallest non-zero weight seen
  float FirstRawScore = 0.0f;   // RawScore and Count at the end of the first pass
  float FirstCount = 0.0f;
  float StepWeight = 0.0f;  // last step, logits
};

// The finished statistics of an element: filled by the sweep after the fit pass.
struct ElementFinal {
  float StandardError = 0.0f;  // logits; 0 when there is no information
  float InfitMeanSquare = 1.0f, InfitZStd = 0.0f, InfitDF = 0.0f;
  float OutfitMeanSquare = 1.0f, OutfitZStd = 0.0f, OutfitDF = 0.0f;
  float Discrimination = 1.0f;  // slope estimate; 1 under the model
  float Displacement = 0.0f;    // logits
  float PointMeasure = 0.0f;    // the shown correlation
  float PointResidual = 0.0f;   // its expectation under the model
  double FairSum = 0.0;         // sum of w times fair expected score
};

// What ElementFinal holds now.
enum class StatisticsStage : std::uint8_t { none, sums, finished };

// EstimationPhase.
constexpr std::int32_t kPhaseStart = 0;
constexpr std::int32_t kPhaseProx = 1;
constexpr std::int32_t kPhaseJmle = 2;
constexpr std::int32_t kPhaseFinished = 3;

// The largest changes of an iteration: each a signed value; the first largest by size stays.
struct LargestChanges {
  float MaxLogitChange = 0.0f;
  float MaxThresholdChange = 0.0f;
  double MaxScoreResidual = 0.0;
  double MaxCategoryResidual = 0.0;
  float MaxScoreFraction = 0.0f;
  float MaxCategoryFraction = 0.0f;
  // Where they were found, for the long form of the iteration report.
  ElementSlot logitElement, scoreElement;
  ScaleRow thresholdScale, categoryScale;
  std::int32_t thresholdCategory = 0, residualCategory = 0;
  std::string logitPlace;  // "Bin Disc:" or "Poi Disc:" when a discrimination moved most
};

// The array that the kernel fills for one observation at a time.  It is zeroed when a run begins
// and never again.
// Kept: a Poisson scale reads entries that earlier calls left behind (docs/quirks.md).
struct KernelWork {
  ProbabilityArray CategoryProbability{};
  std::int32_t filledTo = 0;  // the last entry that a call has filled; those above are 0
};

// The scalars of the iteration loop.
struct IterationState {
  std::int32_t EstimationPhase = kPhaseStart;
  std::int32_t IterationNumber = 0;
  bool RecountRequired = true;
  float SecantDelta = 0.1f;
  std::int32_t FreeParameterCount = 0;
  LargestChanges changes;   // of the iteration just made
  std::string flankString;  // one letter for each Flank: "U" floats freely, else blank
  double smallestMeasureSum = 0.0, largestMeasureSum = 0.0;
  bool anyWeight = false;          // a weight other than 1 was met
  bool ignoredWeightTold = false;  // Warning (21) has been given
  bool converged = false;
};

struct Estimates {
  Column<ElementSlot, ElementState> elements;
  Column<ElementSlot, ElementScores> scores;
  Column<ElementSlot, ElementFinal> finals;
  StatisticsStage stage = StatisticsStage::none;
  Column<ElementSlot, FitSums> fitSums;  // from the fit pass to the sweep after it
  FitTotals fitTotals;
  Column<FlankNo, float> FlankMean;  // logits: fair averages (Fair=M)
  RaterAgreement agreement;
  IterationState iteration;
  IterationControl control;
  KernelWork work;
  float ExponentLimit = 80.0f;
  float TinyValue = 0.0f;  // exp(-ExponentLimit)
};

// Reads the finished values of an element; before the sweep there is nothing to read.
class FinishedStatistics {
 public:
  FinishedStatistics(const Estimates& estimates, ElementSlot slot)
      : final_(estimates.finals[slot]) {
    assert(estimates.stage == StatisticsStage::finished);
  }
  const ElementFinal* operator->() const { return &final_; }

 private:
  const ElementFinal& final_;
};

}  // namespace flanks

#endif  // FLANKS_RUN_ESTIMATES_H
