#include "estimate/prox.h"

#include <cmath>
#include <gtest/gtest.h>

namespace flanks {
namespace {

ElementState Sums(double S, double Q, double W) {
  ElementState sums;
  sums.ExpectedSum = S;
  sums.Information = Q;
  sums.ShiftedExpected = W;
  return sums;
}

TEST(ProxMeasure, OfAPositiveAndANegativeFlank) {
  // v = (4.4 - 1.44 / 6) / (2.89 * 6) = .239908, f = 1.113511
  EXPECT_NEAR(ProxMeasure(Sums(-1.2, 4.4, 6), 11, 18, kPositiveOrientation), .303291, 1E-6);
  EXPECT_NEAR(ProxMeasure(Sums(-1.2, 4.4, 6), 11, 18, kNegativeOrientation), -.303291, 1E-6);
}

TEST(ProxMeasure, KeepsExtremeScoresHalfAPointFromTheEnd) {
  EXPECT_NEAR(ProxMeasure(Sums(0, 0, 6), 6, 6, kPositiveOrientation), 2.484907, 1E-6);
  EXPECT_NEAR(ProxMeasure(Sums(0, 0, 6), 0, 6, kPositiveOrientation), -2.484907, 1E-6);
  EXPECT_NEAR(ProxMeasure(Sums(0, 0, 6), 4, 6, kPositiveOrientation), .693147, 1E-6);
}

TEST(ProxMeasure, AddsTheMeanRestMeasureWhateverTheOrientation) {
  // Scores in the middle: nothing but S / W.
  EXPECT_FLOAT_EQ(ProxMeasure(Sums(3, 1.5, 6), 6, 12, kPositiveOrientation), .5f);
  EXPECT_FLOAT_EQ(ProxMeasure(Sums(3, 1.5, 6), 6, 12, kNegativeOrientation), -.5f);
}

TEST(ProxMeasure, TakesTheMeanAloneWhenTheSpreadIsImpossible) {
  // v = (0 - 36 / 2) / (2.89 * 2) is below -1.
  EXPECT_FLOAT_EQ(ProxMeasure(Sums(6, 0, 2), 5, 6, kPositiveOrientation), 3.0f);
}

TEST(AddProx, SumsWeightedRestMeasuresAndTheirSquares) {
  ElementState element;
  AddProx(1.5, 2.0, element);
  AddProx(-1.0, 1.0, element);
  EXPECT_EQ(element.ExpectedSum, 2.0);
  EXPECT_EQ(element.Information, 10.0);  // the square of the weighted measure
  EXPECT_EQ(element.ShiftedExpected, 3.0);
}

}  // namespace
}  // namespace flanks
