#include "spec/dvalues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "spec/flank_maps.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

// A run of three Flanks whose first line is `Dvalues=...`, up to the check of its entries.
struct DvaluesRun : SpecRun {
  explicit DvaluesRun(std::string_view text, bool extras = false) {
    Read("Flanks=3\n");
    const std::string name = folder.write("d.txt", text);
    SpecContext parts = context();
    parts.state.EndOfSpecification = false;
    parts.state.source = std::make_unique<SpecificationSource>();
    EXPECT_EQ(parts.state.source->Open(name, "Specification", name, console), Fault::none);
    FetchLine(parts);
    parts.reading.Fields[0].clear();
    parts.state.ReadingExtras = extras;
    SetDvalues(parts);
    if (fault() == Fault::none) PrepareDvalues(run);
  }
  const std::vector<DvalueEntry>& entries() const { return analysis.settings.Dvalues; }
};

TEST(Dvalues, HaveFourForms) {
  DvaluesRun test(
      "Dvalues=\n"
      "1,1-4\n"
      "2,$L\n"
      "3,2,6,2\n"
      "*\n");
  ASSERT_EQ(test.fault(), Fault::none) << test.FaultText();
  ASSERT_EQ(test.entries().size(), 3u);
  EXPECT_EQ(test.entries()[0].position, 1);
  EXPECT_EQ(test.entries()[0].text, "1-4");
  EXPECT_EQ(test.entries()[0].fromPosition, 0);
  EXPECT_EQ(test.entries()[1].text, "$L");
  EXPECT_EQ(test.entries()[2].fromPosition, 2);
  EXPECT_EQ(test.entries()[2].start, 6);
  EXPECT_EQ(test.entries()[2].length, 2);
  EXPECT_EQ(test.entries()[2].asWritten, "2,6,2");
}

TEST(Dvalues, TakeAGroupNumber) {
  DvaluesRun test("Dvalues=3,2,$g\n");
  ASSERT_EQ(test.entries().size(), 1u);
  EXPECT_EQ(test.entries()[0].fromPosition, 2);
  EXPECT_EQ(test.entries()[0].start, 0);
}

TEST(Dvalues, TheLastEntryOfAPositionHolds) {
  DvaluesRun test("Dvalues=2,1\n2,5\n");
  ASSERT_EQ(test.entries().size(), 1u);
  EXPECT_EQ(test.entries()[0].text, "5");
  ASSERT_FALSE(test.shell.statuses.empty());
  EXPECT_EQ(test.shell.statuses.back().text,
            "Dvalues=2,5 replaces Dvalues=2,1: position 2 is given again in line 2");
  EXPECT_EQ(test.shell.statuses.back().emphasis, Emphasis::flagged);
}

TEST(Dvalues, AOneLineFormNeedsNoStar) {
  DvaluesRun test("Dvalues=2,1\nTitle=x\n");
  EXPECT_EQ(test.entries().size(), 1u);
  EXPECT_TRUE(test.analysis.specification.lineLeft);
  EXPECT_EQ(test.analysis.reading.Fields[0], "Title");
}

TEST(Dvalues, HaveTheirFaults) {
  struct FaultCase {
    std::string text;
    Fault fault;
  };
  const FaultCase cases[] = {
      {"Dvalues=2,1,1,1,1\n", Fault::dvaluesForm},
      {"Dvalues=2\n", Fault::dvaluesForm},
      {"Dvalues=2,\n", Fault::dvaluesForm},
      {"Dvalues=3,2,6\n", Fault::dvaluesForm},
      {"Dvalues=0,1\n", Fault::dvaluesField},
      {"Dvalues=4,1\n", Fault::dvaluesField},
      {"Dvalues=3,2,0,2\n", Fault::dvaluesField},
      {"Dvalues=3,2,1,0\n", Fault::dvaluesField},
      {"Dvalues=3,0,1,1\n", Fault::dvaluesUndefinedFlank},
      {"Dvalues=3,4,1,1\n", Fault::dvaluesUndefinedFlank},
      {"Dvalues=3,3,1,1\n", Fault::dvaluesCircular},
      {"Dvalues=\n1,2,1,1\n2,3,1,1\n3,1,1,1\n*\n", Fault::dvaluesCircular},
      {"Dvalues=\n1,2,1,1\n2,3,1,1\n3,5\n*\n", Fault::none},
  };
  for (const FaultCase& c : cases) EXPECT_EQ(DvaluesRun(c.text).fault(), c.fault) << c.text;
}

TEST(Dvalues, TheFaultOfAnEntryNamesItsLine) {
  DvaluesRun test("Dvalues=\n1,5\n2,3,1,1\n3,2,1,1\n*\n");
  EXPECT_EQ(test.fault(), Fault::dvaluesCircular);
  EXPECT_EQ(test.analysis.reading.fault.lineNumber, 3);
}

TEST(Dvalues, NeedFlanks) {
  SpecRun test;
  SpecContext context = test.context();
  SplitIntoFields(context, "Dvalues=1,1");
  SetDvalues(context);
  EXPECT_EQ(test.fault(), Fault::flanksFirst);
}

TEST(Dvalues, AmongTheExtrasHaveTheirValueOnTheLine) {
  EXPECT_EQ(DvaluesRun("Dvalues=\n1,1\n", /*extras=*/true).fault(), Fault::extraInvalid);
  EXPECT_EQ(DvaluesRun("Dvalues=1,1\n2,1\n", /*extras=*/true).entries().size(), 1u);
}

}  // namespace
}  // namespace flanks
