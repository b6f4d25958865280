// A folder of a test's own, removed with all that is in it; while it lasts it is also the folder
// for temporary files, so that a test can see that none is left behind.
#ifndef FLANKS_TESTS_SUPPORT_SCRATCH_FOLDER_H
#define FLANKS_TESTS_SUPPORT_SCRATCH_FOLDER_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

class ScratchFolder {
 public:
  ScratchFolder() {
    if (const char* folder = std::getenv("TMPDIR")) former_ = folder;
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("flanks-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
    setenv("TMPDIR", path_.c_str(), 1);
  }
  ~ScratchFolder() {
    former_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", former_.c_str(), 1);
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string folder() const { return path_.string(); }
  // The full name of a file in the folder.
  std::string file(std::string_view name) const { return (path_ / name).string(); }
  // Writes a file and gives its full name.
  std::string write(std::string_view name, std::string_view bytes) const {
    std::ofstream(file(name), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file(name);
  }
  std::string read(std::string_view name) const {
    std::ifstream input(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
  }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename().string());
    return names;
  }
  bool empty() const { return names().empty(); }

 private:
  std::filesystem::path path_;
  std::string former_;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_SCRATCH_FOLDER_H
