// The project's own files, as the tests of its architecture read them.
//
// Names are relative to the top of the project with "/" between folders: "src/base/column.h".
// FLANKS_SOURCE_DIR is set by the build.

#ifndef FLANKS_TESTS_SUPPORT_SOURCE_TREE_H
#define FLANKS_TESTS_SUPPORT_SOURCE_TREE_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

// Name and contents of each file, sorted by name.
using SourceTree = std::map<std::string, std::string>;

// Every file below `folder` ("src", or "" for the whole project) whose name ends in one of
// `endings`; all files when there are none.  Build folders and version control are left out.
SourceTree ReadSourceTree(std::string_view folder, const std::vector<std::string>& endings);

// The lines of a text without their ends; "a\nb\n" has two.
std::vector<std::string> LinesOf(std::string_view text);

// A C++ text of the same length and the same lines in which comments, character and string
// literals (raw ones too) are blanks, so that braces and words in them do not count.
std::string WithoutCommentsAndLiterals(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_SOURCE_TREE_H
