// The tab-separated text that the hand-offs to other programs are made from.
//
// The writers of output files write it into a temporary file; the .xlsx, .sav and .rda files are
// made of it line by line, so that memory does not grow with its rows.  What a column is (numbers,
// with how many decimals; texts, how long) is found by one reading before the one that writes:
//
//   TableSource source{.name = name};
//   const TableShape shape = MeasureTable(source, 1);   // one heading line
//   TabText text(source);
//   while (text.ReadRow()) ... text.cells() ...
//
// A file that cannot be read throws a std::system_error or std::runtime_error with its reason.
//
// Tested by tests/unit/output/hand_offs_test.cpp.
#ifndef FLANKS_OUTPUT_TAB_TEXT_H
#define FLANKS_OUTPUT_TAB_TEXT_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/replaced_file.h"
#include "base/text_file.h"

namespace flanks {

// What stands for a number that is too large for its form.
constexpr std::string_view kTooLargeMark = "???";

// The number that all of `cell` is, as a Table writes it: sign, digits, point, exponent.
std::optional<double> CellNumber(std::string_view cell);

// The analysis as the properties of a file name it.
struct FileStamp {
  std::string title;
  std::string program;    // name and version
  std::int64_t time = 0;  // seconds since 1970
};
FileStamp MakeFileStamp(const std::string& title);
// Year, month, day, hours and minutes of the stamp, local time.
std::string StampDate(const FileStamp& stamp);

struct TableSource {
  std::string name;
  // Asked once in a while; true ends the work.
  std::function<bool()> isStopped = [] { return false; };
};

// The rows of the text.
class TabText {
 public:
  explicit TabText(const TableSource& source);
  // The next line's cells; false at the end.
  bool ReadRow();
  // Valid until the next ReadRow.
  std::span<const std::string_view> cells() const { return cells_; }
  // Empty behind the last.
  std::string_view cell(std::size_t column) const {
    return column < cells_.size() ? cells_[column] : std::string_view();
  }
  std::int64_t rows() const { return rows_; }  // read so far
  // Whether the work is to end; the source is asked at some of the rows.
  bool IsStopped() const;

 private:
  TextFile file_;
  std::function<bool()> isStopped_;
  std::vector<std::string_view> cells_;
  std::deque<std::string> repaired_;  // cells that were no UTF-8
  std::int64_t rows_ = 0;
};

struct ColumnShape {
  std::string heading;    // of the last heading line
  bool isNumber = true;   // each cell is a number, empty or too large
  bool hasValue = false;  // a cell is not empty
  int decimals = 0;       // the most digits behind the point
  int columns = 0;        // the widest cell below the heading, columns on a screen
  std::size_t bytes = 0;  // the longest
};

struct TableShape {
  std::vector<ColumnShape> columns;
  std::int64_t rows = 0;  // below the headings
  bool stopped = false;   // by the user: incomplete
};

// Reads all of the text; its first `headingLines` lines are no rows.
TableShape MeasureTable(const TableSource& source, int headingLines);

// How a file came to its end.  `missing`: this build has no library for the form.
enum class WriteEnd : std::uint8_t { complete, stopped, missing, failed };

}  // namespace flanks

#endif  // FLANKS_OUTPUT_TAB_TEXT_H
