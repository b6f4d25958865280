#include "import/xlsx_table.h"

#ifdef FLANKS_HAS_ZIP

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>
#include <zip.h>

#include "import/workbook.h"
#include "import/xlsx_table_parts.h"
#include "import/xml_pieces.h"

namespace flanks {
namespace {

constexpr zip_int64_t kMostEntries = 20000;
constexpr std::uint64_t kSmallPart = std::uint64_t{1} << 26;   // one that is read as a whole
constexpr std::uint64_t kLargePart = std::uint64_t{1} << 34;   // one that is read in pieces
constexpr std::uint64_t kNeverABomb = std::uint64_t{1} << 26;  // unpacked bytes
constexpr std::uint64_t kMostTimes = 400;                      // as large as it is packed
constexpr std::int64_t kTextPerByte = 20;  // of a sheet's XML: shared strings may be long
constexpr std::int64_t kTextAnyway = std::int64_t{1} << 26;
constexpr std::string_view kBomb = "it unpacks to far more than a workbook does";

using Zip = std::unique_ptr<zip_t, decltype(&zip_discard)>;
using ZipFile = std::unique_ptr<zip_file_t, int (*)(zip_file_t*)>;

std::string ZipWords(zip_error_t* error) {
  return zip_error_strerror(error);
}

std::string CodeWords(int code) {
  if (code == ZIP_ER_NOZIP || code == ZIP_ER_INCONS) return "it is no .xlsx file, or is damaged";
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  std::string words = ZipWords(&error);
  zip_error_fini(&error);
  return words;
}

// One part while it is unpacked.
class PartReader {
 public:
  // The reason why the part cannot be read, or nothing.
  std::string Open(zip_t* zip, const std::string& name, std::uint64_t most);
  // Puts up to `room` bytes at `to`: 0 at the end and on a failure.
  std::size_t Read(char* to, std::size_t room);
  std::uint64_t size() const { return size_; }
  const std::string& failure() const { return failure_; }

 private:
  ZipFile file_{nullptr, zip_fclose};
  std::uint64_t size_ = 0;
  std::uint64_t taken_ = 0;
  std::string failure_;
};

std::string PartReader::Open(zip_t* zip, const std::string& name, std::uint64_t most) {
  zip_stat_t part;
  zip_stat_init(&part);
  if (zip_stat(zip, name.c_str(), ZIP_FL_NOCASE, &part) != 0)
    return "there is no part \"" + name + "\" in it";
  if (!(part.valid & ZIP_STAT_SIZE) || !(part.valid & ZIP_STAT_COMP_SIZE) ||
      !(part.valid & ZIP_STAT_INDEX))
    return "it is damaged";
  if (part.valid & ZIP_STAT_ENCRYPTION_METHOD && part.encryption_method != ZIP_EM_NONE)
    return "it is locked with a password";
  if (part.size > most || (part.size > kNeverABomb && part.size / kMostTimes > part.comp_size))
    return std::string(kBomb);
  size_ = part.size;
  file_.reset(zip_fopen_index(zip, part.index, 0));
  return file_ == nullptr ? ZipWords(zip_get_error(zip)) : "";
}

std::size_t PartReader::Read(char* to, std::size_t room) {
  if (!failure_.empty()) return 0;
  const zip_int64_t taken = zip_fread(file_.get(), to, room);
  if (taken < 0) {
    failure_ = ZipWords(zip_file_get_error(file_.get()));
    return 0;
  }
  taken_ += static_cast<std::uint64_t>(taken);
  if (taken_ > size_) {
    failure_ = kBomb;
    return 0;
  }
  return static_cast<std::size_t>(taken);
}

// Reads a small part as a whole.
std::string ReadPart(zip_t* zip, const std::string& name, std::string& bytes) {
  PartReader reader;
  if (std::string reason = reader.Open(zip, name, kSmallPart); !reason.empty()) return reason;
  bytes.resize(reader.size());
  std::size_t filled = 0;
  char behind;  // reading on to the end checks the sum of the part
  while (true) {
    const bool full = filled == bytes.size();
    const std::size_t taken =
        reader.Read(full ? &behind : bytes.data() + filled, full ? 1 : bytes.size() - filled);
    if (taken == 0) break;
    if (!full) filled += taken;
  }
  bytes.resize(filled);
  return reader.failure();
}

bool HasPart(zip_t* zip, const std::string& name) {
  return zip_name_locate(zip, name.c_str(), ZIP_FL_NOCASE) >= 0;
}

// Where the target of a relation stands, given the folder of the part that it belongs to.
std::string PartName(const std::string& folder, const std::string& target) {
  if (target.starts_with('/')) return target.substr(1);
  std::string name = folder + target;
  for (std::size_t up = name.find("/../"); up != std::string::npos; up = name.find("/../")) {
    const std::size_t parent = up == 0 ? 0 : name.rfind('/', up - 1);
    const std::size_t start = parent == std::string::npos ? 0 : parent + 1;
    name.erase(start, up + 4 - start);
  }
  return name;
}

class XlsxFile {
 public:
  // Each gives the reason why it cannot go on, or nothing.
  std::string Open(const ImportName& name);
  std::string ReadTables();
  std::string ReadSheet(std::size_t sheet, ImportText& text);

  const WorkbookSheets& sheets() const { return sheets_; }

 private:
  std::string FindWorkbook();
  std::string RelatedPart(std::string_view type) const;

  Zip zip_{nullptr, zip_discard};
  std::string folder_;  // of the workbook part
  XlsxWorkbook workbook_;
  XlsxRelations relations_;
  XlsxTables tables_;
  WorkbookSheets sheets_;
};

std::string XlsxFile::Open(const ImportName& name) {
  int code = 0;
  zip_.reset(zip_open(name.file.c_str(), ZIP_RDONLY, &code));
  if (zip_ == nullptr) return CodeWords(code);
  if (zip_get_num_entries(zip_.get(), 0) > kMostEntries)
    return "it has more parts than a workbook has";
  if (std::string reason = FindWorkbook(); !reason.empty()) return reason;
  sheets_.names = workbook_.names;
  sheets_.hidden = workbook_.hidden;
  return sheets_.Choose(name);
}

std::string XlsxFile::FindWorkbook() {
  std::string xml, part = "xl/workbook.xml";
  XlsxRelations top;
  if (HasPart(zip_.get(), "_rels/.rels")) {
    if (std::string reason = ReadPart(zip_.get(), "_rels/.rels", xml); !reason.empty())
      return reason;
    if (!ReadRelationsPart(xml, top)) return "it is damaged";
    for (const auto& [id, relation] : top)
      if (relation.type == "officeDocument") part = PartName("", relation.target);
  }
  if (!HasPart(zip_.get(), part)) return "it is a zip file, but no workbook";
  folder_ = part.substr(0, part.rfind('/') + 1);
  if (std::string reason = ReadPart(zip_.get(), part, xml); !reason.empty()) return reason;
  if (!ReadWorkbookPart(xml, workbook_)) return "its list of sheets is damaged";
  const std::string relations = folder_ + "_rels/" + part.substr(folder_.size()) + ".rels";
  if (std::string reason = ReadPart(zip_.get(), relations, xml); !reason.empty()) return reason;
  return ReadRelationsPart(xml, relations_) ? "" : "its list of parts is damaged";
}

std::string XlsxFile::RelatedPart(std::string_view type) const {
  for (const auto& [id, relation] : relations_)
    if (relation.type == type) return PartName(folder_, relation.target);
  return {};
}

std::string XlsxFile::ReadTables() {
  tables_.dates = workbook_.dates;
  if (const std::string part = RelatedPart("styles"); HasPart(zip_.get(), part)) {
    std::string xml;
    if (std::string reason = ReadPart(zip_.get(), part, xml); !reason.empty()) return reason;
    if (!ReadStylesPart(xml, tables_.dateStyles)) return "its styles are damaged";
  }
  const std::string part = RelatedPart("sharedStrings");
  if (!HasPart(zip_.get(), part)) return {};
  PartReader reader;
  if (std::string reason = reader.Open(zip_.get(), part, kLargePart); !reason.empty())
    return reason;
  XmlPieces pieces([&reader](char* to, std::size_t room) { return reader.Read(to, room); }, "si");
  std::string reason = ReadStringsPart(pieces, tables_.strings);
  return reader.failure().empty() ? reason : reader.failure();
}

std::string XlsxFile::ReadSheet(std::size_t sheet, ImportText& text) {
  const auto relation = relations_.find(workbook_.ids[sheet]);
  if (relation == relations_.end()) return "its part is not in the file";
  if (relation->second.type != "worksheet") return "it is a chart or a dialog and has no rows";
  PartReader reader;
  if (std::string reason =
          reader.Open(zip_.get(), PartName(folder_, relation->second.target), kLargePart);
      !reason.empty())
    return reason;
  text.AllowBytes(kTextAnyway + kTextPerByte * static_cast<std::int64_t>(reader.size()));
  XmlPieces pieces([&reader](char* to, std::size_t room) { return reader.Read(to, room); }, "row");
  std::string reason = ReadSheetPart(pieces, tables_, text);
  return reader.failure().empty() ? reason : reader.failure();
}

}  // namespace

ConversionEnd ConvertXlsx(const ImportName& name, ImportText& text) {
  if (!XlsxPartsAreRead()) return WithoutModule("pugixml");
  XlsxFile file;
  if (std::string reason = file.Open(name); !reason.empty()) return ConversionFailed(reason);
  if (std::string reason = file.ReadTables(); !reason.empty()) return ConversionFailed(reason);
  return ConvertSheets(
      name, file.sheets(),
      [&file](std::size_t sheet, ImportText& to) { return file.ReadSheet(sheet, to); }, text);
}

std::string FirstXlsxSheet(const ImportName& name) {
  XlsxFile file;
  return XlsxPartsAreRead() && file.Open(name).empty() ? file.sheets().first() : "";
}

}  // namespace flanks

#else

namespace flanks {

ConversionEnd ConvertXlsx(const ImportName&, ImportText&) {
  return WithoutModule("libzip");
}
std::string FirstXlsxSheet(const ImportName&) {
  return {};
}

}  // namespace flanks

#endif
