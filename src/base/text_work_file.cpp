#include "base/text_work_file.h"

#include <cstddef>
#include <span>

namespace flanks {

namespace {

constexpr std::size_t kBlockBytes = 65536;

}  // namespace

std::error_code TextWorkFile::Create(std::string_view title, std::string_view extension) {
  // The empty line in front keeps the first bytes of a line from being taken for a byte order mark.
  buffer_ = "\n";
  nextPosition_ = 1;
  lines_ = 0;
  input_.Close();
  output_.Close();
  if (const std::error_code error = temp_.Create(title, extension)) return error;
  return output_.Open(temp_.name());
}

void TextWorkFile::WriteLine(std::string_view line) {
  buffer_.append(line).push_back('\n');
  ++lines_;
  if (buffer_.size() >= kBlockBytes) Flush();
}

void TextWorkFile::Rewind() {
  Flush();
  output_.Close();
  if (const std::error_code error = input_.Open(temp_.name()))
    ThrowFileFailure("open", temp_.name(), error);
  std::string_view none;
  input_.ReadLine(none);  // a failure shows again at the next line
}

bool TextWorkFile::ReadLine(std::string_view& line) {
  if (input_.ReadLine(line)) return true;
  if (input_.fault() != TextFileFault::none)
    ThrowFileFailure("read", temp_.name(), std::make_error_code(std::errc::io_error));
  return false;
}

void TextWorkFile::Follow(FileFaultPlan* plan) {
  output_.Follow(plan);
  input_.Follow(plan);
}

void TextWorkFile::Flush() {
  if (buffer_.empty()) return;
  output_.WriteAt(nextPosition_,
                  std::span(reinterpret_cast<const std::uint8_t*>(buffer_.data()), buffer_.size()));
  nextPosition_ += static_cast<std::int64_t>(buffer_.size());
  buffer_.clear();
}

}  // namespace flanks
