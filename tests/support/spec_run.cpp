#include "support/spec_run.h"

namespace flanks {

SpecRun::SpecRun() = default;
SpecRun::~SpecRun() = default;

void SpecRun::Do(const std::vector<void (*)(Run&)>& steps) {
  for (const auto step : steps)
    if (!Halted(run)) step(run);
}

void SpecRun::Read(std::string_view text, std::string_view extras) {
  process.commandLine = '"' + folder.write("s.txt", text) + "\" " + std::string(extras);
  Do({ReadCommandLine, ApplyExtraSpecifications, ReadSpecification});
}

std::vector<std::string> SpecRun::IgnoredLines() {
  KeptLines& kept = analysis.specification.IgnoredLines;
  std::vector<std::string> lines;
  std::string line;
  for (kept.Rewind(); kept.Next(line);) lines.push_back(line);
  return lines;
}

std::string SpecRun::FaultText() const {
  return FaultLine(fault(), analysis.reading.fault);
}

}  // namespace flanks
