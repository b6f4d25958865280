// From a Specification to the program that opens the file: Score, Residual and Graph files of a run
// in each form, read back by LibreOffice, PSPP and R, and each cell compared with the tab-separated
// text that another run of the same Specification writes.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "support/flanks_sandbox.h"
#include "support/other_programs.h"
#include "support/program_runner.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

// Labels that a spreadsheet or a statistics package might take for something else; person 7 has
// all ratings at the top and person 8 none.
constexpr const char* kSpecification = R"(Title = Probe "A" <1> & R)"
                                       "\xC3\xA4ter\n"
                                       R"(Flanks = 2
Umean = 50, 10, 1
Omit-unobserved = No
Models = ?,?,R3
Labels =
1, Persons of year 1
1 = Zo)"
                                       "\xC3\xAB \xE6\x9D\xB1\n"
                                       R"(2 = 12-3
3 = 2020
4 = +49 30
5 = O'Brien "the" b
6 = a;b
7 = 1E5
8 = Nobody
*
2, Items
1 = 1
2 = 2
3 = 3
*
Data =
1,1-3,0,1,2
2,1-3,1,1,3
3,1-3,2,2,2
4,1-3,0,0,1
5,1-3,3,1,2
6,1-3,1,2,3
7,1-3,3,3,3
)";

struct RunOf {
  ScratchFolder folder;

  RunOf() { folder.write("spec.txt", kSpecification); }

  // One run with these names for its files.
  void Analyze(const std::vector<std::string>& extras) const {
    ProgramCall call;
    call.program = FLANKS_PROGRAM;
    call.arguments = {"spec.txt", "report.txt"};
    call.arguments.insert(call.arguments.end(), extras.begin(), extras.end());
    call.folder = folder.folder();
    const ProgramResult result = RunProgram(call);
    EXPECT_EQ(result.exitStatus, 0) << result.output << result.errors;
  }
  TableCells TextOf(const std::string& name) const {
    TableCells cells;
    for (const std::string& line : Lines(folder.read(name))) {
      cells.emplace_back();
      for (std::size_t from = 0, end = 0; end != std::string::npos; from = end + 1) {
        end = line.find('\t', from);
        cells.back().push_back(line.substr(from, end - from));
      }
    }
    return cells;
  }
  static std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < text.size();) {
      const std::size_t end = std::min(text.find('\n', from), text.size());
      lines.push_back(text.substr(from, end - from));
      from = end + 1;
    }
    return lines;
  }
};

bool IsNumber(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0';
}

// Equal texts, or equal numbers; a label that a workbook protects has a no-break space behind it.
bool IsSameCell(const std::string& shown, const std::string& text) {
  double a = 0.0, b = 0.0;
  if (shown == text || shown == text + "\xC2\xA0") return true;
  return IsNumber(shown, a) && IsNumber(text, b) && a == b;
}

void ExpectSameCells(const TableCells& shown, std::size_t shownFrom, const TableCells& text,
                     std::size_t textFrom, const std::string& what) {
  ASSERT_EQ(shown.size() - shownFrom, text.size() - textFrom) << what;
  for (std::size_t row = 0; row + textFrom < text.size(); ++row) {
    const std::vector<std::string>&a = shown[row + shownFrom], &b = text[row + textFrom];
    ASSERT_EQ(a.size(), b.size()) << what << " row " << row;
    for (std::size_t i = 0; i < b.size(); ++i)
      EXPECT_TRUE(IsSameCell(a[i], b[i])) << what << " row " << row << ": " << a[i] << ", " << b[i];
  }
}

struct Texts {
  TableCells persons, items, residuals, graph;

  explicit Texts(const RunOf& run) {
    run.Analyze({"CSV=Tab", "Scorefile=s.txt", "Residualfile=r.txt", "Graphfile=g.txt"});
    persons = run.TextOf("s.1.txt");
    items = run.TextOf("s.2.txt");
    residuals = run.TextOf("r.txt");
    graph = run.TextOf("g.txt");
    EXPECT_EQ(persons.size(), 9u);
    EXPECT_EQ(items.size(), 4u);
    EXPECT_EQ(residuals.size(), 22u);
    EXPECT_GT(graph.size(), 20u);
  }
};

// The most memory that a run with a Residual file of 10 rows for each of `persons` takes.
std::int64_t PeakKilobytes(int persons, const std::string& residualName) {
  const FlanksSandbox sandbox;
  sandbox.Write("spec.txt",
                "Flanks=2\nModels=?,?,R4\nIterations=1\nSubsets=N\nTables=0\nLabels=\n"
                "1,Persons\n1-1000=p\n*\n2,Items\n1-10=i\n*\nData=data.txt\n");
  std::string data;
  for (int person = 0; person < persons; ++person) {
    data += std::to_string(person % 1000 + 1) + ",1-10";
    for (int item = 0; item < 10; ++item) data += "," + std::to_string((person * 7 + item * 3) % 5);
    data += "\n";
  }
  sandbox.Write("data.txt", data);
  ProgramCall call =
      sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt", "Residualfile=" + residualName});
  call.timeLimit = std::chrono::minutes(5);
  const ProgramResult result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 0) << result.output << result.errors;
  EXPECT_FALSE(sandbox.Read(residualName).empty());
  EXPECT_TRUE(sandbox.TemporaryFiles().empty());
  return result.peakKilobytes;
}

// A workbook that is held in memory takes some 40,000 kilobytes for 20,000 rows.
TEST(ReadBackRun, MemoryDoesNotGrowWithTheRowsOfAWorkbook) {
  EXPECT_LT(PeakKilobytes(2'000, "r.xlsx"), PeakKilobytes(200, "r.xlsx") + 4'000);
  EXPECT_LT(PeakKilobytes(2'000, "r.sav"), PeakKilobytes(200, "r.sav") + 4'000);
}

TEST(SlowReadBackRun, MemoryDoesNotGrowWithAHundredThousandRows) {
  EXPECT_LT(PeakKilobytes(10'000, "r.xlsx"), PeakKilobytes(200, "r.xlsx") + 4'000);
}

TEST(ReadBackRun, WorkbooksInLibreOffice) {
  if (!HasProgram("soffice")) GTEST_SKIP() << "LibreOffice (soffice) is not installed";
  const RunOf run;
  const Texts texts(run);
  run.Analyze({"Scorefile=s.xlsx", "Residualfile=r.XLSX", "Graphfile=g.xlsx"});
  run.Analyze({"HL=No", "Residualfile=bare.xlsx"});
  const auto sheets =
      SheetsInLibreOffice(run.folder, {"s.1.xlsx", "s.2.xlsx", "r.XLSX", "g.xlsx", "bare.xlsx"});
  ASSERT_EQ(sheets.size(), 5u);
  ExpectSameCells(sheets.at("bare-bare"), 0, texts.residuals, 1, "residuals without headings");
  EXPECT_EQ(run.folder.read("r-r.csv")[0], '"') << "a heading is text";
  EXPECT_NE(run.folder.read("bare-bare.csv")[0], '"') << "a first row of numbers is none";
  ExpectSameCells(sheets.at("s.1-s.1"), 0, texts.persons, 0, "persons");
  ExpectSameCells(sheets.at("s.2-s.2"), 0, texts.items, 0, "items");
  ExpectSameCells(sheets.at("r-r"), 0, texts.residuals, 0, "residuals");
  ExpectSameCells(sheets.at("g-g"), 1, texts.graph, 1, "graph");  // its headings are longer
}

// Without the heading lines: SPSS has names of its own.
TEST(ReadBackRun, SpssFilesInPspp) {
  if (!HasProgram("pspp-convert")) GTEST_SKIP() << "PSPP (pspp-convert) is not installed";
  const RunOf run;
  const Texts texts(run);
  run.Analyze({"Scorefile=s.sav", "Residualfile=r.sav"});
  const TableCells persons = CasesInPspp(run.folder, "s.1.sav");
  ExpectSameCells(persons, 1, texts.persons, 1, "persons");
  ExpectSameCells(CasesInPspp(run.folder, "s.2.sav"), 1, texts.items, 1, "items");
  const TableCells residuals = CasesInPspp(run.folder, "r.sav");
  ExpectSameCells(residuals, 1, texts.residuals, 1, "residuals");
  ASSERT_EQ(persons[0].size(), 28u);
  EXPECT_EQ(persons[0][24], "E_Number");
  EXPECT_EQ(persons[0][25], "E_Label");
  EXPECT_EQ(residuals[0].back(), "F2_Label");
}

TEST(ReadBackRun, WorkspacesInR) {
  if (!HasProgram("R")) GTEST_SKIP() << "R is not installed";
  const RunOf run;
  const Texts texts(run);
  run.Analyze({"Scorefile=s.rda", "Residualfile=r.RData", "Graphfile=g.rda"});
  for (const auto& [name, object, cells] : {std::tuple{"s.1.rda", "SCFILE.1", &texts.persons},
                                            {"s.2.rda", "SCFILE.2", &texts.items},
                                            {"r.RData", "RESFILE", &texts.residuals},
                                            {"g.rda", "GRFILE", &texts.graph}}) {
    TableCells frame = FrameInR(run.folder, name, object);
    ASSERT_GT(frame.size(), 2u);
    frame.erase(frame.begin() + 1);  // the classes
    ExpectSameCells(frame, 0, *cells, 0, name);
  }
}

}  // namespace
}  // namespace flanks
