#include "base/text_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> LinesOf(const std::string& name) {
  TextFile file;
  EXPECT_FALSE(file.Open(name));
  std::vector<std::string> lines;
  std::string_view line;
  while (file.ReadLine(line)) lines.emplace_back(line);
  EXPECT_EQ(line, "") << "at the end the line is empty";
  EXPECT_EQ(file.fault(), TextFileFault::none);
  return lines;
}

TEST(TextFile, AnyLineEndGivesTheSameLines) {
  const ScratchFolder folder;
  for (const std::string& end :
       {std::string("\n"), std::string("\r\n"), std::string("\n\r"), std::string("\r")}) {
    const std::string text = "one" + end + end + "three" + end;
    EXPECT_THAT(LinesOf(folder.write("a.txt", text)), ElementsAre("one", "", "three"))
        << static_cast<int>(end[0]) << " " << end.size();
    EXPECT_THAT(LinesOf(folder.write("a.txt", text + "four")),
                ElementsAre("one", "", "three", "four"));
  }
}

TEST(TextFile, MarksSideBySideAreOneLineEnd) {
  const ScratchFolder folder;
  EXPECT_THAT(LinesOf(folder.write("a.txt", "a\n\r\nb")), ElementsAre("a", "", "b"));
  EXPECT_THAT(LinesOf(folder.write("a.txt", "a\r\r\nb")), ElementsAre("a", "", "b"));
  EXPECT_THAT(LinesOf(folder.write("a.txt", "a\rb\nc")), ElementsAre("a", "b", "c"));
}

TEST(TextFile, AnEmptyFileHasNoLine) {
  const ScratchFolder folder;
  const std::string name = folder.write("a.txt", "");
  EXPECT_THAT(LinesOf(name), IsEmpty());
  EXPECT_EQ(CheckTextFile(name).kind, TextFileKind::plain);
  EXPECT_FALSE(CheckTextFile(name).error);
}

TEST(TextFile, AByteOrderMarkIsDroppedOnceAndOtherBytesPass) {
  const ScratchFolder folder;
  EXPECT_THAT(LinesOf(folder.write("a.txt", "\xEF\xBB\xBFTitle=\xC3\xA0\n\xEF\xBB\xBFx")),
              ElementsAre("Title=\xC3\xA0", "\xEF\xBB\xBFx"));
  const std::string zero("a\0b\n\xFF", 5);
  EXPECT_THAT(LinesOf(folder.write("a.txt", zero)), ElementsAre(std::string("a\0b", 3), "\xFF"));
}

// A line may lie across any number of blocks, and its end across two.
TEST(TextFile, LinesLongerThanABlockAreWhole) {
  const ScratchFolder folder;
  for (const std::size_t length : {65533u, 65534u, 65535u, 65536u, 65537u, 131071u, 500000u}) {
    const std::string first(length, 'x');
    const std::string second(200, 'y');
    EXPECT_THAT(LinesOf(folder.write("a.txt", first + "\r\n" + second + "\r\n")),
                ElementsAre(first, second))
        << length;
    EXPECT_THAT(LinesOf(folder.write("a.txt", first + "\n" + second)), ElementsAre(first, second))
        << length;
  }
}

TEST(TextFile, ALineIsValidUntilTheNextRead) {
  const ScratchFolder folder;
  TextFile file;
  ASSERT_FALSE(file.Open(folder.write("a.txt", "one\ntwo\n")));
  std::string_view line;
  ASSERT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "one");
  ASSERT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "two");
  EXPECT_FALSE(file.ReadLine(line));
  EXPECT_FALSE(file.ReadLine(line)) << "the end stays the end";
  ASSERT_FALSE(file.Open(file.name())) << "opened afresh it begins at the first line";
  ASSERT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "one");
}

TEST(TextFile, WhatCannotBeOpenedGivesTheSystemsError) {
  const ScratchFolder folder;
  TextFile file;
  EXPECT_EQ(file.Open(folder.file("missing.txt")), std::errc::no_such_file_or_directory);
  EXPECT_EQ(file.name(), folder.file("missing.txt"));
  EXPECT_EQ(file.Open(folder.folder()), std::errc::is_a_directory);
  EXPECT_EQ(CheckTextFile(folder.file("missing.txt")).error, std::errc::no_such_file_or_directory);
  EXPECT_EQ(CheckTextFile(folder.folder()).error, std::errc::is_a_directory);
}

struct KindCase {
  std::string bytes;
  TextFileKind kind;
  const char* name;
  bool refused;
};

class CheckTextFileOf : public ::testing::TestWithParam<KindCase> {};

TEST_P(CheckTextFileOf, TellsTheKind) {
  const ScratchFolder folder;
  const TextFileCheck check = CheckTextFile(folder.write("a.txt", GetParam().bytes));
  EXPECT_FALSE(check.error);
  EXPECT_EQ(check.kind, GetParam().kind);
  EXPECT_EQ(TextFileClass(check.kind), GetParam().name);
  EXPECT_EQ(check.refused(), GetParam().refused);
}

INSTANTIATE_TEST_SUITE_P(
    TextFile, CheckTextFileOf,
    ::testing::Values(
        KindCase{"Title=x\n", TextFileKind::plain, "", false},
        KindCase{"Title=x\r\n", TextFileKind::plain, "", false},
        KindCase{"Title=x\n\rFlanks=2", TextFileKind::plain, "", false},
        KindCase{"Title=x", TextFileKind::plain, "", false},
        KindCase{"Title=x\rFlanks=2", TextFileKind::incorrectEndOfLine, "incorrect end-of-line",
                 true},
        KindCase{"Title=x\r", TextFileKind::incorrectEndOfLine, "incorrect end-of-line", true},
        KindCase{"\r\rx\n", TextFileKind::incorrectEndOfLine, "incorrect end-of-line", true},
        KindCase{"Title=x\nFlanks=2\rModels=", TextFileKind::plain, "", false},  // first end counts
        KindCase{"{\\rtf1\\ansi\r", TextFileKind::rtf, "RTF", true},
        KindCase{std::string("\xFF\xFET\0i\0", 6), TextFileKind::unicode, "Unicode", true},
        KindCase{std::string("\xFE\xFF\0T\0i", 6), TextFileKind::unicode, "Unicode", true},
        KindCase{std::string("T\0i\0\n\0", 6), TextFileKind::unicode, "Unicode", true},
        KindCase{std::string("T\0\r\0\n\0", 6), TextFileKind::unicode, "Unicode", true},
        KindCase{std::string("\0T\0\n", 4), TextFileKind::unicode, "Unicode", true},
        KindCase{std::string("Ti\n\0x\n", 6), TextFileKind::plain, "", false},  // first line counts
        KindCase{"\xEF\xBB\xBFTitle=x\n", TextFileKind::plain, "", false},
        KindCase{"\xEF\xBB\xBF{\\rtf1\n", TextFileKind::rtf, "RTF", true},
        KindCase{"\xEF\xBB\xBFTitle=x\ry", TextFileKind::incorrectEndOfLine,
                 "incorrect end-of-line", true},
        KindCase{"\xEF\xBB", TextFileKind::utf8, "UTF-8", false},
        KindCase{"\r", TextFileKind::plain, "", false}));  // one byte is not looked at

TEST(TextFile, FaultTextNamesTheFile) {
  const ScratchFolder folder;
  const std::string name = folder.write("a.txt", "one\ntwo\n");
  TextFile file;
  FileFaultPlan plan;
  plan.cutAt = 5;
  file.Follow(&plan);
  ASSERT_FALSE(file.Open(name));
  std::string_view line;
  EXPECT_FALSE(file.ReadLine(line));
  EXPECT_EQ(file.fault(), TextFileFault::unexpectedEnd);
  EXPECT_EQ(file.FaultText(), name + " 8 5 utfreadmore: unexxpected end of file");
}

}  // namespace
}  // namespace flanks
