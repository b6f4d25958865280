// Imported text that is kept in memory, for the targets of the importer.
#ifndef FLANKS_FUZZ_GATHERED_IMPORT_H
#define FLANKS_FUZZ_GATHERED_IMPORT_H

#include <string>
#include <string_view>

#include "import/import_text.h"

namespace flanks {

// Of a design with one position, where 9 is a missing code.
struct GatheredImport {
  GatheredImport() = default;
  GatheredImport(const GatheredImport&) = delete;
  GatheredImport& operator=(const GatheredImport&) = delete;

  std::string written;
  const ConversionWatch watch{};
  ImportText text{{1, ",9,"}, watch, [this](std::string_view piece) {
                    written += piece;
                    return true;
                  }};
};

}  // namespace flanks

#endif  // FLANKS_FUZZ_GATHERED_IMPORT_H
