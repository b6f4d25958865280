// What a list of elements can say of single ones, through whole runs: anchors, groups, starting
// values, targets, weights, reversed, ignored and dummy positions.  Each is held against another
// computation: the score equation solved here, or a run that says the same in other words.
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr const char* kTight = "Convergence=.00001,.0000001\n";

// Six persons by four items, ratings 0 to 2, nobody extreme.
constexpr int kRatings[6][4] = {{0, 1, 1, 0}, {1, 0, 2, 1}, {1, 1, 0, 2},
                                {2, 0, 1, 1}, {1, 2, 2, 0}, {2, 1, 2, 1}};

// The line of a person (from 0), `between` standing between the elements and the ratings.
std::string RatingsOf(int person, const std::string& between = "") {
  std::string line = std::to_string(person + 1) + ",1-4" + between;
  for (const int rating : kRatings[person]) line += "," + std::to_string(rating);
  return line + "\n";
}

std::string AllRatings() {
  std::string data;
  for (int person = 0; person < 6; ++person) data += RatingsOf(person);
  return data;
}

// With a third Flank of two elements.
std::string RatingsWithThirdFlank() {
  std::string data;
  for (int person = 0; person < 6; ++person)
    data += RatingsOf(person, person % 2 == 0 ? ",1" : ",2");
  return data;
}

struct Parts {
  std::string settings = "";
  std::string model = "?,?,R2";
  std::string persons = "1,Persons\n1-6=p\n";
  std::string items = "2,Items\n1-4=i\n";
  std::string data = AllRatings();
};

struct Case : AnalysisRun {
  explicit Case(const Parts& parts) {
    Write("data.txt", parts.data);
    Analyze("Flanks=2\nModels=\n" + parts.model + "\n*\n" + kTight + parts.settings +
            "\nLabels=\n" + parts.persons + "*\n" + parts.items + "*\nData=data.txt\n");
    EXPECT_EQ(exitCode, 0) << Screen();
  }
  ElementSlot Slot(int flank, int number) const {
    return analysis.design.flanks.FlankFirstSlot[FlankNo(flank)] + (number - 1);
  }
  double Measure(int flank, int number) const {
    return analysis.estimates.elements[Slot(flank, number)].ElementMeasure;
  }
  std::int16_t Status(int flank, int number) const {
    return analysis.estimates.elements[Slot(flank, number)].ElementStatus;
  }
  const ElementScores& Scores(int flank, int number) const {
    return analysis.estimates.scores[Slot(flank, number)];
  }
  double Threshold(int k) const { return analysis.scales.ThresholdTable.at(ScaleRow(0), k); }
  bool Shown(const std::string& text) const { return Screen().find(text) != std::string::npos; }
};

// All measures, in the order of the slots, and the thresholds.
std::vector<double> ResultsOf(const Case& run) {
  std::vector<double> results;
  for (const ElementSlot e : Upward(run.analysis.estimates.elements))
    results.push_back(run.analysis.estimates.elements[e].ElementMeasure);
  results.push_back(run.Threshold(1));
  results.push_back(run.Threshold(2));
  return results;
}

void ExpectSame(const Case& a, const Case& b, double tolerance) {
  const std::vector<double> one = ResultsOf(a), other = ResultsOf(b);
  ASSERT_EQ(one.size(), other.size());
  for (std::size_t i = 0; i < one.size(); ++i) EXPECT_NEAR(one[i], other[i], tolerance) << i;
}

double Logistic(double B) {
  return 1.0 / (1.0 + std::exp(-B));
}

// The place where a rising function is 0.
double Solve(const std::function<double(double)>& rising) {
  double low = -50.0, high = 50.0;
  for (int halving = 0; halving < 200; ++halving)
    (rising((low + high) / 2.0) < 0.0 ? low : high) = (low + high) / 2.0;
  return low;
}

TEST(ElementsCheck, PersonsAmongAnchoredItemsSolveTheirScoreEquation) {
  const std::vector<double> items{-1.5, 0.0, .25, 2.0};
  const Case run({.settings = "Noncenter=1",
                  .model = "?,?,D",
                  .persons = "1,Persons\n1-3=p\n",
                  .items = "2,Items,A\n1=i,-1.5\n2=i,0\n3=i,.25\n4=i,2\n",
                  .data = "1,1-4,1,0,0,0\n2,1-4,1,1,0,0\n3,1-4,1,1,0,1\n"});
  for (int n = 1; n <= 4; ++n) {
    EXPECT_EQ(run.Status(2, n), kStatusAnchored);
    EXPECT_NEAR(run.Measure(2, n), items[static_cast<std::size_t>(n - 1)], 1e-30);
  }
  for (int score = 1; score <= 3; ++score) {
    const double measure = Solve([&](double b) {
      double expected = 0.0;
      for (const double d : items) expected += Logistic(b - d);
      return expected - score;
    });
    EXPECT_NEAR(run.Measure(1, score), measure, 1e-4);
  }
  EXPECT_FALSE(run.Shown("Warning (7)"));
}

TEST(ElementsCheck, AnchorsAreInUserUnits) {
  const Case plain({.items = "2,Items,A\n1=i,-1\n2=i,0\n3=i,.5\n4=i,1\n"});
  const Case units(
      {.settings = "Umean=50,10,1", .items = "2,Items,A\n1=i,40\n2=i,50\n3=i,55\n4=i,60\n"});
  ExpectSame(plain, units, 1e-6);
}

TEST(ElementsCheck, AnAnchorBeyondTheRangeStopsTheRun) {
  AnalysisRun run;
  run.Write("data.txt", AllRatings());
  run.Analyze(
      "Flanks=2\nHardware=5\nModels=?,?,R2\nLabels=\n1,P\n1-6=p\n*\n2,I,A\n1-3=i\n4=x,5\n*\n"
      "Data=data.txt\n");
  EXPECT_NE(run.exitCode, 0);
  EXPECT_NE(run.Screen().find("Failure (20)! Anchor value outside range: 5 (2,4,x)"),
            std::string::npos)
      << run.Screen();
}

TEST(ElementsCheck, AnchorsInTheFloatingFlankOverConstrain) {
  const Case run({.persons = "1,Persons,A\n1=p,1\n2-6=p\n"});
  EXPECT_TRUE(run.Shown("Warning (7)! Over-constrained?  Noncenter= not in effect"));
}

TEST(ElementsCheck, OneAnchorMovesTheOrigin) {
  const Case centered({});
  const Case anchored({.items = "2,Items,A\n1=i,2\n2-4=i\n"});
  const double move = 2.0 - centered.Measure(2, 1);
  for (int n = 2; n <= 4; ++n)
    EXPECT_NEAR(anchored.Measure(2, n), centered.Measure(2, n) + move, 1e-4);
  for (int n = 1; n <= 6; ++n)
    EXPECT_NEAR(anchored.Measure(1, n), centered.Measure(1, n) + move, 1e-4);
  EXPECT_NEAR(anchored.Threshold(1), centered.Threshold(1), 1e-4);
}

TEST(ElementsCheck, ADummyFlankStandsAtZeroAndChangesNothing) {
  Case with({});
  AnalysisRun three;
  three.Write("data.txt", RatingsWithThirdFlank());
  three.Analyze(std::string("Flanks=3\nModels=?,?,?,R2\n") + kTight +
                "Labels=\n1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\n3,Sex,D\n1=f,2\n2=m\n*\n"
                "Data=data.txt\n");
  ASSERT_EQ(three.exitCode, 0) << three.Screen();
  for (int slot = 1; slot <= 10; ++slot)
    EXPECT_NEAR(three.analysis.estimates.elements[ElementSlot(slot)].ElementMeasure,
                with.analysis.estimates.elements[ElementSlot(slot)].ElementMeasure, 1e-4);
  for (int slot = 11; slot <= 12; ++slot) {
    const ElementState& dummy = three.analysis.estimates.elements[ElementSlot(slot)];
    EXPECT_EQ(dummy.ElementStatus, kStatusAnchored);
    EXPECT_NEAR(dummy.ElementMeasure, 0.0, 1e-30);
  }
}

TEST(ElementsCheck, StartingValuesChangeTheWayAndNotTheEnd) {
  const Case plain({});
  const Case started({.items = "2,Items\n1=i,-2\n2=i,1\n3=i,1\n4=i,2\n"});
  ExpectSame(plain, started, 2e-4);
  for (int n = 1; n <= 4; ++n) EXPECT_EQ(started.Status(2, n), kStatusFree);
  const Case stopped(
      {.settings = "Iterations=2", .items = "2,Items\n1=i,-2\n2=i,1\n3=i,1\n4=i,2\n"});
  const Case plainStopped({.settings = "Iterations=2"});
  EXPECT_NE(stopped.Measure(2, 1), plainStopped.Measure(2, 1));
}

TEST(ElementsCheck, OneGroupMovesTheOrigin) {
  const Case centered({});
  const Case grouped({.items = "2,Items,G\n1-4=i,1.5,1\n"});
  for (int n = 1; n <= 4; ++n)
    EXPECT_NEAR(grouped.Measure(2, n), centered.Measure(2, n) + 1.5, 1e-3);
  for (int n = 1; n <= 6; ++n)
    EXPECT_NEAR(grouped.Measure(1, n), centered.Measure(1, n) + 1.5, 1e-3);
}

// Two tests that share nobody: the groups give each its origin.
TEST(ElementsCheck, GroupsTieWhatTheDataDoNot) {
  const std::string first = "1,1-3,0,1,2\n2,1-3,1,1,0\n3,1-3,2,1,1\n4,1-3,1,0,1\n";
  const std::string second = "5,4-6,2,1,2\n6,4-6,1,1,0\n7,4-6,2,0,1\n8,4-6,1,2,1\n";
  const std::string eight = "1,Persons\n1-8=p\n";
  for (const std::string letter : {"G", "X"}) {
    const Case both({.persons = eight,
                     .items = "2,Items," + letter + "\n1-3=i,0,1\n4-6=i,1,2\n",
                     .data = first + second});
    double mean1 = 0.0, mean2 = 0.0;
    for (int n = 1; n <= 3; ++n) {
      mean1 += both.Measure(2, n) / 3;
      mean2 += both.Measure(2, n + 3) / 3;
    }
    EXPECT_NEAR(mean1, 0.0, 1e-4) << letter;
    EXPECT_NEAR(mean2, 1.0, 1e-4) << letter;
    for (int n = 1; n <= 6; ++n) EXPECT_EQ(both.Status(2, n), kStatusAnchored);
    EXPECT_FALSE(both.Shown("Warning (7)"));
  }
}

TEST(ElementsCheck, TheZOriginCountsExtremeElements) {
  // Item 4 is failed by all.
  std::string data;
  for (const char* const line : {"1,1-4,0,1,1,0\n", "2,1-4,1,0,2,0\n", "3,1-4,1,1,0,0\n",
                                 "4,1-4,2,0,1,0\n", "5,1-4,1,2,2,0\n", "6,1-4,2,1,2,0\n"})
    data += line;
  const Case plain({.settings = "Center=2", .data = data});
  const Case withExtremes({.settings = "Center=2Z", .data = data});
  EXPECT_EQ(plain.Status(2, 4), kStatusMaximum) << "hardest of a negative Flank";
  const auto mean = [](const Case& run, int items) {
    double sum = 0.0;
    for (int n = 1; n <= items; ++n) sum += run.Measure(2, n);
    return sum / items;
  };
  EXPECT_NEAR(mean(plain, 3), 0.0, 1e-4);
  EXPECT_NEAR(mean(withExtremes, 4), 0.0, 1e-3);
  const double move = mean(withExtremes, 3);
  EXPECT_LT(move, -.5);
  for (int n = 1; n <= 6; ++n)
    EXPECT_NEAR(withExtremes.Measure(1, n), plain.Measure(1, n) + move, 1e-3);
}

TEST(ElementsCheck, ATargetsMeasureIsTaken) {
  const Case run({.items = "2,Items\n1-3=i\n4=i,,,,2\n"});
  EXPECT_EQ(run.Measure(2, 4), run.Measure(2, 2));
  EXPECT_NEAR(run.Measure(2, 1) + run.Measure(2, 2) + run.Measure(2, 3), 0.0, 1e-4);
  // The persons meet all four items: item 4 where item 2 stands.
  for (int n = 1; n <= 6; ++n) {
    double expected = 0.0;
    for (int i = 1; i <= 4; ++i) {
      const double B = run.Measure(1, n) - run.Measure(2, i);
      const double p1 = std::exp(B - run.Threshold(1));
      const double p2 = p1 * std::exp(B - run.Threshold(2));
      expected += (p1 + 2.0 * p2) / (1.0 + p1 + p2);
    }
    EXPECT_NEAR(expected, run.Scores(1, n).ObservedScore, 1e-3);
  }
}

// Item 2 counts twice: by its element weight, its statement's weight, its Flank's weight against
// halves, by a replication, and by the data themselves.
TEST(ElementsCheck, AllWeightsAreTheSameWeight) {
  std::string repeated = AllRatings(), replicated;
  for (int n = 0; n < 6; ++n) {
    const std::string person = std::to_string(n + 1) + ",";
    const auto rating = [n](int item) { return "," + std::to_string(kRatings[n][item - 1]); };
    repeated += person + "2" + rating(2) + "\n";
    replicated += person + "1" + rating(1) + "\nR2," + person + "2" + rating(2) + "\n" + person +
                  "3-4" + rating(3) + rating(4) + "\n";
  }
  const Case byData({.data = repeated});
  ExpectSame(byData, Case({.items = "2,Items\n1-4=i\n2=i,,,2\n"}), 1e-5);
  ExpectSame(byData, Case({.items = "2,Items,,2\n1=i,,,1\n2=i\n3-4=i,,,1\n"}), 1e-5);
  ExpectSame(byData, Case({.data = replicated}), 1e-5);
  const Case byModel({.model = "?,2,S,2\n?,?,S,1\n*\nRating scale=S,R2\n"});
  ExpectSame(byData, byModel, 1e-5);
  EXPECT_FLOAT_EQ(byModel.Scores(2, 2).Count, 12.0f);
  EXPECT_FLOAT_EQ(byModel.Scores(2, 1).Count, 6.0f);
  EXPECT_DOUBLE_EQ(byModel.Scores(2, 2).ObservedScore, 10.0);
  EXPECT_DOUBLE_EQ(byModel.Scores(2, 2).MaxScore, 24.0);
  EXPECT_FLOAT_EQ(byModel.Scores(2, 2).SmallestWeight, 2.0f);
  EXPECT_FLOAT_EQ(byModel.Scores(1, 1).SmallestWeight, 1.0f);
}

// An element line without a weight takes its Flank's; the product of all weights counts.
TEST(ElementsCheck, WeightsMultiply) {
  const Case run({.model = "?,?,R2,3", .items = "2,Items,,2\n1-4=i\n2=i,,,.5\n"});
  EXPECT_FLOAT_EQ(run.Scores(2, 1).Count, 6 * 3 * 2.0f);
  EXPECT_FLOAT_EQ(run.Scores(2, 2).Count, 6 * 3 * .5f);
  EXPECT_FLOAT_EQ(run.Scores(1, 1).Count, 3 * (2 + .5f + 2 + 2));
}

TEST(ElementsCheck, AWeightOfZeroIsToldOnceAndIgnored) {
  const Case run({.items = "2,Items\n1-4=i\n2=i,,,0\n"});
  const std::string screen = run.Screen();
  const std::string words = "Warning (21)! observation 2 is weighted 0 and is ignored";
  EXPECT_NE(screen.find(words), std::string::npos) << screen;
  EXPECT_EQ(screen.find("Warning (21)", screen.find(words) + 5), std::string::npos);
  const Case without({.model = "?,1,S\n?,3-4,S\n*\nRating scale=S,R2\n"});
  for (const int n : {1, 3, 4}) EXPECT_NEAR(run.Measure(2, n), without.Measure(2, n), 1e-5);
}

TEST(ElementsCheck, AReversedPositionIsAFlankOfTheOtherOrientation) {
  const Case reversed({.settings = "Positive=1", .model = "?,-?,R2"});
  const Case positive({.settings = "Positive=1,2"});
  for (int n = 1; n <= 6; ++n) EXPECT_NEAR(reversed.Measure(1, n), positive.Measure(1, n), 1e-4);
  for (int n = 1; n <= 4; ++n) {
    EXPECT_NEAR(reversed.Measure(2, n), positive.Measure(2, n), 1e-4);
    EXPECT_DOUBLE_EQ(reversed.Scores(2, n).ObservedScore,
                     12.0 - positive.Scores(2, n).ObservedScore);
    EXPECT_FLOAT_EQ(reversed.Scores(2, n).RawScore, positive.Scores(2, n).RawScore);
  }
  const Case off({.settings = "Positive=1\nReversed=N", .model = "?,-?,R2"});
  ExpectSame(off, Case({.settings = "Positive=1"}), 1e-6);
}

// A beats B three times of four: ln 3 apart.  A line of A against A drops out.
TEST(ElementsCheck, PairedComparisonsCancelTheSameElement) {
  const std::string data = "1,2,1\n1,2,1\n1,2,1\n1,2,0\n1,1,1\n2,2,0\n";
  AnalysisRun run;
  run.Write("data.txt", data);
  run.Analyze(std::string("Flanks=2\nEntered-in-data=1,1\nNoncenter=0\nModels=?,-?,D\n") + kTight +
              "Labels=\n1,Players\n1=A\n2=B\n*\n2,None\n*\nData=data.txt\n");
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  const Estimates& estimates = run.analysis.estimates;
  EXPECT_NEAR(estimates.elements[ElementSlot(1)].ElementMeasure, std::log(3.0) / 2, 1e-4);
  EXPECT_NEAR(estimates.elements[ElementSlot(2)].ElementMeasure, -std::log(3.0) / 2, 1e-4);
  EXPECT_FLOAT_EQ(estimates.scores[ElementSlot(1)].Count, 4.0f);
  EXPECT_DOUBLE_EQ(estimates.scores[ElementSlot(1)].ObservedScore, 3.0);
  EXPECT_DOUBLE_EQ(estimates.scores[ElementSlot(2)].ObservedScore, 1.0);
}

TEST(ElementsCheck, IgnoredAndDummyPositionsAddNothing) {
  // Persons by items with a third Flank in the data that no statement measures.
  const Case two({});
  for (const char* const statement : {"?,?,X,R2", "?,?,@,R2", "?,?,,R2"}) {
    AnalysisRun run;
    run.Write("data.txt", RatingsWithThirdFlank());
    run.Analyze(std::string("Flanks=3\nModels=") + statement + "\n" + kTight +
                "Labels=\n1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\n3,Sex\n1=f\n2=m\n*\n"
                "Data=data.txt\n");
    ASSERT_EQ(run.exitCode, 0) << statement << run.Screen();
    for (int slot = 1; slot <= 10; ++slot)
      EXPECT_NEAR(run.analysis.estimates.elements[ElementSlot(slot)].ElementMeasure,
                  two.analysis.estimates.elements[ElementSlot(slot)].ElementMeasure, 1e-6)
          << statement;
    EXPECT_EQ(run.analysis.estimates.scores[ElementSlot(11)].Count, 0.0f) << statement;
  }
}

// A datum of the null element 9 is one on the persons alone.
TEST(ElementsCheck, TheNullElementLeavesItsPositionEmpty) {
  const Case run({.settings = "Null=9",
                  .model = "?,?,S\n*\nRating scale=S,R2\n",
                  .data = AllRatings() + "1,9,2\n"});
  EXPECT_FLOAT_EQ(run.Scores(1, 1).Count, 5.0f);
  EXPECT_FLOAT_EQ(run.Scores(2, 1).Count, 6.0f);
}

TEST(ElementsCheck, BMarksAreTakenAndMeasureAsWithoutThem) {
  ExpectSame(Case({.model = "?B,?B,R2"}), Case({}), 0.0);
}

TEST(ElementsCheck, GroupsComeFromTheLabel) {
  const Case run({.items = "2,Items,G\n1=aX1,0,$3\n2=bX1,0,$3\n3=cX2,1,$3W1\n4=dX2,1,$3W1\n"});
  EXPECT_NEAR(run.Measure(2, 1) + run.Measure(2, 2), 0.0, 1e-3);
  EXPECT_NEAR(run.Measure(2, 3) + run.Measure(2, 4), 2.0, 1e-3);
}

}  // namespace
}  // namespace flanks
