#include "estimate/observation.h"

#include <gtest/gtest.h>

#include "run/console.h"
#include "run/settings.h"
#include "support/pass_design.h"
#include "support/recording_shell.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

// Two Flanks, persons 1 to 3 (slots 1 to 3, positive) and items (slots 4 and 5, negative).
class ObservationTest : public ::testing::Test {
 protected:
  void TwoFlanks(const std::vector<std::string>& references, float modelWeight = 1.0f) {
    d.Flank(3, kPositiveOrientation).Flank(2, kNegativeOrientation);
    d.Structure(d.Statement(references, modelWeight), d.Rating({-1.0f, 1.0f}));
    d.Build();
    d.SetMeasures({.8f, -.4f, 1.5f, .3f, -1.0f});
  }
  const ObservationBlock& ReadAll() {
    reader.emplace(d.parts());
    reader->Begin(Categories::wanted);
    EXPECT_TRUE(reader->Next());
    return reader->block();
  }

  ScratchFolder folder;
  PassDesign d;
  std::optional<ObservationReader> reader;
};

TEST_F(ObservationTest, APositiveFlankAddsAndANegativeOneSubtracts) {
  TwoFlanks({"", ""});
  d.Observe({1, 4}, 0, 2);
  const ObservationBlock& block = ReadAll();
  EXPECT_TRUE(block.usual);
  EXPECT_FLOAT_EQ(block.MeasureSum[0], .5f);
  EXPECT_EQ(block.state[0], ObservationState::inPlay);
  EXPECT_EQ(block.category[0], 2);
}

TEST_F(ObservationTest, AReversedPositionDoesTheOpposite) {
  TwoFlanks({"", "-"});
  d.Observe({1, 4}, 0, 2);
  const ObservationBlock& block = ReadAll();
  EXPECT_FALSE(block.usual);
  EXPECT_FLOAT_EQ(block.MeasureSum[0], 1.1f);
  EXPECT_FALSE(reader->sense(0)[0].reversed);
  EXPECT_TRUE(reader->sense(0)[1].reversed);
}

TEST_F(ObservationTest, ReversalsCanBeSwitchedOff) {
  TwoFlanks({"", "-"});
  d.Observe({1, 4}, 0, 2);
  d.design.models.anyReversed = false;  // as parts() hands it on
  const ObservationBlock& block = ReadAll();
  EXPECT_TRUE(block.usual);
  EXPECT_FLOAT_EQ(block.MeasureSum[0], .5f);
}

TEST_F(ObservationTest, SumsFromTheLastPositionToTheFirst) {
  d.Flank(1, kPositiveOrientation).Flank(1, kPositiveOrientation).Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f}));
  d.Build();
  d.SetMeasures({1.0f, -1.0E8f, 1.0E8f});
  d.Observe({1, 2, 3}, 0, 0);
  EXPECT_EQ(ReadAll().MeasureSum[0], 1.0f);  // from the first on it would be 0
}

TEST_F(ObservationTest, EmptyIgnoredAndDummyPositionsHoldNoElement) {
  for (const char* mark : {"empty", "X", "@"}) {
    d = PassDesign();
    TwoFlanks({"", mark});
    d.element(4).ElementStatus = kStatusMinimum;  // must not show
    d.Observe({1, 4}, 0, 1);
    const ObservationBlock& block = ReadAll();
    EXPECT_FLOAT_EQ(block.MeasureSum[0], .8f) << mark;
    EXPECT_EQ(block.slots[1][0], 0) << mark;
    EXPECT_EQ(block.state[0], ObservationState::inPlay) << mark;
  }
}

TEST_F(ObservationTest, AnElementInAPlainAndAReversedPositionCancels) {
  d.Flank(3, kPositiveOrientation).Repeat(1).Flank(1, kNegativeOrientation);
  d.Structure(d.Statement({"", "-", ""}), d.Rating({0.0f}));
  d.Build();
  d.SetMeasures({.8f, -.4f, 1.5f, .3f});
  d.Observe({1, 1, 4}, 0, 1);
  d.Observe({1, 2, 4}, 0, 1);
  d.Observe({0, 0, 4}, 0, 1);  // two empty positions are no pair
  const ObservationBlock& block = ReadAll();
  EXPECT_FLOAT_EQ(block.MeasureSum[0], -.3f);
  EXPECT_EQ(block.slots[0][0], 0);
  EXPECT_EQ(block.slots[1][0], 0);
  EXPECT_FLOAT_EQ(block.MeasureSum[1], -.3f + .4f + .8f);
  EXPECT_EQ(block.slots[0][1], 1);
  EXPECT_EQ(block.slots[1][1], 2);
  EXPECT_EQ(block.state[2], ObservationState::inPlay);
}

TEST_F(ObservationTest, AnElementInTwoPlainPositionsCountsTwice) {
  d.Flank(3, kPositiveOrientation).Repeat(1);
  d.Structure(d.Statement({"", ""}), d.Rating({0.0f}));
  d.Build();
  d.SetMeasures({.75f});
  d.Observe({1, 1}, 0, 1);
  EXPECT_FLOAT_EQ(ReadAll().MeasureSum[0], 1.5f);
}

TEST_F(ObservationTest, WeightsMultiply) {
  TwoFlanks({"", ""}, 3.0f);
  d.design.elements.ElementWeight[ElementSlot(4)] = .5f;
  d.design.elements.ElementWeight[ElementSlot(2)] = 4.0f;
  d.Observe({1, 4}, 0, 1, 2.0f);
  d.Observe({2, 4}, 0, 1, 2.0f);
  d.Observe({1, 5}, 0, 1, 1.0f);
  const ObservationBlock& block = ReadAll();
  EXPECT_EQ(block.weight[0], 3.0f);
  EXPECT_EQ(block.weight[1], 12.0f);
  EXPECT_EQ(block.weight[2], 3.0f);
}

TEST_F(ObservationTest, AnUnusedPositionsElementDoesNotWeigh) {
  TwoFlanks({"", "X"});
  d.design.elements.ElementWeight[ElementSlot(4)] = .5f;
  d.Observe({1, 4}, 0, 1);
  EXPECT_EQ(ReadAll().weight[0], 1.0f);
}

TEST_F(ObservationTest, AWeightOfZeroOrLessIsToldOnceAndIgnored) {
  RunControl control;
  RecordingShell shell{control};
  RecordingDialogs dialogs;
  Settings settings;
  ReportState report;
  Console console{shell, dialogs, control, settings, report};
  d.console = &console;
  TwoFlanks({"", ""}, -.5f);
  d.Observe({1, 4}, 0, 1);
  d.Observe({2, 4}, 0, 1);
  const ObservationBlock& block = ReadAll();
  EXPECT_EQ(block.state[0], ObservationState::ignored);
  EXPECT_EQ(block.state[1], ObservationState::ignored);
  EXPECT_EQ(shell.Screen(), "Warning (21)! observation 1 is weighted -.5 and is ignored\n");
  reader->Begin(Categories::wanted);
  reader->Next();
  EXPECT_EQ(shell.statuses.size(), 1U);
}

struct StateCase {
  std::int16_t person, item;
  ObservationState state;
  const char* why;
};

TEST_F(ObservationTest, StatesFollowTheElements) {
  constexpr StateCase kCases[] = {
      {kStatusFree, kStatusFree, ObservationState::inPlay, "free"},
      {kStatusAnchored, kStatusFree, ObservationState::inPlay, "anchored is in play"},
      {kStatusMinimum, kStatusFree, ObservationState::oneExtreme, "one extreme"},
      {kStatusFree, kStatusMaximum, ObservationState::oneExtreme, "one extreme"},
      {kStatusHeld, kStatusFree, ObservationState::oneExtreme, "held counts as extreme"},
      {kStatusMinimum, kStatusMaximum, ObservationState::noneInPlay, "nothing left in play"},
      {kStatusDropped, kStatusFree, ObservationState::dropped, "dropped"},
      {kStatusFree, kStatusUnused, ObservationState::dropped, "not in use"},
      {kStatusMinimum, kStatusDropped, ObservationState::dropped, "dropped comes first"},
  };
  for (const StateCase& c : kCases) {
    d = PassDesign();
    TwoFlanks({"", ""});
    d.element(1).ElementStatus = c.person;
    d.element(4).ElementStatus = c.item;
    d.Observe({1, 4}, 0, 1);
    EXPECT_EQ(ReadAll().state[0], c.state) << c.why;
  }
}

TEST_F(ObservationTest, StatesWithThreePositions) {
  d.Flank(1, kPositiveOrientation).Flank(1, kPositiveOrientation).Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f}));
  d.Build();
  d.element(1).ElementStatus = kStatusMinimum;
  d.element(2).ElementStatus = kStatusMaximum;
  d.Observe({1, 2, 3}, 0, 0);
  d.Observe({1, 0, 0}, 0, 0);  // alone in its observation: still one extreme
  d.Observe({0, 0, 0}, 0, 0);
  const ObservationBlock& block = ReadAll();
  EXPECT_EQ(block.state[0], ObservationState::manyExtreme);
  EXPECT_EQ(block.state[1], ObservationState::oneExtreme);
  EXPECT_EQ(block.state[2], ObservationState::noneInPlay);
}

TEST_F(ObservationTest, ACategoryWithoutAPlaceIsIgnored) {
  TwoFlanks({"", ""});
  d.scales.orderedCategory.at(ScaleRow(0), 2) = kNoOrderedCategory;
  d.scales.ScaleTopCategory[ScaleRow(0)] = 1;
  d.Observe({1, 4}, 0, 1);
  d.Observe({1, 4}, 0, 2);
  const ObservationBlock& block = ReadAll();
  EXPECT_EQ(block.state[0], ObservationState::inPlay);
  EXPECT_EQ(block.state[1], ObservationState::ignored);
  EXPECT_EQ(block.response[1], 2);
}

TEST_F(ObservationTest, AScaleWithOneCategoryIsIgnored) {
  TwoFlanks({"", ""});
  d.scales.ScaleTopCategory[ScaleRow(0)] = 0;
  d.Observe({1, 4}, 0, 0);
  EXPECT_EQ(ReadAll().state[0], ObservationState::ignored);
}

TEST_F(ObservationTest, ACountNeedsNoRecode) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.CountScale(ScaleType::poisson, 4, 1.0f));
  d.Build();
  d.scales.ScaleTopCategory[ScaleRow(0)] = 3;
  d.Observe({1}, 0, 3);
  d.Observe({1}, 0, 4);  // above the highest count that counts
  const ObservationBlock& block = ReadAll();
  EXPECT_EQ(block.category[0], 3);
  EXPECT_EQ(block.state[1], ObservationState::ignored);
}

TEST_F(ObservationTest, AllRecordsComeInOrderThroughBlocks) {
  TwoFlanks({"", ""});
  constexpr std::int64_t kRecords = 20000;
  for (std::int64_t r = 1; r <= kRecords; ++r)
    d.Observe({static_cast<std::int32_t>(1 + r % 3), 4}, 0, static_cast<int>(r % 3));
  reader.emplace(d.parts());
  reader->Begin(Categories::wanted);
  std::int64_t next = 1;
  while (reader->Next()) {
    const ObservationBlock& block = reader->block();
    ASSERT_EQ(block.firstRecord, next);
    for (std::size_t i = 0; i < block.count; ++i, ++next) {
      ASSERT_EQ(block.slots[0][i], 1 + next % 3);
      ASSERT_EQ(block.category[i], next % 3);
    }
  }
  EXPECT_EQ(next, kRecords + 1);
  reader->Begin(Categories::wanted);
  ASSERT_TRUE(reader->Next());
  EXPECT_EQ(reader->block().firstRecord, 1) << "a second pass begins at the first record";
}

TEST_F(ObservationTest, ABlockOfTheUsualKindReadsAsItsRecordsOneByOne) {
  TwoFlanks({"", ""});
  for (int r = 0; r < 500; ++r) d.Observe({1 + r % 3, 4 + r % 2}, 0, r % 3);
  const ObservationBlock usual = ReadAll();
  EXPECT_TRUE(usual.usual);

  PassDesign other = std::move(d);
  d = PassDesign();
  TwoFlanks({"", ""});
  for (int r = 0; r < 500; ++r) d.Observe({1 + r % 3, 4 + r % 2}, 0, r % 3);
  d.Observe({1, 4}, 0, 0, 2.0f);  // one weight makes the whole block unusual
  const ObservationBlock& oneByOne = ReadAll();
  EXPECT_FALSE(oneByOne.usual);
  for (std::size_t i = 0; i < 500; ++i) {
    ASSERT_EQ(usual.MeasureSum[i], oneByOne.MeasureSum[i]);
    ASSERT_EQ(usual.weight[i], oneByOne.weight[i]);
    ASSERT_EQ(usual.category[i], oneByOne.category[i]);
    ASSERT_EQ(usual.state[i], oneByOne.state[i]);
    ASSERT_EQ(usual.slots[0][i], oneByOne.slots[0][i]);
  }
}

TEST_F(ObservationTest, TheRunHasItsTurnAndCanStop) {
  RunControl control;
  RecordingShell shell{control};
  RecordingDialogs dialogs;
  Settings settings;
  ReportState report;
  Console console{shell, dialogs, control, settings, report};
  d.console = &console;
  TwoFlanks({"", ""});
  for (int r = 0; r < 60000; ++r) d.Observe({1, 4}, 0, 1);
  shell.ActionAtPump(2, [&] { control.CancelRequested = true; });
  reader.emplace(d.parts());
  reader->Begin(Categories::notWanted);
  std::int64_t records = 0;
  while (reader->Next()) records += static_cast<std::int64_t>(reader->block().count);
  EXPECT_EQ(shell.pumps, 2);
  EXPECT_GT(records, 0);
  EXPECT_LT(records, 60000);
}

}  // namespace
}  // namespace flanks
