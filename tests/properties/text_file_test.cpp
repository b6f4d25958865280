// The block reader against the rule as it is told: a buffer to which three bytes at a time are
// added until the end of a line can be seen.
#include "base/text_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

class ThreeByteReader {
 public:
  explicit ThreeByteReader(std::string bytes) : file_(std::move(bytes)) {}

  bool ReadLine(std::string& line) {
    if (position_ == file_.size() && buffer_.empty()) return false;
    std::size_t carriageReturn = 0, lineFeed = 0;
    for (;;) {
      carriageReturn = buffer_.find('\r');
      lineFeed = buffer_.find('\n');
      const bool neither = carriageReturn == kNone && lineFeed == kNone;
      const std::size_t only = carriageReturn == kNone ? lineFeed : carriageReturn;
      const bool one = (carriageReturn == kNone) != (lineFeed == kNone);
      if (position_ == file_.size()) break;
      if (!neither && !(one && only + 1 == buffer_.size())) break;
      ReadMore();
    }
    if (carriageReturn == kNone && lineFeed == kNone) return Take(line, buffer_.size(), 0);
    if (carriageReturn == kNone || lineFeed == kNone)
      return Take(line, std::min(carriageReturn, lineFeed), 1);
    const std::size_t first = std::min(carriageReturn, lineFeed);
    const bool adjacent = std::max(carriageReturn, lineFeed) == first + 1;
    return Take(line, first, adjacent ? 2 : 1);
  }

 private:
  static constexpr std::size_t kNone = std::string::npos;

  void ReadMore() {
    const bool veryFirst = position_ == 0;
    const std::size_t n = std::min<std::size_t>(3, file_.size() - position_);
    const std::string bytes = file_.substr(position_, n);
    position_ += n;
    if (!(veryFirst && bytes == "\xEF\xBB\xBF")) buffer_ += bytes;
  }
  bool Take(std::string& line, std::size_t length, std::size_t markLength) {
    line = buffer_.substr(0, length);
    buffer_.erase(0, length + markLength);
    return true;
  }

  std::string file_, buffer_;
  std::size_t position_ = 0;
};

std::vector<std::string> SlowLines(const std::string& bytes) {
  ThreeByteReader reader(bytes);
  std::vector<std::string> lines;
  std::string line;
  while (reader.ReadLine(line)) lines.push_back(line);
  return lines;
}

std::vector<std::string> FastLines(const std::string& name) {
  TextFile file;
  EXPECT_FALSE(file.Open(name));
  std::vector<std::string> lines;
  std::string_view line;
  while (file.ReadLine(line)) lines.emplace_back(line);
  return lines;
}

// Every text of up to six bytes of a small alphabet.
TEST(TextFileLaw, AllShortTextsHaveTheLinesOfTheThreeByteReader) {
  const ScratchFolder folder;
  for (int length = 0; length <= 6; ++length) {
    int count = 1;
    for (int i = 0; i < length; ++i) count *= 3;
    for (int code = 0; code < count; ++code) {
      std::string bytes;
      for (int i = 0, rest = code; i < length; ++i, rest /= 3) bytes += "a\r\n"[rest % 3];
      ASSERT_EQ(FastLines(folder.write("a.txt", bytes)), SlowLines(bytes))
          << ::testing::PrintToString(bytes);
    }
  }
}

TEST(TextFileLaw, RandomTextsHaveTheLinesOfTheThreeByteReader) {
  const ScratchFolder folder;
  constexpr unsigned kSeed = 4711;
  std::mt19937 random(kSeed);
  // The lengths put line ends at and around the ends of the reader's blocks.
  for (int i = 0; i < 60; ++i) {
    std::string bytes = i % 4 == 0 ? "\xEF\xBB\xBF" : "";
    const std::size_t lines = random() % 7;
    for (std::size_t j = 0; j <= lines; ++j) {
      const std::size_t around = i % 6 == 0 ? 65536 - 3 + random() % 6 : random() % 30;
      bytes.append(around, static_cast<char>('a' + j));
      for (std::size_t k = random() % 4; k > 0; --k) bytes += random() % 2 == 0 ? '\r' : '\n';
    }
    if (bytes.size() == 3) continue;  // a mark alone: no line here, an empty line there
    ASSERT_EQ(FastLines(folder.write("a.txt", bytes)), SlowLines(bytes)) << "seed " << kSeed;
  }
}

}  // namespace
}  // namespace flanks
