// Dates as reports and files show them.
//
// Tested by tests/unit/base/date_text_test.cpp.
#ifndef FLANKS_BASE_DATE_TEXT_H
#define FLANKS_BASE_DATE_TEXT_H

#include <ctime>
#include <string>

namespace flanks {

// "2025-01-31 12:00", local time.
std::string DateAndTime(std::time_t time);

}  // namespace flanks

#endif  // FLANKS_BASE_DATE_TEXT_H
