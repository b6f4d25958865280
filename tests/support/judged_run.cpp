#include "support/judged_run.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace flanks {

std::string DataLines(const judge::Design& design) {
  std::string text;
  for (const judge::Observation& o : design.observations) {
    if (o.weight != 1.0) text += "R" + std::to_string(o.weight) + ",";
    for (const int n : o.elements) text += std::to_string(n + 1) + ",";
    text += std::to_string(o.category) + "\n";
  }
  return text;
}

std::string LabelLines(const judge::Design& design) {
  std::string text = "Labels=\n";
  for (std::size_t f = 0; f < design.elementCounts.size(); ++f) {
    const std::string number = std::to_string(f + 1);
    text +=
        number + ",Flank" + number + "\n1-" + std::to_string(design.elementCounts[f]) + "=e\n*\n";
  }
  return text;
}

void JudgedRun::Estimate(const std::string& specification) {
  verdict = judge::Judge(design);
  ASSERT_TRUE(verdict.identified);
  ASSERT_TRUE(verdict.converged) << verdict.largestResidual;
  run.Write("data.txt", DataLines(design));
  ASSERT_EQ(run.Analyze(specification), 0) << run.Screen();
  ASSERT_TRUE(run.analysis.estimates.iteration.converged) << run.Screen();
}

ElementSlot JudgedRun::SlotOf(std::size_t flank, std::size_t element) const {
  const FlankNo number(static_cast<std::int32_t>(flank) + 1);
  return run.analysis.design.flanks.FlankFirstSlot[number] + static_cast<std::int32_t>(element);
}

void JudgedRun::ForEachElement(
    const std::function<void(const judge::Element&, ElementSlot)>& look) {
  for (std::size_t f = 0; f < verdict.elements.size(); ++f) {
    for (std::size_t n = 0; n < verdict.elements[f].size(); ++n) {
      SCOPED_TRACE("Flank " + std::to_string(f + 1) + " element " + std::to_string(n + 1));
      look(verdict.elements[f][n], SlotOf(f, n));
    }
  }
}

void JudgedRun::ExpectMeasures(double tolerance) {
  ForEachElement([&](const judge::Element& expected, ElementSlot slot) {
    const ElementState& state = run.analysis.estimates.elements[slot];
    EXPECT_EQ(IsInPlay(state.ElementStatus), expected.standing == judge::Standing::measured);
    EXPECT_NEAR(state.ElementMeasure, expected.measure, tolerance);
  });
}

void JudgedRun::ExpectScales(double tolerance) {
  const ScaleTables& scales = run.analysis.scales;
  ASSERT_EQ(static_cast<std::size_t>(scales.scales()), verdict.structures.size());
  for (std::size_t s = 0; s < verdict.structures.size(); ++s) {
    SCOPED_TRACE("scale " + std::to_string(s + 1));
    const judge::Structure& expected = verdict.structures[s];
    const ScaleRow scale(static_cast<std::int32_t>(s));
    ASSERT_EQ(scales.ScaleTopCategory[scale], expected.top());
    if (expected.counts()) {
      EXPECT_NEAR(scales.ThresholdTable.at(scale, 0), expected.discrimination, tolerance);
      continue;
    }
    for (int k = 0; k <= expected.top(); ++k) {
      SCOPED_TRACE("category " + std::to_string(k));
      const std::size_t cell = static_cast<std::size_t>(k);
      EXPECT_EQ(scales.rawCategory.at(scale, k), expected.rawCategories[cell]);
      EXPECT_EQ(scales.CategoryFlag.at(scale, k) == kCategorySkipped, expected.skipped(k));
      if (k > 0) {
        EXPECT_NEAR(scales.ThresholdTable.at(scale, k), expected.thresholds[cell], tolerance);
      }
    }
  }
}

void JudgedRun::ExpectStatistics(double tolerance) {
  ForEachElement([&](const judge::Element& expected, ElementSlot slot) {
    const FinishedStatistics fit(run.analysis.estimates, slot);
    EXPECT_NEAR(fit->StandardError, expected.standardError, tolerance);
    EXPECT_NEAR(fit->InfitMeanSquare, expected.infit, tolerance);
    EXPECT_NEAR(fit->InfitZStd, expected.infitZStd, tolerance);
    EXPECT_NEAR(fit->OutfitMeanSquare, expected.outfit, tolerance);
    EXPECT_NEAR(fit->OutfitZStd, expected.outfitZStd, tolerance);
    EXPECT_NEAR(fit->PointMeasure, expected.pointMeasure, tolerance);
    EXPECT_NEAR(fit->PointResidual, expected.pointExpected, tolerance);
    EXPECT_NEAR(fit->Discrimination, expected.discrimination, tolerance);
    const float count = run.analysis.estimates.scores[slot].Count;
    if (count > 0.0f) {
      EXPECT_NEAR(fit->FairSum / count, expected.fairAverage, tolerance);
    }
  });
}

void JudgedRun::ExpectScores() {
  ForEachElement([&](const judge::Element& expected, ElementSlot slot) {
    const ElementScores& scores = run.analysis.estimates.scores[slot];
    EXPECT_NEAR(scores.ObservedScore, expected.score, 1E-6 * (1.0 + expected.score));
    EXPECT_NEAR(scores.MaxScore, expected.largestScore, 1E-6 * (1.0 + expected.largestScore));
    EXPECT_FLOAT_EQ(scores.Count, static_cast<float>(expected.count));
    EXPECT_FLOAT_EQ(scores.RawScore, static_cast<float>(expected.rawScore));
  });
}

void JudgedRun::ExpectResiduals(double tolerance) {
  for (const KeptResponse& row : run.analysis.unexpected.rows) {
    SCOPED_TRACE("response " + std::to_string(row.sequence));
    const judge::Observation& o = design.observations[static_cast<std::size_t>(row.sequence) - 1];
    const judge::Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
    const int ordered = structure.ordered(o.category);
    const int lowest = structure.counts() ? 0 : structure.rawCategories.front();
    const judge::Moments moments =
        judge::MomentsOf(structure, judge::MeasureSum(design, verdict, o));
    const double z = (ordered - moments.mean) / std::sqrt(moments.variance);
    EXPECT_EQ(row.category, o.category);
    EXPECT_EQ(row.score, ordered + lowest);
    EXPECT_NEAR(row.expected, moments.mean + lowest, tolerance);
    EXPECT_NEAR(row.residual, ordered - moments.mean, tolerance);
    EXPECT_NEAR(row.StRes, std::clamp(z, -9.0, 9.0), tolerance * std::max(1.0, std::abs(z)));
  }
  double chiSquared = 0.0;
  for (const judge::Observation& o : design.observations) {
    if (judge::UseOf(design, verdict, o) != judge::Use::full) continue;
    const judge::Structure& structure = verdict.structures[static_cast<std::size_t>(o.structure)];
    const judge::Moments moments =
        judge::MomentsOf(structure, judge::MeasureSum(design, verdict, o));
    const double residual = structure.ordered(o.category) - moments.mean;
    chiSquared += o.weight * residual * residual / moments.variance;
  }
  EXPECT_NEAR(run.analysis.estimates.fitTotals.SquaredStandardizedSum, chiSquared,
              tolerance * chiSquared);
}

double JudgedRun::LargestMeasureError() {
  double largest = 0.0;
  ForEachElement([&](const judge::Element& expected, ElementSlot slot) {
    const double measure = run.analysis.estimates.elements[slot].ElementMeasure;
    largest = std::max(largest, std::abs(measure - expected.measure));
  });
  return largest;
}

double JudgedRun::LargestScaleError() {
  double largest = 0.0;
  for (std::size_t s = 0; s < verdict.structures.size(); ++s) {
    const judge::Structure& expected = verdict.structures[s];
    const ScaleRow scale(static_cast<std::int32_t>(s));
    const auto note = [&](int k, double value) {
      largest =
          std::max(largest, std::abs(run.analysis.scales.ThresholdTable.at(scale, k) - value));
    };
    if (expected.counts()) note(0, expected.discrimination);
    for (int k = 1; k <= expected.top() && !expected.counts(); ++k) {
      note(k, expected.thresholds[static_cast<std::size_t>(k)]);
    }
  }
  return largest;
}

}  // namespace flanks
