#include "import/xls_strings.h"

#include <algorithm>
#include <cstdint>

#include "base/utf8_text.h"
#include "import/compound_file.h"

namespace flanks {
namespace {

constexpr char32_t kFirstHigh = 0xD800, kFirstLow = 0xDC00, kBehindPairs = 0xE000;
constexpr char32_t kFirstOfPairs = 0x10000;

// What the flags of a string say.
constexpr unsigned kWide = 1, kHasExtension = 4, kHasRuns = 8;
constexpr std::size_t kBytesOfRun = 4;

std::string Utf8Of(std::u16string_view units) {
  std::string text;
  for (std::size_t at = 0; at < units.size(); ++at) {
    char32_t code = units[at];
    const bool high = code >= kFirstHigh && code < kFirstLow && at + 1 < units.size();
    if (const char32_t low = high ? units[at + 1] : 0; low >= kFirstLow && low < kBehindPairs) {
      code = kFirstOfPairs + ((code - kFirstHigh) << 10) + (low - kFirstLow);
      ++at;
    }
    AppendUtf8(code, text);
  }
  return text;
}

LetterWidth WidthOf(unsigned flags) {
  return flags & kWide ? LetterWidth::two : LetterWidth::one;
}

std::u16string Units(std::string_view bytes, std::size_t count, LetterWidth width) {
  const auto step = static_cast<std::size_t>(width);
  count = std::min(count, bytes.size() / step);
  std::u16string units;
  for (std::size_t i = 0; i < count; ++i)
    units += static_cast<char16_t>(
        width == LetterWidth::two ? ShortAt(bytes, 2 * i) : static_cast<unsigned char>(bytes[i]));
  return units;
}

// Reads on from piece to piece.
class Pieces {
 public:
  explicit Pieces(const std::vector<std::string_view>& pieces) : pieces_(pieces) {}

  // Whether no byte is left.
  bool AtEnd();
  // A number of 1 to 4 bytes.
  std::uint32_t Number(int bytes);
  void Skip(std::uint64_t bytes);
  std::u16string Letters(std::size_t count, LetterWidth width);

 private:
  std::string_view rest() const { return pieces_[piece_].substr(at_); }

  const std::vector<std::string_view>& pieces_;
  std::size_t piece_ = 0;
  std::size_t at_ = 0;
};

bool Pieces::AtEnd() {
  for (; piece_ < pieces_.size(); ++piece_, at_ = 0)
    if (at_ < pieces_[piece_].size()) return false;
  return true;
}

std::uint32_t Pieces::Number(int bytes) {
  std::uint32_t number = 0;
  for (int i = 0; i < bytes && !AtEnd(); ++i)
    number |= std::uint32_t{static_cast<unsigned char>(pieces_[piece_][at_++])} << (8 * i);
  return number;
}

void Pieces::Skip(std::uint64_t bytes) {
  while (bytes > 0 && !AtEnd()) {
    const std::uint64_t here = std::min<std::uint64_t>(bytes, rest().size());
    at_ += static_cast<std::size_t>(here);
    bytes -= here;
  }
}

// A piece that goes on within the letters begins with flags of its own.
std::u16string Pieces::Letters(std::size_t count, LetterWidth width) {
  std::u16string units;
  while (units.size() < count && piece_ < pieces_.size()) {
    const std::u16string here = Units(rest(), count - units.size(), width);
    units += here;
    at_ += here.size() * static_cast<std::size_t>(width);
    if (units.size() == count) break;
    ++piece_;
    at_ = 0;
    if (piece_ < pieces_.size()) width = WidthOf(Number(1));
  }
  return units;
}

}  // namespace

std::string LettersText(std::string_view bytes, std::size_t count, LetterWidth width) {
  return Utf8Of(Units(bytes, count, width));
}

std::vector<std::string> ReadSharedStrings(const std::vector<std::string_view>& pieces,
                                           std::size_t most) {
  std::vector<std::string> strings;
  Pieces reader(pieces);
  while (strings.size() < most && !reader.AtEnd()) {
    const std::size_t letters = reader.Number(2);
    const unsigned flags = reader.Number(1);
    const std::uint64_t runs = flags & kHasRuns ? reader.Number(2) : 0;
    const std::uint64_t extension = flags & kHasExtension ? reader.Number(4) : 0;
    strings.push_back(Utf8Of(reader.Letters(letters, WidthOf(flags))));
    reader.Skip(runs * kBytesOfRun + extension);
  }
  return strings;
}

}  // namespace flanks
