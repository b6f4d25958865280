#include "report/label_column.h"

#include <algorithm>
#include <cstddef>

#include "report/format/box.h"
#include "report/format/clip_field.h"

namespace flanks {
namespace {

std::string Repeated(char c, int count) {
  return std::string(static_cast<std::size_t>(count), c);
}

std::string Join(const LabelColumn& label, std::string_view figures, const std::string& cell) {
  std::string line(figures);
  std::replace(line.begin(), line.end(), '|', kBoxColumn);
  if (label.leftHand) return kBoxColumn + cell + line;
  return line + cell + kBoxColumn;
}

}  // namespace

std::array<std::string, 4> HeadingRowsWith(const LabelColumn& label, std::string_view firstFigures,
                                           std::string_view secondFigures,
                                           const std::string& head) {
  const std::string cell = " " + ClipField(head, label.width, label.encoding);
  return {"", Join(label, firstFigures, Repeated(' ', label.width + 1)),
          Join(label, secondFigures, cell), ""};
}

std::string RulePatternWith(const LabelColumn& label, std::string_view figures) {
  std::string dashes(figures);
  for (char& c : dashes) c = c == '|' ? 'x' : '-';
  const std::string labelDashes = Repeated('-', label.width + 1);
  return label.leftHand ? "x" + labelDashes + dashes : dashes + labelDashes + "x";
}

std::string RowWordWith(const LabelColumn& label, std::string_view figures) {
  const std::string line = Join(label, figures, " \\" + Repeated(' ', label.width - 2) + "\\");
  return label.leftHand ? line + "&" : "&" + line;
}

EditLine BeginRow(const LabelColumn& label, const std::string& word, const std::string& text) {
  EditLine line(word, label.encoding);
  line.EditString(label.leftHand ? text : "");
  return line;
}

std::string EndRow(EditLine& line, const LabelColumn& label, const std::string& text) {
  line.EditString(label.leftHand ? "" : text);
  return line.Finish();
}

}  // namespace flanks
