#include "support/file_bytes.h"

#include <fstream>

namespace flanks {

std::string BytesOfFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::string bytes;
  char piece[65536];
  while (in.read(piece, sizeof piece), in.gcount() > 0)
    bytes.append(piece, static_cast<std::size_t>(in.gcount()));
  return bytes;
}

}  // namespace flanks
