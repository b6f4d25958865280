#include "data/element_file.h"

#include <algorithm>
#include <cassert>

#include "data/blocked_file.h"

namespace flanks {

namespace {

constexpr std::int64_t kBlockBytes = 64000;

std::size_t RecordWidth(const WorkFiles& work) {
  return static_cast<std::size_t>(work.layout.ElementRecordWidth);
}

}  // namespace

int ElementFieldWidth(std::int32_t elementCount) {
  if (elementCount <= 0) return 0;
  if (elementCount < 256) return 1;
  if (elementCount < 65536) return 2;
  return elementCount <= 16777215 ? 3 : 4;
}

std::int64_t ElementBlockRecordsOf(int recordWidth) {
  return std::max<std::int64_t>(kBlockBytes / recordWidth, 1);
}

ElementLayout MakeElementLayout(const Design& design) {
  ElementLayout layout;
  layout.positions = design.maps.ModelFlank.rows();
  int width = 0;
  for (const Position position : Upward(design.maps.ModelFlank)) {
    const FlankNo flank = design.maps.ModelFlank[position];
    if (!design.flanks.FlankElementCount.has(flank)) continue;
    const std::int32_t count = design.flanks.FlankElementCount[flank];
    const int fieldWidth = ElementFieldWidth(count);
    if (fieldWidth == 0) continue;
    layout.fields.push_back(
        {position, flank, width, fieldWidth, design.flanks.FlankFirstSlot[flank], count});
    width += fieldWidth;
  }
  layout.ElementRecordWidth = std::max(width, 1);
  layout.ElementBlockRecords = ElementBlockRecordsOf(layout.ElementRecordWidth);
  layout.ElementBlockBytes = layout.ElementBlockRecords * layout.ElementRecordWidth;
  return layout;
}

Fault PrepareElementFile(const Design& design, const Settings& settings, std::int64_t lineNumber,
                         WorkFiles& work) {
  work.layout = MakeElementLayout(design);
  if (work.layout.fields.empty() && settings.labelsNobuild) return Fault::noActiveElements;
  OpenBlockedFile(work.elementFile, "elements", work.layout.ElementBlockBytes,
                  {"PrepareElementFile", lineNumber}, work.plan);
  return Fault::none;
}

void WriteElementRecord(const Column<Position, std::int32_t>& PositionStatus, WorkFiles& work) {
  std::uint8_t* const record =
      NextRecord(work.elementFile, RecordWidth(work), work.layout.ElementBlockRecords);
  for (const ElementLayout::Field& field : work.layout.fields) {
    const std::int32_t status = PositionStatus[field.position];
    std::uint32_t value = 0;
    if (status > 0) value = static_cast<std::uint32_t>(status - field.firstSlot.number() + 1);
    assert(value <= static_cast<std::uint32_t>(field.count));
    std::uint8_t* const to = record + field.offset;
    for (int i = 0; i < field.width; ++i, value >>= 8) to[i] = static_cast<std::uint8_t>(value);
  }
}

void FlushElementRecords(WorkFiles& work) {
  FlushBlock(work.elementFile, RecordWidth(work));
}

}  // namespace flanks
