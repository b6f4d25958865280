// What each kind of file becomes: workbooks, packages, R data; packed files.  The expected text is
// what the test put into the file.
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "import/compound_file.h"
#include "import/conversion.h"
#include "import/import_text.h"
#include "import/unpacked_file.h"
#include "import/xls_records.h"
#include "import/xls_strings.h"
#include "support/flanks_sandbox.h"
#include "support/import_files.h"
#include "support/scratch_folder.h"

// librdata frees neither what it opens a file with nor its text conversion.  The program does not
// mind: it reads such files in a process of their own.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:librdata\n";
}

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct Converted {
  ConversionEnd end;
  std::string text;
  std::vector<std::string> told;
};

// Without the empty cells at the ends of lines.
std::string CutLines(std::string text) {
  for (std::size_t at = 0; (at = text.find("\t\n", at)) != std::string::npos;) {
    text.erase(at, 1);
    if (at > 0) --at;
  }
  return text;
}

// Converts the bytes as a file of that name, which may have a list of sheets.  Behind so many
// elements no row is a heading.
Converted Convert(const std::string& name, const std::string& bytes, int elementColumns = 99) {
  ScratchFolder folder;
  ConversionRequest request;
  request.name = ReadImportName(name);
  request.name.file = folder.write(request.name.file, bytes);
  request.textFile = folder.write("text", "");
  request.scratchFile = folder.write("scratch", "");
  request.heading.elementColumns = elementColumns;
  Converted converted;
  ConversionWatch watch;
  watch.tell = [&](const std::string& line) { converted.told.push_back(line); };
  converted.end = ConvertFile(request, watch);
  converted.text = CutLines(folder.read("text"));
  return converted;
}

std::string Stored(const std::string& name) {
  return ReadWholeFile(std::filesystem::path(FLANKS_SOURCE_DIR) / "tests/unit/import" / name);
}

TestWorkbook BookOf(const std::string& sheetData) {
  return {{{"A", "<sheetData>" + sheetData + "</sheetData>"}}, "", "", ""};
}

// ---- xlsx

TEST(XlsxTable, EveryKindOfCell) {
  TestWorkbook book = BookOf(
      "<row r='1'><c r='A1' t='s'><v>0</v></c><c r='B1' t='s'><v>1</v></c><c r='C1' "
      "t='s'><v>2</v></c>"
      "</row>"
      "<row r='2'><c r='A2'><v>0.30000000000000004</v></c><c r='B2' t='n'><v>-7</v></c>"
      "<c r='C2'><v>1E3</v></c><c r='D2' t='b'><v>1</v></c></row>"
      "<row r='3'><c r='A3' t='inlineStr'><is><r><t>in</t></r><r><t>line</t></r></is></c>"
      "<c r='B3' t='str'><f>x&amp;y</f><v>a &lt; b</v></c><c r='C3' t='e'><v>#N/A</v></c>"
      "<c r='D3'><f>1+1</f><v>2</v></c><c r='E3' t='d'><v>2024-03-01T00:00:00</v></c></row>"
      "<row r='4'><c r='A4' s='1'><v>45352</v></c><c r='B4' s='2'><v>45352.5</v></c>"
      "<c r='C4' s='0'><v>45352</v></c><c r='D4' s='9'><v>5</v></c></row>");
  book.strings =
      "<si><t xml:space='preserve'> Ann Lee </t></si>"
      "<si><r><rPr><b/></rPr><t>Zo</t></r><r><t>\xC3\xAB</t></r><rPh><t>reading</t></rPh></si>"
      "<si><t>x_x0009_y</t></si>";
  book.styles =
      "<numFmts><numFmt numFmtId='164' formatCode='yyyy\\-mm\\-dd'/></numFmts>"
      "<cellXfs><xf numFmtId='0'/><xf numFmtId='164'/><xf numFmtId='22'/></cellXfs>";
  const Converted converted = Convert("d.xlsx", XlsxBytes(book));
  EXPECT_EQ(converted.end.text, "");
  EXPECT_EQ(converted.text,
            "Ann Lee\tZo\xC3\xAB\tx y\n"
            "0.3\t-7\t1000\t1\n"
            "inline\ta < b\t\t2\t2024-03-01\n"
            "2024-03-01\t2024-03-01 12:00:00\t45352\t5\n");
}

TEST(XlsxTable, RowsAndCellsMayBeLeftOutOrHaveNoNumber) {
  EXPECT_EQ(Convert("d.xlsx", XlsxBytes(BookOf("<row r='3'><c r='C3'><v>1</v></c></row>"
                                               "<row><c><v>2</v></c><c/><c><v>3</v></c></row>"
                                               "<row r='9'/><row r='10'><c r='B10'/></row>")))
                .text,
            "\n\n\t\t1\n2\t\t3\n");
}

TEST(XlsxTable, NamesMayHaveAPrefix) {
  std::vector<std::pair<std::string, std::string>> parts = XlsxParts(BookOf(""));
  for (auto& [name, bytes] : parts)
    if (name == "xl/worksheets/sheet1.xml")
      bytes =
          "<x:worksheet xmlns:x='m'><x:sheetData><x:row r='1'><x:c r='A1'><x:v>4</x:v></x:c>"
          "<x:c r='B1' t='inlineStr'><x:is><x:t>b</x:t></x:is></x:c></x:row></x:sheetData>"
          "</x:worksheet>";
  EXPECT_EQ(Convert("d.xlsx", ZipBytes(parts)).text, "4\tb\n");
}

TEST(XlsxTable, DaysMayCountFrom1904) {
  TestWorkbook book = BookOf("<row><c s='1'><v>43890</v></c></row>");
  book.properties = "<workbookPr date1904='1'/>";
  book.styles = "<cellXfs><xf numFmtId='0'/><xf numFmtId='14'/></cellXfs>";
  EXPECT_EQ(Convert("d.xlsx", XlsxBytes(book)).text, "2024-03-01\n");
}

TEST(XlsxTable, DamagedCellsAreToldByRow) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"<row r='2'><c r='A2' t='s'><v>5</v></c></row>", "a cell of row 2 is damaged"},
      {"<row r='2'><c r='A2'><v>x</v></c></row>", "a cell of row 2 is damaged"},
      {"<row r='2'><c r='B2'/><c r='A2'/></row>", "a cell of row 2 is damaged"},
      {"<row r='2'><c r='ZZZZ2'/></row>", "a cell of row 2 is damaged"},
      {"<row r='2'/><row r='2'/>", "its rows are out of order behind row 2"},
      {"<row r='1048577'/>", "its rows are out of order behind row 0"},
      {"<row r='x'/>", "its rows are out of order behind row 0"},
      {"<row r='4'><c></row>", "it is damaged behind row 0"}};
  for (const auto& [data, reason] : cases)
    EXPECT_EQ(Convert("d.xlsx", XlsxBytes(BookOf(data))).end.text,
              std::string("sheet \"A\": ") + reason);
}

TEST(XlsxTable, WhatIsNoWorkbookIsRefused) {
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"", "it is empty"},
      {"1,1,3\n", "it is no .xlsx file"},
      {ZipBytes({{"a.txt", "x"}}), "it is a zip file, but no workbook"},
      {XlsxBytes({}), "it has no sheets"},
      {XlsxBytes({{{"A", ""}}, "", "", ""}), "there are no data in it"},
      {Stored("kinds.xls"), "it is an .xls file, and its name must end so"},
      {std::string("PK\3\4") + std::string(100, 'x'), "it is no .xlsx file, or is damaged"}};
  for (const auto& [bytes, reason] : cases) {
    const Converted converted = Convert("d.xlsx", bytes);
    EXPECT_EQ(converted.end.kind, ConversionEnd::Kind::failed);
    EXPECT_EQ(converted.end.text, reason);
  }
}

TEST(XlsxTable, ALockedWorkbookIsToldSo) {
  std::string locked("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
  locked += std::string(3000, '\0');
  for (const char c : std::string("EncryptedPackage")) locked += {c, '\0'};
  locked += std::string(3000, '\0');
  EXPECT_EQ(Convert("d.xlsx", locked).end.text, "it is locked with a password");
  EXPECT_EQ(Convert("d.xls", locked).end.text, "it is locked with a password");
}

TEST(XlsxTable, ABombIsNotUnpacked) {
  auto parts = XlsxParts(BookOf("<row r='1'><c r='A1'><v>1</v></c></row>"));
  for (auto& [name, bytes] : parts)
    if (name == "xl/worksheets/sheet1.xml") bytes.insert(bytes.size() - 12, 70'000'000, ' ');
  EXPECT_EQ(Convert("d.xlsx", ZipBytes(parts)).end.text,
            "sheet \"A\": it unpacks to far more than a workbook does");
}

TEST(XlsxTable, AChartHasNoRows) {
  auto parts = XlsxParts(BookOf(""));
  for (auto& [name, bytes] : parts)
    if (name == "xl/_rels/workbook.xml.rels")
      bytes.replace(bytes.find("/worksheet\""), 11, "/chartsheet\"");
  EXPECT_EQ(Convert("d.xlsx", ZipBytes(parts)).end.text,
            "sheet \"A\": it is a chart or a dialog and has no rows");
}

// ---- xls

TEST(XlsTable, EveryKindOfCell) {
  // Made with LibreOffice: sheets "Notes", "Marks" and "Two words".
  const Converted converted = Convert("kinds.xls(2)", Stored("kinds.xls"));
  EXPECT_EQ(converted.end.text, "");
  EXPECT_EQ(converted.text,
            "Person\tMark\nZo\xC3\xAB B\t2.5\n\n\n12\t\t2024-03-01\n1\t2\tab\n3\t\t4\n");
  EXPECT_EQ(Convert("kinds.xls(3)", Stored("kinds.xls")).end.text,
            "sheet \"Two words\", row 2, column B: #DIV/0!");
  EXPECT_THAT(Convert("kinds.xls(x)", Stored("kinds.xls")).end.text,
              HasSubstr("only \"Notes\", \"Marks\", \"Two words\""));
}

TEST(XlsTable, AWorkbookWithAnEmptyTextIsReadToo) {
  // Made with LibreOffice: FreeXL does not open it, for B2, D3 and A2 of "Errors" are texts of no
  // letter.
  const Converted converted = Convert("d.xls", Stored("empty-text.xls"));
  EXPECT_EQ(converted.end.text, "");
  EXPECT_EQ(converted.text,
            "Person\tRater\tMark\tNote\n"
            "Zo\xC3\xAB \xF0\x9F\x98\x80\t\t2.5\tx\n"
            "12\t7\t-3\n"
            "0.01\t10000000000\t1\t2024-03-01\n"
            "ab\t0.125\t123456.78\t\xCE\xA9 wide\n"
            "\t\t1\t2\t3\t4\n");
  EXPECT_THAT(converted.told, ElementsAre("Sheet \"M\xC3\xA4rks\" is read.  The file has 1 more."));
  EXPECT_EQ(Convert("d.xls(Errors)", Stored("empty-text.xls")).end.text,
            "sheet \"Errors\", row 2, column B: #DIV/0!");
}

// What FreeXL reads is the same read record by record.
TEST(XlsTable, AllCellsAreInItsRecords) {
  const XlsContents contents =
      ReadXlsRecords(WorkbookStream(Stored("painters.xls")), XlsCells::all);
  ASSERT_EQ(contents.sheets.size(), 1u);
  std::string written;
  const ConversionWatch watch;
  ImportText text({99, ""}, watch, [&](std::string_view piece) {
    written += piece;
    return true;
  });
  text.BeginSheet("");
  std::uint32_t row = 0;
  for (const XlsValue& value : contents.sheets[0].values) {
    if (value.row + 1 != row) {
      if (row > 0) text.EndRow();
      text.BeginRow(row = value.row + 1);
    }
    const int column = static_cast<int>(value.column) + 1;
    if (value.kind == XlsValue::Kind::number)
      text.AddNumber(column, value.number);
    else
      text.AddText(column, contents.texts[value.text]);
  }
  text.EndRow();
  text.EndSheet();
  EXPECT_TRUE(text.Finish().done());
  EXPECT_EQ(CutLines(written), Convert("d.xls", Stored("painters.xls")).text);
}

// "Ann", then "Zo\xC3\xAB" with a run of formats and bytes of an extension, an empty text and "z",
// in pieces that are cut at each place where a workbook may cut them.
TEST(XlsTable, SharedStringsMayBeCut) {
  const std::string ann("\3\0\0Ann", 6), empty("\0\0\0", 3);
  const std::string zoe("\3\0\x0D\1\0\2\0\0\0Z\0o\0\xEB\0runsex", 21);
  const std::string all = ann + zoe + empty + std::string("\1\0\0z", 4);
  const auto expected = ElementsAre("Ann", "Zo\xC3\xAB", "", "z");
  EXPECT_THAT(ReadSharedStrings({all}, 4), expected);
  EXPECT_THAT(ReadSharedStrings({all}, 2), ElementsAre("Ann", "Zo\xC3\xAB"));
  for (std::size_t cut = 1; cut < all.size(); ++cut) {
    const std::size_t letter = ann.size() + 9;  // the first of Zo\xC3\xAB
    const bool inAnn = cut >= 3 && cut < ann.size();
    const bool inZoe = cut >= letter && cut < letter + 6;
    if (inZoe && (cut - letter) % 2 == 1) continue;  // no letter is cut
    const bool inLast = cut == all.size() - 1;
    const std::string flags = inAnn || inLast ? std::string(1, '\0') : inZoe ? "\1" : "";
    const std::string rest = flags + all.substr(cut);
    EXPECT_THAT(ReadSharedStrings({std::string_view(all).substr(0, cut), rest}, 4), expected)
        << cut;
  }
  // The letters behind a cut may have another width; half of a pair at its end finds the other.
  const std::string wide("\2\0\1\x3D\xD8", 5), on("\1\0\xDE", 3), narrow("\2\0\1Z\0", 5);
  EXPECT_THAT(ReadSharedStrings({wide, on}, 1), ElementsAre("\xF0\x9F\x98\x80"));
  const std::string_view byte("\0\xEB", 2);
  EXPECT_THAT(ReadSharedStrings({narrow, byte}, 1), ElementsAre("Z\xC3\xAB"));
  EXPECT_THAT(ReadSharedStrings({wide}, 9), ElementsAre("?"));
  EXPECT_THAT(ReadSharedStrings({}, 9), ElementsAre());
}

// Before 1997 the stream was called so.  Its name stands in its entry with two bytes to a letter,
// and behind it how long it is.
TEST(XlsTable, TheStreamMayBeCalledBook) {
  std::string bytes = Stored("kinds.xls");
  const std::string expected = Convert("d.xls(Marks)", bytes).text;
  const std::size_t name = bytes.find(std::string("W\0o\0r\0k\0b\0o\0o\0k\0", 16));
  ASSERT_NE(name, std::string::npos);
  bytes.replace(name, 16, std::string("B\0o\0o\0k\0\0\0\0\0\0\0\0\0", 16));
  ASSERT_EQ(bytes[name + 64], 18);
  bytes[name + 64] = 10;
  EXPECT_EQ(Convert("d.xls(Marks)", bytes).text, expected);
}

// The entry of a sheet: record 0085, its length, where it begins, whether it is hidden, its kind,
// the length of its name and how it is written, the name.
TEST(XlsTable, AHiddenSheetIsPassedOver) {
  std::string bytes = Stored("kinds.xls");
  const Converted shown = Convert("kinds.xls", bytes);
  EXPECT_EQ(shown.text, "not data\n");
  EXPECT_THAT(shown.told, ElementsAre("Sheet \"Notes\" is read.  The file has 2 more."));
  const std::size_t name = bytes.find("Notes");
  ASSERT_EQ(bytes.substr(name - 12, 2), std::string("\x85\0", 2));
  bytes[name - 4] = 1;
  const Converted hidden = Convert("kinds.xls", bytes);
  EXPECT_EQ(hidden.text, Convert("kinds.xls(Marks)", bytes).text);
  EXPECT_THAT(hidden.told, ElementsAre("Sheet \"Marks\" is read.  The file has 2 more."));
  EXPECT_THAT(Convert("kinds.xls(Marks)", bytes).told, ElementsAre());
}

std::string Number(std::uint32_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i, number >>= 8) text += static_cast<char>(number & 0xFF);
  return text;
}
std::string XlsRecord(std::uint16_t type, const std::string& data) {
  return Number(type, 2) + Number(static_cast<std::uint32_t>(data.size()), 2) + data;
}
// Where a cell stands, and its style.
std::string XlsCell(std::uint32_t row, std::uint32_t column, std::uint32_t style = 0) {
  return Number(row, 2) + Number(column, 2) + Number(style, 2);
}
// A workbook with one sheet "S", of the version 0600 or 0500.
std::string XlsStream(std::uint32_t version, const std::string& globals, const std::string& cells) {
  const std::string start = XlsRecord(0x0809, Number(version, 2)), end = XlsRecord(0x000A, "");
  const std::string name = version == 0x0600 ? std::string("\1\0S", 3) : "\1S";
  const auto entry = [&](std::size_t at) {
    return XlsRecord(0x0085, Number(static_cast<std::uint32_t>(at), 4) + Number(0, 2) + name);
  };
  const std::size_t sheetAt = start.size() + globals.size() + entry(0).size() + end.size();
  return start + globals + entry(sheetAt) + end + start + cells + end;
}

TEST(XlsRecords, EachKindOfCell) {
  const std::string ab("\2\0\0ab", 5);
  const std::string cells =
      XlsRecord(0x00FD, XlsCell(0, 0) + Number(1, 4)) +           // a shared text
      XlsRecord(0x00FD, XlsCell(0, 1) + Number(9, 4)) +           // one that is not there
      XlsRecord(0x0204, XlsCell(0, 2) + ab) +                     // a text of its own
      XlsRecord(0x00D6, XlsCell(0, 3) + ab + Number(0, 2)) +      // one with formats
      XlsRecord(0x0205, XlsCell(0, 4) + Number(1, 2)) +           // TRUE
      XlsRecord(0x0205, XlsCell(0, 5) + Number(0x012A, 2)) +      // #N/A
      XlsRecord(0x027E, XlsCell(0, 256) + Number(10, 4)) +        // beyond the sheet
      XlsRecord(0x027E, XlsCell(1, 0) + Number(0x40040000, 4)) +  // 2.5, the upper half
      XlsRecord(0x027E, XlsCell(1, 1) + Number(0xFFFFFFF7, 4));   // -3 / 100
  const std::string globals =
      XlsRecord(0x00FC, Number(2, 4) + Number(2, 4) + std::string("\1\0\0x\3\0\0yz", 9)) +
      XlsRecord(0x003C, std::string("\0!", 2));
  const XlsContents contents = ReadXlsRecords(XlsStream(0x0600, globals, cells), XlsCells::all);
  ASSERT_EQ(contents.sheets.size(), 1u);
  EXPECT_EQ(contents.sheets[0].name, "S");
  std::vector<std::string> found;
  for (const XlsValue& value : contents.sheets[0].values)
    found.push_back(std::to_string(value.row) + " " + std::to_string(value.column) + " " +
                    (value.kind == XlsValue::Kind::number ? ImportedNumber(value.number)
                                                          : contents.texts[value.text]));
  EXPECT_THAT(found, ElementsAre("0 0 yz!", "0 2 ab", "0 3 ab", "0 4 1", "0 5 #N/A", "1 0 2.5",
                                 "1 1 -0.03"));
}

// The codes of formats have a length of one byte before 1997, of two bytes since then.
TEST(XlsRecords, DatesOfBothVersions) {
  const std::string style = XlsRecord(0x00E0, Number(0, 2) + Number(200, 2));
  std::string day(8, '\0');  // 45352.0 is 2024-03-01
  day.replace(4, 4, Number(0x40E62500, 4));
  const std::string formula = XlsRecord(0x0006, XlsCell(0, 0) + day);
  const std::string former = XlsRecord(0x041E, Number(200, 2) + "\1d") + style;
  const std::string present = XlsRecord(0x041E, Number(200, 2) + std::string("\1\0\0d", 4)) + style;
  for (const std::string& stream :
       {XlsStream(0x0500, former, formula), XlsStream(0x0600, present, formula)}) {
    const XlsContents contents = ReadXlsRecords(stream, XlsCells::passedOver);
    ASSERT_EQ(contents.sheets.size(), 1u);
    ASSERT_EQ(contents.sheets[0].values.size(), 1u);
    EXPECT_EQ(contents.sheets[0].name, "S");
    EXPECT_EQ(contents.sheets[0].values[0].kind, XlsValue::Kind::date);
    EXPECT_THAT(contents.texts, ElementsAre("2024-03-01"));
  }
}

// The record of the code page made one that only workbooks with a password have.
TEST(XlsTable, ALockedWorkbookIsToldSo) {
  for (const char* name : {"kinds.xls", "empty-text.xls"}) {
    std::string bytes = Stored(name);
    const std::size_t codePage = bytes.find(std::string("\x42\0\2\0\xB0\4", 6));
    ASSERT_NE(codePage, std::string::npos);
    bytes[codePage] = '\x2F';
    EXPECT_EQ(Convert("d.xls", bytes).end.text, "it is locked with a password") << name;
    EXPECT_TRUE(ReadXlsRecords(WorkbookStream(bytes), XlsCells::all).locked) << name;
  }
}

TEST(XlsTable, WhatIsNoWorkbookIsRefused) {
  EXPECT_EQ(Convert("d.xls", "1,1,3\n").end.text, "it is no .xls file, or is damaged");
  EXPECT_EQ(Convert("d.xls", ZipBytes({{"a", "b"}})).end.text,
            "it is an .xlsx file, and its name must end so");
  EXPECT_EQ(Convert("d.xls", "").end.text, "it is empty");
}

// ---- packages

const char* const kTable = "1,Ann Lee,3\n2,,\n0.1,Zo\xC3\xAB,-4\n,Bob,5\n";
const char* const kTableText = "; v1\tv2\tv3\n1\tAnn Lee\t3\n2\n0.1\tZo\xC3\xAB\t-4\n\tBob\t5\n";

TEST(PackageTable, CasesAreRowsAndMissingValuesEmpty) {
  for (const char* kind : {"dta", "sav", "sas7bdat"}) {
    const Converted converted =
        Convert(std::string("d.") + kind, PackageBytes(kind, TableOf(kTable)));
    EXPECT_EQ(converted.end.text, "") << kind;
    EXPECT_EQ(converted.text, kTableText) << kind;
  }
}

TEST(PackageTable, ValuesThatTheUserCallsMissingAreEmpty) {
  EXPECT_EQ(Convert("d.sav", SavWithUserMissing(TableOf("1,2,3\n9,89,4\n8,90,5\n9,99,6\n"))).text,
            "; v1\tv2\tv3\n1\t2\t3\n\t89\t4\n8\t\t5\n\t\t6\n");
}

TEST(PackageTable, WhatIsNoSuchFileIsRefused) {
  for (const char* name : {"d.dta", "d.sav", "d.sas7bdat"}) {
    EXPECT_EQ(Convert(name, "").end.text, "it is empty");
    EXPECT_EQ(Convert(name, "1,1,3\n").end.kind, ConversionEnd::Kind::failed) << name;
    EXPECT_NE(Convert(name, "1,1,3\n").end.text, "") << name;
  }
  EXPECT_EQ(Convert("d.sav", PackageBytes("dta", TableOf(kTable))).end.kind,
            ConversionEnd::Kind::failed);
}

// ---- R

TEST(RdataTable, RowsOfTheDataFrame) {
  const std::string bytes = RdataBytes("frame", TableOf(kTable));
  EXPECT_EQ(Convert("d.rda", bytes).text, kTableText);
  EXPECT_EQ(Convert("d.rda", GzipBytes(bytes)).text, kTableText);
  EXPECT_EQ(Convert("d.RData", Bzip2Bytes(bytes)).text, kTableText);
  EXPECT_EQ(Convert("d.rda", XzBytes(bytes)).text, kTableText);
}

TEST(RdataTable, FilesThatRSaved) {
  // Saved with R 4.2: columns of each kind, with missing values; `notes` is no data frame, `second`
  // is one.
  const std::string expected =
      "; whole\tnumber\tfactor\twords\tyes\tday\ttime\n"
      "1\t0.5\thigh\tAnn Lee\t1\t2024-03-01\t2024-03-01 12:00:00\n"
      "2\n"
      "3\t-2\tlow\tZo\xC3\xAB\t0\t2024-03-03\t2024-03-03\n";
  for (const char* name :
       {"frames-gzip.rda", "frames-bzip2.rda", "frames-xz.rda", "frames-2.rda"}) {
    const Converted converted = Convert(name, Stored(name));
    EXPECT_EQ(converted.end.text, "") << name;
    EXPECT_EQ(converted.text, expected) << name;
    EXPECT_THAT(converted.told, ElementsAre("The first data frame is read: frame.  The file has 1 "
                                            "more."))
        << name;
  }
}

TEST(RdataTable, TextsInTheWindowsCodePageBecomeUtf8) {
  // Saved with R 4.2: texts, labels of a factor and the name of a column marked as Latin-1.
  EXPECT_EQ(Convert("d.rda", Stored("latin1.rda")).text,
            "; words\tpr\xC3\xBC"
            "fer\tmark\nZo\xC3\xAB\tAndr\xC3\xA9\t3\nM\xC3\xBCller\tAnn\t4\n");
}

TEST(RdataTable, WhatHasNoDataFrameIsRefused) {
  EXPECT_EQ(Convert("d.rda", "").end.text, "it is empty");
  EXPECT_NE(Convert("d.rda", "1,1,3\n").end.text, "");
  EXPECT_THAT(Convert("d.rda", "RDA2\nA\n2\n262657\n").end.text, HasSubstr("saved as text"));
}

// ---- packed files

struct Unpacked {
  ConversionEnd end;
  std::string bytes;
};

Unpacked Unpack(const std::string& bytes, const UnpackLimits& limits = {}) {
  ScratchFolder folder;
  std::string file;
  Unpacked unpacked;
  unpacked.end =
      UnpackFile(folder.write("packed", bytes), folder.write("scratch", ""), limits, file);
  if (unpacked.end.done()) unpacked.bytes = ReadWholeFile(file);
  return unpacked;
}

TEST(UnpackedFile, GivesBackWhatWasPacked) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i % 251 * (i % 13));
  EXPECT_EQ(Unpack(bytes).bytes, bytes);
  for (const auto pack : {GzipBytes, Bzip2Bytes, XzBytes}) {
    EXPECT_EQ(Unpack(pack(bytes)).bytes, bytes);
    EXPECT_EQ(Unpack(pack("")).bytes, "");
  }
  EXPECT_EQ(Unpack(GzipBytes("one") + GzipBytes("two")).bytes, "onetwo");
  EXPECT_EQ(Unpack(XzBytes("one") + XzBytes("two")).bytes, "onetwo");
}

TEST(UnpackedFile, EveryBrokenOffOneIsToldSo) {
  for (const auto pack : {GzipBytes, Bzip2Bytes, XzBytes}) {
    const std::string packed = pack("a text of some length, so that it has some bytes\n");
    for (std::size_t length = 6; length < packed.size(); ++length)
      EXPECT_EQ(Unpack(packed.substr(0, length)).end.text, "it is damaged or broken off") << length;
  }
}

TEST(UnpackedFile, OneThatIsFarTooLargeIsBrokenOff) {
  const std::string zeros(3'000'000, '\0');
  UnpackLimits limits;
  limits.anyway = 1000;
  limits.times = 10;
  for (const auto pack : {GzipBytes, Bzip2Bytes, XzBytes}) {
    EXPECT_EQ(Unpack(pack(zeros), limits).end.text, "it unpacks to far more than data do");
    EXPECT_EQ(Unpack(pack(zeros)).bytes, zeros);
  }
}

}  // namespace
}  // namespace flanks
