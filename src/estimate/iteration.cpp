#include "estimate/iteration.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/exponential.h"
#include "base/single.h"
#include "estimate/convergence.h"
#include "estimate/discrimination_step.h"
#include "estimate/flank_update.h"
#include "estimate/jmle_pass.h"
#include "estimate/observation.h"
#include "estimate/priority.h"
#include "estimate/recount.h"
#include "estimate/scale_build.h"
#include "estimate/subsets.h"
#include "estimate/table3.h"
#include "estimate/threshold_step.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr float kSmallestSecantDelta = 0.1f;  // logits
constexpr float kProxIsEnough = 0.9f;         // logits: smaller changes leave PROX

// Every element to its start: in play, at its anchor or starting value.  An element with a target
// is held like an anchored one, at the measure of its target.
void StartElements(const Design& design, Estimates& estimates) {
  estimates.elements.assign(design.ElementTotal, {});
  estimates.scores.assign(design.ElementTotal, {});
  estimates.finals.assign(design.ElementTotal, {});
  estimates.stage = StatisticsStage::none;
  for (ElementSlot e : Upward(estimates.elements)) {
    ElementState& state = estimates.elements[e];
    const ElementSlot target = design.elements.ElementTarget[e];
    const bool hasTarget = target.number() > 0;
    const bool anchored = design.elements.ElementAnchor[e] != AnchorKind::none;
    state.ElementStatus = anchored || hasTarget ? kStatusAnchored : kStatusFree;
    state.ElementMeasure = design.elements.PresetMeasure[hasTarget ? target : e];
  }
}

void StartEstimates(const Design& design, const Settings& settings, Estimates& estimates) {
  StartElements(design, estimates);
  estimates.iteration = {};
  estimates.iteration.flankString = FirstFlankString(design);
  estimates.control.SpeedFactor = 1.0f;
  estimates.control.NewtonValue = std::min(std::abs(settings.Newton), kLargestNewton);
  estimates.control.IterationLimit = settings.Iterations;
  estimates.ExponentLimit = settings.Hardware;
  estimates.TinyValue = Exponential(-settings.Hardware);
}

// The loop's parts of the analysis and what it keeps between iterations.
class Loop {
 public:
  explicit Loop(Run& run)
      : run_(run),
        console_(run.console),
        design_(run.analysis.design),
        settings_(run.analysis.settings),
        scales_(run.analysis.scales),
        estimates_(run.analysis.estimates),
        state_(estimates_.iteration),
        limits_(LimitsOf(settings_.Convergence)),
        reader_(PassPartsOf(run.analysis, run.console)),
        counting_(reader_.parts()),
        jmle_(reader_.parts()) {
    int largest = 0;
    for (FlankNo flank : Upward(design_.flanks.FlankElementCount))
      largest = std::max(largest, design_.flanks.FlankElementCount[flank]);
    steps_.resize(static_cast<std::size_t>(largest));
    priorities_.assign(design_.FlankCount, 0);
    if (settings_.Subsets != 'N') subsets_.emplace(reader_.parts());
  }

  void RunIterations();

 private:
  bool BeginLevel();
  bool Iteration();
  bool NoDataLeft();
  void EnterPhase();
  PassResult Pass();
  void StepThresholds();
  void UpdateFlanks(const StepControl& control);
  void FinishSubsets();
  void WarnOfConstraints();
  void WarnOutOfRange(ElementSlot element);
  void ControlSpeed(const LargestChanges& before);
  bool GoesOn();
  void TellOfManyIterations();
  StepControl ControlNow() const;

  Run& run_;
  Console& console_;
  const Design& design_;
  const Settings& settings_;
  ScaleTables& scales_;
  Estimates& estimates_;
  IterationState& state_;
  const ConvergenceLimits limits_;
  ObservationReader reader_;
  CountingPass counting_;
  JmlePass jmle_;
  FlankSteps steps_;
  Column<FlankNo, std::int32_t> priorities_;
  std::int32_t level_ = kBeforeFirstLevel;
  int levelsBegun_ = 0;
  std::optional<SubsetCheck> subsets_;  // in the first iteration
  std::vector<FlankLine> summaries_;    // of the iteration at work, in the order of the Flanks
  // As this iteration began: a key acts at the next one.
  float newtonStep_ = 0.0f;
  float speedFactor_ = 1.0f;
  std::int64_t tellAt_ = 1000;  // the iteration at which the user is told that there are many
  bool firstPass_ = true;
  bool endProx_ = false;  // the switch that ends PROX at the next iteration
  bool constraintsWarned_ = false;
  bool outOfRangeWarned_ = false;  // in this iteration
  bool limitReached_ = false;      // `Iterations=` stopped the loop before it had converged
  ProgressWatch progress_;
  bool hopeless_ = false;  // iterations without progress ended the loop
};

void Loop::RunIterations() {
  WriteTable3Head(console_);
  while (BeginLevel())
    while (Iteration()) {
    }
  console_.clearFinishRequest();
  WriteTable3Foot(console_);
  if (limitReached_)
    console_.WarnLine("'Iterations=" + std::to_string(estimates_.control.IterationLimit) +
                      "' reached.  'Iterations=0' removes limit");
  if (hopeless_)
    console_.WarnLine(
        JoinNumber("Iterations ended: no progress in the last", ProgressWatch::kPatience));
  if (!Halted(run_)) state_.EstimationPhase = kPhaseFinished;
}

// False when all levels have been estimated, or the run is to end.
bool Loop::BeginLevel() {
  if (levelsBegun_ > 0 && (Halted(run_) || console_.finishRequested())) return false;
  level_ = NextPriority(level_, priorities_, design_.flanks.FlankElementCount);
  ++levelsBegun_;
  return level_ != kNoMoreLevels;
}

// One iteration; true when another is to be made.
bool Loop::Iteration() {
  newtonStep_ = estimates_.control.NewtonValue;
  speedFactor_ = estimates_.control.SpeedFactor;
  outOfRangeWarned_ = false;
  EnterPhase();
  ++state_.IterationNumber;
  const LargestChanges before = state_.changes;
  state_.changes = {};
  state_.FreeParameterCount = 0;
  const PassResult pass = Pass();
  if (Halted(run_)) return false;
  if (pass.poissonSeen) endProx_ = true;
  if (firstPass_) KeepFirstScores(estimates_);
  // Scores that were counted with another recode or top category are no longer right.
  if (state_.RecountRequired) state_.RecountRequired = RebuildScales(scales_);
  // The thresholds of a later level stay as the first has left them.
  if (levelsBegun_ < 2) StepThresholds();
  UpdateFlanks(ControlNow());
  ControlSpeed(before);
  ReportIteration(console_, {design_, estimates_, scales_, summaries_});
  if (!pass.dataSeen) return NoDataLeft();
  FinishSubsets();
  firstPass_ = false;
  state_.SecantDelta = std::max(kSmallestSecantDelta, std::abs(state_.changes.MaxLogitChange));
  if (!GoesOn()) return false;
  TellOfManyIterations();
  return !console_.YieldToWindow() && !console_.finishRequested();
}

// A fault, told when the iteration has been reported.
bool Loop::NoDataLeft() {
  FaultParticulars nowhere;
  nowhere.lineNumber = kNoLineNumber;
  SetFault(run_.analysis.reading, Fault::allExtreme, nowhere);
  return false;
}

// PROX takes the first one or two iterations after a recount.
void Loop::EnterPhase() {
  if (state_.RecountRequired) {
    state_.EstimationPhase = kPhaseStart;
    // The switch is set when no Flank floats: PROX has no origin to give then.
    endProx_ = state_.flankString.find('U') == std::string::npos;
  } else if (state_.EstimationPhase == kPhaseJmle) {
    WarnOfConstraints();
  }
  if (state_.EstimationPhase == kPhaseStart) {
    state_.EstimationPhase = kPhaseProx;
  } else if (state_.EstimationPhase == kPhaseProx &&
             (std::abs(state_.changes.MaxLogitChange) < kProxIsEnough || endProx_ ||
              state_.IterationNumber > 1)) {
    state_.EstimationPhase = kPhaseJmle;
  }
}

void Loop::WarnOfConstraints() {
  if (constraintsWarned_) return;
  const auto floating = std::count(state_.flankString.begin(), state_.flankString.end(), 'U');
  if (floating == 1) return;
  console_.WarnLine(floating == 0 ? message::kOverConstrained : message::kUnderConstrained);
  constraintsWarned_ = true;
}

// The pass after a recount was asked for is always a PROX pass, which counts.
PassResult Loop::Pass() {
  const Recount recount = state_.RecountRequired ? Recount::needed : Recount::notNeeded;
  ClearPassSums(estimates_);
  ClearScaleSums(recount, scales_);
  if (state_.RecountRequired) ClearScores(estimates_);
  if (state_.EstimationPhase == kPhaseProx) {
    if (!subsets_) return counting_.Run(reader_, recount);
    subsets_->Begin();
    const PassResult result = counting_.Run(reader_, recount, &*subsets_);
    subsets_->EndPass();
    return result;
  }
  return jmle_.Run(reader_, newtonStep_);
}

void Loop::StepThresholds() {
  const bool jmle = state_.EstimationPhase == kPhaseJmle;
  for (ScaleRow scale : Downward(scales_.scaleType)) {
    if (jmle && EstimatesDiscrimination(scales_, scale)) {
      ++state_.FreeParameterCount;
      DiscriminationStep(scale, estimates_.TinyValue, scales_, state_.changes);
    }
    if (scales_.scaleType[scale] != ScaleType::rating || scales_.ScaleTopCategory[scale] < 2)
      continue;
    if (jmle)
      ThresholdStep(scale, speedFactor_, estimates_.TinyValue, scales_, state_.changes);
    else
      HoldThresholds(scale, scales_);
  }
}

StepControl Loop::ControlNow() const {
  return {settings_.Xtreme[0], newtonStep_, speedFactor_, state_.SecantDelta, estimates_.TinyValue};
}

void Loop::UpdateFlanks(const StepControl& control) {
  summaries_.clear();
  for (FlankNo flank : Upward(design_.flanks.FlankElementCount)) {
    if (design_.flanks.FlankElementCount[flank] == 0 || priorities_[flank] != level_) continue;
    const FlankUpdate update =
        UpdateFlank({design_, flank, control, firstPass_}, estimates_, steps_);
    if (update.endProx) endProx_ = true;
    if (update.outOfRange.number() >= ElementSlot::first) WarnOutOfRange(update.outOfRange);
    summaries_.push_back({flank, update.summary});
  }
}

// What the check of connectivity found; it takes part in the first iteration alone.
void Loop::FinishSubsets() {
  if (!subsets_) return;
  subsets_->Finish(reader_);
  run_.analysis.subsets = subsets_->Results();
  std::vector<std::string>& notes = run_.analysis.report.closingNotes;
  std::replace(notes.begin(), notes.end(), std::string(message::kSubsetsNotVerified),
               subsets_->note());
  subsets_.reset();
}

void Loop::WarnOutOfRange(ElementSlot element) {
  if (outOfRangeWarned_) return;
  outOfRangeWarned_ = true;
  const FlankNo flank = design_.elements.ElementFlank[element];
  console_.WarnLine(JoinNumber(message::kOutOfRange, flank.number()) + " " +
                    JoinNumber("Element", design_.elements.ElementNumber[element]));
}

void Loop::ControlSpeed(const LargestChanges& before) {
  IterationControl& control = estimates_.control;
  if (control.NewtonValue != 0.0f || state_.IterationNumber <= kSpeedControlFrom) return;
  control.SpeedFactor = NextSpeedFactor(control.SpeedFactor, state_.changes, before);
}

bool Loop::GoesOn() {
  const bool going = KeepsGoing(state_, limits_);
  state_.converged = !going;
  if (state_.RecountRequired || state_.EstimationPhase != kPhaseJmle) progress_.Restart();
  // Who sets no limit at all waits for a standstill, however long it takes.
  hopeless_ = going && progress_.Hopeless(state_.changes) && !NoLimitSet(limits_);
  if (hopeless_) return false;
  if (!LimitReached(state_, estimates_.control.IterationLimit)) return going;
  limitReached_ = going;
  return false;
}

// A long way to convergence is told at the 1,000th iteration, the 10,000th and so on.
void Loop::TellOfManyIterations() {
  if (state_.IterationNumber != tellAt_) return;
  tellAt_ *= 10;
  console_.ShowFlagged(JoinNumber("No convergence after", state_.IterationNumber) +
                       " iterations. Iterations= limits their number, Convergence= says how close "
                       "they are to come");
}

}  // namespace

void PrepareEstimates(Run& run) {
  Analysis& analysis = run.analysis;
  StartEstimates(analysis.design, analysis.settings, analysis.estimates);
  BuildScales(analysis.design, analysis.structures, analysis.settings.Uscale, analysis.scales);
}

void Iterate(Run& run) {
  Analysis& analysis = run.analysis;
  SelectTable(run.console, 3);
  analysis.estimates.control.iterating = true;
  run.process.control.steering = &analysis.estimates.control;
  run.at = "iterations";
  Loop(run).RunIterations();
  analysis.estimates.control.iterating = false;
  run.process.control.steering = nullptr;
}

}  // namespace flanks
