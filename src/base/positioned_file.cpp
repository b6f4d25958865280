#include "base/positioned_file.h"

#include <algorithm>
#include <cerrno>
#include <ios>

namespace flanks {

void ThrowFileFailure(std::string_view action, const std::string& name, std::error_code code) {
  std::string words = "File ";
  words.append(action).append(" failure for ").append(name);
  throw std::system_error(code, words);
}

std::error_code LastFileError() {
  return errno != 0 ? std::error_code(errno, std::generic_category())
                    : std::make_error_code(std::errc::io_error);
}

std::error_code PositionedFile::Open(const std::string& name) {
  Close();
  name_ = name;
  file_.pubsetbuf(nullptr, 0);
  errno = 0;
  if (!file_.open(name, std::ios::in | std::ios::out | std::ios::binary)) return LastFileError();
  return {};
}

void PositionedFile::Close() {
  if (file_.is_open()) file_.close();
}

std::size_t PositionedFile::ReadAt(std::int64_t position, std::span<std::uint8_t> to) {
  auto wanted = static_cast<std::int64_t>(to.size());
  if (plan_ != nullptr) {
    if (plan_->readsThatWork-- <= 0)
      ThrowFileFailure("read", name_, std::make_error_code(std::errc::io_error));
    wanted = std::clamp<std::int64_t>(plan_->cutAt - (position - 1), 0, wanted);
  }
  Seek(position, "read");
  errno = 0;
  try {
    return static_cast<std::size_t>(file_.sgetn(reinterpret_cast<char*>(to.data()), wanted));
  } catch (const std::ios_base::failure&) {
    ThrowFileFailure("read", name_, LastFileError());
  }
}

void PositionedFile::WriteAt(std::int64_t position, std::span<const std::uint8_t> bytes) {
  const auto wanted = static_cast<std::int64_t>(bytes.size());
  const std::int64_t fitting = plan_ == nullptr ? wanted : std::min(wanted, plan_->bytesThatFit);
  Seek(position, "write");
  errno = 0;
  std::int64_t written = 0;
  try {
    written = file_.sputn(reinterpret_cast<const char*>(bytes.data()), fitting);
  } catch (const std::ios_base::failure&) {
    ThrowFileFailure("write", name_, LastFileError());
  }
  if (written < fitting) ThrowFileFailure("write", name_, LastFileError());
  if (plan_ != nullptr && plan_->bytesThatFit != FileFaultPlan::kNever)
    plan_->bytesThatFit -= written;
  if (written < wanted)
    ThrowFileFailure("write", name_, std::make_error_code(std::errc::no_space_on_device));
}

std::int64_t PositionedFile::Size() {
  errno = 0;
  const std::streamoff end = file_.pubseekoff(0, std::ios::end);
  if (end < 0) ThrowFileFailure("size", name_, LastFileError());
  return plan_ == nullptr ? end : std::min<std::int64_t>(end, plan_->cutAt);
}

void PositionedFile::Seek(std::int64_t position, std::string_view action) {
  errno = 0;
  const std::streampos place = file_.pubseekpos(std::streampos(position - 1));
  if (place != std::streampos(position - 1)) ThrowFileFailure(action, name_, LastFileError());
}

}  // namespace flanks
