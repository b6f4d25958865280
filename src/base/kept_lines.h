// Lines that are kept to be read back once, however many they are: the first in memory, the rest in
// a temporary text file that goes with the object.
//
// A Specification has a few comments that the report is to show, but nothing keeps it from having
// millions, and none of them may be lost.
//
//   KeptLines comments;
//   comments.Add(";; made in May");
//   std::string line;
//   for (comments.Rewind(); comments.Next(line);) ...     // no Add behind a Rewind
//
// A line must not hold a line end.  Failures of the file throw a std::system_error that names it,
// as PositionedFile does.
//
// Tested by tests/unit/base/kept_lines_test.cpp and tests/damage/failing_files_test.cpp.
#ifndef FLANKS_BASE_KEPT_LINES_H
#define FLANKS_BASE_KEPT_LINES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/text_work_file.h"

namespace flanks {

class KeptLines {
 public:
  static constexpr std::size_t kInMemory = 1000;         // lines
  static constexpr std::size_t kBytesInMemory = 100000;  // of their texts

  void Add(std::string_view line);
  std::int64_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  // Begins the reading at the first line; may be called again.
  void Rewind();
  // The next line; at the end false.
  bool Next(std::string& line);

  void Follow(FileFaultPlan* plan) { plan_ = plan; }

 private:
  void AddToFile(std::string_view line);

  std::vector<std::string> lines_;
  std::size_t bytes_ = 0;
  std::unique_ptr<TextWorkFile> file_;  // null: all lines are in memory
  FileFaultPlan* plan_ = nullptr;       // of the file
  std::int64_t size_ = 0;
  std::size_t next_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_BASE_KEPT_LINES_H
