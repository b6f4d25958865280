#include "output/specification_lines.h"

#include <utility>

#include "base/text.h"

namespace flanks {
namespace {

constexpr int kLinesBetweenTurns = 4096;

}  // namespace

void SpecificationLines::Line(std::string_view text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == ',')) text.remove_suffix(1);
  Write(text);
}

void SpecificationLines::KeepLine(std::string_view text) {
  text = TrimRight(text);
  if (!text.ends_with(',')) return Write(text);
  Write(std::string(text) + " ;");
}

void SpecificationLines::Write(std::string_view text) {
  if (--linesUntilTurn_ <= 0) {
    linesUntilTurn_ = kLinesBetweenTurns;
    stopping_ = console_.YieldToWindow();
  }
  if (!stopping_) out_.Line(text);
}

std::string WithComment(std::string text, std::string_view comment) {
  if (comment.empty()) return text;
  return std::move(text.append(" ; ").append(comment));
}

}  // namespace flanks
