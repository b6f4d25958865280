#include "output/protected_label.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/text.h"

namespace flanks {
namespace {

constexpr std::string_view kFormulaStarts = "+-=";
constexpr std::string_view kCalculation = "+-=*-/^ ";
constexpr std::string_view kDateSeparators = "-/.";
constexpr std::string_view kDateBreaks = " ,-/.";
constexpr std::size_t kShortMonth = 3;  // letters of "JAN"

constexpr std::array<std::string_view, 12> kMonths = {
    "JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
    "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};

bool AreDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// Commas between groups of three digits before the point count for nothing: "1,234.5".
std::string WithoutGroupCommas(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i + 1);
    const bool comma = text[i] == ',' && i > 0 && IsDigit(text[i - 1]) &&
                       AreDigits(rest.substr(0, 3)) && rest.size() >= 3 &&
                       (rest.size() == 3 || !IsDigit(rest[3]));
    if (!comma) plain += text[i];
  }
  return plain;
}

bool IsNumber(std::string_view text) {
  const std::string plain = WithoutGroupCommas(text);
  return !plain.empty() && ReadNumericPrefix(plain).length == plain.size();
}

// "1/2/2024", "3.4.5".
bool IsDateOfDigits(std::string_view text) {
  int groups = 0;
  while (true) {
    const std::size_t end = text.find_first_of(kDateSeparators);
    if (!AreDigits(text.substr(0, end))) return false;
    ++groups;
    if (end == std::string_view::npos) return groups == 3;
    text.remove_prefix(end + 1);
  }
}

bool IsMonth(std::string_view word) {
  const std::string upper = UpperCase(word);
  return std::any_of(kMonths.begin(), kMonths.end(), [&upper](std::string_view month) {
    return upper == month || upper == month.substr(0, kShortMonth);
  });
}

// "5 Jan", "Jan-20", "5 January, 2024".
bool IsDateWithMonth(std::string_view text) {
  int months = 0, numbers = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(kDateBreaks), text.size());
    const std::string_view word = text.substr(0, end);
    if (AreDigits(word)) {
      ++numbers;
    } else if (IsMonth(word)) {
      ++months;
    } else if (!word.empty()) {
      return false;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return months == 1 && (numbers == 1 || numbers == 2);
}

bool IsCalculation(std::string_view text) {
  return std::any_of(text.begin(), text.end(), IsDigit) &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return IsDigit(c) || kCalculation.find(c) != std::string_view::npos;
         });
}

bool IsMistaken(std::string_view text) {
  if (text.empty()) return false;
  const std::string_view trimmed = Trim(text);
  return kFormulaStarts.find(text.front()) != std::string_view::npos || IsNumber(trimmed) ||
         IsDateOfDigits(trimmed) || IsDateWithMonth(trimmed) || IsCalculation(trimmed);
}

}  // namespace

std::string ProtectForExcel(std::string_view text) {
  std::string kept(text);
  if (IsMistaken(text)) kept += kLabelGuard;
  return kept;
}

}  // namespace flanks
