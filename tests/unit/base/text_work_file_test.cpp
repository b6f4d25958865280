#include "base/text_work_file.h"

#include <gtest/gtest.h>
#include <string>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

TEST(TextWorkFile, LinesComeBackInOrderAsOftenAsWanted) {
  const ScratchFolder folder;
  {
    TextWorkFile file;
    ASSERT_FALSE(file.Create("labels", "txt"));
    file.WriteLine("1,Persons\t5");
    file.WriteLine("");
    file.WriteLine("?\1R\1");
    EXPECT_EQ(file.lines(), 3);
    for (int reading = 0; reading < 2; ++reading) {
      file.Rewind();
      std::string_view line;
      ASSERT_TRUE(file.ReadLine(line));
      EXPECT_EQ(line, "1,Persons\t5");
      ASSERT_TRUE(file.ReadLine(line));
      EXPECT_EQ(line, "");
      ASSERT_TRUE(file.ReadLine(line));
      EXPECT_EQ(line, "?\1R\1");
      EXPECT_FALSE(file.ReadLine(line));
    }
    EXPECT_EQ(folder.names().size(), 1u);
  }
  EXPECT_TRUE(folder.empty());
}

TEST(TextWorkFile, AFileWithoutLinesIsEmpty) {
  const ScratchFolder folder;
  TextWorkFile file;
  ASSERT_FALSE(file.Create("labels", "txt"));
  file.Rewind();
  std::string_view line;
  EXPECT_FALSE(file.ReadLine(line));
}

// In a file of the user's these three bytes in front would be a byte order mark.
TEST(TextWorkFile, TheFirstBytesOfItsFirstLineAreNoMark) {
  const ScratchFolder folder;
  TextWorkFile file;
  ASSERT_FALSE(file.Create("labels", "txt"));
  file.WriteLine(
      "\xEF\xBB\xBF"
      "Quality");
  file.Rewind();
  std::string_view line;
  ASSERT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line,
            "\xEF\xBB\xBF"
            "Quality");
}

TEST(TextWorkFile, ManyLinesGoThroughTheBuffer) {
  const ScratchFolder folder;
  TextWorkFile file;
  ASSERT_FALSE(file.Create("labels", "txt"));
  constexpr int kLines = 50000;
  for (int i = 0; i < kLines; ++i) file.WriteLine(std::to_string(i) + "=label");
  file.Rewind();
  std::string_view line;
  for (int i = 0; i < kLines; ++i) {
    ASSERT_TRUE(file.ReadLine(line));
    ASSERT_EQ(line, std::to_string(i) + "=label");
  }
  EXPECT_FALSE(file.ReadLine(line));
}

TEST(TextWorkFile, AFolderThatTakesNoFilesGivesTheSystemsError) {
  const ScratchFolder folder;
  setenv("TMPDIR", "/proc", 1);
  TextWorkFile file;
  EXPECT_TRUE(file.Create("labels", "txt"));
  EXPECT_EQ(file.name().rfind("/proc/flanks-labels-", 0), 0u);
}

}  // namespace
}  // namespace flanks
