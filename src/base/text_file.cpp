#include "base/text_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace flanks {

namespace {

constexpr std::size_t kBlockBytes = 65536;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

std::string_view TextFileClass(TextFileKind kind) {
  switch (kind) {
    case TextFileKind::rtf:
      return "RTF";
    case TextFileKind::unicode:
      return "Unicode";
    case TextFileKind::utf8:
      return "UTF-8";
    case TextFileKind::incorrectEndOfLine:
      return "incorrect end-of-line";
    case TextFileKind::plain:
      break;
  }
  return "";
}

TextFileCheck CheckTextFile(const std::string& name) {
  // What is no ordinary file (a pipe) can be read only once, so it is not looked at.
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(name, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
      !std::filesystem::is_directory(status))
    return {};

  TextFile file;
  if (const std::error_code error = file.Open(name)) return {error, TextFileKind::plain};
  std::string_view line;
  if (std::filesystem::file_size(name, ignored) <= 1 || !file.ReadLine(line)) return {};
  const std::string_view start = line.substr(0, 2);
  if (start == "{\\") return {{}, TextFileKind::rtf};
  if (start == "\xFF\xFE" || start == "\xFE\xFF") return {{}, TextFileKind::unicode};
  // UTF-16 without a mark: each second byte of a plain text is code 0.
  if (line.find('\0') != std::string_view::npos) return {{}, TextFileKind::unicode};
  if (start == kByteOrderMark.substr(0, 2)) return {{}, TextFileKind::utf8};
  if (file.EndedInLoneReturn(line)) return {{}, TextFileKind::incorrectEndOfLine};
  return {};
}

std::error_code TextFile::Open(const std::string& name) {
  Close();
  name_ = name;
  std::error_code unknown;
  const std::filesystem::file_status status = std::filesystem::status(name, unknown);
  if (std::filesystem::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
  file_.pubsetbuf(nullptr, 0);
  errno = 0;
  if (!file_.open(name, std::ios::in | std::ios::binary)) return LastFileError();

  // The system gives files without content of their own (pipes, some of its own tables) the
  // length 0: these are read to their end.
  const std::uintmax_t length = std::filesystem::file_size(name, unknown);
  lengthKnown_ = std::filesystem::is_regular_file(status) && !unknown && length > 0;
  fileLength_ =
      lengthKnown_ ? static_cast<std::int64_t>(length) : std::numeric_limits<std::int64_t>::max();
  buffer_.resize(kBlockBytes);
  begin_ = end_ = lineFeedAt_ = returnAt_ = 0;
  taken_ = 0;
  exhausted_ = false;
  fault_ = TextFileFault::none;
  Fill();
  DropByteOrderMark();
  return {};
}

void TextFile::Close() {
  if (file_.is_open()) file_.close();
  begin_ = end_ = 0;
  exhausted_ = true;
}

bool TextFile::ReadLine(std::string_view& line) {
  for (;;) {
    if (lineFeedAt_ < begin_) lineFeedAt_ = Find('\n', begin_);
    if (returnAt_ < begin_) returnAt_ = Find('\r', begin_);
    const std::size_t mark = std::min(lineFeedAt_, returnAt_);
    // The byte behind the mark must be known: the two marks side by side are one line end.
    if (mark + 1 < end_ || (exhausted_ && mark < end_)) {
      line = std::string_view(buffer_.data() + begin_, mark - begin_);
      const std::size_t other = std::max(lineFeedAt_, returnAt_);
      begin_ = other == mark + 1 && other < end_ ? other + 1 : mark + 1;
      return true;
    }
    if (exhausted_) break;
    Fill();
  }
  line = std::string_view(buffer_.data() + begin_, end_ - begin_);
  begin_ = end_;
  return !line.empty();
}

bool TextFile::EndedInLoneReturn(std::string_view line) const {
  const char* const mark = line.data() + line.size();
  const char* const next = buffer_.data() + begin_;
  return mark + 1 == next && *mark == '\r';
}

std::string TextFile::FaultText() const {
  if (fault_ == TextFileFault::unexpectedEnd) {
    return name_ + " " + std::to_string(fileLength_) + " " + std::to_string(taken_) +
           " utfreadmore: unexxpected end of file";
  }
  if (fault_ == TextFileFault::readFailure) return "utf8read file read failure:" + name_;
  return "";
}

// Reads another block behind what has not been handed out.  The marks must be up to date.
void TextFile::Fill() {
  const std::size_t kept = end_ - begin_;
  if (begin_ > 0) std::memmove(buffer_.data(), buffer_.data() + begin_, kept);
  const bool lineFeedFound = lineFeedAt_ >= begin_ && lineFeedAt_ < end_;
  const bool returnFound = returnAt_ >= begin_ && returnAt_ < end_;
  lineFeedAt_ -= std::min(begin_, lineFeedAt_);
  returnAt_ -= std::min(begin_, returnAt_);
  begin_ = 0;
  end_ = kept;
  // A line that fills half the buffer makes it grow, so that a long line is moved a few times only.
  if (kept > buffer_.size() / 2) buffer_.resize(buffer_.size() * 2);

  const std::size_t room = buffer_.size() - end_;
  const std::int64_t left = fileLength_ - taken_;
  const std::size_t wanted =
      static_cast<std::size_t>(std::min<std::int64_t>(left, static_cast<std::int64_t>(room)));
  const std::size_t got = ReadBlock(buffer_.data() + end_, wanted);
  end_ += got;
  taken_ += static_cast<std::int64_t>(got);
  exhausted_ = got < wanted || taken_ == fileLength_;
  if (got < wanted && lengthKnown_ && fault_ == TextFileFault::none)
    fault_ = TextFileFault::unexpectedEnd;
  if (fault_ != TextFileFault::none) {
    begin_ = end_;
    exhausted_ = true;
  }
  if (!lineFeedFound) lineFeedAt_ = Find('\n', kept);
  if (!returnFound) returnAt_ = Find('\r', kept);
}

std::size_t TextFile::ReadBlock(char* to, std::size_t room) {
  auto wanted = static_cast<std::int64_t>(room);
  if (plan_ != nullptr) {
    if (plan_->readsThatWork-- <= 0) {
      fault_ = TextFileFault::readFailure;
      return 0;
    }
    wanted = std::clamp<std::int64_t>(plan_->cutAt - taken_, 0, wanted);
  }
  try {
    return static_cast<std::size_t>(file_.sgetn(to, wanted));
  } catch (const std::ios_base::failure&) {
    fault_ = TextFileFault::readFailure;
    return 0;
  }
}

void TextFile::DropByteOrderMark() {
  if (std::string_view(buffer_.data() + begin_, end_ - begin_).starts_with(kByteOrderMark))
    begin_ = kByteOrderMark.size();
}

std::size_t TextFile::Find(char mark, std::size_t from) const {
  const void* const found = std::memchr(buffer_.data() + from, mark, end_ - from);
  if (found == nullptr) return end_;
  return static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
}

}  // namespace flanks
