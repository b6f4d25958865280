// Small things of spreadsheet cells: where a cell stands, which number formats show a date, dates
// as text, and the characters that a workbook writes in hexadecimal.
//
// Tested by tests/unit/import/import_text_test.cpp.
#ifndef FLANKS_IMPORT_CELL_FORMAT_H
#define FLANKS_IMPORT_CELL_FORMAT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace flanks {

constexpr int kMostColumns = 16384;
constexpr std::int64_t kMostRows = 1048576;

// The column of "AB12", from 1 on; 0 for what is no place of a cell.
int ColumnOfCell(std::string_view place);

// Whether a number in this format is a date or a time of day: a format of the program's own by its
// number, one of the workbook's by its code ("yyyy\-mm\-dd", "[h]:mm").
bool IsDateFormat(int number);
bool IsDateFormat(std::string_view code);

enum class DateStart : std::uint8_t { year1900, year1904 };

// A day number as "2024-03-01", with "13:45:00" behind it when it has a fraction, and that alone
// below 1.  Empty when it is no day of the years 1900 to 9999.  In the count from 1900 day 60 is
// 29 February 1900, which never was: the count is so.
std::string DateText(double day, DateStart start);

// Days from 1970-01-01 as "2024-03-01".
std::string DayText(std::int64_t day);

// "_x000D_" and the like as the character meant.
std::string WithoutHexadecimal(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_IMPORT_CELL_FORMAT_H
