// The work files of a run as owned things: file, buffer, window, record layout.
//
// Observations are never held in memory.  The data pass writes two binary files, record r of which
// belongs to the same response: the element file (which element stands in each position) and the
// response file (structure, replication, category).  Every later pass reads them in record order.
// Three text files hold the `Labels=`, `Models=` and `Rating (or partial credit) scale=` lists
// until their tables are built.  What is done with them is in data/ and spec/; the formats are
// described byte by byte in docs/formats/.  The files vanish with this object.
#ifndef FLANKS_RUN_WORK_FILES_H
#define FLANKS_RUN_WORK_FILES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/column.h"
#include "run/design.h"

namespace flanks {

class PositionedFile;
class TextWorkFile;

// Where the fields of an element record stand.  A position whose Flank has no element has no field.
struct ElementLayout {
  struct Field {
    Position position;
    FlankNo flank;
    int offset = 0;         // bytes from the start of the record
    int width = 0;          // 1 to 4 bytes, little-endian
    ElementSlot firstSlot;  // the field holds slot - firstSlot + 1; 0 is no element
  };
  std::vector<Field> fields;   // in the order of the positions
  int ElementRecordWidth = 1;  // bytes
  std::int64_t ElementBlockRecords = 1;
  std::int64_t ElementBlockBytes = 1;
};

constexpr std::size_t kResponseRecordWidth = 10;
constexpr std::int64_t kResponseBlockRecords = 5000;

// A binary work file with the block of it that is in memory.
struct BlockedFile {
  std::unique_ptr<PositionedFile> file;
  std::vector<std::uint8_t> buffer;
  std::int64_t windowFirst = 1;   // first record in the buffer
  std::int64_t windowEnd = 1;     // one past the last
  std::int64_t NextPosition = 1;  // next file position, 1-based

  BlockedFile();
  ~BlockedFile();
  BlockedFile(BlockedFile&&) noexcept;
  BlockedFile& operator=(BlockedFile&&) noexcept;
};

struct WorkFiles {
  ElementLayout layout;
  BlockedFile elementFile;
  BlockedFile responseFile;
  std::int64_t records = 0;  // ValidResponses, as written
  std::unique_ptr<TextWorkFile> labelsFile;
  std::unique_ptr<TextWorkFile> statementsFile;
  std::unique_ptr<TextWorkFile> scaleFile;

  WorkFiles();
  ~WorkFiles();
  WorkFiles(WorkFiles&&) noexcept;
  WorkFiles& operator=(WorkFiles&&) noexcept;
};

}  // namespace flanks

#endif  // FLANKS_RUN_WORK_FILES_H
