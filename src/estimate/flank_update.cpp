#include "estimate/flank_update.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/single.h"
#include "estimate/prox.h"
#include "spec/anchoring.h"

namespace flanks {
namespace {

constexpr double kHalfDrift = 0.5;  // anchored and group sets take half of it in one step

// A set of elements whose projected mean matters.
struct SetSum {
  std::int64_t count = 0;
  double sum = 0.0;

  void add(double value) {
    ++count;
    sum += value;
  }
  double mean() const { return sum / static_cast<double>(count); }
};

// What the first sweep finds.
struct Sets {
  std::vector<SetSum> groups;  // 1 .. the highest group number
  SetSum preset;               // the Flank's pre-anchored set
  SetSum centered;
  bool GroupPresent = false, FixedPresent = false, PresetPresent = false;
  double shift = 0.0;  // taken off the steps of elements outside groups
};

class Updater {
 public:
  Updater(const FlankUpdateInput& input, Estimates& estimates, FlankSteps& steps)
      : input_(input),
        design_(input.design),
        estimates_(estimates),
        steps_(steps),
        range_(SlotsOf(design_.flanks, input.flank)),
        orientation_(design_.flanks.FlankOrientation[input.flank]),
        positive_(orientation_ == kPositiveOrientation),
        center_(design_.flanks.FlankCenter[input.flank]),
        jmle_(estimates.iteration.EstimationPhase >= kPhaseJmle) {
    sets_.groups.resize(static_cast<std::size_t>(design_.flanks.FlankHighestGroup[input.flank]) +
                        1);
    extremesInGroups_ = CountsExtremesInGroups(design_.flanks.FlankOptions[input.flank]);
  }

  FlankUpdate Run() {
    for (ElementSlot e : Upward(range_.low, range_.high)) Classify(e);
    FindShift();
    for (ElementSlot e : Upward(range_.low, range_.high)) Move(e);
    for (ElementSlot e : Upward(range_.low, range_.high)) TakeTarget(e);
    return result_;
  }

 private:
  StepResult& StepOf(ElementSlot e) { return steps_[static_cast<std::size_t>(e - range_.low)]; }
  float Preset(ElementSlot e) const { return design_.elements.PresetMeasure[e]; }
  // The group of an element whose group's mean is anchored; 0 for none.  Other elements with a
  // group number are grouped in the report only.
  int GroupOf(ElementSlot e) const {
    const bool member = design_.elements.ElementAnchor[e] == AnchorKind::groupAnchored;
    return member && !HasTarget(e) ? design_.elements.ElementGroup[e] : 0;
  }
  bool HasTarget(ElementSlot e) const { return design_.elements.ElementTarget[e].number() > 0; }

  void TakeStep(ElementSlot e);
  bool TakesPreset(ElementSlot e) const;
  void Classify(ElementSlot e);
  std::int16_t StatusOf(ElementSlot e);
  std::int16_t ActiveStatus(ElementSlot e, std::int16_t status);
  void AddToGroup(ElementSlot e);
  void AddExtreme(ElementSlot e);
  void FindShift();
  void Move(ElementSlot e);
  bool ShiftStep(ElementSlot e, StepResult& step);
  void Compete(ElementSlot e, const StepResult& step);
  void GuardRange(ElementSlot e);
  void HoldExtreme(ElementSlot e);
  void TakeTarget(ElementSlot e);

  const FlankUpdateInput& input_;
  const Design& design_;
  Estimates& estimates_;
  FlankSteps& steps_;
  const SlotRange range_;
  const std::int16_t orientation_;
  const bool positive_;
  const std::int16_t center_;
  const bool jmle_;
  bool extremesInGroups_ = false;
  Sets sets_;
  FlankUpdate result_;
};

// In PROX an element with a preset takes it; so does one without weight.
bool Updater::TakesPreset(ElementSlot e) const {
  return !jmle_ &&
         (Preset(e) != 0.0f || estimates_.elements[e].ShiftedExpected <= estimates_.TinyValue);
}

void Updater::TakeStep(ElementSlot e) {
  ElementState& state = estimates_.elements[e];
  const ElementScores& scores = estimates_.scores[e];
  StepResult& step = StepOf(e);
  step = {};
  if (jmle_) {
    const ElementSums sums{scores.ObservedScore,  scores.MaxScore,   state.ExpectedSum,
                           state.ShiftedExpected, state.Information, scores.SmallestWeight};
    step = ElementStep(sums, input_.control, orientation_);
  } else if (TakesPreset(e)) {
    state.ElementMeasure = Preset(e);
  } else {
    const float measure =
        ProxMeasure(state, scores.ObservedScore, std::abs(scores.MaxScore), orientation_);
    step.step = Single(static_cast<double>(measure) - state.ElementMeasure);
  }
}

void Updater::Classify(ElementSlot e) {
  ElementState& state = estimates_.elements[e];
  const std::int16_t before = state.ElementStatus;
  if (before == kStatusUnused || before == kStatusDropped) {
    state.ElementMeasure = 0.0f;
    return;
  }
  if (HasTarget(e)) return;
  TakeStep(e);
  state.ElementStatus = StatusOf(e);
  estimates_.scores[e].MaxScore = std::abs(estimates_.scores[e].MaxScore);
  if (state.ElementStatus != before) estimates_.iteration.RecountRequired = true;
}

// The status of an element that is in use, and its part in the sets.
std::int16_t Updater::StatusOf(ElementSlot e) {
  const ElementScores& scores = estimates_.scores[e];
  const std::int16_t status = estimates_.elements[e].ElementStatus;
  if (status == kStatusAnchored && GroupOf(e) == 0) {
    if (scores.MaxScore != 0.0) {
      sets_.FixedPresent = true;
      sets_.preset.add(StepOf(e).step);
    }
    return status;
  }
  if (scores.MaxScore == 0.0) {
    const bool neverUsed = input_.firstPass && scores.Count == 0.0f;
    return neverUsed ? kStatusUnused : kStatusDropped;
  }
  if (IsExtreme(status)) {
    AddExtreme(e);
    return status;
  }
  if (scores.ObservedScore == 0.0) {
    AddExtreme(e);
    return positive_ ? kStatusMinimum : kStatusMaximum;
  }
  if (scores.ObservedScore == std::abs(scores.MaxScore)) {
    AddExtreme(e);
    return positive_ ? kStatusMaximum : kStatusMinimum;
  }
  if (scores.MaxScore < 0.0 || status == kStatusHeld) return kStatusHeld;
  return ActiveStatus(e, status);
}

std::int16_t Updater::ActiveStatus(ElementSlot e, std::int16_t status) {
  ++estimates_.iteration.FreeParameterCount;
  const StepResult& step = StepOf(e);
  if (GroupOf(e) != 0 && status == kStatusAnchored) {
    AddToGroup(e);
  } else if (Preset(e) != 0.0f && !jmle_) {
    sets_.PresetPresent = true;
    sets_.preset.add(step.step);
  } else if (status == kStatusFree) {
    sets_.centered.add(static_cast<double>(estimates_.elements[e].ElementMeasure) + step.step);
  }
  return status;
}

void Updater::AddToGroup(ElementSlot e) {
  sets_.GroupPresent = true;
  sets_.groups[static_cast<std::size_t>(GroupOf(e))].add(
      static_cast<double>(estimates_.elements[e].ElementMeasure) + StepOf(e).step - Preset(e));
}

// An extreme element counts for its anchored group when the Flank's letter is "G", not "X"; outside
// groups it counts where extremes share the origin.
void Updater::AddExtreme(ElementSlot e) {
  if (GroupOf(e) != 0 && extremesInGroups_)
    AddToGroup(e);
  else if (center_ == kCenteredWithExtremes)
    sets_.centered.add(static_cast<double>(estimates_.elements[e].ElementMeasure) + StepOf(e).step);
}

void Updater::FindShift() {
  IterationState& iteration = estimates_.iteration;
  char& letter =
      iteration.flankString[static_cast<std::size_t>(input_.flank.number() - FlankNo::first)];
  letter = ' ';
  if (sets_.centered.count > 0 && !sets_.GroupPresent && !sets_.FixedPresent) {
    if (center_ == kNonCentered) {
      letter = 'U';
    } else if (!sets_.PresetPresent) {
      --iteration.FreeParameterCount;
      sets_.shift = sets_.centered.mean();
    }
    sets_.FixedPresent = sets_.PresetPresent;
  }
  if (sets_.preset.count > 0) sets_.shift = kHalfDrift * sets_.preset.mean();
  int groups = 0;
  for (std::size_t g = sets_.groups.size(); g-- > 1;) {
    if (sets_.groups[g].count == 0) continue;
    --iteration.FreeParameterCount;
    ++groups;
    sets_.shift += kHalfDrift * sets_.groups[g].mean();
  }
  if (groups > 1) sets_.shift /= groups;
}

// Takes the drift off a step.  False: the element stands on its preset measure and does not move.
bool Updater::ShiftStep(ElementSlot e, StepResult& step) {
  const int group = GroupOf(e);
  if (group != 0) {
    const SetSum& members = sets_.groups[static_cast<std::size_t>(group)];
    if (members.count <= 1) return false;
    step.step = Single(step.step - members.mean());
    return true;
  }
  if (estimates_.elements[e].ElementStatus == kStatusAnchored) return false;
  if (Preset(e) != 0.0f && !jmle_) return false;
  step.step = Single(step.step - sets_.shift);
  return true;
}

void Updater::Move(ElementSlot e) {
  ElementState& state = estimates_.elements[e];
  const std::int16_t status = state.ElementStatus;
  if (status == kStatusUnused || status == kStatusDropped || HasTarget(e)) return;
  if (status == kStatusAnchored && !sets_.GroupPresent) return;
  StepResult& step = StepOf(e);
  if (jmle_) estimates_.scores[e].StepWeight = step.step;
  if (ShiftStep(e, step)) {
    state.ElementMeasure = Single(static_cast<double>(state.ElementMeasure) + step.step);
  } else {
    state.ElementMeasure = Preset(e);
    step.step = 0.0f;
  }
  Compete(e, step);
  if (IsInPlay(status))
    GuardRange(e);
  else if (!jmle_)
    HoldExtreme(e);
  result_.summary.add(state.ElementMeasure);
}

void Updater::Compete(ElementSlot e, const StepResult& step) {
  LargestChanges& changes = estimates_.iteration.changes;
  if (std::abs(step.residual) > std::abs(changes.MaxScoreResidual)) {
    changes.MaxScoreResidual = step.residual;
    changes.scoreElement = e;
  }
  if (std::abs(step.fraction) > std::abs(changes.MaxScoreFraction))
    changes.MaxScoreFraction = step.fraction;
  if (std::abs(step.step) > std::abs(changes.MaxLogitChange)) {
    changes.MaxLogitChange = step.step;
    changes.logitElement = e;
    changes.logitPlace.clear();
  }
}

void Updater::GuardRange(ElementSlot e) {
  float& measure = estimates_.elements[e].ElementMeasure;
  if (std::abs(measure) <= estimates_.ExponentLimit) return;
  if (result_.outOfRange.number() < ElementSlot::first) result_.outOfRange = e;
  if (!jmle_) result_.endProx = true;
  measure = std::copysign(estimates_.ExponentLimit, measure);
}

// The range guard is for elements in play.  JMLE moves an extreme one by a logit at most, but with
// large weights PROX can send it where no exponential of a long scale is finite.
void Updater::HoldExtreme(ElementSlot e) {
  float& measure = estimates_.elements[e].ElementMeasure;
  measure = std::clamp(measure, -estimates_.ExponentLimit, estimates_.ExponentLimit);
}

// When all elements have moved: an element with a target stands where its target does.  It is no
// anchor of the Flank and has no step of its own.
void Updater::TakeTarget(ElementSlot e) {
  if (!HasTarget(e)) return;
  ElementState& state = estimates_.elements[e];
  state.ElementMeasure = estimates_.elements[design_.elements.ElementTarget[e]].ElementMeasure;
  GuardRange(e);  // the target may be extreme, which has no guard
}

}  // namespace

FlankUpdate UpdateFlank(const FlankUpdateInput& input, Estimates& estimates, FlankSteps& steps) {
  return Updater(input, estimates, steps).Run();
}

std::string FirstFlankString(const Design& design) {
  std::string letters(static_cast<std::size_t>(design.FlankCount), ' ');
  for (FlankNo flank : Upward(design.flanks.FlankCenter)) {
    if (design.flanks.FlankCenter[flank] != kNonCentered) continue;
    const SlotRange range = SlotsOf(design.flanks, flank);
    bool anchored = false;
    for (ElementSlot e : Upward(range.low, range.high))
      anchored = anchored || (design.elements.ElementAnchor[e] != AnchorKind::none &&
                              design.elements.ElementTarget[e].number() == 0);
    if (!anchored) letters[static_cast<std::size_t>(flank.number() - FlankNo::first)] = 'U';
  }
  return letters;
}

}  // namespace flanks
