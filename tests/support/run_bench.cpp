#include "support/run_bench.h"

namespace flanks {

bool RecordingLauncher::Open(const std::string& name) {
  asked.push_back(name);
  return works;
}

RunBench::RunBench() = default;
RunBench::~RunBench() = default;

}  // namespace flanks
