#include "data/blocked_file.h"

#include <span>
#include <stdexcept>
#include <system_error>

#include "run/faults.h"

namespace flanks {

void OpenBlockedFile(BlockedFile& blocked, std::string_view title, std::int64_t blockBytes,
                     const OpeningPlace& place, FileFaultPlan* plan) {
  blocked.file.Close();
  std::error_code error = blocked.temp.Create(title, "wrk");
  if (!error) error = blocked.file.Open(blocked.temp.name());
  if (error) ThrowOpenFailure(blocked.temp.name(), place.caller, place.lineNumber, error);
  blocked.file.Follow(plan);
  blocked.buffer.assign(static_cast<std::size_t>(blockBytes), 0);
  blocked.windowFirst = blocked.windowEnd = 1;
  blocked.NextPosition = 1;
}

void FlushBlock(BlockedFile& blocked, std::size_t width) {
  const auto bytes = static_cast<std::size_t>(blocked.windowEnd - blocked.windowFirst) * width;
  if (bytes > 0) blocked.file.WriteAt(blocked.NextPosition, std::span(blocked.buffer).first(bytes));
  blocked.NextPosition += static_cast<std::int64_t>(bytes);
  blocked.windowFirst = blocked.windowEnd;
}

void LoadWindow(BlockedFile& blocked, std::size_t width, std::int64_t first, std::int64_t count) {
  const std::size_t bytes = static_cast<std::size_t>(count) * width;
  if (blocked.buffer.size() < bytes) blocked.buffer.resize(bytes);
  // Should the reading fail, no record is taken from a buffer of which nobody knows the content.
  blocked.windowFirst = blocked.windowEnd = first;
  const std::int64_t position = (first - 1) * static_cast<std::int64_t>(width) + 1;
  const std::size_t read = blocked.file.ReadAt(position, std::span(blocked.buffer).first(bytes));
  if (read < bytes) {
    const std::int64_t missing = first + static_cast<std::int64_t>(read / width);
    ThrowWorkFileProblem(blocked, " ends before record " + std::to_string(missing));
  }
  blocked.windowEnd = first + count;
}

void ThrowWorkFileProblem(const BlockedFile& blocked, const std::string& words) {
  throw std::runtime_error(FaultWords(Fault::workFileProblem, {}) + ": " + blocked.temp.name() +
                           words);
}

}  // namespace flanks
