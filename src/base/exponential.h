// The one exponential of the program: a 32-bit argument, the correctly rounded 32-bit result.
//
// A pass over the data is little else than exponentials, and its sums show in a report's last
// digit, so there is one function, our own: the same bits on every machine, compiler, library and
// vector width, and plain arithmetic that the compiler turns into vector instructions.
//
// Method: with n the whole number nearest to x / ln 2 and r = x - n ln 2, exp(x) = 2^n exp(r) and
// |r| is at most ln 2 / 2.  ln 2 is taken in two parts, the first short enough that n times it is
// exact (W. J. Cody and W. Waite, Software Manual for the Elementary Functions, 1980, chapter 6).
// exp(r) is 1 + r + r^2 q(r) with q of degree 9: of all such polynomials of degree 11 the one whose
// largest relative error on |r| <= 0.3467 is least, 3.2E-17 (E. Remez' exchange method, computed
// with 60 digits).  All of it is 64-bit; the product with 2^n is exact; one rounding at the end
// gives the 32-bit result, subnormal ones included.
//
// That the result is correctly rounded is not proved but counted: the check of
// tests/checks/base/exponential_check_test.cpp compares all 2,239,863,196 floats from -104 to 88.8
// for each vector width.  A short form of it is in tests/unit/base/exponential_test.cpp.
//
// Outside that range nothing surprising happens: below -104 the result is 0, above 88.72284 it is
// infinity, and what is not a number stays so.
#ifndef FLANKS_BASE_EXPONENTIAL_H
#define FLANKS_BASE_EXPONENTIAL_H

#include <bit>
#include <cstdint>
#include <span>

#include "base/single.h"
#include "base/vector_width.h"

namespace flanks {

// Always inlined: the loops of the kernel become vector loops only when they see this body.
[[gnu::always_inline]] inline float Exponential(float argument) {
  // Held inside the range where 2^n is an ordinary 64-bit number; -104 gives 0, 89 infinity.
  const float raised = argument < -104.0f ? -104.0f : argument;
  const double x = raised > 89.0f ? 89.0f : raised;

  // The last bits of x / ln 2 + 1.5 * 2^52 are the whole number n; the current rounding mode, to
  // nearest, has rounded it.
  constexpr double kWholeNumber = 0x1.8p52;
  const double shifted = x * 0x1.71547652b82fep+0 + kWholeNumber;
  const double n = shifted - kWholeNumber;
  const double r = (x - n * 0x1.62e42fefa0000p-1) - n * 0x1.cf79abc9e3b39p-40;

  double q = 0x1.b4addcf2faaeap-26;
  q = q * r + 0x1.289e45bc4252dp-22;
  q = q * r + 0x1.71dabbdc804adp-19;
  q = q * r + 0x1.a019ac6784f80p-16;
  q = q * r + 0x1.a01a030924f0cp-13;
  q = q * r + 0x1.6c16c17cbbbcap-10;
  q = q * r + 0x1.11111110d790bp-7;
  q = q * r + 0x1.5555555552c48p-5;
  q = q * r + 0x1.555555555560cp-3;
  q = q * r + 0x1.0000000000003p-1;
  const double power = 1.0 + (r + (r * r) * q);

  // Times 2^n: n is added to the exponent's bits.
  const std::uint64_t bits =
      std::bit_cast<std::uint64_t>(power) + (std::bit_cast<std::uint64_t>(shifted) << 52);
  return Single(std::bit_cast<double>(bits));
}

// results[i] = Exponential(arguments[i]); `results` is as long as `arguments` and stands apart.
void Exponentials(std::span<const float> arguments, std::span<float> results,
                  VectorWidth width = ChosenVectorWidth());

}  // namespace flanks

#endif  // FLANKS_BASE_EXPONENTIAL_H
