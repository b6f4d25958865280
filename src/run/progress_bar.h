// A bar of "=" marks between ">" and "<": how much of a long step is done.
//
//   ProgressBar bar(console, rows);
//   for (...) bar.Advance(rowsDone);     // writes the marks that are due; most calls write none
//   bar.End();                           // what is left of the bar, when all is done, and "<"
//
// A step that the user ends early calls Break, which leaves the bar as long as it is.  Tested by
// tests/unit/run/progress_bar_test.cpp.
#ifndef FLANKS_RUN_PROGRESS_BAR_H
#define FLANKS_RUN_PROGRESS_BAR_H

#include <cstdint>

#include "run/console.h"

namespace flanks {

class ProgressBar {
 public:
  ProgressBar(Console& console, std::int64_t total);

  void Advance(std::int64_t done) {
    if (done >= next_) Draw(done);
  }
  void End();
  void Break();

 private:
  void Draw(std::int64_t done);

  Console& console_;
  std::int64_t total_;
  std::int64_t next_ = 0;  // the share that is due for the next mark
  std::int64_t marks_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_RUN_PROGRESS_BAR_H
