#include "base/temp_file.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <set>
#include <utility>

#include "base/positioned_file.h"
#include "base/text.h"

namespace flanks {

namespace {

// The temporary files that the process has now.  It is the one thing of its kind that outlives
// every owner: exit runs no destructors of local objects, so the names must be known elsewhere.  It
// is never destroyed, since a TempFile in a static object may be removed after any other static.
std::set<std::string>& LiveFiles() {
  static std::set<std::string>& files = *new std::set<std::string>;
  return files;
}

void RemoveLiveFiles() {
  for (const std::string& name : LiveFiles()) {
    std::error_code ignored;
    std::filesystem::remove(name, ignored);
  }
  LiveFiles().clear();
}

void Register(const std::string& name) {
  static const bool atExit = std::atexit(RemoveLiveFiles) == 0;
  if (atExit) LiveFiles().insert(name);
}

// Letters and digits that no other process is likely to draw at the same time.
std::string UniqueText() {
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuvwxyz";
  static std::mt19937_64 random{std::random_device{}()};
  std::string text;
  for (std::uint64_t number = random(); number > 0; number /= kDigits.size())
    text += kDigits[number % kDigits.size()];
  return text;
}

std::string FileNamePart(std::string_view title) {
  constexpr std::size_t kLongest = 20;
  std::string part;
  for (const char c : title)
    if ((IsLetter(c) || IsDigit(c)) && part.size() < kLongest) part += c;
  return part;
}

}  // namespace

std::string TempFolder() {
  std::error_code error;
  std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) folder = std::filesystem::current_path(error).root_path();
  if (folder.empty()) folder = "/";
  return (folder / "").string();
}

TempFile::TempFile(TempFile&& other) noexcept
    : name_(std::move(other.name_)), exists_(std::exchange(other.exists_, false)) {}

TempFile& TempFile::operator=(TempFile&& other) noexcept {
  if (this == &other) return *this;
  Remove();
  name_ = std::move(other.name_);
  exists_ = std::exchange(other.exists_, false);
  return *this;
}

std::error_code TempFile::Create(std::string_view title, std::string_view extension) {
  Remove();
  constexpr int kTries = 100;  // a name that is taken is only bad luck
  const std::string start = TempFolder() + "flanks-" + FileNamePart(title) + "-";
  for (int i = 0; i < kTries; ++i) {
    name_ = start + UniqueText() + "." + FileNamePart(extension);
    errno = 0;
    // Mode x fails when the file is there already: nobody's file is overwritten.
    std::FILE* file = std::fopen(name_.c_str(), "wbx");
    if (file == nullptr) {
      if (errno == EEXIST) continue;
      return LastFileError();
    }
    std::fclose(file);
    exists_ = true;
    Register(name_);
    std::error_code ignored;  // some file systems have no permissions
    std::filesystem::permissions(
        name_, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, ignored);
    return {};
  }
  return std::make_error_code(std::errc::file_exists);
}

void TempFile::Remove() noexcept {
  if (!exists_) return;
  exists_ = false;
  std::error_code ignored;  // somebody else may have removed it
  std::filesystem::remove(name_, ignored);
  LiveFiles().erase(name_);
}

}  // namespace flanks
