// A folder of a test's own, removed with all that is in it; while it lasts it is also the folder
// for temporary files, so that a test can see that none is left behind.
#ifndef FLANKS_TESTS_SUPPORT_SCRATCH_FOLDER_H
#define FLANKS_TESTS_SUPPORT_SCRATCH_FOLDER_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string folder() const;
  // The full name of a file in the folder.
  std::string file(std::string_view name) const;
  // Writes a file and gives its full name.
  std::string write(std::string_view name, std::string_view bytes) const;
  std::string read(std::string_view name) const;  // empty when there is none
  std::vector<std::string> names() const;
  bool empty() const;

 private:
  std::filesystem::path path_;
  std::string former_;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_SCRATCH_FOLDER_H
