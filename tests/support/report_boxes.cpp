#include "support/report_boxes.h"

#include <cstdlib>
#include <sstream>

#include "base/utf8.h"
#include "report/format/box.h"

namespace flanks {
namespace {

constexpr std::string_view kBlank = "&nbsp;";
constexpr std::string_view kBreak = "<br>";
constexpr std::size_t kEntityLength = 7;  // "&#9474;"

char CodeOfEntity(std::string_view entity) {
  if (entity.empty() || entity.front() != '&') return 0;  // of most places, and quick
  for (const BoxCharacter& box : kBoxCharacters)
    if (entity == "&#" + std::to_string(box.unicode) + ";") return box.code;
  return 0;
}

std::string LineOfWebpage(std::string_view text) {
  if (text.rfind("<BODY>", 0) == 0) text.remove_prefix(text.find("'>") + 2);
  if (text.size() >= kBreak.size()) text.remove_suffix(kBreak.size());
  std::string line;
  while (!text.empty()) {
    if (text.rfind(kBlank, 0) == 0) {
      line += ' ';
      text.remove_prefix(kBlank.size());
    } else if (const char code = CodeOfEntity(text.substr(0, kEntityLength)); code != 0) {
      line += code;
      text.remove_prefix(kEntityLength);
    } else {
      line += text.front();
      text.remove_prefix(1);
    }
  }
  return line;
}

char FirstCharacter(std::string_view line) {
  const std::size_t place = line.find_first_not_of(' ');
  return place == std::string_view::npos ? ' ' : line[place];
}

bool IsBottomRule(std::string_view line) {
  return FirstCharacter(line) == kBoxBottomLeft && line.back() == kBoxBottomRight;
}

}  // namespace

std::vector<std::string> ReportLines(std::string_view webpage) {
  std::vector<std::string> lines;
  std::istringstream stream{std::string(webpage)};
  for (std::string line; std::getline(stream, line);)
    if (line.rfind("<STYLE>", 0) != 0) lines.push_back(LineOfWebpage(line));
  return lines;
}

bool IsSeparator(char c) {
  return c != kBoxHorizontal && FindBoxCharacter(c) != nullptr;
}

std::vector<std::string> CellsOf(std::string_view line) {
  std::vector<std::string> cells{""};
  for (const char c : line) {
    if (IsSeparator(c))
      cells.emplace_back();
    else
      cells.back() += c == kBoxHorizontal ? '-' : c;
  }
  return cells;
}

std::vector<int> SeparatorsOf(std::string_view line) {
  std::vector<int> columns;
  const std::vector<std::string> cells = CellsOf(line);
  int column = 0;
  for (std::size_t cell = 0; cell + 1 < cells.size(); ++cell) {
    column += DisplayWidth(cells[cell]);
    columns.push_back(column++);
  }
  return columns;
}

int ReportBox::table() const {
  return std::atoi(title.c_str() + std::string_view("Table ").size());
}

std::vector<ReportBox> BoxesOf(const std::vector<std::string>& lines) {
  std::vector<ReportBox> boxes;
  std::string title;
  bool inside = false;
  for (const std::string& line : lines) {
    if (line.rfind("Table ", 0) == 0) title = line;
    if (FirstCharacter(line) == kBoxTopLeft) {
      boxes.push_back({title, {}, SeparatorsOf(line), false});
      inside = true;
    }
    if (!inside) continue;
    boxes.back().lines.push_back(line);
    boxes.back().closed = IsBottomRule(line);
    inside = !boxes.back().closed;
  }
  return boxes;
}

}  // namespace flanks
