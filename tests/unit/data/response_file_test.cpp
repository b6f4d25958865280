#include "data/response_file.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "base/program_fault.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

TEST(ResponseFile, ARecordIsTenBytes) {
  const ScratchFolder folder;
  WorkFiles work;
  OpenResponseFile(1, work);
  WriteResponseRecord({StructureRow(1), 1.0f, 3}, work);
  WriteResponseRecord({StructureRow(0x01020304), 2.5f, 255}, work);
  FlushResponseRecords(work);
  const std::string name = work.responseFile.temp.name();
  const std::string bytes = folder.read(name.substr(folder.folder().size() + 1));
  EXPECT_EQ(bytes, std::string("\x01\x00\x00\x00\x00\x00\x80\x3F\x03\x00"
                               "\x04\x03\x02\x01\x00\x00\x20\x40\xFF\x00",
                               20));
  EXPECT_EQ(work.records, 2);
  EXPECT_EQ(work.highestStructure, 0x01020304);
}

TEST(ResponseFile, ABufferIs5000Records) {
  const ScratchFolder folder;
  WorkFiles work;
  OpenResponseFile(1, work);
  for (int i = 0; i < 5000; ++i) WriteResponseRecord({StructureRow(0), 1.0f, 1}, work);
  EXPECT_EQ(work.responseFile.NextPosition, 1);
  WriteResponseRecord({StructureRow(0), 1.0f, 1}, work);
  EXPECT_EQ(work.responseFile.NextPosition, 50001);
  EXPECT_EQ(work.responseFile.windowFirst, 5001);
  FlushResponseRecords(work);
  EXPECT_EQ(work.responseFile.NextPosition, 50011);
  EXPECT_EQ(work.records, 5001);
}

TEST(ResponseFile, OpeningBeginsAfresh) {
  const ScratchFolder folder;
  WorkFiles work;
  OpenResponseFile(1, work);
  WriteResponseRecord({StructureRow(4), 1.0f, 1}, work);
  OpenResponseFile(1, work);
  EXPECT_EQ(work.records, 0);
  EXPECT_EQ(work.highestStructure, -1);
  EXPECT_EQ(folder.names().size(), 1u) << "the former file is gone";
}

TEST(ResponseFile, TheFileGoesWithItsOwner) {
  const ScratchFolder folder;
  {
    WorkFiles work;
    OpenResponseFile(1, work);
    EXPECT_EQ(folder.names().size(), 1u);
    work = WorkFiles{};  // the reset of a run
    EXPECT_TRUE(folder.empty());
    OpenResponseFile(1, work);
  }
  EXPECT_TRUE(folder.empty());
}

TEST(ResponseFile, AFileThatCannotBeMadeIsToldWithNameCallerLineAndCode) {
  const ScratchFolder folder;
  setenv("TMPDIR", "/proc", 1);
  WorkFiles work;
  std::string words;
  try {
    OpenResponseFile(7, work);
  } catch (const ProgramFault& fault) {
    words = fault.what();
  }
  EXPECT_THAT(words, ::testing::MatchesRegex(
                         "File open failure for /proc/flanks-responses-[0-9a-z]+\\.wrk in "
                         "OpenResponseFile at or near line 7 is code [0-9]+: .+\\."));
}

}  // namespace
}  // namespace flanks
