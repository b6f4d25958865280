// The Score file: one file for each Flank, one row for each of its elements.
//
// WriteScoreFiles is the step at the end of a run; the others serve requests with options of their
// own as well.
//
// Tested by tests/unit/output/score_file_test.cpp.
#ifndef FLANKS_OUTPUT_SCORE_FILE_H
#define FLANKS_OUTPUT_SCORE_FILE_H

#include <string>
#include <vector>

#include "output/table_file.h"
#include "run/analysis.h"
#include "run/run.h"

namespace flanks {

struct ScoreOptions {
  TableOptions table;
  bool OmitUnobserved = true;  // elements without any observation have no row
  std::string ScoreSelection;  // 29 flags
};
ScoreOptions ScoreOptionsOf(const Settings& settings);

// Heading line, if wanted, and rows of one Flank, as text: for its own sake, or for Excel or R,
// which have tabs between fields; R always has the heading line.
void WriteScoreFile(Run& run, FlankNo flank, OutputForm form, const ScoreOptions& options,
                    Destination& out);
// The text that an SPSS file is made of: names, labels and formats of the variables, rows.
void WriteScoreSpss(Run& run, FlankNo flank, const ScoreOptions& options, Destination& out);
void WriteScoreWebpage(Run& run, FlankNo flank, const ScoreOptions& options, Destination& out);

// Writes the file of one Flank under its name, in the form that the name asks for.
bool WriteScoreFileNamed(Run& run, FlankNo flank, const std::string& name,
                         const ScoreOptions& options);

// `Scorefile=`: the files of all Flanks.
void WriteScoreFiles(Run& run);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_SCORE_FILE_H
