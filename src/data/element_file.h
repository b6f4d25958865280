// The element work file: which element stands in each position of each response.
//
// A record has one field for each active position whose Flank has elements.  A field holds the
// element's place in its Flank (its slot less the Flank's first slot, plus 1), little-endian, in
// the fewest bytes that the Flank's number of elements allows; 0 is no element.  There is no
// header: record r stands at byte (r - 1) x ElementRecordWidth.  docs/formats/element-file.md has
// it byte by byte.
//
// PrepareElementFile once, WriteElementRecord for each valid response, FlushElementRecords at the
// end of the data pass; data/record_reader.h reads.
//
// Tested by tests/unit/data/element_file_test.cpp, tests/properties/work_files_test.cpp and
// tests/damage/work_files_test.cpp.
#ifndef FLANKS_DATA_ELEMENT_FILE_H
#define FLANKS_DATA_ELEMENT_FILE_H

#include <cstdint>

#include "base/column.h"
#include "run/design.h"
#include "run/faults.h"
#include "run/settings.h"
#include "run/work_files.h"

namespace flanks {

// The bytes of a field for a Flank of `elementCount` elements: 1 below 256, 2 below 65,536, 3 up to
// 16,777,215, else 4.  None for a Flank without elements.
int ElementFieldWidth(std::int32_t elementCount);

// How many records of a width make a block: as many as 64,000 bytes hold, at least one.
std::int64_t ElementBlockRecordsOf(int recordWidth);

// The fields of a record.  A record without fields is one byte wide all the same.
ElementLayout MakeElementLayout(const Design& design);

// Sets the layout and makes the file.  Fault: noActiveElements, when no position has a field and
// `Labels=Nobuild` is in force.  A file that cannot be made throws, as ThrowOpenFailure says, with
// the number of the line that the run is at.
[[nodiscard]] Fault PrepareElementFile(const Design& design, const Settings& settings,
                                       std::int64_t lineNumber, WorkFiles& work);

// Appends a record.  A status above 0 is an element's slot; any other is no element.
void WriteElementRecord(const Column<Position, std::int32_t>& PositionStatus, WorkFiles& work);

// Writes what is left in the buffer.
void FlushElementRecords(WorkFiles& work);

}  // namespace flanks

#endif  // FLANKS_DATA_ELEMENT_FILE_H
