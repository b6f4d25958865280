// The texts of .xls records: letters of one or two bytes, and the table of strings that cells
// share.
//
// Letters of one byte are the first 256 of Unicode.  The table is a record with others behind it
// that go on with it; a string may be cut anywhere in its letters, and what goes on may have
// letters of another width.  The layout is published: Microsoft's [MS-XLS].
//
// Tested by tests/unit/import/tables_test.cpp and fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_XLS_STRINGS_H
#define FLANKS_IMPORT_XLS_STRINGS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

enum class LetterWidth : unsigned char { one = 1, two = 2 };

// The first `count` letters of the bytes, or those that are there, as UTF-8.
std::string LettersText(std::string_view bytes, std::size_t count, LetterWidth width);

// The shared strings.  `pieces`: the data of their record behind its two counts, and of the records
// that go on with it.  A damaged table gives what was found up to there, of `most` at most.
std::vector<std::string> ReadSharedStrings(const std::vector<std::string_view>& pieces,
                                           std::size_t most);

}  // namespace flanks

#endif  // FLANKS_IMPORT_XLS_STRINGS_H
