#include "report/mean_lines.h"

#include <cstdint>

#include "base/utf8.h"
#include "report/format/join_number.h"
#include "stats/separation.h"

namespace flanks {
namespace {

double Mean(const RunningMoments& column, double) {
  return column.Mean;
}

double PopulationDeviation(const RunningMoments& column, double count) {
  return column.PopulationDeviation(count);
}

double SampleDeviationOf(const RunningMoments& column, double count) {
  return SampleDeviation(column.PopulationDeviation(count), count);
}

std::string MeanWords(double count, int labelWidth) {
  const auto rows = static_cast<std::int64_t>(count);
  const std::string words = JoinNumber("Mean (Count:", rows) + ")";
  if (DisplayWidth(words) <= labelWidth) return words;
  return JoinNumber("Mean (Cnt:", rows) + ")";
}

}  // namespace

std::vector<MeanLine> MeanLines(double count, int labelWidth) {
  std::vector<MeanLine> lines = {{MeanWords(count, labelWidth), Mean},
                                 {"S.D. (Population)", PopulationDeviation}};
  if (count > 1.0) lines.push_back({"S.D. (Sample)", SampleDeviationOf});
  return lines;
}

}  // namespace flanks
