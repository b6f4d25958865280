#include "base/date_text.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>

namespace flanks {
namespace {

// The time zone of the process while a test has another one.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) {
    if (const char* former = std::getenv("TZ")) former_ = former;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~TimeZone() {
    former_ ? setenv("TZ", former_->c_str(), 1) : unsetenv("TZ");
    tzset();
  }

 private:
  std::optional<std::string> former_;
};

constexpr std::time_t kBillion = 1'000'000'000;  // 9 September 2001, 1:46:40 UTC

TEST(DateText, IsYearMonthDayHoursAndMinutes) {
  const TimeZone utc("UTC0");
  EXPECT_EQ(DateAndTime(0), "1970-01-01 00:00");
  EXPECT_EQ(DateAndTime(kBillion), "2001-09-09 01:46");
}

TEST(DateText, IsLocalTime) {
  const TimeZone westward("XXX5");  // five hours behind
  EXPECT_EQ(DateAndTime(kBillion), "2001-09-08 20:46");
}

}  // namespace
}  // namespace flanks
