#include "base/temp_file.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

namespace fs = std::filesystem;

TEST(TempFile, IsMadeEmptyInTheTemporaryFolderAndRemovedByItsOwner) {
  const ScratchFolder folder;
  EXPECT_EQ(TempFolder(), folder.folder() + "/");
  {
    TempFile file;
    EXPECT_FALSE(file.exists());
    ASSERT_FALSE(file.Create("My title: 1", "wrk"));
    EXPECT_TRUE(file.exists());
    EXPECT_THAT(file.name(),
                ::testing::MatchesRegex(folder.folder() + "/flanks-Mytitle1-[0-9a-z]+\\.wrk"));
    EXPECT_EQ(fs::file_size(file.name()), 0u);
    EXPECT_EQ(
        fs::status(file.name()).permissions() & (fs::perms::group_all | fs::perms::others_all),
        fs::perms::none)
        << "nobody else may read the data";
  }
  EXPECT_TRUE(folder.empty());
}

TEST(TempFile, NamesDiffer) {
  const ScratchFolder folder;
  TempFile a, b;
  ASSERT_FALSE(a.Create("x", "wrk"));
  ASSERT_FALSE(b.Create("x", "wrk"));
  EXPECT_NE(a.name(), b.name());
  EXPECT_EQ(folder.names().size(), 2u);
}

TEST(TempFile, AMoveHandsTheFileOn) {
  const ScratchFolder folder;
  TempFile a;
  ASSERT_FALSE(a.Create("a", "wrk"));
  const std::string name = a.name();
  TempFile b = std::move(a);
  EXPECT_TRUE(fs::exists(name));
  TempFile c;
  ASSERT_FALSE(c.Create("c", "wrk"));
  const std::string overwritten = c.name();
  c = std::move(b);
  EXPECT_FALSE(fs::exists(overwritten));
  EXPECT_TRUE(fs::exists(name));
  c.Remove();
  EXPECT_TRUE(folder.empty());
  c.Remove();
}

TEST(TempFile, CreatingAgainRemovesTheFormerFile) {
  const ScratchFolder folder;
  TempFile file;
  ASSERT_FALSE(file.Create("a", "wrk"));
  ASSERT_FALSE(file.Create("b", "wrk"));
  EXPECT_EQ(folder.names().size(), 1u);
}

TEST(TempFile, AFolderThatTakesNoFilesGivesTheSystemsErrorAndTheNameTried) {
  const ScratchFolder folder;
  setenv("TMPDIR", "/proc", 1);  // a folder in which no file can be made, even by the administrator
  TempFile file;
  EXPECT_TRUE(file.Create("x", "wrk"));
  EXPECT_THAT(file.name(), ::testing::StartsWith("/proc/flanks-x-"));
  EXPECT_FALSE(file.exists());
}

TEST(TempFile, WithoutATemporaryFolderTheRootOfTheDriveIsTaken) {
  const ScratchFolder folder;
  setenv("TMPDIR", folder.file("missing").c_str(), 1);
  EXPECT_EQ(TempFolder(), "/");
}

// exit runs no destructor of a local object; the file goes all the same.
TEST(TempFileDeathTest, ExitRemovesWhatIsStillThere) {
  const ScratchFolder folder;
  const auto endWithOpenFiles = [] {
    TempFile first, second;
    const bool made = !first.Create("a", "wrk") && !second.Create("b", "wrk");
    const bool there = fs::exists(first.name()) && fs::exists(second.name());
    std::exit(made && there ? 7 : 1);
  };
  EXPECT_EXIT(endWithOpenFiles(), ::testing::ExitedWithCode(7), "");
  EXPECT_TRUE(folder.empty());
}

TEST(TempFile, AFileThatSomebodyElseRemovedIsNoError) {
  const ScratchFolder folder;
  TempFile file;
  ASSERT_FALSE(file.Create("a", "wrk"));
  fs::remove(file.name());
  file.Remove();
  EXPECT_FALSE(file.exists());
}

}  // namespace
}  // namespace flanks
