#include "report/table14_sort.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/single.h"
#include "report/format/sort_key.h"

namespace flanks {
namespace {

constexpr std::size_t kNumberLength = 8;

std::string NumberPiece(std::int32_t number) {
  return Swapl(MKLhex(number));
}

BiasTermRow TermAt(std::string_view record, std::size_t from) {
  return BiasTermRow(CVLhex(Swapl(record.substr(from, kNumberLength))));
}

// Equal labels share a place.  Blanks at their ends count for nothing, as in a column of labels.
std::vector<std::int32_t> PlacesOfLabels(const Design& design, FlankNo flank) {
  const SlotRange range = SlotsOf(design.flanks, flank);
  std::vector<std::string_view> labels;
  for (const ElementSlot e : Upward(range.low, range.high))
    labels.push_back(design.elements.ElementLabel[e]);
  std::size_t longest = 0;
  for (const std::string_view label : labels) longest = std::max(longest, label.size());
  const auto padded = [longest](std::string_view label) {
    std::string text(label);
    text.resize(longest, ' ');
    return text;
  };
  std::vector<std::string> alphabet;
  for (const std::string_view label : labels) alphabet.push_back(padded(label));
  std::sort(alphabet.begin(), alphabet.end());
  alphabet.erase(std::unique(alphabet.begin(), alphabet.end()), alphabet.end());
  std::vector<std::int32_t> places;
  for (const std::string_view label : labels)
    places.push_back(static_cast<std::int32_t>(
        std::lower_bound(alphabet.begin(), alphabet.end(), padded(label)) - alphabet.begin()));
  return places;
}

// Where a bias would be without end: -1, 0 or 1.
int EndOf(BiasStanding standing) {
  if (standing == BiasStanding::maximum) return 1;
  return standing == BiasStanding::minimum ? -1 : 0;
}

// "1" before and "3" behind the pairs of two estimated biases, which are "2".
char ClassOf(const Settings& settings, BiasStanding first, BiasStanding second, bool descending) {
  const int a = EndOf(first), b = EndOf(second);
  if (a == 0 && b == 0) return '2';
  if (a == b) return '4';
  const bool turned = static_cast<double>(settings.Bias) * settings.Uscale < 0.0;
  const bool low = (a < b) != turned;
  return low != descending ? '1' : '3';
}

bool HasLetter(std::string_view letters, std::string_view sought) {
  return letters.find_first_of(sought) != std::string_view::npos;
}

}  // namespace

PairRecords::PairRecords(const Analysis& analysis, const BiasResults& results, std::size_t target,
                         std::string_view letters)
    : settings_(analysis.settings), results_(results), target_(target), letters_(letters) {
  if (!HasLetter(letters_, "Aa")) return;
  const Design& design = analysis.design;
  for (const Position position : results.interaction.positions) {
    const FlankNo flank = design.maps.ModelFlank[position];
    labelPlace_.push_back(PlacesOfLabels(design, flank));
    firstSlot_.push_back(design.flanks.FlankFirstSlot[flank]);
  }
}

void PairRecords::AppendLabels(BiasPair pair, bool descending) {
  const auto append = [&](ElementSlot slot, std::size_t which) {
    const std::int32_t place =
        labelPlace_[which][static_cast<std::size_t>(slot - firstSlot_[which])];
    record_ += NumberPiece(descending ? std::numeric_limits<std::int32_t>::max() - place : place);
  };
  results_.list.FillElements(pair.first, elements_);
  for (std::size_t which = elements_.size(); which-- > 0;) append(elements_[which], which);
  append(results_.list.element(pair.second, target_), target_);
}

void PairRecords::AppendValue(char pairClass, double value, bool descending) {
  record_ += pairClass;
  record_ += FloatKey(Single(descending ? -value : value));
}

std::string_view PairRecords::RecordOf(BiasPair pair, const PairFigures& figures) {
  const BiasStanding first = results_.terms[pair.first].standing;
  const BiasStanding second = results_.terms[pair.second].standing;
  record_ = NumberPiece(pair.first.number()) + NumberPiece(pair.second.number());
  for (const char letter : letters_) {
    const bool descending = letter >= 'a';
    const int sign = descending ? -1 : 1;
    if (HasLetter("Nn", {&letter, 1})) {
      record_ += NumberPiece(sign * pair.first.number());
      record_ += NumberPiece(sign * pair.second.number());
    } else if (HasLetter("Aa", {&letter, 1})) {
      AppendLabels(pair, descending);
    } else if (HasLetter("MmFf", {&letter, 1})) {
      AppendValue(ClassOf(settings_, first, second, descending), figures.size, descending);
    } else if (HasLetter("TtZz", {&letter, 1})) {
      AppendValue(ClassOf(settings_, first, second, descending), figures.t, descending);
    }
  }
  return record_;
}

BiasPair PairRecords::PairOf(std::string_view record) {
  return {TermAt(record, 0), TermAt(record, kNumberLength)};
}

bool IsPairShown(const Settings& settings, const PairFigures& figures) {
  if (settings.Zscore[0] == 0.0f && settings.Zscore[1] == 0.0f) return true;
  return std::abs(figures.size) >= settings.Zscore[0] && std::abs(figures.t) >= settings.Zscore[1];
}

}  // namespace flanks
