// Designs that can't be estimated, or hardly: the run ends in words, and every number is finite.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iostream>
#include <map>
#include <string>

#include "support/analysis_run.h"
#include "support/odd_design.h"

namespace flanks {
namespace {

bool IsLetter(const std::string& text, std::size_t at) {
  return at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])) != 0;
}

// The line with the word standing alone, in any case; "" when there is none.
std::string LineWithWord(const std::string& text, const std::string& word) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (std::size_t at = lower.find(word); at != std::string::npos; at = lower.find(word, at + 1)) {
    if ((at > 0 && IsLetter(lower, at - 1)) || IsLetter(lower, at + word.size())) continue;
    const std::size_t begin = text.rfind('\n', at) + 1;
    return text.substr(begin, text.find('\n', at) - begin);
  }
  return "";
}

std::string NotFinite(const std::string& what, std::initializer_list<double> values) {
  for (const double value : values)
    if (!std::isfinite(value)) return what + " is not finite";
  return "";
}

std::string ElementComplaint(const Estimates& estimates, ElementSlot e) {
  const std::string name = "element in slot " + std::to_string(e.number());
  const ElementState& state = estimates.elements[e];
  const ElementScores& scores = estimates.scores[e];
  const ElementFinal& final = estimates.finals[e];
  std::string complaint = NotFinite(
      name, {state.ElementMeasure, state.ExpectedSum, state.ShiftedExpected, state.Information});
  if (complaint.empty())
    complaint = NotFinite("scores of " + name,
                          {scores.ObservedScore, scores.MaxScore, scores.Count, scores.RawScore,
                           scores.FirstRawScore, scores.FirstCount, scores.StepWeight});
  if (complaint.empty())
    complaint =
        NotFinite("statistics of " + name,
                  {final.StandardError, final.InfitMeanSquare, final.InfitZStd, final.InfitDF,
                   final.OutfitMeanSquare, final.OutfitZStd, final.OutfitDF, final.Discrimination,
                   final.Displacement, final.PointMeasure, final.PointResidual, final.FairSum});
  if (complaint.empty() && state.ElementStatus == kStatusFree &&
      std::abs(state.ElementMeasure) > estimates.ExponentLimit)
    complaint = name + " is out of range";
  return complaint;
}

std::string ScaleComplaint(const ScaleTables& scales, ScaleRow scale) {
  for (int k = 0; k < scales.width; ++k) {
    const std::string complaint =
        NotFinite("category " + std::to_string(k) + " of scale " + std::to_string(scale.number()),
                  {scales.ThresholdTable.at(scale, k), scales.ObservedCount.at(scale, k),
                   scales.ExpectedCount.at(scale, k), scales.DiscriminationSums.at(scale, k)});
    if (!complaint.empty()) return complaint;
  }
  return "";
}

std::string StateComplaint(const Analysis& analysis) {
  for (const ElementSlot e : Upward(analysis.estimates.elements)) {
    const std::string complaint = ElementComplaint(analysis.estimates, e);
    if (!complaint.empty()) return complaint;
  }
  for (const ScaleRow scale :
       Upward(analysis.scales.ThresholdTable.rows() == 0 ? Column<ScaleRow, ScaleType>()
                                                         : analysis.scales.scaleType)) {
    const std::string complaint = ScaleComplaint(analysis.scales, scale);
    if (!complaint.empty()) return complaint;
  }
  const LargestChanges& changes = analysis.estimates.iteration.changes;
  return NotFinite("largest changes",
                   {changes.MaxLogitChange, changes.MaxThresholdChange, changes.MaxScoreResidual,
                    changes.MaxCategoryResidual, analysis.estimates.control.SpeedFactor});
}

// How a run ended: "measured", the number of its fault or Failure; and what is wrong with it.
struct End {
  std::string how;
  std::string complaint;
};

End EndOf(AnalysisRun& run) {
  const std::string screen = run.Screen(), report = run.Report();
  for (const std::string word : {"nan", "inf", "infinity"})
    for (const std::string& text : {screen, report})
      if (const std::string line = LineWithWord(text, word); !line.empty())
        return {"", "\"" + word + "\" in: " + line};
  if (screen.find(" failed at ") != std::string::npos) return {"", "failed: " + screen};
  if (run.processEnded) return {"ended at once", ""};
  const std::string state = StateComplaint(run.analysis);
  if (!state.empty()) return {"", state};
  if (run.exitCode == 0) return {"measured", ""};
  const std::size_t fault = screen.find("Error F");
  if (fault != std::string::npos)
    return {screen.substr(fault + 6, screen.find('\n', fault) - fault - 6), ""};
  const std::size_t failure = screen.find("Failure (");
  if (failure != std::string::npos) return {screen.substr(failure, 12), ""};
  return {"", "ended without words: " + screen};
}

// The designs of `count` seeds; how many ended in which way, which is also shown.
std::map<std::string, int> RunDesigns(unsigned first, unsigned count) {
  std::map<std::string, int> ends;
  int complaints = 0;
  for (unsigned seed = first; seed < first + count && complaints < 5; ++seed) {
    const OddDesign design = MakeOddDesign(seed);
    AnalysisRun run;
    run.Write("data.txt", design.data);
    run.Analyze(design.specification);
    End end = EndOf(run);
    run.analysis = Analysis{};
    if (end.complaint.empty() && !run.Leftovers().empty())
      end.complaint = "left behind: " + run.Leftovers().front();
    ++ends[end.how];
    if (end.complaint.empty()) continue;
    ++complaints;
    ADD_FAILURE() << "seed " << seed << ": " << end.complaint << "\n"
                  << design.specification << "--- data.txt\n"
                  << design.data;
  }
  for (const auto& [how, number] : ends) std::cout << how << ": " << number << "\n";
  return ends;
}

TEST(OddDesigns, EndInWordsWithFiniteNumbers) {
  std::map<std::string, int> ends = RunDesigns(1, 300);
  EXPECT_GT(ends["measured"], 100) << "most are for estimation, not for the readers";
}

TEST(SlowOddDesigns, TwentyThousandEndInWordsWithFiniteNumbers) {
  std::map<std::string, int> ends = RunDesigns(1000, 20000);
  EXPECT_GT(ends["measured"], 7000);
}

}  // namespace
}  // namespace flanks
