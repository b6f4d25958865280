#include "base/replaced_file.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

void WriteWhole(const std::string& name, std::string_view text) {
  ReplacedFile file;
  ASSERT_FALSE(file.Open(name));
  file.Write(text);
  file.Commit();
}

TEST(ReplacedFile, TheFormerFileStandsUntilTheNewOneIsComplete) {
  const ScratchFolder folder;
  const std::string name = folder.write("out.txt", "former");
  ReplacedFile file;
  ASSERT_FALSE(file.Open(name));
  file.Write(std::string(3 << 18, 'x'));  // more than the buffer holds
  EXPECT_EQ(folder.read("out.txt"), "former");
  EXPECT_EQ(folder.names().size(), 2u) << "the new text stands beside";
  file.Commit();
  EXPECT_EQ(folder.read("out.txt"), std::string(3 << 18, 'x'));
  EXPECT_EQ(folder.names().size(), 1u);
}

TEST(ReplacedFile, NothingIsLeftOfAFileThatWasNotCompleted) {
  const ScratchFolder folder;
  const std::string name = folder.write("out.txt", "former");
  {
    ReplacedFile file;
    ASSERT_FALSE(file.Open(name));
    file.Write("half");
  }
  EXPECT_EQ(folder.read("out.txt"), "former");
  EXPECT_EQ(folder.names().size(), 1u);
}

TEST(ReplacedFile, AFullDiskLeavesTheFormerFile) {
  const ScratchFolder folder;
  const std::string name = folder.write("out.txt", "former");
  FileFaultPlan plan;
  plan.bytesThatFit = 10;
  {
    ReplacedFile file;
    file.Follow(&plan);
    ASSERT_FALSE(file.Open(name));
    file.Write("more than ten bytes");
    try {
      file.Commit();
      FAIL() << "the disk is full";
    } catch (const std::system_error& failure) {
      EXPECT_NE(std::string(failure.what()).find("File write failure for " + name),
                std::string::npos)
          << failure.what();
      EXPECT_EQ(failure.code(), std::errc::no_space_on_device);
    }
  }
  EXPECT_EQ(folder.read("out.txt"), "former");
  EXPECT_EQ(folder.names().size(), 1u);
}

TEST(ReplacedFile, OpeningTellsWhatTheSystemSays) {
  const ScratchFolder folder;
  ReplacedFile file;
  EXPECT_EQ(file.Open(folder.file("missing/out.txt")), std::errc::no_such_file_or_directory);
  std::filesystem::create_directory(folder.file("a folder"));
  EXPECT_TRUE(file.Open(folder.file("a folder"))) << "a folder is no file";
  EXPECT_EQ(folder.names().size(), 1u);
}

TEST(ReplacedFile, ALinkStaysALinkAndAModeStays) {
  namespace fs = std::filesystem;
  const ScratchFolder folder;
  const std::string name = folder.write("real.txt", "former");
  fs::permissions(name, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(name, folder.file("link.txt"));
  WriteWhole(folder.file("link.txt"), "new");
  EXPECT_TRUE(fs::is_symlink(folder.file("link.txt")));
  EXPECT_EQ(folder.read("real.txt"), "new");
  EXPECT_EQ(fs::status(name).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(ReplacedFile, ADeviceIsWrittenInPlace) {
  WriteWhole("/dev/null", "gone");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(ReplacedFile, WhatIsBrokenOffIsKeptWithoutHarmToAFormerFile) {
  const ScratchFolder folder;
  const std::string former = folder.write("old.txt", "former");
  ReplacedFile file;
  ASSERT_FALSE(file.Open(former));
  file.Write("part");
  EXPECT_EQ(file.KeepPart(), former + ".part");
  EXPECT_EQ(folder.read("old.txt"), "former");
  EXPECT_EQ(folder.read("old.txt.part"), "part");
  ASSERT_FALSE(file.Open(folder.file("new.txt")));
  file.Write("part");
  EXPECT_EQ(file.KeepPart(), folder.file("new.txt.part"));
  EXPECT_EQ(folder.read("new.txt.part"), "part");
  EXPECT_FALSE(std::filesystem::exists(folder.file("new.txt"))) << "half a file is no file";
}

TEST(ReplacedFile, TwoWritersOfOneNameDoNotMix) {
  const ScratchFolder folder;
  ReplacedFile first, second;
  ASSERT_FALSE(first.Open(folder.file("out.txt")));
  ASSERT_FALSE(second.Open(folder.file("out.txt")));
  EXPECT_NE(first.partName(), second.partName());
  first.Write("first");
  second.Write("second");
  second.Commit();
  first.Commit();
  EXPECT_EQ(folder.read("out.txt"), "first");
  EXPECT_EQ(folder.names().size(), 1u);
}

}  // namespace
}  // namespace flanks
