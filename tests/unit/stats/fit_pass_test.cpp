#include "stats/fit_pass.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "estimate/jmle_pass.h"
#include "estimate/recount.h"
#include "estimate/scale_build.h"
#include "run/messages.h"
#include "stats/fit_statistics.h"
#include "support/data_design.h"
#include "support/slow_judge/slow_judge.h"

namespace flanks {
namespace {

// A run whose data are read and whose measures are set by hand.
class FitRun {
 public:
  DataRun data;

  Estimates& estimates() { return data.analysis.estimates; }
  ScaleTables& scales() { return data.analysis.scales; }

  // `signs`: +1 for a positive Flank, -1 for a negative one; elements are numbered from 1.
  void Flanks(const std::vector<int>& elementCounts, const std::vector<int>& signs) {
    for (std::size_t f = 0; f < elementCounts.size(); ++f) {
      DataRun::Elements elements;
      for (int n = 1; n <= elementCounts[f]; ++n) elements.push_back({n, ""});
      const FlankNo flank = data.Flank(elements);
      data.design().flanks.FlankOrientation[flank] =
          signs[f] > 0 ? kPositiveOrientation : kNegativeOrientation;
    }
  }

  // Reads the data; all elements are in play at measure 0, all thresholds are 0.
  void Read(const std::string& lines) {
    data.Read(lines);
    BuildScales(data.design(), data.analysis.structures, 1.0f, scales());
    Estimates& e = estimates();
    e.TinyValue = static_cast<float>(std::exp(-80.0));
    e.elements.resize(data.design().ElementTotal);
    e.scores.resize(data.design().ElementTotal);
    for (ElementState& element : e.elements) element.ElementStatus = kStatusFree;
  }

  ElementSlot SlotOf(std::size_t flank, std::size_t element) {
    const FlankNo f(static_cast<std::int32_t>(flank) + 1);
    return data.design().flanks.FlankFirstSlot[f] + static_cast<std::int32_t>(element);
  }
  ElementState& State(std::size_t flank, std::size_t element) {
    return estimates().elements[SlotOf(flank, element)];
  }

  // Scores and categories as a recount finds them, until they stand.
  void CountScores() {
    const PassParts parts = PassPartsOf(data.analysis, data.console);
    bool changed = true;
    while (changed) {
      ClearScores(estimates());
      ClearPassSums(estimates());
      ClearScaleSums(Recount::needed, scales());
      ObservationReader reader(parts);
      CountingPass(parts).Run(reader, Recount::needed);
      changed = RebuildScales(scales());
    }
  }

  void Fit() {
    CalculateFit(data.run);
    SummarizeFit(data.run);
  }
  const ElementFinal& Final(std::size_t flank, std::size_t element) {
    return *FinishedStatistics(estimates(), SlotOf(flank, element)).operator->();
  }
};

// One observation of a rating scale 1 to 3 (raw) with thresholds -1 and 1 at B = 1.5 - .5 = 1:
// cumulative logits 0, 2, 2; p = .063380, .468310, .468310; E = 1.404930, V = .367721.
class OneObservation : public ::testing::Test {
 protected:
  FitRun run;
  const double e2 = std::exp(2.0);
  const double p0 = 1 / (1 + 2 * e2), p1 = e2 / (1 + 2 * e2);
  const double E = 3 * p1;
  const double V = 5 * p1 - E * E;

  void SetUp() override {
    run.Flanks({3, 2}, {1, -1});
    run.data.Model("?,?,R5");
    // The second and third person only show that categories 1 and 3 exist.
    run.Read("1,1,2\n2,2,1\n3,2,3\n");
    run.CountScores();
    run.State(0, 0).ElementMeasure = 1.5f;
    run.State(1, 0).ElementMeasure = 0.5f;
    run.scales().ThresholdTable.at(ScaleRow(0), 1) = -1.0f;
    run.scales().ThresholdTable.at(ScaleRow(0), 2) = 1.0f;
  }
};

TEST_F(OneObservation, FillsTheSumsOfItsElements) {
  CalculateFit(run.data.run);
  ASSERT_EQ(run.estimates().stage, StatisticsStage::sums);
  const double residual = 1 - E;
  const double C4 = std::pow(E, 4) * p0 + std::pow(1 - E, 4) * p1 + std::pow(2 - E, 4) * p1;
  const double mean = 2 * p1 + 2 * p1, square = 4 * p1 + 4 * p1;
  for (const std::size_t flank : {0u, 1u}) {
    const FitSums& sums = run.estimates().fitSums[run.SlotOf(flank, 0)];
    EXPECT_NEAR(sums.terms.ResidualSum, E, 1E-6);
    EXPECT_NEAR(sums.terms.Information, V, 1E-6);
    EXPECT_NEAR(sums.terms.InfitSum, residual * residual, 1E-6);
    EXPECT_NEAR(sums.terms.InfitVarianceSum, C4 - V * V, 1E-5);
    EXPECT_NEAR(sums.terms.OutfitSum, residual * residual / V, 1E-6);
    EXPECT_NEAR(sums.terms.ExpectedSum, C4 / (V * V), 1E-4);
    EXPECT_NEAR(sums.terms.LogLikelihoodSum, 2.0, 1E-6);
    EXPECT_NEAR(sums.terms.LogLikelihoodMean, mean, 1E-6);
    EXPECT_NEAR(sums.terms.LogLikelihoodSpread, square - mean * mean, 1E-5);
    EXPECT_EQ(sums.correlation.W, 1.0);
    EXPECT_EQ(sums.correlation.B, 1.0);
    EXPECT_EQ(sums.correlation.x, 0.5);
    EXPECT_EQ(sums.correlation.Bx, 0.5);
    EXPECT_NEAR(sums.correlation.r, E / 2, 1E-6);
    EXPECT_NEAR(sums.correlation.v, V / 4, 1E-6);
    EXPECT_EQ(sums.ElementScale, ScaleRow(0));
    EXPECT_FALSE(sums.severalScales);
  }
}

// The person stands at 1.5 against raters of mean .25: B = 1.25, logits 0, 2.25, 2.5.  The rater
// of .5 stands against persons of mean .5: B = 0, logits 0, 1, 0.  Raw categories begin at 1.
TEST_F(OneObservation, TakesTheFairScoreAgainstTheOtherFlanksMean) {
  run.Fit();
  const double person = (std::exp(2.25) + 2 * std::exp(2.5)) / (1 + std::exp(2.25) + std::exp(2.5));
  EXPECT_NEAR(FairAverage(run.estimates(), run.SlotOf(0, 0)), 1 + person, 1E-6);
  EXPECT_NEAR(FairAverage(run.estimates(), run.SlotOf(1, 0)), 1 + 1.0, 1E-6);
}

// Against zero: B = 1.5 for the person, -.5 for the rater.
TEST_F(OneObservation, TakesTheFairScoreAgainstZeroOnRequest) {
  run.data.settings().FairAverageKind = 'Z';
  run.Fit();
  const auto fair = [](double B) {
    const double a = std::exp(B + 1), b = std::exp(2 * B);
    return 1 + (a + 2 * b) / (1 + a + b);
  };
  EXPECT_NEAR(FairAverage(run.estimates(), run.SlotOf(0, 0)), fair(1.5), 1E-6);
  EXPECT_NEAR(FairAverage(run.estimates(), run.SlotOf(1, 0)), fair(-0.5), 1E-6);
}

TEST_F(OneObservation, RaisesTheExpectedCountsOfItsScale) {
  CalculateFit(run.data.run);
  // Persons 2 and 3 are at B = 0: p = 1, e, 1 over 2 + e, twice.
  const double share = 1 / (2 + std::exp(1.0));
  const ScaleTables& scales = run.scales();
  EXPECT_EQ(scales.ExpectedCount.at(ScaleRow(0), 0), 0.0);
  EXPECT_NEAR(scales.ExpectedCount.at(ScaleRow(0), 1), p1 + 2 * std::exp(1.0) * share, 1E-6);
  EXPECT_NEAR(scales.ExpectedCount.at(ScaleRow(0), 2), p1 + 2 * share, 1E-6);
  EXPECT_NEAR(scales.DiscriminationSums.at(ScaleRow(0), 2), p1 * (1 - p1) + 2 * share * (1 - share),
              1E-6);
  CalculateFit(run.data.run);  // and begins anew
  EXPECT_NEAR(scales.ExpectedCount.at(ScaleRow(0), 2), p1 + 2 * share, 1E-6);
}

TEST_F(OneObservation, CountsStatesAndWeights) {
  run.State(0, 2).ElementStatus = kStatusMaximum;
  run.State(0, 1).ElementStatus = kStatusDropped;
  CalculateFit(run.data.run);
  const FitTotals& totals = run.estimates().fitTotals;
  EXPECT_EQ(totals.ofState(1).Count, 1.0);
  EXPECT_EQ(totals.ofState(1).Mean, 2.0);
  EXPECT_EQ(totals.ofState(2).Count, 1.0);
  EXPECT_EQ(totals.ofState(2).Mean, 3.0);
  EXPECT_EQ(totals.ofState(-2).Count, 1.0);
  EXPECT_EQ(totals.ofState(-2).Mean, 1.0);
  EXPECT_EQ(totals.TotalWeightedCount, 1.0);
  EXPECT_NEAR(totals.SquaredStandardizedSum, (1 - E) * (1 - E) / V, 1E-6);
}

// Person 3 is extreme: the observation counts for it alone, but for the rater's correlation too.
TEST_F(OneObservation, WithAnExtremeElementCountsForThatElement) {
  run.State(0, 2).ElementStatus = kStatusMaximum;
  CalculateFit(run.data.run);
  const FitSums& extreme = run.estimates().fitSums[run.SlotOf(0, 2)];
  const FitSums& rater = run.estimates().fitSums[run.SlotOf(1, 1)];
  EXPECT_GT(extreme.terms.Information, 0.0);
  EXPECT_EQ(extreme.correlation.W, 1.0);
  EXPECT_EQ(rater.correlation.W, 2.0);
  const double share = 1 / (2 + std::exp(1.0));  // the observation of person 2, B = 0
  EXPECT_NEAR(rater.terms.Information, 2 * share, 1E-6);
}

TEST_F(OneObservation, SaysWhatItDoes) {
  run.Fit();
  const std::string screen = run.data.Screen();
  const std::size_t pass = screen.find("Calculating fit statistics");
  ASSERT_NE(pass, std::string::npos);
  EXPECT_NE(screen.find("Computing fit summary statistics..", pass), std::string::npos);
}

TEST(FitPass, AReversedPositionExpectsTheRestOfTheScale) {
  FitRun run;
  run.Flanks({2, 2}, {1, 1});
  run.data.Model("?,-?,R5");
  run.data.design().models.anyReversed = true;
  run.Read("1,1,0\n1,2,1\n2,1,2\n");
  run.CountScores();
  run.State(0, 0).ElementMeasure = 1.0f;
  CalculateFit(run.data.run);
  // Person 1 at B = 1 with thresholds 0: logits 0, 1, 2; the second Flank takes 2 - E of it.
  const double E = (std::exp(1.0) + 2 * std::exp(2.0)) / (1 + std::exp(1.0) + std::exp(2.0));
  const double person = run.estimates().fitSums[run.SlotOf(0, 0)].terms.ResidualSum;
  const double reversed = run.estimates().fitSums[run.SlotOf(1, 1)].terms.ResidualSum;
  EXPECT_NEAR(person, 2 * E, 1E-6);
  EXPECT_NEAR(reversed, 2 - E, 1E-6);
  // The Flank's means are .5 and 0: the reversed element is met at B = .5, the category as it is.
  const double fair = (std::exp(0.5) + 2 * std::exp(1.0)) / (1 + std::exp(0.5) + std::exp(1.0));
  EXPECT_NEAR(run.estimates().fitSums[run.SlotOf(1, 1)].terms.FairSum, fair, 1E-6);
}

TEST(FitPass, NotesAnElementOfSeveralScales) {
  FitRun run;
  run.Flanks({2, 2}, {1, -1});
  run.data.Model("?,1,R5");
  run.data.Model("?,2,R3");
  run.Read("1,1,0\n1,2,1\n2,1,2\n1,1,1\n2,2,0\n");
  run.CountScores();
  CalculateFit(run.data.run);
  const auto& sums = run.estimates().fitSums;
  EXPECT_TRUE(sums[run.SlotOf(0, 0)].severalScales);
  EXPECT_FALSE(sums[run.SlotOf(1, 0)].severalScales);
  EXPECT_EQ(sums[run.SlotOf(1, 0)].ElementScale, ScaleRow(0));
  EXPECT_EQ(sums[run.SlotOf(1, 1)].ElementScale, ScaleRow(1));
}

TEST(FitPass, ClearsWhatAFormerPassLeft) {
  FitRun run;
  run.Flanks({2, 2}, {1, -1});
  run.data.Model("?,?,R5");
  run.Read("1,1,0\n1,2,1\n2,1,2\n2,2,1\n");
  run.CountScores();
  CalculateFit(run.data.run);
  const double first = run.estimates().fitSums[run.SlotOf(0, 0)].terms.Information;
  CalculateFit(run.data.run);
  EXPECT_EQ(run.estimates().fitSums[run.SlotOf(0, 0)].terms.Information, first);
  EXPECT_EQ(run.estimates().fitTotals.ofState(1).Count, 4.0);
}

// A Poisson scale of counts up to 3 fills 11 probabilities; one of counts up to 9 fills 19.
TEST(FitPass, TellsOfPoissonScalesBesideLargerOnes) {
  constexpr const char* kWords = "Poisson scales beside larger scales: ";
  const auto screenOf = [](const std::string& secondModel) {
    FitRun run;
    run.Flanks({4, 2}, {1, -1});
    run.data.Model("?,1,P");
    run.data.Model(secondModel);
    run.Read("1,1,0\n2,1,1\n3,1,2\n4,1,3\n1,2,1\n2,2,4\n3,2,5\n4,2,9\n");
    run.CountScores();
    CalculateFit(run.data.run);
    return run.data.Screen();
  };
  EXPECT_THAT(screenOf("?,2,P"), testing::HasSubstr(kWords));
  EXPECT_THAT(screenOf("?,2,R9"), testing::Not(testing::HasSubstr(kWords)));
}

// With the shared array marked as filled to its end, although all of it is 0, the observations are
// taken one by one.
TEST(FitPass, OfAPoissonScaleHasTheSameBitsInBatchesAndOneByOne) {
  FitRun run;
  run.Flanks({40, 5}, {1, -1});
  run.data.Model("?,1-3,P");
  run.data.Model("?,4-5,R3");
  std::string lines;
  std::mt19937 random(11);
  for (int person = 1; person <= 40; ++person) {
    for (int item = 1; item <= 5; ++item) {
      lines += std::to_string(person) + "," + std::to_string(item) + "," +
               std::to_string(random() % (item < 4 ? 9 : 4)) + "\n";
    }
  }
  run.Read(lines);
  run.CountScores();
  for (ElementState& element : run.estimates().elements)
    element.ElementMeasure = Single(std::normal_distribution<double>(0.5, 0.6)(random));
  CalculateFit(run.data.run);
  const Column<ElementSlot, FitSums> batch = run.estimates().fitSums;
  run.estimates().work.filledTo = kProbabilityEntries - 1;
  CalculateFit(run.data.run);
  for (const ElementSlot e : Upward(batch)) {
    const FitTerms& one = run.estimates().fitSums[e].terms;
    EXPECT_EQ(one.Information, batch[e].terms.Information);
    EXPECT_EQ(one.OutfitSum, batch[e].terms.OutfitSum);
    EXPECT_EQ(one.InfitVarianceSum, batch[e].terms.InfitVarianceSum);
    EXPECT_EQ(one.ExpectedSum, batch[e].terms.ExpectedSum);
    EXPECT_EQ(one.LogLikelihoodSpread, batch[e].terms.LogLikelihoodSpread);
    EXPECT_EQ(one.FairSum, batch[e].terms.FairSum);
    EXPECT_EQ(run.estimates().fitSums[e].correlation.rr, batch[e].correlation.rr);
  }
}

// The same observations for the program and for the slow judge, at the same measures.
struct Comparison {
  FitRun run;
  judge::Design design;
  judge::Verdict verdict;
  std::mt19937 random;

  explicit Comparison(unsigned seed) : random(seed) {}

  // `statements`: one structure each, of the elements of the last Flank that fall to it by number.
  void Make(const std::vector<int>& counts, const std::vector<int>& signs, int structures, int top,
            bool weighted) {
    run.Flanks(counts, signs);
    design.elementCounts = counts;
    design.signs = signs;
    design.structures.resize(static_cast<std::size_t>(structures));
    const int items = counts.back();
    for (int s = 0; s < structures; ++s) {
      const int low = 1 + s * items / structures, high = (s + 1) * items / structures;
      std::string statement;
      for (std::size_t f = 0; f + 1 < counts.size(); ++f) statement += "?,";
      statement += std::to_string(low) + "-" + std::to_string(high) + ",R" + std::to_string(top);
      run.data.Model(statement);
    }
    std::string lines;
    for (int person = 0; person < counts[0]; ++person) {
      for (int item = 0; item < items; ++item) AddDatum(person, item, top, weighted, lines);
    }
    run.Read(lines);
  }

  void AddDatum(int person, int item, int top, bool weighted, std::string& lines) {
    judge::Observation o;
    for (std::size_t f = 0; f < design.elementCounts.size(); ++f) {
      o.elements.push_back(
          static_cast<int>(random() % static_cast<unsigned>(design.elementCounts[f])));
    }
    o.elements.front() = person;
    o.elements.back() = item;
    o.category = static_cast<int>(random() % static_cast<unsigned>(top + 1));
    if (person == 0) o.category = top;  // a perfect score
    if (person == 1) o.category = 0;
    o.weight = weighted && random() % 3 == 0 ? 2.5 : 1.0;
    o.structure = item * static_cast<int>(design.structures.size()) / design.elementCounts.back();
    design.observations.push_back(o);
    if (weighted) lines += o.weight == 1.0 ? "R1," : "R2.5,";
    for (const int n : o.elements) lines += std::to_string(n + 1) + ",";
    lines += std::to_string(o.category) + "\n";
  }

  float Draw() { return Single(std::normal_distribution<double>(0.0, 0.6)(random)); }

  void Estimate() {
    verdict = judge::PrepareDesign(design);
    for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
      for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
        judge::Element& e = verdict.elements[f][n];
        ElementState& state = run.State(f, n);
        state.ElementMeasure = Draw();
        e.measure = static_cast<double>(state.ElementMeasure);
        if (e.standing == judge::Standing::zeroScore) state.ElementStatus = kStatusMinimum;
        if (e.standing == judge::Standing::perfectScore) state.ElementStatus = kStatusMaximum;
        if (e.standing == judge::Standing::dropped) state.ElementStatus = kStatusDropped;
      }
    }
    run.CountScores();
    for (std::size_t s = 0; s < verdict.structures.size(); ++s) {
      const ScaleRow scale(static_cast<std::int32_t>(s));
      ASSERT_EQ(run.scales().ScaleTopCategory[scale], verdict.structures[s].top());
      if (verdict.structures[s].top() < 2) continue;
      for (std::size_t k = 1; k < verdict.structures[s].thresholds.size(); ++k) {
        const float threshold = Draw();
        run.scales().ThresholdTable.at(scale, static_cast<int>(k)) = threshold;
        verdict.structures[s].thresholds[k] = static_cast<double>(threshold);
      }
    }
    judge::Summarize(design, verdict);
  }

  void Compare() {
    for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
      for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) CompareElement(f, n);
    }
  }

  void CompareElement(std::size_t f, std::size_t n) {
    const judge::Element& e = verdict.elements[f][n];
    const ElementSlot slot = run.SlotOf(f, n);
    const ElementFinal& found = run.Final(f, n);
    const std::string where = "Flank " + std::to_string(f) + " element " + std::to_string(n);
    // Moments of 32 bits; the data are noise, so the statistics are large.
    const auto near = [&](double value, double expected, const char* what) {
      EXPECT_NEAR(value, expected, 1E-4 * (1.0 + std::abs(expected))) << what << " of " << where;
    };
    near(run.estimates().scores[slot].Count, e.count, "count");
    near(run.estimates().scores[slot].ObservedScore, e.score, "score");
    near(found.StandardError, e.standardError, "S.E.");
    near(found.InfitMeanSquare, e.infit, "infit");
    near(found.InfitZStd, e.infitZStd, "infit ZStd");
    near(found.OutfitMeanSquare, e.outfit, "outfit");
    near(found.OutfitZStd, e.outfitZStd, "outfit ZStd");
    near(found.Displacement, e.displacement, "displacement");
    near(found.Discrimination, e.discrimination, "discrimination");
    near(found.PointMeasure, e.pointMeasure, "point-measure");
    near(found.PointResidual, e.pointExpected, "its expectation");
    near(FairAverage(run.estimates(), slot), e.fairAverage, "fair average");
  }
};

struct ComparisonCase {
  std::vector<int> counts, signs;
  int structures, top;
  bool weighted;
};

TEST(FitPass, AgreesWithTheSlowJudgeAtTheSameMeasures) {
  const std::vector<ComparisonCase> cases = {
      {{12, 6}, {1, -1}, 1, 1, false},
      {{12, 6}, {1, -1}, 1, 4, false},
      {{10, 3, 6}, {1, -1, -1}, 1, 3, false},
      {{10, 3, 6}, {1, -1, 1}, 3, 5, false},
      {{10, 3, 2, 6}, {-1, 1, -1, 1}, 2, 4, true},
      {{300, 4, 8}, {1, -1, -1}, 4, 3, true},
      {{60, 2, 40}, {1, -1, -1}, 40, 3, false},  // so many scales that a batch holds several
  };
  unsigned seed = 1;
  for (const ComparisonCase& c : cases) {
    SCOPED_TRACE("case " + std::to_string(seed));
    Comparison comparison(seed++);
    comparison.Make(c.counts, c.signs, c.structures, c.top, c.weighted);
    comparison.Estimate();
    comparison.run.Fit();
    comparison.Compare();
  }
}

}  // namespace
}  // namespace flanks
