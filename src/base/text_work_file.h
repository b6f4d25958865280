// A temporary text file: lines are written, and later read back from the start.
//
// It holds the lists of a Specification until their tables are built.  A line must not hold a
// line end.  The file is removed with the object.
//
//   TextWorkFile file;
//   if (const std::error_code error = file.Create("labels", "txt")) ...   // file.name() was tried
//   file.WriteLine(...);  ...
//   file.Rewind();                       // from now on only reading; may be called again
//   std::string_view line;
//   while (file.ReadLine(line)) ...      // valid until the next read
//
// Failures after Create throw a std::system_error that names the file, as PositionedFile does.
//
// Tested by tests/unit/base/text_work_file_test.cpp and tests/damage/failing_files_test.cpp.
#ifndef FLANKS_BASE_TEXT_WORK_FILE_H
#define FLANKS_BASE_TEXT_WORK_FILE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "base/positioned_file.h"
#include "base/temp_file.h"
#include "base/text_file.h"

namespace flanks {

class TextWorkFile {
 public:
  [[nodiscard]] std::error_code Create(std::string_view title, std::string_view extension);
  void WriteLine(std::string_view line);
  // Ends the writing and begins to read at the first line.
  void Rewind();
  // The next line; at the end false.
  bool ReadLine(std::string_view& line);

  const std::string& name() const { return temp_.name(); }
  std::int64_t lines() const { return lines_; }
  void Follow(FileFaultPlan* plan);

 private:
  void Flush();

  TempFile temp_;  // first, so that the file is closed before it is removed
  PositionedFile output_;
  TextFile input_;
  std::string buffer_;
  std::int64_t nextPosition_ = 1;
  std::int64_t lines_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_BASE_TEXT_WORK_FILE_H
