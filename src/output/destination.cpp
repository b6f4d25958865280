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

void TellOpenFailure(Console& console, const std::string& name, const std::string& reason) {
  console.WarnLine("Failure opening output file: \"" + name + "\" (" + reason + ")");
}

void TellWriteFailure(Console& console, const char* routine, const std::string& reason) {
  console.WarnLine(std::string(routine) + " failed: " + reason + ".");
}

bool WriteOutputFile(Run& run, const char* routine, const std::string& name,
                     const WriteLines& write) {
  ReplacedFile file;
  if (const std::error_code code = file.Open(name)) {
    TellOpenFailure(run.console, name, code.message());
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
    TellWriteFailure(run.console, routine, failure.what());
  }
  return false;
}

}  // namespace flanks
