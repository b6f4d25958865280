// The state of the report being written: file, headings, rule, output switch, webpage state.
#ifndef FLANKS_RUN_REPORT_STATE_H
#define FLANKS_RUN_REPORT_STATE_H

#include <array>
#include <fstream>
#include <string>
#include <vector>

#include "report/format/webpage_line.h"

namespace flanks {

struct ReportState {
  // The report file.  Lines are appended to one stream that is flushed after each.
  std::ofstream file;
  std::string fileName;
  bool fileOpen = false;     // the output file has been opened (or was lost later)
  bool writeFailed = false;  // said once on the screen; the run goes on

  // `Tables=`: the switch in force, and RunSilent (a request that echoes to the screen).
  bool switchedOff = false;
  bool RunSilent = false;

  // Texts that came before the report file was open, for Table 1's " Messages:" block, and the
  // notes that close the run.
  std::vector<std::string> deferredMessages;
  std::vector<std::string> closingNotes;

  // The Table being written.
  std::string runHeading;                  // Title= and a blank; "^" first: page break
  std::string tableTitle;                  // without its full stop
  std::array<std::string, 4> headingRows;  // row 0: the repeat marker; 1 to 3: column heads
  int headingRowsInUse = 2;
  std::string rulePattern;  // "-" with "x" at each separator
  int ruleTag = 0;
  int linesSinceHeading = 0;  // Kept: nothing advances it (docs/quirks.md)

  // What the rulers of Table 6 span, logits: the range of the graphs.
  float GraphLow = 0.0f, GraphHigh = 0.0f;

  WebpageLine webpage = WebpageLine();  // blank-run and first-line state of mode W
};

}  // namespace flanks

#endif  // FLANKS_RUN_REPORT_STATE_H
