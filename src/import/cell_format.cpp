#include "import/cell_format.h"

#include <chrono>
#include <cmath>
#include <cstdio>

#include "base/text.h"
#include "base/utf8_text.h"

namespace flanks {
namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr double kLastDay = 2958466.0;  // behind the end of 9999

std::string TimeText(std::int64_t second) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(second / 3600 % 24),
                static_cast<int>(second / 60 % 60), static_cast<int>(second % 60));
  return text;
}

int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  c = UpperCase(c);
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// The number of "_x000D_" at the start of the text; -1 for other texts.
int HexadecimalCode(std::string_view text) {
  constexpr std::size_t kLength = 7;
  if (text.size() < kLength || text[1] != 'x' || text[kLength - 1] != '_') return -1;
  int code = 0;
  for (std::size_t i = 2; i < kLength - 1; ++i) {
    const int digit = HexDigit(text[i]);
    if (digit < 0) return -1;
    code = code * 16 + digit;
  }
  return code;
}

constexpr bool IsPairHalf(int code) {
  return code >= 0xD800 && code < 0xE000;
}

}  // namespace

int ColumnOfCell(std::string_view place) {
  int column = 0;
  std::size_t at = 0;
  for (; at < place.size() && IsLetter(place[at]); ++at) {
    column = column * 26 + (UpperCase(place[at]) - 'A' + 1);
    if (column > kMostColumns) return 0;
  }
  const bool digitsFollow = at < place.size() && IsDigit(place[at]);
  return digitsFollow ? column : 0;
}

bool IsDateFormat(int number) {
  return (number >= 14 && number <= 22) || (number >= 27 && number <= 36) ||
         (number >= 45 && number <= 47) || (number >= 50 && number <= 58);
}

bool IsDateFormat(std::string_view code) {
  constexpr std::string_view kUnits = "YMDHS";
  for (std::size_t at = 0; at < code.size(); ++at) {
    const char c = code[at];
    if (c == '"') {
      at = code.find('"', at + 1);
    } else if (c == '[') {
      // A colour, a condition, a language; or hours, minutes, seconds beyond a day.
      const std::string_view inside = code.substr(at + 1, code.find(']', at) - at - 1);
      const bool elapsed =
          !inside.empty() &&
          std::string_view("HMS").find(UpperCase(inside.front())) != std::string_view::npos;
      if (elapsed && inside.find_first_not_of(inside.front()) == std::string_view::npos)
        return true;
      at = code.find(']', at);
    } else if (c == '\\' || c == '_' || c == '*') {
      ++at;
    } else if (c == ';') {
      return false;  // the first section holds for positive numbers
    } else if (kUnits.find(UpperCase(c)) != std::string_view::npos) {
      return true;
    }
    if (at == std::string_view::npos) break;
  }
  return false;
}

std::string DayText(std::int64_t day) {
  constexpr std::int64_t kMostDays = 4'000'000;
  if (day < -kMostDays || day > kMostDays) return {};
  const std::chrono::year_month_day date{
      std::chrono::sys_days{std::chrono::days{static_cast<int>(day)}}};
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::string DateText(double day, DateStart start) {
  constexpr std::int64_t kDayOf1904 = -24107;  // 1904-01-01, from 1970-01-01
  constexpr std::int64_t kDay0 = -25569;       // 1899-12-30: day 0 of all days behind number 60
  constexpr std::int64_t kNeverDay = 60;
  if (!(day >= 0.0) || day >= kLastDay) return {};
  const auto seconds =
      static_cast<std::int64_t>(std::floor(day * static_cast<double>(kSecondsOfDay) + 0.5));
  const std::int64_t number = seconds / kSecondsOfDay, second = seconds % kSecondsOfDay;
  if (number == 0) return TimeText(second);
  std::string text;
  if (start == DateStart::year1904)
    text = DayText(kDayOf1904 + number);
  else if (number == kNeverDay)
    text = "1900-02-29";
  else
    text = DayText(kDay0 + number + (number < kNeverDay ? 1 : 0));
  if (second > 0) text += " " + TimeText(second);
  return text;
}

std::string WithoutHexadecimal(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int code = text[at] == '_' ? HexadecimalCode(text.substr(at)) : -1;
    if (code < 0 || IsPairHalf(code)) {
      plain += text[at];
      continue;
    }
    AppendUtf8(static_cast<char32_t>(code), plain);
    at += 6;
  }
  return plain;
}

}  // namespace flanks
