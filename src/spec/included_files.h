// The files that a text file includes, found without reading it as a Specification or as data.
//
// The names of the output files are settled before the data are read, and an output file that is
// then an include file of the data would be emptied before anybody has read it.
//
// Tested by tests/unit/spec/included_files_test.cpp.
#ifndef FLANKS_SPEC_INCLUDED_FILES_H
#define FLANKS_SPEC_INCLUDED_FILES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

// Of one reader.  A list may hold lines that name its own file: the levels alone would let n such
// lines open it n to the 20th times.
constexpr std::size_t kMostIncludedFiles = 10000;

// The name in a line that includes a file, which begins with its "%" and may end in a comment.
std::string_view IncludedName(std::string_view line);

// The files that lie behind the "%" lines of `top` and of those files, each once, as the reader
// looks for them; a file that is not there is left out.  Names in more than 20 levels are found as
// well.  Only ordinary files are looked into: a pipe can be read only once.
std::vector<std::string> FindIncludedFiles(const std::string& top,
                                           const std::string& specificationFile);

}  // namespace flanks

#endif  // FLANKS_SPEC_INCLUDED_FILES_H
