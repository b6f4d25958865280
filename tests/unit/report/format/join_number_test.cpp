#include "report/format/join_number.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace flanks {
namespace {

TEST(JoinNumber, PutsOneBlankBetweenWordsAndNumber) {
  EXPECT_EQ(JoinNumber("Flanks =", 3), "Flanks = 3");
  EXPECT_EQ(JoinNumber("Total data lines =", std::int64_t{30}), "Total data lines = 30");
  EXPECT_EQ(JoinNumber(" first at or near line", 12), " first at or near line 12");
  EXPECT_EQ(JoinNumber("flank:", 2), "flank: 2");
  EXPECT_EQ(JoinNumber("There are", 2) + " disconnected subsets",
            "There are 2 disconnected subsets");
  EXPECT_EQ(JoinNumber("More than", 5) + " components", "More than 5 components");
  EXPECT_EQ(JoinNumber(JoinNumber("range", 0) + " -", 2147483646), "range 0 - 2147483646");
  EXPECT_EQ(JoinNumber("count >=", 4), "count >= 4");
  EXPECT_EQ(JoinNumber("Warning (18)!", 2) + " excess responses ignored",
            "Warning (18)! 2 excess responses ignored");
  EXPECT_EQ(JoinNumber("d\xC3\xA9j\xC3\xA0", 1), "d\xC3\xA9j\xC3\xA0 1");
  EXPECT_EQ(JoinNumber("Change =", -3), "Change = -3");
}

TEST(JoinNumber, PutsNoBlankWhereOneStandsOrNoneBelongs) {
  EXPECT_EQ(JoinNumber("Title = ", 3), "Title = 3");
  EXPECT_EQ(JoinNumber("(", 3), "(3");
  EXPECT_EQ(JoinNumber("'", 3), "'3");
  EXPECT_EQ(JoinNumber("\"", 3), "\"3");
  EXPECT_EQ(JoinNumber("out of range: 1-", 3), "out of range: 1-3");
  EXPECT_EQ(JoinNumber("Convergence = .5,", 0.01f), "Convergence = .5,.01");
  EXPECT_EQ(JoinNumber("", 3), "3");
}

TEST(JoinNumber, TakesRealNumbersAndTexts) {
  EXPECT_EQ(JoinNumber("Convergence =", 0.5f), "Convergence = .5");
  EXPECT_EQ(JoinNumber("lines =", "2.25"), "lines = 2.25");
  EXPECT_EQ(JoinNumber("lines =", std::string("2.25")), "lines = 2.25");
}

TEST(FreeNumber, IsTheShortestTextThatReadsBack) {
  EXPECT_EQ(FreeNumber(0.5f), ".5");
  EXPECT_EQ(FreeNumber(0.01f), ".01");
  EXPECT_EQ(FreeNumber(3.0f), "3");
  EXPECT_EQ(FreeNumber(-0.25f), "-.25");
  EXPECT_EQ(FreeNumber(0.0f), "0");
  EXPECT_EQ(FreeNumber(-0.0f), "0") << "only negative numbers have a sign";
  EXPECT_EQ(FreeNumber(0.1f), ".1");
  EXPECT_EQ(FreeNumber(1.0f / 3.0f), ".33333334");
  EXPECT_EQ(FreeNumber(16777216.0f), "16777216");
  EXPECT_EQ(FreeNumber(1234.5f), "1234.5");
  EXPECT_EQ(FreeNumber(1E20f), "100000000000000000000");
}

TEST(FreeNumber, NeverHasAnExponent) {
  EXPECT_EQ(FreeNumber(1E-5f), ".00001");
  EXPECT_EQ(FreeNumber(-2.5E-5f), "-.000025");
  EXPECT_EQ(FreeNumber(2E-6f), "0.000002") << "below 1E-5, as SmallText";
  EXPECT_EQ(FreeNumber(std::numeric_limits<float>::max()).size(), 39U);
  EXPECT_EQ(FreeNumber(std::numeric_limits<float>::infinity()), "?");
}

}  // namespace
}  // namespace flanks
