#include "base/fixed_count.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace flanks {

namespace {

// The range is symmetric, so that a count can always be negated.
constexpr std::int64_t kEnd = std::numeric_limits<std::int64_t>::max();

}  // namespace

FixedCount FixedCount::Of(std::int64_t whole) {
  return FixedCount(std::clamp(whole, -(kEnd / kUnit), kEnd / kUnit) * kUnit);
}

FixedCount FixedCount::FromReplication(float replication) {
  if (std::isnan(replication)) return FixedCount();
  const double scaled = static_cast<double>(replication) * static_cast<double>(kUnit);
  if (scaled >= static_cast<double>(kEnd)) return FixedCount(kEnd);
  if (scaled <= -static_cast<double>(kEnd)) return FixedCount(-kEnd);
  return FixedCount(std::llround(scaled));
}

FixedCount& FixedCount::operator+=(FixedCount other) {
  if (other.scaled_ > 0 && scaled_ > kEnd - other.scaled_) {
    scaled_ = kEnd;
  } else if (other.scaled_ < 0 && scaled_ < -kEnd - other.scaled_) {
    scaled_ = -kEnd;
  } else {
    scaled_ += other.scaled_;
  }
  return *this;
}

FixedCount& FixedCount::operator-=(FixedCount other) {
  return *this += FixedCount(-other.scaled_);
}

std::string FixedCount::text() const {
  const std::int64_t size = scaled_ < 0 ? -scaled_ : scaled_;
  std::string decimals = std::to_string(kUnit + size % kUnit).substr(1);
  decimals.erase(decimals.find_last_not_of('0') + 1);
  const std::int64_t whole = size / kUnit;
  std::string text = scaled_ < 0 ? "-" : "";
  if (whole != 0 || decimals.empty()) text += std::to_string(whole);
  if (!decimals.empty()) text += "." + decimals;
  return text;
}

}  // namespace flanks
