#include "stats/distributions.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace flanks {
namespace {

// Exact two-sided probabilities (erfc(x / sqrt 2)), nine decimals.
struct NormalCase {
  double x;
  double probability;
};
constexpr NormalCase kNormalCases[] = {
    {0.0, 1.0},           {0.5, 0.617075077},    {1.0, 0.317310508},
    {1.96, 0.049995790},  {2.5758, 0.010000847}, {3.0, 0.002699796},
    {4.0, 0.000063342},   {5.0, 0.000000573},    {-1.0, 0.317310508},
    {-1.96, 0.049995790}, {-3.0, 0.002699796},
};

TEST(NormalTail, IsWithinThePublishedErrorOfTheExactProbability) {
  for (const NormalCase& c : kNormalCases) {
    EXPECT_NEAR(NormalTail(c.x), c.probability, 1.5E-7) << "x = " << c.x;
  }
}

TEST(NormalTail, StaysBetweenZeroAndOneFarOut) {
  for (const double x : {1E-12, 6.0, 40.0, 1E6, -1E6}) {
    EXPECT_GE(NormalTail(x), 0.0) << "x = " << x;
    EXPECT_LE(NormalTail(x), 1.0) << "x = " << x;
  }
}

// Values of the approximation itself, computed from its formulas apart from the program.
struct ChiSquareCase {
  double chiSquared, degreesOfFreedom, probability;
};
constexpr ChiSquareCase kApproximateCases[] = {
    {3.841459, 1, 0.050000},
    {5.991465, 2, 0.048927},
    {11.0705, 5, 0.049874},
    {4, 5, 0.549147},  // exactly one less than the degrees of freedom: no logarithm
    {18.307, 10, 0.049971},
    {25, 10, 0.005340},
    {100, 80, 0.064570},
    {-3, 4, 1.0},
    {0, 4, 1.0},
    {0, 1, 1.0},
    {0.5, 0, 1.0},
    {31.793975, 4, 0.000002},
    {3.579452, 3, 0.309394},
};

TEST(ChiSquareProbability, IsTheNormalApproximationOfPeizerAndPratt) {
  for (const ChiSquareCase& c : kApproximateCases) {
    EXPECT_NEAR(ChiSquareProbability(c.chiSquared, c.degreesOfFreedom), c.probability, 1E-6)
        << "chi-squared " << c.chiSquared << ", d.f. " << c.degreesOfFreedom;
  }
}

// Exact upper probabilities (regularised incomplete gamma function) at these multiples of the
// degrees of freedom.
struct ExactRow {
  double degreesOfFreedom;
  double tolerance;  // the approximation is worst at two degrees of freedom
  std::array<double, 6> probability;
};
constexpr std::array<double, 6> kMultiples = {0.1, 0.5, 1, 1.5, 2, 3};
constexpr ExactRow kExactRows[] = {
    {1, 1E-6, {0.7518296, 0.4795001, 0.3173105, 0.2206714, 0.1572992, 0.0832645}},
    {2, 4E-3, {0.9048374, 0.6065307, 0.3678794, 0.2231302, 0.1353353, 0.0497871}},
    {3, 1.5E-3, {0.9600285, 0.6822703, 0.3916252, 0.2122903, 0.1116102, 0.0292909}},
    {4, 6E-4, {0.9824769, 0.7357589, 0.4060058, 0.1991483, 0.0915782, 0.0173513}},
    {5, 4E-4, {0.9921233, 0.7764951, 0.4158802, 0.1860298, 0.0752352, 0.0103623}},
    {8, 2E-4, {0.9992237, 0.8571235, 0.4334701, 0.1512039, 0.0423801, 0.0022918}},
    {10, 1E-4, {0.9998279, 0.8911780, 0.4404933, 0.1320619, 0.0292527, 0.0008566}},
    {20, 5E-5, {0.9999999, 0.9681719, 0.4579297, 0.0698537, 0.0049954, 0.0000071}},
    {50, 1E-5, {1.0000000, 0.9988076, 0.4733985, 0.0125967, 0.0000345, 0.0000000}},
    {80, 1E-5, {1.0000000, 0.9999468, 0.4789711, 0.0025482, 0.0000003, 0.0000000}},
    {200, 1E-5, {1.0000000, 1.0000000, 0.4867012, 0.0000059, 0.0000000, 0.0000000}},
    {1000, 1E-5, {1.0000000, 1.0000000, 0.4940529, 0.0000000, 0.0000000, 0.0000000}},
};

TEST(ChiSquareProbability, IsNearTheExactProbability) {
  for (const ExactRow& row : kExactRows) {
    for (std::size_t i = 0; i < kMultiples.size(); ++i) {
      const double chiSquared = kMultiples[i] * row.degreesOfFreedom;
      EXPECT_NEAR(ChiSquareProbability(chiSquared, row.degreesOfFreedom), row.probability[i],
                  row.tolerance)
          << "chi-squared " << chiSquared << ", d.f. " << row.degreesOfFreedom;
    }
  }
}

// At one less than the degrees of freedom the formula is a quotient of two vanishing numbers.
TEST(ChiSquareProbability, IsSmoothWhereTheFormulaHasNoValue) {
  for (const double df : {2.0, 5.0, 30.0, 1000.0}) {
    const double atTheGap = ChiSquareProbability(df - 1.0, df);
    for (const double step : {1E-14, 1E-12, 1E-10, 1E-9, 1E-8, 1E-7, 1E-6}) {
      EXPECT_NEAR(ChiSquareProbability((df - 1.0) * (1.0 + step), df), atTheGap, 2E-5) << df;
      EXPECT_NEAR(ChiSquareProbability((df - 1.0) * (1.0 - step), df), atTheGap, 2E-5) << df;
    }
  }
}

TEST(ChiSquareProbability, FallsWithTheValueAndStaysBetweenZeroAndOne) {
  for (const double df : {1.0, 2.0, 3.0, 17.0, 400.0}) {
    double last = 1.0;
    for (double chi = 0.0; chi < 3000.0; chi = chi * 1.1 + 0.01) {
      const double probability = ChiSquareProbability(chi, df);
      EXPECT_LE(probability, last + 1E-9) << "chi-squared " << chi << ", d.f. " << df;
      EXPECT_GE(probability, 0.0);
      last = probability;
    }
  }
}

// Percentage points as every published table of Student's t has them, with three decimals: half a
// unit of the last of them moves the probability by less than .0003.
struct StudentCase {
  double t, degreesOfFreedom, probability, tolerance;
};
constexpr StudentCase kStudentCases[] = {
    {12.706, 1, 0.05, 1E-5}, {63.657, 1, 0.01, 1E-6},  {4.303, 2, 0.05, 1E-4},
    {9.925, 2, 0.01, 1E-5},  {3.182, 3, 0.05, 1E-4},   {5.841, 3, 0.01, 1E-5},
    {2.571, 5, 0.05, 1E-4},  {4.032, 5, 0.01, 1E-5},   {2.228, 10, 0.05, 1E-4},
    {3.169, 10, 0.01, 1E-5}, {2.131, 15, 0.05, 1E-4},  {2.042, 30, 0.05, 1E-4},
    {2.750, 30, 0.01, 1E-4}, {1.980, 120, 0.05, 1E-4}, {2.617, 120, 0.01, 1E-4},
    {0.0, 7, 1.0, 0.0},      {-2.228, 10, 0.05, 1E-4}, {0.700, 10, 0.50, 1E-3},
};

TEST(StudentTProbability, IsThatOfThePublishedTables) {
  for (const StudentCase& c : kStudentCases)
    EXPECT_NEAR(StudentTProbability(c.t, c.degreesOfFreedom), c.probability, c.tolerance)
        << "t " << c.t << ", d.f. " << c.degreesOfFreedom;
}

// One degree of freedom: the arctangent; two: t / sqrt(t^2 + 2).
TEST(StudentTProbability, HasClosedFormsAtOneAndTwo) {
  EXPECT_NEAR(StudentTProbability(1.0, 1), 0.5, 1E-9);
  EXPECT_NEAR(StudentTProbability(1.0, 2), 1.0 - 1.0 / std::sqrt(3.0), 1E-12);
  EXPECT_NEAR(StudentTProbability(1.0, 2.9), 1.0 - 1.0 / std::sqrt(3.0), 1E-12);
}

TEST(StudentTProbability, IsBoundedAndApproachesTheNormal) {
  EXPECT_EQ(StudentTProbability(3.0, 0.5), 0.0);
  EXPECT_EQ(StudentTProbability(3.0, 0.0), 0.0);
  for (const double df : {1.0, 2.0, 7.0, 1E6, 1E15})
    for (const double t : {0.0, 1E-9, 1.0, 99.99, 1E30}) {
      EXPECT_GE(StudentTProbability(t, df), 0.0);
      EXPECT_LE(StudentTProbability(t, df), 1.0);
    }
  EXPECT_NEAR(StudentTProbability(1.96, 1000001), 0.049996, 1E-6);
  EXPECT_NEAR(StudentTProbability(2.5758, 1000000), 0.010001, 1E-6);
}

}  // namespace
}  // namespace flanks
