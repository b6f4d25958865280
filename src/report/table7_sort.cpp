#include "report/table7_sort.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "base/single.h"
#include "report/format/sort_key.h"

namespace flanks {
namespace {

constexpr std::string_view kUnfittedPiece = "2         ";  // sorts after every row with a fit

std::string NumberPiece(std::int32_t number) {
  return Swapl(MKLhex(number));
}

// Extreme elements sort apart from the measured ones, at the end where their measure would be.
char ClassDigit(std::int16_t status, bool descending) {
  switch (std::abs(status)) {
    case 1:
    case 5:
      return '2';
    case 2:
      return descending ? '3' : '1';
    case 3:
      return descending ? '1' : '3';
    case 4:
      return '4';
    default:
      return '5';
  }
}

std::string MeasurePiece(const ElementState& state, bool descending) {
  const float measure = descending ? -state.ElementMeasure : state.ElementMeasure;
  return ClassDigit(state.ElementStatus, descending) + FloatKey(measure);
}

std::string LabelPiece(const std::string& label, int length, bool descending) {
  std::string piece = label;
  piece.resize(static_cast<std::size_t>(length), ' ');
  return descending ? Complement(piece) : piece;
}

std::string FitPiece(const ElementFinal& fit, std::int16_t status, char letter) {
  if (!IsInPlay(status)) return std::string(kUnfittedPiece);
  const float worse = letter == 'F' || letter == 'f'
                          ? WorseMeanSquare(fit.InfitMeanSquare, fit.OutfitMeanSquare)
                          : WorseZStd(fit.InfitZStd, fit.OutfitZStd);
  const bool worstFirst = std::islower(static_cast<unsigned char>(letter)) != 0;
  return "1" + FloatKey(worstFirst ? -worse : worse);
}

// Overfit in the size of misfit: 1/4 becomes -4.
float SignedMisfit(float meanSquare) {
  return meanSquare < 1.0f ? -1.0f / FloorMin(meanSquare) : meanSquare;
}

float LargerInSize(float infit, float outfit) {
  if (std::abs(infit) > std::abs(outfit)) return infit;
  if (std::abs(infit) < std::abs(outfit)) return outfit;
  return std::max(infit, outfit);
}

// The shown correlation, not the expected one.
float CorrelationSortKey(const ElementFinal& fit) {
  return fit.PointMeasure;
}

std::string Piece(const Analysis& analysis, ElementSlot slot, char letter, int labelLength) {
  const Estimates& estimates = analysis.estimates;
  const ElementTable& elements = analysis.design.elements;
  const ElementState& state = estimates.elements[slot];
  const ElementFinal& fit = estimates.finals[slot];
  switch (letter) {
    case 'N':
      return NumberPiece(elements.ElementNumber[slot]);
    case 'n':
      return NumberPiece(-elements.ElementNumber[slot]);
    case 'A':
    case 'a':
      return LabelPiece(elements.ElementLabel[slot], labelLength, letter == 'a');
    case 'P':
      return FloatKey(CorrelationSortKey(fit));
    case 'p':
      return FloatKey(-CorrelationSortKey(fit));
    case 'M':
    case 'm':
      return MeasurePiece(state, letter == 'm');
    case 'F':
    case 'f':
    case 'Z':
    case 'z':
    case 'T':
    case 't':
      return FitPiece(fit, state.ElementStatus, letter);
    default:
      return {};
  }
}

constexpr int kBeyondAllFlanks = 1000;

}  // namespace

// A Flank number of any length: what is beyond all Flanks stays beyond them.
std::vector<ArrangeItem> ReadArrange(std::string_view arrange) {
  std::vector<ArrangeItem> items;
  while (!arrange.empty()) {
    const std::size_t comma = std::min(arrange.find(','), arrange.size());
    ArrangeItem item;
    for (const char c : arrange.substr(0, comma)) {
      if (std::isdigit(static_cast<unsigned char>(c)) != 0) {
        item.numbered = true;
        item.flank = std::min(item.flank * 10 + (c - '0'), kBeyondAllFlanks);
      } else if (c != ' ') {
        item.letters += c;
      }
    }
    items.push_back(item);
    arrange.remove_prefix(std::min(comma + 1, arrange.size()));
  }
  return items;
}

std::string Table7Key(const Analysis& analysis, ElementSlot slot, std::string_view letters,
                      int labelLength) {
  std::string key;
  for (const char letter : letters) key += Piece(analysis, slot, letter, labelLength);
  return key + NumberPiece(slot.number());
}

int LongestLabel(const Design& design, FlankNo flank) {
  std::size_t longest = 0;
  const SlotRange range = SlotsOf(design.flanks, flank);
  for (ElementSlot e : Upward(range.low, range.high))
    longest = std::max(longest, design.elements.ElementLabel[e].size());
  return static_cast<int>(longest);
}

ElementSlot SlotOfKey(std::string_view key) {
  return ElementSlot(CVLhex(Swapl(key.substr(key.size() - 8))));
}

float WorseMeanSquare(float infit, float outfit) {
  return LargerInSize(SignedMisfit(infit), SignedMisfit(outfit));
}

float WorseZStd(float infit, float outfit) {
  return LargerInSize(infit, outfit);
}

}  // namespace flanks
