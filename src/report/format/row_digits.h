// Numbers into the rows of output files: the texts of FixedField and of the delimited fields, as
// fast as a row for each observation wants them.
//
// Each function puts its text at `at`, where kNumberRoom bytes must be free, and returns its end.
// The texts are those of AppendFixedField and DelimitedDecimals to the byte: numbers of up to eight
// digits, which are all but a few, are written without a loop or a branch that depends on them,
// others through those functions.
//
// Tested by tests/unit/report/format/row_digits_test.cpp and, against those functions over random
// values, by tests/properties/report/row_digits_test.cpp; timed by bench/bench_rows.cpp.
#ifndef FLANKS_REPORT_FORMAT_ROW_DIGITS_H
#define FLANKS_REPORT_FORMAT_ROW_DIGITS_H

#include <cstddef>
#include <cstdint>

namespace flanks {

// At least what any of these functions writes, and what a store may reach beyond the end.
constexpr std::size_t kNumberRoom = 48;

// A whole number as its digits: "-12".
char* PutWhole(char* at, std::int32_t value);

// The same, right-aligned in the ten columns of a fixed field; a longer one takes what it needs.
char* PutFixedWhole(char* at, std::int32_t value);

// AppendFixedField(value, 10, decimals), decimals 0 to 9: exactly ten columns.
char* PutFixedDecimals(char* at, double value, int decimals);

// DelimitedDecimals(value, decimals), decimals 0 to 9.
char* PutDecimals(char* at, double value, int decimals);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_ROW_DIGITS_H
