#include "support/scratch_folder.h"

#include <cstdlib>
#include <fstream>
#include <random>

#include "support/file_bytes.h"

namespace flanks {

ScratchFolder::ScratchFolder() {
  if (const char* folder = std::getenv("TMPDIR")) former_ = folder;
  std::random_device random;
  do {
    path_ = std::filesystem::temp_directory_path() / ("flanks-test-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(path_));
  setenv("TMPDIR", path_.c_str(), 1);
}

ScratchFolder::~ScratchFolder() {
  former_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", former_.c_str(), 1);
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::folder() const {
  return path_.string();
}

std::string ScratchFolder::file(std::string_view name) const {
  return (path_ / name).string();
}

std::string ScratchFolder::write(std::string_view name, std::string_view bytes) const {
  std::ofstream(file(name), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return file(name);
}

std::string ScratchFolder::read(std::string_view name) const {
  return BytesOfFile(file(name));
}

std::vector<std::string> ScratchFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_))
    names.push_back(entry.path().filename().string());
  return names;
}

bool ScratchFolder::empty() const {
  return names().empty();
}

}  // namespace flanks
