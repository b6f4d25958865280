#include "output/row_writer.h"

#include <gtest/gtest.h>
#include <string>

#include "output/webpage_table.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

template <class Write>
std::string Written(const RowForm& form, const Write& write) {
  const ScratchFolder folder;
  ReplacedFile file;
  EXPECT_FALSE(file.Open(folder.file("rows.txt")));
  Destination out(file);
  RowWriter rows(form, out);
  write(rows);
  rows.Flush();
  file.Commit();
  return folder.read("rows.txt");
}

// A row with each kind of field.
std::string OneRow(const RowForm& form) {
  return Written(form, [](RowWriter& rows) {
    rows.BeginRow();
    rows.Whole(-3);
    rows.Decimals(.25, 2);
    rows.Label("Ann B", 6);
    rows.Decimals(1234567, 2);
    rows.EndRow();
  });
}

RowForm Form(const std::string& separator, const std::string& quote = "") {
  RowForm form;
  form.OutputSeparator = separator;
  form.OutputQuote = quote;
  return form;
}

TEST(RowWriter, EachFormHasItsRow) {
  const struct {
    RowForm form;
    std::string row;
  } cases[] = {
      {Form(" "), "        -3       .25 Ann B 1234567.00\n"},
      {Form(""), "        -3       .25 Ann B 1234567.00\n"},
      {Form(" ", "\""), "        -3       .25 \"Ann B\" 1234567.00\n"},
      {Form("\t"), "-3\t0.25\tAnn B\t???\n"},
      {Form(","), "-3,0.25,Ann B,???\n"},
      {Form(",", "'"), "-3,0.25,'Ann B',???\n"},
      {Form(" | ", "\""), "-3 | 0.25 | \"Ann B\" | ???\n"},
  };
  for (const auto& c : cases) EXPECT_EQ(OneRow(c.form), c.row) << c.form.OutputSeparator;
}

TEST(RowWriter, ACellOpensWithItsTagsAndATextIsNoMark) {
  RowForm page;
  page.layout = RowLayout::page;
  const std::string row = Written(page, [](RowWriter& rows) {
    rows.BeginRow();
    rows.Whole(12);
    rows.Label("a<b & \"c\">", 3);
    rows.Decimals(-.5, 1);
    rows.EndRow();
  });
  EXPECT_EQ(row,
            "<tr></TD><TD ALIGN=\"RIGHT\">12</TD><TD ALIGN=\"LEFT\">a&lt;b &amp; \"c\"&gt;"
            "</TD><TD ALIGN=\"RIGHT\">-0.5</tr>\n");
}

TEST(PageText, IsInUtf8) {
  EXPECT_EQ(PageText("Andr\xE9 & Zo\xC3\xAB"), "Andr\xC3\xA9 &amp; Zo\xC3\x83\xC2\xAB");
  EXPECT_EQ(PageText("Zo\xC3\xAB"), "Zo\xC3\xAB");
}

TEST(RowWriter, ARowWithoutFieldsIsNotWritten) {
  RowForm page;
  page.layout = RowLayout::page;
  for (const RowForm& form : {Form(" "), Form(","), page})
    EXPECT_EQ(Written(form,
                      [](RowWriter& rows) {
                        rows.BeginRow();
                        rows.EndRow();
                        rows.Line("behind");
                      }),
              "behind\n");
}

TEST(RowWriter, WhatWouldBreakARowOrAFieldDoesNot) {
  const auto label = [](const RowForm& form, const std::string& text) {
    return Written(form, [&](RowWriter& rows) {
      rows.BeginRow();
      rows.Label(text, 4);
      rows.EndRow();
    });
  };
  EXPECT_EQ(label(Form(",", "\""), "say \"a\""), "\"say \"\"a\"\"\"\n");
  EXPECT_EQ(label(Form("\t"), "a\tb\nc"), "a b c\n");
  EXPECT_EQ(label(Form(" "), "abcdef"), " abcd\n");
  RowForm excel = Form("\t");
  excel.protectsLabels = true;
  EXPECT_EQ(label(excel, "12-3"), "12-3\xC2\xA0\n");
  EXPECT_EQ(label(excel, "A12"), "A12\n");
}

// In fixed form a label takes so many columns of the screen: two characters of two bytes.
TEST(RowWriter, FixedLabelsCountColumns) {
  const std::string row = Written(Form(" "), [](RowWriter& rows) {
    rows.BeginRow();
    rows.Label("\xC3\xA9\xC3\xA8", 4);
    rows.Label("as it is", kUnpadded);
    rows.EndRow();
  });
  EXPECT_EQ(row, " \xC3\xA9\xC3\xA8   as it is\n");
}

// Rows longer than the buffer, and many of them, come out whole and in order.
TEST(RowWriter, RowsOfAnyLengthComeOutWhole) {
  const std::string text(300'000, 'x');
  std::string expected;
  const std::string rows = Written(Form(","), [&](RowWriter& writer) {
    for (int n = 0; n < 60'000; ++n) {
      writer.BeginRow();
      writer.Whole(n);
      writer.Decimals(n, 2);
      if (n % 20'000 == 7) writer.Label(text, kUnpadded);
      writer.EndRow();
      expected += std::to_string(n) + "," + std::to_string(n) + ".00";
      expected += n % 20'000 == 7 ? "," + text + "\n" : "\n";
    }
  });
  EXPECT_TRUE(rows == expected);
}

TEST(AppendFields, AreThoseOfTheWriter) {
  for (const RowForm& form : {Form(" ", "'"), Form(";")}) {
    std::string row;
    AppendWhole(row, form, 5);
    AppendDecimals(row, form, 1.5, 1);
    AppendLabel(row, form, "Bo", 3);
    EXPECT_EQ(row, form.isFixed() ? "         5       1.5 'Bo' " : "5;1.5;Bo;");
  }
}

}  // namespace
}  // namespace flanks
