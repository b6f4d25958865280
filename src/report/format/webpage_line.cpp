#include "report/format/webpage_line.h"

#include "base/text.h"
#include "report/format/box.h"

namespace flanks {

std::string WebpageLine::Convert(std::string_view line) {
  std::string text;
  if (!pageBegun_) {
    text.append("<BODY><FONT FACE='").append(fonts_).append("'>");
    if (bold_) text += "<B>";
    pageBegun_ = true;
  }
  bool lastWasBlank = true;
  for (const char c : TrimRight(line)) {
    if (c == ' ') {
      text += lastWasBlank ? "&nbsp;" : " ";
      lastWasBlank = !lastWasBlank;
      continue;
    }
    const BoxCharacter* box = FindBoxCharacter(c);
    if (box == nullptr) {
      text += c;
    } else {
      text.append("&#").append(std::to_string(box->unicode)).append(";");
    }
    lastWasBlank = false;
  }
  return text.append("<br>");
}

}  // namespace flanks
