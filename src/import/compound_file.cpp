#include "import/compound_file.h"

#include <algorithm>
#include <vector>

namespace flanks {
namespace {

constexpr std::uint32_t kLastSector = 0xFFFFFFFA;  // this and beyond are marks, not sectors
constexpr std::size_t kHeaderBytes = 512;
constexpr std::size_t kEntryBytes = 128;
constexpr std::size_t kListedInHeader = 109;

class CompoundFile {
 public:
  explicit CompoundFile(std::string_view file);
  // The stream of this name, written with two bytes to a letter.
  std::string Stream(std::string_view wideName) const;
  bool IsBrokenOff() const;

 private:
  std::string_view Sector(std::uint32_t number) const;
  void ReadSectorTable();
  std::string Chain(std::uint32_t first, std::size_t most) const;
  std::string SmallChain(std::uint32_t first, std::size_t size, std::string_view top) const;

  std::string_view file_;
  std::size_t sectorBytes_ = 512;
  std::size_t smallBytes_ = 64;
  std::size_t smallLimit_ = 4096;
  std::string next_;  // for each sector the one that follows it, 4 bytes each
};

CompoundFile::CompoundFile(std::string_view file) : file_(file) {
  const std::uint16_t shift = ShortAt(file, 30), smallShift = ShortAt(file, 32);
  if (file.size() < kHeaderBytes || (shift != 9 && shift != 12) || smallShift != 6) {
    file_ = {};
    return;
  }
  sectorBytes_ = std::size_t{1} << shift;
  smallLimit_ = WordAt(file, 56);
  ReadSectorTable();
}

std::string_view CompoundFile::Sector(std::uint32_t number) const {
  const std::size_t start = (std::size_t{number} + 1) * sectorBytes_;
  if (number >= kLastSector || start >= file_.size()) return {};
  return file_.substr(start, sectorBytes_);
}

// The sectors of the table are listed in the header, and behind it in a chain of lists.
void CompoundFile::ReadSectorTable() {
  const std::size_t most = file_.size() / sectorBytes_;
  std::vector<std::uint32_t> listed;
  for (std::size_t i = 0; i < kListedInHeader; ++i) listed.push_back(WordAt(file_, 76 + 4 * i));
  std::uint32_t list = WordAt(file_, 68);
  for (std::size_t i = 0; i < most && list < kLastSector; ++i) {
    const std::string_view sector = Sector(list);
    for (std::size_t at = 0; at + 8 <= sector.size(); at += 4) listed.push_back(WordAt(sector, at));
    list = sector.size() < sectorBytes_ ? kLastSector : WordAt(sector, sectorBytes_ - 4);
  }
  for (const std::uint32_t number : listed) {
    if (number >= kLastSector || next_.size() / 4 > most) break;
    next_ += Sector(number);
  }
}

std::string CompoundFile::Chain(std::uint32_t first, std::size_t most) const {
  std::string bytes;
  most = std::min(most, file_.size());
  for (std::uint32_t at = first; at < kLastSector && bytes.size() < most;) {
    const std::string_view sector = Sector(at);
    if (sector.empty()) break;
    bytes += sector;
    if (std::size_t{at} * 4 >= next_.size()) break;
    at = WordAt(next_, std::size_t{at} * 4);
  }
  if (bytes.size() > most) bytes.resize(most);
  return bytes;
}

// A small stream lies in pieces within the stream of the top entry.
std::string CompoundFile::SmallChain(std::uint32_t first, std::size_t size,
                                     std::string_view top) const {
  const std::string next = Chain(WordAt(file_, 60), file_.size());
  size = std::min(size, file_.size());
  std::string bytes;
  for (std::uint32_t at = first; at < kLastSector && bytes.size() < size;) {
    const std::size_t start = std::size_t{at} * smallBytes_;
    if (start >= top.size()) break;
    bytes += top.substr(start, smallBytes_);
    if (std::size_t{at} * 4 >= next.size()) break;
    at = WordAt(next, std::size_t{at} * 4);
  }
  if (bytes.size() > size) bytes.resize(size);
  return bytes;
}

std::string CompoundFile::Stream(std::string_view wideName) const {
  if (file_.empty()) return {};
  const std::string entries = Chain(WordAt(file_, 48), file_.size());
  const std::string_view all(entries);
  for (std::size_t at = 0; at + kEntryBytes <= all.size(); at += kEntryBytes) {
    const std::string_view entry = all.substr(at, kEntryBytes);
    const std::string_view name = entry.substr(0, std::min<std::size_t>(ShortAt(entry, 64), 64));
    if (name != wideName) continue;
    const std::uint32_t first = WordAt(entry, 116), size = WordAt(entry, 120);
    if (size >= smallLimit_) return Chain(first, size);
    const std::string top = Chain(WordAt(all, 116), WordAt(all, 120));
    return SmallChain(first, size, top);
  }
  return {};
}

bool CompoundFile::IsBrokenOff() const {
  constexpr std::uint32_t kFreeSector = 0xFFFFFFFF;
  for (std::size_t at = next_.size() / 4; at-- > 0;)
    if (WordAt(next_, 4 * at) != kFreeSector) return (at + 2) * sectorBytes_ > file_.size();
  return false;
}

}  // namespace

std::string WorkbookStream(std::string_view file) {
  constexpr std::string_view kName("W\0o\0r\0k\0b\0o\0o\0k\0\0\0", 18);
  constexpr std::string_view kFormerName("B\0o\0o\0k\0\0\0", 10);
  const CompoundFile compound(file);
  std::string stream = compound.Stream(kName);
  return stream.empty() ? compound.Stream(kFormerName) : stream;
}

bool IsBrokenOff(std::string_view file) {
  return CompoundFile(file).IsBrokenOff();
}

}  // namespace flanks
