// From a Specification to the program that opens the file: Score, Residual and Graph files of a run
// in each form, read back by LibreOffice, PSPP and R, and each cell compared with the tab-separated
// text that another run of the same Specification writes.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
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
  // Labels are texts, those of the items too, which are all numbers: in these places from the end.
  const std::vector<std::size_t> ofScores = {1, 3}, ofResiduals = {1, 2};
  for (const auto& [name, object, cells, labels] :
       {std::tuple{"s.1.rda", "SCFILE.1", &texts.persons, ofScores},
        {"s.2.rda", "SCFILE.2", &texts.items, ofScores},
        {"r.RData", "RESFILE", &texts.residuals, ofResiduals},
        {"g.rda", "GRFILE", &texts.graph, {}}}) {
    TableCells frame = FrameInR(run.folder, name, object);
    ASSERT_GT(frame.size(), 2u);
    for (const std::size_t fromEnd : labels)
      EXPECT_EQ(frame[1].at(frame[1].size() - fromEnd), "character") << name;
    frame.erase(frame.begin() + 1);  // the classes
    ExpectSameCells(frame, 0, *cells, 0, name);
  }
}

// ---- The plots of bias terms

std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

// The cells of the rows of a Table of the report, cut into words: rows have figures in front.
std::vector<TableCells> RowsOfTable(const std::string& report, const std::string& title) {
  std::vector<TableCells> rows;
  double number = 0.0;
  std::size_t at = report.find("\n" + title);
  EXPECT_NE(at, std::string::npos) << title;
  int empty = 0;
  for (const std::string& line : RunOf::Lines(report.substr(at + 1))) {
    if (line.empty() && ++empty == 2) break;
    TableCells cells;
    std::istringstream stream(line.size() > 1 && line[0] == '|' ? line.substr(1) : "");
    for (std::string cell; std::getline(stream, cell, '|');) cells.push_back(WordsOf(cell));
    const bool isRow = cells.size() > 3 && !cells[0].empty() && IsNumber(cells[0][0], number);
    if (isRow) rows.push_back(cells);
  }
  return rows;
}

// What the sheets must show in a row: by sheet, then by label, the value and half the distance of
// its lines of errors.
struct Plotted {
  double value = 0.0, error = 0.0;
};
using Plots = std::map<std::string, std::map<std::string, Plotted>>;

double Number(const std::string& text) {
  return std::atof(text.c_str());
}

// From the rows of Tables 13 and 14 with the target's place among the two names of a row.  Raters
// and criteria are negative Flanks: their measures go against the bias.
Plots PlotsOf(const std::string& report, std::size_t target) {
  Plots plots;
  for (const TableCells& row : RowsOfTable(report, "Table 13.1.2 ")) {
    const std::vector<std::string>&scores = row[0], &size = row[1], &names = row[3];
    if (names.size() != 7) continue;
    const std::string elements[] = {names[1] + " " + names[2], names[4] + " " + names[5]};
    const std::string label = elements[target] + " x " + elements[1 - target];
    const double error = Number(size[1]);
    plots["RM"][label] = {-Number(size[0]), error};
    plots["TV"][label] = {-Number(size[2]), 0.0};
    plots["AO"][label] = {Number(scores[0]) / Number(scores[2]), 0.0};
  }
  for (const TableCells& row :
       RowsOfTable(report, "Table 14.1." + std::to_string(target + 1) + ".1 ")) {
    if (row.size() != 5 || row[3].size() != 5) continue;
    const std::string first = row[0][0] + " " + row[0][1], second = row[2][0] + " " + row[2][1];
    const std::string context = " x " + row[3][3] + " " + row[3][4];
    plots["AM"][first + context] = {Number(row[1][0]), Number(row[1][1])};
    plots["AM"][second + context] = {Number(row[3][0]), Number(row[3][1])};
    const std::string pair = first + " - " + second + context;
    plots["PM"][pair] = {Number(row[4][0]), Number(row[4][1])};
    plots["PT"][pair] = {Number(row[4][2]), 0.0};
  }
  return plots;
}

// A sheet has its table below the chart: labels, then a column for each series, of which a row
// fills those of its first element.
void ExpectPlot(const TableCells& sheet, const std::map<std::string, Plotted>& plot,
                const std::string& words, bool hasErrors) {
  constexpr std::size_t kBelowTheChart = 27;
  ASSERT_EQ(sheet.size(), kBelowTheChart + 1 + plot.size()) << words;
  const std::vector<std::string>& heads = sheet[kBelowTheChart];
  for (std::size_t row = kBelowTheChart + 1; row < sheet.size(); ++row) {
    const std::string& label = sheet[row][0];
    ASSERT_EQ(plot.count(label), 1u) << words << ": " << label;
    const Plotted& expected = plot.at(label);
    const std::string name = label.substr(0, std::min(label.find(" x "), label.find(" - ")));
    std::map<std::string, double> shown;
    for (std::size_t i = 1; i < heads.size(); ++i)
      if (!sheet[row][i].empty()) shown[heads[i]] = Number(sheet[row][i]);
    const std::string head = name + ": " + words;
    ASSERT_EQ(shown.size(), hasErrors ? 3u : 1u) << words << ": " << label;
    ASSERT_EQ(shown.count(head), 1u) << words << ": " << label;
    EXPECT_NEAR(shown[head], expected.value, 0.00501) << words << ": " << label;
    if (!hasErrors) continue;
    EXPECT_NEAR(shown[head + " (+)"], expected.value + expected.error, 0.0151) << label;
    EXPECT_NEAR(shown[head + " (-)"], expected.value - expected.error, 0.0151) << label;
  }
}

// Every cell of the example's two workbooks, beside its Tables 13 and 14.
TEST(ReadBackRun, PlotsOfBiasTermsInLibreOffice) {
  if (!HasProgram("soffice")) GTEST_SKIP() << "LibreOffice (soffice) is not installed";
  const ScratchFolder folder;
  for (const std::string name : {"speaking.txt", "speaking-data.txt"})
    std::filesystem::copy(FLANKS_SOURCE_DIR "/examples/speaking/" + name, folder.file(name));
  ProgramCall call;
  call.program = FLANKS_PROGRAM;
  call.arguments = {"speaking.txt", "speaking.out.txt"};
  call.folder = folder.folder();
  ASSERT_EQ(RunProgram(call).exitStatus, 0);
  const std::string report = folder.read("speaking.out.txt");
  const auto sheets =
      SheetsInLibreOffice(folder, {"speaking.bias1.2.xlsx", "speaking.bias1.3.xlsx"});
  EXPECT_EQ(sheets.size(), 12u);
  for (const std::size_t target : {0u, 1u}) {
    const Plots plots = PlotsOf(report, target);
    EXPECT_EQ(plots.at("RM").size(), 24u);
    EXPECT_EQ(plots.at("AM").size(), 24u);
    EXPECT_EQ(plots.at("PM").size(), target == 0 ? 60u : 36u);
    for (const auto& [sheet, words, hasErrors] : {std::tuple{"AM", "Absolute Measure", true},
                                                  {"RM", "Relative-to-overall Measure", true},
                                                  {"TV", "t-value relative-to-overall", false},
                                                  {"AO", "Average Observation", false},
                                                  {"PM", "Pairwise Relative Measure", true},
                                                  {"PT", "Pairwise t-statistic", false}})
      ExpectPlot(sheets.at("speaking.bias1." + std::to_string(target + 2) + "-" + sheet),
                 plots.at(sheet), words, hasErrors);
  }
}

}  // namespace
}  // namespace flanks
