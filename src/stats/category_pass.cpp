#include "stats/category_pass.h"

#include <algorithm>

#include "estimate/moments.h"

namespace flanks {
namespace {

constexpr double kLargestDisplacement = 10.0;  // logits; as of an element

double Quotient(double sum, double weight) {
  return weight > 0.0 ? sum / weight : 0.0;
}

}  // namespace

CategoryFigures FiguresOf(const CategorySums& sums, ScaleRow scale, int category) {
  const double used = sums.Used.at(scale, category);
  CategoryFigures figures;
  figures.average = Quotient(sums.MeasureTotal.at(scale, category), used);
  figures.outfit = Quotient(sums.OutfitTotal.at(scale, category), used);
  figures.expectedAverage =
      Quotient(sums.ExpectedMeasures.at(scale, category), sums.Expected.at(scale, category));
  return figures;
}

std::optional<double> DisplacementOf(const CategorySums& sums, ScaleRow scale, int category,
                                     int top) {
  const double information = sums.Information.at(scale, category);
  if (!(information > 0.0)) return std::nullopt;
  double tooMany = 0.0;
  for (int k = top; k >= category; --k)
    tooMany += sums.Expected.at(scale, k) - sums.Used.at(scale, k);
  return std::clamp(tooMany / information, -kLargestDisplacement, kLargestDisplacement);
}

CategoryPass::CategoryPass(const PassParts& parts)
    : parts_(parts),
      reader_(parts),
      kernel_(parts.scales.scales()),
      category_(kKernelBlock),
      expected_(kKernelBlock),
      square_(kKernelBlock) {
  for (std::vector<float>& row : scratch_) row.resize(kKernelBlock);
  const std::int32_t scales = parts.scales.scales();
  for (Grid<ScaleRow, double>* grid :
       {&sums_.Total, &sums_.Used, &sums_.MeasureTotal, &sums_.OutfitTotal, &sums_.Expected,
        &sums_.ExpectedMeasures, &sums_.Information})
    grid->assign(scales, parts.scales.width, 0.0);
}

void CategoryPass::Run() {
  kernel_.Begin(parts_.scales, parts_.estimates.ExponentLimit);
  reader_.Begin(Categories::wanted);
  while (reader_.Next()) {
    const ObservationBlock& block = reader_.block();
    AddTotals(block);
    kernel_.Arrange(block, Lanes::mayBeMixed);
    for (std::size_t lane = 0; lane < kernel_.lanes(); ++lane)
      category_[lane] = block.category[kernel_.entry(lane)];
    for (const LaneRun& run : kernel_.runs()) {
      if (kernel_.oneByOne()) {
        EvaluateOneByOne(run);
        AddRun(block, run, work_.CategoryProbability.data(), 1);
      } else {
        Evaluate(run);
        AddRun(block, run, kernel_.probability(run, 0), kKernelStride);
      }
    }
  }
}

void CategoryPass::AddTotals(const ObservationBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i)
    if (block.weight[i] > 0.0f && block.response[i] < parts_.scales.width)
      sums_.Total.at(ScaleRow(block.scale[i]), block.response[i]) += block.weight[i];
}

void CategoryPass::Evaluate(const LaneRun& run) {
  const std::size_t at = run.first;
  kernel_.Evaluate(run, expected_.data(), nullptr);
  ObservationMoments(
      kernel_.scale(run.scale), {expected_.data() + at, kernel_.probability(run, 0), kKernelStride},
      {category_.data() + at, run.count},
      {scratch_[0].data(), scratch_[1].data(), scratch_[2].data(), scratch_[3].data(),
       scratch_[4].data(), square_.data() + at, scratch_[5].data()});
}

// A run of one observation: beside other scales a Poisson scale is taken so
// (estimate/block_kernel.h).
void CategoryPass::EvaluateOneByOne(const LaneRun& run) {
  const KernelScale& scale = kernel_.scale(run.scale);
  const std::size_t lane = run.first;
  expected_[lane] = EvaluateOne(scale, kernel_.measures()[lane], work_).expected;
  square_[lane] =
      ObservationMoments(scale, expected_[lane], category_[lane], work_.CategoryProbability)
          .SquaredStandardizedResidual;
}

// Only observations with all elements in play count for their scale; lanes of a mixed run are each
// on their own.
void CategoryPass::AddRun(const ObservationBlock& block, const LaneRun& run,
                          const float* probability, std::size_t stride) {
  const int top = kernel_.scale(run.scale).top;
  for (std::size_t j = 0; j < run.count; ++j) {
    const std::size_t lane = run.first + j;
    const std::size_t i = kernel_.entry(lane);
    if (block.state[i] != ObservationState::inPlay || category_[lane] < 0) continue;
    const ScaleRow scale(block.scale[i]);
    const double w = block.weight[i];
    const double B = kernel_.measures()[lane];
    sums_.Used.at(scale, category_[lane]) += w;
    sums_.MeasureTotal.at(scale, category_[lane]) += w * B;
    sums_.OutfitTotal.at(scale, category_[lane]) += w * square_[lane];
    double* const expected = sums_.Expected.row(scale);
    double* const measures = sums_.ExpectedMeasures.row(scale);
    double* const information = sums_.Information.row(scale);
    double above = 0.0;
    for (int k = top; k >= 0; --k) {
      const double p = probability[static_cast<std::size_t>(k) * stride + j];
      const double weighted = w * p;
      expected[k] += weighted;
      measures[k] += weighted * B;
      above += p;
      if (k > 0) information[k] += w * above * (1.0 - above);
    }
  }
}

}  // namespace flanks
