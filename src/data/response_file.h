// The response work file: structure, replication and category of each response.
//
// Records of 10 bytes, little-endian: a 32-bit structure row, a 32-bit float replication, a 16-bit
// category.  There is no header: record r stands at byte (r - 1) x 10, and belongs to the response
// of record r of the element file.  docs/formats/response-file.md has it byte by byte.
//
// OpenResponseFile once, WriteResponseRecord for each valid response, FlushResponseRecords at the
// end of the data pass; data/record_reader.h reads.
//
// Tested by tests/unit/data/response_file_test.cpp, tests/properties/work_files_test.cpp and
// tests/damage/work_files_test.cpp.
#ifndef FLANKS_DATA_RESPONSE_FILE_H
#define FLANKS_DATA_RESPONSE_FILE_H

#include <cstdint>

#include "run/scale_tables.h"
#include "run/work_files.h"

namespace flanks {

struct ResponseRecord {
  StructureRow structure;
  float replication = 1.0f;   // above 0
  std::int16_t response = 0;  // the category after recoding, 0 to kLargestCategory

  bool operator==(const ResponseRecord&) const = default;
};

// Makes the file and starts the count of records.  A file that cannot be made throws, as
// ThrowOpenFailure says, with the number of the line that the run is at.
void OpenResponseFile(std::int64_t lineNumber, WorkFiles& work);

// Appends a record and counts it.
void WriteResponseRecord(const ResponseRecord& record, WorkFiles& work);

// Writes what is left in the buffer.
void FlushResponseRecords(WorkFiles& work);

}  // namespace flanks

#endif  // FLANKS_DATA_RESPONSE_FILE_H
