// A shell that shows nothing and is never asked to stop.
#ifndef FLANKS_BENCH_SILENT_SHELL_H
#define FLANKS_BENCH_SILENT_SHELL_H

#include <cstdint>
#include <string>
#include <string_view>

#include "run/shell_interface.h"

namespace flanks {

class SilentShell : public Shell {
 public:
  using Shell::Shell;

 protected:
  void DoDeliverEvents() override {}
  void DoWait(int) override {}
  void DoShowStatus(std::string_view, Emphasis) override {}
  void DoAppendOutput(std::string_view) override {}
  void DoShowProgress(std::string_view) override {}
  void DoEditFile(const std::string&, ViewAt, std::string_view) override {}
  std::int64_t DoMilliseconds() override { return 0; }
};

}  // namespace flanks

#endif  // FLANKS_BENCH_SILENT_SHELL_H
