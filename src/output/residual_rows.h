// The rows of the Residual file: the pass over the observations and what it puts into the file.
//
// A block's numbers are looked up column by column (report/format/number_texts); a row is then
// copied together from texts that are made already.  What is not in a table is written one by one.
//
// Tested by tests/unit/output/residual_file_test.cpp; timed by bench/bench_rows.cpp.
#ifndef FLANKS_OUTPUT_RESIDUAL_ROWS_H
#define FLANKS_OUTPUT_RESIDUAL_ROWS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "output/element_texts.h"
#include "output/observation_figures.h"
#include "output/residual_fields.h"
#include "output/row_writer.h"
#include "report/format/number_texts.h"
#include "run/progress_bar.h"
#include "run/run.h"

namespace flanks {

// Which observations have a row.
enum class StatusFilter : std::uint8_t {
  notEstimating = 1,  // those that estimation did not use
  estimating = 2,     // those that it used
  both = 3,
};

// What a row is made of.
struct ResidualTable {
  const Analysis& analysis;
  RowForm form;
  int decimals = 2;
  std::vector<ResponseColumn> columns;
  ElementTexts elements;
};

// The first column of labels: in fixed form one blank stands before it.
bool IsFirstLabel(const ResidualTable& table, std::size_t column);

class ResidualRows {
 public:
  // The table must outlive the rows.
  ResidualRows(Run& run, const ResidualTable& table, StatusFilter filter, RowWriter& rows);

  // Writes all rows and hands them over; ends early when the run is to stop.
  void Write();

 private:
  using Index = NumberTexts::Index;
  enum class Style : std::uint8_t { fixed, oneByte, other };

  struct NumberColumn {
    ResponsePlace place;
    bool whole = false;
    // By entry of the block; of the first two the one that `whole` says.
    std::vector<std::int32_t> wholes;
    std::vector<double> decimals;
    std::vector<Index> indexes;
  };
  struct ElementColumn {
    ElementText what;
    Position position;
    std::size_t field = 0;  // of the element records; kNoField
    bool blankBefore = false;
  };
  static constexpr std::size_t kNoField = static_cast<std::size_t>(-1);

  void AddColumn(const ResponseColumn& column, bool firstLabel);
  std::size_t RoomOfRow() const;
  void WriteBlocks(ProgressBar& bar);
  void LookUp();
  template <Style style>
  void WriteBlock();
  template <Style style>
  char* PutNumbers(char* at, std::size_t i);
  char* PutElements(char* at, std::size_t i) const;
  char* PutNumberItself(char* at, const NumberColumn& column, std::size_t i) const;
  void FillDecimals(NumberColumn& column) const;
  void FillWholes(NumberColumn& column) const;
  std::span<const float> FigureOf(ResponsePlace place) const;

  Run& run_;
  const ResidualTable& table_;
  StatusFilter filter_;
  ObservationFigures figures_;
  RowWriter& rows_;
  double uscale_, umean_;
  NumberTexts wholes_, decimals_;
  std::vector<NumberColumn> numbers_;
  std::vector<ElementColumn> elements_;
  std::size_t room_;
  std::int64_t sequence_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_OUTPUT_RESIDUAL_ROWS_H
