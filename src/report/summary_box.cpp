#include "report/summary_box.h"

#include "base/running_moments.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/table4_columns.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr int kCellWidth = 5;
constexpr int kCellDecimals = 2;
constexpr std::size_t kSmallestGroup = 19;
constexpr int kTextWidth = 20;
constexpr double kNoVariance = 1E-9;  // what rounding may leave of the variance of equal scores

std::string PadLeft(std::string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

std::string ZeroText(double value, int decimals) {
  std::string text = FixedField(value, kTextWidth, decimals);
  text.erase(0, text.find_first_not_of(' '));
  const std::size_t point = text.find('.');
  const bool bare = point == 0 || (point == 1 && text[0] == '-');
  return bare ? text.insert(point, "0") : text;
}

// "Mean (Count: 12)", shorter when that is wider than the column.
std::string MeanWords(const ResidualSummary& summary) {
  const std::string number = NumberText(summary.Count);
  const std::string words =
      JoinNumber(summary.weighted ? "Mean (Weighted:" : "Mean (Count:", number) + ")";
  if (words.size() <= kSmallestGroup) return words;
  return JoinNumber(summary.weighted ? "Mean (Wtd:" : "Mean (Cnt:", number) + ")";
}

template <class Figure>
FigureTexts Cells(const ResidualSummary& summary, Figure figure) {
  FigureTexts texts;
  for (std::size_t column = 0; column < kFigureColumns; ++column)
    texts[column] = FixedField(figure(summary.columns[column]), kCellWidth, kCellDecimals);
  return texts;
}

}  // namespace

void WriteResidualBox(Console& console, const ResidualSummary& summary) {
  const std::string meanWords = MeanWords(summary);
  const Table4Layout layout = LayOutTable5(console.settings(), meanWords);
  BeginBox(console, layout.headingRows, layout.rulePattern);
  const auto write = [&](const std::string& words, auto figure) {
    WriteReportLine(console, WordLine(layout, Cells(summary, figure), words));
  };
  const double count = summary.Count;
  write(meanWords, [](const ResidualMoments& column) { return column.Mean; });
  write("S.D. (Population)",
        [count](const ResidualMoments& column) { return column.PopulationDeviation(count); });
  if (count > 1.0) {
    write("S.D. (Sample)", [count](const ResidualMoments& column) {
      return SampleDeviation(column.PopulationDeviation(count), count);
    });
  }
  BottomRule(console);
}

std::string ZeroField(double value, std::size_t width, int decimals) {
  return PadLeft(ZeroText(value, decimals), width);
}

std::string VarianceLine(std::string_view words, double whole) {
  return std::string(words) + ZeroField(whole, 7, 3) + " 100.00%";
}

std::string VarianceLine(std::string_view words, double part, double whole) {
  const double divisor = whole < kNoVariance ? 1.0 : whole;
  return std::string(words) + ZeroField(part, 7, 3) + " " +
         PadLeft(ZeroText(100.0 * part / divisor, 2) + "%", 7);
}

}  // namespace flanks
