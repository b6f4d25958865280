// Report lines as webpage text.
//
// Columns must stand under each other in a fixed-pitch font although a browser joins blanks, so a
// run of blanks alternates between "&nbsp;" and a plain blank: it begins with "&nbsp;" at the start
// of a line, which would else be dropped, and with a plain blank behind text, where a browser may
// break the line.  Box codes become character entities.  Each line ends in "<br>"; the first line
// of a report opens the page and sets its font.
//
// One object serves one report file: a fresh one begins a page.
//
// Tested by tests/unit/report/format/webpage_line_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_WEBPAGE_LINE_H
#define FLANKS_REPORT_FORMAT_WEBPAGE_LINE_H

#include <string>
#include <string_view>

namespace flanks {

class WebpageLine {
 public:
  static constexpr std::string_view kDefaultFonts = "Lucida Console, Andale Mono, Courier New";

  // `fonts`: a comma list as a webpage wants it.
  explicit WebpageLine(std::string_view fonts = kDefaultFonts, bool bold = false)
      : fonts_(fonts), bold_(bold) {}

  // The line without its trailing blanks, converted; no line end behind "<br>".
  // Kept: "<", ">" and "&" of labels are not escaped (docs/quirks.md).
  std::string Convert(std::string_view line);

 private:
  std::string fonts_;
  bool bold_;
  bool pageBegun_ = false;
};

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_WEBPAGE_LINE_H
