#include "run/progress_bar.h"

#include <algorithm>
#include <string>

namespace flanks {
namespace {

constexpr std::int64_t kFullBar = 50;  // marks

}  // namespace

ProgressBar::ProgressBar(Console& console, std::int64_t total)
    : console_(console), total_(std::max<std::int64_t>(total, 1)) {
  console_.ShowPart(">");
  next_ = (total_ + kFullBar - 1) / kFullBar;
}

void ProgressBar::Draw(std::int64_t done) {
  // The quotient first: a total times the marks need not fit.
  const std::int64_t step = total_ / kFullBar, rest = total_ % kFullBar;
  std::int64_t due = marks_;
  const auto shareOf = [&](std::int64_t marks) {
    return marks * step + (marks * rest + kFullBar - 1) / kFullBar;
  };
  while (due < kFullBar && done >= shareOf(due + 1)) ++due;
  if (due > marks_) console_.ShowPart(std::string(static_cast<std::size_t>(due - marks_), '='));
  marks_ = due;
  next_ = shareOf(marks_ + 1);
}

void ProgressBar::End() {
  Draw(total_);
  console_.ShowPart("<");
}

void ProgressBar::Break() {
  console_.ShowPart("<");
}

}  // namespace flanks
