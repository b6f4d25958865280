// One block of a binary work file in memory: what the element file and the response file share.
//
// While the file is written the buffer holds the records from `windowFirst` to `windowEnd` - 1 that
// are not on disk yet; a full buffer goes out in one piece.  While it is read the buffer is a
// window on the records that are.  Between the two stands FlushBlock.
//
// A file that is shorter than its records, or whose records hold what was never written, throws a
// std::runtime_error that begins with the words of fault 50: "Work file problem: NAME ends before
// record 17".
//
// Tested through tests/unit/data/element_file_test.cpp and response_file_test.cpp, and by
// tests/damage/work_files_test.cpp.
#ifndef FLANKS_DATA_BLOCKED_FILE_H
#define FLANKS_DATA_BLOCKED_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "run/work_files.h"

namespace flanks {

// Who opens a file and where the run then is; both stand in the message of a failure.
struct OpeningPlace {
  std::string_view caller;
  std::int64_t lineNumber = 0;
};

// Makes the file, at position 1, with an empty buffer of `blockBytes`.
void OpenBlockedFile(BlockedFile& blocked, std::string_view title, std::int64_t blockBytes,
                     const OpeningPlace& place, FileFaultPlan* plan);

// Writes the records of the buffer and moves position and window on.
void FlushBlock(BlockedFile& blocked, std::size_t width);

// The place of the next record in the buffer; a full buffer is written first.
inline std::uint8_t* NextRecord(BlockedFile& blocked, std::size_t width,
                                std::int64_t blockRecords) {
  if (blocked.windowEnd - blocked.windowFirst >= blockRecords) FlushBlock(blocked, width);
  const auto index = static_cast<std::size_t>(blocked.windowEnd++ - blocked.windowFirst);
  return blocked.buffer.data() + index * width;
}

inline bool HasRecord(const BlockedFile& blocked, std::int64_t record) {
  return record >= blocked.windowFirst && record < blocked.windowEnd;
}
// A record that HasRecord.
inline const std::uint8_t* RecordIn(const BlockedFile& blocked, std::size_t width,
                                    std::int64_t record) {
  return blocked.buffer.data() + static_cast<std::size_t>(record - blocked.windowFirst) * width;
}

// Reads `count` records from `first` on into the buffer.
void LoadWindow(BlockedFile& blocked, std::size_t width, std::int64_t first, std::int64_t count);

[[noreturn]] void ThrowWorkFileProblem(const BlockedFile& blocked, const std::string& words);

}  // namespace flanks

#endif  // FLANKS_DATA_BLOCKED_FILE_H
