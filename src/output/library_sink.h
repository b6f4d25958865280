// Where the bytes of a library go that writes a file: into the file that replaces a former one.
//
// The libraries are C, so no exception may pass through them: what the disk says waits here until
// the library has returned.
//
//   LibrarySink sink(target);
//   ... give the library LibrarySink::TakeBytes, and &sink as its context ...
//   sink.Run([&] { the calls of the library });
//
// Tested by tests/unit/output/hand_offs_test.cpp.
#ifndef FLANKS_OUTPUT_LIBRARY_SINK_H
#define FLANKS_OUTPUT_LIBRARY_SINK_H

#include <cstddef>
#include <exception>
#include <functional>
#include <sys/types.h>

#include "base/replaced_file.h"

namespace flanks {

class LibrarySink {
 public:
  // The target must outlive the sink.
  explicit LibrarySink(ReplacedFile& target) : target_(target) {}

  // The library's callback; `context` is the sink.  Gives the length, or -1 after a failure.
  static ssize_t TakeBytes(const void* data, std::size_t length, void* context);

  // Does the work.  Throws what the disk said, and only otherwise what the work threw: the library
  // may have gone on with other words.
  void Run(const std::function<void()>& work);

 private:
  ReplacedFile& target_;
  std::exception_ptr failure_;
};

}  // namespace flanks

#endif  // FLANKS_OUTPUT_LIBRARY_SINK_H
