// Temporary files and their names.
//
// A TempFile is a new, empty file with a name that no other file has, in the system's temporary
// folder (TMPDIR and its kin are honoured; the root of the drive when there is none).  Whoever
// holds the object owns the file: it is removed with it.  Files that are still there when the
// process ends through exit are removed then; only a crash leaves them.
//
// Tested by tests/unit/base/temp_file_test.cpp.
#ifndef FLANKS_BASE_TEMP_FILE_H
#define FLANKS_BASE_TEMP_FILE_H

#include <string>
#include <string_view>
#include <system_error>

namespace flanks {

// The folder for temporary files, with the separator at its end.
std::string TempFolder();

class TempFile {
 public:
  TempFile() = default;
  ~TempFile() { Remove(); }
  TempFile(TempFile&& other) noexcept;
  TempFile& operator=(TempFile&& other) noexcept;

  // Makes the file "flanks-TITLE-UNIQUE.EXTENSION", empty and readable by this user alone.  Of the
  // title letters and digits count, up to 20.  A file held before is removed.  Gives the system's
  // error; name() is then the name that was tried.
  [[nodiscard]] std::error_code Create(std::string_view title, std::string_view extension);
  // Removes the file.  The file must not be open on systems that keep open files.
  void Remove() noexcept;

  const std::string& name() const { return name_; }
  bool exists() const { return exists_; }

 private:
  std::string name_;
  bool exists_ = false;
};

}  // namespace flanks

#endif  // FLANKS_BASE_TEMP_FILE_H
