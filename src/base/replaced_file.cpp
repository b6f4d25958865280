#include "base/replaced_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace flanks {
namespace {

constexpr mode_t kReadableByAll = 0666;  // less what the user's mask takes away

bool IsThere(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::exists(name, ignored);
}

bool IsSpecial(const std::string& name) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(name, ignored);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

}  // namespace

std::error_code ReplacedFile::Open(const std::string& name) {
  Discard();
  name_ = target_ = name;
  buffer_.clear();
  if (IsSpecial(name)) {
    part_ = name;
    // A pipe that nobody reads is a failure, and not a wait without end.
    descriptor_ = open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor_ < 0) return LastFileError();
    fcntl(descriptor_, F_SETFL, O_WRONLY);  // its writes wait for the reader
    return {};
  }
  std::error_code ignored;
  if (IsThere(name)) {
    if (access(name.c_str(), W_OK) != 0) return LastFileError();
    target_ = std::filesystem::canonical(name, ignored).string();
    if (ignored) target_ = name;
  }
  return CreatePart();
}

// Two runs that write the same name at once have a part each; the last to end wins as a whole.
std::error_code ReplacedFile::CreatePart() {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    part_ = target_ + "." + std::to_string(getpid()) + (i == 0 ? "" : "-" + std::to_string(i)) +
            ".part";
    errno = 0;
    descriptor_ = open(part_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadableByAll);
    if (descriptor_ >= 0) break;
    if (errno != EEXIST) return LastFileError();
  }
  if (descriptor_ < 0) return std::make_error_code(std::errc::file_exists);
  std::error_code ignored;  // a new file keeps the mode that the mask gave it
  const std::filesystem::file_status former = std::filesystem::status(target_, ignored);
  if (std::filesystem::exists(former))
    std::filesystem::permissions(part_, former.permissions(), ignored);
  return {};
}

void ReplacedFile::WriteAll(std::string_view bytes) {
  while (!bytes.empty()) {
    errno = 0;
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) ThrowFileFailure("write", name_, LastFileError());
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void ReplacedFile::WriteThrough(std::string_view bytes) {
  if (plan_ != nullptr) {
    const auto wanted = static_cast<std::int64_t>(bytes.size());
    const std::int64_t fitting = std::min(wanted, plan_->bytesThatFit);
    plan_->bytesThatFit -= fitting;
    WriteAll(bytes.substr(0, static_cast<std::size_t>(fitting)));
    if (fitting < wanted)
      ThrowFileFailure("write", name_, std::make_error_code(std::errc::no_space_on_device));
  } else {
    WriteAll(bytes);
  }
}

void ReplacedFile::Flush() {
  WriteThrough(buffer_);
  buffer_.clear();
}

void ReplacedFile::Close() {
  errno = 0;
  const int result = close(descriptor_);
  descriptor_ = -1;
  // A network disk may tell only now that it is full.
  if (result != 0 && errno != EINTR) ThrowFileFailure("write", name_, LastFileError());
}

void ReplacedFile::RenameTo(const std::string& name) {
  std::error_code code;
  std::filesystem::rename(part_, name, code);
  if (code) ThrowFileFailure("write", name_, code);
  part_.clear();
}

void ReplacedFile::Commit() {
  Flush();
  try {
    Close();
  } catch (...) {
    Discard();
    throw;
  }
  if (part_ != name_) RenameTo(target_);
  part_.clear();
}

std::string ReplacedFile::KeepPart() {
  Flush();
  Close();
  const std::string kept = part_ == name_ ? name_ : name_ + ".part";
  if (part_ != name_) RenameTo(kept);
  part_.clear();
  return kept;
}

void ReplacedFile::Discard() noexcept {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
  if (!part_.empty() && part_ != name_) unlink(part_.c_str());
  part_.clear();
}

}  // namespace flanks
