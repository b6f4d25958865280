#include "stats/scale_landmarks.h"

#include <algorithm>
#include <cstddef>

#include "base/single.h"

namespace flanks {
namespace {

constexpr int kHalvings = 100;
constexpr double kEndDistance = 0.25;  // of the ends' landmarks from scores that nothing reaches

// The scale at one measure.
class Curve {
 public:
  explicit Curve(const KernelScale& scale) : scale_(scale) {}

  void MoveTo(double measure) {
    expected_ = CategoryProbabilities(scale_, Single(measure), probability_).expected;
  }
  double expected() const { return expected_; }
  double probability(int k) const { return probability_[static_cast<std::size_t>(k)]; }
  double AtLeast(int k) const {
    double sum = 0.0;
    for (int j = scale_.filled; j >= k; --j) sum += probability(j);
    return sum;
  }
  // The most probable category, the highest of equals.
  int Mode() const {
    int mode = scale_.top;
    for (int k = scale_.top - 1; k >= 0; --k)
      if (probability(k) > probability(mode)) mode = k;
    return mode;
  }

 private:
  const KernelScale& scale_;
  ProbabilityArray probability_{};
  double expected_ = 0.0;
};

// The measure at which `isReached`, which is false below and true above it, turns.
template <class Test>
std::optional<double> Turn(Curve& curve, double limit, Test isReached) {
  double low = -limit, high = limit;
  curve.MoveTo(low);
  if (isReached(curve)) return std::nullopt;
  curve.MoveTo(high);
  if (!isReached(curve)) return std::nullopt;
  for (int halving = 0; halving < kHalvings; ++halving) {
    const double middle = (low + high) / 2.0;
    if (Single(middle) == Single(low) || Single(middle) == Single(high))
      break;  // as near as 32 bits
    curve.MoveTo(middle);
    (isReached(curve) ? high : low) = middle;
  }
  return (low + high) / 2.0;
}

std::optional<double> WhereExpected(Curve& curve, double limit, double score) {
  return Turn(curve, limit, [score](const Curve& c) { return c.expected() >= score; });
}

// A category that a higher one overtakes before it comes to be the most probable never is.
std::optional<double> WhereMostProbable(Curve& curve, double limit, int k) {
  const auto from = Turn(curve, limit, [k](const Curve& c) { return c.Mode() >= k; });
  if (!from) return from;
  const auto to = Turn(curve, limit, [k](const Curve& c) { return c.Mode() > k; });
  return !to || *to > *from ? from : std::nullopt;
}

}  // namespace

std::vector<CategoryLandmarks> FindLandmarks(const KernelScale& scale) {
  Curve curve(scale);
  const double limit = scale.exponentLimit;
  const int top = scale.top;
  std::vector<CategoryLandmarks> landmarks(static_cast<std::size_t>(top) + 1);
  for (int k = 0; k <= top; ++k) {
    CategoryLandmarks& marks = landmarks[static_cast<std::size_t>(k)];
    const bool skipped = scale.skipped[static_cast<std::size_t>(k)] != 0;
    const double score = k == 0 ? kEndDistance : k == top ? top - kEndDistance : k;
    marks.expectation = WhereExpected(curve, limit, score);
    if (k == 0 || k == top) {
      marks.peak = 1.0;
    } else if (marks.expectation) {
      curve.MoveTo(*marks.expectation);
      marks.peak = curve.probability(k);
    }
    if (k == 0) continue;
    marks.half = WhereExpected(curve, limit, k - 0.5);
    if (!skipped) marks.mostProbable = WhereMostProbable(curve, limit, k);
    marks.thurstone = Turn(curve, limit, [k](const Curve& c) { return c.AtLeast(k) >= 0.5; });
  }
  return landmarks;
}

bool RangeOfLandmarks(std::span<const CategoryLandmarks> landmarks, double& low, double& high) {
  bool any = false;
  for (const CategoryLandmarks& marks : landmarks) {
    for (const auto& mark : {marks.expectation, marks.half, marks.mostProbable, marks.thurstone}) {
      if (!mark) continue;
      low = any ? std::min(low, *mark) : *mark;
      high = any ? std::max(high, *mark) : *mark;
      any = true;
    }
  }
  return any;
}

KernelScale KernelScaleOf(const ScaleTables& scales, ScaleRow scale, float exponentLimit) {
  KernelScale kernel;
  const auto width = static_cast<std::size_t>(scales.width);
  SetUpKernelScale(scales.scaleType[scale], scales.ScaleTopCategory[scale],
                   std::span(scales.ThresholdTable.row(scale), width),
                   std::span(scales.CategoryFlag.row(scale), width), exponentLimit, kernel);
  return kernel;
}

}  // namespace flanks
