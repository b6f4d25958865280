#include "spec/scales.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <unordered_set>
#include <utility>

#include "base/parse_integer.h"
#include "base/text.h"
#include "run/work_files.h"
#include "spec/given_value.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"
#include "spec/model_grammar.h"

namespace flanks {
namespace {

// A category line counts when one of its fields 2 to 7 holds something.
constexpr int kFirstCountingField = 2;
constexpr int kLastCountingField = 7;

// Within the texts of a record code 7 ends an item, code 8 a part of an item.
constexpr char kItemEnd = '\x07';
constexpr char kPartEnd = '\x08';
constexpr int kRecordTexts = 6;  // each followed by its own code, 1 to 6

// The part of `text` before the next `mark`, which is taken away with it.
std::string_view TakeUntil(std::string_view& text, char mark) {
  const std::size_t end = std::min(text.find(mark), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

template <class Number>
std::string NumberRecord(Number value) {
  std::array<char, 32> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return std::string(digits.data(), written.ptr);
}

template <class Number>
Number NumberFromRecord(std::string_view text) {
  Number value{};
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string CategoryRecord(const ScaleCategory& category) {
  std::string record = NumberRecord(category.number) + kPartEnd + category.label + kPartEnd;
  if (category.hasAnchorValue) record += NumberRecord(category.anchor);
  return record + kPartEnd + category.flag + kPartEnd + kItemEnd;
}

ScaleCategory CategoryFromRecord(std::string_view record) {
  ScaleCategory category;
  category.number = NumberFromRecord<int>(TakeUntil(record, kPartEnd));
  category.label = TakeUntil(record, kPartEnd);
  const std::string_view anchor = TakeUntil(record, kPartEnd);
  category.hasAnchorValue = !anchor.empty();
  category.anchor = NumberFromRecord<float>(anchor);
  category.flag = TakeUntil(record, kPartEnd).front();
  return category;
}

// The number at both ends of an item such as "2-4", or a range that is none.
struct JoinedNumbers {
  bool joined = false;  // two texts with "-" between
  bool numeric = false;
  double low = 0.0, high = 0.0;
  std::string text;
};

bool IsNumber(std::string_view text, double& value) {
  const NumericPrefix number = ReadNumericPrefix(text);
  value = number.value;
  return number.length > 0 && number.length == text.size();
}

// A "-" at the start or the end of the text is a sign or a letter of a code, and joins nothing.
JoinedNumbers ReadJoinedNumbers(std::string_view text) {
  const std::size_t mark = text.find('-', 1);
  if (mark == std::string_view::npos || mark + 1 == text.size()) return {};
  std::string_view from = Trim(text.substr(0, mark));
  std::string_view to = Trim(text.substr(mark + 1));
  JoinedNumbers result;
  result.joined = true;
  result.numeric = IsNumber(from, result.low) && IsNumber(to, result.high);
  if (result.high < result.low) {
    std::swap(from, to);
    std::swap(result.low, result.high);
  }
  result.text = std::string(from) + "-" + std::string(to);
  return result;
}

// A definition while its lines are read.
struct DefinitionReader {
  ScaleDefinition scale;
  int categoryLimit = kLargestCategoryMaximum;
  std::array<bool, kLargestCategoryMaximum + 1> categorySeen{};
  std::unordered_set<std::string> recodeTexts;  // of all categories: the first one keeps a text
};

void ReadHead(SpecContext& context, DefinitionReader& reader) {
  ReadState& reading = context.reading;
  ScaleDefinition& scale = reader.scale;
  const std::string_view typeText = FieldAt(reading, 2);
  const ScaleTypeText type =
      ParseScaleType(typeText, kDefaultCategoryMaximum, kLargestCategoryMaximum);
  if (type.fault != Fault::none) return SetSpecificationFault(reading, type.fault);
  scale.name = FieldAt(reading, 1);
  scale.type = UpperCase(typeText);
  scale.specific = UpperCase(FieldAt(reading, 3)).starts_with('S');
  scale.keep = UpperCase(FieldAt(reading, 4)).starts_with('K');
  scale.tail = FieldAt(reading, 6);
  if (type.type != ScaleType::missing) reader.categoryLimit = type.maximum;
}

void AddRecodes(ReadState& reading, DefinitionReader& reader, const std::string& category,
                std::string_view list) {
  FieldCursor cursor(list, '+');
  std::string_view text;
  while (cursor.Next(text)) {
    if (text.empty()) continue;
    RecodeText recode = ParseRecodeItem(text);
    if (recode.fault != Fault::none) return SetSpecificationFault(reading, recode.fault);
    if (!reader.recodeTexts.insert(recode.item.text).second) continue;
    recode.item.category = category;
    reader.scale.recodes.push_back(std::move(recode.item));
  }
}

bool LineCounts(const ReadState& reading) {
  for (int field = kFirstCountingField; field <= kLastCountingField; ++field)
    if (!FieldAt(reading, field).empty()) return true;
  return false;
}

void ReadCategoryLine(SpecContext& context, DefinitionReader& reader) {
  ReadState& reading = context.reading;
  const std::string first(FieldAt(reading, 1));
  const bool onlyRecodes = first.find_first_of("-_") != std::string::npos;
  WholeNumber number;
  // Kept: a first field that is no number stands for category 0 (docs/quirks.md).
  if (!onlyRecodes) number = ParseInteger(first, reader.categoryLimit);
  if (number.fault == NumberFault::tooLarge || number.fault == NumberFault::notWhole)
    return SetSpecificationFault(reading, Fault::invalidCategory);
  if (!LineCounts(reading)) return;
  if (!onlyRecodes) {
    bool& seen = reader.categorySeen[std::size_t(number.value)];
    if (seen) return SetSpecificationFault(reading, Fault::duplicateCategory);
    seen = true;
  }
  ScaleCategory category;
  category.number = onlyRecodes ? kRecodingLine : number.value;
  category.label = FieldAt(reading, 2);
  const GivenValue anchor = EvaluateGiven(context.console, FieldAt(reading, 3));
  category.anchor = anchor.value;
  category.hasAnchorValue = anchor.given;
  const std::string_view flag = FieldAt(reading, 4);
  if (!flag.empty()) category.flag = UpperCase(flag.front());
  reader.scale.categories.push_back(category);
  AddRecodes(reading, reader, onlyRecodes ? first : std::to_string(number.value),
             FieldAt(reading, 5));
}

}  // namespace

RecodeText ParseRecodeItem(std::string_view text) {
  RecodeText result;
  text = Trim(text);
  result.item.text = text;
  double value = 0.0;
  if (IsNumber(text, value)) return result;
  const JoinedNumbers range = ReadJoinedNumbers(text);
  if (!range.joined) return result;
  if (!range.numeric) {
    result.fault = Fault::recodeRange;
    return result;
  }
  result.item.text = range.text;
  result.item.isRange = true;
  result.item.low = range.low;
  result.item.high = range.high;
  return result;
}

std::string ScaleRecord(const ScaleDefinition& scale) {
  std::string recodes;
  for (const RecodeItem& item : scale.recodes)
    recodes += item.category + kPartEnd + item.text + kItemEnd;
  std::string categories;
  for (const ScaleCategory& category : scale.categories) categories += CategoryRecord(category);
  const std::string kinds =
      std::string(scale.specific ? "S" : "G") + "," + (scale.keep ? "K" : "O");
  const std::array<std::string, kRecordTexts> texts = {scale.name, scale.type, kinds,
                                                       scale.tail, recodes,    categories};
  std::string record;
  char code = 0;
  for (const std::string& text : texts) record += text + ++code;
  return record;
}

ScaleDefinition ScaleFromRecord(std::string_view record) {
  ScaleDefinition scale;
  scale.name = TakeUntil(record, 1);
  scale.type = TakeUntil(record, 2);
  const std::string_view kinds = TakeUntil(record, 3);
  scale.specific = kinds.starts_with('S');
  scale.keep = kinds.ends_with('K');
  scale.tail = TakeUntil(record, 4);
  std::string_view recodes = TakeUntil(record, 5);
  while (!recodes.empty()) {
    std::string_view item = TakeUntil(recodes, kItemEnd);
    const std::string category(TakeUntil(item, kPartEnd));
    scale.recodes.push_back(ParseRecodeItem(item).item);
    scale.recodes.back().category = category;
  }
  std::string_view categories = TakeUntil(record, 6);
  while (!categories.empty())
    scale.categories.push_back(CategoryFromRecord(TakeUntil(categories, kItemEnd)));
  return scale;
}

void ReadRatingScale(SpecContext& context) {
  ReadState& reading = context.reading;
  if (context.state.ReadingExtras) return SetSpecificationFault(reading, Fault::extraInvalid);
  if (context.design.FlankCount == 0) return SetSpecificationFault(reading, Fault::flanksFirst);
  ForgetSeen(context.state, keyword_code::kRatingScale);  // it may come any number of times
  TextWorkFile& file = OpenListFile(context, context.work.scaleFile, "scales", "ReadRatingScale");
  ++context.design.ScaleLast;
  DefinitionReader reader;
  ReadHead(context, reader);
  while (!reading.faulty() && NextListLine(context)) ReadCategoryLine(context, reader);
  if (!reading.faulty()) file.WriteLine(ScaleRecord(reader.scale));
}

void LoadScales(Run& run) {
  Analysis& analysis = run.analysis;
  if (analysis.design.FlankCount == 0 || !analysis.work.scaleFile) return;
  TextWorkFile& file = *analysis.work.scaleFile;
  analysis.design.scales.clear();
  file.Rewind();
  std::string_view record;
  while (file.ReadLine(record)) analysis.design.scales.push(ScaleFromRecord(record));
}

}  // namespace flanks
