#include "output/file_mark.h"

#include <chrono>
#include <ctime>

namespace flanks {

std::string ProgramAndDate() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&now, &local);
  char date[32];
  std::strftime(date, sizeof date, "%Y-%m-%d %H:%M", &local);
  return std::string("Flanks (Many-Flank Rasch Measurement) Version " FLANKS_VERSION "  ") + date;
}

}  // namespace flanks
