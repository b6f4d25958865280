// A whole run on a Specification, with its data in line or in a small file beside it.
//
// The input is the Specification; behind a byte 0 stand Extra specifications.  Files named i.txt
// and d.txt are there to be included and read.  The iterations are few, since what is looked for is
// in the readers; a run that completes must still give finite numbers.
#include <cmath>
#include <string>
#include <vector>

#include "fuzz_checks.h"
#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr std::string_view kIncluded = "1=Ann\n2=Bob\n";
constexpr std::string_view kData = "1,1,0\n1,2,1\n2,1,1\n2,2,2\n3,1,2\n3,2,1\n";

// A command line is one line, and names files of the current folder only.
std::string CommandLineOf(std::string_view extras) {
  std::string line(extras);
  for (char& c : line) {
    if (c == '/') c = '|';
    if (c == '\n' || c == '\r' || c == '\0') c = ' ';
  }
  return line;
}

void RequireCompleted(const AnalysisRun& run) {
  const Analysis& analysis = run.analysis;
  RequireSettings(analysis.settings);
  RequireMaps(analysis.design);
  RequireModels(analysis.design);
  for (const ElementState& element : analysis.estimates.elements)
    Require(std::isfinite(element.ElementMeasure), "a measure is finite");
  if (analysis.estimates.stage == StatisticsStage::finished)
    for (const ElementFinal& finished : analysis.estimates.finals)
      for (const float value :
           {finished.StandardError, finished.InfitMeanSquare, finished.OutfitMeanSquare,
            finished.InfitZStd, finished.OutfitZStd, finished.Discrimination, finished.Displacement,
            finished.PointMeasure, finished.PointResidual})
        Require(std::isfinite(value), "a statistic is finite", run.Report());
  Require(!analysis.report.writeFailed, "the report is complete");
}

void RequireHalted(const AnalysisRun& run) {
  const std::string screen = run.Screen();
  Require(run.exitCode == kExitFault, "the exit status of a fault", screen);
  if (run.processEnded)
    return Require(screen.find("VLCOMPUTE: ") != std::string::npos ||
                       screen.find("COMPUTE1: DEPTH 27+: ") != std::string::npos,
                   "the end of the process is told", screen);
  if (!run.dialogs.boxes.empty()) return RequireKnownStop(run.dialogs.boxes);
  Require(screen.find("Execution halted") != std::string::npos, "a run ends or is halted", screen);
  const std::size_t code = screen.rfind("Error F");
  Require(code != std::string::npos, "a halted run has a fault", screen);
  const std::size_t begin = screen.rfind('\n', code) + 1;
  RequireFaultWords(std::string_view(screen).substr(begin, screen.find('\n', code) - begin));
}

// The report is the only new file; the files that the run read are as they were.
void RequireFiles(AnalysisRun& run, std::string_view specification) {
  const std::string report = run.analysis.settings.OutputFile;
  run.analysis = Analysis{};
  Require(run.folder.read("specification.txt") == specification, "the Specification is unchanged");
  Require(run.folder.read("i.txt") == kIncluded, "an include file is unchanged");
  Require(run.folder.read("d.txt") == kData, "the data file is unchanged");
  for (const std::string& name : run.folder.names())
    Require(
        name == "specification.txt" || name == "i.txt" || name == "d.txt" || report.ends_with(name),
        "a file is left behind", name);
}

void CheckRun(std::string_view input) {
  if (HasWideRanges(input)) return;
  GoToScratchFolder();
  const std::size_t end = std::min(input.find('\0'), input.size());
  const std::string specification = WithoutOuterFiles(input.substr(0, end));
  const std::string extras = CommandLineOf(input.substr(std::min(end + 1, input.size())));
  AnalysisRun run;
  run.Write("i.txt", kIncluded);
  run.Write("d.txt", kData);
  run.Write("specification.txt", specification);
  run.RunCommandLine(run.folder.file("specification.txt") + " Iterations=3 " + extras);
  Require(run.exitCode == 0 || run.exitCode == kExitFault, "an exit status", run.Screen());
  run.exitCode == 0 ? RequireCompleted(run) : RequireHalted(run);
  RequireFiles(run, specification);
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  flanks::CheckRun(flanks::TextOf(data, size));
  return 0;
}
