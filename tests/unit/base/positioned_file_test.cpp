#include "base/positioned_file.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;

TEST(PositionedFile, WritesAndReadsAtPositionsFromOne) {
  const ScratchFolder folder;
  PositionedFile file;
  ASSERT_FALSE(file.Open(folder.write("a.wrk", "")));
  file.WriteAt(1, std::vector<std::uint8_t>{1, 2, 3, 4});
  file.WriteAt(3, std::vector<std::uint8_t>{9});
  file.WriteAt(5, std::vector<std::uint8_t>{5, 6});
  EXPECT_EQ(file.Size(), 6);
  std::vector<std::uint8_t> bytes(3);
  EXPECT_EQ(file.ReadAt(2, bytes), 3u);
  EXPECT_THAT(bytes, ElementsAre(2, 9, 4));
  EXPECT_EQ(folder.read("a.wrk"), std::string("\1\2\11\4\5\6"));
}

TEST(PositionedFile, AReadPastTheEndGivesWhatIsThere) {
  const ScratchFolder folder;
  PositionedFile file;
  ASSERT_FALSE(file.Open(folder.write("a.wrk", "abc")));
  std::vector<std::uint8_t> bytes(10);
  EXPECT_EQ(file.ReadAt(2, bytes), 2u);
  EXPECT_EQ(file.ReadAt(4, bytes), 0u);
  EXPECT_EQ(file.ReadAt(400, bytes), 0u);
  file.WriteAt(4, std::vector<std::uint8_t>{'d'});
  EXPECT_EQ(file.ReadAt(3, bytes), 2u) << "a read at the end does not spoil the next";
}

TEST(PositionedFile, OffsetsAreSixtyFourBits) {
  const ScratchFolder folder;
  PositionedFile file;
  ASSERT_FALSE(file.Open(folder.write("a.wrk", "")));
  constexpr std::int64_t kBeyond = 5'000'000'001;  // the file is sparse: it takes no room
  file.WriteAt(kBeyond, std::vector<std::uint8_t>{7, 8});
  std::vector<std::uint8_t> bytes(4);
  EXPECT_EQ(file.ReadAt(kBeyond - 1, bytes), 3u);
  EXPECT_THAT(bytes, ElementsAre(0, 7, 8, 0));
  EXPECT_EQ(file.Size(), kBeyond + 1);
}

TEST(PositionedFile, AMissingFileGivesTheSystemsError) {
  const ScratchFolder folder;
  PositionedFile file;
  EXPECT_EQ(file.Open(folder.file("missing")), std::errc::no_such_file_or_directory);
  EXPECT_EQ(file.name(), folder.file("missing"));
  EXPECT_FALSE(file.isOpen());
}

TEST(PositionedFile, AMoveHandsTheFileOn) {
  const ScratchFolder folder;
  PositionedFile first;
  ASSERT_FALSE(first.Open(folder.write("a.wrk", "abc")));
  PositionedFile second = std::move(first);
  std::vector<std::uint8_t> bytes(3);
  EXPECT_EQ(second.ReadAt(1, bytes), 3u);
  second.Close();
  EXPECT_FALSE(second.isOpen());
  ASSERT_FALSE(second.Open(folder.file("a.wrk")));
  EXPECT_EQ(second.ReadAt(1, bytes), 3u);
}

}  // namespace
}  // namespace flanks
