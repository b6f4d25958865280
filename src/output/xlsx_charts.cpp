#include "output/xlsx_charts.h"

#include <algorithm>
#include <array>

#include "base/utf8.h"
#include "base/utf8_text.h"
#include "output/xlsx_book.h"
#include "output/xlsx_writer.h"

namespace flanks {

#ifndef FLANKS_HAS_XLSXWRITER

WriteEnd WriteCharts(const std::vector<ChartSheet>&, const FileStamp&, ReplacedFile&) {
  return WriteEnd::missing;
}

#else

namespace {

constexpr lxw_row_t kHeadingRow = 27;                            // below the chart
constexpr std::uint16_t kChartWidth = 1000, kChartHeight = 520;  // pixels: 26 rows of 20
// Colours that are told apart in print and by most colour-blind readers (Okabe and Ito, 2008),
// without yellow, which is no line on white.
constexpr std::array<lxw_color_t, 7> kColours = {0x0072B2, 0xD55E00, 0x009E73, 0xCC79A7,
                                                 0xE69F00, 0x56B4E9, 0x404040};

class SheetOfCharts {
 public:
  SheetOfCharts(XlsxBook& book, const ChartSheet& sheet)
      : book_(book), table_(sheet), sheet_(book.AddSheet(sheet.name)) {
    number_ = workbook_add_format(book.book());
    const std::string zeros(static_cast<std::size_t>(std::max(sheet.decimals, 0)), '0');
    format_set_num_format(number_, zeros.empty() ? "0" : ("0." + zeros).c_str());
  }

  void Write() {
    WriteHeading();
    for (std::size_t row = 0; row < table_.categories.size(); ++row) WriteRow(row);
    if (!table_.categories.empty() && !table_.series.empty()) DrawChart();
  }

 private:
  static lxw_col_t ColumnOf(std::size_t series) { return static_cast<lxw_col_t>(series + 1); }
  lxw_row_t LastRow() const {
    return kHeadingRow + static_cast<lxw_row_t>(table_.categories.size());
  }

  void WriteText(lxw_row_t row, lxw_col_t column, const std::string& text, lxw_format* format) {
    std::string kept;
    const std::string shown(Utf8Text(text, kept));
    XlsxBook::Check(worksheet_write_string(sheet_, row, column, shown.c_str(), format));
  }

  void WriteHeading() {
    int widest = 0;
    for (const std::string& category : table_.categories)
      widest = std::max(widest, DisplayWidth(category));
    constexpr int kNarrowest = 8, kWidest = 40, kOfValues = 14;
    worksheet_set_column(sheet_, 0, 0, std::clamp(widest + 1, kNarrowest, kWidest), nullptr);
    lxw_format* wrapped = workbook_add_format(book_.book());
    format_set_bold(wrapped);
    format_set_text_wrap(wrapped);
    format_set_align(wrapped, LXW_ALIGN_RIGHT);
    constexpr double kHeadingPoints = 62.0;  // four lines of a name
    worksheet_set_row(sheet_, kHeadingRow, kHeadingPoints, nullptr);
    for (std::size_t i = 0; i < table_.series.size(); ++i) {
      worksheet_set_column(sheet_, ColumnOf(i), ColumnOf(i), kOfValues, nullptr);
      WriteText(kHeadingRow, ColumnOf(i), table_.series[i].name, wrapped);
    }
    worksheet_set_landscape(sheet_);
    worksheet_fit_to_pages(sheet_, 1, 0);
  }

  void WriteRow(std::size_t row) {
    const lxw_row_t at = kHeadingRow + 1 + static_cast<lxw_row_t>(row);
    WriteText(at, 0, table_.categories[row], nullptr);
    for (std::size_t i = 0; i < table_.series.size(); ++i) {
      const std::vector<std::optional<double> >& values = table_.series[i].values;
      if (row < values.size() && values[row])
        XlsxBook::Check(worksheet_write_number(sheet_, at, ColumnOf(i), *values[row], number_));
    }
  }

  void DrawChart() {
    lxw_chart* chart = workbook_add_chart(book_.book(), LXW_CHART_LINE);
    std::vector<std::int16_t> unlisted;  // series that the legend leaves out
    int mains = 0;
    for (std::size_t i = 0; i < std::min(table_.series.size(), kChartSeries); ++i) {
      const bool isMain = table_.series[i].role == SeriesRole::main;
      if (isMain) ++mains;
      AddSeries(*chart, i,
                kColours[static_cast<std::size_t>(std::max(mains - 1, 0)) % kColours.size()]);
      if (!isMain) unlisted.push_back(static_cast<std::int16_t>(i));
    }
    unlisted.push_back(-1);  // ends the list
    chart_legend_delete_series(chart, unlisted.data());
    NameParts(*chart);
    lxw_chart_options options{};
    options.x_scale = kChartWidth / 480.0;  // of the library's chart
    options.y_scale = kChartHeight / 288.0;
    XlsxBook::Check(worksheet_insert_chart_opt(sheet_, 0, 0, chart, &options));
  }

  void AddSeries(lxw_chart& chart, std::size_t i, lxw_color_t colour) {
    lxw_chart_series* series = chart_add_series(&chart, nullptr, nullptr);
    chart_series_set_categories(series, sheet_->name, kHeadingRow + 1, 0, LastRow(), 0);
    chart_series_set_values(series, sheet_->name, kHeadingRow + 1, ColumnOf(i), LastRow(),
                            ColumnOf(i));
    chart_series_set_name_range(series, sheet_->name, kHeadingRow, ColumnOf(i));
    const bool isMain = table_.series[i].role == SeriesRole::main;
    lxw_chart_line line{};
    line.color = colour;
    line.width = isMain ? 2.0F : 0.75F;  // points
    line.dash_type = isMain ? LXW_CHART_LINE_DASH_SOLID : LXW_CHART_LINE_DASH_DASH;
    chart_series_set_line(series, &line);
    chart_series_set_marker_type(series, isMain ? LXW_CHART_MARKER_CIRCLE : LXW_CHART_MARKER_NONE);
    if (!isMain) return;
    constexpr std::uint8_t kMarkerPoints = 6;
    chart_series_set_marker_size(series, kMarkerPoints);
    lxw_chart_fill fill{};
    fill.color = colour;
    chart_series_set_marker_fill(series, &fill);
    chart_series_set_marker_line(series, &line);
  }

  void NameParts(lxw_chart& chart) {
    std::string kept;
    chart_title_set_name(&chart, std::string(Utf8Text(table_.title, kept)).c_str());
    chart_axis_set_name(chart.x_axis, std::string(Utf8Text(table_.categoryAxis, kept)).c_str());
    chart_axis_set_name(chart.y_axis, std::string(Utf8Text(table_.valueAxis, kept)).c_str());
    lxw_chart_line grid{};
    constexpr lxw_color_t kLightGrey = 0xD9D9D9;
    grid.color = kLightGrey;
    chart_axis_major_gridlines_set_line(chart.y_axis, &grid);
    // Categories stand below the chart, not at the value 0 in the midst of the lines.
    chart_axis_set_label_position(chart.x_axis, LXW_CHART_AXIS_LABEL_POSITION_LOW);
  }

  XlsxBook& book_;
  const ChartSheet& table_;
  lxw_worksheet* sheet_;
  lxw_format* number_ = nullptr;
};

}  // namespace

WriteEnd WriteCharts(const std::vector<ChartSheet>& sheets, const FileStamp& stamp,
                     ReplacedFile& target) {
  XlsxBook book(target, stamp, {.rowsOnDisk = false});
  for (const ChartSheet& sheet : sheets) SheetOfCharts(book, sheet).Write();
  book.Close();
  return WriteEnd::complete;
}

#endif  // FLANKS_HAS_XLSXWRITER

}  // namespace flanks
