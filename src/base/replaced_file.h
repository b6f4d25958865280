// A file that takes the place of a former one only when it is complete.
//
// The text goes into a new file beside the final name ("NAME.1a2b.part") and is renamed when all of
// it is written.  Whatever goes wrong before leaves what stood under the name as it was, and
// nothing else behind.  A name that is a link keeps being one: the file that it leads to is
// replaced.  What is no regular file (a device, a pipe) is written in place.
//
//   ReplacedFile file;
//   if (const std::error_code code = file.Open(name)) ...
//   file.Write("a line\n");
//   file.Commit();
//
// A library that writes by name is given partName() instead of Write.
//
// Tested by tests/unit/base/replaced_file_test.cpp.
#ifndef FLANKS_BASE_REPLACED_FILE_H
#define FLANKS_BASE_REPLACED_FILE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "base/positioned_file.h"

namespace flanks {

class ReplacedFile {
 public:
  ReplacedFile() = default;
  ReplacedFile(const ReplacedFile&) = delete;
  ReplacedFile& operator=(const ReplacedFile&) = delete;
  ~ReplacedFile() { Discard(); }

  // Gives the system's error: a folder that is not there, a file that may not be written.
  [[nodiscard]] std::error_code Open(const std::string& name);
  bool isOpen() const { return descriptor_ >= 0; }
  // Write and Commit throw as ThrowFileFailure says; the former file stands then.
  void Write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > kBufferBytes) Flush();
    if (bytes.size() > kBufferBytes / 2) return WriteThrough(bytes);
    buffer_.append(bytes);
  }
  void Commit();
  // Ends a file that is broken off but worth keeping, in "NAME.part": nobody shall take it for the
  // whole.  Gives the name.
  std::string KeepPart();
  // Removes what was written.
  void Discard() noexcept;

  const std::string& name() const { return name_; }
  const std::string& partName() const { return part_; }
  // The plan must outlive the file; nullptr for none.  Its bytesThatFit counts here.
  void Follow(FileFaultPlan* plan) { plan_ = plan; }

 private:
  static constexpr std::size_t kBufferBytes = std::size_t{1} << 18;

  [[nodiscard]] std::error_code CreatePart();
  void Flush();
  void WriteThrough(std::string_view bytes);
  void WriteAll(std::string_view bytes);
  void Close();
  void RenameTo(const std::string& name);

  std::string name_;    // as given
  std::string target_;  // where a link leads
  std::string part_;
  std::string buffer_;
  int descriptor_ = -1;
  FileFaultPlan* plan_ = nullptr;
};

}  // namespace flanks

#endif  // FLANKS_BASE_REPLACED_FILE_H
