#include "base/expression.h"

#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/single.h"
#include "base/text.h"

namespace flanks {

namespace {

constexpr int kGroupLimit = 200;
constexpr int kValueLimit = 26;

// The characters of a normalised expression beside digits, "." and operators.
constexpr char kMinusSign = '~';      // the number behind it is negative
constexpr char kPositivePower = 'E';  // exponent with "+"
constexpr char kNegativePower = 'e';  // exponent with "-"

bool IsOperator(char c) {
  return c == '+' || c == '-' || c == '*' || c == '/' || c == '^';
}

// --------------------------------------------------------------------------------------------
// Normalising
// --------------------------------------------------------------------------------------------

// Writes the expression at the start of a text in parentheses, blanks gone, signs told from
// operators, parentheses closed.
class Normaliser {
 public:
  std::optional<std::string> Normalise(std::string_view text) {
    output_ = "(";
    for (std::size_t at = 0; at < text.size(); ++at) {
      const char c = UpperCase(text[at]);
      if (c == ' ' || c == '\t') continue;
      if (c == 'E' || c == 'D') {
        const char sign = at + 1 < text.size() ? text[at + 1] : ' ';
        if (sign != '+' && sign != '-') return std::nullopt;
        output_ += sign == '+' ? kPositivePower : kNegativePower;
        ++at;
      } else if (IsDigit(c) || c == '.' || c == '(') {
        if (c == '(' && ++groups_ > kGroupLimit) return std::nullopt;
        TakeMinusAsSign(c);
        output_ += c;
        if (c == '(') ++open_;
      } else if (c == ')') {
        if (open_ == 0) return std::nullopt;
        --open_;
        output_ += c;
      } else if (IsOperator(c)) {
        if (!TakeOperator(c)) return std::nullopt;
      } else {
        break;  // what follows is a comment or a label
      }
    }
    output_.append(static_cast<std::size_t>(open_) + 1, ')');
    return std::move(output_);
  }

 private:
  char Last() const { return output_.back(); }
  // Whether the last character has an operator or a parenthesis before it; the first never has.
  bool LastFollowsOperator() const {
    if (output_.size() < 2) return false;
    const char before = output_[output_.size() - 2];
    return IsOperator(before) || before == '(';
  }

  // `c` begins a number or a group: a "-" before it that follows an operator or "(" is a sign.
  void TakeMinusAsSign(char c) {
    if (Last() != '-' || !LastFollowsOperator()) return;
    output_.back() = kMinusSign;
    if (c == '(') output_ += "1*";
  }

  bool TakeOperator(char c) {
    if (c == '*' && Last() == '*') {
      output_.back() = '^';
      return true;
    }
    if (Last() == '*' || Last() == '/' || Last() == '^') return false;
    if (c == '-' && Last() == '-' && LastFollowsOperator()) {
      output_.pop_back();
      return true;
    }
    if (c == '+' && (Last() == '+' || Last() == '(')) return true;
    output_ += c;
    return true;
  }

  std::string output_;
  int groups_ = 1;  // the whole is one
  int open_ = 0;
};

// --------------------------------------------------------------------------------------------
// Computing
// --------------------------------------------------------------------------------------------

// A plain decimal number: [~] digits [. digits] [E or e digits].  Nothing at all is 0.
std::optional<float> ParseNumber(std::string_view text) {
  std::string decimal;
  std::size_t at = 0;
  const auto takeDigits = [&] {
    const std::size_t begin = at;
    while (at < text.size() && IsDigit(text[at])) ++at;
    decimal.append(text.substr(begin, at - begin));
    return at > begin;
  };
  if (at < text.size() && text[at] == kMinusSign) {
    decimal = "-";
    ++at;
  }
  decimal += '0';  // so that "." and ".5" have a digit before their point
  takeDigits();
  if (at < text.size() && text[at] == '.') {
    decimal += text[at++];
    takeDigits();
  }
  if (at < text.size() && (text[at] == kPositivePower || text[at] == kNegativePower)) {
    if (at == 0) return std::nullopt;  // a word that begins with D or E
    decimal += text[at++] == kPositivePower ? "E+" : "E-";
    if (!takeDigits()) return std::nullopt;
  }
  if (at != text.size()) return std::nullopt;
  const float value = Single(ReadNumericPrefix(decimal).value);
  if (!std::isfinite(value)) return std::nullopt;
  return value;
}

// left OPERATION right in 32 bits; nothing when that is no number.
std::optional<float> Apply(float left, char operation, float right) {
  const double a = left;
  const double b = right;
  double result = 0.0;
  switch (operation) {
    case '+':
      result = a + b;
      break;
    case '-':
      result = a - b;
      break;
    case '*':
      result = a * b;
      break;
    case '/':
      if (b == 0.0) return std::nullopt;
      result = a / b;
      break;
    default:
      result = std::pow(a, b);
      break;
  }
  const float value = Single(result);
  if (!std::isfinite(value)) return std::nullopt;
  return value;
}

// A run of operators of equal strength, taken from left to right.
struct Chain {
  float value = 0.0f;
  char operation = 0;  // waits for its right side; 0: nothing taken yet
  bool operated = false;
  bool failed = false;  // an operation had no result; said when the run ends

  void Take(float operand) {
    if (operation == 0) {
      value = operand;
      return;
    }
    const std::optional<float> result = Apply(value, operation, operand);
    failed = failed || !result;
    value = result.value_or(0.0f);
    operated = true;
  }
};

// A parenthesised group that has been computed and where it stood.
struct ComputedGroup {
  std::size_t begin = 0;  // its "("
  std::size_t end = 0;    // behind its ")"
  float value = 0.0f;
};

class Computer {
 public:
  explicit Computer(std::string_view expression) : expression_(expression) {}

  ExpressionValue Compute() {
    std::vector<std::size_t> open;
    for (std::size_t at = 0; at < expression_.size(); ++at) {
      if (expression_[at] == '(') open.push_back(at);
      if (expression_[at] != ')') continue;
      const float value = ComputeGroup(open.back(), at);
      if (fault_ != ExpressionFault::none) return {0.0f, fault_};
      groups_.push_back({open.back(), at + 1, value});
      open.pop_back();
    }
    // The sum takes the sign off a zero.
    return {groups_.back().value + 0.0f, ExpressionFault::none};
  }

 private:
  // The group whose parentheses stand at `begin` and `end`.  The groups within it have been
  // computed; they are the last of groups_, and are taken off.
  float ComputeGroup(std::size_t begin, std::size_t end) {
    std::size_t inner = groups_.size();
    while (inner > 0 && groups_[inner - 1].begin > begin) --inner;
    nextInner_ = inner;
    at_ = begin + 1;
    end_ = end;

    Chain sum, product, power;
    float value = 0.0f;
    while (fault_ == ExpressionFault::none) {
      power.Take(ComputeTerm(begin));
      const char operation = at_ < end_ ? expression_[at_++] : ')';
      if (operation == '^') {
        power.operation = operation;
        continue;
      }
      product.Take(Close(power));
      if (operation == '*' || operation == '/') {
        product.operation = operation;
        continue;
      }
      sum.Take(Close(product));
      if (operation == ')') {
        value = Close(sum);
        break;
      }
      sum.operation = operation;
    }
    groups_.resize(inner);
    return value;
  }

  // What stands between two operators: a number or a computed group.
  float ComputeTerm(std::size_t groupBegin) {
    const std::size_t begin = at_;
    int groupsHere = 0;
    float groupValue = 0.0f;
    bool groupAlone = true;
    while (at_ < end_ && !IsOperator(expression_[at_])) {
      if (expression_[at_] == '(') {
        groupValue = groups_[nextInner_].value;
        at_ = groups_[nextInner_++].end;
        ++groupsHere;
      } else {
        groupAlone = false;
        ++at_;
      }
    }
    if (groupsHere == 1 && groupAlone) return groupValue;
    CountValue();
    if (groupsHere > 1) Fail(ExpressionFault::malformed);
    // Kept: digits beside a group count for nothing.
    if (groupsHere > 0) return groupValue;

    const std::string_view text = expression_.substr(begin, at_ - begin);
    const bool wholeGroup = begin == groupBegin + 1 && at_ == end_;
    if (text.empty() && !wholeGroup) Fail(ExpressionFault::malformed);
    const std::optional<float> number = ParseNumber(text);
    if (!number) Fail(ExpressionFault::malformed);
    return number.value_or(0.0f);
  }

  // Ends a run of operators: a value of its own if there was an operator in it.
  float Close(Chain& chain) {
    const Chain closed = std::exchange(chain, Chain{});
    if (closed.operated) CountValue();
    if (closed.failed) Fail(ExpressionFault::malformed);
    return closed.value;
  }

  void CountValue() {
    if (++valueCount_ > kValueLimit) Fail(ExpressionFault::tooManyValues);
  }
  // The first fault stays.
  void Fail(ExpressionFault fault) {
    if (fault_ == ExpressionFault::none) fault_ = fault;
  }

  std::string_view expression_;
  std::vector<ComputedGroup> groups_;  // not yet part of a computed group, left to right
  int valueCount_ = 0;
  ExpressionFault fault_ = ExpressionFault::none;
  // The group at work.
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  std::size_t nextInner_ = 0;
};

}  // namespace

ExpressionValue EvaluateExpression(std::string_view text) {
  const std::optional<std::string> expression = Normaliser().Normalise(text);
  if (!expression) return {0.0f, ExpressionFault::malformed};
  return Computer(*expression).Compute();
}

}  // namespace flanks
