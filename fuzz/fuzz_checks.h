// What the fuzz targets share: a place where no input can do harm, and what must hold when a reader
// has come to its end.  A target that finds something wrong says what and aborts, which libFuzzer
// and the replay programs take for a finding.
#ifndef FLANKS_FUZZ_FUZZ_CHECKS_H
#define FLANKS_FUZZ_FUZZ_CHECKS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/design.h"
#include "run/faults.h"
#include "run/settings.h"
#include "run/shell_interface.h"
#include "support/spec_run.h"

namespace flanks {

// Ends the process with `what`, and the text it is about, unless `good`.
void Require(bool good, std::string_view what, std::string_view text = "");

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Makes a scratch folder the current one, once for the process.
void GoToScratchFolder();

// The text without its ways out of the current folder: in a line that may hold the name of a file,
// "/" becomes "|".
std::string WithoutOuterFiles(std::string_view text);

// Whether the ranges "n-m" in the text are so wide that a run over them would take seconds.  That
// many elements are legal; other tests measure them.
bool HasWideRanges(std::string_view text);

// Reads the text as a Specification and takes the steps behind it, until one has a fault.
enum class Ending : std::uint8_t { settled, fault, stopped, processEnd };
Ending ReadAndTake(SpecRun& run, std::string_view specification,
                   const std::vector<void (*)(Run&)>& steps, std::string_view extras = "");

// The ending is a legal one, told in words.
void RequireLegalEnding(Ending ending, SpecRun& run);
// Nothing is left of the run but its Specification.  Takes the analysis away.
void RequireNothingLeft(SpecRun& run);

// The fault line has words before its code.
void RequireFaultWords(std::string_view line);
// The stop is one that a user can bring about.
void RequireKnownStop(const std::vector<std::string>& boxes);

void RequireSettings(const Settings& settings);  // all real numbers are finite
void RequireMaps(const Design& design);          // Flanks and positions
void RequireElements(const Design& design, const Settings& settings);
void RequireModels(const Design& design);
void RequireScales(const Design& design);

}  // namespace flanks

#endif  // FLANKS_FUZZ_FUZZ_CHECKS_H
