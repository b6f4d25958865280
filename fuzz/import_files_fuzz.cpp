// The program's own readers of other programs' files, on bytes that no zip or library has looked
// at.
//
// The first byte says which: R a sheet's XML, S its shared strings, W the list of sheets, L the
// list of parts, Y styles, X a stream of .xls records, C a compound file, P a packed file.  A sheet
// is read twice, in blocks of the size that the second byte tells and as a whole: the same must
// come of it.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "fuzz_checks.h"
#include "gathered_import.h"
#include "import/compound_file.h"
#include "import/unpacked_file.h"
#include "import/xls_records.h"
#include "import/xlsx_table_parts.h"

namespace flanks {
namespace {

XmlPieces::Read InBlocks(std::string_view bytes, std::size_t block) {
  return [bytes, block](char* to, std::size_t room) mutable {
    const std::size_t taken = bytes.copy(to, std::min(block, room));
    bytes.remove_prefix(taken);
    return taken;
  };
}

XlsxTables SomeTables() {
  XlsxTables tables;
  tables.strings.Add("Ann");
  tables.strings.Add("a,b");
  tables.dateStyles = {false, true};
  return tables;
}

std::string SheetText(std::string_view xml, std::size_t block) {
  GatheredImport gathered;
  ImportText& text = gathered.text;
  text.BeginSheet("One");
  XmlPieces pieces(InBlocks(xml, block), "row");
  const std::string reason = ReadSheetPart(pieces, SomeTables(), text);
  text.EndSheet();
  const ConversionEnd end = text.Finish();
  return gathered.written + end.text + "|" + reason;
}

void CheckSheet(std::string_view input) {
  if (input.empty()) return;
  const std::size_t block = 1 + static_cast<unsigned char>(input.front());
  const std::string_view xml = input.substr(1);
  Require(SheetText(xml, block) == SheetText(xml, xml.size() + 1), "blocks change nothing", xml);
}

void CheckStrings(std::string_view xml) {
  SharedStrings strings;
  XmlPieces pieces(InBlocks(xml, 7), "si");
  ReadStringsPart(pieces, strings);
  for (std::size_t i = 0; i < strings.size(); ++i)
    Require(strings[i].size() <= 3 * xml.size(), "a string of the part");
}

void CheckRecords(std::string_view stream) {
  for (const XlsCells cells : {XlsCells::passedOver, XlsCells::all}) {
    const XlsContents contents = ReadXlsRecords(stream, cells);
    for (const XlsSheet& sheet : contents.sheets) {
      std::pair<std::uint32_t, std::uint32_t> last{0, 0};
      for (const XlsValue& value : sheet.values) {
        const std::pair at(value.row, value.column);
        Require(at >= last, "values ascend");
        Require(value.row < 65536 && value.column < 256, "values stand in the sheet");
        Require(value.text == 0 || value.text < contents.texts.size(), "a text that is there");
        last = at;
      }
    }
  }
}

void CheckPacked(std::string_view bytes) {
  const UnpackLimits limits{100000, 50000, 20};
  std::ofstream("packed", std::ios::binary) << bytes;
  std::ofstream("scratch", std::ios::binary | std::ios::trunc);
  std::string file;
  const ConversionEnd end = UnpackFile("packed", "scratch", limits, file);
  Require(end.done() || !end.text.empty(), "words for what is wrong");
  Require(std::filesystem::file_size("scratch") <= 100000, "no more than the limit");
}

void CheckParts(char kind, std::string_view xml) {
  XlsxWorkbook workbook;
  XlsxRelations relations;
  std::vector<bool> dateStyles;
  if (kind == 'W') ReadWorkbookPart(xml, workbook);
  if (kind == 'L') ReadRelationsPart(xml, relations);
  if (kind == 'Y') ReadStylesPart(xml, dateStyles);
  Require(workbook.names.size() == workbook.ids.size() &&
              workbook.names.size() == workbook.hidden.size(),
          "one of each for a sheet");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GoToScratchFolder();
  const std::string_view input = TextOf(data, size);
  if (input.empty()) return 0;
  const std::string_view rest = input.substr(1);
  switch (input.front()) {
    case 'R':
      CheckSheet(rest);
      break;
    case 'S':
      CheckStrings(rest);
      break;
    case 'X':
      CheckRecords(rest);
      break;
    case 'C':
      CheckRecords(WorkbookStream(rest));
      break;
    case 'P':
      CheckPacked(rest);
      break;
    default:
      CheckParts(input.front(), rest);
  }
  return 0;
}

}  // namespace flanks
