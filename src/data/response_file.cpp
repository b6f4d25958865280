#include "data/response_file.h"

#include <algorithm>
#include <cassert>

#include "base/byte_order.h"
#include "data/blocked_file.h"

namespace flanks {

void OpenResponseFile(std::int64_t lineNumber, WorkFiles& work) {
  constexpr std::int64_t kBlockBytes =
      kResponseBlockRecords * static_cast<std::int64_t>(kResponseRecordWidth);
  work.records = 0;
  work.highestStructure = -1;
  OpenBlockedFile(work.responseFile, "responses", kBlockBytes, {"OpenResponseFile", lineNumber},
                  work.plan);
}

void WriteResponseRecord(const ResponseRecord& record, WorkFiles& work) {
  assert(record.replication > 0 && record.response >= 0 && record.response <= kLargestCategory);
  std::uint8_t* const to =
      NextRecord(work.responseFile, kResponseRecordWidth, kResponseBlockRecords);
  StoreLittle<std::int32_t>(to, record.structure.number());
  StoreLittle<float>(to + 4, record.replication);
  StoreLittle<std::int16_t>(to + 8, record.response);
  ++work.records;
  work.highestStructure = std::max(work.highestStructure, record.structure.number());
}

void FlushResponseRecords(WorkFiles& work) {
  FlushBlock(work.responseFile, kResponseRecordWidth);
}

}  // namespace flanks
