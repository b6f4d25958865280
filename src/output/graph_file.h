// The Graph file: the model's curves as a table, a row for each scale and measure.
//
// The measures go in equal steps over the range of the elements that were estimated and a logit
// beyond it at both ends.  Each row has the expected score, the category nearest to it and the
// probability of each category, all by the measurement kernel.
//
// Tested by tests/unit/output/graph_file_test.cpp.
#ifndef FLANKS_OUTPUT_GRAPH_FILE_H
#define FLANKS_OUTPUT_GRAPH_FILE_H

#include <string>
#include <vector>

#include "output/table_file.h"
#include "run/analysis.h"
#include "run/run.h"

namespace flanks {

// The horizontal axis, in user units before `Umean=` is added.
struct GraphAxis {
  double low = 0.0;
  double step = 1.0;
  int points = 0;
  int decimals = 0;  // that tell a point from the next

  double ValueOf(int point) const { return low + point * step; }
};

// `low` and `high` in logits, the smallest and the largest measure.
GraphAxis GraphAxisOf(double low, double high, double uscale);
// The smallest of 1, 3, 5 and 10 times a power of ten that is not below `width`, which is above 0.
double NiceStep(double width);

// The measures of all elements in play, in logits: smallest and largest; where these are equal or
// there are none, a logit to both sides of it, or of 0.
struct GraphRange {
  double GraphLow = -1.0, GraphHigh = 1.0;
};
GraphRange GraphRangeOf(const Estimates& estimates);

// Heading line, if wanted, and rows, as text: for its own sake, or for Excel, which has headings of
// its own, or R.
void WriteGraphTable(Run& run, OutputForm form, const TableOptions& options, Destination& out);
void WriteGraphWebpage(Run& run, const TableOptions& options, Destination& out);

// Writes the file under its name, in the form that the name asks for; there is no SPSS form.
bool WriteGraphFileNamed(Run& run, const std::string& name, const TableOptions& options);

// `Graphfile=`.
void WriteGraphFile(Run& run);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_GRAPH_FILE_H
