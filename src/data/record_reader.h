// Reading the work files back: record r of both files made current.
//
// Every pass over the observations loops r from 1 to `records()`.  There are two forms, which see
// the same records:
//
//   RecordReader reader(work);                        // one by one
//   for (std::int64_t r = 1; r <= reader.records(); ++r) {
//     reader.ReadResponseRecord(r, record);
//     reader.ReadElementRecord(r);                    // reader.RecordElement[position]
//   }
//
//   for (std::int64_t r = 1; r <= work.records;) {    // in blocks, for the passes of the
//   estimation
//     const RecordBlock block = ReadRecordBlock(work, r, batch);
//     DecodeResponses(block, structures, replications, categories);
//     DecodeElements(block, field, slots);            // for each of work.layout.fields
//     r += block.count;
//   }
//
// Records are taken from the buffers of the work files, which hold a window on each file; a record
// outside makes a new window that starts at it.  Reading in order costs one read for each window,
// and so does each jump.  The block form uses a larger window.  Neither form allocates once a
// window of each size has been read.
//
// What a record may hold is checked where it is decoded, so that a damaged file cannot lead a pass
// outside its tables: a slot that its Flank does not have, a structure that was never written, a
// replication or a category out of range throws (data/blocked_file.h says what).
//
// Tested by tests/unit/data/record_reader_test.cpp, tests/properties/work_files_test.cpp and
// tests/damage/work_files_test.cpp.
#ifndef FLANKS_DATA_RECORD_READER_H
#define FLANKS_DATA_RECORD_READER_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/column.h"
#include "data/response_file.h"
#include "run/design.h"
#include "run/work_files.h"

namespace flanks {

class RecordReader {
 public:
  explicit RecordReader(WorkFiles& work);

  std::int64_t records() const { return work_.records; }

  // Makes the elements of a record current, 1 to records().  Returns at once when they are.
  void ReadElementRecord(std::int64_t recordNumber);
  void ReadResponseRecord(std::int64_t recordNumber, ResponseRecord& record);

  // The current record: the element's slot in each active position; slot 0 is no element.
  Column<Position, ElementSlot> RecordElement;

 private:
  WorkFiles& work_;
  std::int64_t current_ = 0;
};

// Records first to first + count - 1 as they lie in the buffers.  Valid until anything else is read
// from the work files.
struct RecordBlock {
  const WorkFiles* work = nullptr;
  std::int64_t first = 1;
  std::size_t count = 0;
  const std::uint8_t* elements = nullptr;   // ElementRecordWidth bytes each
  const std::uint8_t* responses = nullptr;  // kResponseRecordWidth bytes each
};

// The records from `first` on, as many as one window holds of them, and at most `most`; at least
// one.
RecordBlock ReadRecordBlock(WorkFiles& work, std::int64_t first, std::size_t most);

// The slots in one position, one for each record of the block; 0 is no element.
void DecodeElements(const RecordBlock& block, const ElementLayout::Field& field,
                    std::span<std::int32_t> slots);

// The three fields of the responses, one for each record of the block.
void DecodeResponses(const RecordBlock& block, std::span<std::int32_t> structures,
                     std::span<float> replications, std::span<std::int16_t> responses);

}  // namespace flanks

#endif  // FLANKS_DATA_RECORD_READER_H
