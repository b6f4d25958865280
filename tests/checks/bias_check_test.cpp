// Bias terms against independent grounds: a bisection in 64 bits of each term's score equation, the
// interactions that data were drawn with, and the same data under other numbers.
#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "run/console.h"
#include "stats/bias_fit.h"
#include "support/analysis_run.h"
#include "support/slow_judge/slow_judge.h"

namespace flanks {
namespace {

// An observation as the slow judge wants it, at its measure sum.
struct Seen {
  std::size_t scale = 0;
  double measure = 0.0, weight = 1.0;
  int category = 0;
};

judge::Structure StructureOf(const ScaleTables& scales, ScaleRow row) {
  judge::Structure structure;
  const bool rating = scales.scaleType[row] == ScaleType::rating;
  structure.kind = rating                                        ? judge::Kind::rating
                   : scales.scaleType[row] == ScaleType::poisson ? judge::Kind::poisson
                                                                 : judge::Kind::binomial;
  for (int k = 0; k <= scales.ScaleTopCategory[row]; ++k) {
    structure.rawCategories.push_back(k);
    const bool threshold = k > 0 && (rating || scales.ScaleTopCategory[row] < 2);
    structure.thresholds.push_back(threshold ? scales.ThresholdTable.at(row, k) : 0.0);
    structure.standing.push_back(rating && scales.CategoryFlag.at(row, k) == kCategorySkipped
                                     ? judge::CategoryStanding::skipped
                                     : judge::CategoryStanding::free);
  }
  if (!rating) structure.discrimination = scales.ThresholdTable.at(row, 0);
  return structure;
}

// A finished run, its first interaction estimated again, and the observations of each term.
class JudgedBias {
 public:
  AnalysisRun run;
  std::vector<judge::Structure> structures;
  std::vector<std::vector<Seen>> seen;  // by term

  void Estimate(const std::string& specification, const std::string& data) {
    run.Write("data.txt", data);
    ASSERT_EQ(run.Analyze("Output=report.txt\n" + specification), 0) << run.Screen();
    const ScaleTables& scales = run.analysis.scales;
    for (const ScaleRow row : Upward(scales.scaleType))
      structures.push_back(StructureOf(scales, row));
    Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                    run.analysis.report);
    BiasEstimates bias(PassPartsOf(run.analysis, console),
                       BiasInteractionsOf(run.analysis.design).at(0));
    ASSERT_TRUE(FindBiasTerms(bias, console));
    EstimateBias(BiasOptionsOf(run.analysis.settings, run.analysis.estimates), bias, console);
    results_.push_back(FitBias(WilsonHilferty::exact, bias, console));
    Collect(bias);
  }
  const BiasResults& results() const { return results_.front(); }
  const BiasTerm& term(std::size_t t) const {
    return results().terms[BiasTermRow(static_cast<std::int32_t>(t) + 1)];
  }
  // Labels of a term's elements, joined.
  std::string NameOf(std::size_t t) const {
    std::vector<ElementSlot> elements;
    results().list.FillElements(BiasTermRow(static_cast<std::int32_t>(t) + 1), elements);
    std::string name;
    for (const ElementSlot slot : elements)
      name += (name.empty() ? "" : "+") + run.analysis.design.elements.ElementLabel[slot];
    return name;
  }

  struct Moments {
    double score = 0.0, variance = 0.0, squares = 0.0, z = 0.0, count = 0.0;
  };
  Moments MomentsAt(std::size_t t, double bias) const {
    Moments sums;
    for (const Seen& o : seen[t]) {
      const judge::Moments m = judge::MomentsOf(structures[o.scale], o.measure + bias);
      const double residual = o.category - m.mean;
      sums.score += o.weight * m.mean;
      sums.variance += o.weight * m.variance;
      sums.squares += o.weight * residual * residual;
      sums.z += o.weight * residual * residual / m.variance;
      sums.count += o.weight;
    }
    return sums;
  }
  // The bias of a term's score, which is moved inside by half of its smallest weight.
  double Bisect(std::size_t t) const {
    double score = 0.0, largest = 0.0, smallestWeight = 1E30;
    for (const Seen& o : seen[t]) {
      score += o.weight * o.category;
      largest += o.weight * structures[o.scale].top();
      smallestWeight = std::min(smallestWeight, o.weight);
    }
    if (score == 0.0) score = .5 * smallestWeight;
    if (score == largest) score = largest - .5 * smallestWeight;
    double low = -40.0, high = 40.0;
    for (int halving = 0; halving < 80; ++halving) {
      const double middle = (low + high) / 2.0;
      (MomentsAt(t, middle).score < score ? low : high) = middle;
    }
    return (low + high) / 2.0;
  }

 private:
  void Collect(BiasEstimates& bias) {
    seen.resize(static_cast<std::size_t>(bias.terms.count()));
    ObservationReader reader(bias.parts);
    std::vector<std::int32_t> terms(kKernelBlock);
    reader.Begin(Categories::wanted);
    while (reader.Next()) {
      const ObservationBlock& block = reader.block();
      bias.terms.FillTerms(reader, terms);
      for (std::size_t i = 0; i < block.count; ++i) {
        if (terms[i] == BiasTermList::kNoTerm) continue;
        seen[static_cast<std::size_t>(terms[i]) - 1].push_back(
            {static_cast<std::size_t>(block.scale[i]), block.MeasureSum[i], block.weight[i],
             block.category[i]});
      }
    }
  }

  std::vector<BiasResults> results_;
};

// ---- The slow judge

enum class Shape { rating, binomial, poisson };

// Responses of persons (Flank 1) to raters and items, each pair of the latter with its own bias.
struct Plan {
  const char* name;
  const char* model;
  Shape shape = Shape::rating;
  int top = 3;
  std::array<int, 3> sizes{24, 4, 5};
  bool weights = false;
  double bias = 1.0;  // logits, size of the biases
  double level = 0.0;
  bool extremes = false;  // a term with the largest score and one with 0
  unsigned seed = 1;
};

std::string Labels(const std::array<int, 3>& sizes) {
  std::string text = "Labels=\n";
  for (std::size_t f = 0; f < sizes.size(); ++f) {
    const std::string number = std::to_string(f + 1);
    text += number + ",Flank" + number + "\n1-" + std::to_string(sizes[f]) + "=e\n*\n";
  }
  return text;
}

int Draw(const Plan& plan, double B, std::mt19937& random) {
  std::vector<double> weights;
  double logit = 0.0;
  const int cells = plan.shape == Shape::poisson ? 40 : plan.top;
  for (int k = 0; k <= cells; ++k) {
    if (k > 0) logit += B;
    if (k > 0 && plan.shape == Shape::rating) logit -= (k - (cells + 1) / 2.0) * .9;
    if (k > 0 && plan.shape == Shape::poisson) logit -= std::log(k);
    if (k > 0 && plan.shape == Shape::binomial)
      logit -= std::log(static_cast<double>(k) / (cells - k + 1));
    weights.push_back(std::exp(logit));
  }
  return std::discrete_distribution<int>(weights.begin(), weights.end())(random);
}

std::string DataOf(const Plan& plan) {
  std::mt19937 random(plan.seed);
  std::normal_distribution<double> normal;
  std::array<std::vector<double>, 3> measures;
  for (std::size_t f = 0; f < 3; ++f) {
    measures[f].resize(static_cast<std::size_t>(plan.sizes[f]));
    for (double& measure : measures[f]) measure = (f == 0 ? .7 : .4) * normal(random);
  }
  std::vector<double> bias(static_cast<std::size_t>(plan.sizes[1] * plan.sizes[2]));
  for (double& b : bias) b = plan.bias * (static_cast<int>(random() % 3) - 1);
  const double weights[] = {1.0, 2.5, .5, 1.0};
  std::string text;
  for (int n = 0; n < plan.sizes[0]; ++n) {
    for (int r = 0; r < plan.sizes[1]; ++r) {
      for (int i = 0; i < plan.sizes[2]; ++i) {
        const double B = plan.level + measures[0][static_cast<std::size_t>(n)] -
                         measures[1][static_cast<std::size_t>(r)] -
                         measures[2][static_cast<std::size_t>(i)] +
                         bias[static_cast<std::size_t>(r * plan.sizes[2] + i)];
        int category = Draw(plan, B, random);
        if (plan.extremes && r == 0 && i == 0) category = plan.top;
        if (plan.extremes && r == 1 && i == 1) category = 0;
        if (plan.weights) text += "R" + std::to_string(weights[random() % 4]) + ",";
        text += std::to_string(n + 1) + "," + std::to_string(r + 1) + "," + std::to_string(i + 1) +
                "," + std::to_string(category) + "\n";
      }
    }
  }
  return text;
}

const Plan kPlans[] = {
    {"RatingScale", "?,?B,?B,R3"},
    {"WeightedRatingScale", "?,?B,?B,R4", Shape::rating, 4, {20, 5, 4}, true, 1.0, .3, false, 2},
    {"PartialCredit", "?,?B,#B,R4", Shape::rating, 4, {30, 4, 4}, false, 1.2, 0.0, false, 3},
    {"ThreeWayPartialCredit", "?B,?B,#B,R3", Shape::rating, 3, {8, 3, 3}, true, .8, 0.0, false, 4},
    {"PersonsByRaters", "?B,?B,?,R3", Shape::rating, 3, {25, 4, 3}, false, .5, .5, false, 5},
    {"Dichotomies", "?,?B,?B,D", Shape::rating, 1, {40, 4, 4}, false, .7, 0.0, true, 6},
    {"WeightedDichotomies", "?B,?B,?,D", Shape::rating, 1, {30, 3, 6}, true, .4, 0.0, false, 7},
    {"ExtremeTerms", "?,?B,?B,R3", Shape::rating, 3, {20, 4, 4}, true, .5, 0.0, true, 8},
    {"Binomial", "?,?B,?B,B6", Shape::binomial, 6, {20, 4, 4}, false, .6, 0.0, false, 9},
    {"WeightedBinomial", "?,?B,?B,B4", Shape::binomial, 4, {20, 4, 4}, true, .6, 0.0, true, 10},
    {"Poisson", "?,?B,?B,P", Shape::poisson, 40, {20, 4, 4}, false, .4, 1.0, false, 11},
    {"WeightedPoisson", "?,?B,?B,P", Shape::poisson, 40, {20, 3, 4}, true, .4, .6, false, 12},
};

class AgainstBisection : public testing::TestWithParam<Plan> {};

TEST_P(AgainstBisection, EveryTermHasTheBiasOfItsScore) {
  const Plan& plan = GetParam();
  JudgedBias judged;
  judged.Estimate("Flanks=3\nPositive=1\nModel=" + std::string(plan.model) +
                      "\nConvergence=.01,.0005\n" + Labels(plan.sizes) + "Data=data.txt\n",
                  DataOf(plan));
  ASSERT_FALSE(HasFatalFailure());
  ASSERT_GE(judged.seen.size(), 10u);
  int extremes = 0;
  for (std::size_t t = 0; t < judged.seen.size(); ++t) {
    SCOPED_TRACE(judged.NameOf(t));
    const BiasTerm& term = judged.term(t);
    const double bias = judged.Bisect(t);
    const JudgedBias::Moments at = judged.MomentsAt(t, bias);
    EXPECT_NEAR(term.Bias, bias, .005);
    if (term.standing != BiasStanding::estimable) ++extremes;
    EXPECT_NEAR(term.Count, at.count, 1E-5);
    const double error = 1.0 / std::sqrt(at.variance);
    EXPECT_NEAR(term.StandardError, error, .005 * error);
    EXPECT_NEAR(term.t, bias / error, .02 + .005 * std::abs(bias / error));
    if (at.squares / at.variance < 8.9) {
      EXPECT_NEAR(term.InfitMeanSquare, at.squares / at.variance, .02);
    }
    if (at.z / at.count < 8.9) {
      EXPECT_NEAR(term.OutfitMeanSquare, at.z / at.count, .03);
    }
    EXPECT_NEAR(
        term.ExpectedRaw - term.RawScore,
        judged.MomentsAt(t, 0.0).score -
            [&] {
              double score = 0.0;
              for (const Seen& o : judged.seen[t]) score += o.weight * o.category;
              return score;
            }(),
        .002);
  }
  if (plan.extremes) {
    EXPECT_GE(extremes, 1);
  }
}

INSTANTIATE_TEST_SUITE_P(Designs, AgainstBisection, testing::ValuesIn(kPlans),
                         [](const auto& plan) { return std::string(plan.param.name); });

// ---- Recovery

// The numbers of a row of docs/accuracy.md, by its first cell, below "## Bias terms".
std::vector<double> KeptFigures(const std::string& name) {
  std::ifstream in(std::string(FLANKS_SOURCE_DIR) + "/docs/accuracy.md");
  std::string line;
  while (std::getline(in, line) && line != "## Bias terms") {
  }
  std::vector<double> numbers;
  while (std::getline(in, line)) {
    if (line.find("| " + name + " |") != 0) continue;
    std::istringstream cells(line.substr(name.size() + 4));
    for (std::string cell; std::getline(cells, cell, '|');)
      if (cell.find_first_of("0123456789") != std::string::npos) numbers.push_back(std::stod(cell));
    break;
  }
  return numbers;
}

void ExpectAsKept(const std::string& name, const std::vector<double>& figures,
                  const std::vector<double>& lastDigits) {
  const std::vector<double> kept = KeptFigures(name);
  ASSERT_EQ(kept.size(), figures.size()) << name;
  for (std::size_t i = 0; i < figures.size(); ++i)
    EXPECT_NEAR(figures[i], kept[i], .51 * lastDigits[i]) << name << ", figure " << i + 1;
}

constexpr int kRaters = 6, kCriteria = 4, kPersons = 250;

// Sums to 0 for each rater and each criterion, so that no main effect takes it up.
double TrueBias(int rater, int criterion) {
  if (rater > 1 || criterion > 1) return 0.0;
  return rater == criterion ? .6 : -.6;
}

std::string Ratings(unsigned seed, double size) {
  Plan plan{"", ""};
  plan.top = 4;
  std::mt19937 random(seed);
  std::normal_distribution<double> normal;
  std::string text;
  for (int n = 1; n <= kPersons; ++n) {
    const double person = normal(random);
    for (int r = 0; r < kRaters; ++r) {
      for (int i = 0; i < kCriteria; ++i) {
        const double B = person - (r - 2.5) * .2 - (i - 1.5) * .3 + size * TrueBias(r, i);
        text += std::to_string(n) + "," + std::to_string(r + 1) + "," + std::to_string(i + 1) +
                "," + std::to_string(Draw(plan, B, random)) + "\n";
      }
    }
  }
  return text;
}

TEST(Recovery, InteractionsComeBackWithinTheirErrors) {
  constexpr int kSets = 20;
  double squares = 0.0, biased = 0.0;
  int inside = 0, terms = 0;
  for (unsigned seed = 1; seed <= kSets; ++seed) {
    JudgedBias judged;
    judged.Estimate("Flanks=3\nPositive=1\nModel=?,?B,?B,R4\n" +
                        Labels({kPersons, kRaters, kCriteria}) + "Data=data.txt\n",
                    Ratings(seed, 1.0));
    ASSERT_FALSE(HasFatalFailure());
    for (int i = 0, t = 0; i < kCriteria; ++i) {
      for (int r = 0; r < kRaters; ++r, ++t) {
        const BiasTerm& term = judged.term(static_cast<std::size_t>(t));
        const double truth = TrueBias(r, i);
        const double z = (term.Bias - truth) / term.StandardError;
        squares += z * z;
        inside += std::abs(z) < 1.96 ? 1 : 0;
        if (truth != 0.0) biased += (term.Bias / truth) / (4.0 * kSets);
        ++terms;
      }
    }
  }
  ExpectAsKept("Terms", {biased, squares / terms, 100.0 * inside / terms}, {.01, .01, .1});
  EXPECT_NEAR(biased, 1.0, .05);
  // Main effects take up all but (1 - 1/6)(1 - 1/4) = .625 of the noise of a table of terms; 24
  // ratings of a person stretch what is left by 24/23, squared.
  EXPECT_NEAR(squares / terms, .68, .1);
  EXPECT_GE(static_cast<double>(inside) / terms, .95);
}

// 30 raters on 30 tasks, 12 ratings in each cell: of t, (29/30)² of the variance is left by the
// main effects, so that 3.9 % lie beyond 2.
TEST(Recovery, WithoutInteractionsFewTermsHaveALargeT) {
  int beyond = 0, terms = 0;
  double squares = 0.0;
  for (unsigned seed = 1; seed <= 3; ++seed) {
    std::mt19937 random(100 + seed);
    std::normal_distribution<double> normal;
    Plan plan{"", ""};
    plan.top = 3;
    std::string text;
    for (int n = 0; n < 120; ++n) {
      const double person = .8 * normal(random);
      for (int r = 0; r < 30; ++r) {
        for (int k = 0; k < 3; ++k) {
          const int task = (n + r * 7 + k * 10) % 30;
          const double B = person - (r - 15) * .05 - (task - 15) * .04;
          text += std::to_string(n + 1) + "," + std::to_string(r + 1) + "," +
                  std::to_string(task + 1) + "," + std::to_string(Draw(plan, B, random)) + "\n";
        }
      }
    }
    JudgedBias judged;
    judged.Estimate("Flanks=3\nPositive=1\nModel=?,?B,?B,R3\nTables=0000000010000\n" +
                        Labels({120, 30, 30}) + "Data=data.txt\n",
                    text);
    ASSERT_FALSE(HasFatalFailure());
    for (std::size_t t = 0; t < judged.seen.size(); ++t, ++terms) {
      beyond += std::abs(judged.term(t).t) > 2.0f ? 1 : 0;
      squares += static_cast<double>(judged.term(t).t) * judged.term(t).t;
    }
  }
  ASSERT_EQ(terms, 2700);
  ExpectAsKept("Terms of no bias", {100.0 * beyond / terms, squares / terms}, {.1, .01});
  EXPECT_NEAR(static_cast<double>(beyond) / terms, .039, .012);
  EXPECT_NEAR(squares / terms, .934, .06);
}

// ---- Names

struct Line {
  int person, rater, item, score;
};

// The rows of Table 13 by the labels of their elements: figures from score to outfit.
std::map<std::string, std::string> RowsByName(const std::string& report,
                                              const std::map<std::string, int>& numbers) {
  std::map<std::string, std::string> rows;
  std::istringstream lines(report.substr(report.find("Table 13.1.1")));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t last = line.rfind('|', line.size() < 2 ? 0 : line.size() - 2);
    if (line.size() < 84 || last != 81) continue;
    std::istringstream cells(line.substr(82));
    int sequence = 0, first = 0, second = 0;
    std::string firstLabel, measure, secondLabel;
    if (!(cells >> sequence >> first >> firstLabel >> measure >> second >> secondLabel)) continue;
    // Each number belongs to its label.
    EXPECT_EQ(numbers.at(firstLabel), first) << line;
    EXPECT_EQ(numbers.at(secondLabel), second) << line;
    const std::string name =
        std::min(firstLabel, secondLabel) + "+" + std::max(firstLabel, secondLabel);
    rows[name] = line.substr(0, 82);
  }
  return rows;
}

TEST(Names, OtherNumbersOrdersAndPositionsGiveTheSameTerms) {
  const std::vector<std::string> raters = {"Ann", "Ben", "Cid", "Dora"};
  const std::vector<std::string> items = {"Form", "Style", "Text"};
  Plan plan{"", ""};
  std::mt19937 random(77);
  std::normal_distribution<double> normal;
  std::vector<Line> data;
  for (int n = 0; n < 40; ++n) {
    const double person = normal(random);
    for (int r = 0; r < 4; ++r)
      for (int i = 0; i < 3; ++i)
        data.push_back(
            {n, r, i, Draw(plan, person - r * .2 + i * .3 + (r == i ? .8 : -.2), random)});
  }
  std::map<std::string, std::string> expected;
  for (int turn = 0; turn < 4; ++turn) {
    SCOPED_TRACE(turn);
    std::vector<int> raterNumbers = {1, 2, 3, 4}, itemNumbers = {1, 2, 3};
    if (turn > 0) {
      raterNumbers = {71, 5, 33, 18};
      itemNumbers = {9, 200, 4};
    }
    if (turn > 1) std::shuffle(data.begin(), data.end(), random);
    const bool swapped = turn > 2;  // items in front of raters
    std::map<std::string, int> numbers;
    const auto flank = [&](const std::string& head, const std::vector<std::string>& labels,
                           const std::vector<int>& given) {
      std::string text = head + "\n";
      for (std::size_t n = labels.size(); n-- > 0;) {
        text += std::to_string(given[n]) + "=" + labels[n] + "\n";
        numbers[labels[n]] = given[n];
      }
      return text + "*\n";
    };
    std::string specification =
        "Flanks=3\nPositive=1\nModel=?,?B,?B,R3\nArrange=N\nConvergence=.001,.00001\nUdecimals=2\n"
        "Labels=\n1,Persons\n1-40=p\n*\n";
    specification +=
        swapped ? flank("2,Items", items, itemNumbers) + flank("3,Raters", raters, raterNumbers)
                : flank("2,Raters", raters, raterNumbers) + flank("3,Items", items, itemNumbers);
    std::string text;
    for (const Line& line : data) {
      const std::string rater = std::to_string(raterNumbers[static_cast<std::size_t>(line.rater)]);
      const std::string item = std::to_string(itemNumbers[static_cast<std::size_t>(line.item)]);
      text += std::to_string(line.person + 1) + "," +
              (swapped ? item + "," + rater : rater + "," + item) + "," +
              std::to_string(line.score) + "\n";
    }
    AnalysisRun run;
    run.Write("data.txt", text);
    ASSERT_EQ(run.Analyze("Output=report.txt\n" + specification + "Data=data.txt\n"), 0)
        << run.Screen();
    const std::map<std::string, std::string> rows = RowsByName(run.Report(), numbers);
    ASSERT_EQ(rows.size(), 12u) << run.Report();
    if (turn == 0) {
      expected = rows;
    } else {
      EXPECT_EQ(rows, expected);
    }
  }
}

}  // namespace
}  // namespace flanks
