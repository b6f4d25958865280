#include "base/kept_lines.h"

namespace flanks {
namespace {

// In front of each line of the file, so that no line begins like a byte order mark.
constexpr char kLineMark = ' ';

}  // namespace

void KeptLines::Add(std::string_view line) {
  ++size_;
  const bool room = lines_.size() < kInMemory && bytes_ + line.size() <= kBytesInMemory;
  if (file_ || !room) return AddToFile(line);
  bytes_ += line.size();
  lines_.emplace_back(line);
}

void KeptLines::AddToFile(std::string_view line) {
  if (!file_) {
    auto file = std::make_unique<TextWorkFile>();
    if (const std::error_code error = file->Create("kept", "txt"))
      ThrowFileFailure("open", file->name(), error);
    file->Follow(plan_);
    file_ = std::move(file);
  }
  std::string record(1, kLineMark);
  file_->WriteLine(record.append(line));
}

void KeptLines::Rewind() {
  next_ = 0;
  if (file_) file_->Rewind();
}

bool KeptLines::Next(std::string& line) {
  if (next_ < lines_.size()) {
    line = lines_[next_++];
    return true;
  }
  std::string_view record;
  if (!file_ || !file_->ReadLine(record)) return false;
  line.assign(record.substr(1));
  return true;
}

}  // namespace flanks
