// The work files of a run as owned things: file, buffer, window, record layout.
//
// Observations are never held in memory.  The data pass writes two binary files, record r of which
// belongs to the same response: the element file (which element stands in each position) and the
// response file (structure, replication, category).  Every later pass reads them in record order.
// Three text files hold the `Labels=`, `Models=` and `Rating (or partial credit) scale=` lists
// until their tables are built.  What is done with them is in data/ and spec/; the formats are
// described byte by byte in docs/formats/.  The files vanish with this object.
//
// Tested by tests/unit/data/ and tests/damage/work_files_test.cpp.
#ifndef FLANKS_RUN_WORK_FILES_H
#define FLANKS_RUN_WORK_FILES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/column.h"
#include "base/positioned_file.h"
#include "base/temp_file.h"
#include "base/text_work_file.h"
#include "run/design.h"

namespace flanks {

// Where the fields of an element record stand.  A position whose Flank has no element has no field.
struct ElementLayout {
  struct Field {
    Position position;
    FlankNo flank;
    int offset = 0;          // bytes from the start of the record
    int width = 0;           // 1 to 4 bytes, little-endian
    ElementSlot firstSlot;   // the field holds slot - firstSlot + 1; 0 is no element
    std::int32_t count = 0;  // slots of the Flank: the largest value that the field may hold
  };
  std::vector<Field> fields;   // in the order of the positions
  std::int32_t positions = 0;  // active positions, with a field or without
  int ElementRecordWidth = 1;  // bytes
  std::int64_t ElementBlockRecords = 1;
  std::int64_t ElementBlockBytes = 1;
};

constexpr std::size_t kResponseRecordWidth = 10;
constexpr std::int64_t kResponseBlockRecords = 5000;

// A binary work file with the block of it that is in memory.
struct BlockedFile {
  TempFile temp;  // first, so that the file is closed before it is removed
  PositionedFile file;
  std::vector<std::uint8_t> buffer;
  std::int64_t windowFirst = 1;   // first record in the buffer
  std::int64_t windowEnd = 1;     // one past the last
  std::int64_t NextPosition = 1;  // next file position, 1-based
};

struct WorkFiles {
  ElementLayout layout;
  BlockedFile elementFile;
  BlockedFile responseFile;
  std::int64_t records = 0;            // ValidResponses, as written
  std::int32_t highestStructure = -1;  // in the response file; no record may hold a higher one
  std::unique_ptr<TextWorkFile> labelsFile;
  std::unique_ptr<TextWorkFile> statementsFile;
  std::unique_ptr<TextWorkFile> scaleFile;
  TempFile importedData;  // the data as text, where `Data=` names no text file
  FileFaultPlan* plan = nullptr;  // how the disk is to fail; in tests only
};

// Makes a text work file.  A failure throws, as ThrowOpenFailure says.
std::unique_ptr<TextWorkFile> OpenTextWorkFile(WorkFiles& work, std::string_view title,
                                               std::string_view caller, std::int64_t lineNumber);

// A file of the run that cannot be created, thrown as a ProgramFault: "File open failure for NAME
// in CALLER at or near line 12 is code 13: the system's words".
[[noreturn]] void ThrowOpenFailure(const std::string& name, std::string_view caller,
                                   std::int64_t lineNumber, std::error_code code);

}  // namespace flanks

#endif  // FLANKS_RUN_WORK_FILES_H
