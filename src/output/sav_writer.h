// Tables as SPSS files (.sav), made of the text form with three head lines.
//
// That text: a line with the number of header rows, then names, labels and format values of the
// variables, then one line for each case; always tab-separated.  A format value is -4 for a number
// with decimals, 0 for a whole number, the value of `Uscale` for a measure in user units; for a
// text variable, which is told by its name's ending in "-Label", it is the length of the longest
// text.  "-" may not stand in a name of SPSS and becomes "_".
//
// Whole numbers are nominal, but for categories, which are ordinal; measures are scale.  Title,
// program and date stand in the file label and in the documents of the file.
//
// Uses ReadStat; a build without it writes nothing and says so.
//
// Tested by tests/unit/output/hand_offs_test.cpp and, read back by PSPP, by
// tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_SAV_WRITER_H
#define FLANKS_OUTPUT_SAV_WRITER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "base/replaced_file.h"
#include "output/tab_text.h"

namespace flanks {

constexpr std::size_t kSavTextBytes = 32'767;  // that a text of SPSS holds

struct SavEnd {
  WriteEnd end = WriteEnd::complete;
  std::int64_t cutCells = 0;  // texts longer than that
};

// Writes the table of `source` to `target`; the caller commits.  Throws a std::runtime_error or
// std::system_error with the reason.
SavEnd WriteSav(const TableSource& source, const FileStamp& stamp, ReplacedFile& target);

// The name of a variable as SPSS takes it.
std::string SavName(std::string_view name);
// Title, program and date in the 64 bytes of a file label; a long title is cut.
std::string SavFileLabel(const FileStamp& stamp);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_SAV_WRITER_H
