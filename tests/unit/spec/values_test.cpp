#include "spec/values.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "support/spec_run.h"

namespace flanks {
namespace {

TEST(EvaluateValue, TakesAnExpression) {
  SpecRun test;
  EXPECT_EQ(EvaluateValue(test.console, "2*25"), 50.0f);
  EXPECT_EQ(EvaluateValue(test.console, "3 ; a comment"), 3.0f);
  EXPECT_EQ(EvaluateValue(test.console, ""), 0.0f);
  EXPECT_TRUE(test.shell.statuses.empty());
}

struct EndingCase {
  std::string text;
  std::string shown;
  std::string cure;
};

class EvaluateValueEnds : public testing::TestWithParam<EndingCase> {};

TEST_P(EvaluateValueEnds, TheProcessAndShowsTheText) {
  SpecRun test;
  int exitCode = 0;
  try {
    EvaluateValue(test.console, GetParam().text);
  } catch (const ProcessEnd& end) {
    exitCode = end.exitCode;
  }
  EXPECT_EQ(exitCode, 1);
  EXPECT_EQ(test.shell.Screen(), GetParam().shown + "\n  To mend it: " + GetParam().cure + "\n");
}

std::string Ones(int count) {
  std::string text = "1";
  for (int i = 1; i < count; ++i) text += "+1";
  return text;
}

const char* const kSign = "An exponent needs its sign: write 1E+2 for 1E2.";
const char* const kCheck =
    "Check the parentheses: no sign stands behind * / or ^, nothing is divided by 0, and no word "
    "begins with D or E.";

INSTANTIATE_TEST_SUITE_P(
    Texts, EvaluateValueEnds,
    testing::Values(EndingCase{"1E2", "VLCOMPUTE: 1E2", kSign},
                    EndingCase{"2+1.d3", "VLCOMPUTE: 2+1.d3", kSign},
                    EndingCase{"1E+2*-3", "VLCOMPUTE: 1E+2*-3", kCheck},
                    EndingCase{"1/0", "VLCOMPUTE: 1/0", kCheck},
                    EndingCase{"early", "VLCOMPUTE: early", kCheck},
                    EndingCase{Ones(26), "COMPUTE1: DEPTH 27+: " + Ones(26),
                               "Work out a part of it: there is room for 25 numbers."}));

TEST(EvaluateWhole, CutsAndStaysInRange) {
  SpecRun test;
  EXPECT_EQ(EvaluateWhole(test.console, "2.9"), 2);
  EXPECT_EQ(EvaluateWhole(test.console, "-2.9"), -2);
  EXPECT_EQ(EvaluateWhole(test.console, "10^12"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(EvaluateWhole(test.console, "-10^11"), std::numeric_limits<std::int32_t>::min());
}

}  // namespace
}  // namespace flanks
