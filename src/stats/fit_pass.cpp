#include "stats/fit_pass.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "base/single.h"
#include "estimate/moments.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/messages.h"
#include "stats/fit_statistics.h"

namespace flanks {
namespace {

constexpr double kLogLikelihoodLimit = 100.0;

void Add(const FitTerms& from, FitTerms& to) {
  to.ResidualSum += from.ResidualSum;
  to.Information += from.Information;
  to.InfitSum += from.InfitSum;
  to.InfitVarianceSum += from.InfitVarianceSum;
  to.OutfitSum += from.OutfitSum;
  to.ExpectedSum += from.ExpectedSum;
  to.LogLikelihoodSum += from.LogLikelihoodSum;
  to.LogLikelihoodMean += from.LogLikelihoodMean;
  to.LogLikelihoodSpread += from.LogLikelihoodSpread;
  to.FairSum += from.FairSum;
}

void Add(const CorrelationSums& from, CorrelationSums& to) {
  to.W += from.W;
  to.B += from.B;
  to.BB += from.BB;
  to.x += from.x;
  to.xx += from.xx;
  to.Bx += from.Bx;
  to.r += from.r;
  to.rr += from.rr;
  to.Br += from.Br;
  to.v += from.v;
}

CorrelationSums CorrelationTerms(double w, double B, double x, double r, double v) {
  CorrelationSums terms;
  terms.W = w;
  terms.B = w * B;
  terms.BB = w * B * B;
  terms.x = w * x;
  terms.xx = w * x * x;
  terms.Bx = w * B * x;
  terms.r = w * r;
  terms.rr = w * r * r;
  terms.Br = w * B * r;
  terms.v = w * v;
  return terms;
}

// All but the expected score and the fair score, which differ from position to position.
FitTerms TermsOf(const FitRows& rows, std::size_t lane, double w) {
  FitTerms terms;
  terms.Information = w * rows.ModelVariance[lane];
  terms.InfitSum = w * rows.SquaredResidual[lane];
  terms.InfitVarianceSum = w * rows.ResidualVarianceTerm[lane];
  terms.OutfitSum = w * rows.SquaredStandardizedResidual[lane];
  terms.ExpectedSum = w * rows.KurtosisRatio[lane];
  // The difference to the expectation is what is cut; the expectation is taken off later, once.
  const double mean = rows.logitMean[lane];
  const double difference = rows.logitObserved[lane] - mean;
  terms.LogLikelihoodSum =
      w * (mean + std::clamp(difference, -kLogLikelihoodLimit, kLogLikelihoodLimit));
  terms.LogLikelihoodMean = w * mean;
  terms.LogLikelihoodSpread = w * (rows.logitSquare[lane] - mean * mean);
  return terms;
}

void NoteScale(ScaleRow scale, FitSums& sums) {
  if (sums.ElementScale == scale) return;
  if (sums.ElementScale == ScaleRow()) {
    sums.ElementScale = scale;
  } else {
    sums.severalScales = true;
  }
}

std::size_t StateIndex(ObservationState state) {
  return static_cast<std::size_t>(static_cast<int>(state) + kLargestState);
}

FairKind FairKindOf(const Settings& settings) {
  return settings.FairAverageKind == 'M' ? FairKind::mean : FairKind::zero;
}

}  // namespace

FitRows::FitRows(std::size_t fields)
    : category(kKernelBlock),
      fairMeasure(fields, std::vector<float>(kKernelBlock)),
      fairExpected(fields, std::vector<float>(kKernelBlock)) {
  for (std::vector<float>* row : {&expected, &ModelVariance, &FourthMoment, &ResidualVarianceTerm,
                                  &ScoreResidual, &SquaredResidual, &SquaredStandardizedResidual,
                                  &KurtosisRatio, &logitMean, &logitSquare, &logitObserved}) {
    row->resize(kKernelBlock);
  }
}

FitPass::FitPass(const PassParts& parts, FairKind fairKind)
    : parts_(parts),
      reader_(parts),
      kernel_(parts.scales.scales()),
      fairKind_(fairKind),
      rows_(parts.work.layout.fields.size()),
      fieldMean_(parts.work.layout.fields.size()),
      laneOf_(kKernelBlock),
      fairPositions_(fieldMean_.size()),
      fairFields_(fieldMean_.size()),
      fairMeasures_(fieldMean_.size()) {}

void FitPass::ClearSums() {
  parts_.estimates.fitSums.assign(parts_.design.ElementTotal, FitSums{});
  parts_.estimates.fitTotals = FitTotals{};
  responses_ = {};
  ScaleTables& scales = parts_.scales;
  for (const ScaleRow scale : Downward(scales.scaleType)) {
    std::fill_n(scales.ExpectedCount.row(scale), scales.width, 0.0);
    if (scales.scaleType[scale] != ScaleType::rating) continue;
    std::fill_n(scales.DiscriminationSums.row(scale), scales.width, 0.0);
  }
}

void FitPass::Begin() {
  KernelWork& work = parts_.estimates.work;
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit, work.filledTo);
  work.filledTo = std::max(work.filledTo, kernel_.filledTo());
  for (std::size_t field = 0; field < fieldMean_.size(); ++field) {
    const FlankNo flank = parts_.work.layout.fields[field].flank;
    fieldMean_[field] = fairKind_ == FairKind::mean ? parts_.estimates.FlankMean[flank] : 0.0f;
  }
  reader_.Begin(Categories::wanted);
}

bool FitPass::Run() {
  ClearSums();
  Begin();
  while (reader_.Next()) {
    if (!AddBlock()) return false;
  }
  FinishStates();
  for (const FitSums& sums : parts_.estimates.fitSums) {
    if (!std::isfinite(sums.terms.Information) || !std::isfinite(sums.terms.FairSum)) {
      throw std::overflow_error("a total of exponentials is out of range");
    }
  }
  return true;
}

bool FitPass::AddBlock() {
  const ObservationBlock& block = reader_.block();
  CountStates(block);
  kernel_.Arrange(block, Lanes::mayBeMixed);
  if (!FindLanes(block)) return false;
  FillFairMeasures(block);
  for (const LaneRun& run : kernel_.runs()) {
    if (kernel_.oneByOne()) {
      EvaluateOneByOne(block, run);
    } else {
      Evaluate(block, run);
    }
  }
  FetchSums(block);
  for (std::size_t i = 0; i < block.count; ++i) {
    if (laneOf_[i] >= 0) AddObservation(block, i, static_cast<std::size_t>(laneOf_[i]));
  }
  return true;
}

// The sums of an element are three cache lines.  With the elements of a large Flank in random order
// each addition would wait for them one after the other; read for a block in a loop of their own,
// they come together.  Prefetch instructions won't do: without a page's address at hand they are
// dropped.
void FitPass::FetchSums(const ObservationBlock& block) {
  constexpr std::int32_t kSmallFlank = 1000;  // its sums stay in the cache by themselves
  const FitSums* const sums = parts_.estimates.fitSums.data();
  for (std::size_t field = 0; field < block.fields(); ++field) {
    const FlankNo flank = parts_.work.layout.fields[field].flank;
    if (parts_.design.flanks.FlankElementCount[flank] <= kSmallFlank) continue;
    const std::int32_t* const slots = block.slots[field].data();
    double read = 0.0;
    for (std::size_t i = 0; i < block.count; ++i) {
      if (slots[i] == 0) continue;
      const FitSums& element = sums[static_cast<std::size_t>(slots[i]) - 1];
      read += element.terms.ResidualSum + element.terms.FairSum + element.correlation.v;
    }
    fetched_ = read;
  }
}

void FitPass::CountStates(const ObservationBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i) {
    const std::size_t state = StateIndex(block.state[i]);
    ++responses_[state][static_cast<std::size_t>(block.response[i])];
  }
}

// The counters of the states, from the counts of their responses.
void FitPass::FinishStates() {
  FitTotals& totals = parts_.estimates.fitTotals;
  for (std::size_t state = 0; state < responses_.size(); ++state) {
    for (std::size_t response = 0; response < kCategories; ++response) {
      totals.states[state].Add(static_cast<double>(response),
                               static_cast<double>(responses_[state][response]));
    }
  }
}

// Where the block kernel has put each observation.  False when one has a category below 0.
bool FitPass::FindLanes(const ObservationBlock& block) {
  std::fill_n(laneOf_.begin(), block.count, -1);
  bool consistent = true;
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::size_t i = kernel_.entry(lane);
    laneOf_[i] = static_cast<std::int32_t>(lane);
    rows_.category[lane] = block.category[i];
    consistent = consistent && block.category[i] >= 0;
  }
  return consistent;
}

void FitPass::FillFairMeasures(const ObservationBlock& block) {
  if (block.usual) return FillUsualFairMeasures(block);
  for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
    const std::size_t i = kernel_.entry(lane);
    const std::span<const FieldSense> senses = reader_.sense(block.structure[i]);
    std::size_t count = 0;
    for (std::size_t field = block.fields(); field-- > 0;) {
      rows_.fairMeasure[field][lane] = 0.0f;
      const std::int32_t slot = block.slots[field][i];
      if (slot == 0) continue;
      const float measure = parts_.estimates.elements[ElementSlot(slot)].ElementMeasure;
      const float sign = senses[field].sign;
      fairPositions_[count] = {sign * measure, sign * fieldMean_[field]};
      fairFields_[count] = field;
      ++count;
    }
    FairMeasures({fairPositions_.data(), count}, fairMeasures_);
    for (std::size_t j = 0; j < count; ++j) {
      rows_.fairMeasure[fairFields_[j]][lane] = fairMeasures_[j];
    }
  }
}

// The same for a block in which every position has an element and a sense of its own: the level is
// then the same for all.
void FitPass::FillUsualFairMeasures(const ObservationBlock& block) {
  const std::span<const FieldSense> senses = reader_.sense(block.structure[0]);
  const ElementState* const elements = parts_.estimates.elements.data();
  float FairLevel = 0.0f;
  for (std::size_t field = block.fields(); field-- > 0;) {
    FairLevel += static_cast<float>(senses[field].sign) * fieldMean_[field];
  }
  for (std::size_t field = block.fields(); field-- > 0;) {
    const float sign = senses[field].sign;
    const float signedMean = sign * fieldMean_[field];
    const std::int32_t* const slots = block.slots[field].data();
    float* const measures = rows_.fairMeasure[field].data();
    for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane) {
      const auto element = static_cast<std::size_t>(slots[kernel_.entry(lane)]) - 1;
      measures[lane] = FairLevel + (sign * elements[element].ElementMeasure - signedMean);
    }
  }
}

void FitPass::Evaluate(const ObservationBlock& block, const LaneRun& run) {
  const KernelScale& scale = kernel_.scale(run.scale);
  const std::size_t at = run.first;
  kernel_.Evaluate(run, rows_.expected.data(), nullptr);
  const float* const probability = kernel_.probability(run, 0);
  ObservationMoments(
      scale, {rows_.expected.data() + at, probability, kKernelStride},
      {rows_.category.data() + at, run.count},
      {rows_.ModelVariance.data() + at, rows_.FourthMoment.data() + at,
       rows_.ResidualVarianceTerm.data() + at, rows_.ScoreResidual.data() + at,
       rows_.SquaredResidual.data() + at, rows_.SquaredStandardizedResidual.data() + at,
       rows_.KurtosisRatio.data() + at});
  CategoryLogitMoments(scale, run.mixed ? kernel_.steps(run) : LaneSteps{},
                       {kernel_.measures() + at, run.count}, {nullptr, probability, kKernelStride},
                       {rows_.category.data() + at, run.count},
                       {rows_.logitMean.data() + at, rows_.logitSquare.data() + at,
                        rows_.logitObserved.data() + at});
  AddCounts(block, run, probability, kKernelStride);
  EvaluateFairScores(run);
}

// A run of one observation, through the array that a Poisson scale reads beyond what is filled.
void FitPass::EvaluateOneByOne(const ObservationBlock& block, const LaneRun& run) {
  const KernelScale& scale = kernel_.scale(run.scale);
  KernelWork& work = parts_.estimates.work;
  const std::size_t lane = run.first;
  rows_.expected[lane] = EvaluateOne(scale, kernel_.measures()[lane], work).expected;
  const Moments moments = ObservationMoments(scale, rows_.expected[lane], rows_.category[lane],
                                             work.CategoryProbability);
  rows_.ModelVariance[lane] = moments.ModelVariance;
  rows_.FourthMoment[lane] = moments.FourthMoment;
  rows_.ResidualVarianceTerm[lane] = moments.ResidualVarianceTerm;
  rows_.ScoreResidual[lane] = moments.ScoreResidual;
  rows_.SquaredResidual[lane] = moments.SquaredResidual;
  rows_.SquaredStandardizedResidual[lane] = moments.SquaredStandardizedResidual;
  rows_.KurtosisRatio[lane] = moments.KurtosisRatio;
  const LogitMoments logits = CategoryLogitMoments(
      scale, kernel_.measures()[lane], work.CategoryProbability.data(), 1, rows_.category[lane]);
  rows_.logitMean[lane] = logits.first;
  rows_.logitSquare[lane] = logits.second;
  rows_.logitObserved[lane] = logits.observed;
  AddCounts(block, run, work.CategoryProbability.data(), 1);
  for (std::size_t field = block.fields(); field-- > 0;) {
    if (block.slots[field][kernel_.entry(lane)] == 0) continue;
    rows_.fairExpected[field][lane] =
        EvaluateOne(scale, rows_.fairMeasure[field][lane], work).expected;
  }
}

// Only observations with all elements in play count for their scale.
void FitPass::AddCounts(const ObservationBlock& block, const LaneRun& run, const float* probability,
                        std::size_t stride) {
  const KernelScale& shape = kernel_.scale(run.scale);
  const std::size_t width = static_cast<std::size_t>(parts_.scales.width);
  for (std::size_t j = 0; j < run.count; ++j) {
    const std::size_t i = kernel_.entry(run.first + j);
    if (block.state[i] != ObservationState::inPlay) continue;
    const ScaleRow scale(block.scale[i]);  // lanes of a mixed run are each on their own
    AddExpectedCounts(shape, probability + j, stride, block.weight[i],
                      {parts_.scales.ExpectedCount.row(scale), width},
                      {parts_.scales.DiscriminationSums.row(scale), width});
  }
}

// Overwrites the probabilities.
void FitPass::EvaluateFairScores(const LaneRun& run) {
  for (std::size_t field = 0; field < rows_.fairMeasure.size(); ++field) {
    kernel_.EvaluateAt(run, rows_.fairMeasure[field].data(), rows_.fairExpected[field].data());
  }
}

void FitPass::AddObservation(const ObservationBlock& block, std::size_t i, std::size_t lane) {
  const ScaleRow scale(block.scale[i]);
  const bool inPlay = block.state[i] == ObservationState::inPlay;
  const double w = block.weight[i];
  const double m = parts_.scales.ScaleTopCategory[scale];
  const double expected = rows_.expected[lane];
  const double offset = parts_.scales.lowestCategory[scale];
  FitTerms terms = TermsOf(rows_, lane, w);
  const CorrelationSums pair = CorrelationTerms(w, block.MeasureSum[i], rows_.category[lane] / m,
                                                expected / m, rows_.ModelVariance[lane] / (m * m));
  if (inPlay) {
    parts_.estimates.fitTotals.TotalWeightedCount += w;
    parts_.estimates.fitTotals.SquaredStandardizedSum += terms.OutfitSum;
  }
  const std::span<const FieldSense> senses = reader_.sense(block.structure[i]);
  for (std::size_t field = block.fields(); field-- > 0;) {
    const std::int32_t slot = block.slots[field][i];
    if (slot == 0) continue;
    const ElementSlot element(slot);
    FitSums& sums = parts_.estimates.fitSums[element];
    NoteScale(scale, sums);
    Add(pair, sums.correlation);
    if (!inPlay && IsInPlay(parts_.estimates.elements[element].ElementStatus)) continue;
    terms.ResidualSum = w * (senses[field].reversed ? m - expected : expected);
    terms.FairSum = w * (rows_.fairExpected[field][lane] + offset);
    Add(terms, sums.terms);
  }
}

void CalculateFit(Run& run) {
  Estimates& estimates = run.analysis.estimates;
  run.console.ShowLine("Calculating fit statistics");
  for (const ElementSlot slot : Upward(estimates.scores)) {
    if (estimates.elements[slot].ElementStatus == kStatusUnused) continue;
    estimates.scores[slot].MaxScore = std::abs(estimates.scores[slot].MaxScore);
  }
  const FairKind fairKind = FairKindOf(run.analysis.settings);
  FlankMeans(run.analysis.design, estimates);
  FitPass pass(PassPartsOf(run.analysis, run.console), fairKind);
  if (!pass.Run()) run.console.FailureStop(message::kFairScore);
  if (pass.readsWhatOthersLeft())
    run.console.WarnLine("Poisson scales beside larger scales: their S.E. and fit are unreliable.");
  estimates.stage = StatisticsStage::sums;
}

void SummarizeFit(Run& run) {
  Estimates& estimates = run.analysis.estimates;
  run.console.ShowLine("Computing fit summary statistics..");
  estimates.finals.resize(run.analysis.design.ElementTotal);
  FinishStatistics(FitSettingsOf(run.analysis.settings), estimates);
}

}  // namespace flanks
