// The text that imported data become, and the small things behind it: names with lists of sheets,
// dates, places of cells, and the cutting of XML.  Dates were counted with a calendar; the rest is
// short enough to be seen.
#include "import/import_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "import/cell_format.h"
#include "import/import_name.h"
#include "import/xml_pieces.h"
#include "support/import_files.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// ---- names

TEST(ImportName, TheEndingTellsInAnyCase) {
  const std::vector<std::pair<const char*, DataKind>> cases = {
      {"d.txt", DataKind::text},       {"d.XLSX", DataKind::xlsx},
      {"d.xls", DataKind::xls},        {"d.dta", DataKind::stata},
      {"d.Sav", DataKind::spss},       {"d.sas7bdat", DataKind::sas},
      {"d.rda", DataKind::rdata},      {"d.RData", DataKind::rdata},
      {"d.xlsx.txt", DataKind::text},  {"xlsx", DataKind::text},
      {"d.xls(1)", DataKind::xls},     {"a.xls(b)/d.xlsx(2)", DataKind::xlsx},
      {"d.XLSX(a,b)", DataKind::xlsx}, {"d.sav(1)", DataKind::text},
      {"d.xlsx(", DataKind::xlsx},     {"", DataKind::text}};
  for (const auto& [name, kind] : cases) EXPECT_EQ(ReadImportName(name).kind, kind) << name;
}

TEST(ImportName, TheListOfSheetsIsKept) {
  const ImportName name = ReadImportName("my marks.XLSX( Monday , 3,'Two words')");
  EXPECT_EQ(name.file, "my marks.XLSX");
  EXPECT_THAT(name.sheets, ElementsAre("Monday", "3", "Two words"));
  EXPECT_THAT(ReadImportName("d.xlsx()").sheets, IsEmpty());
  EXPECT_THAT(ReadImportName("d.xlsx(a").sheets, ElementsAre("a"));
  EXPECT_EQ(ReadImportName("a.xls(b)/d.xlsx(2)").file, "a.xls(b)/d.xlsx");
}

TEST(ImportName, SheetsAreChosenByNameThenByNumber) {
  const std::vector<std::string> names = {"Plan", "Marks", "2", "MARKS"};
  const std::vector<bool> hidden = {true, false, false, false};
  std::vector<std::size_t> chosen;
  EXPECT_EQ(ChooseSheets({}, names, hidden, chosen), "");
  EXPECT_THAT(chosen, ElementsAre(1u));  // the first that is shown
  EXPECT_EQ(ChooseSheets({"MARKS", "marks", "2", "1", "4"}, names, hidden, chosen), "");
  EXPECT_THAT(chosen, ElementsAre(3u, 1u, 2u, 0u, 3u));
  EXPECT_EQ(ChooseSheets({"5"}, names, hidden, chosen),
            "there is no sheet \"5\" in it, only \"Plan\", \"Marks\", \"2\", \"MARKS\"");
  EXPECT_EQ(ChooseSheets({}, {"a", "b"}, {true, true}, chosen), "");
  EXPECT_THAT(chosen, ElementsAre(0u));
  EXPECT_THAT(ChooseSheets({"99999999999999999999999"}, names, hidden, chosen),
              HasSubstr("no sheet"));
}

TEST(ImportName, OtherKindsCanBeSavedAsOnesThatAreRead) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"d.xlsm", ".xlsx"}, {"d.XLSB", ".xlsx"}, {"d.ods", ".xlsx"}, {"d.zsav", ".sav"},
      {"d.Rds", ".rda"},   {"d.xlsx", ""},      {"d.txt", ""},      {"ods", ""}};
  for (const auto& [name, ending] : cases) EXPECT_EQ(EndingToSaveAs(name), ending) << name;
}

// ---- numbers and places

TEST(ImportedNumber, IsTheShortestTextOfFifteenDigits) {
  EXPECT_EQ(ImportedNumber(3.0), "3");
  EXPECT_EQ(ImportedNumber(-3.0), "-3");
  EXPECT_EQ(ImportedNumber(-0.0), "0");
  EXPECT_EQ(ImportedNumber(100000.0), "100000");
  EXPECT_EQ(ImportedNumber(2147483647.0), "2147483647");
  EXPECT_EQ(ImportedNumber(0.1), "0.1");
  EXPECT_EQ(ImportedNumber(0.1f), "0.1");
  EXPECT_EQ(ImportedNumber(0.1 + 0.2), "0.3");
  EXPECT_EQ(ImportedNumber((1.1 - 1) * 10), "1");
  EXPECT_EQ(ImportedNumber(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(ImportedNumber(1234567.890625), "1234567.890625");
  EXPECT_EQ(ImportedNumber(0.0001), "0.0001");
  EXPECT_EQ(ImportedNumber(1e20), "100000000000000000000");
  EXPECT_EQ(ImportedNumber(1e15), "1000000000000000");
  EXPECT_EQ(ImportedNumber(-1234567890123456.0), "-1234567890123456");
  EXPECT_EQ(ImportedNumber(9007199254740992.0), "9007199254740992");
  EXPECT_EQ(ImportedNumber(1e21), "1e+21");
  EXPECT_EQ(ImportedNumber(1e-7), "1e-07");
  EXPECT_EQ(ImportedNumber(std::numeric_limits<double>::quiet_NaN()), "");
  EXPECT_EQ(ImportedNumber(std::numeric_limits<double>::infinity()), "");
}

TEST(Cells, PlacesAreLettersAndNumbers) {
  EXPECT_EQ(ColumnOfCell("A1"), 1);
  EXPECT_EQ(ColumnOfCell("z9"), 26);
  EXPECT_EQ(ColumnOfCell("AA10"), 27);
  EXPECT_EQ(ColumnOfCell("XFD1048576"), 16384);
  for (const char* place : {"", "A", "12", "XFE1", "ZZZZZZZZZZ1", "A-1"})
    EXPECT_EQ(ColumnOfCell(place), 0) << place;
  EXPECT_EQ(ColumnLetters(1), "A");
  EXPECT_EQ(ColumnLetters(26), "Z");
  EXPECT_EQ(ColumnLetters(27), "AA");
  EXPECT_EQ(ColumnLetters(16384), "XFD");
}

TEST(Cells, DateFormatsHaveUnitsOfTimeOutsideOfQuotes) {
  for (const char* code : {"yyyy-mm-dd", "d/m", "[h]:mm", "[mm]", "h:mm AM/PM", "[$-409]d-mmm;@",
                           "[Red]ss", "\"on \"d"})
    EXPECT_TRUE(IsDateFormat(code)) << code;
  for (const char* code : {"General", "0.00", "#,##0", "\"days\" 0", "[Red]0", "0\\d", "0_d", "",
                           "\"open", "[open", "0;d", "[h1]0", "0.00E+00"})
    EXPECT_FALSE(IsDateFormat(code)) << code;
  EXPECT_TRUE(IsDateFormat(14));
  EXPECT_TRUE(IsDateFormat(22));
  EXPECT_FALSE(IsDateFormat(0));
  EXPECT_FALSE(IsDateFormat(9));
  EXPECT_FALSE(IsDateFormat(48));
}

TEST(Cells, DatesAreText) {
  constexpr DateStart k1900 = DateStart::year1900, k1904 = DateStart::year1904;
  EXPECT_EQ(DateText(1, k1900), "1900-01-01");
  EXPECT_EQ(DateText(59, k1900), "1900-02-28");
  EXPECT_EQ(DateText(60, k1900), "1900-02-29");  // the day that never was
  EXPECT_EQ(DateText(61, k1900), "1900-03-01");
  EXPECT_EQ(DateText(45352, k1900), "2024-03-01");
  EXPECT_EQ(DateText(45352 - 1462, k1904), "2024-03-01");
  EXPECT_EQ(DateText(45352.75, k1900), "2024-03-01 18:00:00");
  EXPECT_EQ(DateText(0.5, k1900), "12:00:00");
  EXPECT_EQ(DateText(0, k1900), "00:00:00");
  EXPECT_EQ(DateText(45351.9999999, k1900), "2024-03-01");  // the next day, to the second
  EXPECT_EQ(DateText(-1, k1900), "");
  EXPECT_EQ(DateText(1e9, k1900), "");
  EXPECT_EQ(DateText(std::numeric_limits<double>::quiet_NaN(), k1900), "");
  EXPECT_EQ(DayText(0), "1970-01-01");
  EXPECT_EQ(DayText(19723), "2024-01-01");
}

TEST(Cells, HexadecimalCharactersAreDecoded) {
  EXPECT_EQ(WithoutHexadecimal("a_x0041_b_x00E9_"), "aAb\xC3\xA9");
  EXPECT_EQ(WithoutHexadecimal("_x20AC_"), "\xE2\x82\xAC");
  EXPECT_EQ(WithoutHexadecimal("_x004"), "_x004");
  EXPECT_EQ(WithoutHexadecimal("_xZZZZ_ _xD800_"), "_xZZZZ_ _xD800_");
}

// ---- XML

std::vector<std::string> Pieces(std::string_view xml, std::string_view element, std::size_t block,
                                std::string* fault = nullptr) {
  std::size_t at = 0;
  XmlPieces pieces(
      [&](char* to, std::size_t room) {
        const std::string_view next = xml.substr(at, std::min(block, room));
        at += next.copy(to, next.size());
        return next.size();
      },
      element);
  std::vector<std::string> all;
  std::string piece;
  while (pieces.Next(piece)) all.push_back(piece);
  if (fault != nullptr) *fault = pieces.fault();
  return all;
}

TEST(XmlPieces, AreCutWhereverABlockEnds) {
  const std::string xml =
      "<?xml version='1.0'?><!-- <row> --><x:s><rows/><x:row r=\"a>b\"><c/></x:row>"
      "<![CDATA[<row>]]><x:row/>text<row a='/'>x</row ><x:rowx></x:rowx></x:s>\n";
  for (std::size_t block = 1; block < xml.size() + 1; ++block) {
    std::string fault;
    EXPECT_THAT(Pieces(xml, "row", block, &fault),
                ElementsAre("<x:row r=\"a>b\"><c/></x:row>", "<x:row/>", "<row a='/'>x</row >"))
        << block;
    EXPECT_EQ(fault, "");
  }
}

TEST(XmlPieces, EveryTextThatIsBrokenOffIsToldSo) {
  const std::string xml = "<s><row r='1'><c/></row><!-- a --><row/></s>";
  for (std::size_t length = 0; length < xml.size(); ++length) {
    std::string fault;
    Pieces(xml.substr(0, length), "row", 7, &fault);
    EXPECT_THAT(fault, HasSubstr("broken off")) << length;
  }
}

TEST(XmlPieces, ADefinitionIsNotRead) {
  std::string fault;
  Pieces("<!DOCTYPE s [<!ENTITY a 'b'>]><s/>", "row", 100, &fault);
  EXPECT_THAT(fault, HasSubstr("definition of its own"));
}

TEST(XmlPieces, AnEmptyTopElementHasNone) {
  std::string fault;
  EXPECT_THAT(Pieces("<sst/>", "si", 100, &fault), IsEmpty());
  EXPECT_EQ(fault, "");
}

// ---- the text

struct Written {
  std::string text;
  std::vector<std::string> told;
  ConversionEnd end;
};

using Sheets = std::vector<std::pair<std::string, TestTable>>;

void AddRow(ImportText& text, std::int64_t number, const TestRow& row) {
  text.BeginRow(number);
  int column = 0;
  for (const TestCell& cell : row) {
    ++column;
    if (const auto* value = std::get_if<double>(&cell)) text.AddNumber(column, *value);
    if (const auto* words = std::get_if<std::string>(&cell)) text.AddText(column, *words);
  }
  text.EndRow();
}

// Each sheet's rows one behind the other.
Written Write(const Sheets& sheets, int elementColumns = 2, const std::string& codes = ",NA,") {
  Written written;
  ConversionWatch watch;
  watch.tell = [&](const std::string& line) { written.told.push_back(line); };
  ImportText text({elementColumns, codes}, watch, [&](std::string_view piece) {
    written.text += piece;
    return true;
  });
  for (const auto& [name, table] : sheets) {
    text.BeginSheet(name);
    for (std::size_t i = 0; i < table.size(); ++i)
      AddRow(text, static_cast<std::int64_t>(i) + 1, table[i]);
    text.EndSheet();
  }
  written.end = text.Finish();
  return written;
}

TEST(ImportText, ARowIsALineWithTabs) {
  const Written written =
      Write({{"A", {{1.0, 2.5, "Ann"}, {}, {{}, 3.0, {}, {}}, {"a, b;c=\"d'e\tf\ng", {}, 4.0}}}});
  EXPECT_EQ(written.text, "1\t2.5\tAnn\n\n\t3\t\na b c d e f g\t\t4\n");
  EXPECT_TRUE(written.end.done());
}

TEST(ImportText, EmptyCellsAreKeptUpToTheWidestRow) {
  // Up to the first response at least; from the widest of the first rows on, then of all so far.
  EXPECT_EQ(Write({{"A", {{1.0, 1.0}, {2.0, 1.0}}}}).text, "1\t1\t\n2\t1\t\n");
  EXPECT_EQ(Write({{"A", {{1.0, 1.0, 3.0}, {1.0, 2.0, {}}, {}, {1.0, 2.0, {}, 4.0}}}}).text,
            "1\t1\t3\t\n1\t2\t\t\n\n1\t2\t\t4\n");
  TestTable late(60, TestRow{1.0, 1.0, 3.0});
  late[55].push_back(4.0);
  const std::string text = Write({{"A", late}, {"B", {{1.0, 1.0}}}}).text;
  EXPECT_THAT(text, ::testing::StartsWith("1\t1\t3\n1\t1\t3\n"));
  EXPECT_THAT(text, ::testing::EndsWith("\n1\t1\t3\t4\n1\t1\t3\t\n1\t1\t3\t\n1\t1\t3\t\n1\t1\t3"
                                        "\t\n; Sheet \"B\"\n1\t1\t\n"));
  // No line of text in a single cell, no comment, no end.
  EXPECT_EQ(Write({{"A", {{"1,2"}, {2.0}}}}).text, "1 2\n2\n");
  EXPECT_EQ(Write({{"A", {{1.0, 2.0, 3.0}, {"; no"}, {"*"}}}}).text, "1\t2\t3\n;no\n*\n");
}

TEST(ImportText, ARowWithAReplicationHasItsFirstResponseToo) {
  const ConversionWatch watch;
  std::string written;
  ImportText text({2, "", "R"}, watch, [&](std::string_view piece) {
    written += piece;
    return true;
  });
  text.BeginSheet("A");
  AddRow(text, 1, {"r2.5", 1.0, 2.0});
  AddRow(text, 2, {"Rob", 1.0});
  text.EndSheet();
  EXPECT_TRUE(text.Finish().done());
  EXPECT_EQ(written, "r2.5\t1\t2\t\nRob\t1\t\n");
}

TEST(ImportText, RowsOfATableAreAsWideAsItsNames) {
  std::string written;
  const ConversionWatch watch;
  ImportText text({1, ""}, watch, [&](std::string_view piece) {
    written += piece;
    return true;
  });
  text.BeginTable({"p", "a", "b"});
  AddRow(text, 1, {1.0});
  AddRow(text, 2, {});
  AddRow(text, 3, {3.0, 2.0, 1.0});
  EXPECT_TRUE(text.Finish().done());
  EXPECT_EQ(written, "; p\ta\tb\n1\t\t\n\n3\t2\t1\n");
}

TEST(ImportText, WhatWouldBeMoreThanACellIsKeptFromIt) {
  // A file to be included, another kind of file, a lone text that would be split at its blank.
  EXPECT_EQ(Write({{"A", {{"%other.txt", 1.0}}}}).text, "other.txt\t1\t\n");
  EXPECT_EQ(Write({{"A", {{"{\\rtf", 1.0}}}}).text, " {\\rtf\t1\t\n");
  EXPECT_EQ(Write({{"A", {{1.0, 1.0}, {"Ann Lee", {}}}}}).text, "1\t1\t\nAnn Lee\t\t\n");
  EXPECT_EQ(Write({{"A", {{"1, 2, 3"}}}}).text, "1 2 3\n");  // a line in a cell
  EXPECT_EQ(Write({{"A", {{"; note, and more", "x"}, {1.0, 2.0}}}}).text,
            ";note and more\tx\n1\t2\t\n");
}

TEST(ImportText, AHeadingBecomesACommentAndIsTold) {
  const Written written =
      Write({{"Marks",
              {{}, {"Person", "Rater", "Q1", "Q2"}, {}, {1.0, 2.0, 3.0, 4.0}, {1.0, 1.0, 2.0}}}});
  EXPECT_EQ(written.text, "\n; Person\tRater\tQ1\tQ2\n\n1\t2\t3\t4\n1\t1\t2\t\n");
  EXPECT_THAT(written.told,
              ElementsAre("Row 2 of sheet \"Marks\" is taken as the heading and skipped: "
                          "Person\tRater\tQ1\tQ2"));
}

TEST(ImportText, DataAreNoHeading) {
  const TestRow marks = {"Ann", "Bob", 3.0, 4.0};
  const std::vector<std::pair<TestRow, const char*>> firstRows = {
      {{1.0, "Rater", "Q1"}, "a number among the elements"},
      {{"Person", "Rater", "Q1", 2.0}, "a number among the responses"},
      {{"Person", "1-4", "Q1"}, "a range is a number"},
      {{"Ann", "Cid", "NA", "NA"}, "responses that are missing"},
      {{"Ann", "Cid"}, "no response at all"},
      {{"Ann", "Cid", {}, {}, "Q3"}, "a word with nothing below"}};
  for (const auto& [row, why] : firstRows) {
    const Written written = Write({{"A", {row, marks}}});
    EXPECT_THAT(written.told, IsEmpty()) << why;
    EXPECT_NE(written.text.front(), ';') << why;
  }
  EXPECT_THAT(Write({{"A", {{"P", "R", "Q1"}, {"Ann", "Bob", "B"}}}}).told, IsEmpty())
      << "letters below";
  EXPECT_THAT(Write({{"A", {{"P", "R", "Q1"}}}}).told, IsEmpty()) << "nothing below";
}

TEST(ImportText, AHeadingIsSeenByAnyNumberOfTheRowsBelow) {
  const TestRow heading = {"P", "R", "Q"};
  for (const TestRow& below :
       std::vector<TestRow>{{1.0, 2.0}, {1.0, 2.0, "NA"}, {1.0, 2.0, "none"}, {"; x"}}) {
    TestTable table(50, below);
    table.insert(table.begin(), heading);
    EXPECT_THAT(Write({{"A", table}}).told, IsEmpty());
    table[50] = {1.0, 2.0, 3.0};
    EXPECT_EQ(Write({{"A", table}}).told.size(), 1u);
    table[50] = table[1];
    table.push_back({1.0, 2.0, 3.0});
    EXPECT_THAT(Write({{"A", table}}).told, IsEmpty()) << "too far below";
  }
}

TEST(ImportText, EachSheetMayHaveAHeadingAndFurtherOnesAreNamed) {
  const TestTable table = {{"P", "R", "Q"}, {1.0, 2.0, "3"}};
  const Written written = Write({{"One", table}, {"A \"b\"", table}});
  EXPECT_EQ(written.text, "; P\tR\tQ\n1\t2\t3\n; Sheet \"A  b \"\n; P\tR\tQ\n1\t2\t3\n");
  EXPECT_EQ(written.told.size(), 2u);
}

TEST(ImportText, PlacesOfLinesAreFound) {
  const TestTable table = {{"P", "R", "Q"}, {1.0, 2.0, 3.0}};
  ScratchFolder folder;
  const std::string file = folder.write("t.txt", Write({{"One", table}, {"Two", table}}).text);
  EXPECT_EQ(FindTextPlace(file, TextRows::ofSheets, 2).row, 2);
  EXPECT_EQ(FindTextPlace(file, TextRows::ofSheets, 2).sheet, "");
  EXPECT_EQ(FindTextPlace(file, TextRows::ofSheets, 5).row, 2);
  EXPECT_EQ(FindTextPlace(file, TextRows::ofSheets, 5).sheet, "Two");
  EXPECT_EQ(FindTextPlace(file, TextRows::ofSheets, 5).line, "1\t2\t3");
  EXPECT_EQ(FindTextPlace(file, TextRows::ofTable, 5).row, 4);
  EXPECT_EQ(FindTextPlace(file, TextRows::ofSheets, 6).row, 0);
  EXPECT_EQ(FindTextPlace(folder.file("none"), TextRows::ofSheets, 1).row, 0);
}

TEST(ImportText, ATextWithoutARowFails) {
  EXPECT_EQ(Write({{"A", {}}}).end.text, "there are no data in it");
  EXPECT_EQ(Write({{"A", {{{}, " "}}}}).end.text, "there are no data in it");
}

TEST(ImportText, ARefusedCellEndsItWithItsPlace) {
  ConversionWatch watch;
  ImportText text({2, ""}, watch, [](std::string_view) { return true; });
  text.BeginSheet("Marks");
  text.BeginRow(7);
  text.Refuse(3, "#DIV/0!");
  EXPECT_TRUE(text.broken());
  const ConversionEnd end = text.Finish();
  EXPECT_EQ(end.kind, ConversionEnd::Kind::badCell);
  EXPECT_EQ(end.text, "sheet \"Marks\", row 7, column C: #DIV/0!");
}

TEST(ImportText, TextOutOfProportionIsBrokenOff) {
  ConversionWatch watch;
  ImportText text({2, ""}, watch, [](std::string_view) { return true; });
  text.BeginSheet("Marks");
  text.AllowBytes(1000000);
  std::int64_t row = 0;
  while (!text.broken() && row < 1000) {
    text.BeginRow(++row);
    text.AddText(1, std::string(30000, 'x'));
    text.EndRow();
  }
  EXPECT_EQ(text.Finish().text, "its text is out of all proportion to its size");
  EXPECT_LT(row, 60);
}

TEST(ImportText, ADiskThatIsFullIsToldWithTheSystemsWords) {
  ConversionWatch watch;
  ImportText text({2, ""}, watch, [](std::string_view) {
    errno = ENOSPC;
    return false;
  });
  text.BeginSheet("Marks");
  AddRow(text, 1, {1.0});
  EXPECT_EQ(text.Finish().text, "its text cannot be written: No space left on device");
}

}  // namespace
}  // namespace flanks
