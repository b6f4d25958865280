#include "spec/included_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(IncludedName, IsWithoutMarkQuotesAndComment) {
  EXPECT_EQ(IncludedName("%d.txt"), "d.txt");
  EXPECT_EQ(IncludedName("% \"my data.txt\" ; the rest"), "my data.txt");
  EXPECT_EQ(IncludedName("%"), "");
}

TEST(FindIncludedFiles, FollowsTheLinesOfAllLevels) {
  ScratchFolder folder;
  const std::string specification = folder.file("s.txt");
  const std::string top =
      folder.write("d.txt", "1,1,3\n %a.txt\n\xC2\xA0%b.txt\n1,2,3 %c.txt\n;%c.txt\n%none.txt\n");
  const std::string a = folder.write("a.txt", "%e.txt;x");
  const std::string b = folder.write("b.txt", "");
  folder.write("c.txt", "");
  const std::string e = folder.write("e.txt", "1,1,2");
  EXPECT_THAT(FindIncludedFiles(top, specification), UnorderedElementsAre(a, b, e));
}

TEST(FindIncludedFiles, EndsWhereFilesIncludeEachOther) {
  ScratchFolder folder;
  const std::string a = folder.write("a.txt", "%b.txt\n%b.txt\n");
  const std::string b = folder.write("b.txt", "%a.txt\n%b.txt\n");
  EXPECT_THAT(FindIncludedFiles(a, folder.file("s.txt")), UnorderedElementsAre(a, b));
}

TEST(FindIncludedFiles, AFileThatIsNotThereHasNone) {
  ScratchFolder folder;
  EXPECT_THAT(FindIncludedFiles(folder.file("none.txt"), folder.file("s.txt")), IsEmpty());
  const std::string d = folder.write("d.txt", "%*.txt\n%\n%" + folder.file("") + "\n");
  EXPECT_THAT(FindIncludedFiles(d, folder.file("s.txt")), IsEmpty()) << "a folder is no file";
}

}  // namespace
}  // namespace flanks
