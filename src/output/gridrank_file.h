// The control and data file for Gridrank, a program that analyzes rectangular data.
//
// Flanks chosen for the rows are combined into one row label, those chosen for the columns into one
// column label; an observation falls into one cell (output/gridrank_table).  The file has a head of
// settings, anchor values if they are asked for, the column labels, and a line for each row.
//
// Tested by tests/unit/output/gridrank_file_test.cpp.
#ifndef FLANKS_OUTPUT_GRIDRANK_FILE_H
#define FLANKS_OUTPUT_GRIDRANK_FILE_H

#include <string>
#include <vector>

#include "output/destination.h"
#include "output/gridrank_table.h"
#include "run/run.h"

namespace flanks {

struct GridrankOptions {
  // F, L, T: the first observation of a cell, the last one, their sum.  N: no data lines.  R, C, S:
  // anchor values of the rows, the columns, the rating scale.
  std::string letters = "F";
  std::vector<FlankNo> rowFlanks;
  std::vector<FlankNo> columnFlanks;
};

// The table of a finished analysis.  False when a list of Flanks is empty or has one that is not
// there, the memory does not do, or the run is to stop; all but the last are told.
bool CollectGridrankTable(Run& run, const GridrankOptions& options, GridrankTable& table);
// The lines of the file.
void WriteGridrankLines(Run& run, const GridrankOptions& options, const GridrankTable& table,
                        Destination& out);

// The file `name`.  False when it was not written: no table, or the file cannot be written.  Each
// is told.
bool WriteGridrankFile(Run& run, const std::string& name, const GridrankOptions& options);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_GRIDRANK_FILE_H
