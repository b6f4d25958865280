#include "stats/bias_fit.h"

#include <algorithm>

#include "estimate/moments.h"
#include "run/console.h"

namespace flanks {

BiasFitPass::Lanes::Lanes() : category(kKernelBlock) {
  for (std::vector<float>* row :
       {&expected, &ModelVariance, &FourthMoment, &ResidualVarianceTerm, &ScoreResidual,
        &SquaredResidual, &SquaredStandardizedResidual, &KurtosisRatio}) {
    row->resize(kKernelBlock);
  }
}

BiasFitPass::BiasFitPass(BiasEstimates& bias)
    : bias_(bias), block_(bias.parts, bias.terms), responses_(kKernelBlock) {}

void BiasFitPass::Run(ObservationReader& reader, Column<BiasTermRow, BiasFitSums>& sums) {
  responses_.Clear();
  block_.Begin();
  reader.Begin(Categories::wanted);
  while (reader.Next()) {
    const ObservationBlock& block = reader.block();
    block_.Arrange(reader, &bias_.states);
    Evaluate(block);
    for (std::size_t i = 0; i < block.count; ++i) {
      block_.FetchAhead(i, block.count, sums);
      if (block_.term(i) == BiasTermList::kNoTerm) continue;
      const std::size_t lane = block_.lane(i);
      AddTo(block.weight[i], lane, sums[BiasTermRow(block_.term(i))]);
      AddResponse(block, i, lane);
    }
    responses_.EndBlock();
  }
}

void BiasFitPass::Evaluate(const ObservationBlock& block) {
  const BlockKernel& kernel = block_.kernel();
  for (std::size_t lane = 0; lane < kernel.lanes(); ++lane)
    lanes_.category[lane] = block.category[kernel.entry(lane)];
  for (const LaneRun& run : kernel.runs()) {
    if (!kernel.oneByOne()) {
      EvaluateRun(run);
    } else if (block_.term(kernel.entry(run.first)) != BiasTermList::kNoTerm) {
      EvaluateOneByOne(run);
    }
  }
}

void BiasFitPass::EvaluateRun(const LaneRun& run) {
  BlockKernel& kernel = block_.kernel();
  const std::size_t at = run.first;
  kernel.EvaluateAt(run, block_.measures(), lanes_.expected.data());
  ObservationMoments(
      kernel.scale(run.scale),
      {lanes_.expected.data() + at, kernel.probability(run, 0), kKernelStride},
      {lanes_.category.data() + at, run.count},
      {lanes_.ModelVariance.data() + at, lanes_.FourthMoment.data() + at,
       lanes_.ResidualVarianceTerm.data() + at, lanes_.ScoreResidual.data() + at,
       lanes_.SquaredResidual.data() + at, lanes_.SquaredStandardizedResidual.data() + at,
       lanes_.KurtosisRatio.data() + at});
}

// A run of one observation, through the array that a Poisson scale reads beyond what is filled.
void BiasFitPass::EvaluateOneByOne(const LaneRun& run) {
  const BlockKernel& kernel = block_.kernel();
  const KernelScale& scale = kernel.scale(run.scale);
  KernelWork& work = bias_.parts.estimates.work;
  const std::size_t lane = run.first;
  lanes_.expected[lane] = EvaluateOne(scale, block_.measure(lane), work).expected;
  const Moments moments = ObservationMoments(scale, lanes_.expected[lane], lanes_.category[lane],
                                             work.CategoryProbability);
  lanes_.ModelVariance[lane] = moments.ModelVariance;
  lanes_.ResidualVarianceTerm[lane] = moments.ResidualVarianceTerm;
  lanes_.ScoreResidual[lane] = moments.ScoreResidual;
  lanes_.SquaredResidual[lane] = moments.SquaredResidual;
  lanes_.SquaredStandardizedResidual[lane] = moments.SquaredStandardizedResidual;
  lanes_.KurtosisRatio[lane] = moments.KurtosisRatio;
}

void BiasFitPass::AddTo(double weight, std::size_t lane, BiasFitSums& sums) const {
  sums.ExpectedSum += weight * lanes_.expected[lane];
  sums.Information += weight * lanes_.ModelVariance[lane];
  sums.OutfitSum += weight * lanes_.SquaredStandardizedResidual[lane];
  sums.InfitSum += weight * lanes_.SquaredResidual[lane];
  sums.KurtosisSum += weight * lanes_.KurtosisRatio[lane];
  sums.InfitVarianceSum += weight * lanes_.ResidualVarianceTerm[lane];
}

void BiasFitPass::AddResponse(const ObservationBlock& block, std::size_t i, std::size_t lane) {
  const double lowest = bias_.parts.scales.lowestCategory[ScaleRow(block.scale[i])];
  const float StRes =
      StandardizedResidualOf(lanes_.SquaredStandardizedResidual[lane], lanes_.ScoreResidual[lane]);
  responses_.Add({static_cast<double>(block.response[i]), block.category[i] + lowest,
                  lanes_.expected[lane] + lowest, lanes_.ScoreResidual[lane], StRes},
                 block.weight[i]);
}

BiasResults FitBias(WilsonHilferty form, BiasEstimates& bias, Console& console) {
  console.ShowLine("Calculating Bias fit statistics");
  BiasResults results(bias);
  Column<BiasTermRow, BiasFitSums> sums(bias.terms.count());
  ObservationReader reader(bias.parts);
  BiasFitPass pass(bias);
  pass.Run(reader, sums);
  results.terms.assign(bias.terms.count(), {});
  for (const BiasTermRow term : Upward(sums))
    results.terms[term] = FinishBiasTerm(bias.states[term], bias.scores[term], sums[term], form,
                                         bias.parts.estimates.TinyValue);
  results.withBias = pass.responses();
  return results;
}

bool HasEstimableTerms(const BiasResults& results, Console& console) {
  const bool any =
      std::any_of(results.terms.begin(), results.terms.end(),
                  [](const BiasTerm& term) { return term.standing != BiasStanding::none; });
  if (!any) console.WarnLine("No bias terms estimable");
  return any;
}

}  // namespace flanks
