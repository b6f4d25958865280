// The parts of an .xlsx workbook, each an XML text of its own: the list of sheets, the relations
// between parts, which cell styles are dates, the strings that cells share, and the sheets.
//
// What cells become: numbers in full precision; TRUE and FALSE 1 and 0; dates and times text
// ("2024-03-01"); of a formula the value that was stored with it; #N/A an empty cell, any other
// error a refusal that names the cell.  Texts are joined from their pieces, without the readings of
// characters.
//
// Tested by tests/unit/import/tables_test.cpp and fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_XLSX_TABLE_PARTS_H
#define FLANKS_IMPORT_XLSX_TABLE_PARTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "import/cell_format.h"
#include "import/import_text.h"
#include "import/xml_pieces.h"

namespace flanks {

struct XlsxRelation {
  std::string type;  // the last word of its address: "worksheet", "sharedStrings"
  std::string target;
};
using XlsxRelations = std::map<std::string, XlsxRelation>;  // by id

struct XlsxWorkbook {
  std::vector<std::string> names;  // of the sheets, in order
  std::vector<std::string> ids;    // of their relations
  std::vector<bool> hidden;
  DateStart dates = DateStart::year1900;
};

// Texts one after the other in one block of memory.
class SharedStrings {
 public:
  void Add(std::string_view text) {
    bytes_ += text;
    ends_.push_back(bytes_.size());
  }
  std::size_t size() const { return ends_.size(); }
  std::size_t bytes() const { return bytes_.size(); }
  std::string_view operator[](std::size_t i) const {
    const std::size_t start = i == 0 ? 0 : ends_[i - 1];
    return std::string_view(bytes_).substr(start, ends_[i] - start);
  }

 private:
  std::string bytes_;
  std::vector<std::size_t> ends_;
};

// What the cells of every sheet refer to.
struct XlsxTables {
  SharedStrings strings;
  std::vector<bool> dateStyles;  // by style of a cell
  DateStart dates = DateStart::year1900;
};

// False without the XML library.
bool XlsxPartsAreRead();

// Each takes a whole part; false when it is no XML.
bool ReadWorkbookPart(std::string_view xml, XlsxWorkbook& workbook);
bool ReadRelationsPart(std::string_view xml, XlsxRelations& relations);
bool ReadStylesPart(std::string_view xml, std::vector<bool>& dateStyles);

// Each takes a part piece by piece, `element` of the pieces is "si", "row".  Gives what is wrong
// with it in words, or nothing; a cell that is refused is known to `text`.
std::string ReadStringsPart(XmlPieces& pieces, SharedStrings& strings);
std::string ReadSheetPart(XmlPieces& pieces, const XlsxTables& tables, ImportText& text);

}  // namespace flanks

#endif  // FLANKS_IMPORT_XLSX_TABLE_PARTS_H
