#include "output/random.h"

#include <chrono>

namespace flanks {

std::uint32_t SeedOfClock() {
  const auto ticks = static_cast<std::uint64_t>(
      std::chrono::system_clock::now().time_since_epoch() / std::chrono::nanoseconds(1));
  return static_cast<std::uint32_t>(ticks ^ (ticks >> 32));
}

}  // namespace flanks
