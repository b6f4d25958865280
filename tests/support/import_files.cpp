#include "support/import_files.h"

#include <algorithm>
#include <bzlib.h>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <lzma.h>
#include <memory>
#include <rdata/rdata.h>
#include <readstat.h>
#include <stdexcept>
#include <zip.h>
#include <zlib.h>

#include "base/text.h"

namespace flanks {
namespace {

void Require(bool good, const char* what) {
  if (!good) throw std::runtime_error(std::string("a test's file cannot be made: ") + what);
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else
      escaped += c;
  }
  return escaped;
}

std::string NumberText(double value) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, value);
  return {text, result.ptr};
}

std::size_t Columns(const TestTable& table) {
  std::size_t columns = 0;
  for (const TestRow& row : table) columns = std::max(columns, row.size());
  return columns;
}

const TestCell kNothing;

const TestCell& CellAt(const TestRow& row, std::size_t column) {
  return column < row.size() ? row[column] : kNothing;
}

bool HoldsText(const TestTable& table, std::size_t column) {
  for (const TestRow& row : table)
    if (std::holds_alternative<std::string>(CellAt(row, column))) return true;
  return false;
}

std::string TextOf(const TestCell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  if (const auto* number = std::get_if<double>(&cell)) return NumberText(*number);
  return {};
}

template <typename Context>
ssize_t AppendTo(const void* data, size_t length, Context* context) {
  static_cast<std::string*>(context)->append(static_cast<const char*>(data), length);
  return static_cast<ssize_t>(length);
}

// ---- packages

using PackageWriter = std::unique_ptr<readstat_writer_t, decltype(&readstat_writer_free)>;

readstat_error_t BeginWriting(const std::string& kind, readstat_writer_t* writer, std::string& out,
                              long rows) {
  if (kind == "dta") return readstat_begin_writing_dta(writer, &out, rows);
  if (kind == "sav") return readstat_begin_writing_sav(writer, &out, rows);
  return readstat_begin_writing_sas7bdat(writer, &out, rows);
}

void WriteCell(readstat_writer_t* writer, const readstat_variable_t* variable, bool asText,
               const TestCell& cell) {
  if (asText)
    readstat_insert_string_value(writer, variable, TextOf(cell).c_str());
  else if (const auto* number = std::get_if<double>(&cell))
    readstat_insert_double_value(writer, variable, *number);
  else
    readstat_insert_missing_value(writer, variable);
}

std::string WritePackage(const std::string& kind, const TestTable& table, bool userMissing) {
  constexpr std::size_t kTextWidth = 60;
  std::string out;
  const PackageWriter writer(readstat_writer_init(), readstat_writer_free);
  readstat_set_data_writer(writer.get(), AppendTo<void>);
  std::vector<readstat_variable_t*> variables;
  for (std::size_t i = 0; i < Columns(table); ++i)
    variables.push_back(
        readstat_add_variable(writer.get(), ("v" + std::to_string(i + 1)).c_str(),
                              HoldsText(table, i) ? READSTAT_TYPE_STRING : READSTAT_TYPE_DOUBLE,
                              HoldsText(table, i) ? kTextWidth : 0));
  if (userMissing) {
    readstat_variable_add_missing_double_value(variables[0], 9);
    readstat_variable_add_missing_double_range(variables[1], 90, 99);
  }
  Require(BeginWriting(kind, writer.get(), out, static_cast<long>(table.size())) == READSTAT_OK,
          kind.c_str());
  for (const TestRow& row : table) {
    readstat_begin_row(writer.get());
    for (std::size_t i = 0; i < variables.size(); ++i)
      WriteCell(writer.get(), variables[i], HoldsText(table, i), CellAt(row, i));
    Require(readstat_end_row(writer.get()) == READSTAT_OK, "a row");
  }
  Require(readstat_end_writing(writer.get()) == READSTAT_OK, "the end");
  return out;
}

}  // namespace

TestTable TableOf(std::string_view lines) {
  TestTable table;
  FieldCursor cursor(lines, '\n');
  std::string_view line;
  while (cursor.Next(line)) {
    line = Trim(line.substr(0, line.find(';')));
    if (line.empty()) continue;
    TestRow& row = table.emplace_back();
    for (const std::string_view field : CommaFields(line)) {
      double number = 0;
      const char* const end = field.data() + field.size();
      const auto result = std::from_chars(field.data(), end, number);
      if (field.empty())
        row.emplace_back();
      else if (result.ec == std::errc() && result.ptr == end)
        row.emplace_back(number);
      else
        row.emplace_back(std::string(field));
    }
  }
  return table;
}

std::string ZipBytes(const std::vector<std::pair<std::string, std::string>>& parts) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* const source = zip_source_buffer_create(nullptr, 0, 0, &error);
  Require(source != nullptr, "zip");
  zip_source_keep(source);
  zip_t* const zip = zip_open_from_source(source, ZIP_TRUNCATE, &error);
  Require(zip != nullptr, "zip");
  for (const auto& [name, bytes] : parts)
    Require(zip_file_add(zip, name.c_str(), zip_source_buffer(zip, bytes.data(), bytes.size(), 0),
                         0) >= 0,
            "part");
  Require(zip_close(zip) == 0, "zip");
  zip_stat_t size;
  zip_source_stat(source, &size);
  std::string bytes(size.size, '\0');
  zip_source_open(source);
  zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  zip_source_free(source);
  return bytes;
}

std::vector<std::pair<std::string, std::string>> XlsxParts(const TestWorkbook& workbook) {
  const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
  const std::string main = " xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"";
  const std::string type = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
  const std::string relationships =
      head +
      "<Relationships "
      "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  std::string sheets, relations;
  std::vector<std::pair<std::string, std::string>> parts;
  for (std::size_t i = 0; i < workbook.sheets.size(); ++i) {
    const TestSheet& sheet = workbook.sheets[i];
    const std::string number = std::to_string(i + 1);
    sheets += "<sheet name=\"" + Escaped(sheet.name) + "\" sheetId=\"" + number + "\"" +
              (sheet.hidden ? " state=\"hidden\"" : "") + " r:id=\"rId" + number + "\"/>";
    relations += "<Relationship Id=\"rId" + number + "\" Type=\"" + type +
                 "worksheet\" Target=\"worksheets/sheet" + number + ".xml\"/>";
    parts.emplace_back("xl/worksheets/sheet" + number + ".xml",
                       head + "<worksheet" + main + ">" + sheet.data + "</worksheet>");
  }
  relations += "<Relationship Id=\"s\" Type=\"" + type +
               "sharedStrings\" Target=\"/xl/sharedStrings.xml\"/><Relationship Id=\"t\" Type=\"" +
               type + "styles\" Target=\"styles.xml\"/>";
  parts.emplace_back("_rels/.rels", relationships + "<Relationship Id=\"r\" Type=\"" + type +
                                        "officeDocument\" Target=\"xl/workbook.xml\"/>"
                                        "</Relationships>");
  parts.emplace_back(
      "xl/workbook.xml",
      head + "<workbook" + main +
          " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">" +
          workbook.properties + "<sheets>" + sheets + "</sheets></workbook>");
  parts.emplace_back("xl/_rels/workbook.xml.rels", relationships + relations + "</Relationships>");
  parts.emplace_back("xl/sharedStrings.xml",
                     head + "<sst" + main + ">" + workbook.strings + "</sst>");
  parts.emplace_back("xl/styles.xml",
                     head + "<styleSheet" + main + ">" + workbook.styles + "</styleSheet>");
  return parts;
}

std::string XlsxBytes(const TestWorkbook& workbook) {
  return ZipBytes(XlsxParts(workbook));
}

std::string SheetData(const TestTable& table) {
  std::string xml = "<sheetData>";
  for (const TestRow& row : table) {
    xml += "<row>";
    for (const TestCell& cell : row) {
      if (const auto* number = std::get_if<double>(&cell))
        xml += "<c><v>" + NumberText(*number) + "</v></c>";
      else if (const auto* text = std::get_if<std::string>(&cell))
        xml += "<c t=\"inlineStr\"><is><t>" + Escaped(*text) + "</t></is></c>";
      else
        xml += "<c/>";
    }
    xml += "</row>";
  }
  return xml + "</sheetData>";
}

std::string PackageBytes(const std::string& kind, const TestTable& table) {
  return WritePackage(kind, table, false);
}

std::string SavWithUserMissing(const TestTable& table) {
  return WritePackage("sav", table, true);
}

std::string RdataBytes(const std::string& name, const TestTable& table) {
  std::string out;
  const std::unique_ptr<rdata_writer_t, decltype(&rdata_writer_free)> writer(
      rdata_writer_init(AppendTo<void>, RDATA_WORKSPACE), rdata_writer_free);
  const auto rows = static_cast<std::int32_t>(table.size());
  for (std::size_t i = 0; i < Columns(table); ++i)
    rdata_add_column(writer.get(), ("v" + std::to_string(i + 1)).c_str(),
                     HoldsText(table, i) ? RDATA_TYPE_STRING : RDATA_TYPE_REAL);
  rdata_begin_file(writer.get(), &out);
  rdata_begin_table(writer.get(), name.c_str());
  for (std::size_t i = 0; i < Columns(table); ++i) {
    rdata_column_t* const column = rdata_get_column(writer.get(), static_cast<std::int32_t>(i));
    rdata_begin_column(writer.get(), column, rows);
    for (const TestRow& row : table) {
      const TestCell& cell = CellAt(row, i);
      const auto* number = std::get_if<double>(&cell);
      if (HoldsText(table, i))
        rdata_append_string_value(writer.get(), cell.index() == 0 ? nullptr : TextOf(cell).c_str());
      else
        rdata_append_real_value(writer.get(), number == nullptr ? NAN : *number);
    }
    rdata_end_column(writer.get(), column);
  }
  rdata_end_table(writer.get(), rows, name.c_str());
  Require(rdata_end_file(writer.get()) == RDATA_OK, "rda");
  return out;
}

std::string GzipBytes(std::string_view bytes) {
  z_stream stream{};
  Require(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY) == Z_OK, "gzip");
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  Require(deflate(&stream, Z_FINISH) == Z_STREAM_END, "gzip");
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

std::string Bzip2Bytes(std::string_view bytes) {
  std::string out(bytes.size() + bytes.size() / 100 + 1000, '\0');
  auto size = static_cast<unsigned>(out.size());
  Require(BZ2_bzBuffToBuffCompress(out.data(), &size, const_cast<char*>(bytes.data()),
                                   static_cast<unsigned>(bytes.size()), 9, 0, 0) == BZ_OK,
          "bzip2");
  out.resize(size);
  return out;
}

std::string XzBytes(std::string_view bytes) {
  std::string out(lzma_stream_buffer_bound(bytes.size()), '\0');
  std::size_t size = 0;
  Require(lzma_easy_buffer_encode(6, LZMA_CHECK_CRC32, nullptr,
                                  reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(),
                                  reinterpret_cast<std::uint8_t*>(out.data()), &size,
                                  out.size()) == LZMA_OK,
          "xz");
  out.resize(size);
  return out;
}

}  // namespace flanks
