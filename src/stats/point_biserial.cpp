#include "stats/point_biserial.h"

#include <algorithm>
#include <cmath>

#include "base/single.h"
#include "run/analysis.h"
#include "run/console.h"

namespace flanks {
namespace {

// What is left of the deviations of equal values, beside their squares, when y was rounded in
// different ways.
constexpr double kRoundingShare = 1E-24;

struct ElementTotal {
  double total = 0.0;  // sum of w x
  double Count = 0.0;  // sum of w
};

// n times the sum of squared deviations.
double Spread(double n, double squares, double sum, double first) {
  const double spread = n * squares - sum * sum;
  return spread > kRoundingShare * n * n * first * first ? spread : 0.0;
}

class BiserialPass {
 public:
  BiserialPass(const PassParts& parts, BiserialForm form)
      : parts_(parts), reader_(parts), form_(form), totals_(parts.design.ElementTotal) {
    for (const ScaleRow scale : Upward(parts.scales.scaleType)) ends_.push_back(EndsOf(scale));
  }

  Column<ElementSlot, float> Run() {
    Sweep([this](const ObservationBlock& block, std::size_t i) { AddTotals(block, i); });
    sums_.assign(parts_.design.ElementTotal, {});
    Sweep([this](const ObservationBlock& block, std::size_t i) { AddPairs(block, i); });
    Column<ElementSlot, float> correlations(parts_.design.ElementTotal);
    for (const ElementSlot e : Upward(correlations))
      correlations[e] = BiserialCorrelation(sums_[e], parts_.estimates.TinyValue);
    return correlations;
  }

 private:
  template <class Add>
  void Sweep(Add add) {
    reader_.Begin(Categories::wanted);
    while (reader_.Next()) {
      const ObservationBlock& block = reader_.block();
      for (std::size_t i = 0; i < block.count; ++i)
        if (block.weight[i] > 0.0f) add(block, i);
    }
  }

  // The lowest and the highest value of a scale, added: what a reversed position takes a value
  // from.
  int EndsOf(ScaleRow scale) const {
    const ScaleTables& scales = parts_.scales;
    const int top = scales.ScaleTopCategory[scale];
    if (scales.scaleType[scale] != ScaleType::rating) return top;
    return scales.lowestCategory[scale] + scales.rawCategory.at(scale, std::max(top, 0));
  }

  // The observation as the element in this field has it.
  double ValueIn(const ObservationBlock& block, std::size_t i, std::size_t field) const {
    const double raw = block.response[i];
    if (!reader_.sense(block.structure[i])[field].reversed) return raw;
    return ends_[static_cast<std::size_t>(block.scale[i])] - raw;
  }

  void AddTotals(const ObservationBlock& block, std::size_t i) {
    const double w = block.weight[i];
    for (std::size_t field = block.fields(); field-- > 0;) {
      const std::int32_t slot = block.slots[field][i];
      if (slot == 0) continue;
      ElementTotal& total = totals_[ElementSlot(slot)];
      total.total += w * ValueIn(block, i, field);
      total.Count += w;
    }
  }

  // The average of the observations of the element in a field; none when no other is left.
  std::optional<double> AverageOf(const ObservationBlock& block, std::size_t i,
                                  std::size_t field) const {
    ElementTotal total = totals_[ElementSlot(block.slots[field][i])];
    if (form_ == BiserialForm::withoutOwn) {
      const double w = block.weight[i];
      total.total -= w * ValueIn(block, i, field);
      total.Count -= w;
    }
    if (!(total.Count > 0.0)) return std::nullopt;
    return total.total / total.Count;
  }

  // The mean of the averages of the other fields' elements; 0 when there is none.
  double OthersOf(const ObservationBlock& block, std::size_t i, std::size_t own) const {
    double sum = 0.0, count = 0.0;
    for (std::size_t field = block.fields(); field-- > 0;) {
      if (field == own || block.slots[field][i] == 0) continue;
      const std::optional<double> average = AverageOf(block, i, field);
      if (!average) continue;
      sum += *average;
      count += 1.0;
    }
    return count > 0.0 ? sum / count : 0.0;
  }

  void AddPairs(const ObservationBlock& block, std::size_t i) {
    for (std::size_t field = block.fields(); field-- > 0;) {
      const std::int32_t slot = block.slots[field][i];
      if (slot == 0) continue;
      // Kept: a mean that is really 0 leaves the pair out too (docs/quirks.md).
      const double y = OthersOf(block, i, field);
      if (y == 0.0) continue;
      sums_[ElementSlot(slot)].Add(ValueIn(block, i, field), y, block.weight[i]);
    }
  }

  const PassParts& parts_;
  ObservationReader reader_;
  BiserialForm form_;
  std::vector<int> ends_;  // by scale
  Column<ElementSlot, ElementTotal> totals_;
  Column<ElementSlot, BiserialSums> sums_;
};

}  // namespace

void BiserialSums::Add(double x, double y, double w) {
  if (n == 0.0) {
    firstX = x;
    firstY = y;
  }
  x -= firstX;
  y -= firstY;
  n += w;
  Sx += x * w;
  Sy += y * w;
  Sxx += x * x * w;
  Syy += y * y * w;
  Sxy += x * y * w;
}

float BiserialCorrelation(const BiserialSums& sums, float tinyValue) {
  const double product = Spread(sums.n, sums.Syy, sums.Sy, sums.firstY) *
                         Spread(sums.n, sums.Sxx, sums.Sx, sums.firstX);
  if (!(product > static_cast<double>(tinyValue))) return 0.0f;
  const double covariation = sums.n * sums.Sxy - sums.Sx * sums.Sy;
  return Single(std::clamp(covariation / std::sqrt(product), -1.0, 1.0));
}

Column<ElementSlot, float> PointBiserials(const PassParts& parts, BiserialForm form) {
  return BiserialPass(parts, form).Run();
}

void CorrelatePointBiserial(Run& run) {
  const char letter = run.analysis.settings.PointCorrelationKind;
  if (letter != 'Y' && letter != 'I') return;
  run.console.ShowLine("Calculating point-biserial correlations");
  const BiserialForm form = letter == 'Y' ? BiserialForm::withoutOwn : BiserialForm::include;
  const Column<ElementSlot, float> found =
      PointBiserials(PassPartsOf(run.analysis, run.console), form);
  for (const ElementSlot e : Upward(found))
    run.analysis.estimates.finals[e].PointMeasure = found[e];
}

}  // namespace flanks
