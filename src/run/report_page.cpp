#include "run/report_page.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <string>

#include "report/format/box.h"

namespace flanks {
namespace {

constexpr char kPageBreak = '^';
constexpr char kFormFeed = '\f';
constexpr int kTables = 14;
constexpr std::size_t kTableWord = 6;  // "Table "

// Behind the last line of a webpage: on a screen its rows, which are wider than many windows, are
// not broken, and where none of the fonts is there another one of fixed pitch takes their place.
std::string WebpageEnd(const std::string& fonts) {
  const bool plain = std::all_of(fonts.begin(), fonts.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == ' ' || c == ',' || c == '-';
  });
  const std::string fixedPitch = plain ? "FONT{font-family:" + fonts + ",monospace}" : "";
  return "<STYLE>@media screen{BODY{white-space:nowrap}}" + fixedPitch + "</STYLE><br>\n";
}

// What the line becomes in the mode in force; false when a hidden box leaves nothing of it.
bool ConvertLine(ReportState& report, const Settings& settings, std::string_view line,
                 std::string& text) {
  const bool box = settings.BoxShow == 'Y';
  if (!box && IsRuleLine(line)) return false;
  const std::string shown = box ? std::string(line) : BoxToBlanks(line);
  switch (settings.Ascii) {
    case 'Y':
      text = BoxToAscii(shown);
      text.erase(text.find_last_not_of(' ') + 1);
      break;
    case 'W':
      text = report.webpage.Convert(shown);
      break;
    default:
      text = BoxToPcBytes(shown);
      break;
  }
  return true;
}

// Where a report breaks off: "in Table 7.1.2".
std::string PlaceOf(const std::string& tableTitle) {
  return tableTitle.empty() ? "where this happened"
                            : "in " + tableTitle.substr(0, tableTitle.find(' ', kTableWord));
}

// A report that cannot be written costs no run; what was lost is said once.
void NoticeLostReport(Console& console) {
  ReportState& report = console.report();
  if (report.file.good() || report.writeFailed) return;
  report.writeFailed = true;
  console.ShowFlagged("The report file \"" + report.fileName + "\" cannot be written any more (" +
                      std::strerror(errno) + "): it ends " + PlaceOf(report.tableTitle) +
                      ". The run goes on.");
}

void WriteRule(Console& console, BoxPosition position) {
  const ReportState& report = console.report();
  WriteReportLine(console, BoxLine(report.rulePattern, position, report.ruleTag,
                                   console.settings().Ascii == 'Y'));
}

}  // namespace

bool OpenReport(Console& console, const std::string& name, std::string& reason) {
  ReportState& report = console.report();
  errno = 0;
  report.file.open(name, std::ios::binary | std::ios::trunc);
  if (!report.file.is_open()) {
    reason = std::strerror(errno);
    return false;
  }
  report.fileName = name;
  report.fileOpen = true;
  report.writeFailed = false;
  report.webpage = WebpageLine(console.settings().Webpagefonts, console.settings().webpageBold);
  return true;
}

void CloseReport(Console& console) {
  ReportState& report = console.report();
  const Settings& settings = console.settings();
  if (report.file.is_open() && settings.Ascii == 'W')
    report.file << WebpageEnd(settings.Webpagefonts);
  report.file.close();
}

void WriteReportLine(Console& console, std::string_view line) {
  ReportState& report = console.report();
  if (report.switchedOff || console.stopping()) return;
  if (!report.fileOpen || report.RunSilent) console.shell().AppendOutput(line);
  if (!report.fileOpen) return;
  std::string text;
  if (!ConvertLine(report, console.settings(), line, text)) return;
  text += '\n';
  errno = 0;
  // Flushed after each line: what was written survives a crash.
  report.file.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
  NoticeLostReport(console);
}

void SelectTable(Console& console, int number) {
  const std::string& flags = console.settings().Tables;
  const bool isFlagString = !flags.empty() && (flags[0] == '0' || flags[0] == '1');
  const auto index = static_cast<std::size_t>(number - 1);
  console.report().switchedOff =
      isFlagString && number <= kTables && index < flags.size() && flags[index] == '0';
}

void TableHeading(Console& console, std::string_view title) {
  ReportState& report = console.report();
  report.tableTitle = title;
  if (!report.switchedOff) console.ShowLine(title);
  WriteReportLine(console, "");
  std::string heading = report.runHeading;
  if (!heading.empty() && heading[0] == kPageBreak) heading[0] = kFormFeed;
  WriteReportLine(console, heading);
  WriteReportLine(console, report.tableTitle + ".");
  WriteReportLine(console, "");
}

void BeginBox(Console& console, const std::array<std::string, 4>& headingRows,
              std::string_view rulePattern, int inUse) {
  ReportState& report = console.report();
  report.headingRows = headingRows;
  report.headingRowsInUse = inUse;
  report.rulePattern = rulePattern;
  report.ruleTag = 0;
  TopRule(console);
  HeadingRows(console);
}

void TopRule(Console& console) {
  WriteRule(console, BoxPosition::top);
}
void MidRule(Console& console) {
  WriteRule(console, BoxPosition::mid);
}
void BottomRule(Console& console) {
  WriteRule(console, BoxPosition::bot);
}

void HeadingRows(Console& console) {
  const ReportState& report = console.report();
  for (int row = 1; row <= report.headingRowsInUse; ++row) {
    const std::string& heading = report.headingRows[static_cast<std::size_t>(row)];
    if (heading.find_first_not_of(' ') != std::string::npos) WriteReportLine(console, heading);
  }
  MidRule(console);
}

// Kept: nothing advances linesSinceHeading, so the heading is never repeated (docs/quirks.md).
void Juxtapose(Console& console) {
  const ReportState& report = console.report();
  const std::int32_t every = console.settings().Juxtapose;
  if (every == 0 || report.linesSinceHeading < every) return;
  WriteReportLine(console, report.headingRows[0]);
  TopRule(console);
  HeadingRows(console);
}

}  // namespace flanks
