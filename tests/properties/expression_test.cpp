// Random expressions: those written by rule have the value that was computed while they were
// written; any other text gives a number or a fault and nothing else.
#include "base/expression.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace flanks {
namespace {

// An expression with its value, in 32 bits, and the number of values it takes: one for each number
// and one for each run of operators of equal strength.
struct Written {
  std::string text;
  float value = 0.0f;
  int values = 0;
};

class Writer {
 public:
  explicit Writer(unsigned seed) : random_(seed) {}

  Written Sum(int depth) { return Run(depth, 0); }

 private:
  bool Chance(unsigned inSoMany) { return random_() % inSoMany == 0; }

  // Operators of one strength between expressions of the next: 0 sums, 1 products, 2 powers.
  Written Run(int depth, int strength) {
    static constexpr std::string_view kOperators[] = {"+-", "*/", "^"};
    const std::string_view operators = kOperators[strength];
    Written run = Part(depth, strength);
    bool operated = false;
    while (Chance(3)) {
      const char operation = operators[random_() % operators.size()];
      const Written right = Part(depth, strength);
      run.text += Blank() + std::string(1, operation) + Blank() + right.text;
      run.value = Operate(run.value, operation, right.value);
      run.values += right.values;
      operated = true;
    }
    if (operated) ++run.values;
    return run;
  }

  Written Part(int depth, int strength) {
    if (strength < 2) return Run(depth, strength + 1);
    if (depth > 0 && Chance(3)) {
      Written group = Sum(depth - 1);
      group.text = "(" + group.text + ")";
      return group;
    }
    const int quarters = static_cast<int>(random_() % 40);
    std::string decimal = std::to_string(quarters / 4);
    static constexpr std::string_view kQuarters[] = {"", ".25", ".5", ".75"};
    decimal += kQuarters[quarters % 4];
    return {decimal, static_cast<float>(quarters) / 4.0f, 1};
  }

  static float Operate(float left, char operation, float right) {
    switch (operation) {
      case '+':
        return left + right;
      case '-':
        return left - right;
      case '*':
        return left * right;
      case '/':
        return left / right;
      default:
        return static_cast<float>(std::pow(static_cast<double>(left), right));
    }
  }

  std::string Blank() { return Chance(4) ? " " : ""; }

  std::mt19937 random_;
};

TEST(ExpressionLaw, AnExpressionWrittenByRuleHasItsValue) {
  int computed = 0, tooMany = 0;
  for (unsigned seed = 1; seed <= 20000; ++seed) {
    const Written written = Writer(seed).Sum(3);
    const ExpressionValue result = EvaluateExpression(written.text);
    if (written.values > 26) {
      EXPECT_NE(result.fault, ExpressionFault::none) << written.text;
      ++tooMany;
    } else if (result.fault == ExpressionFault::none) {
      EXPECT_EQ(result.value, written.value) << "seed " << seed << ": " << written.text;
      ++computed;
    } else {
      // Only an operation without a result can have ended it.
      EXPECT_NE(written.text.find_first_of("/^*"), std::string::npos) << written.text;
    }
    if (std::isfinite(written.value) && written.values <= 26 &&
        written.text.find_first_of("/^") == std::string::npos) {
      EXPECT_EQ(result.fault, ExpressionFault::none) << written.text;
    }
  }
  EXPECT_GT(computed, 10000);
  EXPECT_GT(tooMany, 50);
}

TEST(ExpressionLaw, AnyTextGivesANumberOrAFault) {
  constexpr std::string_view kAlphabet = "0123456789.+-*/^()EeDd \tx;,V~";
  std::mt19937 random(5150);
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (std::size_t n = random() % 24; n > 0; --n) text += kAlphabet[random() % kAlphabet.size()];
    const ExpressionValue result = EvaluateExpression(text);
    EXPECT_TRUE(std::isfinite(result.value)) << text;
    EXPECT_TRUE(result.fault == ExpressionFault::none || result.value == 0.0f) << text;
  }
}

}  // namespace
}  // namespace flanks
