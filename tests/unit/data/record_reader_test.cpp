#include "data/record_reader.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

#include "data/element_file.h"
#include "support/scratch_folder.h"
#include "support/work_file_design.h"

namespace flanks {
namespace {

// Work files of `records` records in which everything can be told from the record's number.
class RecordReaderTest : public ::testing::Test {
 protected:
  static constexpr std::int32_t kPersons = 70000;
  static constexpr std::int32_t kItems = 20;

  void Write(std::int64_t records) {
    OpenResponseFile(1, work_);
    ASSERT_EQ(PrepareElementFile(WorkFileDesign({kPersons, kItems}), Settings{}, 1, work_),
              Fault::none);
    Column<Position, std::int32_t> status(2, 0);
    for (std::int64_t r = 1; r <= records; ++r) {
      status[Position(1)] = PersonOf(r);
      status[Position(2)] = ItemOf(r);
      WriteElementRecord(status, work_);
      WriteResponseRecord(ResponseOf(r), work_);
    }
    FlushElementRecords(work_);
    FlushResponseRecords(work_);
  }
  static std::int32_t PersonOf(std::int64_t r) {
    return static_cast<std::int32_t>(1 + r % kPersons);
  }
  static std::int32_t ItemOf(std::int64_t r) {
    const auto item = static_cast<std::int32_t>(r % (kItems + 1));
    return item == 0 ? -1 : kPersons + item;
  }
  static ResponseRecord ResponseOf(std::int64_t r) {
    return {StructureRow(static_cast<std::int32_t>(r % 7)), static_cast<float>(1 + r % 3),
            static_cast<std::int16_t>(r % 256)};
  }
  void ExpectRecord(RecordReader& reader, std::int64_t r) {
    ResponseRecord record;
    reader.ReadResponseRecord(r, record);
    reader.ReadElementRecord(r);
    ASSERT_EQ(record, ResponseOf(r)) << r;
    ASSERT_EQ(reader.RecordElement[Position(1)], ElementSlot(PersonOf(r))) << r;
    ASSERT_EQ(reader.RecordElement[Position(2)], ElementSlot(std::max(ItemOf(r), 0))) << r;
  }

  ScratchFolder folder_;
  WorkFiles work_;
};

TEST_F(RecordReaderTest, EveryRecordReadsBackInOrder) {
  Write(40001);
  RecordReader reader(work_);
  EXPECT_EQ(reader.records(), 40001);
  for (std::int64_t r = 1; r <= 40001; ++r) ExpectRecord(reader, r);
}

TEST_F(RecordReaderTest, AWindowStartsAtTheRecordThatNeedsIt) {
  Write(40001);
  RecordReader reader(work_);
  ExpectRecord(reader, 1);
  EXPECT_EQ(work_.elementFile.windowFirst, 1);
  EXPECT_EQ(work_.elementFile.windowEnd, 16001);  // 64,000 bytes of records of 4
  EXPECT_EQ(work_.responseFile.windowEnd, 5001);
  ExpectRecord(reader, 16001);
  EXPECT_EQ(work_.elementFile.windowFirst, 16001);
  EXPECT_EQ(work_.responseFile.windowFirst, 16001);
  ExpectRecord(reader, 39999);
  EXPECT_EQ(work_.elementFile.windowFirst, 39999);
  EXPECT_EQ(work_.elementFile.windowEnd, 40002) << "the window ends with the records";
  ExpectRecord(reader, 1);
  EXPECT_EQ(work_.elementFile.windowFirst, 1);
}

TEST_F(RecordReaderTest, NeighboursOfAWindowCostNoRead) {
  Write(40001);
  RecordReader reader(work_);
  FileFaultPlan plan;
  work_.elementFile.file.Follow(&plan);
  work_.responseFile.file.Follow(&plan);
  plan.readsThatWork = 2;  // one for each file; another would throw
  for (const std::int64_t r : {100, 101, 4000, 100, 5099}) ExpectRecord(reader, r);
  EXPECT_EQ(plan.readsThatWork, 0);
}

TEST_F(RecordReaderTest, BlocksHoldTheSameRecords) {
  Write(40001);
  for (const std::size_t most : {1u, 7u, 1024u, 100000u}) {
    std::vector<std::int32_t> persons(100000), items(100000), structures(100000);
    std::vector<float> replications(100000);
    std::vector<std::int16_t> responses(100000);
    std::int64_t r = 1;
    while (r <= work_.records) {
      const RecordBlock block = ReadRecordBlock(work_, r, most);
      ASSERT_GE(block.count, 1u);
      ASSERT_LE(block.count, most);
      DecodeElements(block, work_.layout.fields[0], persons);
      DecodeElements(block, work_.layout.fields[1], items);
      DecodeResponses(block, structures, replications, responses);
      for (std::size_t i = 0; i < block.count; ++i, ++r) {
        const ResponseRecord expected = ResponseOf(r);
        ASSERT_EQ(persons[i], PersonOf(r));
        ASSERT_EQ(items[i], std::max(ItemOf(r), 0));
        ASSERT_EQ(structures[i], expected.structure.number());
        ASSERT_EQ(replications[i], expected.replication);
        ASSERT_EQ(responses[i], expected.response);
      }
    }
    EXPECT_EQ(r, 40002);
  }
}

TEST_F(RecordReaderTest, BothFormsMayBeMixed) {
  Write(12000);
  RecordReader reader(work_);
  ExpectRecord(reader, 3000);
  const RecordBlock block = ReadRecordBlock(work_, 2500, 1024);
  std::vector<std::int32_t> persons(1024);
  DecodeElements(block, work_.layout.fields[0], persons);
  EXPECT_EQ(persons[0], PersonOf(2500));
  ExpectRecord(reader, 3001);
  ExpectRecord(reader, 2);
}

TEST_F(RecordReaderTest, OneRecordIsEnough) {
  Write(1);
  RecordReader reader(work_);
  ExpectRecord(reader, 1);
  EXPECT_EQ(ReadRecordBlock(work_, 1, 1024).count, 1u);
}

}  // namespace
}  // namespace flanks
