#include "output/subset_file.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/finished_run.h"

namespace flanks {
namespace {

using testing::HasSubstr;
using testing::Not;

// Two judges of two persons each, who have nobody in common; item 3 nobody has seen.
constexpr const char* kData =
    "Data=\n1,1,1-2,0,2\n1,2,1-2,1,3\n2,1,1-2,2,3\n2,2,1-2,1,2\n3,3,4-5,1,2\n3,4,4-5,0,3\n"
    "4,3,4-5,2,3\n4,4,4-5,3,1\n";
constexpr const char* kJudges = "2,Judges\n1=Ann\n2=Bob\n3=Cid\n4=Dee\n*\n";

std::string Specification(const std::string& persons) {
  return "Flanks=3\nNoncenter=3\nUmean=50,10\nModels=?,?,?,R3\n*\nLabels=\n" + persons +
         "2,Judges\n1=Ann\n2=Bob\n3=Cid\n4=Dee\n*\n3,Items,A\n1-5=i\n*\n" + kData;
}

TEST(SubsetFile, PutsTheElementsOfEachSubsetIntoAGroup) {
  AnalysisRun run;
  run.Analyze(Specification("1,Persons\n1=p1\n2=p2\n3=p3\n4=p4\n*\n"));
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  FinishedRun finished(run);
  ASSERT_TRUE(WriteSubsetFile(finished.run, run.folder.file("subsets.txt")));
  EXPECT_EQ(run.folder.read("subsets.txt"),
            "To resolve subset problems, copy-and-paste after Labels=\n"
            "Non-center= must reference a flank that is not anchored or group-anchored.\n"
            "\n"
            "Group anchor this flank and/or the other flanks (please experiment to see what "
            "works):\n"
            "\n"
            "1,Persons, G ; group-anchoring at Umean = 50 with 2 subsets\n"
            " ; these element specifications can be placed in your Labels= after the existing "
            "element specifications for this flank\n"
            "1,p1,50, 1\n"
            "2,p2,50, 1\n"
            "3,p3,50, 2\n"
            "4,p4,50, 2\n"
            "*\n"
            "\n"
            "And/or group anchor this flank:\n"
            "\n"
            "2,Judges, G ; group-anchoring at Umean = 50 with 2 subsets\n"
            " ; these element specifications can be placed in your Labels= after the existing "
            "element specifications for this flank\n"
            "1,Ann,50, 1\n"
            "2,Bob,50, 1\n"
            "3,Cid,50, 2\n"
            "4,Dee,50, 2\n"
            "*\n"
            "\n"
            "And/or group anchor this flank:\n"
            "\n"
            "3,Items, G ; group-anchoring at Umean = 50 with 2 subsets\n"
            " ; these element specifications can be placed in your Labels= after the existing "
            "element specifications for this flank\n"
            "1,i,50, 1\n"
            "2,i,50, 1\n"
            "4,i,50, 2\n"
            "5,i,50, 2\n"
            "*\n");
  EXPECT_THAT(run.Screen(), HasSubstr("Constructing subset-group-anchor file:"));
}

// The line of a Flank in the place of its own, the elements behind its own: what their lines do not
// give stays.
TEST(SubsetFile, ConnectsTheDesignWhenItIsPastedBehindLabels) {
  constexpr const char* kPersons = "1=p1,,,2\n2=p2\n3=p3\n4=p4\n5=nobody\n";
  AnalysisRun run;
  run.Analyze(Specification("1,Persons\n" + std::string(kPersons) + "*\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("2 disjoint subsets"));
  FinishedRun finished(run);
  ASSERT_TRUE(WriteSubsetFile(finished.run, run.folder.file("subsets.txt")));
  const std::string file = run.folder.read("subsets.txt");
  const auto pasted = [&file](const std::string& head, const std::string& elements) {
    const std::size_t from = file.find(head), line = file.find('\n', from) + 1;
    return file.substr(from, line - from) + elements +
           file.substr(line, file.find("*\n", line) + 2 - line);
  };
  run.shell.statuses.clear();
  std::string specification = Specification(pasted("1,Persons", kPersons));
  const std::string judges = kJudges;
  const std::size_t elements = judges.find('\n') + 1;
  specification.replace(specification.find(judges), judges.size(),
                        pasted("2,Judges", judges.substr(elements, judges.size() - elements - 2)));
  run.Analyze(specification);
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_THAT(run.Screen(), HasSubstr("Subset connection O.K."));
  EXPECT_THAT(run.Screen(), Not(HasSubstr("disjoint subsets")));
  const ElementTable& table = run.analysis.design.elements;
  EXPECT_EQ(table.ElementLabel[ElementSlot(5)], "nobody");
  EXPECT_EQ(table.ElementWeight[ElementSlot(1)], 2.0f);
  EXPECT_EQ(table.ElementGroup[ElementSlot(3)], 2);
}

TEST(SubsetFile, IsNotMadeWhereTheDataAreConnected) {
  AnalysisRun run;
  run.Analyze(
      "Flanks=2\nModels=?,?,R2\nLabels=\n1,A\n1-3=a\n*\n2,B\n1-2=b\n*\n"
      "Data=\n1,1,0\n1,2,1\n2,1,1\n2,2,2\n3,1,0\n3,2,1\n");
  FinishedRun finished(run);
  EXPECT_FALSE(WriteSubsetFile(finished.run, run.folder.file("subsets.txt")));
  EXPECT_EQ(run.folder.read("subsets.txt"), "");
  EXPECT_THAT(run.Screen(), HasSubstr("The data are not in several subsets"));
}

TEST(SubsetFile, SaysSorryWhereNoElementIsInASubset) {
  AnalysisRun run;
  run.Analyze(Specification("1,Persons\n1-4=p\n*\n"));
  std::fill(run.analysis.subsets.begin.begin(), run.analysis.subsets.begin.end(), 0u);
  FinishedRun finished(run);
  ASSERT_TRUE(WriteSubsetFile(finished.run, run.folder.file("subsets.txt")));
  EXPECT_EQ(run.folder.read("subsets.txt"),
            "To resolve subset problems, copy-and-paste after Labels=\n"
            "Non-center= must reference a flank that is not anchored or group-anchored.\n"
            " Sorry! Group-anchor file could not be constructed automatically. Please see Table 7 "
            "for subset numbers.\n");
}

}  // namespace
}  // namespace flanks
