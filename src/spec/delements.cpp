#include "spec/delements.h"

#include <bit>
#include <charconv>
#include <cstddef>
#include <utility>

#include "base/text.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

constexpr std::string_view kDefaultDelements = "N";

// One item of the list: "2LNE3W4".
struct DelementsItem {
  bool valid = false;
  bool hasFlank = false;
  std::int64_t flank = 0;
  std::string letters;  // "N.", "L.", "NL", "LN"
  std::int32_t start = 0;
  std::int32_t width = 0;
};

// Takes the digits at the start of `text`; false when there are none, or too many.
template <class Number>
bool TakeDigits(std::string_view& text, Number& value) {
  if (text.empty() || !IsDigit(text.front())) return false;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
  return read.ec == std::errc{};
}

std::string TakeLetters(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_not_of("NL"), text.size());
  const std::string_view letters = text.substr(0, end);
  text.remove_prefix(end);
  if (letters.empty()) return "N.";
  if (letters == "N" || letters == "L") return std::string(letters) + ".";
  if (letters == "NL" || letters == "LN") return std::string(letters);
  return {};
}

DelementsItem ReadItem(std::string_view text) {
  DelementsItem item;
  if (!text.empty() && IsDigit(text.front())) {
    item.hasFlank = true;
    // A number beyond all limits is as much out of range as one beyond the Flanks.
    if (!TakeDigits(text, item.flank)) item.flank = 0;
  }
  item.letters = TakeLetters(text);
  while (!text.empty() && (text.front() == 'E' || text.front() == 'W')) {
    std::int32_t& number = text.front() == 'E' ? item.start : item.width;
    text.remove_prefix(1);
    if (!TakeDigits(text, number)) return item;
  }
  item.valid = text.empty() && !item.letters.empty();
  return item;
}

void SetItem(FlankTable& flanks, FlankNo flank, const DelementsItem& item) {
  flanks.FlankDelements[flank] = item.letters;
  flanks.identifierStart[flank] = item.start;
  flanks.identifierWidth[flank] = item.width;
}

// What a label is found by, character by character.
char KeyCharacter(char c) {
  return c == '_' ? '-' : c;
}

std::string_view KeyPart(std::string_view label) {
  return TrimRight(label.substr(0, label.find(':')));
}

constexpr std::uint64_t kHashStart = 14695981039346656037u;  // FNV-1a
constexpr std::uint64_t kHashFactor = 1099511628211u;

std::uint64_t HashStep(std::uint64_t hash, char c) {
  return (hash ^ static_cast<unsigned char>(c)) * kHashFactor;
}

std::size_t PlaceOf(std::uint64_t hash, std::size_t places) {
  return static_cast<std::size_t>(hash ^ (hash >> 32)) & (places - 1);
}

std::size_t PlaceOfText(std::string_view text, std::size_t places) {
  std::uint64_t hash = kHashStart;
  for (const char c : text) hash = HashStep(hash, c);
  return PlaceOf(hash, places);
}

std::size_t PlaceOfKey(std::string_view key, std::size_t places) {
  std::uint64_t hash = kHashStart;
  for (const char c : key) hash = HashStep(hash, KeyCharacter(c));
  return PlaceOf(hash, places);
}

bool IsKeyOf(std::string_view label, std::string_view text) {
  const std::string_view key = KeyPart(label);
  if (key.size() != text.size()) return false;
  for (std::size_t i = 0; i < key.size(); ++i)
    if (KeyCharacter(key[i]) != text[i]) return false;
  return true;
}

}  // namespace

void SetDelements(SpecContext& context) {
  std::string& value = context.settings.Delements;
  value.clear();
  for (int field = 1; field <= context.reading.FieldCount; ++field)
    value += (field > 1 ? "," : "") + UpperCase(FieldAt(context.reading, field));
  if (value.empty()) value = kDefaultDelements;
}

void PrepareDelements(Run& run) {
  Design& design = run.analysis.design;
  FlankTable& flanks = design.flanks;
  flanks.FlankDelements.assign(design.FlankCount, {});
  flanks.identifierStart.assign(design.FlankCount, 0);
  flanks.identifierWidth.assign(design.FlankCount, 0);
  const std::string& value = run.analysis.settings.Delements;
  for (const std::string_view text : CommaFields(value)) {
    if (text.empty()) continue;
    const DelementsItem item = ReadItem(text);
    if (!item.valid) {
      run.console.WarnLine(std::string(message::kDelementsItem) + "\"" +
                           std::string(ShownPart(text)) + "\" in Delements=\"" +
                           std::string(ShownPart(value)) + "\" ignored, not N or L");
      continue;
    }
    if (item.hasFlank && (item.flank < 1 || item.flank > design.FlankCount)) {
      FaultParticulars particulars;
      particulars.text = "Delements=" + std::string(ShownPart(text));
      particulars.name = kSpecificationName;
      particulars.number = design.FlankCount;
      particulars.lineNumber = kNoLineNumber;
      return SetFault(run.analysis.reading, Fault::flankOutOfRange, std::move(particulars));
    }
    if (item.hasFlank) {
      SetItem(flanks, FlankNo(static_cast<std::int32_t>(item.flank)), item);
      continue;
    }
    for (const FlankNo flank : Upward(flanks.FlankDelements))
      if (flanks.FlankDelements[flank].empty()) SetItem(flanks, flank, item);
  }
  for (std::string& letters : flanks.FlankDelements)
    if (letters.empty()) letters = "N.";
}

std::string_view CutIdentifier(const FlankTable& flanks, FlankNo flank, std::string_view field) {
  const std::int32_t start = flanks.identifierStart[flank];
  const std::int32_t width = flanks.identifierWidth[flank];
  if (start == 0 && width == 0) return field;
  const std::size_t column = start == 0 ? 1 : static_cast<std::size_t>(start);
  const std::size_t length = width == 0 ? field.size() : static_cast<std::size_t>(width);
  return Trim(Mid(field, column, length));
}

LabelFinder::LabelFinder(const FlankTable& flanks, const ElementTable& elements, Console& console)
    : flanks_(flanks), elements_(elements), console_(console), index_(flanks.FlankLow.rows()) {}

// A table of at least twice as many places as labels; a label whose place is taken goes to the next
// free one.  Slots are put in from the lowest number on, so the first of equal labels is found.
void LabelFinder::MakeIndex(FlankNo flank) {
  console_.ShowLine(JoinNumber("Sorting labels for flank", flank.number()));
  std::vector<ElementSlot>& places = index_[flank];
  const auto count = static_cast<std::size_t>(flanks_.FlankElementCount[flank]);
  places.assign(std::bit_ceil(2 * count + 1), ElementSlot());
  const auto [low, high] = SlotsOf(flanks_, flank);
  for (const ElementSlot slot : Upward(low, high)) {
    const std::string_view key = KeyPart(elements_.ElementLabel[slot]);
    if (key.empty()) continue;
    std::size_t place = PlaceOfKey(key, places.size());
    while (places[place].number() > 0) place = (place + 1) & (places.size() - 1);
    places[place] = slot;
  }
}

ElementSlot LabelFinder::FindElementByLabel(std::string_view text, FlankNo flank) {
  if (text.empty()) return ElementSlot();
  if (index_[flank].empty()) MakeIndex(flank);
  const std::vector<ElementSlot>& places = index_[flank];
  std::size_t place = PlaceOfText(text, places.size());
  while (places[place].number() > 0) {
    if (IsKeyOf(elements_.ElementLabel[places[place]], text)) return places[place];
    place = (place + 1) & (places.size() - 1);
  }
  return ElementSlot();
}

}  // namespace flanks
