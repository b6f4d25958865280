// A binary file that is read and written at positions.
//
// Positions count from 1, as the file positions of the work files do, and are 64-bit, so that a
// file may exceed 4 gigabytes.  Nothing is buffered here: the callers read and write whole blocks.
//
// Opening gives the system's error code, because a file that cannot be opened is told with words of
// the caller's.  Reading and writing are not expected to fail; when they do, they throw a
// std::system_error whose text names the file and has the system's words ("File write failure for
// /tmp/flanks-1x.wrk: No space left on device").
//
// `FileFaultPlan` is the place where a test makes the disk fail: a file that follows a plan fails
// as the plan says, through the same code as a real failure.  Outside the tests there is no plan.
//
// Tested by tests/unit/base/positioned_file_test.cpp and tests/damage/failing_files_test.cpp.
#ifndef FLANKS_BASE_POSITIONED_FILE_H
#define FLANKS_BASE_POSITIONED_FILE_H

#include <cstdint>
#include <fstream>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace flanks {

// How a file is to fail.  Counts go down as the file is used, and several files may share a plan.
struct FileFaultPlan {
  static constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

  // Bytes that still fit on the disk.  The write that needs more stores what fits, then fails.
  std::int64_t bytesThatFit = kNever;
  // The file looks as if it were cut after this many bytes.
  std::int64_t cutAt = kNever;
  // Reads that still succeed; the next one fails.
  std::int64_t readsThatWork = kNever;
};

// Throws the failure of an action on a file: "File write failure for NAME: the system's words".
[[noreturn]] void ThrowFileFailure(std::string_view action, const std::string& name,
                                   std::error_code code);

// The system's error of the last file operation; an input/output error where it gave none.
std::error_code LastFileError();

class PositionedFile {
 public:
  PositionedFile() = default;
  PositionedFile(PositionedFile&&) = default;
  PositionedFile& operator=(PositionedFile&&) = default;

  // Opens an existing file for reading and writing.
  [[nodiscard]] std::error_code Open(const std::string& name);
  void Close();
  bool isOpen() const { return file_.is_open(); }
  const std::string& name() const { return name_; }
  // The plan must outlive the file; nullptr for none.
  void Follow(FileFaultPlan* plan) { plan_ = plan; }

  // Reads up to to.size() bytes from `position` on and gives their number, which is less only at
  // the end of the file.
  std::size_t ReadAt(std::int64_t position, std::span<std::uint8_t> to);
  // Writes all of `bytes` from `position` on.
  void WriteAt(std::int64_t position, std::span<const std::uint8_t> bytes);
  // The length of the file in bytes.
  std::int64_t Size();

 private:
  void Seek(std::int64_t position, std::string_view action);

  std::filebuf file_;
  std::string name_;
  FileFaultPlan* plan_ = nullptr;
};

}  // namespace flanks

#endif  // FLANKS_BASE_POSITIONED_FILE_H
