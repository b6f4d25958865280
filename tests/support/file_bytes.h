// A whole file as the bytes it has.
#ifndef FLANKS_TESTS_SUPPORT_FILE_BYTES_H
#define FLANKS_TESTS_SUPPORT_FILE_BYTES_H

#include <filesystem>
#include <string>

namespace flanks {

// Empty when there is no such file.
std::string BytesOfFile(const std::filesystem::path& file);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_FILE_BYTES_H
