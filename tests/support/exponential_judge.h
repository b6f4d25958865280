// The correctly rounded exponential of a float, found without the program's own.
//
// First stage: the library's 64-bit exponential.  Of it only one thing is believed, that its
// relative error is below 2^-46 (it claims 2^-52); when the 32-bit results at both ends of that
// range are the same, they are the correctly rounded one.  Otherwise, once in ten million
// arguments, the second stage: the exponential series in 113 bits, whose rest is below 2^-100, and
// a comparison with the exact midpoint between two floats.  No exponential of a float other than
// 0 is a midpoint (it is transcendental), so the comparison always decides.
#ifndef FLANKS_TESTS_SUPPORT_EXPONENTIAL_JUDGE_H
#define FLANKS_TESTS_SUPPORT_EXPONENTIAL_JUDGE_H

#include <cstdint>

namespace flanks {

struct JudgedExponential {
  float value;
  bool secondStage;
};

// `argument` is from -150 to 100.
JudgedExponential JudgeExponential(float argument);

// The second stage alone.
float SeriesExponential(float argument);

// exp(argument) as a 113-bit value cut to 64 bits: to judge the first stage's assumption.
double SeriesExponentialDouble(float argument);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_EXPONENTIAL_JUDGE_H
