// Compound files, the small file systems of sectors that .xls workbooks are.
//
// The layout is published: Microsoft's [MS-CFB].  A file that is none, or a damaged one, gives what
// was found up to there.
//
// Tested by tests/unit/import/tables_test.cpp and fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_COMPOUND_FILE_H
#define FLANKS_IMPORT_COMPOUND_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/byte_order.h"

namespace flanks {

// The number that stands at this byte, little end first; 0 when not all of it is there.
template <typename Number>
Number NumberAt(std::string_view bytes, std::size_t at) {
  if (at > bytes.size() || bytes.size() - at < sizeof(Number)) return {};
  return LoadLittle<Number>(reinterpret_cast<const std::uint8_t*>(bytes.data() + at));
}

inline std::uint32_t WordAt(std::string_view bytes, std::size_t at) {
  return NumberAt<std::uint32_t>(bytes, at);
}
inline std::uint16_t ShortAt(std::string_view bytes, std::size_t at) {
  return NumberAt<std::uint16_t>(bytes, at);
}

// The stream "Workbook" of the compound file with these bytes; empty when there is none.
std::string WorkbookStream(std::string_view file);

// Whether sectors that are in use lie behind the end of the compound file with these bytes.
bool IsBrokenOff(std::string_view file);

}  // namespace flanks

#endif  // FLANKS_IMPORT_COMPOUND_FILE_H
