// The Residual file: one row for each observation, with what the model expects of it.
//
// One pass over the work files, block by block; rows go out as they come, so that memory does not
// grow with them.  WriteResidualFileNamed is told the file; the step at the end of a run is
// WriteResiduals.
//
// Tested by tests/unit/output/residual_file_test.cpp; timed by bench/bench_rows.cpp.
#ifndef FLANKS_OUTPUT_RESIDUAL_FILE_H
#define FLANKS_OUTPUT_RESIDUAL_FILE_H

#include <string>

#include "output/residual_rows.h"
#include "output/table_file.h"
#include "run/analysis.h"
#include "run/run.h"

namespace flanks {

struct ResidualOptions {
  TableOptions table;
  std::string ResponseSelection;  // 16 places
  StatusFilter statusFilter = StatusFilter::both;
};
ResidualOptions ResidualOptionsOf(const Settings& settings);

// Heading line, if wanted, and rows, as text: for its own sake, or for Excel or R, which have tabs
// between fields.
void WriteResidualFile(Run& run, OutputForm form, const ResidualOptions& options, Destination& out);
// The text that an SPSS file is made of: names, labels and formats of the variables, rows.
void WriteResidualSpss(Run& run, const ResidualOptions& options, Destination& out);
void WriteResidualWebpage(Run& run, const ResidualOptions& options, Destination& out);

// Writes the file under its name, in the form that the name asks for.
bool WriteResidualFileNamed(Run& run, const std::string& name, const ResidualOptions& options);

// `Residualfile=`.
void WriteResiduals(Run& run);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_RESIDUAL_FILE_H
