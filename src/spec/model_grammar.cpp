#include "spec/model_grammar.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "base/text.h"
#include "spec/element_range.h"

namespace flanks {
namespace {

constexpr std::int32_t kAnyElement = -1;
constexpr std::int32_t kIgnoredPosition = -2;
constexpr std::string_view kShownMarks = "@#?$";  // in the order in which they are shown

// Digits alone; what is too long for an int is as invalid as what is above every limit.
struct Digits {
  int value = 0;
  bool valid = false;
};
Digits ReadDigits(std::string_view text) {
  Digits digits;
  if (text.empty() || !IsDigit(text.front())) return digits;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, digits.value);
  if (read.ec == std::errc::result_out_of_range) digits.value = std::numeric_limits<int>::max();
  digits.valid = read.ptr == end;
  return digits;
}

ScaleTypeText InvalidScaleType() {
  return {.fault = Fault::invalidScaleType};
}

// R and B with what follows the letter.
ScaleTypeText CountedType(ScaleType type, std::string_view number, int maximumOfNone, int limit) {
  int maximum = 0;
  if (!number.empty()) {
    const Digits digits = ReadDigits(number);
    if (!digits.valid) return InvalidScaleType();
    maximum = digits.value;
  }
  if (maximum == 0) maximum = maximumOfNone;
  if (maximum < 1 || maximum > limit) return InvalidScaleType();
  return {.type = type, .maximum = maximum};
}

bool Takes(std::string& text, char mark) {
  return std::erase(text, mark) > 0;
}

// A range of elements, or with no text any element.
Fault SetElements(PositionReference& reference, std::string& numbers) {
  if (numbers.empty()) return Fault::none;
  const ElementRange range = ParseElementRange(numbers);
  if (range.fault != Fault::none) return range.fault;
  reference.ModelLow = range.low;
  reference.ModelHigh = range.high;
  numbers = std::to_string(range.low);
  if (range.isRange) numbers += "-" + std::to_string(range.high);
  return Fault::none;
}

}  // namespace

ScaleTypeText ParseScaleType(std::string_view text, int defaultMaximum, int limit) {
  std::string type = UpperCase(text);
  std::erase(type, ' ');
  const bool keep = Takes(type, 'K');
  ScaleTypeText result = InvalidScaleType();
  if (type == "D") result = {.type = ScaleType::binomial, .maximum = 1};
  if (type == "P") result = {.type = ScaleType::poisson, .maximum = limit};
  if (type == "M") result = {.type = ScaleType::missing, .maximum = -1};
  const std::string_view number =
      std::string_view(type).substr(std::min<std::size_t>(1, type.size()));
  if (type.starts_with('R')) result = CountedType(ScaleType::rating, number, defaultMaximum, limit);
  if (type.starts_with('B')) result = CountedType(ScaleType::binomial, number, 0, limit);
  result.keep = keep;
  return result;
}

ElementReference ParseElementReference(std::string_view text) {
  ElementReference result;
  PositionReference& reference = result.reference;
  std::string rest = UpperCase(text);
  reference.bias = Takes(rest, 'B');
  const std::string biasMark = reference.bias ? "B" : "";
  rest = std::string(Trim(rest));
  if (rest.find('X') != std::string::npos) {
    reference.ignored = true;
    reference.ModelLow = reference.ModelHigh = kIgnoredPosition;
    result.normalised = biasMark + "X";
    return result;
  }
  const bool reversed = rest.starts_with('-');
  if (reversed) rest = std::string(TrimLeft(std::string_view(rest).substr(1)));
  if (rest.empty()) {
    reference.empty = true;
    result.normalised = biasMark;
    return result;
  }
  reference.reversed = reversed;
  // Kept: a wildcard decides, and the other marks are only shown (docs/quirks.md).
  const bool any = rest.find_first_of("?$") != std::string::npos;
  reference.dummy = !any && rest.find('@') != std::string::npos;
  reference.structured = !any && !reference.dummy && rest.find('#') != std::string::npos;
  result.normalised = biasMark + (reversed ? "-" : "");
  for (const char mark : kShownMarks)
    if (Takes(rest, mark)) result.normalised += mark;
  rest = std::string(Trim(rest));
  reference.ModelLow = reference.ModelHigh = kAnyElement;
  if (!any) result.fault = SetElements(reference, rest);
  result.normalised += rest;
  return result;
}

}  // namespace flanks
