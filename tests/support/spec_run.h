// A run that reads a Specification: the steps of spec/ on a text, with a recording shell.
//
//   SpecRun test;
//   test.Read("Flanks=2\nTitle=Check\n", "Umean=50");
//   EXPECT_EQ(test.analysis.settings.Title, "Check");
#ifndef FLANKS_TESTS_SUPPORT_SPEC_RUN_H
#define FLANKS_TESTS_SUPPORT_SPEC_RUN_H

#include <string>
#include <string_view>
#include <vector>

#include "spec/command_line.h"
#include "spec/spec_context.h"
#include "spec/specification_reader.h"
#include "support/run_bench.h"

namespace flanks {

struct SpecRun : RunBench {
  SpecRun();
  ~SpecRun();

  SpecContext context() { return SpecContextOf(analysis, process, console); }

  // The steps in order, as long as none has a fault.
  void Do(const std::vector<void (*)(Run&)>& steps);
  // Reads `text` as the file s.txt, behind the Extra specifications.
  void Read(std::string_view text, std::string_view extras = "");

  Fault fault() const { return analysis.reading.FaultCode; }
  // What Table 1 is to show among the comments.
  std::vector<std::string> IgnoredLines();
  // The line that reports the pending fault.
  std::string FaultText() const;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_SPEC_RUN_H
