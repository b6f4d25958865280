#include "report/table4_sort.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <numeric>

#include "base/text.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr int kShownWidth = 5;
constexpr int kShownDecimals = 1;

// The letters of each figure, as capitals.
struct FigureLetters {
  std::string_view letters;
  float (*figure)(const KeptResponse&);
};
constexpr FigureLetters kFigures[] = {
    {"SZFT", [](const KeptResponse& r) { return r.StRes; }},
    {"U", [](const KeptResponse& r) { return std::abs(r.StRes); }},
    {"RY", [](const KeptResponse& r) { return r.residual; }},
    {"EP", [](const KeptResponse& r) { return r.expected; }},
    {"XV", [](const KeptResponse& r) { return r.MeasureSum; }},
    {"COD", [](const KeptResponse& r) { return static_cast<float>(r.category); }},
};

const FigureLetters* FigureOf(char letter) {
  const char capital = UpperCase(letter);
  for (const FigureLetters& row : kFigures)
    if (row.letters.find(capital) != std::string_view::npos) return &row;
  return nullptr;
}

// The model position that a digit names, 0 for none.
int PositionOf(char digit, int positions) {
  if (!IsDigit(digit)) return 0;
  const int position = digit - '0';
  return position <= positions ? position : 0;
}

bool Counts(char c, int positions) {
  return FigureOf(c) != nullptr || PositionOf(c, positions) > 0;
}

// A figure as it stands on paper.
double AsShown(float value) {
  const std::string text = FixedField(value, kShownWidth, kShownDecimals);
  const std::size_t from = text.find_first_not_of(' ');
  double shown = 0.0;
  std::from_chars(text.data() + from, text.data() + text.size(), shown);
  return shown;
}

using SortKey = std::vector<double>;  // by row; ascending

SortKey FigureKey(const UnexpectedResponses& kept, const FigureLetters& figure, bool descends) {
  SortKey key;
  key.reserve(kept.rows.size());
  for (const KeptResponse& row : kept.rows) {
    const double shown = AsShown(figure.figure(row));
    key.push_back(descends ? -shown : shown);
  }
  return key;
}

// A row whose position names no element comes last.
SortKey PositionKey(const UnexpectedResponses& kept, const ElementTable& elements, int position) {
  SortKey key;
  key.reserve(kept.rows.size());
  for (std::size_t row = 0; row < kept.rows.size(); ++row) {
    const ElementSlot slot = kept.ElementsOf(row)[static_cast<std::size_t>(position - 1)];
    key.push_back(slot == ElementSlot(0) ? std::numeric_limits<double>::infinity()
                                         : elements.ElementNumber[slot]);
  }
  return key;
}

// The keys of an order.  One that is named again decides nothing more.
std::vector<SortKey> KeysOf(const UnexpectedResponses& kept, const ElementTable& elements,
                            std::string_view order) {
  std::vector<SortKey> keys;
  std::array<bool, std::size(kFigures)> figureNamed{};
  std::vector<bool> positionNamed(static_cast<std::size_t>(kept.width) + 1);
  bool anyPosition = false;
  for (const char c : order) {
    if (const FigureLetters* const figure = FigureOf(c)) {
      bool& named = figureNamed[static_cast<std::size_t>(figure - kFigures)];
      if (!named) keys.push_back(FigureKey(kept, *figure, c >= 'a'));
      named = true;
    }
    const int position = PositionOf(c, kept.width);
    if (position == 0 || positionNamed[static_cast<std::size_t>(position)]) continue;
    keys.push_back(PositionKey(kept, elements, position));
    positionNamed[static_cast<std::size_t>(position)] = anyPosition = true;
  }
  for (int position = 1; position <= kept.width && anyPosition; ++position)
    if (!positionNamed[static_cast<std::size_t>(position)])
      keys.push_back(PositionKey(kept, elements, position));
  return keys;
}

bool EndsList(std::string_view order) {
  return order.find_first_of("Nn") != std::string_view::npos;
}

// Text between parentheses, where an order has lost its own.
void AddBareOrder(std::string_view text, std::vector<std::string>& orders) {
  if (text.find_first_not_of(", ") != std::string_view::npos) orders.emplace_back(text);
}

}  // namespace

std::vector<std::string> ReadUsort(std::string_view usort) {
  std::vector<std::string> orders;
  std::size_t at = 0;
  if (usort.find('(') == std::string_view::npos) orders.emplace_back(usort);
  for (std::size_t open = usort.find('('); open != std::string_view::npos;
       open = usort.find('(', at)) {
    AddBareOrder(usort.substr(at, open - at), orders);
    const std::size_t close = std::min(usort.find(')', open), usort.size());
    orders.emplace_back(usort.substr(open + 1, close - open - 1));
    at = std::min(close + 1, usort.size());
  }
  if (at > 0) AddBareOrder(usort.substr(at), orders);
  orders.erase(std::find_if(orders.begin(), orders.end(), EndsList), orders.end());
  return orders;
}

std::string OrderText(std::string_view order, int positions) {
  std::string text;
  for (const char c : order)
    if (Counts(c, positions)) text += std::string(1, c) + "..";
  return text.empty() ? "order in data" : text;
}

std::vector<std::uint32_t> SortResponses(const UnexpectedResponses& kept,
                                         const ElementTable& elements, std::string_view order) {
  std::vector<std::uint32_t> rows(kept.rows.size());
  std::iota(rows.begin(), rows.end(), 0u);
  const std::vector<SortKey> keys = KeysOf(kept, elements, order);
  std::sort(rows.begin(), rows.end(), [&](std::uint32_t a, std::uint32_t b) {
    for (const SortKey& key : keys)
      if (key[a] != key[b]) return key[a] < key[b];
    return kept.rows[a].sequence < kept.rows[b].sequence;
  });
  return rows;
}

}  // namespace flanks
