#include "data/data_line.h"

#include <cfloat>

#include "base/single.h"
#include "base/text.h"

namespace flanks {
namespace {

constexpr bool IsQuote(char c) {
  return c == '"' || c == '\'';
}

// What a line holds, found in one look.
struct LineMarks {
  bool comma = false;  // or "="
  bool tab = false;
  bool quote = false;
};

LineMarks MarksOf(std::string_view line) {
  LineMarks marks;
  for (const char c : line) {
    marks.comma |= c == ',' || c == '=';
    marks.tab |= c == '\t';
    marks.quote |= IsQuote(c);
  }
  return marks;
}

// Takes items as they are cut and puts them where they belong: the replication aside, the others
// into the fields that the line has to fill.
class ItemTaker {
 public:
  ItemTaker(const SplitRules& rules, DataLine& out) : rules_(rules), out_(out) {}

  // False when there is no room for the item.
  bool Take(std::size_t start, std::size_t end) {
    if (first_) {
      first_ = false;
      const std::string_view item(out_.text.data() + start, end - start);
      if (ReadReplication(item, rules_.Replication, out_.Replication)) {
        out_.replicationField = item;
        return true;
      }
    }
    SkipDvalues();
    if (out_.FieldCount() >= kMostFields) return false;
    if (out_.FieldCount() < rules_.DataFlankCount)
      for (std::size_t at = start; at < end; ++at)
        if (out_.text[at] == '_') out_.text[at] = '-';
    out_.Fields.emplace_back(out_.text.data() + start, end - start);
    return true;
  }

  // Leaves the fields empty that `Dvalues=` fills.
  void SkipDvalues() {
    if (rules_.dvalues.empty()) return;
    while (out_.FieldCount() < rules_.DataFlankCount &&
           rules_.dvalue(out_.FieldCount() + 1) != nullptr)
      out_.Fields.emplace_back();
  }

 private:
  const SplitRules& rules_;
  DataLine& out_;
  bool first_ = true;
};

// Splits out.text at commas.
bool SplitAtCommas(ItemTaker& taker, const std::string& text) {
  std::size_t start = 0;
  while (true) {
    std::size_t end = text.find(',', start);
    const bool last = end == std::string::npos;
    if (last) end = text.size();
    std::size_t left = start, right = end;
    while (left < right && text[left] == ' ') ++left;
    while (right > left && text[right - 1] == ' ') --right;
    if (!taker.Take(left, right)) return false;
    if (last) return true;
    start = end + 1;
  }
}

// Splits out.text at blanks; a text between two quote marks of a kind is one item.
bool SplitAtBlanks(ItemTaker& taker, const std::string& text) {
  const std::size_t size = text.size();
  std::size_t at = 0;
  while (at < size) {
    if (text[at] == ' ') {
      ++at;
      continue;
    }
    std::size_t end;
    if (IsQuote(text[at])) {
      end = text.find(text[at], at + 1);
      ++at;
      if (end == std::string::npos) continue;
      std::size_t left = at, right = end;
      while (left < right && text[left] == ' ') ++left;
      while (right > left && text[right - 1] == ' ') --right;
      at = end + 1;
      if (left < right && !taker.Take(left, right)) return false;
      continue;
    }
    for (end = at; end < size && text[end] != ' ' && !IsQuote(text[end]);) ++end;
    if (!taker.Take(at, end)) return false;
    at = end;
  }
  return true;
}

}  // namespace

bool ReadReplication(std::string_view item, std::string_view replicationText, float& value) {
  if (item.size() <= replicationText.size()) return false;
  for (std::size_t i = 0; i < replicationText.size(); ++i)
    if (UpperCase(item[i]) != replicationText[i]) return false;
  const std::string_view number = item.substr(replicationText.size());
  int digits = 0, points = 0;
  for (const char c : number) {
    if (IsDigit(c))
      ++digits;
    else if (c == '.')
      ++points;
    else
      return false;
  }
  if (digits == 0 || points > 1) return false;
  const double read = ReadNumericPrefix(number).value;
  if (read > static_cast<double>(FLT_MAX)) return false;  // told as an element number that is none
  value = Single(read);
  return true;
}

Fault SplitDataLine(std::string_view line, const SplitRules& rules, DataLine& out) {
  out.text.assign(Trim(line));
  out.Fields.clear();
  out.replicationField = {};
  out.Replication = 1.0f;
  if (out.text.empty()) return Fault::none;
  const LineMarks marks = MarksOf(out.text);
  ItemTaker taker(rules, out);
  if (out.text.front() == '*') {
    out.Fields.emplace_back(out.text.data(), 1);
    return Fault::none;
  }
  bool room = true;
  if (marks.comma || marks.tab) {
    if (marks.comma) {
      ReplaceCharacter(out.text, '=', ',');
      ReplaceCharacter(out.text, '\t', ' ');
    } else {
      ReplaceCharacter(out.text, '\t', ',');
    }
    if (marks.quote) {
      ReplaceCharacter(out.text, '"', ' ');
      ReplaceCharacter(out.text, '\'', ' ');
    }
    room = SplitAtCommas(taker, out.text);
  } else {
    room = SplitAtBlanks(taker, out.text);
  }
  if (!room) return Fault::tooManyFields;
  if (!out.Fields.empty() || !out.replicationField.empty()) taker.SkipDvalues();
  return Fault::none;
}

std::string DataLine::Processed() const {
  std::string joined;
  for (std::size_t i = 0; i < Fields.size(); ++i) {
    if (i > 0) joined += ',';
    joined += Fields[i];
  }
  return joined;
}

}  // namespace flanks
