// The examples against the slow judge, so that their golden reports do not rest on our own word.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "support/flanks_sandbox.h"
#include "support/judged_run.h"

namespace flanks {
namespace {

namespace fs = std::filesystem;
using judge::Kind;
using judge::StructurePlan;

struct Example {
  std::string folder;  // below examples/
  std::string name;    // of the Specification, and of the data with "-data"
  std::vector<int> sizes;
  std::vector<int> signs;
  // One for all, or one for each element of the last Flank.
  std::vector<StructurePlan> structures = {StructurePlan{}};
  int firstPerson = 1;         // the lowest number in Flank 1
  bool bank = false;           // the last Flank and the thresholds have anchors
  double measureError = .001;  // logits
};

StructurePlan Trials(int trials) {
  StructurePlan plan;
  plan.kind = Kind::binomial;
  plan.trials = trials;
  return plan;
}

fs::path FolderOf(const Example& example) {
  return fs::path(FLANKS_SOURCE_DIR) / "examples" / example.folder;
}

std::string Comma(std::string text) {
  for (char& c : text)
    if (c == '=') c = ',';
  return text;
}

std::vector<std::string> CommaFields(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream in(line.substr(0, line.find(';')));
  for (std::string field; std::getline(in, field, ',');) fields.push_back(field);
  return fields;
}

// Lines of the form "1, 1, 1-4, 3, 1, 2, 3": the last Flank's elements as a range.
judge::Design ReadDesign(const Example& example) {
  judge::Design design;
  design.elementCounts = example.sizes;
  design.signs = example.signs;
  design.structures = example.structures;
  const std::size_t flanks = example.sizes.size();
  std::istringstream in(ReadWholeFile(FolderOf(example) / (example.name + "-data.txt")));
  for (std::string line; std::getline(in, line);) {
    const std::vector<std::string> fields = CommaFields(line);
    if (fields.size() <= flanks) continue;
    for (std::size_t r = flanks; r < fields.size(); ++r) {
      judge::Observation observation;
      for (std::size_t f = 0; f < flanks; ++f)
        observation.elements.push_back(std::atoi(fields[f].c_str()) - 1);
      observation.elements.front() -= example.firstPerson - 1;
      observation.elements.back() += static_cast<int>(r - flanks);
      if (example.structures.size() > 1) observation.structure = observation.elements.back();
      observation.category = std::atoi(fields[r].c_str());
      design.observations.push_back(observation);
    }
  }
  return design;
}

// A line of the bank that has a value: "4 = Describe a picture, 50.79", "2 = with help, -6.13, A".
struct BankLine {
  int number;
  double value;  // units of 10 to a logit, of measures around 50
};

std::vector<BankLine> ReadBank(const fs::path& file) {
  std::vector<BankLine> lines;
  std::istringstream in(ReadWholeFile(file));
  for (std::string line; std::getline(in, line);) {
    const std::vector<std::string> fields = CommaFields(Comma(line.substr(0, line.find(';'))));
    if (fields.size() >= 3 && std::atoi(fields[0].c_str()) > 0)
      lines.push_back({std::atoi(fields[0].c_str()), std::atof(fields[2].c_str())});
  }
  return lines;
}

void AnchorAtTheBank(const Example& example, judge::Design& design) {
  for (const BankLine& line : ReadBank(FolderOf(example) / "bank-tasks.txt"))
    design.anchors.push_back({design.signs.size() - 1, line.number - 1, (line.value - 50.0) / 10});
  for (const BankLine& line : ReadBank(FolderOf(example) / "bank-marks.txt"))
    design.structures.front().anchors.push_back({line.number, line.value / 10});
}

int Analyze(const Example& example, AnalysisRun& run) {
  for (const fs::directory_entry& file : fs::directory_iterator(FolderOf(example)))
    run.Write(file.path().filename().string(), ReadWholeFile(file.path()));
  const std::string text = ReadWholeFile(FolderOf(example) / (example.name + ".txt"));
  return run.Analyze(text, "Convergence=.0005,.000005");
}

class ExampleCheck : public ::testing::TestWithParam<Example> {};

TEST_P(ExampleCheck, MeasuresAndStatisticsAgreeWithTheSlowJudge) {
  const Example& example = GetParam();
  JudgedRun both;
  both.design = ReadDesign(example);
  if (example.bank) AnchorAtTheBank(example, both.design);
  both.verdict = judge::Judge(both.design);
  ASSERT_TRUE(both.verdict.converged);

  ASSERT_EQ(Analyze(example, both.run), 0) << both.run.Screen();
  ASSERT_EQ(both.run.analysis.work.records,
            static_cast<std::int64_t>(both.design.observations.size()));
  both.ExpectMeasures(example.measureError);
  both.ExpectScales(example.measureError);
  both.ExpectStatistics(2 * example.measureError);
  both.ExpectScores();
}

INSTANTIATE_TEST_SUITE_P(
    Checks, ExampleCheck,
    ::testing::Values(
        Example{"painters", "painters", {54, 4}, {1, -1}},
        Example{"essays", "essays", {90, 6, 4}, {1, -1, -1}},
        Example{"partial-credit",
                "partial-credit",
                {40, 3, 6},
                {1, -1, -1},
                std::vector<StructurePlan>(6)},
        Example{"binomial", "binomial", {30, 8}, {1, -1}, {Trials(8)}},
        Example{"anchored", "first", {30, 8}, {1, -1}},
        // Anchors that the data contradict, beside free tasks: a little off the maximum.
        Example{"anchored", "anchored", {36, 11}, {1, -1}, {StructurePlan{}}, 101, true, .0025}),
    [](const auto& example) {
      std::string name = example.param.folder + "_" + example.param.name;
      for (char& c : name)
        if (c == '-') c = '_';
      return name;
    });

// What README.md of the example says of the bank: the first session's measures and thresholds,
// as its report shows them.
TEST(ExampleCheck, TheBankIsWhatTheFirstSessionFound) {
  const Example first{"anchored", "first", {30, 8}, {1, -1}};
  JudgedRun session;
  session.verdict = judge::Judge(ReadDesign(first));
  const double rounding = .0051;
  const std::vector<BankLine> tasks = ReadBank(FolderOf(first) / "bank-tasks.txt");
  ASSERT_EQ(tasks.size(), 8U);
  for (const BankLine& line : tasks) {
    const judge::Element& task =
        session.verdict.elements[1][static_cast<std::size_t>(line.number - 1)];
    EXPECT_NEAR(line.value, 50 + 10 * task.measure, rounding) << line.number;
  }
  const std::vector<BankLine> marks = ReadBank(FolderOf(first) / "bank-marks.txt");
  ASSERT_EQ(marks.size(), 4U);
  for (const BankLine& line : marks) {
    const double threshold =
        session.verdict.structures[0].thresholds[static_cast<std::size_t>(line.number)];
    EXPECT_NEAR(line.value, 10 * threshold, rounding) << line.number;
  }
}

}  // namespace
}  // namespace flanks
