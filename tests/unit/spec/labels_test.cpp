#include "spec/labels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/spec_bench.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr std::string_view kPersons = "1,Persons\n1=Ann\n2=Bob\n3=Cy\n*\n";
constexpr std::string_view kItems = "2,Items\n1=i1\n2=i2\n*\n";

std::string TwoFlanks(std::string_view list, std::string_view before = "") {
  return "Flanks=2\n" + std::string(before) + "Labels=\n" + std::string(list);
}

// Element lines of Flank 1; the first of them is line 4.
std::string Elements(std::string_view lines, std::string_view flankLine = "1,Persons\n") {
  return TwoFlanks(std::string(flankLine) + std::string(lines) + "*\n" + std::string(kItems));
}

std::vector<std::string> Labels(const ElementTable& elements) {
  return {elements.ElementLabel.begin(), elements.ElementLabel.end()};
}

TEST(Labels, MakeTheFlankAndElementTables) {
  SpecBench bench(TwoFlanks(std::string(kPersons) + std::string(kItems)));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Labels(bench.elements()), ElementsAre("Ann", "Bob", "Cy", "i1", "i2"));
  EXPECT_EQ(bench.design().ElementTotal, 5);
  EXPECT_EQ(bench.flanks().FlankName[FlankNo(2)], "Items");
  EXPECT_EQ(bench.flanks().FlankOptions[FlankNo(1)], " ");
  EXPECT_EQ(bench.flanks().FlankFirstSlot[FlankNo(2)].number(), 4);
  EXPECT_EQ(bench.elements().ElementLabelWidth, 3);
  EXPECT_THAT(bench.shell.progress,
              HasSubstr("Processing element numbers and labels: flank>. 1 2<"));
}

TEST(Labels, ListMayBeginBehindTheKeyword) {
  SpecBench bench("Flanks=2\nLabels=1,Persons,A,2\n1=Ann\n*\n");
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_EQ(bench.flanks().FlankName[FlankNo(1)], "Persons");
  EXPECT_EQ(bench.flanks().FlankOptions[FlankNo(1)], " A");
  EXPECT_EQ(bench.flanks().FlankWeight[FlankNo(1)], 2.0f);
  EXPECT_THAT(Labels(bench.elements()), ElementsAre("Ann"));
}

TEST(Labels, SpecificationGoesOnBehindTheList) {
  SpecBench bench(TwoFlanks(std::string(kPersons) + std::string(kItems) + "Title=after\n"));
  EXPECT_EQ(bench.analysis.settings.Title, "after");
  EXPECT_FALSE(bench.shows("Warning"));
}

TEST(Labels, WarnWhenTheListDoesNotEndWithAStar) {
  SpecBench bench(TwoFlanks("1,Persons\n1=Ann\nTitle=after;comment\n"));
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_TRUE(bench.shows(
      "\nWarning (19)! at or near line 5 \"Title=after\" * or number = value expected"));
  EXPECT_EQ(bench.analysis.settings.Title, "after");
  SpecBench atEnd(TwoFlanks("1,Persons\n1=Ann\n"));
  EXPECT_TRUE(atEnd.shows("Warning (19)! at or near line 4"));
}

TEST(Labels, WithoutElementsWarnAndWithNobuildAreAFault) {
  for (const std::string text :
       {"Flanks=2\n", "Flanks=2\nLabels=\n*\n", "Flanks=2\nLabels=\n1,Persons\n*\n"}) {
    SpecBench bench(text);
    EXPECT_EQ(bench.fault(), Fault::none) << text;
    EXPECT_TRUE(bench.shows("Warning (20)! No labels after Labels=")) << text;
    EXPECT_EQ(bench.flanks().FlankElementCount[FlankNo(1)], 0) << text;
  }
  SpecBench nobuild("Flanks=2\nLabels=Nobuild\n1,Persons\n*\n");
  EXPECT_EQ(nobuild.fault(), Fault::noElementLabels);
  EXPECT_TRUE(nobuild.analysis.settings.labelsNobuild);
  SpecBench build("Flanks=2\nLabels=Build\n1,Persons\n1=a\n*\n");
  EXPECT_FALSE(build.analysis.settings.labelsNobuild);
  EXPECT_EQ(build.fault(), Fault::none);
}

struct FaultCase {
  std::string text;
  Fault fault;
  int line;
  std::string words;
};

TEST(Labels, RefuseWhatIsWrongWithItsLine) {
  const FaultCase cases[] = {
      {"Title=x\nLabels=\n", Fault::flanksFirst, 2,
       "Please specify Flanks= before this specification"},
      {TwoFlanks("0,Persons\n"), Fault::labelsFlankZero, 3,
       "Labels= flank number is zero. Must be an integer in the range 1-2"},
      {TwoFlanks("3,Persons\n"), Fault::flankOutOfRange, 3, "Flank number out of range: 1-2"},
      {TwoFlanks("1.5,Persons\n"), Fault::notWhole, 3, ""},
      {TwoFlanks("1,A\n1=a\n*\n1,B\n*\n"), Fault::flankTwiceInLabels, 6,
       "Labels= contains the same flank twice"},
      {Elements("2147483647=x\n"), Fault::invalidElementNumber, 4,
       "Invalid element number. Must be integers in range 0 - 2147483646"},
      {Elements("1=a\n3a=x\n"), Fault::invalidElementNumber, 5, "3a=x"},
      {Elements("1=Ann\n2=Bob,,,,9\n"), Fault::invalidTarget, 5, ""},
      {Elements("1=Ann,,,,b\n"), Fault::invalidTarget, 4, ""},
      {Elements("1=Ann,,,,2\n2=Bob,,,,1\n"), Fault::circularTarget, 5,
       "Target element number circular or nested too deep"},
      {Elements("1=a\n*\nLabels=\n1,b\n*\n"), Fault::labelsTwice, 6,
       "Labels= must only appear once in your Specification file"},
      {Elements("1-4000000=x\n"), Fault::tooManyElements, 7, "Processed = 4000001."},
  };
  for (const FaultCase& c : cases) {
    SpecBench bench(c.text);
    EXPECT_EQ(bench.fault(), c.fault) << c.text << bench.faultText();
    EXPECT_EQ(bench.faultLine(), c.line) << c.text;
    EXPECT_THAT(bench.faultText(), HasSubstr(c.words));
  }
}

TEST(Labels, InvalidGroupIsShownWithItsElement) {
  SpecBench bench(Elements("1=Ann\n1=Ann,,xyz\n"));
  EXPECT_EQ(bench.fault(), Fault::invalidGroupNumber);
  EXPECT_EQ(bench.faultLine(), 5);
  EXPECT_EQ(bench.analysis.reading.SourceLine, "");
  EXPECT_TRUE(bench.shows("Invalid group number: xyz (1,1,Ann )"));
  EXPECT_EQ(SpecBench(Elements("1=Ann,,32761\n")).fault(), Fault::invalidGroupNumber);
  EXPECT_EQ(SpecBench(Elements("1=Ann,,2.5\n")).fault(), Fault::invalidGroupNumber);
}

// The columns of "$2" count bytes: the second is the second byte of the accented letter.
TEST(Labels, AGroupThatBeginsWithinACharacterIsShownWithoutHalfOfIt) {
  SpecBench bench(
      Elements("1=\xC3\x89"
               "Ann,,$2W2\n"));
  EXPECT_EQ(bench.fault(), Fault::invalidGroupNumber);
  EXPECT_TRUE(
      bench.shows("Invalid group number: ?A (1,1,\xC3\x89"
                  "Ann )"));
}

TEST(Labels, RangeGivesEachOfItsNumbersTheSameLabel) {
  for (const std::string range : {"10-12", "12-10", "10_12"}) {
    SpecBench bench(Elements(range + "=Kid\n"));
    ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
    EXPECT_THAT(Labels(bench.elements()), ElementsAre("Kid", "Kid", "Kid", "i1", "i2"));
    EXPECT_EQ(bench.flanks().FlankLow[FlankNo(1)], 10);
    EXPECT_EQ(bench.flanks().FlankHigh[FlankNo(1)], 12);
  }
}

TEST(Labels, EmptyLabelBecomesTheNumber) {
  SpecBench bench(Elements("5=\n6\n007\n"));
  EXPECT_THAT(Labels(bench.elements()), ElementsAre("5", "6", "7", "i1", "i2"));
}

TEST(Labels, LaterLineOfAnElementReplacesOnlyWhatItGives) {
  SpecBench bench(Elements("1-3=Kid,1.5,2,3\n2=Bob\n3=,2\n1=,,7\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  const ElementTable& elements = bench.elements();
  EXPECT_THAT(Labels(elements), ElementsAre("Kid", "Bob", "Kid", "i1", "i2"));
  EXPECT_EQ(elements.PresetMeasure[ElementSlot(2)], 1.5f);
  EXPECT_EQ(elements.PresetMeasure[ElementSlot(3)], 2.0f);
  EXPECT_EQ(elements.ElementGroup[ElementSlot(1)], 7);
  EXPECT_EQ(elements.ElementGroup[ElementSlot(3)], 2);
  EXPECT_EQ(elements.ElementWeight[ElementSlot(1)], 3.0f);
}

TEST(Labels, NumbersOutOfOrderAreSorted) {
  SpecBench bench(TwoFlanks("2,Items\n9=i9\n1=i1\n*\n1,Persons\n7=p7\n3-4=p3\n*\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_THAT(Labels(bench.elements()), ElementsAre("p3", "p3", "p7", "i1", "i9"));
  EXPECT_TRUE(bench.shows("Sorting element labels: "));
  EXPECT_FALSE(SpecBench(TwoFlanks(kPersons)).shows("Sorting"));
}

TEST(Labels, LongRangeShowsAProgressLine) {
  SpecBench bench(Elements("1-1000=x\n2000-2998=y\n"));
  EXPECT_TRUE(bench.shows("1-1000.adding 1000 elements to list."));
  EXPECT_FALSE(bench.shows("2000-2998.adding"));
}

TEST(Labels, OneThatACommaCutsBetweenQuotesIsToldOnce) {
  SpecBench bench(Elements("1=\"Smith, J\"\n2=\"Jones, K\"\n3=\"Ann\"\n"));
  EXPECT_EQ(bench.elements().ElementLabel[ElementSlot(1)], "\"Smith");
  EXPECT_TRUE(bench.shows("The label \"Smith in line"));
  EXPECT_TRUE(
      bench.shows(" begins with a quote mark and ends without: a comma ends a label, also "
                  "between quotes. Write it without the comma."));
  EXPECT_FALSE(bench.shows("The label \"Jones"));
}

TEST(Labels, NullElementGetsNoSlotButAWarning) {
  SpecBench bench(Elements("0=None\n1-3=Kid\n"));
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_TRUE(bench.shows("\nWarning (16)! Null element 0 is specified in Labels= for flank 1"));
  EXPECT_EQ(bench.flanks().FlankElementCount[FlankNo(1)], 3);
  EXPECT_EQ(bench.flanks().FlankNullLabel[FlankNo(1)], "None");
  SpecBench within("Flanks=1\nNull=2\nLabels=\n1,P\n1-3=Kid,,5\n2-3=Kit\n*\n");
  EXPECT_THAT(Labels(within.elements()), ElementsAre("Kid", "Kit"));
  EXPECT_EQ(within.slot(1, 2).number(), 0);
  EXPECT_EQ(within.slot(1, 3).number(), 2);
  EXPECT_EQ(within.elements().ElementGroup[ElementSlot(2)], 5);
  SpecBench none("Flanks=1\nNull=-1\nLabels=\n1,P\n0-1=Kid\n*\n");
  EXPECT_EQ(none.flanks().FlankElementCount[FlankNo(1)], 2);
  EXPECT_FALSE(none.shows("Warning (16)"));
}

TEST(Labels, TheNullElementIsWarnedOfOnceForAFlank) {
  SpecBench bench(TwoFlanks("2,Items\n0=None\n0=Nobody\n1=a\n*\n1,Persons\n0-1=b\n*\n"));
  const std::string screen = bench.screen();
  for (const std::string flank : {"flank 1\n", "flank 2\n"}) {
    const std::string warning = "Warning (16)! Null element 0 is specified in Labels= for " + flank;
    EXPECT_NE(screen.find(warning), std::string::npos) << flank;
    EXPECT_EQ(screen.find(warning), screen.rfind(warning)) << flank;
  }
  EXPECT_EQ(bench.flanks().FlankNullLabel[FlankNo(2)], "Nobody");
}

TEST(Labels, FlankWithoutNameHasItsNumberAsName) {
  SpecBench bench(TwoFlanks("2,,x y\n1=a\n*\n"));
  EXPECT_EQ(bench.flanks().FlankName[FlankNo(2)], "2");
  EXPECT_EQ(bench.flanks().FlankOptions[FlankNo(2)], " X Y");
  EXPECT_EQ(bench.flanks().FlankElementCount[FlankNo(1)], 0);
}

TEST(Labels, FlankWeightIsCutAndGoesToElementsWithoutTheirOwn) {
  struct Case {
    std::string text;
    float weight;
  };
  for (const Case& c : {Case{"2.9", 2.0f}, Case{".5", 0.0f}, Case{"0", 0.0f}, Case{"", 1.0f},
                        Case{"x", 1.0f}, Case{"-2", 1.0f}, Case{"2*3", 6.0f}}) {
    SpecBench bench(Elements("1=a\n2=b,,,.5\n3=c,,,0\n4=d,,,x\n", "1,P,," + c.text + "\n"));
    EXPECT_EQ(bench.flanks().FlankWeight[FlankNo(1)], c.weight) << c.text;
    const auto& weights = bench.elements().ElementWeight;
    EXPECT_THAT(std::vector<float>(weights.begin(), weights.end()),
                ElementsAre(c.weight, 0.5f, 0.0f, c.weight, 1.0f, 1.0f));
    EXPECT_TRUE(bench.elements().ElementWeightsInUse);
  }
  EXPECT_FALSE(SpecBench(Elements("1=a,,,1\n")).elements().ElementWeightsInUse);
  EXPECT_TRUE(SpecBench(Elements("1=a\n", "1,P,,2\n")).elements().ElementWeightsInUse);
}

struct MeasureCase {
  std::string options, measureAndGroup;
  float preset;
  AnchorKind kind;
};

TEST(Labels, MeasureBecomesLogitsByTheLetterOfItsFlank) {
  const float zero = 1.8048513e-35f;  // exp(-80)
  const MeasureCase cases[] = {
      {"", "60", 1.0f, AnchorKind::none},
      {"A", "60", 1.0f, AnchorKind::anchored},
      {"A", "50", zero, AnchorKind::anchored},
      {"A", "", 0.0f, AnchorKind::none},
      {"A", "word", 0.0f, AnchorKind::none},
      {"A", "early", 0.0f, AnchorKind::none},
      {"A", "0", -5.0f, AnchorKind::anchored},
      {"D", "60", zero, AnchorKind::anchored},
      {"D", "", zero, AnchorKind::anchored},
      {"G", "60,2", 1.0f, AnchorKind::groupAnchored},
      {"X", "60,2", 1.0f, AnchorKind::groupAnchored},
      {"G", "60", 1.0f, AnchorKind::none},
      {"G", ",2", 0.0f, AnchorKind::none},
      {"a", "30+30", 1.0f, AnchorKind::anchored},
  };
  for (const MeasureCase& c : cases) {
    SpecBench bench(
        TwoFlanks("1,P," + c.options + "\n1=Ann," + c.measureAndGroup + "\n*\n", "Umean=50,10\n"));
    ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
    const float preset = bench.elements().PresetMeasure[ElementSlot(1)];
    EXPECT_NEAR(preset, c.preset, 1e-6f * std::abs(c.preset)) << c.options << c.measureAndGroup;
    EXPECT_EQ(bench.elements().ElementAnchor[ElementSlot(1)], c.kind)
        << c.options << c.measureAndGroup;
  }
}

TEST(Labels, GroupAnchorWithoutGroupIsLeftToTheNextRun) {
  SpecBench with(TwoFlanks("1,P,G\n1=a,1,3\n*\n2,Q,G\n1=b,1\n*\n"));
  EXPECT_EQ(with.process.former.groupAnchoredFlankWithoutGroup, 2);
  SpecBench without(TwoFlanks("1,P,G\n1=a,1,3\n*\n"));
  EXPECT_EQ(without.process.former.groupAnchoredFlankWithoutGroup, 0);
}

TEST(Labels, MeasureBeyondHardwareStopsTheRun) {
  SpecBench bench(Elements("1=Ann,-80\n"));
  EXPECT_TRUE(IsStopping(bench.process.control));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1u);
  EXPECT_THAT(bench.dialogs.boxes[0],
              HasSubstr("Failure (20)! Anchor value outside range: -80 (1,1,Ann)"));
  EXPECT_THAT(bench.screen(), HasSubstr("  See line 4 of \""));
  EXPECT_THAT(bench.screen(), HasSubstr("\".\n  To mend it: Check the measure against Umean= "));
  EXPECT_FALSE(IsStopping(SpecBench(Elements("1=Ann,79.9\n")).process.control));
}

TEST(Labels, MalformedMeasureEndsTheProcess) {
  EXPECT_THROW(SpecBench(Elements("1=Ann,1E2\n")), ProcessEnd);
}

TEST(Labels, GroupsComeFromTheNumberOrTheLabel) {
  SpecBench bench(Elements("1=a12z,,$2W2\n2=b7,,$2\n3=c,,4\n4=d,,-5x\n5=e,,$9\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  const auto& groups = bench.elements().ElementGroup;
  EXPECT_THAT(std::vector<int>(groups.begin(), groups.end()), ElementsAre(12, 7, 4, 5, 0, 0, 0));
  EXPECT_EQ(bench.flanks().FlankHighestGroup[FlankNo(1)], 12);
  EXPECT_EQ(bench.flanks().FlankHighestGroup[FlankNo(2)], 0);
}

TEST(Labels, TargetsCollapseToTheLastElement) {
  SpecBench bench(Elements("1=a,,,,2\n2=b,,,,3\n3=c,,,,-1\n4=d\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  const auto& targets = bench.elements().ElementTarget;
  EXPECT_EQ(targets[ElementSlot(1)].number(), 3);
  EXPECT_EQ(targets[ElementSlot(2)].number(), 3);
  EXPECT_EQ(targets[ElementSlot(3)].number(), 0);
}

TEST(Labels, ChainOfElevenTargetsIsRefusedFromEitherEnd) {
  std::string upward, downward;
  for (int i = 1; i <= 10; ++i) {
    const std::string line = std::to_string(i) + "=e,,,," + std::to_string(i + 1) + "\n";
    upward += line;
    downward = line + downward;
  }
  // The elements begin in line 4.  Upward the whole chain is seen at its end only, and the first
  // element has too many behind it; downward the last line makes it too long.
  SpecBench fromItsStart(Elements(upward + "11=e\n"));
  EXPECT_EQ(fromItsStart.fault(), Fault::circularTarget);
  EXPECT_EQ(fromItsStart.faultLine(), 4);
  EXPECT_THAT(fromItsStart.faultText(), HasSubstr("1=e,,,,2"));
  SpecBench fromItsEnd(Elements("11=e\n" + downward));
  EXPECT_EQ(fromItsEnd.fault(), Fault::circularTarget);
  EXPECT_EQ(fromItsEnd.faultLine(), 14);
  EXPECT_THAT(fromItsEnd.faultText(), HasSubstr("1=e,,,,2"));
}

TEST(Labels, LeaveTheLineNumberForDataInLine) {
  SpecBench bench(TwoFlanks(std::string(kPersons) + "Data=\n1,1,1\n"));
  EXPECT_EQ(bench.analysis.reading.LineNumber, 8);
}

// Four million numbers load, one more does not (the two items count).
TEST(SlowLabels, FourMillionElementsLoad) {
  SpecBench bench(Elements("1-3999998=Kid\n"));
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  ASSERT_EQ(bench.design().ElementTotal, 4000000);
  EXPECT_EQ(bench.elements().ElementLabel[ElementSlot(3999998)], "Kid");
  EXPECT_EQ(bench.elements().ElementLabel[ElementSlot(4000000)], "i2");
  EXPECT_EQ(bench.slot(1, 3999998).number(), 3999998);
  SpecBench more(Elements("1-3999999=Kid\n"));
  EXPECT_EQ(more.fault(), Fault::tooManyElements);
}

}  // namespace
}  // namespace flanks
