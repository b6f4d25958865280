#include "output/library_sink.h"

namespace flanks {

ssize_t LibrarySink::TakeBytes(const void* data, std::size_t length, void* context) {
  auto& sink = *static_cast<LibrarySink*>(context);
  if (sink.failure_) return -1;
  try {
    sink.target_.Write({static_cast<const char*>(data), length});
    return static_cast<ssize_t>(length);
  } catch (...) {
    sink.failure_ = std::current_exception();
    return -1;
  }
}

void LibrarySink::Run(const std::function<void()>& work) {
  std::exception_ptr failure;
  try {
    work();
  } catch (...) {
    failure = std::current_exception();
  }
  if (failure_) std::rethrow_exception(failure_);
  if (failure) std::rethrow_exception(failure);
}

}  // namespace flanks
