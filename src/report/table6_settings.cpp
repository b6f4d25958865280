#include "report/table6_settings.h"

#include <algorithm>
#include <cmath>

#include "base/expression.h"
#include "base/text.h"

namespace flanks {
namespace {

// A Flank of more elements beyond its first is shown as asterisks, where nothing is said.
constexpr std::int32_t kMostLabels = 20;
constexpr int kWidestColumn = 1000;
constexpr std::size_t kYardstickNumbers = 4;

bool IsDummy(const FlankTable& flanks, FlankNo flank) {
  return Trim(flanks.FlankOptions[flank]).starts_with('D');
}

// Every form of Flank and scale columns in the letters of an item, without its number.
struct ItemWord {
  std::string number;  // digits in front; none: every Flank
  std::string letters;
};

ItemWord SplitItem(std::string_view item) {
  std::string word;
  for (const char c : UpperCase(item))
    if (c != '(' && c != ')' && c != ' ') word += c;
  const std::size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
  return {word.substr(0, digits), word.substr(digits)};
}

bool IsScaleWord(const ItemWord& word) {
  return word.number.empty() && (word.letters.starts_with('S') || word.letters.starts_with("#S"));
}

RulerForm FormOf(std::string_view letters) {
  switch (letters.empty() ? 'A' : letters[0]) {
    case 'N':
      return RulerForm::numbers;
    case '*':
      return RulerForm::asterisks;
    case 'C':
      return RulerForm::counts;
    default:
      return RulerForm::labels;
  }
}

// Whether the letters of an item are nothing but a form of Flank columns.
bool IsForm(std::string_view letters) {
  return letters.empty() || letters == "A" || letters == "N" || letters == "*" || letters == "C";
}

void AddScales(RulerList& list, std::string_view letters) {
  if (!list.scales) list.scalesAt = list.items.size();
  list.scales = true;
  list.legends = list.legends || letters.find('L') != std::string_view::npos;
  list.everyNumber = list.everyNumber || letters.find('#') != std::string_view::npos;
}

// The Flank of a number, Flank 0 when there is none.
FlankNo FlankOfNumber(const std::string& digits, std::int32_t flankCount) {
  std::int64_t number = 0;
  for (const char c : digits) {
    number = number * 10 + (c - '0');
    if (number > flankCount) return FlankNo(0);
  }
  return FlankNo(static_cast<std::int32_t>(number));
}

RulerList AutomaticList(const FlankTable& flanks, const Column<FlankNo, RulerFlank>& shown) {
  RulerList list;
  for (const FlankNo flank : Downward(shown)) {
    if (IsDummy(flanks, flank) || shown[flank].shown == 0) continue;
    if (shown[flank].allTheSame()) {
      list.omitted.push_back(flank.number());
      continue;
    }
    const bool large = flanks.FlankElementCount[flank] - 1 > kMostLabels;
    list.items.push_back({flank, large ? RulerForm::asterisks : RulerForm::labels});
  }
  // Built from the last Flank to the first, each in front of those that stand.
  std::reverse(list.items.begin(), list.items.end());
  std::reverse(list.omitted.begin(), list.omitted.end());
  AddScales(list, "S");
  return list;
}

void AddItem(RulerList& list, const ItemWord& word, const FlankTable& flanks,
             const Column<FlankNo, RulerFlank>& shown) {
  if (IsScaleWord(word)) return AddScales(list, word.letters);
  if (word.letters.starts_with('-')) {
    list.notThere.push_back(word.letters);
    return;
  }
  const RulerForm form = FormOf(word.letters);
  if (!IsForm(word.letters)) list.misread.push_back(word.number + word.letters);
  if (word.number.empty()) {
    for (const FlankNo flank : Upward(shown))
      if (!IsDummy(flanks, flank) && shown[flank].shown > 0) list.items.push_back({flank, form});
    return;
  }
  const FlankNo flank = FlankOfNumber(word.number, shown.rows());
  if (!shown.has(flank)) {
    list.notThere.push_back(word.number + word.letters);
  } else if (shown[flank].shown > 0) {
    list.items.push_back({flank, form});
  }
}

double NumberOf(std::string_view text) {
  const ExpressionValue read = EvaluateExpression(text);
  return read.fault == ExpressionFault::none ? read.value : 0.0;
}

}  // namespace

bool AreRulersOff(std::string_view vertical) {
  return UpperCase(Trim(vertical)).starts_with('N');
}

RulerList BuildRulerList(std::string_view vertical, const FlankTable& flanks,
                         const Column<FlankNo, RulerFlank>& shown) {
  const std::string_view text = Trim(vertical);
  if (text.empty() || UpperCase(text[0]) == 'Y') return AutomaticList(flanks, shown);
  RulerList list;
  for (const std::string_view item : CommaFields(text)) {
    const ItemWord word = SplitItem(item);
    if (!word.number.empty() || !word.letters.empty()) AddItem(list, word, flanks, shown);
  }
  return list;
}

std::string RulerListText(const RulerList& list) {
  const std::string scales =
      std::string(list.everyNumber ? "#" : "") + "S" + (list.legends ? "L" : "");
  std::string text;
  const auto add = [&text](const std::string& item) { text += (text.empty() ? "" : ",") + item; };
  for (std::size_t at = 0; at <= list.items.size(); ++at) {
    if (list.scales && at == list.scalesAt) add(scales);
    if (at == list.items.size()) break;
    const RulerItem& item = list.items[at];
    add(std::to_string(item.flank.number()) + static_cast<char>(item.form));
  }
  return text;
}

Yardstick ReadYardstick(std::string_view text) {
  Yardstick yardstick;
  double numbers[kYardstickNumbers] = {};
  std::size_t place = 0;
  for (const std::string_view field : CommaFields(text)) {
    const std::string word = UpperCase(Trim(field));
    // A word may come early: whoever gives no range does not count commas.
    const bool isWord = place >= kYardstickNumbers || (!word.empty() && IsLetter(word[0]));
    if (isWord && word.find('M') != std::string::npos) yardstick.extremesAtMeasures = true;
    if (!isWord) numbers[place] = NumberOf(word);
    ++place;
  }
  yardstick.columns =
      static_cast<int>(std::clamp(std::trunc(numbers[0]), 0.0, 1.0 * kWidestColumn));
  yardstick.lines = numbers[1];
  yardstick.low = numbers[2];
  yardstick.high = numbers[3];
  return yardstick;
}

}  // namespace flanks
