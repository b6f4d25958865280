// The examples against the slow judge, so that their golden reports do not rest on our own word.
#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "support/analysis_run.h"
#include "support/flanks_sandbox.h"
#include "support/slow_judge/slow_judge.h"

namespace flanks {
namespace {

struct Example {
  const char* name;
  std::vector<int> sizes;
  std::vector<int> signs;
};

std::vector<std::string> CommaFields(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream in(line.substr(0, line.find(';')));
  for (std::string field; std::getline(in, field, ',');) fields.push_back(field);
  return fields;
}

// Lines of the form "1, 1, 1-4, 3, 1, 2, 3": the last Flank's elements as a range.
judge::Design ReadDesign(const Example& example, const std::string& data) {
  judge::Design design;
  design.elementCounts = example.sizes;
  design.signs = example.signs;
  const std::size_t flanks = example.sizes.size();
  std::istringstream in(data);
  for (std::string line; std::getline(in, line);) {
    const std::vector<std::string> fields = CommaFields(line);
    if (fields.size() <= flanks) continue;
    for (std::size_t r = flanks; r < fields.size(); ++r) {
      judge::Observation observation;
      for (std::size_t f = 0; f < flanks; ++f)
        observation.elements.push_back(std::atoi(fields[f].c_str()) - 1);
      observation.elements.back() += static_cast<int>(r - flanks);
      observation.category = std::atoi(fields[r].c_str());
      design.observations.push_back(observation);
    }
  }
  return design;
}

class ExampleCheck : public ::testing::TestWithParam<Example> {};

TEST_P(ExampleCheck, MeasuresAndStatisticsAgreeWithTheSlowJudge) {
  const Example& example = GetParam();
  const std::string name = example.name;
  const std::string folder = std::string(FLANKS_SOURCE_DIR) + "/examples/" + name + "/";
  const std::string data = ReadWholeFile(folder + name + "-data.txt");
  const judge::Design design = ReadDesign(example, data);
  const judge::Verdict verdict = judge::Judge(design);
  ASSERT_TRUE(verdict.converged);

  AnalysisRun run;
  run.Write(name + "-data.txt", data);
  ASSERT_EQ(run.Analyze(ReadWholeFile(folder + name + ".txt"), "Convergence=.0005,.000005"), 0)
      << run.Screen();
  const Analysis& analysis = run.analysis;
  ASSERT_EQ(analysis.work.records, static_cast<std::int64_t>(design.observations.size()));
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
      SCOPED_TRACE("Flank " + std::to_string(f + 1) + " element " + std::to_string(n + 1));
      const judge::Element& expected = verdict.elements[f][n];
      const ElementSlot slot =
          analysis.design.flanks.FlankFirstSlot[FlankNo(static_cast<std::int32_t>(f) + 1)] +
          static_cast<std::int32_t>(n);
      EXPECT_NEAR(analysis.estimates.elements[slot].ElementMeasure, expected.measure, .001);
      const FinishedStatistics fit(analysis.estimates, slot);
      EXPECT_NEAR(fit->StandardError, expected.standardError, .002);
      EXPECT_NEAR(fit->InfitMeanSquare, expected.infit, .002);
      EXPECT_NEAR(fit->InfitZStd, expected.infitZStd, .002);
      EXPECT_NEAR(fit->OutfitMeanSquare, expected.outfit, .002);
      EXPECT_NEAR(fit->OutfitZStd, expected.outfitZStd, .002);
      EXPECT_NEAR(fit->Discrimination, expected.discrimination, .002);
      EXPECT_NEAR(fit->PointMeasure, expected.pointMeasure, .002);
      EXPECT_NEAR(fit->PointResidual, expected.pointExpected, .002);
      EXPECT_NEAR(fit->FairSum / analysis.estimates.scores[slot].Count, expected.fairAverage, .002);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Checks, ExampleCheck,
                         ::testing::Values(Example{"painters", {54, 4}, {1, -1}},
                                           Example{"essays", {90, 6, 4}, {1, -1, -1}}),
                         [](const auto& example) { return std::string(example.param.name); });

}  // namespace
}  // namespace flanks
