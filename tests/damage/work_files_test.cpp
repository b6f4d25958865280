// Work files that are cut, altered or refused: told in words with the file's name, never a record
// that was not written, and nothing left behind.
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/program_fault.h"
#include "data/element_file.h"
#include "data/record_reader.h"
#include "data/response_file.h"
#include "support/scratch_folder.h"
#include "support/work_file_design.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::int64_t kRecords = 8;

class DamagedWorkFiles : public ::testing::Test {
 protected:
  // Three fields of 1, 2 and 3 bytes; records of 6 bytes.
  void Write() {
    OpenResponseFile(1, work_);
    ASSERT_EQ(PrepareElementFile(WorkFileDesign({5, 300, 70000}), Settings{}, 1, work_),
              Fault::none);
    Column<Position, std::int32_t> status(3, 0);
    for (std::int32_t r = 1; r <= kRecords; ++r) {
      status[Position(1)] = 1 + r % 5;
      status[Position(2)] = 5 + 30 * r;
      status[Position(3)] = r % 4 == 0 ? -1 : 306 + 8000 * r;
      WriteElementRecord(status, work_);
      WriteResponseRecord({StructureRow(r % 2), 1.0f, static_cast<std::int16_t>(r)}, work_);
    }
    FlushElementRecords(work_);
    FlushResponseRecords(work_);
  }

  // Reads all records in both forms; the words of what is thrown, "" for nothing.
  std::string ReadAll() {
    const std::string oneByOne = WordsOf([&] {
      RecordReader reader(work_);
      ResponseRecord record;
      for (std::int64_t r = 1; r <= reader.records(); ++r) {
        reader.ReadResponseRecord(r, record);
        reader.ReadElementRecord(r);
        ExpectPossible(reader, record);
      }
    });
    EmptyWindows();
    const std::string inBlocks = WordsOf([&] {
      std::vector<std::int32_t> slots(kRecords), structures(kRecords);
      std::vector<float> replications(kRecords);
      std::vector<std::int16_t> responses(kRecords);
      for (std::int64_t r = 1; r <= work_.records;) {
        const RecordBlock block = ReadRecordBlock(work_, r, kRecords);
        for (const ElementLayout::Field& field : work_.layout.fields)
          DecodeElements(block, field, slots);
        DecodeResponses(block, structures, replications, responses);
        r += static_cast<std::int64_t>(block.count);
      }
    });
    EmptyWindows();
    EXPECT_EQ(oneByOne.empty(), inBlocks.empty()) << oneByOne << inBlocks;
    return oneByOne;
  }
  void EmptyWindows() {
    work_.elementFile.windowFirst = work_.elementFile.windowEnd = 1;
    work_.responseFile.windowFirst = work_.responseFile.windowEnd = 1;
  }
  static void ExpectPossible(const RecordReader& reader, const ResponseRecord& record) {
    EXPECT_TRUE(record.structure == StructureRow(0) || record.structure == StructureRow(1));
    EXPECT_GT(record.replication, 0.0f);
    EXPECT_TRUE(record.response >= 0 && record.response <= 255);
    EXPECT_LE(reader.RecordElement[Position(1)], ElementSlot(5));
    EXPECT_LE(reader.RecordElement[Position(2)], ElementSlot(305));
    EXPECT_LE(reader.RecordElement[Position(3)], ElementSlot(70305));
  }
  template <class Action>
  static std::string WordsOf(Action action) {
    try {
      action();
    } catch (const ProgramFault& fault) {
      return fault.what();
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return "";
  }

  ScratchFolder folder_;
  WorkFiles work_;
};

TEST_F(DamagedWorkFiles, WholeTheyAreRead) {
  Write();
  EXPECT_EQ(ReadAll(), "");
}

TEST_F(DamagedWorkFiles, AnElementFileCutAtAnyByteIsAWorkFileProblem) {
  Write();
  FileFaultPlan plan;
  work_.elementFile.file.Follow(&plan);
  const std::int64_t length = kRecords * work_.layout.ElementRecordWidth;
  for (plan.cutAt = 0; plan.cutAt < length; ++plan.cutAt) {
    const std::int64_t missing = 1 + plan.cutAt / work_.layout.ElementRecordWidth;
    EXPECT_EQ(ReadAll(), "Work file problem: " + work_.elementFile.temp.name() +
                             " ends before record " + std::to_string(missing))
        << "cut at " << plan.cutAt;
  }
  EXPECT_EQ(ReadAll(), "");
}

TEST_F(DamagedWorkFiles, AResponseFileCutAtAnyByteIsAWorkFileProblem) {
  Write();
  FileFaultPlan plan;
  work_.responseFile.file.Follow(&plan);
  for (plan.cutAt = 0; plan.cutAt < kRecords * 10; ++plan.cutAt) {
    EXPECT_EQ(ReadAll(), "Work file problem: " + work_.responseFile.temp.name() +
                             " ends before record " + std::to_string(1 + plan.cutAt / 10))
        << "cut at " << plan.cutAt;
  }
}

// Each bit of both files turned in its turn: what comes out is refused, or it is a record that the
// design allows.  How many are refused is counted by hand: a bit that leaves its field within the
// design's limits cannot be told from a datum.
TEST_F(DamagedWorkFiles, NoTurnedBitLeadsOutsideTheTables) {
  Write();
  int refused = 0;
  for (BlockedFile* blocked : {&work_.elementFile, &work_.responseFile}) {
    const std::int64_t length = blocked->file.Size();
    for (std::int64_t bit = 0; bit < 8 * length; ++bit) {
      std::vector<std::uint8_t> byte(1);
      ASSERT_EQ(blocked->file.ReadAt(1 + bit / 8, byte), 1u);
      const std::vector<std::uint8_t> whole = byte;
      byte[0] = static_cast<std::uint8_t>(byte[0] ^ 1 << bit % 8);
      blocked->file.WriteAt(1 + bit / 8, byte);
      const std::string words = ReadAll();
      if (!words.empty()) {
        ++refused;
        EXPECT_THAT(words, StartsWith("Work file problem: " + blocked->temp.name() + " holds "));
        const std::int64_t width = length / kRecords;
        EXPECT_THAT(words, ::testing::EndsWith(" record " + std::to_string(1 + bit / 8 / width)));
      }
      blocked->file.WriteAt(1 + bit / 8, whole);
    }
  }
  // Of a response record of structure 0 or 1 and a category up to 8: the 31 upper bits of the
  // structure and the 8 of the category, the sign of the replication, and the one bit of its
  // exponent that makes 1 infinite.  Elements: see below.
  int expected = static_cast<int>(kRecords) * (31 + 8 + 2);
  for (std::int32_t r = 1; r <= kRecords; ++r) {
    const std::int32_t values[] = {1 + r % 5, 30 * r, r % 4 == 0 ? 0 : 8000 * r + 1};
    const std::int32_t limits[] = {5, 300, 70000};
    for (int field = 0; field < 3; ++field)
      for (int bit = 0; bit < 8 * (field + 1); ++bit)
        expected += (values[field] ^ 1 << bit) > limits[field] ? 1 : 0;
  }
  EXPECT_EQ(refused, expected);
  EXPECT_EQ(ReadAll(), "");
}

TEST_F(DamagedWorkFiles, AnInfiniteOrImpossibleReplicationIsRefused) {
  const std::uint8_t replications[][4] = {
      {0, 0, 0x80, 0x7F},  // infinite
      {0, 0, 0xC0, 0x7F},  // no number
      {0, 0, 0x00, 0x00},  // 0
      {0, 0, 0x80, 0xBF},  // -1
  };
  Write();
  for (const auto& replication : replications) {
    work_.responseFile.file.WriteAt(1 + 10 * 4 + 4, replication);
    EXPECT_EQ(ReadAll(), "Work file problem: " + work_.responseFile.temp.name() +
                             " holds a response that was never written, record 5");
  }
}

TEST_F(DamagedWorkFiles, AReadFailureIsToldWithTheFilesName) {
  Write();
  FileFaultPlan plan;
  plan.readsThatWork = 0;
  work_.responseFile.file.Follow(&plan);
  EXPECT_EQ(ReadAll(),
            "File read failure for " + work_.responseFile.temp.name() + ": Input/output error");
}

TEST_F(DamagedWorkFiles, AfterAFailureTheRecordIsReadAgain) {
  Write();
  FileFaultPlan plan;
  work_.elementFile.file.Follow(&plan);
  plan.readsThatWork = 0;
  RecordReader reader(work_);
  EXPECT_THAT(WordsOf([&] { reader.ReadElementRecord(3); }), StartsWith("File read failure for "));
  plan.readsThatWork = 1;
  reader.ReadElementRecord(3);
  EXPECT_EQ(reader.RecordElement[Position(1)], ElementSlot(4));
}

// A disk that is full after any number of bytes, in the middle of the data pass or at its end.
TEST_F(DamagedWorkFiles, AFullDiskIsToldWithTheFilesName) {
  for (const std::int64_t room : {0, 1, 49999, 50000, 63995, 63996, 100000, 120000}) {
    WorkFiles work;
    FileFaultPlan plan;
    plan.bytesThatFit = room;
    work.plan = &plan;
    OpenResponseFile(1, work);
    ASSERT_EQ(PrepareElementFile(WorkFileDesign({5, 300, 70000}), Settings{}, 1, work),
              Fault::none);
    Column<Position, std::int32_t> status(3, -1);
    const std::string words = WordsOf([&] {
      for (int r = 1; r <= 12000; ++r) {
        WriteElementRecord(status, work);
        WriteResponseRecord({StructureRow(0), 1.0f, 1}, work);
      }
      FlushElementRecords(work);
      FlushResponseRecords(work);
    });
    EXPECT_THAT(words, StartsWith("File write failure for " + folder_.folder() + "/flanks-"));
    EXPECT_THAT(words, HasSubstr(": No space left on device")) << room;
  }
  EXPECT_TRUE(folder_.empty());
}

TEST_F(DamagedWorkFiles, ATextWorkFileThatCannotBeMadeIsTold) {
  setenv("TMPDIR", "/proc", 1);
  EXPECT_THAT(WordsOf([&] { (void)OpenTextWorkFile(work_, "labels", "CopyLabels", 4); }),
              ::testing::MatchesRegex("File open failure for /proc/flanks-labels-[0-9a-z]+\\.txt "
                                      "in CopyLabels at or near line 4 is code [0-9]+: .+\\."));
}

TEST_F(DamagedWorkFiles, ATextWorkFileFollowsThePlanOfTheRun) {
  FileFaultPlan plan;
  plan.bytesThatFit = 3;
  work_.plan = &plan;
  work_.labelsFile = OpenTextWorkFile(work_, "labels", "CopyLabels", 4);
  work_.labelsFile->WriteLine("1,Persons");
  EXPECT_EQ(WordsOf([&] { work_.labelsFile->Rewind(); }),
            "File write failure for " + work_.labelsFile->name() + ": No space left on device");
  work_.labelsFile.reset();
  EXPECT_TRUE(folder_.empty());
}

}  // namespace
}  // namespace flanks
