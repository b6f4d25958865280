// Uniform random numbers for simulated data.
//
// The generator is the Mersenne Twister (M. Matsumoto and T. Nishimura, ACM Transactions on
// Modeling and Computer Simulation 8, 1998), so that a seed gives the same numbers on every system.
//
// Tested by tests/unit/output/simulate_test.cpp.
#ifndef FLANKS_OUTPUT_RANDOM_H
#define FLANKS_OUTPUT_RANDOM_H

#include <cstdint>
#include <random>

namespace flanks {

class UniformNumbers {
 public:
  explicit UniformNumbers(std::uint32_t seed) : engine_(seed) {}
  // 0 or above, below 1.
  double Next() {
    constexpr double kStep = 1.0 / 4294967296.0;  // the engine's numbers have 32 bits
    return static_cast<double>(engine_()) * kStep;
  }

 private:
  std::mt19937 engine_;
};

// A seed from the clock: two runs differ.
std::uint32_t SeedOfClock();

}  // namespace flanks

#endif  // FLANKS_OUTPUT_RANDOM_H
