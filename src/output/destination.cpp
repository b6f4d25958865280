#include "output/destination.h"

#include <exception>
#include <system_error>

namespace flanks {

void Destination::Line(std::string_view text) {
  if (file_ == nullptr) return pane_->ShowLine(std::string(text));
  file_->Write(text);
  file_->Write("\n");
}

void Destination::Lines(std::string_view text) {
  if (file_ != nullptr) return file_->Write(text);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    Line(text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

void TellOpenFailure(Run& run, const std::string& name, const std::string& reason) {
  run.process.control.ExitCode = kExitFault;
  run.console.WarnLine("Failure opening output file: \"" + name + "\" (" + reason + ")");
}

void TellWriteFailure(Run& run, const char* routine, const std::string& name,
                      const std::string& reason) {
  run.process.control.ExitCode = kExitFault;
  const bool isNamed = reason.find(name) != std::string::npos;
  run.console.WarnLine(std::string(routine) + " failed: " +
                       (isNamed ? "" : "\"" + name + "\" is not written. ") + reason + ".");
}

bool WriteOutputFile(Run& run, const char* routine, const std::string& name,
                     const WriteLines& write) {
  ReplacedFile file;
  if (const std::error_code code = file.Open(name)) {
    TellOpenFailure(run, name, code.message());
    return false;
  }
  try {
    Destination destination(file);
    write(destination);
    if (!run.console.stopping()) {
      file.Commit();
      return true;
    }
    const std::string kept = file.KeepPart();
    run.console.ShowFlagged("What was written so far stands in \"" + kept + "\".");
  } catch (const std::exception& failure) {
    TellWriteFailure(run, routine, name, failure.what());
  }
  return false;
}

}  // namespace flanks
