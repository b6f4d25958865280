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

TEST(FindFileToRead, LooksBesideTheSpecificationSecond) {
  ScratchFolder folder;
  const std::string specification = folder.file("s.txt");
  const std::string beside = folder.write("only-here-for-this-test.txt", "1\n");
  EXPECT_EQ(FindFileToRead("only-here-for-this-test.txt", specification), beside);
  EXPECT_EQ(FindFileToRead("nowhere-at-all.txt", specification), "nowhere-at-all.txt");
  EXPECT_EQ(FindFileToRead(beside, "s.txt"), beside);
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
