#include "run/work_files.h"

#include "base/program_fault.h"

namespace flanks {

std::unique_ptr<TextWorkFile> OpenTextWorkFile(WorkFiles& work, std::string_view title,
                                               std::string_view caller, std::int64_t lineNumber) {
  auto file = std::make_unique<TextWorkFile>();
  if (const std::error_code error = file->Create(title, "txt"))
    ThrowOpenFailure(file->name(), caller, lineNumber, error);
  file->Follow(work.plan);
  return file;
}

void ThrowOpenFailure(const std::string& name, std::string_view caller, std::int64_t lineNumber,
                      std::error_code code) {
  std::string words = "File open failure for ";
  words.append(name).append(" in ").append(caller);
  words.append(" at or near line ").append(std::to_string(lineNumber));
  words.append(" is code ").append(std::to_string(code.value()));
  words.append(": ").append(code.message()).append(".");
  throw ProgramFault(words);
}

}  // namespace flanks
