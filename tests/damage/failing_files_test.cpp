// Files that fail as a disk fails: cut, full, unreadable.  What is asserted: the words name the
// file, nothing crashes, and no temporary file is left.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <system_error>
#include <vector>

#include "base/kept_lines.h"
#include "base/positioned_file.h"
#include "base/text_file.h"
#include "base/text_work_file.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;

// The words of the failure that `action` throws; empty when it throws none.
template <class Action>
std::string FailureOf(Action action) {
  try {
    action();
  } catch (const std::system_error& failure) {
    return failure.what();
  }
  return "";
}

TEST(FailingTextFile, CutAtEachByteEndsInItsFaultAndNeverInAWrongLine) {
  const ScratchFolder folder;
  const std::string bytes = "\xEF\xBB\xBFTitle=x\r\nFlanks=2\n\n1=Ann\n\rlast";
  const std::string name = folder.write("a.txt", bytes);
  for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
    FileFaultPlan plan;
    plan.cutAt = static_cast<std::int64_t>(cut);
    TextFile file;
    file.Follow(&plan);
    ASSERT_FALSE(file.Open(name));
    std::string_view line;
    while (file.ReadLine(line)) ADD_FAILURE() << "cut at " << cut << ": " << line;
    EXPECT_EQ(line, "");
    EXPECT_EQ(file.fault(), TextFileFault::unexpectedEnd) << "cut at " << cut;
    EXPECT_EQ(file.FaultText(), name + " " + std::to_string(bytes.size()) + " " +
                                    std::to_string(cut) + " utfreadmore: unexxpected end of file");
  }
}

TEST(FailingTextFile, AFileThatShrinksWhileItIsReadIsTold) {
  const ScratchFolder folder;
  std::string bytes;
  while (bytes.size() < 300000) bytes += "1,2,3\n";
  const std::string name = folder.write("a.txt", bytes);
  TextFile file;
  ASSERT_FALSE(file.Open(name));
  std::string_view line;
  ASSERT_TRUE(file.ReadLine(line));
  std::filesystem::resize_file(name, 100000);
  while (file.ReadLine(line)) ASSERT_EQ(line, "1,2,3");
  EXPECT_EQ(file.fault(), TextFileFault::unexpectedEnd);
}

TEST(FailingTextFile, AFileThatGrowsWhileItIsReadEndsWhereItEnded) {
  const ScratchFolder folder;
  const std::string name = folder.write("a.txt", "1\n2\n");
  TextFile file;
  ASSERT_FALSE(file.Open(name));
  std::ofstream(name, std::ios::app) << "3\n";
  std::string_view line;
  EXPECT_TRUE(file.ReadLine(line));
  EXPECT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "2");
  EXPECT_FALSE(file.ReadLine(line));
  EXPECT_EQ(file.fault(), TextFileFault::none);
}

TEST(FailingTextFile, AReadFailureIsTold) {
  const ScratchFolder folder;
  std::string bytes;
  while (bytes.size() < 300000) bytes += "1,2,3\n";
  const std::string name = folder.write("a.txt", bytes);
  FileFaultPlan plan;
  plan.readsThatWork = 2;
  TextFile file;
  file.Follow(&plan);
  ASSERT_FALSE(file.Open(name));
  std::string_view line;
  while (file.ReadLine(line)) ASSERT_EQ(line, "1,2,3");
  EXPECT_EQ(file.fault(), TextFileFault::readFailure);
  EXPECT_EQ(file.FaultText(), "utf8read file read failure:" + name);
}

TEST(FailingPositionedFile, AFullDiskTakesWhatFitsAndIsToldWithTheFilesName) {
  const ScratchFolder folder;
  const std::string name = folder.write("a.wrk", "");
  FileFaultPlan plan;
  plan.bytesThatFit = 5;
  PositionedFile file;
  ASSERT_FALSE(file.Open(name));
  file.Follow(&plan);
  file.WriteAt(1, std::vector<std::uint8_t>{1, 2, 3});
  EXPECT_EQ(FailureOf([&] {
              file.WriteAt(4, std::vector<std::uint8_t>{4, 5, 6});
            }),
            "File write failure for " + name + ": No space left on device");
  EXPECT_EQ(folder.read("a.wrk"), "\1\2\3\4\5");
}

TEST(FailingPositionedFile, AReadFailureIsToldWithTheFilesName) {
  const ScratchFolder folder;
  const std::string name = folder.write("a.wrk", "abc");
  FileFaultPlan plan;
  plan.readsThatWork = 1;
  PositionedFile file;
  ASSERT_FALSE(file.Open(name));
  file.Follow(&plan);
  std::vector<std::uint8_t> bytes(3);
  EXPECT_EQ(file.ReadAt(1, bytes), 3u);
  EXPECT_EQ(FailureOf([&] { file.ReadAt(1, bytes); }),
            "File read failure for " + name + ": Input/output error");
}

// The system itself refuses: nothing can be written to this device.
TEST(FailingPositionedFile, TheSystemsOwnWordsAreGiven) {
  PositionedFile file;
  ASSERT_FALSE(file.Open("/dev/full"));
  EXPECT_EQ(FailureOf([&] { file.WriteAt(1, std::vector<std::uint8_t>{1}); }),
            "File write failure for /dev/full: No space left on device");
}

TEST(FailingTextWorkFile, AFullDiskIsToldAndNothingIsLeft) {
  const ScratchFolder folder;
  for (std::int64_t room = 0; room < 12; ++room) {
    TextWorkFile file;
    ASSERT_FALSE(file.Create("labels", "txt"));
    FileFaultPlan plan;
    plan.bytesThatFit = room;
    file.Follow(&plan);
    file.WriteLine("1,Persons");
    file.WriteLine("1");
    const std::string words = "File write failure for " + file.name() + ": No space left on device";
    EXPECT_EQ(FailureOf([&] { file.Rewind(); }), words) << room;
  }
  EXPECT_TRUE(folder.empty());
}

TEST(FailingTextWorkFile, AReadFailureIsTold) {
  const ScratchFolder folder;
  {
    TextWorkFile file;
    ASSERT_FALSE(file.Create("labels", "txt"));
    file.WriteLine("1,Persons");
    FileFaultPlan plan;
    plan.cutAt = 4;
    file.Follow(&plan);
    file.Rewind();
    std::string_view line;
    EXPECT_EQ(FailureOf([&] { file.ReadLine(line); }),
              "File read failure for " + file.name() + ": Input/output error");
  }
  EXPECT_TRUE(folder.empty());
}

TEST(FailingKeptLines, AFullDiskIsToldAndNothingIsLeft) {
  const ScratchFolder folder;
  {
    FileFaultPlan plan;
    plan.bytesThatFit = 100000;
    KeptLines kept;
    kept.Follow(&plan);
    const std::string words = FailureOf([&] {
      for (int i = 0; i < 100000; ++i) kept.Add(";; a comment");
    });
    EXPECT_EQ(words, "File write failure for " + folder.file(folder.names().front()) +
                         ": No space left on device");
  }
  EXPECT_TRUE(folder.empty());
}

TEST(FailingKeptLines, AFileThatCannotBeMadeIsTold) {
  const ScratchFolder folder;
  setenv("TMPDIR", "/proc", 1);
  KeptLines kept;
  EXPECT_THAT(FailureOf([&] { kept.Add(std::string(KeptLines::kBytesInMemory + 1, ';')); }),
              ::testing::StartsWith("File open failure for /proc/flanks-kept-"));
}

}  // namespace
}  // namespace flanks
