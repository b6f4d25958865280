#include "estimate/count_terms.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "run/scale_tables.h"

namespace flanks {
namespace {

TEST(CountTerms, OfABinomialScaleAreTheLogsOfItsCoefficients) {
  std::vector<double> terms;
  FillCountTerms(ScaleType::binomial, 5, terms);
  ASSERT_EQ(terms.size(), 6U);
  const double coefficients[] = {1, 5, 10, 10, 5, 1};
  for (std::size_t k = 0; k <= 5; ++k)
    EXPECT_NEAR(terms[k], -std::log(coefficients[k]), 1E-14) << k;
}

TEST(CountTerms, OfAPoissonScaleAreTheLogsOfFactorials) {
  std::vector<double> terms;
  FillCountTerms(ScaleType::poisson, 6, terms);
  const double factorials[] = {1, 1, 2, 6, 24, 120, 720};
  ASSERT_EQ(terms.size(), 7U);
  for (std::size_t k = 0; k <= 6; ++k) EXPECT_NEAR(terms[k], std::log(factorials[k]), 1E-14) << k;
}

TEST(CountTerms, ReachTheEndOfTheProbabilityArray) {
  ASSERT_EQ(LogFactorial().size(), static_cast<std::size_t>(kProbabilityEntries));
  EXPECT_NEAR(LogFactorial()[1023], std::lgamma(1024.0), 1E-9);
}

}  // namespace
}  // namespace flanks
