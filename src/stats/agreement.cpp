#include "stats/agreement.h"

#include <algorithm>
#include <limits>
#include <new>
#include <numeric>
#include <stdexcept>

#include "base/held_single.h"
#include "report/format/join_number.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/progress_bar.h"

namespace flanks {
namespace {

constexpr std::int64_t kMostRatings = std::numeric_limits<std::int32_t>::max();

constexpr std::string_view kTooMany = "Interrater=0 ; too many observations to match";
constexpr std::string_view kNoMemory = "Interrater=0 ; not enough allocatable memory available for";
constexpr std::string_view kNothingKept = "Interrater=0 ; no relevant observations";

bool InMatchList(const std::vector<int>& setting, FlankNo flank) {
  return std::find(setting.begin() + 1, setting.end(), flank.number()) != setting.end();
}

Position FirstPositionOf(const EntryMaps& maps, FlankNo flank) {
  for (const Position position : Upward(maps.ModelFlank))
    if (maps.ModelFlank[position] == flank) return position;
  return Position();
}

std::int64_t RatersInUse(const PassParts& parts, SlotRange raters) {
  std::int64_t inUse = 0;
  for (const ElementSlot slot : Upward(raters.low, raters.high))
    if (parts.estimates.elements[slot].ElementStatus != kStatusUnused) ++inUse;
  return inUse;
}

// Ratings with extreme elements count too: as certain ones.
bool CountsForAgreement(ObservationState state) {
  return FeedsEstimation(state) || state == ObservationState::manyExtreme;
}

}  // namespace

std::optional<AgreementPlan> PlanAgreement(const std::vector<int>& InterRaterSetting,
                                           const PassParts& parts, std::string& message) {
  AgreementPlan plan;
  plan.raterFlank = FlankNo(InterRaterSetting.front());
  const EntryMaps& maps = parts.design.maps;
  const Position RaterPosition = FirstPositionOf(maps, plan.raterFlank);
  if (RaterPosition == Position()) {
    message = JoinNumber("Inter-rater agreement flank", InterRaterSetting.front()) +
              " is not active in the data: interrater agreement not computed";
    return std::nullopt;
  }
  const bool listed = InterRaterSetting.size() > 1;
  Column<Position, std::uint8_t> MatchFlag(maps.ModelFlank.rows(), 0);
  for (const Position position : Upward(MatchFlag)) {
    const FlankNo flank = maps.ModelFlank[position];
    const bool matches = listed ? flank != plan.raterFlank && InMatchList(InterRaterSetting, flank)
                                : position != RaterPosition;
    MatchFlag[position] = matches ? 1 : 0;
  }
  if (std::find(MatchFlag.begin(), MatchFlag.end(), 1) == MatchFlag.end()) {
    message = "No active agreement flanks: interrater agreement not computed";
    return std::nullopt;
  }
  const SlotRange raters = SlotsOf(parts.design.flanks, plan.raterFlank);
  if (raters.empty() || RatersInUse(parts, raters) < 2) return std::nullopt;
  plan.RaterLow = raters.low;
  plan.RaterHigh = raters.high;
  // A position whose Flank has no element has no field: all ratings are alike in it.
  const std::vector<ElementLayout::Field>& fields = parts.work.layout.fields;
  for (std::size_t field = 0; field < fields.size(); ++field) {
    if (fields[field].position == RaterPosition) plan.raterField = field;
    if (MatchFlag[fields[field].position] != 0) plan.matchFields.push_back(field);
  }
  return plan;
}

AgreementPass::AgreementPass(const PassParts& parts, const AgreementPlan& plan,
                             std::size_t keptProbabilities)
    : parts_(parts),
      plan_(plan),
      keptProbabilities_(keptProbabilities),
      kernel_(parts.scales.scales()),
      matched_(plan.matchFields.size()),
      raters_(static_cast<std::size_t>(plan.RaterHigh - plan.RaterLow) + 1) {}

bool AgreementPass::Allocate(std::int64_t count) {
  const auto rows = static_cast<std::size_t>(count);
  try {
    ratings_.reserve(rows);
    for (std::vector<std::int32_t>& slots : matched_) slots.reserve(rows);
    order_.reserve(rows);
    orderBefore_.reserve(rows);
  } catch (const std::bad_alloc&) {
    return false;
  } catch (const std::length_error&) {
    return false;
  }
  return true;
}

void AgreementPass::Load() {
  ObservationReader reader(parts_);
  reader.Begin(Categories::wanted);
  while (reader.Next()) {
    const ObservationBlock& block = reader.block();
    const std::vector<std::int32_t>& raters = block.slots[plan_.raterField];
    for (std::size_t i = 0; i < block.count; ++i) {
      if (!CountsForAgreement(block.state[i]) || !(block.weight[i] > 0.0f)) continue;
      if (raters[i] < plan_.RaterLow.number() || raters[i] > plan_.RaterHigh.number()) continue;
      const std::int16_t lowest = parts_.scales.lowestCategory[ScaleRow(block.scale[i])];
      ratings_.push_back({block.MeasureSum[i], block.weight[i], block.scale[i], raters[i],
                          static_cast<std::int16_t>(block.category[i] + lowest),
                          block.state[i] == ObservationState::inPlay});
      for (std::size_t m = 0; m < matched_.size(); ++m)
        matched_[m].push_back(block.slots[plan_.matchFields[m]][i]);
    }
  }
}

// By counting, position after position from the last to the first: each keeps the order of the one
// before it, and the first one that of the records.
void AgreementPass::Sort() {
  order_.resize(ratings_.size());
  orderBefore_.resize(ratings_.size());
  std::iota(order_.begin(), order_.end(), 0);
  for (std::size_t m = matched_.size(); m-- > 0;) {
    if (parts_.console != nullptr && parts_.console->YieldToWindow()) return;
    SortBy(matched_[m]);
  }
}

void AgreementPass::SortBy(const std::vector<std::int32_t>& slots) {
  // Slot 0, no element, comes first.
  std::vector<std::int32_t> start(static_cast<std::size_t>(parts_.design.ElementTotal) + 2, 0);
  for (const std::int32_t slot : slots) ++start[static_cast<std::size_t>(slot) + 1];
  std::partial_sum(start.begin(), start.end(), start.begin());
  order_.swap(orderBefore_);
  for (const std::int32_t row : orderBefore_) {
    const auto slot = static_cast<std::size_t>(slots[static_cast<std::size_t>(row)]);
    order_[static_cast<std::size_t>(start[slot]++)] = row;
  }
}

bool AgreementPass::SameTarget(std::int32_t a, std::int32_t b) const {
  for (const std::vector<std::int32_t>& slots : matched_)
    if (slots[static_cast<std::size_t>(a)] != slots[static_cast<std::size_t>(b)]) return false;
  return true;
}

// One past the last row of the target whose first row this is.
std::size_t AgreementPass::EndOfRun(std::size_t first) const {
  std::size_t end = first + 1;
  while (end < order_.size() && SameTarget(order_[first], order_[end])) ++end;
  return end;
}

void AgreementPass::Evaluate(const Rating& rating, std::vector<float>& probability) {
  const ScaleRow scale(rating.scale);
  EvaluateOne(kernel_.scale(scale), rating.MeasureSum, work_);
  const auto count = static_cast<std::ptrdiff_t>(parts_.scales.ScaleTopCategory[scale]) + 1;
  probability.insert(probability.end(), work_.CategoryProbability.begin(),
                     work_.CategoryProbability.begin() + count);
  probability.resize(probability.size() + static_cast<std::size_t>(parts_.scales.width - count));
}

void AgreementPass::BeginRun(std::size_t first, std::size_t end) {
  const std::size_t most = keptProbabilities_ / static_cast<std::size_t>(parts_.scales.width);
  runFirst_ = first;
  runKept_ = std::min(end - first, most);
  runProbability_.clear();
  for (std::size_t row = first; row < first + runKept_; ++row) {
    const Rating& rating = ratings_[static_cast<std::size_t>(order_[row])];
    if (rating.inPlay) {
      Evaluate(rating, runProbability_);
    } else {
      runProbability_.resize(runProbability_.size() +
                             static_cast<std::size_t>(parts_.scales.width));
    }
  }
}

AgreementPass::Chances AgreementPass::ChancesOf(std::size_t row, std::vector<float>& probability) {
  const Rating& rating = ratings_[static_cast<std::size_t>(order_[row])];
  if (!rating.inPlay) return {};
  const ScaleRow scale(rating.scale);
  const int low = parts_.scales.lowestCategory[scale];
  const int top = low + parts_.scales.ScaleTopCategory[scale];
  const auto width = static_cast<std::size_t>(parts_.scales.width);
  if (row - runFirst_ < runKept_)
    return {runProbability_.data() + (row - runFirst_) * width, low, top};
  probability.clear();
  Evaluate(rating, probability);
  return {probability.data(), low, top};
}

double AgreementPass::ChanceOfAgreement(const Rating& a, const Chances& ofA, const Rating& b,
                                        const Chances& ofB) {
  const auto chanceOf = [](const Chances& chances, int category) {
    const bool onScale = category >= chances.low && category <= chances.top;
    return onScale ? static_cast<double>(chances.probability[category - chances.low]) : 0.0;
  };
  if (ofA.probability == nullptr && ofB.probability == nullptr)
    return a.category == b.category ? 1.0 : 0.0;
  if (ofB.probability == nullptr) return chanceOf(ofA, b.category);
  if (ofA.probability == nullptr) return chanceOf(ofB, a.category);
  double chance = 0.0;
  for (int k = std::min(ofA.top, ofB.top); k >= std::max(ofA.low, ofB.low); --k)
    chance += static_cast<double>(ofA.probability[k - ofA.low]) *
              static_cast<double>(ofB.probability[k - ofB.low]);
  return chance;
}

void AgreementPass::AddPair(const Rating& a, const Rating& b, double chance,
                            RaterAgreement& agreement) {
  const double w = (static_cast<double>(a.weight) + static_cast<double>(b.weight)) / 2.0;
  const double expected = chance * w;
  const double exact = a.category == b.category ? w : 0.0;
  agreement.AgreementOpportunities += w;
  agreement.AgreementExact += exact;
  agreement.AgreementExpected += expected;
  for (const std::int32_t rater : {a.rater, b.rater}) {
    RaterSums& sums = raters_[static_cast<std::size_t>(rater - plan_.RaterLow.number())];
    sums.opportunities += w;
    sums.exact += exact;
    sums.expected += expected;
  }
}

// The pairs of a row with the later rows of its target.
void AgreementPass::PairsOf(std::size_t row, std::size_t end, RaterAgreement& agreement) {
  const Rating& a = ratings_[static_cast<std::size_t>(order_[row])];
  const Chances ofA = ChancesOf(row, probabilityA_);
  for (std::size_t later = row + 1; later < end; ++later) {
    const Rating& b = ratings_[static_cast<std::size_t>(order_[later])];
    if (b.rater == a.rater) continue;
    const Chances ofB = ChancesOf(later, probabilityB_);
    AddPair(a, b, ChanceOfAgreement(a, ofA, b, ofB), agreement);
  }
}

bool AgreementPass::BreaksOff() const {
  Console* const console = parts_.console;
  return console != nullptr && (console->YieldToWindow() || console->finishRequested());
}

void AgreementPass::Walk(RaterAgreement& agreement) {
  agreement = {};
  agreement.raterFlank = plan_.raterFlank;
  agreement.RaterLow = plan_.RaterLow;
  agreement.RaterHigh = plan_.RaterHigh;
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit);
  std::optional<ProgressBar> bar;
  if (parts_.console != nullptr) bar.emplace(*parts_.console, loaded());
  std::size_t first = 0;
  while (first < order_.size()) {
    const std::size_t end = EndOfRun(first);
    if (end - first > 1) BeginRun(first, end);
    for (; first < end; ++first) {
      PairsOf(first, end, agreement);
      if (bar) bar->Advance(static_cast<std::int64_t>(first) + 1);
      if (!BreaksOff()) continue;
      if (bar) bar->Break();
      return Finish(agreement);
    }
  }
  if (bar) bar->End();
  Finish(agreement);
}

void AgreementPass::Finish(RaterAgreement& agreement) const {
  const auto count = static_cast<std::int32_t>(raters_.size());
  agreement.RaterOpportunities.assign(count, 0.0f);
  agreement.RaterExact.assign(count, 0.0f);
  agreement.RaterExpected.assign(count, 0.0f);
  for (const ElementSlot row : Upward(agreement.RaterOpportunities)) {
    const RaterSums& sums = raters_[row.offset()];
    const float opportunities = HeldSingle(sums.opportunities);
    agreement.RaterOpportunities[row] = opportunities;
    if (!(opportunities > 0.0f)) continue;
    agreement.RaterExact[row] = Single(100.0 * HeldSingle(sums.exact) / opportunities);
    agreement.RaterExpected[row] = Single(100.0 * HeldSingle(sums.expected) / opportunities);
  }
}

namespace {

// Says why there is no agreement, and switches it off for the Tables.
void GiveUp(Run& run, std::string_view message) {
  run.console.WarnLine(message);
  run.analysis.settings.InterRaterSetting = {0};
}

// Reads and sorts; false, with the reason told, when there is nothing to walk over.
bool LoadRatings(Run& run, AgreementPass& pass) {
  Console& console = run.console;
  const std::int64_t records = run.analysis.work.records;
  run.at = "allocation";
  if (records > kMostRatings) return GiveUp(run, kTooMany), false;
  if (!pass.Allocate(records)) return GiveUp(run, JoinNumber(kNoMemory, records)), false;
  run.at = "loading";
  console.ShowLine(JoinNumber("Loading up to", records) + " observations ...");
  pass.Load();
  if (console.stopping()) return false;
  if (pass.loaded() == 0) return GiveUp(run, kNothingKept), false;
  run.at = "sorting";
  console.ShowLine(JoinNumber("Sorting", pass.loaded()) + " observations ...");
  pass.Sort();
  return !console.stopping();
}

}  // namespace

void ComputeAgreement(Run& run) {
  const std::vector<int>& setting = run.analysis.settings.InterRaterSetting;
  if (setting.empty() || setting.front() < 1) return;
  Console& console = run.console;
  const PassParts parts = PassPartsOf(run.analysis, console);
  std::string message;
  const std::optional<AgreementPlan> plan = PlanAgreement(setting, parts, message);
  if (!message.empty()) return GiveUp(run, message);
  if (!plan) return;
  console.clearFinishRequest();
  console.ShowLine(
      JoinNumber("Computing inter-rater agreement for flank", plan->raterFlank.number()) +
      ": press Ctrl+F to exit");
  AgreementPass pass(parts, *plan);
  if (!LoadRatings(run, pass)) return;
  run.at = "matching";
  console.ShowLine("Matching ...");
  pass.Walk(run.analysis.estimates.agreement);
  console.clearFinishRequest();
}

}  // namespace flanks
