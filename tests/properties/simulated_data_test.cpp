// The simulated data of any run are read by the same Specification, every line of them.
#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"
#include "support/odd_design.h"
#include "support/random_report.h"

namespace flanks {
namespace {

// Lines of the simulated data that are no comments.
std::int64_t DataLines(const std::string& text) {
  std::int64_t lines = 0;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) lines += text[at] != ';';
  return lines;
}

// What is wrong; empty for nothing.  `completed` when there were simulated data.
std::string Difference(AnalysisRun& run, const std::string& specification, bool& completed) {
  const std::string file = run.folder.file("simulated.txt");
  run.Analyze(specification, "Simulated=" + file);
  completed = run.exitCode == 0;
  if (!completed) return {};
  const std::string text = run.folder.read("simulated.txt");
  const std::int64_t lines = DataLines(text);
  if (lines == 0) return {};
  const std::string design = specification.substr(0, specification.find("\nData=") + 1);
  run.Analyze(design + "Data=simulated.txt\n");
  const std::string read = run.analysis.counts.DataLines.text();
  const std::string valid = run.analysis.counts.ValidResponses.text();
  if (read == std::to_string(lines) && valid == read) return {};
  return std::to_string(lines) + " lines, read " + read + ", valid " + valid + "\n" +
         specification + text + run.Screen();
}

TEST(SimulatedData, OfARandomDesignAreRead) {
  int count = 0;
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    AnalysisRun run;
    bool completed = false;
    EXPECT_EQ(Difference(run, RandomReport(seed).Specification(), completed), "") << seed;
    count += completed;
  }
  EXPECT_GT(count, 6);
}

TEST(SimulatedData, OfAnOddDesignAreRead) {
  int count = 0;
  for (unsigned seed = 1; seed <= 25; ++seed) {
    AnalysisRun run;
    const OddDesign design = MakeOddDesign(seed);
    run.Write("data.txt", design.data);
    bool completed = false;
    EXPECT_EQ(Difference(run, design.specification, completed), "") << seed;
    count += completed;
  }
  EXPECT_GT(count, 12);
}

}  // namespace
}  // namespace flanks
