// Laws of the rulers over random elements, scales and widths: every element of a column stands in
// it exactly once, in the row whose value is nearest to its measure, and every cell is as wide as
// its column.  The seed of a failing run is printed; setting FLANKS_SEED repeats it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "report/table6_layout.h"

namespace flanks {
namespace {

constexpr int kTrials = 400;

class RulerLaws : public ::testing::Test {
 protected:
  RulerLaws() : seed_(Seed()), random_(seed_) {}

  static std::uint64_t Seed() {
    const char* const given = std::getenv("FLANKS_SEED");
    return given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device{}();
  }
  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  double Real(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }

  // Elements whose labels and numbers are words of their own: "e7" and 1007.
  Analysis RandomElements() {
    Analysis analysis;
    Design& design = analysis.design;
    analysis.settings.Umean = static_cast<float>(Real(-100, 100));
    analysis.settings.Uscale =
        static_cast<float>(std::pow(10.0, Real(-2, 3))) * (Whole(0, 4) == 0 ? -1.0f : 1.0f);
    const int count = Whole(1, Whole(0, 3) == 0 ? 300 : 30);
    const double spread = std::pow(10.0, Real(-2, 1.2));
    design.FlankCount = 1;
    design.flanks.FlankName.push(std::string(static_cast<std::size_t>(Whole(1, 12)), 'F'));
    design.flanks.FlankOptions.push(" ");
    design.flanks.FlankElementCount.push(count);
    design.flanks.FlankFirstSlot.push(ElementSlot(1));
    design.flanks.FlankOrientation.push(kNegativeOrientation);
    for (int number = 1; number <= count; ++number) {
      const std::string wide = Whole(0, 2) == 0 ? "\xE5\xAD\x97\xC3\xA9" : "";
      design.elements.ElementLabel.push("e" + std::to_string(number) + wide);
      design.elements.ElementNumber.push(1000 + number);
      design.elements.ElementFlank.push(FlankNo(1));
      ElementState state;
      state.ElementMeasure = static_cast<float>(Real(-spread, spread));
      state.ElementStatus = Whole(0, 9) == 0 ? kStatusMaximum : kStatusFree;
      analysis.estimates.elements.push(state);
      ElementScores scores;
      scores.MaxScore = 3.0;
      analysis.estimates.scores.push(scores);
    }
    return analysis;
  }

  Yardstick RandomYardstick() {
    Yardstick yardstick;
    yardstick.columns = Whole(0, 1) == 0 ? 0 : Whole(12, 60);
    yardstick.lines = Whole(0, 1) == 0 ? 0.0 : std::pow(10.0, Real(-2, 2));
    yardstick.extremesAtMeasures = Whole(0, 1) == 0;
    if (Whole(0, 2) == 0) {
      yardstick.low = Real(-50, 0);
      yardstick.high = Real(0, 50);
    }
    return yardstick;
  }

  struct Laid {
    Analysis analysis;
    Yardstick yardstick;
    RulerScale scale;
    RulerColumn column;
  };
  Laid Lay(RulerForm form) {
    Laid laid{RandomElements(), RandomYardstick(), {}, {}};
    const RulerElements elements = ElementsOfRuler(laid.analysis);
    laid.scale = ScaleOfRuler(laid.analysis.settings, {}, SumUpElements(laid.analysis, elements),
                              laid.yardstick);
    std::vector<RulerColumn> columns(1);
    columns[0].item = {FlankNo(1), form};
    columns[0].placed =
        PlaceElements(laid.analysis, elements[FlankNo(1)], form, laid.scale, laid.yardstick);
    FitColumns(laid.analysis, laid.yardstick, columns);
    laid.column = columns[0];
    return laid;
  }

  // Whether a row is the one, or beside a tie one of the two, nearest to an element.
  static bool IsRowOf(const Laid& laid, ElementSlot slot, int row) {
    const Settings& settings = laid.analysis.settings;
    const ElementState& element = laid.analysis.estimates.elements[slot];
    if (IsExtreme(element.ElementStatus) && !laid.yardstick.extremesAtMeasures)
      return row == (settings.Uscale > 0 ? 0 : laid.scale.last);
    const double value =
        settings.Umean + static_cast<double>(settings.Uscale) * element.ElementMeasure;
    const double off = std::abs(laid.scale.ValueOf(row) - value);
    for (int other = 0; other < laid.scale.rows(); ++other)
      if (std::abs(laid.scale.ValueOf(other) - value) < off - 1E-9 * (1.0 + off)) return false;
    return true;
  }

  std::uint64_t seed_;
  std::mt19937_64 random_;
};

TEST_F(RulerLaws, EachElementStandsOnceInTheRowOfItsMeasure) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const bool labels = Whole(0, 1) == 0;
    const Laid laid = Lay(labels ? RulerForm::labels : RulerForm::numbers);
    ASSERT_LE(laid.scale.rows(), kMostRulerRows);
    std::map<std::string, int> rowOf;
    for (int row = 0; row < laid.scale.rows(); ++row)
      for (std::int32_t line = 0; line < laid.column.LinesOf(row); ++line) {
        const std::string cell = RulerCell(laid.analysis, laid.column, row, line);
        ASSERT_EQ(DisplayWidth(cell), laid.column.width) << '"' << cell << "\" " << seed_;
        std::istringstream words(cell);
        for (std::string word; words >> word;)
          ASSERT_TRUE(rowOf.emplace(word, row).second) << word << " twice, " << seed_;
      }
    const ElementTable& elements = laid.analysis.design.elements;
    ASSERT_EQ(static_cast<std::int32_t>(rowOf.size()), elements.ElementLabel.rows()) << seed_;
    for (const ElementSlot slot : Upward(elements.ElementLabel)) {
      const auto found = rowOf.find(labels ? elements.ElementLabel[slot]
                                           : std::to_string(elements.ElementNumber[slot]));
      ASSERT_NE(found, rowOf.end()) << elements.ElementLabel[slot] << " FLANKS_SEED=" << seed_;
      ASSERT_TRUE(IsRowOf(laid, slot, found->second))
          << elements.ElementLabel[slot] << " in row " << found->second << " FLANKS_SEED=" << seed_;
    }
  }
}

TEST_F(RulerLaws, CountsAndAsterisksAreThoseOfTheRows) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const bool asterisks = Whole(0, 1) == 0;
    const Laid laid = Lay(asterisks ? RulerForm::asterisks : RulerForm::counts);
    const std::int32_t group = asterisks ? laid.column.group : 1;
    std::int32_t shown = 0;
    for (int row = 0; row < laid.scale.rows(); ++row) {
      const std::string cell = RulerCell(laid.analysis, laid.column, row, 0);
      ASSERT_EQ(static_cast<int>(cell.size()), laid.column.width) << seed_;
      std::int32_t inRow = 0;
      for (const ElementSlot slot : Upward(laid.analysis.estimates.elements))
        if (IsRowOf(laid, slot, row)) ++inRow;
      const auto stars = static_cast<std::int32_t>(std::count(cell.begin(), cell.end(), '*'));
      const std::int32_t count = asterisks ? stars : std::atoi(cell.c_str());
      // An element beside a tie counts in one of two rows.
      EXPECT_LE(count, (inRow + group - 1) / group) << "FLANKS_SEED=" << seed_;
      EXPECT_LE(stars, 10);
      shown += count;
    }
    const std::int32_t elements = laid.analysis.estimates.elements.rows();
    EXPECT_GE(shown * group, elements) << "FLANKS_SEED=" << seed_;
    if (group == 1) {
      EXPECT_EQ(shown, elements) << "FLANKS_SEED=" << seed_;
    }
  }
}

TEST_F(RulerLaws, TicksAreWholeStepsInTheirOrder) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const Laid laid = Lay(RulerForm::counts);
    double above = INFINITY;
    for (int row = 0; row < laid.scale.rows(); ++row) {
      const auto tick = laid.scale.TickOf(row);
      if (!tick) continue;
      const double units = *tick / laid.scale.tick;
      ASSERT_NEAR(units, std::round(units), 1E-9 * (1.0 + std::abs(units))) << seed_;
      ASSERT_LT(*tick, above) << "FLANKS_SEED=" << seed_;
      ASSERT_LE(std::abs(*tick - laid.scale.ValueOf(row)), .5000001 / laid.scale.lines)
          << "FLANKS_SEED=" << seed_;
      above = *tick;
    }
  }
}

}  // namespace
}  // namespace flanks
