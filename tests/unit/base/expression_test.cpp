#include "base/expression.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace flanks {
namespace {

struct ValueCase {
  std::string_view text;
  float value;
};

class ExpressionWithValue : public ::testing::TestWithParam<ValueCase> {};

TEST_P(ExpressionWithValue, IsComputed) {
  const ExpressionValue result = EvaluateExpression(GetParam().text);
  EXPECT_EQ(result.fault, ExpressionFault::none) << GetParam().text;
  EXPECT_EQ(result.value, GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, ExpressionWithValue,
    ::testing::Values(ValueCase{"5", 5}, ValueCase{".5", .5f}, ValueCase{"5.", 5},
                      ValueCase{"0.1", .1f}, ValueCase{"1E+2", 100}, ValueCase{"1E-2", .01f},
                      ValueCase{"1d-1", .1f}, ValueCase{"1.5e+1", 15}, ValueCase{"1E-60", 0},
                      ValueCase{"-.5", -.5f}, ValueCase{"+3", 3}, ValueCase{"(+3)", 3},
                      ValueCase{"--3", 3}, ValueCase{"---3", -3}, ValueCase{"-1E-1", -.1f}));

INSTANTIATE_TEST_SUITE_P(Operators, ExpressionWithValue,
                         ::testing::Values(ValueCase{"2*3.5", 7}, ValueCase{"(1+1)/3", 2.0f / 3.0f},
                                           ValueCase{"2**3", 8}, ValueCase{"2^3", 8},
                                           ValueCase{"2+3*4", 14}, ValueCase{"(2+3)*4", 20},
                                           ValueCase{"2^3*2", 16}, ValueCase{"100/4+5", 30},
                                           ValueCase{"((1+2)*3)", 9}, ValueCase{"4^.5", 2},
                                           ValueCase{"2*(3+4)-5", 9}, ValueCase{"2*3^2", 18},
                                           ValueCase{"1+2*3^2", 19}, ValueCase{"1+(2)", 3}));

INSTANTIATE_TEST_SUITE_P(EqualOperatorsGoFromLeftToRight, ExpressionWithValue,
                         ::testing::Values(ValueCase{"10-2-3", 5}, ValueCase{"8/4/2", 1},
                                           ValueCase{"1-2+3", 2}, ValueCase{"2-3+4", 3},
                                           ValueCase{"2^3^2", 64}, ValueCase{"8/4*2", 4}));

INSTANTIATE_TEST_SUITE_P(
    Signs, ExpressionWithValue,
    ::testing::Values(ValueCase{"-2*3", -6}, ValueCase{"-2^2", 4},  // the sign is the number's
                      ValueCase{"2++3", 5}, ValueCase{"1--3", 4}, ValueCase{"1---3", -2},
                      ValueCase{"2+-3", -1}, ValueCase{"2+--3", 5}, ValueCase{"-(3)", -3},
                      ValueCase{"-(2)^2", -4},  // before a group it is a factor
                      ValueCase{"1-(-3)", 4}, ValueCase{"8--(2)/2", 9}, ValueCase{"2*(-3)", -6},
                      ValueCase{"2-(3)", -1}));

INSTANTIATE_TEST_SUITE_P(
    WhereItEnds, ExpressionWithValue,
    ::testing::Values(ValueCase{"3 ; a comment", 3}, ValueCase{"5abc", 5}, ValueCase{"5,6", 5},
                      ValueCase{"", 0}, ValueCase{"   ", 0}, ValueCase{"abc", 0},
                      ValueCase{"()", 0}, ValueCase{".", 0}, ValueCase{" 1 + \t2 ", 3},
                      ValueCase{"1 2", 12},  // blanks count for nothing
                      ValueCase{"(1+2", 3}, ValueCase{"2*(1+2", 6}, ValueCase{"((((5", 5}));

INSTANTIATE_TEST_SUITE_P(DigitsBesideAGroupCountForNothing, ExpressionWithValue,
                         ::testing::Values(ValueCase{"2(3)", 3}, ValueCase{"(3)2", 3},
                                           ValueCase{"1+2(3)*2", 7}));

TEST(Expression, AZeroHasNoSign) {
  for (const char* text : {"-0", "-(0)", "0*-1+0", "-1*0"}) {
    EXPECT_FALSE(std::signbit(EvaluateExpression(text).value)) << text;
  }
}

class MalformedExpression : public ::testing::TestWithParam<std::string_view> {};

TEST_P(MalformedExpression, IsAFault) {
  EXPECT_EQ(EvaluateExpression(GetParam()).fault, ExpressionFault::malformed) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Expression, MalformedExpression,
                         ::testing::Values("1E2", "2*-3", "1/0", "2/-3", "2^-1", "1.2.3", "1E+",
                                           "5e", "2+", "1/(2-2)", "early", "D", "E+5", "-", "-abc",
                                           "*2", "(*2)", "2*", "2-+3", "2***3", "2//3", "2*+3",
                                           "1E+2E+3", "1E+2.5", "1E+-2", "(1))", ")", "(2)(3)",
                                           "1E+39", "1E+30*1E+30", "(-8)^.5", "0^(-1)", "1E +2"));

// The count of values, from the padding of each operator level: one for each number, one for each
// run of operators of equal strength; a group stands for itself.
TEST(Expression, TwentySixValuesAreTheLimit) {
  const auto repeated = [](int count, const std::string& piece, const std::string& between) {
    std::string text = piece;
    for (int i = 1; i < count; ++i) text.append(between).append(piece);
    return text;
  };
  EXPECT_EQ(EvaluateExpression(repeated(25, "1", "+")).value, 25.0f);
  EXPECT_EQ(EvaluateExpression(repeated(26, "1", "+")).fault, ExpressionFault::tooManyValues);
  EXPECT_EQ(EvaluateExpression(repeated(25, "1", "*")).value, 1.0f);
  EXPECT_EQ(EvaluateExpression(repeated(26, "1", "*")).fault, ExpressionFault::tooManyValues);
  // n products of two are 2n numbers, n products and one sum: 8 make 25, 9 make 28.
  EXPECT_EQ(EvaluateExpression(repeated(8, "2*2", "+")).value, 32.0f);
  EXPECT_EQ(EvaluateExpression(repeated(9, "2*2", "+")).fault, ExpressionFault::tooManyValues);
  // Values run on from one group to the next; parentheses around a number cost nothing.
  EXPECT_EQ(EvaluateExpression(repeated(25, "(1)", "+")).value, 25.0f);
  EXPECT_EQ(EvaluateExpression(repeated(26, "(1)", "+")).fault, ExpressionFault::tooManyValues);
  // The faults come in the order of the work: the 27th number comes before the division.
  EXPECT_EQ(EvaluateExpression("1/0*" + repeated(27, "1", "*")).fault,
            ExpressionFault::tooManyValues);
  EXPECT_EQ(EvaluateExpression("1/0+" + repeated(27, "1", "*")).fault, ExpressionFault::malformed);
}

TEST(Expression, TwoHundredGroupsAreTheLimit) {
  const std::string open(199, '(');
  EXPECT_EQ(EvaluateExpression(open + "7").value, 7.0f);
  EXPECT_EQ(EvaluateExpression("(" + open + "7").fault, ExpressionFault::malformed);
}

TEST(Expression, ALongTextEndsWithinBoundedTimeAndMemory) {
  EXPECT_EQ(EvaluateExpression(std::string(2'000'000, '(')).fault, ExpressionFault::malformed);
  std::string ones = "1";
  for (int i = 0; i < 1'000'000; ++i) ones += "+1";
  EXPECT_EQ(EvaluateExpression(ones).fault, ExpressionFault::tooManyValues);
  EXPECT_EQ(EvaluateExpression(std::string(1'000'000, '1')).fault, ExpressionFault::malformed);
  EXPECT_EQ(EvaluateExpression("0." + std::string(1'000'000, '0') + "1").value, 0.0f);
}

// The decimal text of a 32-bit number, as a report or an anchor file writes it, reads back.
TEST(Expression, TheShortestTextOfANumberReadsBack) {
  std::mt19937 random(20240501);
  for (int i = 0; i < 20000; ++i) {
    float value = 0.0f;
    const std::uint32_t bits = static_cast<std::uint32_t>(random());
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value) || std::abs(value) > 1e9f || std::abs(value) < 1e-9f) continue;
    char text[80];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
    const std::string_view written(text, static_cast<std::size_t>(end.ptr - text));
    EXPECT_EQ(EvaluateExpression(written).value, value) << written;
  }
}

}  // namespace
}  // namespace flanks
