#include "output/simulate.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "output/random.h"
#include "support/finished_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// ---- The draw

// The probabilities of four categories of a rating scale, and what each number draws: the
// cumulative sums are .057629, .315903 and .741725.
TEST(DrawCategory, SubtractsProbabilitiesFromTheLowestCategoryUp) {
  const float p[] = {.057629f, .258274f, .425822f, .258274f};
  const std::pair<double, int> cases[] = {{.05, 0}, {.2, 1}, {.5, 2}, {.8, 3}, {0.0, 0}, {1.0, 3}};
  for (const auto& [uniform, category] : cases)
    EXPECT_EQ(DrawCategory(uniform, p, 1, 3), category) << uniform;
  const float apart[] = {.25f, 9.0f, .75f, 9.0f};
  EXPECT_EQ(DrawCategory(.3, apart, 2, 1), 1);
}

TEST(DrawCategory, TakesTheTopWhereRoundingLeavesNone) {
  const float p[] = {.25f, .25f, .4999999f};
  EXPECT_EQ(DrawCategory(.99999999, p, 1, 2), 2);
  const float certain[] = {0.0f, 0.0f, 1.0f};
  EXPECT_EQ(DrawCategory(1e-9, certain, 1, 2), 2);
}

// The 10,000th number of the engine with its default seed is told by the standard.
TEST(UniformNumbers, AreThoseOfTheEngine) {
  UniformNumbers numbers(5489);
  double last = 0.0;
  for (int n = 0; n < 10'000; ++n) last = numbers.Next();
  EXPECT_EQ(last, 4123659995.0 / 4294967296.0);
}

TEST(UniformNumbers, TwoRunsDiffer) {
  const std::uint32_t first = SeedOfClock();
  std::uint32_t second = first;
  for (int tries = 0; tries < 1000 && second == first; ++tries) second = SeedOfClock();
  EXPECT_NE(second, first);
}

// ---- The file

std::string Simulated(AnalysisRun& run, const std::string& specification,
                      const SimulationOptions& options) {
  run.Analyze(specification);
  EXPECT_EQ(run.exitCode, 0) << run.Screen();
  FinishedRun finished(run);
  EXPECT_TRUE(WriteSimulatedData(finished.run, run.folder.file("simulated.txt"), options));
  return run.folder.read("simulated.txt");
}

// Measures that leave no choice: person 1 is far above, person 2 far below all items and
// thresholds.
constexpr const char* kScale = "Rating scale=Marks,R3\n0=,0,A\n1=,0,A\n2=,0,A\n3=,0,A\n*\n";

std::string Certain(const std::string& data, const std::string& more = "") {
  return "Title=Known\nFlanks=3\nEntered-in-data=1,0,2,3\n" + more + "Models=?,?,?,Marks\n*\n" +
         kScale +
         "Labels=\n1,P,A\n1=high,60\n2=low,-60\n*\n2,I,A\n5-6=i,0\n*\n3,R,A\n12=r,0\n*\nData=\n" +
         data;
}

TEST(SimulatedData, HasALineForEachObservationThatWasUsed) {
  AnalysisRun run;
  const std::string text = Simulated(
      run, Certain("1,x,5,12,2\n2,x,6,12,1\nR2.5,1,y,6,12,0\n1,x,7,12,3\n2,x,5,12,x\n2,,5,0,3\n"),
      {});
  const std::vector<std::string> lines = Lines(text);
  ASSERT_EQ(lines.size(), 8u) << text;
  EXPECT_EQ(lines[0], "; Simulated data matching the empirical data structure");
  EXPECT_EQ(lines[1], "; Known");
  EXPECT_EQ(lines[2], "; matching: " + run.folder.file("spec.txt"));
  EXPECT_THAT(lines[3], StartsWith("; by Flanks (Many-Flank Rasch Measurement) Version "));
  EXPECT_THAT(std::vector(lines.begin() + 4, lines.end()),
              ElementsAre("1,,5,12,3 ; 2", "2,,6,12,0 ; 1", "R2.5,1,,6,12,3 ; 0", "2,,5,,0 ; 3"));
  EXPECT_THAT(run.Screen(), HasSubstr("Writing simulated data file ...\n"));
  EXPECT_NE(run.shell.Screen().find('='), std::string::npos);
}

TEST(SimulatedData, FullyCrossedIsThreeLinesOfComment) {
  AnalysisRun run;
  run.Write("d.txt", "1,x,5,12,2\n2,x,6,12,1\n");
  std::string specification = Certain("");
  specification.replace(specification.find("Data="), 6, "Data=d.txt\n");
  EXPECT_EQ(Simulated(run, specification, {.SimulateMatching = false}),
            "; Simulated fully-crossed complete data\n; Known\n; matching: d.txt\n");
}

// The observations of each element, and how many there are.
std::map<std::int32_t, float> ElementCounts(AnalysisRun& run) {
  std::map<std::int32_t, float> counts;
  for (const ElementSlot slot : Upward(run.analysis.estimates.scores))
    counts[slot.number()] = run.analysis.estimates.scores[slot].FirstCount;
  return counts;
}

std::string WithDvalues(const std::string& dvalues, int positions, const std::string& data) {
  return "Flanks=" + std::to_string(positions) + "\nDvalues=" + dvalues +
         "\n*\nModels=" + (positions == 4 ? "?,?,?,?,R3" : "?,?,?,R3") +
         "\n*\nLabels=\n1,P\n1-2=1a,,1\n3-4=2b,,2\n*\n2,I\n1-2=i\n*\n3,S,D\n1-40=s\n*\n" +
         (positions == 4 ? "4,T,D\n1-3=t\n*\n" : "") + data;
}

// Positions that Dvalues= fills are not on the line; what fills them gives the same elements again.
TEST(SimulatedData, LeavesOutWhatDvaluesGive) {
  std::string data;
  for (int n = 0; n < 40; ++n)
    data += std::to_string(1 + n % 4) + "," + std::to_string(1 + n / 4 % 2) + "," +
            std::to_string((n * 7 + n / 5) % 4) + "\n";
  for (const std::string dvalues : {"\n3,2", "\n3,1,1,1", "\n3,1,$G", "\n3,$C"}) {
    AnalysisRun run;
    Simulated(run, WithDvalues(dvalues, 3, "Data=\n" + data), {.seed = 5});
    EXPECT_THAT(run.shell.Screen(), Not(HasSubstr("Dvalues= gives"))) << dvalues;
    const std::map<std::int32_t, float> counts = ElementCounts(run);
    run.Analyze(WithDvalues(dvalues, 3, "Data=simulated.txt\n"));
    ASSERT_EQ(run.exitCode, 0) << run.Screen();
    EXPECT_EQ(run.analysis.counts.ValidResponses.text(), "40");
    EXPECT_EQ(ElementCounts(run), counts) << dvalues << run.folder.read("simulated.txt");
  }
}

// Line numbers differ by the comments, and the range 1-3 gives every line to its first element.
TEST(SimulatedData, TellsWhatDvaluesDoNotGiveBack) {
  AnalysisRun run;
  run.Write("d.txt", "1,1,2\n2,1,1\n3,1,0\n4,1,3\n1,2,1\n2,2,3\n3,2,2\n4,2,0\n");
  Simulated(run, WithDvalues("\n3,$L", 3, "Data=d.txt\n"), {});
  EXPECT_THAT(run.shell.Screen(), HasSubstr("Dvalues= gives 8 of 8 simulated lines other elements "
                                            "than the data had"));
  const std::string ranges = "Data=\n1,1,0,1,2\n2,1,1,2,3\n3,2,0,2,1\n4,2,3,1,1\n";
  Simulated(run, WithDvalues("\n3,1,$G\n4,1-3", 4, ranges), {});
  EXPECT_THAT(run.shell.Screen(), HasSubstr("Dvalues= gives 8 of 12 simulated lines"));
}

// Category 9 of the person who always has it, and nothing else leads there.
TEST(SimulatedData, TellsOfResponsesThatAreNotReadAgain) {
  AnalysisRun run;
  const std::string specification =
      "Flanks=2\nMissing=9\nModels=?,?,S\n*\nRating "
      "scale=S,B9\n0=,1,A\n*\nLabels=\n1,P,A\n1=high,60\n2=low,-60\n*\n"
      "2,I,A\n1=i,0\n*\nData=\n1,1,8\n2,1,1\n1,1,7\n";
  EXPECT_THAT(Simulated(run, specification, {}), HasSubstr("\n1,1,9 ; 8\n2,1,0 ; 1\n1,1,9 ; 7\n"));
  EXPECT_THAT(
      run.shell.Screen(),
      HasSubstr("2 of 3 simulated responses will not be read, the first \"9\": see Missing= "
                "and the recodes of its scale"));
}

// "R1,5" would be response 5 at weight 1.
TEST(SimulatedData, KeepsALabelThatLooksLikeAReplication) {
  AnalysisRun run;
  const std::string specification = "Flanks=2\nDelements=1L\nModels=?,?,Marks\n*\n" +
                                    std::string(kScale) +
                                    "Labels=\n1,P,A\n1=R1,60\n2=Q1,-60\n*\n2,I,A\n5=i,0\n*\n";
  const std::string text =
      Simulated(run, specification + "Data=\nR1,R1,5,2\nQ1,5,1\nR2,R1,5,1\n", {});
  EXPECT_THAT(text, HasSubstr("\nR1,R1,5,3 ; 2\nQ1,5,0 ; 1\nR2,R1,5,3 ; 1\n"));
  run.Analyze(specification + "Data=simulated.txt\n");
  EXPECT_EQ(run.analysis.counts.ValidResponses.text(), "3") << run.Screen();
}

// Recodes of the scale, its gaps and the codes of missing data: what is written is read back as the
// category that was drawn.  Responses 2 and 3 are category 1, 7 is category 5; 1 itself is category
// 0, and 5 a code of missing data.
TEST(SimulatedData, WritesResponsesThatTheRecodesLeadBack) {
  AnalysisRun run;
  const std::string specification =
      "Flanks=2\nMissing=5\nModels=?,?,S\n*\nRating scale=S,R9\n0=,0,A,1\n1=,0,A,2-3\n5=,0,A,7\n*\n"
      "Labels=\n1,P,A\n1=low,-60\n2=high,60\n*\n2,I,A\n1=i,0\n*\nData=\n1,1,3\n2,1,2\n2,1,7\n1,1,"
      "1\n";
  EXPECT_THAT(Simulated(run, specification, {}),
              HasSubstr("\n1,1,0 ; 2\n2,1,7 ; 2\n2,1,7 ; 7\n1,1,0 ; 0\n"));
  const std::string middle =
      "Flanks=2\nModels=?,?,S\n*\nRating scale=S,R2\n0=,0,A,1\n1=,-50,A,2-3\n"
      "2=,50,A\n*\nLabels=\n1,P,A\n1=p,0\n*\n2,I,A\n1=i,0\n*\n"
      "Data=\n1,1,3\n1,1,1\n1,1,2\n";
  EXPECT_THAT(Simulated(run, middle, {}), HasSubstr("\n1,1,2 ; 2\n1,1,2 ; 0\n1,1,2 ; 2\n"));
}

// Of the texts that lead to category 5, 7 is itself a code of missing data.
TEST(SimulatedData, PassesOverARecodeThatIsMissing) {
  AnalysisRun run;
  const std::string specification =
      "Flanks=2\nMissing=5,7\nModels=?,?,S\n*\nRating scale=S,R9\n0=,0,A\n5=,0,A,7+8\n*\n"
      "Labels=\n1,P,A\n1=low,-60\n2=high,60\n*\n2,I,A\n1=i,0\n*\nData=\n1,1,0\n2,1,8\n";
  EXPECT_THAT(Simulated(run, specification, {}), HasSubstr("\n1,1,0 ; 0\n2,1,8 ; 8\n"));
}

TEST(SimulatedData, NamesElementsAsTheDataDo) {
  AnalysisRun run;
  const std::string specification =
      "Flanks=2\nDelements=1L,2NE3\nModels=?,?,Marks\n*\n" + std::string(kScale) +
      "Labels=\n1,P,A\n1=A b:long,60\n2=c_d,-60\n*\n"
      "2,I,A\n1=i,0\n12=j,0\n*\nData=\nA b,xx1,0\nc-d,xx12,1\nA b,yy12,1\nc-d,yy1,0\n";
  const std::string text = Simulated(run, specification, {});
  EXPECT_THAT(text, HasSubstr("\nA b,001,3 ; 0\nc-d,0012,0 ; 1\nA b,0012,3 ; 1\nc-d,001,0 ; 0\n"));
}

// ---- Drawn at random

std::string Ratings(int persons, int items) {
  std::string data;
  for (int p = 1; p <= persons; ++p)
    for (int i = 1; i <= items; ++i)
      data += std::to_string(p) + "," + std::to_string(i) + "," +
              std::to_string((p * 7 + i * i * 3 + p * i) % 4) + "\n";
  return data;
}

std::string Random(int persons, int items, const std::string& more = "") {
  return "Flanks=2\n" + more + "Models=?,?,R3\n*\nLabels=\n1,P\n1-" + std::to_string(persons) +
         "=p\n*\n2,I\n1-" + std::to_string(items) + "=i\n*\n";
}

TEST(SimulatedData, ASeedDecidesTheFile) {
  AnalysisRun run;
  const std::string specification = Random(20, 5) + "Data=\n" + Ratings(20, 5);
  const std::string first = Simulated(run, specification, {.seed = 1});
  const auto lines = [](const std::string& text) { return text.substr(text.find("\n1,1,")); };
  EXPECT_EQ(lines(Simulated(run, specification, {.seed = 1})), lines(first));
  EXPECT_NE(lines(Simulated(run, specification, {.seed = 2})), lines(first));
}

// Every line is read again, and each element has as many responses as before.
TEST(SimulatedData, IsReadAsTheDataOfAFurtherRun) {
  AnalysisRun run;
  const std::string data = Ratings(40, 6) + "R.5,1,1,2\nR3,2,2,1\n";
  run.Analyze(Random(40, 6, "Simulated=" + run.folder.file("simulated.txt") + "\n") + "Data=\n" +
              data);
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  std::map<std::int32_t, float> counts;
  for (const ElementSlot slot : Upward(run.analysis.estimates.scores))
    counts[slot.number()] = run.analysis.estimates.scores[slot].FirstCount;
  run.Analyze(Random(40, 6) + "Data=" + run.folder.file("simulated.txt") + "\n");
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_EQ(run.analysis.counts.DataLines.text(), "242");
  EXPECT_EQ(run.analysis.counts.ValidResponses.text(), "242");
  for (const auto& [slot, count] : counts)
    EXPECT_EQ(run.analysis.estimates.scores[ElementSlot(slot)].FirstCount, count) << slot;
}

// The probabilities of each category, over many draws, are those of the model: one person at 0, one
// item at 0, thresholds -1 and 1, so p = 1, e, 1 over 2 + e = .211942, .576117.
TEST(SimulatedData, HasTheFrequenciesOfTheModel) {
  AnalysisRun run;
  std::string data;
  for (int n = 0; n < 9000; ++n) data += "1,1," + std::to_string(n % 3) + "\n";
  const std::string text = Simulated(
      run,
      "Flanks=2\nModels=?,?,S\n*\nRating scale=S,R2\n1=,-1,A\n2=,1,A\n*\nLabels=\n1,P,A\n1=p,0\n*\n"
      "2,I,A\n1=i,0\n*\nData=\n" +
          data,
      {.seed = 7});
  std::map<char, int> counts;
  for (const std::string& line : Lines(text))
    if (line.starts_with("1,1,")) ++counts[line[4]];
  ASSERT_EQ(counts['0'] + counts['1'] + counts['2'], 9000);
  // Four standard errors of a count: 4 sqrt(9000 p (1 - p)) = 155 and 188.
  EXPECT_NEAR(counts['0'], 9000 * .211942, 155);
  EXPECT_NEAR(counts['1'], 9000 * .576117, 188);
}

TEST(SimulatedData, OfCountsAndTrialsStaysInTheScale) {
  AnalysisRun run;
  for (const std::string type : {"B6", "P", "R6K"}) {
    std::string specification = Random(20, 5);
    specification.replace(specification.find("R3"), 2, type);
    Simulated(run, specification + "Data=\n" + Ratings(20, 5), {.seed = 3});
    run.Analyze(specification + "Data=" + run.folder.file("simulated.txt") + "\n");
    EXPECT_EQ(run.exitCode, 0) << run.Screen();
    EXPECT_EQ(run.analysis.counts.ValidResponses.text(), "100") << type;
  }
}

// Counts at a rate of 4 where the largest observed is 5: the scale has counts to 10, twice that.
// The mean and variance of 4^k / k! over 0 to 10 are 3.97877 and 3.85094 (Python); over 0 to 5 the
// mean would be 3.20.
TEST(SimulatedData, OfCountsGoesBeyondTheLargestObserved) {
  AnalysisRun run;
  std::string data;
  for (int n = 0; n < 4000; ++n) data += "1,1," + std::to_string(3 + n % 3) + "\n";
  const std::string text =
      Simulated(run,
                "Flanks=2\nModels=?,?,S\n*\nRating scale=S,P\n0=,1,A\n*\nLabels=\n1,P,A\n"
                "1=p,1.386294\n*\n2,I,A\n1=i,0\n*\nData=\n" +
                    data,
                {.seed = 11});
  double sum = 0.0, squares = 0.0;
  int largest = 0, lines = 0;
  for (const std::string& line : Lines(text)) {
    if (!line.starts_with("1,1,")) continue;
    const int count = std::stoi(line.substr(4));
    largest = std::max(largest, count);
    sum += count;
    squares += count * count;
    ++lines;
  }
  ASSERT_EQ(lines, 4000);
  const double mean = sum / lines;
  // Four standard errors.
  EXPECT_NEAR(mean, 3.97877, .124);
  EXPECT_NEAR(squares / lines - mean * mean, 3.85094, .335);
  EXPECT_EQ(largest, 10);
}

// At a rate of 350 nearly every draw is above 255, the largest count that is read.
TEST(SimulatedData, OfCountsEndsAt255) {
  AnalysisRun run;
  const std::string text =
      Simulated(run,
                "Flanks=2\nModels=?,?,S\n*\nRating scale=S,P\n0=,1,A\n*\nLabels=\n1,P,A\n"
                "1=p,5.857933\n*\n2,I,A\n1=i,0\n*\nData=\n1,1,250\n1,1,240\n1,1,230\n",
                {.seed = 11});
  EXPECT_THAT(text, testing::EndsWith("\n1,1,255 ; 250\n1,1,255 ; 240\n1,1,255 ; 230\n"));
}

TEST(SimulatedData, StaysAsFarAsWrittenWhenTheRunIsBrokenOff) {
  AnalysisRun run;
  run.Analyze(Random(20, 5) + "Data=\n" + Ratings(20, 5));
  FinishedRun finished(run);
  run.process.control.CancelRequested = true;
  EXPECT_FALSE(WriteSimulatedData(finished.run, run.folder.file("s.txt"), {}));
  EXPECT_THAT(run.folder.read("s.txt.part"), StartsWith("; Simulated data matching"));
}

TEST(SimulatedData, TellsWhenItsFileCannotBeOpened) {
  AnalysisRun run;
  run.Analyze(Random(20, 5, "Simulated=" + run.folder.file("no/s.txt") + "\n") + "Data=\n" +
              Ratings(20, 5));
  EXPECT_EQ(run.exitCode, 1) << "the run goes on, and a script sees that a file is missing";
  EXPECT_THAT(run.Screen(), HasSubstr("Failure opening output file: "));
}

}  // namespace
}  // namespace flanks
