// Recovery: ratings are drawn from known measures, estimated, and laid beside the measures they
// came from.  docs/accuracy.md keeps the figures; this test measures them anew and compares.
#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr int kDataSets = 30;
constexpr std::array<int, 3> kSizes{100, 20, 5};  // examinees, raters, criteria
constexpr std::array<double, 3> kSpreads{1.0, .5, .5};
constexpr std::array<double, 5> kThresholds{0.0, -1.5, -.5, .5, 1.5};
constexpr int kRatings = 4;  // of an examinee

// Whether one of an examinee's raters rates one criterion or all of them.
enum class Plan { oneCriterion, allCriteria };

class Drawer {
 public:
  explicit Drawer(unsigned seed) : random_(seed) {}
  double Uniform() { return (static_cast<double>(random_()) + .5) / 4294967296.0; }
  // Box and Muller.
  double Normal() {
    return std::sqrt(-2.0 * std::log(Uniform())) * std::cos(2.0 * std::acos(-1.0) * Uniform());
  }
  int Below(int limit) { return static_cast<int>(Uniform() * limit); }

  int Category(double B) {
    std::array<double, 5> weights{1.0};
    double total = 1.0;
    for (std::size_t k = 1; k < weights.size(); ++k) {
      weights[k] = weights[k - 1] * std::exp(B - kThresholds[k]);
      total += weights[k];
    }
    double rest = Uniform() * total;
    int category = 0;
    for (std::size_t k = 0; k + 1 < weights.size() && rest >= weights[k]; ++k) {
      rest -= weights[k];
      ++category;
    }
    return category;
  }

 private:
  std::mt19937 random_;
};

struct DataSet {
  std::vector<std::vector<double>> measures;  // by Flank; all but the first about 0
  std::string lines;
};

DataSet Draw(Plan plan, unsigned seed) {
  Drawer drawer(seed);
  DataSet set;
  for (std::size_t f = 0; f < kSizes.size(); ++f) {
    set.measures.emplace_back();
    double sum = 0.0;
    for (int n = 0; n < kSizes[f]; ++n)
      sum += set.measures[f].emplace_back(kSpreads[f] * drawer.Normal());
    if (f > 0)
      for (double& measure : set.measures[f]) measure -= sum / kSizes[f];
  }
  const auto rate = [&](int n, int rater, int criterion) {
    const double B = set.measures[0][static_cast<std::size_t>(n)] -
                     set.measures[1][static_cast<std::size_t>(rater)] -
                     set.measures[2][static_cast<std::size_t>(criterion)];
    set.lines += std::to_string(n + 1) + "," + std::to_string(rater + 1) + "," +
                 std::to_string(criterion + 1) + "," + std::to_string(drawer.Category(B)) + "\n";
  };
  for (int n = 0; n < kSizes[0]; ++n) {
    const int first = drawer.Below(kSizes[1]), step = 1 + drawer.Below(4);
    for (int r = 0; r < kRatings; ++r) {
      const int rater = (first + r * step) % kSizes[1];
      if (plan == Plan::oneCriterion) {
        rate(n, rater, (n + r) % kSizes[2]);
      } else {
        for (int criterion = 0; criterion < kSizes[2]; ++criterion) rate(n, rater, criterion);
      }
    }
  }
  return set;
}

constexpr const char* kSpecification =
    "Flanks=3\nModels=?,?,?,R4\nConvergence=.001,.0001\nLabels=\n1,Examinees\n1-100=e\n*\n"
    "2,Raters\n1-20=r\n*\n3,Criteria\n1-5=c\n*\nData=data.txt\n";

// How the estimates of a Flank lie beside the measures that the ratings were drawn from.
struct Recovery {
  int count = 0, covered = 0, extreme = 0;
  double bias = 0.0;                        // sum of estimate less measure
  double product = 0.0, square = 0.0;       // sums for the slope of estimate on measure
  double deviation = 0.0;                   // sum of squared (estimate - measure) / S.E.
  double squaredError = 0.0, errors = 0.0;  // sums of squared differences, and of S.E.

  void Add(double measure, double estimate, double standardError) {
    const double difference = estimate - measure;
    ++count;
    bias += difference;
    product += measure * estimate;
    square += measure * measure;
    deviation += std::pow(difference / standardError, 2);
    squaredError += difference * difference;
    errors += standardError;
    if (std::abs(difference) <= 1.96 * standardError) ++covered;
  }
  // Bias, slope, root mean square error, mean S.E., spread over S.E., coverage in per cent.
  std::vector<double> Figures() const {
    return {bias / count,
            product / square,
            std::sqrt(squaredError / count),
            errors / count,
            std::sqrt(deviation / count),
            100.0 * covered / count};
  }
};

struct Recovered {
  std::array<Recovery, 3> flanks;
  std::array<double, 5> thresholds{};  // mean of the estimates
};

Recovered Recover(Plan plan) {
  Recovered recovered;
  for (unsigned seed = 1; seed <= kDataSets; ++seed) {
    const DataSet set = Draw(plan, seed);
    AnalysisRun run;
    run.Write("data.txt", set.lines);
    run.Analyze(kSpecification);
    EXPECT_EQ(run.exitCode, 0) << run.Screen();
    std::int32_t slot = 0;
    for (std::size_t f = 0; f < kSizes.size(); ++f) {
      for (const double measure : set.measures[f]) {
        const ElementSlot e(++slot);
        const ElementState& state = run.analysis.estimates.elements[e];
        if (state.ElementStatus != kStatusFree) {
          ++recovered.flanks[f].extreme;
          continue;
        }
        recovered.flanks[f].Add(measure, state.ElementMeasure,
                                FinishedStatistics(run.analysis.estimates, e)->StandardError);
      }
    }
    for (int k = 1; k <= 4; ++k)
      recovered.thresholds[static_cast<std::size_t>(k)] +=
          run.analysis.scales.ThresholdTable.at(ScaleRow(0), k) / kDataSets;
  }
  return recovered;
}

// The numbers of a row of docs/accuracy.md, by its first cell.
std::vector<double> RowOf(const std::string& section, const std::string& name) {
  std::ifstream in(std::string(FLANKS_SOURCE_DIR) + "/docs/accuracy.md");
  std::string line;
  while (std::getline(in, line) && line.find("## " + section) != 0) {
  }
  while (std::getline(in, line)) {
    if (line.find("| " + name + " |") != 0) continue;
    std::istringstream cells(line.substr(name.size() + 4));
    std::vector<double> numbers;
    for (std::string cell; std::getline(cells, cell, '|');)
      if (cell.find_first_of("0123456789") != std::string::npos) numbers.push_back(std::stod(cell));
    return numbers;
  }
  return {};
}

constexpr double kLastDigit = .0051;   // of figures with two decimals
constexpr double kLastPerCent = .051;  // with one

void ExpectAsKept(const std::string& section, const Recovered& recovered) {
  const std::array<std::string, 3> names{"Examinees", "Raters", "Criteria"};
  for (std::size_t f = 0; f < names.size(); ++f) {
    const std::vector<double> figures = recovered.flanks[f].Figures(),
                              kept = RowOf(section, names[f]);
    std::string measured;
    for (const double figure : figures) measured += std::to_string(figure) + " ";
    ASSERT_EQ(kept.size(), figures.size()) << section << ", " << names[f] << ": " << measured;
    for (std::size_t i = 0; i < figures.size(); ++i)
      EXPECT_NEAR(figures[i], kept[i], i + 1 == figures.size() ? kLastPerCent : kLastDigit)
          << section << ", " << names[f] << ": " << measured;
  }
  const std::vector<double> kept = RowOf(section, "Thresholds");
  ASSERT_EQ(kept.size(), 4u);
  for (std::size_t k = 1; k <= 4; ++k)
    EXPECT_NEAR(recovered.thresholds[k], kept[k - 1], kLastDigit) << section << " threshold " << k;
}

// Joint estimates stand too far apart by about N / (N - p): here p is 100 + 19 + 4 and 3
// thresholds.
double ExpectedSlope(double observations) {
  return observations / (observations - 126.0);
}

TEST(RecoveryCheck, FourRatingsAnExaminee) {
  const Recovered recovered = Recover(Plan::oneCriterion);
  ExpectAsKept("Four ratings of each examinee", recovered);
  EXPECT_NEAR(recovered.flanks[0].Figures()[1], ExpectedSlope(400), .05);
  EXPECT_LT(recovered.flanks[0].extreme, 30 * 100 / 20);
}

TEST(RecoveryCheck, FourRatersOnFiveCriteria) {
  const Recovered recovered = Recover(Plan::allCriteria);
  ExpectAsKept("Four raters on five criteria", recovered);
  EXPECT_NEAR(recovered.flanks[0].Figures()[1], ExpectedSlope(2000), .03);
  for (const Recovery& flank : recovered.flanks) {
    EXPECT_LT(std::abs(flank.Figures()[0]), .02) << "no bias of the mean";
    EXPECT_GT(flank.Figures()[5], 88.0) << "coverage";
  }
}

}  // namespace
}  // namespace flanks
