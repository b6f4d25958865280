// Simulated data: for each observation that was used, another one drawn from the model at the
// estimates.
//
//   ; Simulated data matching the empirical data structure
//   ; the title
//   ; matching: data.txt
//   12,3,5,2 ; 3               elements 12, 3 and 5, the new response, and the observed one
//   R2.5,12,4,5,1 ; 1          with the replication of the data line
//
// The lines are data lines, read with the Specification of the run: an element is named by its
// number, or by its label in a Flank whose elements are read by labels first (`Delements=`), and a
// response is one that the scale's recodes lead to its category.  Positions that `Dvalues=` fills
// are left out.  What reads back as something else is told on the screen.
//
// Tested by tests/unit/output/simulate_test.cpp.
#ifndef FLANKS_OUTPUT_SIMULATE_H
#define FLANKS_OUTPUT_SIMULATE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "output/destination.h"
#include "run/run.h"

namespace flanks {

struct SimulationOptions {
  bool SimulateMatching = true;  // the structure of the data; otherwise fully crossed data
  std::optional<std::uint32_t> seed = {};  // from the clock when there is none
};

// The lines of the file, from a finished analysis.
// Kept: of fully crossed data only the comments are written (docs/quirks.md).
void WriteSimulatedLines(Run& run, const SimulationOptions& options, Destination& out);

// The file `name`.  False when it was not written.
bool WriteSimulatedData(Run& run, const std::string& name, const SimulationOptions& options);

// Step: the file of `Simulated=`.
void WriteSimulatedData(Run& run);

// The category that `uniform`, 0 up to 1, draws from probabilities that stand `stride` apart, 0 to
// `top`.  Rounding may leave none below the top one: then it is that.
int DrawCategory(double uniform, const float* probability, std::size_t stride, int top);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_SIMULATE_H
