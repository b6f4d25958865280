// A packed file unpacked into another one: gzip, bzip2 and xz, by its first bytes.
//
// R packs what it saves.  What unpacks to far more than data do is broken off.  Of a build without
// one of the libraries the file says which.
//
// Tested by tests/unit/import/tables_test.cpp and fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_UNPACKED_FILE_H
#define FLANKS_IMPORT_UNPACKED_FILE_H

#include <cstdint>
#include <string>

#include "import/conversion.h"

namespace flanks {

struct UnpackLimits {
  std::int64_t bytes = std::int64_t{1} << 32;   // of the unpacked file
  std::int64_t anyway = std::int64_t{1} << 26;  // so much may come out of a small file
  std::int64_t times = 200;                     // beyond that, so many times its size
};

// Unpacks `packed` into `scratch` and puts the name of the file to be read into `file`: `packed`
// itself when it is not packed.
ConversionEnd UnpackFile(const std::string& packed, const std::string& scratch,
                         const UnpackLimits& limits, std::string& file);

}  // namespace flanks

#endif  // FLANKS_IMPORT_UNPACKED_FILE_H
