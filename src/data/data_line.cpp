#include "data/data_line.h"

#include <array>
#include <cfloat>
#include <cstdint>

#include "base/single.h"
#include "base/text.h"

namespace flanks {
namespace {

constexpr bool IsQuote(char c) {
  return c == '"' || c == '\'';
}

// What a line holds, found in one look.
enum Mark : unsigned { kComma = 1, kEquals = 2, kTab = 4, kQuote = 8 };

constexpr std::array<std::uint8_t, 256> MakeMarks() {
  std::array<std::uint8_t, 256> marks{};
  marks[','] = kComma;
  marks['='] = kEquals;
  marks['\t'] = kTab;
  marks['"'] = marks['\''] = kQuote;
  return marks;
}
constexpr std::array<std::uint8_t, 256> kMarks = MakeMarks();

unsigned MarksIn(std::string_view line) {
  unsigned marks = 0;
  for (const char c : line) marks |= kMarks[static_cast<unsigned char>(c)];
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

// Splits the text at commas.
bool SplitAtCommas(ItemTaker& taker, const std::string& text) {
  const char* const data = text.data();
  const std::size_t size = text.size();
  for (std::size_t start = 0;; ++start) {
    std::size_t end = start;
    while (end < size && data[end] != ',') ++end;
    std::size_t left = start, right = end;
    while (left < right && data[left] == ' ') ++left;
    while (right > left && data[right - 1] == ' ') --right;
    if (!taker.Take(left, right)) return false;
    if (end == size) return true;
    start = end;
  }
}

// Splits the text at blanks; a text between two quote marks of a kind is one item.
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

SplitRules SplitRulesOf(const Design& design, const Settings& settings) {
  SplitRules rules;
  rules.DataFlankCount = design.DataFlankCount;
  rules.Replication = settings.Replication;
  if (settings.Dvalues.empty()) return rules;
  rules.dvalues.assign(static_cast<std::size_t>(design.DataFlankCount), nullptr);
  for (const DvalueEntry& entry : settings.Dvalues)
    if (entry.position >= 1 && entry.position <= design.DataFlankCount)
      rules.dvalues[static_cast<std::size_t>(entry.position - 1)] = &entry;
  return rules;
}

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
  if (out.text.front() == '*') {
    out.Fields.emplace_back(out.text.data(), 1);
    return Fault::none;
  }
  const unsigned marks = MarksIn(out.text);
  const bool commas = marks & (kComma | kEquals);
  if (marks & kEquals) ReplaceCharacter(out.text, '=', ',');
  if (marks & kTab) ReplaceCharacter(out.text, '\t', commas ? ' ' : ',');
  ItemTaker taker(rules, out);
  bool room = true;
  if (commas || marks & kTab) {
    if (marks & kQuote)
      for (char& c : out.text)
        if (IsQuote(c)) c = ' ';
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
