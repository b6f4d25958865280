// Workbooks of line charts: on each sheet a table, a column for each series, and above it the chart
// of its lines.
//
//   ChartSheet sheet;
//   sheet.name = "AM";
//   sheet.categories = {"1 Ann", "2 Ben"};
//   sheet.series = {{"1 Essay: Absolute Measure", {1.2, 0.4}},
//                   {"1 Essay: Absolute Measure (+)", {1.5, 0.7}, SeriesRole::errorLine}};
//
// A series of the error role is drawn thin and dashed, in the colour of the main series before it,
// and does not stand in the legend.  A value that is not there leaves a gap.
//
// Uses libxlsxwriter; a build without it writes nothing and says so.  WriteChartWorkbook
// (output/hand_offs.h) is what a step of the run calls.
//
// Tested by tests/unit/output/hand_offs_test.cpp and, read back by a spreadsheet program, by
// tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_XLSX_CHARTS_H
#define FLANKS_OUTPUT_XLSX_CHARTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/replaced_file.h"
#include "output/tab_text.h"

namespace flanks {

constexpr std::size_t kChartRows = 250;    // of a sheet; the caller leaves out what is beyond
constexpr std::size_t kChartSeries = 255;  // that a spreadsheet program draws in one chart

enum class SeriesRole : std::uint8_t { main, errorLine };

struct ChartSeries {
  std::string name;
  std::vector<std::optional<double>> values;  // one for each category
  SeriesRole role = SeriesRole::main;
};

struct ChartSheet {
  std::string name;   // of the sheet
  std::string title;  // of the chart
  std::string categoryAxis, valueAxis;
  std::vector<std::string> categories;
  std::vector<ChartSeries> series;
  int decimals = 2;  // of the values, as the table shows them
};

// Writes the sheets into the target, which the caller commits.  Series behind the first kChartSeries
// stand in the table alone.  Throws a std::runtime_error or std::system_error with the reason.
WriteEnd WriteCharts(const std::vector<ChartSheet>& sheets, const FileStamp& stamp,
                     ReplacedFile& target);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_XLSX_CHARTS_H
