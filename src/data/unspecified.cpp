#include "data/unspecified.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "base/parse_integer.h"

namespace flanks {
namespace {

constexpr std::size_t kFirstPlaces = 256;  // a power of two
constexpr std::int64_t kLowestGiven = 1;
constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15ULL;

}  // namespace

UnspecifiedElements::UnspecifiedElements(Limits limits)
    : limits_(limits), places_(kFirstPlaces, -1) {}

void UnspecifiedElements::AddNumber(FlankNo flank, std::int64_t number, std::string_view text) {
  Add({flank, number, {}}, text);
}

void UnspecifiedElements::AddLabel(FlankNo flank, std::string_view text) {
  Add({flank, kNoNumber, text}, text);
}

void UnspecifiedElements::Add(const Key& key, std::string_view text) {
  const std::size_t place = PlaceOf(key);
  if (places_[place] >= 0) return;
  if (list_.size() >= limits_.elements || textBytes_ + text.size() > limits_.textBytes) {
    cut_ = true;
    return;
  }
  textBytes_ += text.size();
  places_[place] = static_cast<std::int32_t>(list_.size());
  list_.push_back({key.flank, key.number, std::string(text)});
  if (list_.size() * 2 > places_.size()) Rehash();
}

// Multiplication by an odd constant, then the upper bits are brought down.
std::size_t UnspecifiedElements::HashOf(const Key& key) {
  std::uint64_t hash = static_cast<std::uint64_t>(key.flank.number()) * kOdd;
  hash ^=
      static_cast<std::uint64_t>(key.number == kNoNumber ? std::hash<std::string_view>{}(key.text)
                                                         : static_cast<std::size_t>(key.number));
  hash *= kOdd;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

bool UnspecifiedElements::Is(const UnspecifiedElement& element, const Key& key) {
  return element.flank == key.flank && element.number == key.number &&
         (key.number != kNoNumber || element.text == key.text);
}

// Where the element stands in `places_`, or the free place that it would take.
std::size_t UnspecifiedElements::PlaceOf(const Key& key) const {
  const std::size_t mask = places_.size() - 1;
  std::size_t place = HashOf(key) & mask;
  while (places_[place] >= 0 && !Is(list_[static_cast<std::size_t>(places_[place])], key))
    place = (place + 1) & mask;
  return place;
}

void UnspecifiedElements::Rehash() {
  places_.assign(places_.size() * 2, -1);
  for (std::size_t i = 0; i < list_.size(); ++i) {
    const UnspecifiedElement& element = list_[i];
    places_[PlaceOf({element.flank, element.number, element.text})] = static_cast<std::int32_t>(i);
  }
}

// The first number from `from` on that no element has; behind the largest one the lowest there is.
// There is one: neither `Labels=` nor the list holds so many elements.
std::int64_t UnspecifiedElements::FreeNumber(FlankNo flank, std::int64_t from,
                                             ElementFinder& finder,
                                             std::int64_t nullElement) const {
  for (std::int64_t number = from;; ++number) {
    if (number > kLargestElementNumber) number = kLowestGiven;
    const bool taken = number == nullElement || Has({flank, number, {}}) ||
                       finder.FindElementSlot(static_cast<std::int32_t>(number), flank).found();
    if (!taken) return number;
  }
}

std::vector<UnspecifiedElement> UnspecifiedElements::Take(const FlankTable& flanks,
                                                          ElementFinder& finder,
                                                          std::int64_t nullElement) {
  Column<FlankNo, std::int64_t> next(flanks.FlankHigh.rows());
  for (const FlankNo f : Upward(next)) next[f] = std::int64_t{flanks.FlankHigh[f]} + 1;
  // All numbers are sought before any is given: what is given is no element of the data.
  std::vector<std::int64_t> given;
  for (const UnspecifiedElement& element : list_) {
    if (element.number != kNoNumber) continue;
    std::int64_t& number = next[element.flank];
    number = FreeNumber(element.flank, number, finder, nullElement);
    given.push_back(number++);
  }
  std::size_t label = 0;
  for (UnspecifiedElement& element : list_)
    if (element.number == kNoNumber) element.number = given[label++];
  places_.assign(kFirstPlaces, -1);
  std::sort(list_.begin(), list_.end());
  return std::exchange(list_, {});
}

}  // namespace flanks
