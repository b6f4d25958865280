#include "spec/file_names.h"

#include <gtest/gtest.h>
#include <string>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

TEST(CheckFileName, RefusesWhatCannotBeAFile) {
  EXPECT_EQ(CheckFileName("a.txt"), Fault::none);
  EXPECT_EQ(CheckFileName("folder/a b"), Fault::none);
  EXPECT_EQ(CheckFileName(""), Fault::noFileName);
  for (const char* name : {"a*.txt", "a?", "folder/", "folder\\", "C:"})
    EXPECT_EQ(CheckFileName(name), Fault::badFileName) << name;
}

TEST(DefaultOutputName, TakesThePlaceOfTheLastExtension) {
  EXPECT_EQ(DefaultOutputName("abc.txt"), "abc.out.txt");
  EXPECT_EQ(DefaultOutputName("abc"), "abc.out.txt");
  EXPECT_EQ(DefaultOutputName("a.b.txt"), "a.b.out.txt");
  EXPECT_EQ(DefaultOutputName("my.folder/abc"), "my.folder/abc.out.txt");
  EXPECT_EQ(DefaultOutputName("folder/.hidden"), "folder/.hidden.out.txt");
}

TEST(MakeOutputFileName, PutsTheFlankBeforeTheExtension) {
  EXPECT_EQ(MakeOutputFileName("results.txt", 1), "results.1.txt");
  EXPECT_EQ(MakeOutputFileName("results.txt", 12), "results.12.txt");
  EXPECT_EQ(MakeOutputFileName("results", 1), "results.1.txt");
  EXPECT_EQ(MakeOutputFileName("my.results.txt", 1), "my.results.1.txt");
  EXPECT_EQ(MakeOutputFileName("dir.d/res", 1), "dir.d/res.1.txt");
  EXPECT_EQ(MakeOutputFileName("dir.d\\res", 2), "dir.d\\res.2.txt");
  EXPECT_EQ(MakeOutputFileName("dir/res.xlsx", 3), "dir/res.3.xlsx");
}

TEST(FindFileToRead, LooksBesideTheSpecificationSecond) {
  ScratchFolder folder;
  const std::string specification = folder.file("s.txt");
  const std::string beside = folder.write("only-here-for-this-test.txt", "1\n");
  EXPECT_EQ(FindFileToRead("only-here-for-this-test.txt", specification), beside);
  EXPECT_EQ(FindFileToRead("nowhere-at-all.txt", specification), "nowhere-at-all.txt");
  EXPECT_EQ(FindFileToRead(beside, "s.txt"), beside);
}

TEST(WithoutSheetList, TakesTheListOfASpreadsheetAway) {
  EXPECT_EQ(WithoutSheetList("d.xlsx(Monday,3)"), "d.xlsx");
  EXPECT_EQ(WithoutSheetList("d.XLS(1)"), "d.XLS");
  EXPECT_EQ(WithoutSheetList("a.xls(b)/d.xlsx(2)"), "a.xls(b)/d.xlsx");
  EXPECT_EQ(WithoutSheetList("a.xlsx(b)/d.xls(2)"), "a.xlsx(b)/d.xls");
  for (const char* name : {"d.xlsx", "d(1).xlsx", "d.txt(1)", ""})
    EXPECT_EQ(WithoutSheetList(name), name);
}

TEST(SameFile, SeesThroughTheWayItIsWritten) {
  ScratchFolder folder;
  const std::string name = folder.write("a.txt", "");
  EXPECT_TRUE(SameFile(name, folder.folder() + "/./a.txt"));
  EXPECT_TRUE(SameFile("not-there.txt", "not-there.txt"));
  EXPECT_FALSE(SameFile(name, folder.write("b.txt", "")));
}

}  // namespace
}  // namespace flanks
