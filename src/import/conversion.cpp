#include "import/conversion.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "base/positioned_file.h"
#include "import/import_text.h"
#include "import/package_table.h"
#include "import/rdata_table.h"
#include "import/unpacked_file.h"
#include "import/xls_table.h"
#include "import/xlsx_table.h"

namespace flanks {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

constexpr std::string_view kZipStart = "PK";
constexpr std::string_view kCompoundStart =
    "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";  // .xls; locked .xlsx

// The name of a part in a locked workbook, two bytes to a letter.
constexpr std::string_view kLockedPart("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e", 31);

// Whether the file has the text somewhere.
bool Holds(std::FILE* file, std::string_view text) {
  constexpr std::size_t kBlockBytes = std::size_t{1} << 20;
  std::string bytes;
  std::rewind(file);
  while (true) {
    const std::size_t kept = std::min(bytes.size(), text.size() - 1);
    bytes.erase(0, bytes.size() - kept);
    bytes.resize(kept + kBlockBytes);
    const std::size_t taken = std::fread(bytes.data() + kept, 1, kBlockBytes, file);
    bytes.resize(kept + taken);
    if (bytes.find(text) != std::string::npos) return true;
    if (taken == 0) return false;
  }
}

// What speaks against reading a spreadsheet as one of its kind, by its first bytes.
std::string ReasonAgainstSpreadsheet(DataKind kind, std::FILE* file) {
  char bytes[8] = {};
  const std::string_view start(bytes, std::fread(bytes, 1, sizeof bytes, file));
  const bool compound = start == kCompoundStart, zip = start.starts_with(kZipStart);
  if (compound && Holds(file, kLockedPart)) return "it is locked with a password";
  if (kind == DataKind::xlsx && compound) return "it is an .xls file, and its name must end so";
  if (kind == DataKind::xls && zip) return "it is an .xlsx file, and its name must end so";
  if (kind == DataKind::xlsx && !zip) return "it is no .xlsx file";
  return {};
}

// What speaks against reading the file at all.
std::string ReasonAgainst(const ImportName& name) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(name.file, error);
  if (!std::filesystem::exists(status)) return "there is no such file";
  if (std::filesystem::is_directory(status)) return "it is a folder";
  if (!std::filesystem::is_regular_file(status)) return "it is no ordinary file";
  const File file(std::fopen(name.file.c_str(), "rb"), std::fclose);
  if (file == nullptr) return LastFileError().message();
  if (std::filesystem::file_size(name.file, error) == 0) return "it is empty";
  const bool spreadsheet = name.kind == DataKind::xlsx || name.kind == DataKind::xls;
  return spreadsheet ? ReasonAgainstSpreadsheet(name.kind, file.get()) : "";
}

ConversionEnd ConvertKind(const ConversionRequest& request, const ConversionWatch& watch,
                          ImportText& text) {
  switch (request.name.kind) {
    case DataKind::xlsx:
      return ConvertXlsx(request.name, text);
    case DataKind::xls:
      return ConvertXls(request.name, text);
    case DataKind::stata:
    case DataKind::spss:
    case DataKind::sas:
      return ConvertPackage(request.name, text);
    case DataKind::rdata: {
      std::string file;
      ConversionEnd end = UnpackFile(request.name.file, request.scratchFile, {}, file);
      return end.done() ? ConvertRdata(file, watch, text) : end;
    }
    case DataKind::text:
      break;
  }
  return ConversionFailed("it is text already");
}

}  // namespace

ConversionEnd ConvertFile(const ConversionRequest& request, const ConversionWatch& watch) {
  if (std::string reason = ReasonAgainst(request.name); !reason.empty())
    return ConversionFailed(std::move(reason));
  const File out(std::fopen(request.textFile.c_str(), "wb"), std::fclose);
  if (out == nullptr) return ConversionFailed(LastFileError().message());
  ImportText text(request.heading, watch, [&out](std::string_view piece) {
    return std::fwrite(piece.data(), 1, piece.size(), out.get()) == piece.size() &&
           std::fflush(out.get()) == 0;
  });
  if (ConversionEnd end = ConvertKind(request, watch, text); !end.done()) return end;
  return text.Finish();
}

std::string FirstSheetName(const ImportName& name) {
  if (name.kind == DataKind::xlsx) return FirstXlsxSheet(name);
  return name.kind == DataKind::xls ? FirstXlsSheet(name) : "";
}

}  // namespace flanks
