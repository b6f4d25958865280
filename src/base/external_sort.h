// Sorting the lines of a text work file that may be far larger than memory.
//
//   std::unique_ptr<TextWorkFile> file = ...;           // all lines written
//   SortOptions options{.column = 17};
//   if (!ExternalSort(options, file)) return;           // stopped: there is no file any more
//   while (file->ReadLine(line)) ...                    // in order
//
// Lines are compared as bytes from a column on; lines that are equal there keep their order.  A
// block of lines at a time is sorted in memory and written to a file of its own, a run; runs are
// merged, so many at once, until one is left (D. E. Knuth, The Art of Computer Programming, volume
// 3, section 5.4).  Memory is one block and a buffer for each run of a merge, whatever the number
// of lines; on disk stand, at the worst, the lines twice.
//
// Failures of the files throw a std::system_error that names the file.
//
// Tested by tests/unit/base/external_sort_test.cpp.
#ifndef FLANKS_BASE_EXTERNAL_SORT_H
#define FLANKS_BASE_EXTERNAL_SORT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "base/text_work_file.h"

namespace flanks {

struct SortOptions {
  std::size_t column = 1;                          // from 1 on; 0 stands for 1
  std::size_t blockBytes = std::size_t{32} << 20;  // of text in memory; less in tests
  std::size_t runsAtOnce = 64;                     // of a merge, 2 or more
  // Asked once in a while with the lines that have been read or put into their last order, of twice
  // the number of lines; true ends the sort.
  std::function<bool(std::int64_t)> isStopped = [](std::int64_t) { return false; };
  FileFaultPlan* plan = nullptr;  // how the disk is to fail; in tests only
};

// Puts a sorted file, rewound, in the place of `file`.  False when it was stopped; there is none
// then.
[[nodiscard]] bool ExternalSort(const SortOptions& options, std::unique_ptr<TextWorkFile>& file);

}  // namespace flanks

#endif  // FLANKS_BASE_EXTERNAL_SORT_H
