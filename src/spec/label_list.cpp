#include "spec/label_list.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "base/text.h"

namespace flanks {
namespace {

// Quotes, apostrophes and blanks around the last field of a line.
std::string_view WithoutQuotes(std::string_view field) {
  constexpr std::string_view kQuotes = "\"' ";
  const std::size_t begin = field.find_first_not_of(kQuotes);
  if (begin == std::string_view::npos) return {};
  return field.substr(begin, field.find_last_not_of(kQuotes) + 1 - begin);
}

// Calls visit(flank, from, to) for each run of numbers that have slots, in order: what an earlier
// range held is left out, and so is the null element.
template <class Visit>
void ForEachRun(const std::vector<NumberRange>& ranges, std::int64_t nullElement, Visit visit) {
  FlankNo flank;
  std::int32_t next = 0;  // the lowest number of the Flank that no range has held yet
  for (const NumberRange& range : ranges) {
    if (range.flank != flank) next = 0;
    flank = range.flank;
    std::int32_t from = std::max(range.low, next);
    next = std::max(range.high + 1, next);
    const auto null = static_cast<std::int32_t>(nullElement);
    if (from <= null && null <= range.high) {
      if (from < null) visit(flank, from, null - 1);
      from = null + 1;
    }
    if (from <= range.high) visit(flank, from, range.high);
  }
}

}  // namespace

std::string LabelRecord(std::string_view text, std::int64_t lineNumber) {
  return std::string(text) + "\t" + std::to_string(lineNumber);
}

LabelLines::LabelLines(TextWorkFile& file) : file_(file) {
  file_.Rewind();
}

bool LabelLines::Next(LabelLine& line) {
  std::string_view record;
  while (file_.ReadLine(record)) {
    const std::size_t tab = record.rfind('\t');
    line.text = record.substr(0, tab);
    if (line.text.empty()) continue;
    if (line.text.front() == '*') {
      flankExpected_ = true;
      continue;
    }
    const std::string_view number = record.substr(tab + 1);
    std::from_chars(number.data(), number.data() + number.size(), line.lineNumber);
    line.beginsFlank = flankExpected_;
    flankExpected_ = false;
    Split(line);
    return true;
  }
  return false;
}

void LabelLines::Split(LabelLine& line) {
  separated_ = line.text;
  ReplaceCharacter(separated_, '=', ',');
  ReplaceCharacter(separated_, '\t', ',');
  line.fields.fill({});
  FieldCursor cursor(separated_);
  std::size_t count = 0;
  while (count < kLabelLineFields && cursor.Next(line.fields[count + 1])) ++count;
  std::string_view more;
  if (!cursor.Next(more)) line.fields[count] = WithoutQuotes(line.fields[count]);
}

RangeOrder OrderOf(const std::vector<NumberRange>& ranges) {
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    const NumberRange& former = ranges[i - 1];
    if (ranges[i].flank < former.flank) return RangeOrder::flanksOutOfOrder;
    if (ranges[i].flank == former.flank && ranges[i].low < former.low)
      return RangeOrder::numbersOutOfOrder;
  }
  return RangeOrder::inOrder;
}

void SortRanges(std::vector<NumberRange>& ranges) {
  std::sort(ranges.begin(), ranges.end(), [](const NumberRange& a, const NumberRange& b) {
    return a.flank != b.flank ? a.flank < b.flank : a.low < b.low;
  });
}

void GiveSlots(const std::vector<NumberRange>& ranges, std::int64_t nullElement, Design& design) {
  FlankTable& flanks = design.flanks;
  flanks.FlankLow.assign(design.FlankCount, 0);
  flanks.FlankHigh.assign(design.FlankCount, 0);
  flanks.FlankElementCount.assign(design.FlankCount, 0);
  flanks.FlankFirstSlot.assign(design.FlankCount, ElementSlot());
  std::int32_t total = 0;
  ForEachRun(ranges, nullElement,
             [&](FlankNo, std::int32_t from, std::int32_t to) { total += to - from + 1; });
  design.ElementTotal = total;
  ElementTable& elements = design.elements;
  elements.ElementNumber.assign(total, 0);
  elements.ElementFlank.assign(total, FlankNo());
  ElementSlot slot(1);
  ForEachRun(ranges, nullElement, [&](FlankNo flank, std::int32_t from, std::int32_t to) {
    if (flanks.FlankElementCount[flank] == 0) {
      flanks.FlankLow[flank] = from;
      flanks.FlankFirstSlot[flank] = slot;
    }
    flanks.FlankHigh[flank] = to;
    flanks.FlankElementCount[flank] += to - from + 1;
    for (std::int32_t number = from; number <= to; ++number, ++slot) {
      elements.ElementNumber[slot] = number;
      elements.ElementFlank[slot] = flank;
    }
  });
}

}  // namespace flanks
