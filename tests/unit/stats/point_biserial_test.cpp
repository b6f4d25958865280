#include "stats/point_biserial.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/pass_design.h"

namespace flanks {
namespace {

struct Datum {
  std::vector<std::int32_t> slots;  // by position
  int structure = 0;
  int response = 0;  // raw
  double weight = 1.0;
};

// Data with the answer of the program and of a direct computation.
class BiserialCase {
 public:
  PassDesign d;
  std::vector<Datum> data;
  std::vector<int> lowest;  // by scale: the raw category of ordered 0

  void Observe(const Datum& datum) {
    data.push_back(datum);
    d.Observe(datum.slots, datum.structure, datum.response, static_cast<float>(datum.weight));
  }
  // Raw categories without gaps from `lowest` on.
  PassParts Parts() {
    ScaleTables& s = d.scales;
    s.lowestCategory.assign(s.scales(), 0);
    s.rawCategory.assign(s.scales(), s.width, 0);
    s.orderedCategory.assign(s.scales(), s.width, kNoOrderedCategory);
    for (const ScaleRow scale : Upward(s.scaleType)) {
      const int low = lowest.empty() ? 0 : lowest[scale.offset()];
      s.lowestCategory[scale] = static_cast<std::int16_t>(low);
      for (int k = 0; k <= s.ScaleTopCategory[scale]; ++k) {
        s.rawCategory.at(scale, k) = static_cast<std::int16_t>(low + k);
        if (low + k < s.width) s.orderedCategory.at(scale, low + k) = static_cast<std::int16_t>(k);
      }
    }
    return d.parts();
  }
  Column<ElementSlot, float> Compute(BiserialForm form) {
    const PassParts parts = Parts();
    return PointBiserials(parts, form);
  }

  bool Reversed(const Datum& datum, std::size_t position) const {
    const ModelRow model = d.structures.structureModel[StructureRow(datum.structure)];
    return d.design.models.reference(model, Position(static_cast<std::int32_t>(position) + 1))
        .reversed;
  }
  double ValueIn(const Datum& datum, std::size_t position) const {
    if (!Reversed(datum, position)) return datum.response;
    const ScaleRow scale = d.structures.structureScale[StructureRow(datum.structure)];
    const int low = d.scales.lowestCategory[scale];
    return 2 * low + d.scales.ScaleTopCategory[scale] - datum.response;
  }
  // The average of the observations of an element, without `left` unless it is null.
  double AverageOf(std::int32_t slot, const Datum* left, std::size_t leftPosition,
                   bool& any) const {
    double total = 0.0, weight = 0.0;
    for (const Datum& each : data) {
      for (std::size_t p = 0; p < each.slots.size(); ++p) {
        if (each.slots[p] != slot || (&each == left && p == leftPosition)) continue;
        total += each.weight * ValueIn(each, p);
        weight += each.weight;
      }
    }
    any = weight > 1E-9;
    return any ? total / weight : 0.0;
  }
  double CorrelationOf(std::int32_t slot, BiserialForm form) const {
    std::vector<double> x, y, w;
    for (const Datum& each : data) {
      for (std::size_t p = 0; p < each.slots.size(); ++p) {
        if (each.slots[p] != slot) continue;
        double sum = 0.0, count = 0.0;
        for (std::size_t other = 0; other < each.slots.size(); ++other) {
          if (other == p || each.slots[other] == 0) continue;
          bool any = false;
          const Datum* const left = form == BiserialForm::withoutOwn ? &each : nullptr;
          sum += AverageOf(each.slots[other], left, other, any);
          count += any ? 1.0 : 0.0;
        }
        if (count == 0.0 || sum == 0.0) continue;
        x.push_back(ValueIn(each, p));
        y.push_back(sum / count);
        w.push_back(each.weight);
      }
    }
    return Correlate(x, y, w);
  }
  static double Correlate(const std::vector<double>& x, const std::vector<double>& y,
                          const std::vector<double>& w) {
    double n = 0.0, meanX = 0.0, meanY = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      n += w[i];
      meanX += w[i] * x[i];
      meanY += w[i] * y[i];
    }
    if (n == 0.0) return 0.0;
    meanX /= n;
    meanY /= n;
    double xx = 0.0, yy = 0.0, xy = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      xx += w[i] * (x[i] - meanX) * (x[i] - meanX);
      yy += w[i] * (y[i] - meanY) * (y[i] - meanY);
      xy += w[i] * (x[i] - meanX) * (y[i] - meanY);
    }
    return xx < 1E-12 || yy < 1E-12 ? 0.0 : xy / std::sqrt(xx * yy);
  }
  void Compare(BiserialForm form) {
    const Column<ElementSlot, float> found = Compute(form);
    for (const ElementSlot e : Upward(found))
      EXPECT_NEAR(found[e], CorrelationOf(e.number(), form), 1E-6) << "slot " << e.number();
  }
};

// Persons (slots 1 to 3) by items (4 to 6), ratings 2 1 0, 1 1 2, 0 2 0.
class ThreeByThree : public ::testing::Test {
 protected:
  BiserialCase c;

  void SetUp() override {
    c.d.Flank(3, kPositiveOrientation).Flank(3, kNegativeOrientation);
    const int structure = c.d.Structure(c.d.Statement({"", ""}), c.d.Rating({-0.5f, 0.5f}));
    c.d.Build();
    const int ratings[3][3] = {{2, 1, 0}, {1, 1, 2}, {0, 2, 0}};
    for (int person = 0; person < 3; ++person)
      for (int item = 0; item < 3; ++item)
        c.Observe({{1 + person, 4 + item}, structure, ratings[person][item]});
  }
};

// Item totals are 3, 4 and 2.  Person 1: x = 2, 1, 0 and y = (3 - 2) / 2, (4 - 1) / 2, (2 - 0) / 2
// = .5, 1.5, 1: deviations 1, 0, -1 and -.5, .5, 0, so r = -.5 / sqrt(2 x .5) = -.5.  Person 2: y =
// 1, 1.5 and (2 - 2) / 2 = 0, which is left out with its rating of 2; x is then the same.
TEST_F(ThreeByThree, WithoutTheOwnRatingWorkedByHand) {
  const Column<ElementSlot, float> found = c.Compute(BiserialForm::withoutOwn);
  EXPECT_NEAR(found[ElementSlot(1)], -0.5, 1E-6);
  EXPECT_EQ(found[ElementSlot(2)], 0.0f) << "a real mean of 0 leaves the pair out";
  EXPECT_NEAR(found[ElementSlot(3)], -0.5, 1E-6);
  c.Compare(BiserialForm::withoutOwn);
}

// Person 1: y = 1, 4/3, 2/3, deviations 0, 1/3, -1/3: r = (1/3) / sqrt(2 x 2/9) = .5.  Person 2:
// x-deviations -1/3, -1/3, 2/3: r = (-1/9 - 2/9) / sqrt(2/3 x 2/9) = -.866025.
TEST_F(ThreeByThree, WithTheOwnRatingWorkedByHand) {
  const Column<ElementSlot, float> found = c.Compute(BiserialForm::include);
  EXPECT_NEAR(found[ElementSlot(1)], 0.5, 1E-6);
  EXPECT_NEAR(found[ElementSlot(2)], -0.866025, 1E-6);
  EXPECT_NEAR(found[ElementSlot(3)], 0.866025, 1E-6);
  c.Compare(BiserialForm::include);
}

// One observation of an element: nothing is left of its average.
TEST(PointBiserial, OfASingleObservationIsZero) {
  BiserialCase c;
  c.d.Flank(2, kPositiveOrientation).Flank(3, kNegativeOrientation);
  const int structure = c.d.Structure(c.d.Statement({"", ""}), c.d.Rating({-0.5f, 0.5f}));
  c.d.Build();
  c.Observe({{1, 3}, structure, 1});
  c.Observe({{1, 4}, structure, 2});
  c.Observe({{2, 5}, structure, 2});
  for (const BiserialForm form : {BiserialForm::withoutOwn, BiserialForm::include}) {
    const Column<ElementSlot, float> found = c.Compute(form);
    for (const ElementSlot e : Upward(found)) {
      if (form == BiserialForm::include && e == ElementSlot(1)) continue;
      EXPECT_EQ(found[e], 0.0f) << e.number();
    }
  }
}

// A single Flank has nobody to be compared with.
TEST(PointBiserial, OfOneFlankIsZero) {
  BiserialCase c;
  c.d.Flank(2, kPositiveOrientation);
  const int structure = c.d.Structure(c.d.Statement({""}), c.d.Rating({-0.5f, 0.5f}));
  c.d.Build();
  for (const int response : {0, 1, 2}) c.Observe({{1}, structure, response});
  EXPECT_EQ(c.Compute(BiserialForm::include)[ElementSlot(1)], 0.0f);
}

// Three positions, one of them reversed in the second statement, not all filled, with weights, and
// a scale that begins at 1.
TEST(PointBiserial, IsThatOfADirectComputation) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto draw = [&random](int count) {
      return static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
    };
    BiserialCase c;
    c.d.Flank(8, kPositiveOrientation).Flank(4, kNegativeOrientation);
    c.d.Flank(3, kNegativeOrientation);
    const int plain = c.d.Statement({"", "", ""});
    const int reversed = c.d.Statement({"", "-", ""});
    const int structures[] = {c.d.Structure(plain, c.d.Rating({-1.0f, 0.0f, 1.0f, 1.5f})),
                              c.d.Structure(reversed, c.d.Rating({-0.4f, 0.4f}))};
    c.lowest = {0, 1};
    c.d.Build();
    for (int n = 0; n < 120; ++n) {
      const int s = draw(2);
      const int response = s == 0 ? draw(5) : 1 + draw(3);
      const double weight = seed % 2 == 0 ? 0.5 * (1 + draw(4)) : 1.0;
      const std::int32_t task = draw(5) == 0 ? 0 : 13 + draw(3);
      c.Observe({{1 + draw(8), 9 + draw(4), task}, structures[s], response, weight});
    }
    c.Compare(BiserialForm::withoutOwn);
    c.Compare(BiserialForm::include);
  }
}

BiserialSums SumsOf(const std::vector<double>& x, const std::vector<double>& y) {
  BiserialSums sums;
  for (std::size_t i = 0; i < x.size(); ++i) sums.Add(x[i], y[i], 0.7);
  return sums;
}

TEST(BiserialCorrelation, OfEqualValuesIsZeroAndOfALineOne) {
  EXPECT_EQ(BiserialCorrelation({}, 0.0f), 0.0f);
  EXPECT_EQ(BiserialCorrelation(SumsOf({1, 1, 1}, {.1, .2, .4}), 1E-35f), 0.0f);
  EXPECT_EQ(BiserialCorrelation(SumsOf({1, 2, 3}, {.3, .3, .3}), 1E-35f), 0.0f);
  // Three thirds, rounded in two ways.
  EXPECT_EQ(BiserialCorrelation(SumsOf({1, 2, 3}, {.1 + .2, .3, .1 + .2}), 1E-35f), 0.0f);
  EXPECT_FLOAT_EQ(BiserialCorrelation(SumsOf({1, 2, 3}, {.3, .4, .5}), 1E-35f), 1.0f);
  EXPECT_FLOAT_EQ(BiserialCorrelation(SumsOf({3, 2, 1}, {.3, .4, .5}), 1E-35f), -1.0f);
}

// The average of a million observations moves by a millionth of one: the deviations must not be
// lost beside the averages.
TEST(BiserialCorrelation, KeepsSmallDifferencesOfLargeAverages) {
  EXPECT_NEAR(BiserialCorrelation(SumsOf({0, 1, 2}, {100.0, 100.0 - 1E-7, 100.0 - 2E-7}), 1E-35f),
              -1.0, 1E-6);
}

}  // namespace
}  // namespace flanks
