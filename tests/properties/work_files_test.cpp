// Any design round-trips through the work files: every field width, any number of positions, null
// elements, any structure, replication and category.
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "data/element_file.h"
#include "data/record_reader.h"
#include "data/response_file.h"
#include "support/scratch_folder.h"
#include "support/work_file_design.h"

namespace flanks {
namespace {

struct Observation {
  std::vector<std::int32_t> slots;  // 0: no element
  ResponseRecord response;
};

// Element counts at and around the limits of the widths; the largest need no memory, since only
// their number is looked at.
std::int32_t AnyElementCount(std::mt19937& random) {
  constexpr std::int32_t kCounts[] = {0,     1,     2,        254,      255,      256,        257,
                                      65535, 65536, 16777215, 16777216, 16777217, 300'000'000};
  return kCounts[random() % std::size(kCounts)];
}

Observation AnyObservation(const Design& design, std::mt19937& random) {
  Observation observation;
  for (const FlankNo flank : Upward(design.flanks.FlankElementCount)) {
    const auto count = static_cast<std::uint32_t>(design.flanks.FlankElementCount[flank]);
    std::uint32_t place = count == 0 ? 0 : static_cast<std::uint32_t>(random()) % (count + 1);
    if (count > 0 && random() % 4 == 0) place = count;  // the last element, in all its bytes
    const std::int32_t first = design.flanks.FlankFirstSlot[flank].number();
    observation.slots.push_back(place == 0 ? 0 : first + static_cast<std::int32_t>(place) - 1);
  }
  observation.response = {StructureRow(static_cast<std::int32_t>(random() >> 1)),
                          std::ldexp(1.0f, static_cast<int>(random() % 200) - 100),
                          static_cast<std::int16_t>(random() % 256)};
  return observation;
}

TEST(WorkFilesLaw, AnyElementWidthRoundTrips) {
  constexpr unsigned kSeed = 90125;
  std::mt19937 random(kSeed);
  for (int trial = 0; trial < 40; ++trial) {
    const ScratchFolder folder;
    std::vector<std::int32_t> counts(1 + random() % 6);
    for (std::int32_t& count : counts) count = AnyElementCount(random);
    const Design design = WorkFileDesign(counts);
    WorkFiles work;
    OpenResponseFile(1, work);
    ASSERT_EQ(PrepareElementFile(design, Settings{}, 1, work), Fault::none);

    std::vector<Observation> observations;
    for (std::size_t i = 0, n = 1 + random() % 12000; i < n; ++i) {
      observations.push_back(AnyObservation(design, random));
      Column<Position, std::int32_t> status;
      for (const std::int32_t slot : observations.back().slots)
        status.push(slot > 0 ? slot : -static_cast<std::int32_t>(1 + random() % 4));
      WriteElementRecord(status, work);
      WriteResponseRecord(observations.back().response, work);
    }
    FlushElementRecords(work);
    FlushResponseRecords(work);

    RecordReader reader(work);
    ASSERT_EQ(reader.records(), static_cast<std::int64_t>(observations.size()));
    const auto expectRecord = [&](std::int64_t r) {
      const Observation& expected = observations[static_cast<std::size_t>(r - 1)];
      ResponseRecord response;
      reader.ReadResponseRecord(r, response);
      reader.ReadElementRecord(r);
      ASSERT_EQ(response, expected.response) << "seed " << kSeed << ", record " << r;
      for (std::size_t a = 0; a < expected.slots.size(); ++a) {
        const Position position(static_cast<std::int32_t>(a) + 1);
        ASSERT_EQ(reader.RecordElement[position].number(), expected.slots[a])
            << "seed " << kSeed << ", record " << r << ", width " << counts[a];
      }
    };
    for (std::int64_t r = 1; r <= reader.records(); ++r) expectRecord(r);
    for (int i = 0; i < 50; ++i)
      expectRecord(1 + static_cast<std::int64_t>(random() % observations.size()));

    std::vector<std::int32_t> slots(observations.size());
    for (std::int64_t r = 1; r <= work.records;) {
      const RecordBlock block = ReadRecordBlock(work, r, 1 + random() % 2000);
      for (const ElementLayout::Field& field : work.layout.fields) {
        DecodeElements(block, field, slots);
        for (std::size_t i = 0; i < block.count; ++i) {
          const Observation& expected = observations[static_cast<std::size_t>(r - 1) + i];
          ASSERT_EQ(slots[i], expected.slots[field.position.offset()]) << "seed " << kSeed;
        }
      }
      r += static_cast<std::int64_t>(block.count);
    }
  }
}

}  // namespace
}  // namespace flanks
