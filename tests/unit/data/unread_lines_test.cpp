#include "data/unread_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/data_design.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// Two Flanks: Ann, Bob, Cy and i1, i2.
class PersonsAndItems : public DataRun {
 public:
  explicit PersonsAndItems(const std::string& delements = "N.") {
    Flank({{1, "Ann"}, {2, "Bob"}, {3, "Cy"}}, delements);
    Flank({{1, "i1"}, {2, "i2"}}, delements);
    Model("?,?,R5");
  }
};

TEST(UnreadLines, BehindTheStarAreTold) {
  constexpr const char* kTold = "The data end at \"*\" in line ";
  PersonsAndItems run;
  run.linesBefore = 14;
  run.Read("1,1,3\n*\n\n ; a comment\n1,1,4\n1,1,4\n");
  EXPECT_THAT(run.Screen(), HasSubstr(std::string(kTold) + "16 of \""));
  EXPECT_THAT(run.Screen(), HasSubstr("s.txt\": the lines behind it are not read.\n"));
  EXPECT_THAT(run.Report(), Not(HasSubstr(kTold)));
  EXPECT_EQ(run.counts().FileLines.whole(), 2);
  for (const char* lines : {"1,1,3\n", "1,1,3\n*\n", "1,1,3\n*\n ,\t\n;x\n*\n"}) {
    PersonsAndItems quiet;
    quiet.Read(lines);
    EXPECT_THAT(quiet.Screen(), Not(HasSubstr(kTold))) << lines;
  }
}

TEST(UnreadLines, OfTheTopFileAreBehindTheStarOfAnIncludeFile) {
  PersonsAndItems run;
  run.folder.write("more.txt", "1,2,4\n*\n");
  run.folder.write("d.txt", "1,1,3\n%more.txt\n1,1,4\n");
  run.settings().specificationFile = run.folder.file("s.txt");
  run.ReadFile("d.txt");
  EXPECT_THAT(run.Screen(), HasSubstr("The data end at \"*\" in line 2 of \""));
  EXPECT_THAT(run.Screen(), HasSubstr("more.txt\": the lines behind it are not read.\n"));
  EXPECT_THAT(run.Records(), ElementsAre("0 1 3 : 1 4", "0 1 4 : 1 5"));
}

}  // namespace
}  // namespace flanks
