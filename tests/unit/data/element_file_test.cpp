#include "data/element_file.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "base/program_fault.h"
#include "data/record_reader.h"
#include "data/response_file.h"
#include "support/scratch_folder.h"
#include "support/work_file_design.h"

namespace flanks {
namespace {

// The bytes that a file of the scratch folder holds, as numbers.
std::vector<int> BytesOf(const ScratchFolder& folder, const std::string& name) {
  std::vector<int> bytes;
  for (const char c : folder.read(name.substr(folder.folder().size() + 1)))
    bytes.push_back(static_cast<unsigned char>(c));
  return bytes;
}

Column<Position, std::int32_t> Statuses(const std::vector<std::int32_t>& values) {
  Column<Position, std::int32_t> statuses;
  for (const std::int32_t value : values) statuses.push(value);
  return statuses;
}

TEST(ElementFile, AFieldHasTheFewestBytesThatHoldTheCount) {
  const std::pair<std::int32_t, int> cases[] = {
      {-1, 0},    {0, 0},     {1, 1},        {255, 1},      {256, 2},
      {65535, 2}, {65536, 3}, {16777215, 3}, {16777216, 4}, {2147483647, 4},
  };
  for (const auto& [count, width] : cases) EXPECT_EQ(ElementFieldWidth(count), width) << count;
}

TEST(ElementFile, ABlockHoldsWhatFitsIn64000BytesAndOneRecordAtLeast) {
  const std::pair<int, std::int64_t> cases[] = {{1, 64000}, {3, 21333}, {5, 12800},
                                                {63999, 1}, {64000, 1}, {64001, 1}};
  for (const auto& [width, records] : cases) EXPECT_EQ(ElementBlockRecordsOf(width), records);
}

TEST(ElementFile, TheLayoutHasAFieldForEachPositionInUse) {
  Design design = WorkFileDesign({255, 256, 0, 65536});
  design.maps.ModelFlank.push(FlankNo(0));  // a position that no Flank fills
  const ElementLayout layout = MakeElementLayout(design);
  EXPECT_EQ(layout.positions, 5);
  ASSERT_EQ(layout.fields.size(), 3u);
  EXPECT_EQ(layout.fields[0].width, 1);
  EXPECT_EQ(layout.fields[1].width, 2);
  EXPECT_EQ(layout.fields[2].width, 3);
  EXPECT_EQ(layout.fields[2].position, Position(4));
  EXPECT_EQ(layout.fields[2].flank, FlankNo(4));
  EXPECT_EQ(layout.fields[2].offset, 3);
  EXPECT_EQ(layout.fields[2].firstSlot, ElementSlot(512));
  EXPECT_EQ(layout.ElementRecordWidth, 6);
  EXPECT_EQ(layout.ElementBlockRecords, 10666);
  EXPECT_EQ(layout.ElementBlockBytes, 63996);
}

TEST(ElementFile, WithoutFieldsARecordIsOneByteUnlessNobuildForbidsIt) {
  const ScratchFolder folder;
  const Design design = WorkFileDesign({0, 0});
  Settings settings;
  WorkFiles work;
  ASSERT_EQ(PrepareElementFile(design, settings, 1, work), Fault::none);
  EXPECT_EQ(work.layout.ElementRecordWidth, 1);
  EXPECT_EQ(work.layout.ElementBlockRecords, 64000);
  settings.labelsNobuild = true;
  EXPECT_EQ(PrepareElementFile(design, settings, 1, work), Fault::noActiveElements);
}

TEST(ElementFile, RecordsLieAsTheFormatSays) {
  const ScratchFolder folder;
  const Design design = WorkFileDesign({3, 300, 70000});  // slots from 1, 4, 304
  WorkFiles work;
  ASSERT_EQ(PrepareElementFile(design, Settings{}, 1, work), Fault::none);
  WriteElementRecord(Statuses({1, 4, 304}), work);
  WriteElementRecord(Statuses({3, 303, 304 + 69999}), work);
  WriteElementRecord(Statuses({-1, -4, -2}), work);  // no element, whatever the reason
  WriteElementRecord(Statuses({2, 0, 304 + 0x1234}), work);
  FlushElementRecords(work);
  EXPECT_THAT(BytesOf(folder, work.elementFile.temp.name()),
              ::testing::ElementsAre(1, 1, 0, 1, 0, 0,                   //
                                     3, 300 & 255, 1, 0x70, 0x11, 0x01,  // 70,000 = 011170 hex
                                     0, 0, 0, 0, 0, 0,                   //
                                     2, 0, 0, 0x35, 0x12, 0));
  EXPECT_EQ(work.elementFile.NextPosition, 25);
}

// The element numbers of a Flank may begin at 0: what is stored is the place in the Flank.
TEST(ElementFile, ElementNumberZeroIsStoredAsOneAndReadsBack) {
  const ScratchFolder folder;
  Design design = WorkFileDesign({2});
  design.elements.ElementNumber = Column<ElementSlot, std::int32_t>(2);
  design.elements.ElementNumber[ElementSlot(1)] = 0;
  design.elements.ElementNumber[ElementSlot(2)] = 7;
  WorkFiles work;
  OpenResponseFile(1, work);
  ASSERT_EQ(PrepareElementFile(design, Settings{}, 1, work), Fault::none);
  for (const std::int32_t status : {1, 2, -1}) {
    WriteElementRecord(Statuses({status}), work);
    WriteResponseRecord({StructureRow(0), 1.0f, 0}, work);
  }
  FlushElementRecords(work);
  FlushResponseRecords(work);
  EXPECT_THAT(BytesOf(folder, work.elementFile.temp.name()), ::testing::ElementsAre(1, 2, 0));
  RecordReader reader(work);
  reader.ReadElementRecord(1);
  EXPECT_EQ(design.elements.ElementNumber[reader.RecordElement[Position(1)]], 0);
  reader.ReadElementRecord(2);
  EXPECT_EQ(design.elements.ElementNumber[reader.RecordElement[Position(1)]], 7);
  reader.ReadElementRecord(3);
  EXPECT_EQ(reader.RecordElement[Position(1)], ElementSlot(0));
}

TEST(ElementFile, AFullBufferIsWrittenInOnePiece) {
  const ScratchFolder folder;
  const Design design = WorkFileDesign({300});
  WorkFiles work;
  ASSERT_EQ(PrepareElementFile(design, Settings{}, 1, work), Fault::none);
  ASSERT_EQ(work.layout.ElementBlockRecords, 32000);
  for (int i = 0; i < 32000; ++i) WriteElementRecord(Statuses({1}), work);
  EXPECT_EQ(work.elementFile.NextPosition, 1) << "nothing goes out before the buffer is full";
  WriteElementRecord(Statuses({2}), work);
  EXPECT_EQ(work.elementFile.NextPosition, 64001);
  EXPECT_EQ(work.elementFile.windowFirst, 32001);
  EXPECT_EQ(work.elementFile.windowEnd, 32002);
  FlushElementRecords(work);
  EXPECT_EQ(work.elementFile.NextPosition, 64003);
}

TEST(ElementFile, AFileThatCannotBeMadeIsToldWithNameCallerLineAndCode) {
  const ScratchFolder folder;
  setenv("TMPDIR", "/proc", 1);
  WorkFiles work;
  std::string words;
  try {
    (void)PrepareElementFile(WorkFileDesign({3}), Settings{}, 12, work);
  } catch (const ProgramFault& fault) {
    words = fault.what();
  }
  EXPECT_THAT(words, ::testing::MatchesRegex(
                         "File open failure for /proc/flanks-elements-[0-9a-z]+\\.wrk in "
                         "PrepareElementFile at or near line 12 is code [0-9]+: .+\\."));
}

}  // namespace
}  // namespace flanks
