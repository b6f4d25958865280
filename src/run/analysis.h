// The analysis state: everything that one run sets up and its reports read.
//
// It begins with `analysis = Analysis{}`, which is the reset to the defaults, and its end removes
// the work files.  Workers take the parts they need, const wherever they do not write; only the
// steps (run/pipeline) see the whole.
#ifndef FLANKS_RUN_ANALYSIS_H
#define FLANKS_RUN_ANALYSIS_H

#include <memory>
#include <string>
#include <vector>

#include "base/kept_lines.h"
#include "run/data_counts.h"
#include "run/design.h"
#include "run/disjoint_subsets.h"
#include "run/estimates.h"
#include "run/faults.h"
#include "run/report_state.h"
#include "run/scale_tables.h"
#include "run/settings.h"
#include "run/unexpected_responses.h"
#include "run/work_files.h"

namespace flanks {

class SpecificationSource;  // spec/: the open Specification and its include files

// A list of Flanks as `Noncenter=` or `Positive=` gave it; put into the Flank table whenever that
// changes its size.
struct FlankList {
  bool given = false;
  bool reversed = false;     // `Center=`, `Negative=`
  char all = ' ';            // 'Y', 'N': every Flank, none
  std::vector<int> listed;   // Flank numbers
  std::vector<int> zOrigin;  // of these, the Flanks with a "Z" behind the number
};

// What the Specification reader leaves to later steps.
struct SpecificationState {
  SpecificationState();
  ~SpecificationState();
  SpecificationState(SpecificationState&&) noexcept;
  SpecificationState& operator=(SpecificationState&&) noexcept;

  std::string SeenCodes =
      std::string(70, ' ');  // blank, 'X' taken from the extras, 'S' from the file
  KeptLines IgnoredLines;    // for Table 1: comments with ";;", duplicate specifications
  std::vector<std::string> includedFiles;  // a report may not replace them
  std::string ExtraSpecifications;
  bool ReadingExtras = false;
  bool EndOfSpecification = false;
  bool InlineData = false;
  bool lineLeft = false;        // a list's handler left its last line in Fields
  std::int64_t labelsLine = 0;  // line of Labels=; 0: not met; locks Umean=
  FlankList centers, orientations;
  bool dataPositionsGiven = false;              // `Flanks=` told the number of data positions
  std::unique_ptr<SpecificationSource> source;  // stays open while the data are in line
};

struct Analysis {
  // In a source of their own: they are long, and without that each file that has one compiles them.
  Analysis();
  ~Analysis();
  Analysis(Analysis&&) noexcept;
  Analysis& operator=(Analysis&&) noexcept;

  Settings settings;                 // one value for each keyword            written by spec/
  SpecificationState specification;  // the Specification being read       written by spec/
  ReadState reading;          // FaultCode, LineNumber, CurrentLine    written by spec/, data/
  Design design;              // Flanks, elements, models, scales      written by spec/
  DataCounts counts;          // what the data pass met                written by data/
  StructureTable structures;  // category structures                   written by data/
  WorkFiles work;             // owns the work files                   written by data/
  ScaleTables scales;         // thresholds, flags, category counts    written by estimate/
  Estimates estimates;        // measures, status, statistics          written by estimate/, stats/
  DisjointSubsets subsets;    // what the data do not connect         written by estimate/
  UnexpectedResponses unexpected;  // what Table 4 lists                written by stats/
  ReportState report;              // title, headings, output switch        written by report/
};

}  // namespace flanks

#endif  // FLANKS_RUN_ANALYSIS_H
