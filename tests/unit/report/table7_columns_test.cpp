#include "report/table7_columns.h"

#include <gtest/gtest.h>
#include <string>

#include "base/utf8.h"
#include "report/format/box.h"

namespace flanks {
namespace {

Analysis OneFlank(const std::string& name, const std::vector<std::string>& labels) {
  Analysis analysis;
  FlankTable& flanks = analysis.design.flanks;
  const auto count = static_cast<std::int32_t>(labels.size());
  flanks.FlankName.assign(1, name);
  flanks.FlankElementCount.assign(1, count);
  flanks.FlankFirstSlot.assign(1, ElementSlot(1));
  flanks.FlankHigh.assign(1, count);
  flanks.FlankOrientation.assign(1, kPositiveOrientation);
  for (const std::string& label : labels) {
    analysis.design.elements.ElementLabel.push(label);
    analysis.design.elements.ElementNumber.push(analysis.design.elements.ElementLabel.rows());
    analysis.design.elements.ElementGroup.push(0);
    analysis.design.elements.ElementWeight.push(1.0f);
    analysis.estimates.elements.push(ElementState{});
  }
  return analysis;
}

TEST(Table7Layout, TheDefaultHeadsStandOverTheirColumns) {
  const Analysis analysis = OneFlank("Raters", {"Ann", "Bob"});
  const Table7Layout layout = LayOutTable7(analysis, FlankNo(1));
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "|  Total   Total   Obsvd  Fair(M)|   +    Model | Infit      Outfit    |Estim.| "
            "Correlation |                     |");
  EXPECT_EQ(BoxToAscii(layout.headingRows[2]),
            "|  Score   Count  Average Average|Measure  S.E. | MnSq ZStd  MnSq ZStd |Discrm| "
            "PtMea PtExp | Num Raters          |");
  EXPECT_EQ(layout.rulePattern,
            "x--------------------------------x--------------x----------------------x------x------"
            "-------x---------------------x");
}

TEST(Table7Layout, EveryLineOfTheBoxHasTheSameWidth) {
  for (const bool leftHand : {false, true}) {
    Analysis analysis = OneFlank("Examinees of the spring term", {"Zo\xC3\xAB", "A long label"});
    analysis.settings.LeftHand = leftHand;
    const Table7Layout layout = LayOutTable7(analysis, FlankNo(1));
    const std::size_t width = layout.rulePattern.size();
    EXPECT_EQ(layout.headingRows[1].size(), width);
    EXPECT_EQ(layout.headingRows[2].size(), width);
    // The free field "&" takes no place.
    for (const std::string& word :
         {layout.fullRow, layout.extremeRow, layout.statusRow, layout.footRow})
      EXPECT_EQ(word.size(), width + 1) << word;
  }
}

TEST(Table7Layout, LongLabelsWidenTheirColumn) {
  const std::string label = "A label that is longer than the column";
  const Table7Layout layout = LayOutTable7(OneFlank("Raters", {label}), FlankNo(1));
  EXPECT_EQ(layout.label.width, static_cast<int>(label.size()) + 4);
}

TEST(Table7Layout, HeadsFollowTheSettings) {
  Analysis analysis = OneFlank("Raters", {"Ann"});
  analysis.settings.FairAverageKind = 'Z';
  analysis.settings.TotalScoreMode = false;
  analysis.settings.RealStandardErrors = true;
  analysis.settings.PointCorrelationKind = 'N';
  analysis.design.flanks.FlankOrientation[FlankNo(1)] = kNegativeOrientation;
  const Table7Layout layout = LayOutTable7(analysis, FlankNo(1));
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "|  Obsvd   Obsvd   Obsvd  Fair(Z)|   -     Real | Infit      Outfit    |Estim.|"
            "                     |");
  EXPECT_TRUE(layout.optional.empty());
}

TEST(NumberedLabel, RightAlignsTheNumber) {
  const Analysis analysis = OneFlank("Raters", {"Ann", "Bob"});
  const Table7Layout layout = LayOutTable7(analysis, FlankNo(1));
  EXPECT_EQ(NumberedLabel(layout, analysis.design.elements, ElementSlot(2)), "  2 Bob");
}

}  // namespace
}  // namespace flanks
