// Rows of an output file: fields in fixed columns, between separators, or as cells of a webpage.
//
// Fixed form (the separator is a blank): numbers take ten columns, right-aligned; a label stands
// behind one blank, with the quote mark on both sides, in as many columns as the longest needs.
// Delimited form: the separator stands between fields; labels have the quote mark on both sides,
// and one that is within a label is doubled.  Page: each field behind the tags that open its cell.
//
//   RowWriter rows(form, out);
//   rows.BeginRow();
//   rows.Whole(3);
//   rows.Decimals(1.25, 2);
//   rows.Label("Ann", 5);
//   rows.EndRow();          // a row without fields is not written
//   rows.Flush();
//
// A row costs no allocation: fields go into one buffer that is handed over a quarter of a megabyte
// at a time.  Fields that stand in many rows can be made once (AppendLabel, AppendWhole, ...) and
// copied by Made.
//
// Tested by tests/unit/output/row_writer_test.cpp; timed by bench/bench_rows.cpp.
#ifndef FLANKS_OUTPUT_ROW_WRITER_H
#define FLANKS_OUTPUT_ROW_WRITER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/utf8.h"
#include "output/destination.h"

namespace flanks {

enum class RowLayout : std::uint8_t { text, page };

struct RowForm {
  RowLayout layout = RowLayout::text;
  std::string OutputSeparator = " ";
  std::string OutputQuote;
  bool protectsLabels = false;  // ProtectForExcel
  Utf8Encoded encoded = Utf8Encoded::detect;

  bool isPage() const { return layout == RowLayout::page; }
  bool isFixed() const { return !isPage() && (OutputSeparator.empty() || OutputSeparator == " "); }
};

// The tags that open a cell; each closes the one before.
constexpr std::string_view kHeadRight = "</TH><TH ALIGN=\"RIGHT\">";
constexpr std::string_view kHeadLeft = "</TH><TH ALIGN=\"LEFT\">";
constexpr std::string_view kCellRight = "</TD><TD ALIGN=\"RIGHT\">";
constexpr std::string_view kCellLeft = "</TD><TD ALIGN=\"LEFT\">";

// Columns of a label in fixed form: cut or padded to so many, and the quote marks; or as it is.
constexpr int kUnpadded = -1;

// One field at the end of `row`, with the separator behind it where there is one.
void AppendWhole(std::string& row, const RowForm& form, std::int32_t value);
void AppendDecimals(std::string& row, const RowForm& form, double value, int decimals);
void AppendLabel(std::string& row, const RowForm& form, std::string_view label, int width,
                 std::string_view cell = kCellLeft);

// For headings in fixed form: the text cut to so many columns, or with blanks in front up to them.
std::string CutTo(std::string_view text, int columns, Utf8Encoded encoded);
std::string RightAligned(std::string_view text, int columns, Utf8Encoded encoded);

// A text in UTF-8 (one in the Windows code page is made so) with &amp; &lt; &gt; for the characters
// that a page takes for marks.
std::string PageText(std::string_view text);

class RowWriter {
 public:
  RowWriter(const RowForm& form, Destination& out);

  void BeginRow();
  // `decimals` 0 to 9.
  void Whole(std::int32_t value);
  void Decimals(double value, int decimals);
  void Label(std::string_view label, int width, std::string_view cell = kCellLeft);
  // Fields with their separators, as the Append functions make them.
  void Made(std::string_view fields);
  // Takes the separator behind the last field away and ends the line.
  void EndRow();
  // A line as it is.
  void Line(std::string_view line);
  void Flush();

  // For rows that are put together in place: where the row goes on, with room for `bytes`; Advance
  // tells where it has come to.
  char* Place(std::size_t bytes) {
    if (static_cast<std::size_t>(end_ - at_) < bytes) HandOver(bytes);
    return at_;
  }
  void Advance(char* at) { at_ = at; }
  const RowForm& form() const { return form_; }
  // What stands behind each field, and before each number.
  const std::string& after() const { return after_; }
  const std::string& before() const { return before_; }

 private:
  void HandOver(std::size_t bytes);

  const RowForm form_;
  Destination& out_;
  const bool fixed_;
  const std::string before_, after_;
  std::vector<char> buffer_;
  char* at_ = nullptr;
  char* end_ = nullptr;
  std::size_t row_ = 0;     // where the row begins in the buffer
  std::size_t fields_ = 0;  // where its fields begin
  std::string label_;       // the label at work
};

}  // namespace flanks

#endif  // FLANKS_OUTPUT_ROW_WRITER_H
