#include "import/xlsx_table_parts.h"

#include <charconv>

#ifdef FLANKS_HAS_PUGIXML

#include <pugixml.hpp>

#include "base/text.h"

namespace flanks {
namespace {

constexpr unsigned kParsing = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute;
constexpr std::size_t kMostStringBytes = std::size_t{1} << 29;
constexpr std::size_t kLongestCell = 4 * 32767;  // characters of a cell, in bytes

std::string_view LocalName(const char* name) {
  const std::string_view whole(name);
  const std::size_t colon = whole.find(':');
  return colon == std::string_view::npos ? whole : whole.substr(colon + 1);
}

// Prefixes differ from program to program, so attributes and children go by the rest of the name.
std::string_view Attribute(const pugi::xml_node& node, std::string_view name) {
  for (const pugi::xml_attribute& attribute : node.attributes())
    if (LocalName(attribute.name()) == name) return attribute.value();
  return {};
}

pugi::xml_node Child(const pugi::xml_node& node, std::string_view name) {
  for (const pugi::xml_node& child : node.children())
    if (LocalName(child.name()) == name) return child;
  return {};
}

bool IsYes(std::string_view value) {
  return value == "1" || value == "true" || value == "on";
}

template <typename Number>
bool ReadWhole(std::string_view text, Number& number) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::string_view LastWord(std::string_view address) {
  return address.substr(address.rfind('/') + 1);
}

// The text of a string item: its `t`, and those of its runs.  An item's readings (rPh) are none.
void AppendItemText(const pugi::xml_node& item, std::string& text) {
  for (const pugi::xml_node& child : item.children()) {
    const std::string_view name = LocalName(child.name());
    if (name == "t") text += child.child_value();
    if (name == "r") text += Child(child, "t").child_value();
  }
}

std::string ItemText(const pugi::xml_node& item) {
  std::string text;
  AppendItemText(item, text);
  return text.find("_x") == std::string::npos ? text : WithoutHexadecimal(text);
}

// The cells of one row.
class CellReader {
 public:
  CellReader(const XlsxTables& tables, ImportText& text) : tables_(tables), text_(text) {}

  // False when the cell is out of its order or has what no cell has.
  bool Read(const pugi::xml_node& cell);
  void BeginRow() { column_ = 0; }

 private:
  bool ReadNumber(std::string_view value, std::string_view style);
  bool ReadShared(std::string_view value);
  bool AddText(std::string_view text);

  const XlsxTables& tables_;
  ImportText& text_;
  int column_ = 0;
};

bool CellReader::AddText(std::string_view text) {
  if (text.size() > kLongestCell) return false;
  text_.AddText(column_, text);
  return true;
}

bool CellReader::ReadNumber(std::string_view value, std::string_view style) {
  double number = 0.0;
  if (value.empty()) return true;
  if (!ReadWhole(value, number)) return false;
  std::size_t row = 0;
  if (!style.empty() && ReadWhole(style, row) && row < tables_.dateStyles.size() &&
      tables_.dateStyles[row])
    if (const std::string date = DateText(number, tables_.dates); !date.empty())
      return AddText(date);
  text_.AddNumber(column_, number);
  return true;
}

bool CellReader::ReadShared(std::string_view value) {
  std::size_t row = 0;
  if (value.empty()) return true;
  return ReadWhole(value, row) && row < tables_.strings.size() && AddText(tables_.strings[row]);
}

bool CellReader::Read(const pugi::xml_node& cell) {
  std::string_view place, type, style;
  for (const pugi::xml_attribute& attribute : cell.attributes()) {
    const std::string_view name(attribute.name());
    if (name == "r") place = attribute.value();
    if (name == "t") type = attribute.value();
    if (name == "s") style = attribute.value();
  }
  const int column = place.empty() ? column_ + 1 : ColumnOfCell(place);
  if (column <= column_ || column > kMostColumns) return false;
  column_ = column;
  if (type == "inlineStr") return AddText(ItemText(Child(cell, "is")));
  const std::string_view value = Trim(Child(cell, "v").child_value());
  if (type == "s") return ReadShared(value);
  if (type == "str") return AddText(WithoutHexadecimal(value));
  if (type == "d") {
    std::string date(value.substr(0, value.find("T00:00:00")));
    ReplaceCharacter(date, 'T', ' ');
    return AddText(date);
  }
  if (type == "e") {
    if (value != "#N/A") text_.Refuse(column_, value);
    return true;
  }
  return ReadNumber(value, style);  // "n", "b" or nothing
}

// The number of a row, which follows the former one when it has none of its own; 0 for what is
// none.
std::int64_t RowNumber(const pugi::xml_node& row, std::int64_t former) {
  const std::string_view text = Attribute(row, "r");
  std::int64_t number = former + 1;
  return text.empty() || ReadWhole(text, number) ? number : 0;
}

bool Load(pugi::xml_document& document, std::string_view xml) {
  return document.load_buffer(xml.data(), xml.size(), kParsing, pugi::encoding_utf8).status ==
         pugi::status_ok;
}

}  // namespace

bool XlsxPartsAreRead() {
  return true;
}

bool ReadWorkbookPart(std::string_view xml, XlsxWorkbook& workbook) {
  pugi::xml_document document;
  if (!Load(document, xml)) return false;
  const pugi::xml_node top = document.document_element();
  if (IsYes(Attribute(Child(top, "workbookPr"), "date1904"))) workbook.dates = DateStart::year1904;
  for (const pugi::xml_node& sheet : Child(top, "sheets").children()) {
    if (LocalName(sheet.name()) != "sheet") continue;
    workbook.names.emplace_back(Attribute(sheet, "name"));
    workbook.ids.emplace_back(Attribute(sheet, "id"));
    workbook.hidden.push_back(LastWord(Attribute(sheet, "state")).find("idden") !=
                              std::string_view::npos);
  }
  return true;
}

bool ReadRelationsPart(std::string_view xml, XlsxRelations& relations) {
  pugi::xml_document document;
  if (!Load(document, xml)) return false;
  for (const pugi::xml_node& relation : document.document_element().children())
    relations[std::string(Attribute(relation, "Id"))] = {
        std::string(LastWord(Attribute(relation, "Type"))),
        std::string(Attribute(relation, "Target"))};
  return true;
}

bool ReadStylesPart(std::string_view xml, std::vector<bool>& dateStyles) {
  pugi::xml_document document;
  if (!Load(document, xml)) return false;
  const pugi::xml_node top = document.document_element();
  std::map<int, bool> ownFormats;
  for (const pugi::xml_node& format : Child(top, "numFmts").children()) {
    int number = 0;
    if (ReadWhole(Attribute(format, "numFmtId"), number))
      ownFormats[number] = IsDateFormat(Attribute(format, "formatCode"));
  }
  for (const pugi::xml_node& style : Child(top, "cellXfs").children()) {
    int number = 0;
    if (!ReadWhole(Attribute(style, "numFmtId"), number)) number = 0;
    const auto own = ownFormats.find(number);
    dateStyles.push_back(own != ownFormats.end() ? own->second : IsDateFormat(number));
  }
  return true;
}

std::string ReadStringsPart(XmlPieces& pieces, SharedStrings& strings) {
  pugi::xml_document document;
  std::string piece;
  while (pieces.Next(piece)) {
    if (!Load(document, piece)) return "its strings are damaged";
    strings.Add(ItemText(document.document_element()));
    if (strings.bytes() > kMostStringBytes) return "it has more text than can be read";
  }
  return pieces.fault();
}

std::string ReadSheetPart(XmlPieces& pieces, const XlsxTables& tables, ImportText& text) {
  CellReader cells(tables, text);
  pugi::xml_document document;
  std::string piece;
  std::int64_t row = 0;
  while (!text.broken() && pieces.Next(piece)) {
    const pugi::xml_parse_result result =
        document.load_buffer_inplace(piece.data(), piece.size(), kParsing, pugi::encoding_utf8);
    const pugi::xml_node top = document.document_element();
    const std::int64_t number = RowNumber(top, row);
    if (result.status != pugi::status_ok) return "it is damaged behind row " + std::to_string(row);
    if (number <= row || number > kMostRows)
      return "its rows are out of order behind row " + std::to_string(row);
    row = number;
    text.BeginRow(row);
    cells.BeginRow();
    for (const pugi::xml_node& cell : top.children())
      if (LocalName(cell.name()) == "c" && !cells.Read(cell))
        return "a cell of row " + std::to_string(row) + " is damaged";
    text.EndRow();
  }
  return pieces.fault();
}

}  // namespace flanks

#else

namespace flanks {

bool XlsxPartsAreRead() {
  return false;
}
bool ReadWorkbookPart(std::string_view, XlsxWorkbook&) {
  return false;
}
bool ReadRelationsPart(std::string_view, XlsxRelations&) {
  return false;
}
bool ReadStylesPart(std::string_view, std::vector<bool>&) {
  return false;
}
std::string ReadStringsPart(XmlPieces&, SharedStrings&) {
  return {};
}
std::string ReadSheetPart(XmlPieces&, const XlsxTables&, ImportText&) {
  return {};
}

}  // namespace flanks

#endif
