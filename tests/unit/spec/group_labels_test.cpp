#include "spec/group_labels.h"

#include <gtest/gtest.h>
#include <string>

#include "support/spec_bench.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

// Applies the handler to a list that is the whole text; the first line is the keyword's.
std::string Labels(SpecBench& bench) {
  std::string all;
  for (const GroupLabel& label : bench.design().groupLabels)
    all += std::to_string(label.flank.number()) + "/" + std::to_string(label.group) + "/" +
           label.label + " ";
  return all;
}

// A bench whose Specification is open and whose first line has been split into fields.
struct ListBench : SpecBench {
  explicit ListBench(std::string_view text) : SpecBench("Flanks=3\n", Through::reading) {
    const std::string name = folder.write("list.txt", text);
    SpecificationState& state = analysis.specification;
    state.source = std::make_unique<SpecificationSource>();
    EXPECT_EQ(state.source->Open(name, "Specification", name, console), Fault::none);
    state.EndOfSpecification = false;
    SpecContext context = SpecContextOf(analysis, process, console);
    FetchLine(context);
    ReadGroupLabels(context);
  }
};

TEST(GroupLabels, ReadAListUntilTheStar) {
  ListBench bench("Glabel=\n1,2,Boys\n1,3=Girls\n2,2,Old,rest\n*\n3,1,Not read\n");
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_EQ(Labels(bench), "1/2/Boys 1/3/Girls 2/2/Old ");
}

TEST(GroupLabels, ListMayBeginBehindTheKeywordAndEndAtAnother) {
  ListBench bench("Glabel=1,2,Boys\nTitle=x\n");
  EXPECT_EQ(Labels(bench), "1/2/Boys ");
  EXPECT_TRUE(bench.analysis.specification.lineLeft);
  EXPECT_EQ(bench.analysis.reading.Fields[0], "Title");
}

TEST(GroupLabels, RepeatedGroupKeepsItsFirstLabel) {
  ListBench bench("Glabel=\n1,2,Boys\n1,2,Boys\n1,2,Men\n*\n");
  EXPECT_EQ(Labels(bench), "1/2/Boys ");
}

TEST(GroupLabels, RefuseAnythingElse) {
  for (const std::string line :
       {"1,2", "1", "x,2,Boys", "4,2,Boys", "0,2,Boys", "1,x,Boys", "1,32761,Boys", "1,2.5,Boys"}) {
    ListBench bench("Glabel=" + line + "\n*\n");
    EXPECT_EQ(bench.fault(), Fault::glabelForm) << line;
    EXPECT_EQ(bench.faultLine(), 1) << line;
  }
}

TEST(GroupLabels, BeforeFlanksAreCheckedAtTheEnd) {
  const auto read = [](std::string_view text, std::string_view extras = "") {
    SpecRun test;
    test.Read(text, extras);
    return test.fault() == Fault::none ? std::string() : test.FaultText();
  };
  const std::string fault =
      "Glabel=9,1,Boys Specification is: Format is: Glabel = flank number, group number, group "
      "label: ";
  EXPECT_EQ(read("Glabel=9,1,Boys\n*\nFlanks=2\nData=\n"), fault + "1 in line Error F65");
  EXPECT_EQ(read("Flanks=2\nData=\n", "Glabel=9,1,Boys"), fault + "Error F65");
  EXPECT_EQ(read("Glabel=2,1,Boys\n*\nFlanks=2\nData=\n"), "");
  EXPECT_EQ(read("Glabel=9,1,Boys\n*\nData=\n"), "") << "which F29 follows";
}

}  // namespace
}  // namespace flanks
