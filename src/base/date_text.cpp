#include "base/date_text.h"

namespace flanks {

std::string DateAndTime(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local);
  return text;
}

}  // namespace flanks
