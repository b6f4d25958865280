#include "run/guard.h"

#include "base/program_fault.h"

namespace flanks {
namespace {

std::string FailedAt(const char* name, const Run& run, std::string_view words) {
  std::string text = std::string(name) + " failed at " + (*run.at != '\0' ? run.at : "its start");
  if (!words.empty()) text += ": " + std::string(words);
  return text + ".";
}

}  // namespace

void Guarded(const char* name, Run& run, void (*procedure)(Run&)) {
  run.at = "";
  try {
    procedure(run);
  } catch (const ProgramFault& fault) {
    run.console.FailureStop(fault.what());
  } catch (const std::bad_alloc&) {
    run.console.FailureStop(FailedAt(name, run, "not enough memory"));
  } catch (const std::exception& failure) {
    run.console.FailureStop(FailedAt(name, run, failure.what()));
  }
}

}  // namespace flanks
