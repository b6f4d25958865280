#include "base/exponential.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "support/exponential_judge.h"

namespace flanks {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(Exponential, IsCorrectlyRoundedOnASample) {
  // A stride through the bit patterns meets every binade with both signs: 60 thousand arguments.
  // All floats are compared in tests/checks/base/exponential_check_test.cpp.
  constexpr std::uint32_t kStride = 37573;
  const auto compare = [](float first, float last) {
    for (std::uint64_t bits = std::bit_cast<std::uint32_t>(first);
         bits <= std::bit_cast<std::uint32_t>(last); bits += kStride) {
      const float argument = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
      ASSERT_EQ(Exponential(argument), JudgeExponential(argument).value) << argument;
    }
  };
  compare(0.0f, 88.8f);
  compare(-0.0f, -104.0f);
}

// Arguments whose exponential lies so near the midpoint of two floats that a 64-bit result with an
// error of 2^-46 could not decide: the nearest of those that the comparison of all floats met.
constexpr float kHardArguments[] = {
    -0x1.d2259ap+3f, -0x1.e1dbe2p-8f, -0x1.c1c4b8p-10f, 0x1.62b666p+1f,  0x1.036492p+1f,
    -0x1.548c34p-7f, 0x1.344e9cp-5f,  0x1.112856p+6f,   -0x1.6e1ddp-8f,  0x1.cce332p+0f,
    -0x1.7acc62p+3f, 0x1.97f0f6p+4f,  -0x1.71e81ep-6f,  -0x1.f02a66p+1f, -0x1p-25f,
    0x1.fdff02p-17f, 0x1.8d7cb6p-12f, 0x1.cd3982p-14f,  0x1.747de2p-15f, 0x1.cb763ap-12f};

TEST(Exponential, IsCorrectlyRoundedNearMidpoints) {
  for (const float argument : kHardArguments)
    EXPECT_EQ(Exponential(argument), SeriesExponential(argument)) << argument;
}

TEST(Exponential, GivesKnownValues) {
  EXPECT_EQ(Exponential(0.0f), 1.0f);
  EXPECT_EQ(Exponential(-0.0f), 1.0f);
  EXPECT_EQ(Exponential(1.0f), 2.71828182845904523536f);
  EXPECT_EQ(Exponential(-1.0f), 0.36787944117144232160f);
  EXPECT_EQ(Exponential(std::numeric_limits<float>::denorm_min()), 1.0f);
}

TEST(Exponential, GivesSubnormalResultsWithOneRounding) {
  for (float argument = -104.0f; argument < -87.0f; argument += 0.01f)
    EXPECT_EQ(Exponential(argument), SeriesExponential(argument)) << argument;
}

TEST(Exponential, IsHeldOutsideItsRange) {
  EXPECT_EQ(Exponential(-104.0f), 0.0f);
  EXPECT_EQ(Exponential(-1.0E10f), 0.0f);
  EXPECT_EQ(Exponential(-kInfinity), 0.0f);
  EXPECT_EQ(Exponential(88.72284f), SeriesExponential(88.72284f));
  EXPECT_EQ(Exponential(std::nextafter(88.72284f, 100.0f)), kInfinity);
  EXPECT_EQ(Exponential(1.0E10f), kInfinity);
  EXPECT_EQ(Exponential(kInfinity), kInfinity);
  EXPECT_TRUE(std::isnan(Exponential(std::numeric_limits<float>::quiet_NaN())));
}

TEST(Exponentials, HaveTheSameBitsForEveryWidthAndLength) {
  std::vector<float> arguments;
  for (int i = 0; i < 300; ++i) arguments.push_back(-110.0f + 0.7f * static_cast<float>(i));
  for (const VectorWidth width : UsableVectorWidths()) {
    for (std::size_t length : {0, 1, 2, 3, 7, 15, 16, 17, 300}) {
      std::vector<float> results(length);
      Exponentials(std::span(arguments).first(length), results, width);
      for (std::size_t i = 0; i < length; ++i)
        EXPECT_EQ(std::bit_cast<std::uint32_t>(results[i]),
                  std::bit_cast<std::uint32_t>(Exponential(arguments[i])))
            << NameOf(width) << " " << arguments[i];
    }
  }
}

// The judge must be right where it matters.
TEST(ExponentialJudge, AgreesWithPublishedDigits) {
  // e, 1/e and exp(10), exp(-20) to 17 digits, from tables.
  EXPECT_DOUBLE_EQ(SeriesExponentialDouble(1.0f), 2.7182818284590452);
  EXPECT_DOUBLE_EQ(SeriesExponentialDouble(-1.0f), 0.36787944117144232);
  EXPECT_DOUBLE_EQ(SeriesExponentialDouble(10.0f), 22026.465794806717);
  EXPECT_DOUBLE_EQ(SeriesExponentialDouble(-20.0f), 2.0611536224385578e-9);
}

TEST(ExponentialJudge, MayBelieveTheLibraryToItsFirstFortySixBits) {
  for (float argument = -104.0f; argument < 88.8f; argument += 0.0137f) {
    const double exact = SeriesExponentialDouble(argument);
    EXPECT_LT(std::abs(std::exp(static_cast<double>(argument)) - exact), exact * 0x1p-50)
        << argument;
  }
}

}  // namespace
}  // namespace flanks
