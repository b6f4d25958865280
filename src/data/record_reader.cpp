#include "data/record_reader.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <string>

#include "base/byte_order.h"
#include "data/blocked_file.h"

namespace flanks {

namespace {

// The window of the block form: what stays in a processor's second cache beside the batch at work.
constexpr std::int64_t kBlockWindowRecords = 8192;
constexpr std::int64_t kBlockWindowBytes = 262144;

std::size_t ElementWidth(const WorkFiles& work) {
  return static_cast<std::size_t>(work.layout.ElementRecordWidth);
}

// Makes `record` one of the window, which starts at it when it has to be read.
void EnsureRecord(BlockedFile& blocked, std::size_t width, std::int64_t record,
                  std::int64_t windowRecords, std::int64_t records) {
  assert(record >= 1 && record <= records);
  if (HasRecord(blocked, record)) return;
  LoadWindow(blocked, width, record, std::min(windowRecords, records - record + 1));
}

[[noreturn]] void ThrowBadElement(const WorkFiles& work, std::int64_t record) {
  ThrowWorkFileProblem(work.elementFile, " holds an element that its Flank does not have, record " +
                                             std::to_string(record));
}

[[noreturn]] void ThrowBadResponse(const WorkFiles& work, std::int64_t record) {
  ThrowWorkFileProblem(work.responseFile, " holds a response that was never written, record " +
                                              std::to_string(record));
}

bool IsPossible(const ResponseRecord& record, std::int32_t highestStructure) {
  const std::int32_t structure = record.structure.number();
  return structure >= 0 && structure <= highestStructure && record.response >= 0 &&
         record.response <= kLargestCategory && record.replication > 0 &&
         record.replication <= std::numeric_limits<float>::max();
}

ResponseRecord DecodeResponse(const std::uint8_t* from) {
  return {StructureRow(LoadLittle<std::int32_t>(from)), LoadLittle<float>(from + 4),
          LoadLittle<std::int16_t>(from + 8)};
}

// The fields of one width.  Returns whether one of them was larger than its Flank allows.
template <int kWidth>
bool DecodeFields(const RecordBlock& block, const ElementLayout::Field& field,
                  std::int32_t* slots) {
  const auto stride = static_cast<std::size_t>(block.work->layout.ElementRecordWidth);
  const auto count = static_cast<std::uint32_t>(field.count);
  const auto base = static_cast<std::uint32_t>(field.firstSlot.number() - 1);
  const std::uint8_t* from = block.elements + field.offset;
  std::uint32_t largest = 0;
  for (std::size_t i = 0; i < block.count; ++i, from += stride) {
    std::uint32_t value = from[0];
    if constexpr (kWidth > 1) value |= static_cast<std::uint32_t>(from[1]) << 8;
    if constexpr (kWidth > 2) value |= static_cast<std::uint32_t>(from[2]) << 16;
    if constexpr (kWidth > 3) value |= static_cast<std::uint32_t>(from[3]) << 24;
    largest = std::max(largest, value);
    slots[i] = value == 0 ? 0 : static_cast<std::int32_t>(value + base);
  }
  return largest > count;
}

}  // namespace

RecordReader::RecordReader(WorkFiles& work)
    : RecordElement(work.layout.positions, ElementSlot(0)), work_(work) {}

void RecordReader::ReadElementRecord(std::int64_t recordNumber) {
  if (recordNumber == current_) return;
  const std::size_t width = ElementWidth(work_);
  EnsureRecord(work_.elementFile, width, recordNumber, work_.layout.ElementBlockRecords, records());
  const std::uint8_t* const record = RecordIn(work_.elementFile, width, recordNumber);
  current_ = 0;
  for (const ElementLayout::Field& field : work_.layout.fields) {
    const auto value = static_cast<std::int64_t>(LoadLittle(record + field.offset, field.width));
    if (value > field.count) ThrowBadElement(work_, recordNumber);
    RecordElement[field.position] =
        value == 0 ? ElementSlot(0) : field.firstSlot + static_cast<std::int32_t>(value - 1);
  }
  current_ = recordNumber;
}

void RecordReader::ReadResponseRecord(std::int64_t recordNumber, ResponseRecord& record) {
  EnsureRecord(work_.responseFile, kResponseRecordWidth, recordNumber, kResponseBlockRecords,
               records());
  record = DecodeResponse(RecordIn(work_.responseFile, kResponseRecordWidth, recordNumber));
  if (!IsPossible(record, work_.highestStructure)) ThrowBadResponse(work_, recordNumber);
}

RecordBlock ReadRecordBlock(WorkFiles& work, std::int64_t first, std::size_t most) {
  const std::size_t width = ElementWidth(work);
  const std::int64_t bytes = static_cast<std::int64_t>(std::max(width, kResponseRecordWidth));
  const std::int64_t window =
      std::clamp<std::int64_t>(kBlockWindowBytes / bytes, 1, kBlockWindowRecords);
  EnsureRecord(work.elementFile, width, first, window, work.records);
  EnsureRecord(work.responseFile, kResponseRecordWidth, first, window, work.records);
  const std::int64_t end = std::min(work.elementFile.windowEnd, work.responseFile.windowEnd);
  const auto count = std::min(most, static_cast<std::size_t>(end - first));
  return {&work, first, count, RecordIn(work.elementFile, width, first),
          RecordIn(work.responseFile, kResponseRecordWidth, first)};
}

void DecodeElements(const RecordBlock& block, const ElementLayout::Field& field,
                    std::span<std::int32_t> slots) {
  assert(slots.size() >= block.count);
  bool bad = false;
  switch (field.width) {
    case 1:
      bad = DecodeFields<1>(block, field, slots.data());
      break;
    case 2:
      bad = DecodeFields<2>(block, field, slots.data());
      break;
    case 3:
      bad = DecodeFields<3>(block, field, slots.data());
      break;
    default:
      bad = DecodeFields<4>(block, field, slots.data());
      break;
  }
  if (!bad) return;
  const auto limit = static_cast<std::uint64_t>(field.count);
  for (std::size_t i = 0; i < block.count; ++i) {
    const std::uint8_t* const record = block.elements + i * ElementWidth(*block.work);
    if (LoadLittle(record + field.offset, field.width) > limit)
      ThrowBadElement(*block.work, block.first + static_cast<std::int64_t>(i));
  }
}

void DecodeResponses(const RecordBlock& block, std::span<std::int32_t> structures,
                     std::span<float> replications, std::span<std::int16_t> responses) {
  assert(structures.size() >= block.count && replications.size() >= block.count &&
         responses.size() >= block.count);
  const std::int32_t highest = block.work->highestStructure;
  const std::uint8_t* from = block.responses;
  bool good = true;
  for (std::size_t i = 0; i < block.count; ++i, from += kResponseRecordWidth) {
    const ResponseRecord record = DecodeResponse(from);
    structures[i] = record.structure.number();
    replications[i] = record.replication;
    responses[i] = record.response;
    good &= IsPossible(record, highest);
  }
  if (good) return;
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!IsPossible(DecodeResponse(block.responses + i * kResponseRecordWidth), highest))
      ThrowBadResponse(*block.work, block.first + static_cast<std::int64_t>(i));
  }
}

}  // namespace flanks
