#include "import/unpacked_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <system_error>

#ifdef FLANKS_HAS_ZLIB
#include <zlib.h>
#endif
#ifdef FLANKS_HAS_BZIP2
#include <bzlib.h>
#endif
#ifdef FLANKS_HAS_LZMA
#include <lzma.h>
#endif

#include "base/positioned_file.h"

namespace flanks {
namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 18;
constexpr std::int64_t kBroken = -1;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
// Puts unpacked bytes at `to` and gives their number: 0 at the end, kBroken on damage.
using Read = std::function<std::int64_t(char* to, std::size_t room)>;

std::string StartOf(const std::string& name) {
  std::array<char, 6> bytes{};
  const File file(std::fopen(name.c_str(), "rb"), std::fclose);
  const std::size_t taken =
      file == nullptr ? 0 : std::fread(bytes.data(), 1, bytes.size(), file.get());
  return {bytes.data(), taken};
}

// Copies what `read` gives into `scratch`.
[[maybe_unused]] std::string Unpack(const Read& read, const std::string& scratch,
                                    std::int64_t most) {
  const File out(std::fopen(scratch.c_str(), "wb"), std::fclose);
  if (out == nullptr) return LastFileError().message();
  std::string block(kBlockBytes, '\0');
  for (std::int64_t all = 0;;) {
    const std::int64_t taken = read(block.data(), block.size());
    if (taken == kBroken) return "it is damaged or broken off";
    if (taken == 0) break;
    all += taken;
    if (all > most) return "it unpacks to far more than data do";
    const auto bytes = static_cast<std::size_t>(taken);
    if (std::fwrite(block.data(), 1, bytes, out.get()) != bytes) return LastFileError().message();
  }
  return std::fflush(out.get()) == 0 ? "" : LastFileError().message();
}

[[maybe_unused]] ConversionEnd EndOf(const std::string& reason) {
  return reason.empty() ? ConversionEnd{} : ConversionFailed(reason);
}

#ifdef FLANKS_HAS_ZLIB
ConversionEnd UnpackGzip(const std::string& packed, const std::string& scratch, std::int64_t most) {
  const std::unique_ptr<gzFile_s, int (*)(gzFile)> file(gzopen(packed.c_str(), "rb"), gzclose);
  if (file == nullptr) return ConversionFailed(LastFileError().message());
  const Read read = [&file](char* to, std::size_t room) -> std::int64_t {
    const int taken = gzread(file.get(), to, static_cast<unsigned>(room));
    int code = Z_OK;
    gzerror(file.get(), &code);
    return taken < 0 || code == Z_BUF_ERROR || code == Z_DATA_ERROR ? kBroken : taken;
  };
  return EndOf(Unpack(read, scratch, most));
}
#else
ConversionEnd UnpackGzip(const std::string&, const std::string&, std::int64_t) {
  return WithoutModule("zlib");
}
#endif

#ifdef FLANKS_HAS_BZIP2
ConversionEnd UnpackBzip2(const std::string& packed, const std::string& scratch,
                          std::int64_t most) {
  const std::unique_ptr<BZFILE, void (*)(BZFILE*)> file(BZ2_bzopen(packed.c_str(), "rb"),
                                                        BZ2_bzclose);
  if (file == nullptr) return ConversionFailed(LastFileError().message());
  const Read read = [&file](char* to, std::size_t room) -> std::int64_t {
    const int taken = BZ2_bzread(file.get(), to, static_cast<int>(room));
    return taken < 0 ? kBroken : taken;
  };
  return EndOf(Unpack(read, scratch, most));
}
#else
ConversionEnd UnpackBzip2(const std::string&, const std::string&, std::int64_t) {
  return WithoutModule("bzip2");
}
#endif

#ifdef FLANKS_HAS_LZMA
// Unpacks a file of several streams one behind the other as well.
class XzReader {
 public:
  explicit XzReader(const std::string& name) : file_(std::fopen(name.c_str(), "rb"), std::fclose) {
    constexpr std::uint64_t kMostMemory = std::uint64_t{1} << 28;
    good_ = file_ != nullptr &&
            lzma_stream_decoder(&stream_, kMostMemory, LZMA_CONCATENATED) == LZMA_OK;
  }
  XzReader(const XzReader&) = delete;
  XzReader& operator=(const XzReader&) = delete;
  ~XzReader() { lzma_end(&stream_); }

  std::int64_t Read(char* to, std::size_t room) {
    if (!good_) return kBroken;
    stream_.next_out = reinterpret_cast<std::uint8_t*>(to);
    stream_.avail_out = room;
    while (stream_.avail_out > 0 && !ended_) {
      if (stream_.avail_in == 0) {
        stream_.next_in = input_.data();
        stream_.avail_in = std::fread(input_.data(), 1, input_.size(), file_.get());
      }
      const lzma_ret code = lzma_code(&stream_, stream_.avail_in == 0 ? LZMA_FINISH : LZMA_RUN);
      ended_ = code == LZMA_STREAM_END;
      if (!ended_ && code != LZMA_OK) return kBroken;
    }
    return static_cast<std::int64_t>(room - stream_.avail_out);
  }

 private:
  File file_;
  lzma_stream stream_ = LZMA_STREAM_INIT;
  std::array<std::uint8_t, 65536> input_;
  bool good_ = false;
  bool ended_ = false;
};

ConversionEnd UnpackXz(const std::string& packed, const std::string& scratch, std::int64_t most) {
  XzReader reader(packed);
  return EndOf(Unpack([&reader](char* to, std::size_t room) { return reader.Read(to, room); },
                      scratch, most));
}
#else
ConversionEnd UnpackXz(const std::string&, const std::string&, std::int64_t) {
  return WithoutModule("liblzma");
}
#endif

}  // namespace

ConversionEnd UnpackFile(const std::string& packed, const std::string& scratch,
                         const UnpackLimits& limits, std::string& file) {
  const std::string start = StartOf(packed);
  std::error_code error;
  const auto size = static_cast<std::int64_t>(std::filesystem::file_size(packed, error));
  if (error) return ConversionFailed(error.message());
  const std::int64_t most = std::min(limits.bytes, std::max(limits.anyway, size * limits.times));
  file = scratch;
  if (start.starts_with("\x1f\x8b")) return UnpackGzip(packed, scratch, most);
  if (start.starts_with("BZh")) return UnpackBzip2(packed, scratch, most);
  if (start == std::string_view("\xFD"
                                "7zXZ\0",
                                6))
    return UnpackXz(packed, scratch, most);
  file = packed;
  return {};
}

}  // namespace flanks
