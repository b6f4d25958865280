#include "stats/scale_landmarks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/single.h"

namespace flanks {
namespace {

constexpr int kHalvings = 100;
constexpr double kAtThreshold = 1e-4;  // what rounding in the exponents may move a start by
constexpr double kEndDistance = 0.25;  // of the ends' landmarks from scores that nothing reaches
constexpr std::size_t kLanes = 64;     // measures that are looked at together

// What is reached at a landmark: an expected score, a most probable category, or one half of the
// probability in a category and above.
enum class Reached : std::uint8_t { score, mode, half };

// The measure at which something that rises with the measure is reached.
struct Search {
  Reached what = Reached::score;
  double score = 0.0;
  int category = 0;
  double low = 0.0, high = 0.0;
  bool done = false;
  bool found = true;  // within the limits

  double middle() const { return (low + high) / 2.0; }
  // As near as 32 bits come.
  bool isClosed() const {
    return Single(middle()) == Single(low) || Single(middle()) == Single(high);
  }
};

// The scale at up to kLanes measures.
class Curves {
 public:
  explicit Curves(const KernelScale& scale)
      : scale_(scale),
        measures_(kLanes),
        expected_(kLanes),
        probability_((static_cast<std::size_t>(scale.filled) + 1) * kLanes) {}

  void Set(std::size_t lane, double measure) { measures_[lane] = Single(measure); }
  void Evaluate(std::size_t lanes) {
    CategoryProbabilities(scale_, std::span(measures_.data(), lanes),
                          {expected_.data(), nullptr, probability_.data(), kLanes});
  }
  double probability(std::size_t lane, int k) const {
    return probability_[static_cast<std::size_t>(k) * kLanes + lane];
  }
  bool IsReached(const Search& search, std::size_t lane) const {
    switch (search.what) {
      case Reached::score:
        return expected_[lane] >= search.score;
      case Reached::mode:
        return Mode(lane) >= search.category;
      default:
        return AtLeast(lane, search.category) >= 0.5;
    }
  }

 private:
  double AtLeast(std::size_t lane, int k) const {
    double sum = 0.0;
    for (int j = scale_.filled; j >= k; --j) sum += probability(lane, j);
    return sum;
  }
  // The most probable category, the highest of equals.
  int Mode(std::size_t lane) const {
    int mode = scale_.top;
    for (int k = scale_.top - 1; k >= 0; --k)
      if (probability(lane, k) > probability(lane, mode)) mode = k;
    return mode;
  }

  const KernelScale& scale_;
  std::vector<float> measures_, expected_, probability_;
};

// Calls `look` with each search that is not done and its lane, the scale evaluated at `at` of it.
template <class At, class Look>
void ForEachOpen(std::vector<Search>& searches, Curves& curves, At at, Look look) {
  std::vector<Search*> open;
  for (Search& search : searches)
    if (!search.done) open.push_back(&search);
  for (std::size_t first = 0; first < open.size(); first += kLanes) {
    const std::size_t lanes = std::min(kLanes, open.size() - first);
    for (std::size_t lane = 0; lane < lanes; ++lane) curves.Set(lane, at(*open[first + lane]));
    curves.Evaluate(lanes);
    for (std::size_t lane = 0; lane < lanes; ++lane) look(*open[first + lane], lane);
  }
}

// Halves all intervals side by side.
void Find(std::vector<Search>& searches, Curves& curves) {
  ForEachOpen(
      searches, curves, [](const Search& s) { return s.low; },
      [&](Search& s, std::size_t lane) { s.found = !curves.IsReached(s, lane); });
  ForEachOpen(
      searches, curves, [](const Search& s) { return s.high; },
      [&](Search& s, std::size_t lane) {
        s.found = s.found && curves.IsReached(s, lane);
        s.done = !s.found;
      });
  for (int halving = 0; halving < kHalvings; ++halving)
    ForEachOpen(
        searches, curves, [](const Search& s) { return s.middle(); },
        [&](Search& s, std::size_t lane) {
          s.done = s.isClosed();
          if (!s.done) (curves.IsReached(s, lane) ? s.high : s.low) = s.middle();
        });
}

// The searches of a scale: scores 0 to m, then for each category from 1 on its half score, mode and
// median.
std::vector<Search> SearchesOf(const KernelScale& scale) {
  const int top = scale.top;
  std::vector<Search> searches;
  for (int k = 0; k <= top; ++k) {
    const double score = k == 0 ? kEndDistance : k == top ? top - kEndDistance : k;
    searches.push_back({Reached::score, score, k});
  }
  for (int k = 1; k <= top; ++k) {
    searches.push_back({Reached::score, k - 0.5, k});
    searches.push_back({Reached::mode, 0.0, k});
    searches.push_back({Reached::half, 0.0, k});
  }
  for (Search& search : searches) {
    search.low = -static_cast<double>(scale.exponentLimit);
    search.high = scale.exponentLimit;
  }
  return searches;
}

std::optional<double> Landmark(const Search& search) {
  return search.found ? std::optional(search.middle()) : std::nullopt;
}

// Where categories k - 1 and k are equally probable is the threshold of k, to the last digit.
std::optional<double> StartOf(const KernelScale& scale, const Search& mode) {
  const double threshold = scale.step[static_cast<std::size_t>(mode.category)];
  const bool own = scale.type == ScaleType::rating && mode.found &&
                   std::abs(mode.middle() - threshold) <= kAtThreshold;
  return own ? std::optional(threshold) : Landmark(mode);
}

void FillPeaks(Curves& curves, std::vector<CategoryLandmarks>& landmarks) {
  landmarks.front().peak = landmarks.back().peak = 1.0;
  for (std::size_t k = 1; k + 1 < landmarks.size(); ++k) {
    if (!landmarks[k].expectation) continue;
    curves.Set(0, *landmarks[k].expectation);
    curves.Evaluate(1);
    landmarks[k].peak = curves.probability(0, static_cast<int>(k));
  }
}

}  // namespace

std::vector<CategoryLandmarks> FindLandmarks(const KernelScale& scale) {
  Curves curves(scale);
  std::vector<Search> searches = SearchesOf(scale);
  Find(searches, curves);
  const auto top = static_cast<std::size_t>(scale.top);
  std::vector<CategoryLandmarks> landmarks(top + 1);
  for (std::size_t k = 0; k <= top; ++k) landmarks[k].expectation = Landmark(searches[k]);
  for (std::size_t k = 1; k <= top; ++k) {
    const Search* const own = &searches[top + 1 + 3 * (k - 1)];
    landmarks[k].half = Landmark(own[0]);
    landmarks[k].thurstone = Landmark(own[2]);
    // A category that the next one overtakes before it comes to be the most probable never is; both
    // searches have then gone the same way.
    const bool overtaken = k < top && own[4].found && !(own[4].middle() > own[1].middle());
    if (scale.skipped[k] == 0 && !overtaken) landmarks[k].mostProbable = StartOf(scale, own[1]);
  }
  FillPeaks(curves, landmarks);
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
