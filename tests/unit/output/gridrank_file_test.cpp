#include "output/gridrank_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/finished_run.h"

namespace flanks {
namespace {

using testing::HasSubstr;
using testing::Not;

const FlankNo kPersons(1), kItems(2), kJudges(3);

// Everything anchored: measures and thresholds are known.
constexpr const char* kDesign =
    "Title=Essays\nFlanks=3\nEntered-in-data=3,1,2\nUmean=50,10,1\nModels=?,?,?,Marks\n*\n"
    "Rating scale=Marks,R9\n0=none,,,x\n1=some,-5,A\n2=all,5.257,A\n*\nLabels=\n"
    "1,Person,A\n3=Ann,63\n12=Bob,45.5\n4=Cid,50\n*\n2,Task,A\n1=Tale,40\n2=Talk,60\n*\n"
    "3,Judge,A\n7=Jo,50\n8=Al,55\n*\nData=\n";

// judge, person, task, rating.
constexpr const char* kData =
    "7,12,2,1\n7,3,2,2\n8,12,2,0\n7,3,1,2\n8,3,2,1\n7,4,1,0\n8,4,1,1\n7,12,2,2\n";

std::string Written(AnalysisRun& run, const std::string& specification,
                    const GridrankOptions& options) {
  run.Analyze(specification);
  EXPECT_EQ(run.exitCode, 0) << run.Screen();
  FinishedRun finished(run);
  EXPECT_TRUE(WriteGridrankFile(finished.run, run.folder.file("grid.txt"), options));
  std::string text = run.folder.read("grid.txt");
  // The line that names the program and the date.
  const std::size_t mark = text.find("; by Flanks (Many-Flank Rasch Measurement) Version ");
  EXPECT_NE(mark, std::string::npos);
  return text.erase(mark, text.find('\n', mark) + 1 - mark);
}

// Ann's and Bob's measures as rows, tasks as columns.  Of Bob's three ratings of task 2 the first
// stays: 1.
TEST(GridrankFile, OfKnownMeasuresIsWorkedOutByHand) {
  AnalysisRun run;
  EXPECT_EQ(Written(run, std::string(kDesign) + kData, {"FRCS", {kPersons}, {kItems}}),
            "Title = Essays\n"
            "item = Task  ; column identification\n"
            "person = Person  ; row identification\n"
            "xwide = 1  ; width of datapoint\n"
            "codes = \"012\"  ; valid data codes\n"
            "; first data point in cell used\n"
            "ni = 2  ; number of data columns\n"
            "item1 = 1  ; starting column of data\n"
            "name1 = 4  ; start of row labels\n"
            "Person @pf1=$S1W2 ; 1 2\n"
            "namelen = 6 ; row label length\n"
            "umean = 50  ; user mean measure\n"
            "uscale = 10  ; user logit scaling conversion\n"
            "udecim = 1  ; user logit decimal places\n"
            "groups = 0  ; allow each item to define its own rating scale\n"
            "clfile = *  ; category labels\n"
            "0 none\n"
            "1 some\n"
            "2 all\n"
            "*\n"
            "safile = *  ; rating structure anchor values\n"
            "1 -5.00\n"
            "2 5.26\n"
            "*\n"
            "iafile = *  ; item-column anchor values\n"
            "1 60.00 ; 2 Talk\n"
            "2 40.00 ; 1 Tale\n"
            "*\n"
            "pafile = *  ; person-row anchor values\n"
            "1 45.50 ; 12 Bob\n"
            "2 63.00 ; 3 Ann\n"
            "3 50.00 ; 4 Cid\n"
            "*\n"
            "Task @if2=$S1W1 ; 2\n"
            "Task\n"
            "&End\n"
            "2 Talk  ; item-column labels\n"
            "1 Tale\n"
            "END LABELS\n"
            "1  12 Bob  ; row data + label\n"
            "22  3 Ann\n"
            " 0  4 Cid\n");
}

// Two Flanks in the rows: measures of a combination are added in logits, 1.3 + .5.
TEST(GridrankFile, CombinesFlanks) {
  AnalysisRun run;
  const std::string text =
      Written(run, std::string(kDesign) + kData, {"LR", {kPersons, kJudges}, {kItems}});
  for (const std::string part :
       {"\nperson = Person/Judge  ; row identification\n", "\n; last data point in cell used\n",
        "\nPerson @pf1=$S1W2 ; 1 2\nJudge @pf3=$S4W1 ; 3 1\nnamelen = 13 ; row label length\n",
        "\n4 68.00 ; 3 Ann + 8 Al\n", "\n2  12 7 Bob - Jo  ; row data + label\n"})
    EXPECT_THAT(text, HasSubstr(part));
  EXPECT_THAT(text, Not(HasSubstr("iafile")));
  EXPECT_THAT(text, Not(HasSubstr("safile")));
  const std::string columns =
      Written(run, std::string(kDesign) + kData, {"N", {kPersons}, {kItems, kJudges}});
  for (const std::string part : {"item = Task/Judge  ; column",
                                 "\nTask @if2=$S1W1 ; 2\nJudge @if3=$S3W1 ; 3\nTask - Judge\n",
                                 "\n&End\n2 7 Talk Jo  ; item-column labels\n2 8 Talk Al\n"})
    EXPECT_THAT(columns, HasSubstr(part));
  EXPECT_TRUE(columns.ends_with("END LABELS\n")) << columns;
}

// 9 + 9 = 18 takes two places, and the codes go up to it.
TEST(GridrankFile, SumsAreAsWideAsTheLargest) {
  AnalysisRun run;
  const std::string text = Written(
      run,
      "Flanks=2\nModels=?,?,R9\n*\nLabels=\n1,P\n1-3=p\n*\n2,I\n1-2=i\n*\nData=\n"
      "1,1,9\n1,1,9\n1,2,3\n2,1,0\n2,1,1\n2,2,2\n3,1,4\n3,1,5\n3,1,6\n3,2,7\n3,2,1\n3,1,8\n1,2,0\n",
      {"T", {FlankNo(1)}, {FlankNo(2)}});
  // Of person 3: 4 + 5 + 6 + 8 = 23 and 7 + 1 = 8.
  EXPECT_THAT(text, HasSubstr("xwide = 2  ; width of datapoint\n"
                              "codes = \" 0 1 2 3 4 5 6 7 8 91011121314151617181920212223\"  ;"));
  EXPECT_THAT(text, HasSubstr("; sum of data points in cell used\n"));
  EXPECT_THAT(text, HasSubstr("END LABELS\n18 3 1 p  ; row data + label\n 1 2 2 p\n23 8 3 p\n"));
}

TEST(GridrankFile, NamesTheScalesWhereTheyAreSeveral) {
  AnalysisRun run;
  const std::string text = Written(
      run,
      "Flanks=2\nModels=?,1,Marks\n?,2,D\n*\nRating scale=Marks,R2\n1=one,-1,A\n2=two,1,A\n*\n"
      "Labels=\n1,P,A\n1=p,0\n2=q,0\n*\n2,I\n1-2=i\n*\n"
      "Data=\n1,1,0\n2,1,2\n1,1,1\n1,2,1\n2,2,0\n",
      {"FS", {FlankNo(1)}, {FlankNo(2)}});
  EXPECT_THAT(text, HasSubstr("category labels\n0  (Marks)\n1 one (Marks)\n2 two (Marks)\n"
                              "0  (RS2)\n1  (RS2)\n*\n"));
  EXPECT_THAT(text, HasSubstr("anchor values\n1 -1.00  ; Marks\n2 1.00  ; Marks\n1 0.00  ; RS2\n"));
}

// ---- Every cell recounted

struct Datum {
  int person, item, judge, rating;
};

std::vector<Datum> ManyData() {
  std::vector<Datum> data;
  for (int n = 0; n < 700; ++n)
    data.push_back({n * 13 % 23 + 1, n * 7 % 11 + 1, n * 5 % 3 + 1, (n * n + n / 7) % 5});
  return data;
}

std::vector<std::string> RowsOf(const std::string& text) {
  std::vector<std::string> rows;
  std::istringstream in(text.substr(text.find("END LABELS\n") + 11));
  for (std::string line; std::getline(in, line);) rows.push_back(line.substr(0, line.find("  ;")));
  return rows;
}

void ExpectEveryCell(const std::string& letters, AnalysisRun& run) {
  const std::vector<Datum> data = ManyData();
  std::string specification =
      "Flanks=3\nModels=?,?,?,R4\n*\nLabels=\n1,P\n1-23=p\n*\n2,I\n1-11=i\n*\n3,J\n1-3=j\n*\nData="
      "\n";
  for (const Datum& d : data)
    specification += std::to_string(d.person) + "," + std::to_string(d.item) + "," +
                     std::to_string(d.judge) + "," + std::to_string(d.rating) + "\n";
  const std::string text = Written(run, specification, {letters, {kPersons}, {kItems, kJudges}});
  // The same by maps: rows and columns in the order in which the data show them.
  std::map<int, std::size_t> rowOf;
  std::map<std::pair<int, int>, std::size_t> columnOf;
  std::map<std::pair<std::size_t, std::size_t>, int> cells;
  std::vector<int> persons;
  for (const Datum& d : data) {
    if (rowOf.emplace(d.person, rowOf.size()).second) persons.push_back(d.person);
    columnOf.emplace(std::pair(d.item, d.judge), columnOf.size());
    const std::pair cell(rowOf[d.person], columnOf[{d.item, d.judge}]);
    const bool isNew = cells.count(cell) == 0;
    int& value = cells[cell];
    if (isNew || letters == "L")
      value = d.rating;
    else if (letters == "T")
      value += d.rating;
  }
  int largest = 0;
  for (const auto& [cell, value] : cells) largest = std::max(largest, value);
  const std::size_t width = std::to_string(largest).size();
  const std::vector<std::string> rows = RowsOf(text);
  ASSERT_EQ(rows.size(), rowOf.size());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t column = 0; column < columnOf.size(); ++column) {
      const auto found = cells.find({row, column});
      std::string expected = found == cells.end() ? "" : std::to_string(found->second);
      expected.insert(0, width - expected.size(), ' ');
      EXPECT_EQ(rows[row].substr(column * width, width), expected) << letters << row << column;
    }
    const std::string number = std::to_string(persons[row]);
    EXPECT_EQ(rows[row].substr(columnOf.size() * width),
              (number.size() == 1 ? "  " : " ") + number + " p");
  }
}

TEST(GridrankFile, HasEveryCell) {
  AnalysisRun run;
  for (const std::string letters : {"F", "L", "T"}) ExpectEveryCell(letters, run);
}

// ---- What stops it

TEST(GridrankFile, NeedsAFlankInEachList) {
  AnalysisRun run;
  run.Analyze(std::string(kDesign) + kData);
  FinishedRun finished(run);
  EXPECT_FALSE(WriteGridrankFile(finished.run, run.folder.file("g.txt"), {"F", {}, {kItems}}));
  EXPECT_THAT(run.Screen(), HasSubstr("Please check a Flank in upper list\n"));
  EXPECT_FALSE(WriteGridrankFile(finished.run, run.folder.file("g.txt"), {"F", {kPersons}, {}}));
  EXPECT_THAT(run.Screen(), HasSubstr("Please check a Flank in lower list\n"));
  EXPECT_EQ(run.folder.read("g.txt"), "");
}

TEST(GridrankFile, IsNotWrittenByARunThatIsBrokenOff) {
  AnalysisRun run;
  run.Analyze(std::string(kDesign) + kData);
  FinishedRun finished(run);
  run.process.control.CancelRequested = true;
  EXPECT_FALSE(
      WriteGridrankFile(finished.run, run.folder.file("g.txt"), {"F", {kPersons}, {kItems}}));
  EXPECT_EQ(run.folder.read("g.txt"), "");
}

TEST(GridrankFile, IsNotWrittenForAFlankThatIsNotThere) {
  AnalysisRun run;
  run.Analyze(std::string(kDesign) + kData);
  FinishedRun finished(run);
  for (const int number : {0, 4})
    for (const GridrankOptions& options :
         {GridrankOptions{"F", {kPersons}, {kItems, FlankNo(number)}},
          GridrankOptions{"F", {FlankNo(number)}, {kItems}}}) {
      EXPECT_FALSE(WriteGridrankFile(finished.run, run.folder.file("grid.txt"), options));
      EXPECT_THAT(run.Screen(), HasSubstr("There is no Flank " + std::to_string(number)));
      run.shell.statuses.clear();
    }
  EXPECT_EQ(run.folder.read("grid.txt"), "");
}

// Bob has three ratings of task 2.
TEST(GridrankFile, SaysWhichOfSeveralObservationsIsUsed) {
  const auto screen = [](const std::string& letters, const FlankNo column) {
    AnalysisRun run;
    Written(run, std::string(kDesign) + kData, {letters, {kPersons}, {column}});
    return run.Screen();
  };
  constexpr const char* kWords = "Some cells have several observations: of each the ";
  EXPECT_THAT(screen("F", kItems), HasSubstr(std::string(kWords) + "first is used"));
  EXPECT_THAT(screen("L", kItems), HasSubstr(std::string(kWords) + "last is used"));
  EXPECT_THAT(screen("T", kItems), Not(HasSubstr(kWords)));
}

}  // namespace
}  // namespace flanks
