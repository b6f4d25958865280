// The exponential is correctly rounded for every float: all 2.2 thousand million are compared.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

#include "base/exponential.h"
#include "support/exponential_judge.h"

namespace flanks {
namespace {

struct Comparison {
  std::int64_t compared = 0;
  std::int64_t wrong = 0;
  std::int64_t secondStage = 0;  // arguments that the judge decided with its series
};

// Compares all floats whose bit patterns lie from those of `first` to those of `last`.
void CompareAll(float first, float last, Comparison& total) {
  constexpr std::size_t kBlock = 4096;
  const std::vector<VectorWidth> widths = UsableVectorWidths();
  std::vector<float> arguments(kBlock), judged(kBlock), results(kBlock);
  const std::uint64_t end = std::uint64_t{std::bit_cast<std::uint32_t>(last)} + 1;
  for (std::uint64_t from = std::bit_cast<std::uint32_t>(first); from < end; from += kBlock) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, end - from));
    for (std::size_t i = 0; i < count; ++i) {
      arguments[i] = std::bit_cast<float>(static_cast<std::uint32_t>(from + i));
      const JudgedExponential judgement = JudgeExponential(arguments[i]);
      judged[i] = judgement.value;
      total.secondStage += judgement.secondStage ? 1 : 0;
    }
    for (const VectorWidth width : widths) {
      Exponentials(std::span(arguments).first(count), std::span(results).first(count), width);
      for (std::size_t i = 0; i < count; ++i) {
        if (results[i] == judged[i]) continue;
        ADD_FAILURE_AT(__FILE__, __LINE__) << arguments[i] << " " << NameOf(width);
        ASSERT_LT(++total.wrong, 10);
      }
    }
    total.compared += static_cast<std::int64_t>(count);
  }
}

TEST(SlowExponential, IsCorrectlyRoundedForEveryFloat) {
  Comparison total;
  CompareAll(0.0f, 88.8f, total);
  CompareAll(-0.0f, -104.0f, total);
  EXPECT_EQ(total.wrong, 0);
  EXPECT_EQ(total.compared, 2239863196);
  // A handful need the series; far more would mean that the judge's first stage is bad.
  EXPECT_GT(total.secondStage, 0);
  EXPECT_LT(total.secondStage, 10000);
}

}  // namespace
}  // namespace flanks
