#include "output/row_writer.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/utf8_text.h"
#include "output/protected_label.h"
#include "report/format/clip_field.h"
#include "report/format/row_digits.h"

namespace flanks {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 18;
constexpr std::string_view kRowStart = "<tr>";
constexpr std::string_view kRowEnd = "</tr>";

std::string AfterField(const RowForm& form) {
  return form.isPage() || form.isFixed() ? "" : form.OutputSeparator;
}

// One number, made by `put` at a place with room enough.
template <class Put>
void AppendNumber(std::string& row, const RowForm& form, const Put& put) {
  if (form.isPage()) row += kCellRight;
  std::array<char, kNumberRoom> text;
  row.append(text.data(), static_cast<std::size_t>(put(text.data()) - text.data()));
  row += AfterField(form);
}

// What breaks a row in two, or a field, has no place in a label.
std::string DelimitedLabel(const RowForm& form, std::string_view label) {
  std::string text;
  for (const char c : label) {
    const bool breaks = c == '\n' || c == '\r' || (c == '\t' && form.OutputSeparator == "\t");
    text += breaks ? ' ' : c;
    if (form.OutputQuote.size() == 1 && c == form.OutputQuote[0]) text += c;
  }
  return form.OutputQuote + text + form.OutputQuote;
}

void AppendFixedLabel(std::string& row, const RowForm& form, std::string_view label, int width) {
  const std::string quoted = form.OutputQuote + std::string(label) + form.OutputQuote;
  row += ' ';
  row +=
      width == kUnpadded
          ? quoted
          : ClipField(quoted, width + 2 * static_cast<int>(form.OutputQuote.size()), form.encoded);
}

}  // namespace

void AppendWhole(std::string& row, const RowForm& form, std::int32_t value) {
  AppendNumber(row, form, [&](char* at) {
    return form.isFixed() ? PutFixedWhole(at, value) : PutWhole(at, value);
  });
}

void AppendDecimals(std::string& row, const RowForm& form, double value, int decimals) {
  AppendNumber(row, form, [&](char* at) {
    return form.isFixed() ? PutFixedDecimals(at, value, decimals)
                          : PutDecimals(at, value, decimals);
  });
}

void AppendLabel(std::string& row, const RowForm& form, std::string_view label, int width,
                 std::string_view cell) {
  if (form.isPage()) {
    row.append(cell).append(PageText(label));
  } else if (form.isFixed()) {
    AppendFixedLabel(row, form, label, width);
  } else {
    const std::string shown = form.protectsLabels ? ProtectForExcel(label) : std::string(label);
    row.append(DelimitedLabel(form, shown)).append(form.OutputSeparator);
  }
}

std::string CutTo(std::string_view text, int columns, Utf8Encoded encoded) {
  return DisplayWidth(text, encoded) > columns ? ClipField(text, columns, encoded)
                                               : std::string(text);
}

std::string RightAligned(std::string_view text, int columns, Utf8Encoded encoded) {
  const int blanks = std::max(0, columns - DisplayWidth(text, encoded));
  return std::string(static_cast<std::size_t>(blanks), ' ') + std::string(text);
}

std::string PageText(std::string_view text) {
  std::string page, kept;
  for (const char c : Utf8Text(text, kept)) {
    switch (c) {
      case '&':
        page += "&amp;";
        break;
      case '<':
        page += "&lt;";
        break;
      case '>':
        page += "&gt;";
        break;
      default:
        page += c;
    }
  }
  return page;
}

RowWriter::RowWriter(const RowForm& form, Destination& out)
    : form_(form),
      out_(out),
      fixed_(form.isFixed()),
      before_(form.isPage() ? kCellRight : ""),
      after_(AfterField(form)),
      buffer_(kBufferBytes) {
  at_ = buffer_.data();
  end_ = at_ + buffer_.size();
}

// Hands over the rows that are complete; the row at work goes to the front of the buffer, which
// grows when the row leaves no room for `bytes`.
void RowWriter::HandOver(std::size_t bytes) {
  const auto used = static_cast<std::size_t>(at_ - buffer_.data());
  out_.Lines({buffer_.data(), row_});
  std::memmove(buffer_.data(), buffer_.data() + row_, used - row_);
  const std::size_t kept = used - row_;
  fields_ -= row_;
  row_ = 0;
  if (buffer_.size() - kept < bytes) buffer_.resize(2 * (kept + bytes));
  at_ = buffer_.data() + kept;
  end_ = buffer_.data() + buffer_.size();
}

void RowWriter::BeginRow() {
  row_ = static_cast<std::size_t>(at_ - buffer_.data());
  fields_ = row_;
  // Kept: the first cell of a row closes one that is not there (docs/quirks.md).
  if (form_.isPage()) Made(kRowStart);
  fields_ = static_cast<std::size_t>(at_ - buffer_.data());
}

void RowWriter::Whole(std::int32_t value) {
  Made(before_);
  char* const at = Place(kNumberRoom);
  Advance(fixed_ ? PutFixedWhole(at, value) : PutWhole(at, value));
  Made(after_);
}

void RowWriter::Decimals(double value, int decimals) {
  Made(before_);
  char* const at = Place(kNumberRoom);
  Advance(fixed_ ? PutFixedDecimals(at, value, decimals) : PutDecimals(at, value, decimals));
  Made(after_);
}

void RowWriter::Made(std::string_view fields) {
  std::memcpy(Place(fields.size()), fields.data(), fields.size());
  at_ += fields.size();
}

void RowWriter::Label(std::string_view label, int width, std::string_view cell) {
  label_.clear();
  AppendLabel(label_, form_, label, width, cell);
  Made(label_);
}

void RowWriter::EndRow() {
  const auto used = static_cast<std::size_t>(at_ - buffer_.data());
  if (used == fields_) {
    at_ = buffer_.data() + row_;
    return;
  }
  at_ -= after_.size();
  if (form_.isPage()) Made(kRowEnd);
  Made("\n");
  row_ = fields_ = static_cast<std::size_t>(at_ - buffer_.data());
}

void RowWriter::Line(std::string_view line) {
  BeginRow();
  at_ = buffer_.data() + row_;
  Made(line);
  Made("\n");
  row_ = fields_ = static_cast<std::size_t>(at_ - buffer_.data());
}

void RowWriter::Flush() {
  row_ = static_cast<std::size_t>(at_ - buffer_.data());
  HandOver(0);
}

}  // namespace flanks
