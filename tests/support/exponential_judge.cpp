#include "support/exponential_judge.h"

#include <cmath>
#include <limits>

namespace flanks {
namespace {

using Quad = __float128;

// ln 2 to 113 bits, as the sum of three 64-bit numbers (0.693147180559945309417232121458176568).
const Quad kLn2 = static_cast<Quad>(0x1.62e42fefa39efp-1) +
                  static_cast<Quad>(0x1.abc9e3b39803fp-56) +
                  static_cast<Quad>(0x1.7b57a079a1934p-111);

// 2^n, exact.
Quad PowerOfTwo(int n) {
  Quad power = 1;
  for (; n > 0; --n) power *= 2;
  for (; n < 0; ++n) power /= 2;
  return power;
}

Quad SeriesValue(float argument) {
  const Quad x = static_cast<double>(argument);
  const int n = static_cast<int>(std::lround(static_cast<double>(argument) * 1.4426950408889634));
  const Quad r = x - n * kLn2;  // at most .35: the 40th term is below 10^-65
  Quad term = 1, sum = 1;
  for (int k = 1; k <= 40; ++k) {
    term = term * r / k;
    sum += term;
  }
  return sum * PowerOfTwo(n);
}

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// The midpoint between a float and the next one above; beyond the largest float, where rounding
// to infinity begins.
Quad MidpointAbove(float value) {
  const float next = std::nextafter(value, kInfinity);
  if (std::isinf(next)) return static_cast<Quad>(0x1.ffffffp+127);
  return (static_cast<Quad>(static_cast<double>(value)) + static_cast<double>(next)) / 2;
}

}  // namespace

float SeriesExponential(float argument) {
  const Quad value = SeriesValue(argument);
  float result = static_cast<float>(static_cast<double>(value));  // at most one float off
  if (std::isinf(result)) result = std::numeric_limits<float>::max();
  const float below = std::nextafter(result, 0.0f);
  if (result > 0.0f && value < MidpointAbove(below)) return below;
  if (value > MidpointAbove(result)) return std::nextafter(result, kInfinity);
  return result;
}

double SeriesExponentialDouble(float argument) {
  return static_cast<double>(SeriesValue(argument));
}

JudgedExponential JudgeExponential(float argument) {
  const double value = std::exp(static_cast<double>(argument));
  const double error = value * 0x1p-46;
  const auto low = static_cast<float>(value - error);
  const auto high = static_cast<float>(value + error);
  if (low == high) return {low, false};
  return {SeriesExponential(argument), true};
}

}  // namespace flanks
