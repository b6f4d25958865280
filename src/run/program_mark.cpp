#include "run/program_mark.h"

#include <ctime>

#include "base/date_text.h"

namespace flanks {

std::string ProgramAndDate() {
  return "Flanks (Many-Flank Rasch Measurement) Version " FLANKS_VERSION "  " +
         DateAndTime(std::time(nullptr));
}

}  // namespace flanks
