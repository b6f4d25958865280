// The importer in a run: the same report as from text, what the user is told, and how a run ends
// whose data cannot be converted.
#include "import/import_data.h"

#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "import/conversion_child.h"
#include "support/analysis_run.h"
#include "support/flanks_sandbox.h"
#include "support/import_files.h"
#include "support/spec_run.h"
#include "support/text_compare.h"

namespace flanks {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string kTwoFlanks =
    "Title=Check\nFlanks=2\nModels=?,?,R5\nLabels=\n1,Persons\n1-9\n*\n2,Items\n1-9\n*\n";
const std::string kMarks = "1,1,3\n1,2,4\n2,1,1\n2,2,2\n3,1,0\n3,2,3\n4,1,5\n4,2,1\n5,1,2\n5,2,2\n";

std::string SpecificationFor(const std::string& data) {
  return kTwoFlanks + "Data=" + data + "\n";
}

TestWorkbook BookOf(const std::string& name, const TestTable& table) {
  return {{{name, SheetData(table)}}, "", "", ""};
}

// The report with other names and times taken out of it.
std::string Comparable(std::string report, const std::string& folder, const std::string& dataFile) {
  for (const std::string& name : {folder, dataFile})
    for (std::size_t at = 0; (at = report.find(name, at)) != std::string::npos;)
      report.replace(at, name.size(), "NAME");
  std::string kept;
  std::size_t start = 0;
  for (std::size_t end; (end = report.find('\n', start)) != std::string::npos; start = end + 1) {
    const std::string line = report.substr(start, end - start + 1);
    const bool varies = line.starts_with("Flanks (Many-Flank") ||
                        line.starts_with("Analyzed in time") || line.starts_with("Output file = ");
    if (!varies) kept += line;
  }
  return kept;
}

std::string ReportOf(const std::string& specification, const std::string& dataFile,
                     const std::string& bytes) {
  AnalysisRun run;
  run.Write(dataFile, bytes);
  EXPECT_EQ(run.Analyze(specification + "Data=" + dataFile + "\n"), 0) << run.Screen();
  return Comparable(run.Report(), run.folder.folder(), dataFile);
}

// An example's Specification without its Data=, and its data.
struct Example {
  std::string specification;
  std::string data;
};
Example ReadExample(const std::string& name) {
  const std::filesystem::path folder = std::filesystem::path(FLANKS_SOURCE_DIR) / "examples" / name;
  std::string text = ReadWholeFile(folder / (name + ".txt"));
  return {text.substr(0, text.find("\nData =") + 1), ReadWholeFile(folder / (name + "-data.txt"))};
}

std::string TextOf(const TestTable& table, bool withComment) {
  std::string text = withComment ? "; names\n" : "";
  for (const TestRow& row : table) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) text += ',';
      if (const auto* number = std::get_if<double>(&row[i]))
        text += std::to_string(static_cast<int>(*number));
      if (const auto* words = std::get_if<std::string>(&row[i])) text += *words;
    }
    text += '\n';
  }
  return text;
}

void ExpectTheSameReport(const std::string& specification, const TestTable& table) {
  const std::string rows = ReportOf(specification, "d.txt", TextOf(table, false));
  const std::string named = ReportOf(specification, "d.txt", TextOf(table, true));
  EXPECT_NE(rows, named);  // the line of names is counted
  EXPECT_EQ(FirstDifference(rows, ReportOf(specification, "d.xlsx", XlsxBytes(BookOf("A", table)))),
            "");
  for (const char* kind : {"sav", "dta", "sas7bdat"})
    EXPECT_EQ(FirstDifference(named, ReportOf(specification, std::string("d.") + kind,
                                              PackageBytes(kind, table))),
              "")
        << kind;
  EXPECT_EQ(FirstDifference(named, ReportOf(specification, "d.rda", RdataBytes("d", table))), "");
  EXPECT_EQ(
      FirstDifference(named, ReportOf(specification, "d.rdata", GzipBytes(RdataBytes("d", table)))),
      "");
}

TEST(ImportedExamples, GiveTheReportOfTheirText) {
  for (const char* name : {"essays", "painters", "partial-credit"}) {
    SCOPED_TRACE(name);
    const Example example = ReadExample(name);
    ExpectTheSameReport(example.specification, TableOf(example.data));
  }
}

TEST(ImportedExamples, ByLabelsToo) {
  const std::string specification =
      "Title=Check\nFlanks=2\nDelements=LN\nModels=?,?,R5\nLabels=\n1,Persons\n1=Ann "
      "Lee\n2=Zo\xC3\xAB\n"
      "3=O Brien\n*\n2,Items\n1-9\n*\n";
  ExpectTheSameReport(specification, TableOf("Ann Lee,1,3,4\nZo\xC3\xAB,1,2,3\nO Brien,1,2,1\n"
                                             "Ann Lee,2,2,5\nZo\xC3\xAB,2,,3\nO Brien,2,1,0\n"));
}

TEST(ImportedExamples, WithScoresThatAreMissing) {
  ExpectTheSameReport(kTwoFlanks,
                      TableOf("1,1,3\n1,2,\n2,1,1\n2,2,2\n3,1,0\n3,2,3\n4,1,\n4,2,1\n"));
  // One of three candidates absent, in each place; and all of them.
  ExpectTheSameReport(kTwoFlanks,
                      TableOf("1-3,1,3,2,\n1-3,2,1,,2\n1-3,3,,1,4\n1-3,4,2,1,3\n1-3,5,,,\n"));
}

TEST(ImportedExamples, OfStoredWorkbooks) {
  // tests/unit/import/painters.xls was made with LibreOffice from the example's data, one row a
  // line.
  const Example example = ReadExample("painters");
  const TestTable table = TableOf(example.data);
  EXPECT_EQ(
      FirstDifference(ReportOf(example.specification, "d.txt", TextOf(table, false)),
                      ReportOf(example.specification, "d.xls",
                               ReadWholeFile(FLANKS_SOURCE_DIR "/tests/unit/import/painters.xls"))),
      "");
}

TEST(ImportData, TellsWhatItDoes) {
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(BookOf("Marks", TableOf("Person,Item,Mark\n" + kMarks))));
  ASSERT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 0) << run.Screen();
  const std::string screen = run.Screen();
  std::size_t at = 0;
  for (const char* line :
       {"Importing datafile= d.xlsx\n", "Converting Excel file: \"d.xlsx\" to \"",
        "Waiting for imported datafile ... see Help menu: Waiting\n",
        "Row 1 of sheet \"Marks\" is taken as the heading and skipped: Person\tItem\tMark\n",
        "Continuing ...\n", "Assigning models to Data= \"d.xlsx\"\n",
        "First active data line is: 1\t1\t3\n", "Total lines in data file = 11\n"}) {
    const std::size_t found = screen.find(line, at);
    ASSERT_NE(found, std::string::npos) << line << "\n" << screen;
    at = found;
  }
  EXPECT_THAT(run.Report(), HasSubstr("Assigning models to Data= \"d.xlsx\""));
  EXPECT_THAT(run.Report(), HasSubstr("Row 1 of sheet \"Marks\" is taken as the heading"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("flanks-imported")));
}

// Two persons by two items, five rows; in the place of the first response stands a code.
int AnalyzeCode(AnalysisRun& run, const std::string& code, const std::string& scaleAndModel) {
  const std::string rows = "Ann,x," + code + "\nAnn,y,2\nBob,x,1\nBob,y,3\nAnn,x,2\n";
  run.Write("d.xlsx", XlsxBytes(BookOf("A", TableOf(rows))));
  return run.Analyze("Title=Codes\nFlanks=2\nDelements=1L,2L\n" + scaleAndModel +
                     "Labels=\n1,P\n1=Ann\n2=Bob\n*\n2,I\n1=x\n2=y\n*\nData=d.xlsx\n");
}

TEST(ImportData, ACodeThatAScaleRecodesIsNoHeading) {
  AnalysisRun run;
  const std::string scale = "Rating scale=G,R3\n0=failed,,,F\n1=passed\n*\nModels=?,?,G\n";
  ASSERT_EQ(AnalyzeCode(run, "F", scale), 0) << run.Screen();
  EXPECT_THAT(run.Screen(), Not(HasSubstr("heading")));
  EXPECT_THAT(run.Report(), HasSubstr("Valid responses used for estimation = 5\n"));
}

TEST(ImportData, AMissingCodeIsNoHeading) {
  AnalysisRun run;
  ASSERT_EQ(AnalyzeCode(run, "away", "Missing=away\nModels=?,?,R3\n"), 0) << run.Screen();
  EXPECT_THAT(run.Screen(), Not(HasSubstr("heading")));
  EXPECT_THAT(run.Report(), HasSubstr("Total lines in data file = 5\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Valid responses used for estimation = 4\n"));
}

TEST(ImportData, NamesTheKindOfFile) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"d.xls", "Converting Excel file: \"d.xls\" to \""},
      {"d.dta", "Converting STATA file: \"d.dta\" to \""},
      {"d.sav", "Converting SPSS file: \"d.sav\" to \""},
      {"d.sas7bdat", "Converting SAS file: \"d.sas7bdat\" to \""},
      {"d.RDA", "Converting R data file: \"d.RDA\" to \""}};
  for (const auto& [name, line] : cases) {
    AnalysisRun run;
    EXPECT_EQ(run.Analyze(SpecificationFor(name)), 1);
    EXPECT_THAT(run.Screen(), HasSubstr(line));
    EXPECT_THAT(run.Screen(),
                HasSubstr("Conversion failed: " + name + ": there is no such file\n"));
  }
}

TEST(ImportData, AFailureEndsTheRunAsAFileThatIsNotThere) {
  AnalysisRun run;
  run.Write("d.xlsx", "1,1,3\n");
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("Conversion failed: d.xlsx: it is no .xlsx file\n"
                                      "\"d.xlsx\" File not found: Error F43\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Conversion failed: d.xlsx: it is no .xlsx file\n"));
  EXPECT_THAT(run.Screen(), EndsWith("Execution halted\n"));
}

TEST(ImportData, SheetsAreChosenInParentheses) {
  const std::string half = kMarks.substr(0, kMarks.size() / 2);
  const std::string rest = kMarks.substr(kMarks.size() / 2);
  TestWorkbook book;
  book.sheets = {{"Notes", SheetData(TableOf("read, me\n")), true},
                 {"First half", SheetData(TableOf(half)), false},
                 {"Second half", SheetData(TableOf(rest)), false}};
  AnalysisRun run;
  run.Write("my data.xlsx", XlsxBytes(book));
  ASSERT_EQ(run.Analyze(SpecificationFor("my data.xlsx(First half,3)")), 0) << run.Screen();
  EXPECT_THAT(run.Report(), HasSubstr("Valid responses used for estimation = 10\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Assigning models to Data= \"my data.xlsx(First half,3)\""));
  ASSERT_EQ(run.Analyze(SpecificationFor("\"my data.xlsx(first HALF)\"")), 0) << run.Screen();
  EXPECT_THAT(run.Report(), HasSubstr("Valid responses used for estimation = 5\n"));
  EXPECT_THAT(run.Screen(), Not(HasSubstr(" is read.  The file has")));
  ASSERT_EQ(run.Analyze(SpecificationFor("my data.xlsx")), 0) << "the first that is not hidden";
  EXPECT_THAT(run.Report(), HasSubstr("Sheet \"First half\" is read.  The file has 2 more.\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Valid responses used for estimation = 5\n"));
  EXPECT_EQ(run.Analyze(SpecificationFor("my data.xlsx(Third)")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("Conversion failed: my data.xlsx(Third): there is no sheet "
                                      "\"Third\" in it, only \"Notes\", \"First half\", "));
}

TEST(ImportData, AnErrorValueNamesItsCell) {
  TestWorkbook book = BookOf("Marks", {});
  book.sheets[0].data =
      "<sheetData><row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"B1\"><v>1</v></c><c "
      "r=\"C1\"><v>3</v></c>"
      "</row><row r=\"5\"><c r=\"A5\"><v>1</v></c><c r=\"B5\"><v>2</v></c><c r=\"C5\" t=\"e\">"
      "<v>#DIV/0!</v></c></row></sheetData>";
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(book));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 1);
  EXPECT_THAT(run.Screen(),
              HasSubstr("Conversion failed: d.xlsx: sheet \"Marks\", row 5, column C: #DIV/0!\n"
                        "sheet \"Marks\", row 5, column C: #DIV/0! Invalid response value: "
                        "non-numeric or too big for model: Error F26\n"));
}

TEST(ImportData, AFaultOfALineNamesSheetRowAndColumn) {
  TestWorkbook book;
  book.sheets = {{"One", SheetData(TableOf(kMarks)), false},
                 {"Two", SheetData(TableOf("Person,Item,Mark\n1,2,3\n1,Essay,3\n")), false}};
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(book));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx(1,2)")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("Error F231\n  See row 3, column B of sheet \"Two\".\n"));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx(Two)")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("Data line in d.xlsx(Two)(2) line: 3 is: "));
  EXPECT_THAT(run.Screen(), HasSubstr("Error F231\n  See row 3, column B of sheet \"Two\".\n"));
  run.Write("d.sav", PackageBytes("sav", TableOf("1,a,3\n2,b,4\n")));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.sav")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("Error F231\n  See row 1, column B.\n"));
}

TEST(ImportData, ChecksAndWarningsNameSheetRowAndColumn) {
  TestWorkbook book;
  book.sheets = {
      {"One", SheetData(TableOf(kMarks)), false},
      {"Two", SheetData(TableOf("Person,Item,Mark\n1,99,3\nR2,1,1,x\n1-2,1,3,3,3\n")), false}};
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(book));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx(1,2)")), 0) << run.Screen();
  for (const char* lines :
       {"Processed: 1,99,3,,\n  See row 2, column B of sheet \"Two\".\n",
        "Datum x is too big or not a positive integer, treated as missing.\n"
        "  See row 3, column D of sheet \"Two\".\n",
        "Warning (18)! 1 excess responses ignored\n  See row 4 of sheet \"Two\".\n"}) {
    EXPECT_THAT(run.Screen(), HasSubstr(lines));
    EXPECT_THAT(run.Report(), HasSubstr(lines));
  }
  run.Write("d.xlsx", XlsxBytes(BookOf("Marks", TableOf(kMarks + "5,1,x\n"))));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 0) << run.Screen();
  EXPECT_THAT(run.Screen(), HasSubstr("\n  See row 11, column C of sheet \"Marks\".\n"));
  AnalysisRun text;
  text.Write("d.txt", kMarks + "5,1,x\n");
  EXPECT_EQ(text.Analyze(SpecificationFor("d.txt")), 0);
  EXPECT_THAT(text.Screen(), HasSubstr("treated as missing.\nTotal lines in data file"));
}

TEST(ImportData, AKindOfFileThatIsNotReadTellsAsWhatToSaveIt) {
  const std::string zip = XlsxBytes(BookOf("A", TableOf(kMarks)));
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"d.xlsm", ".xlsx"}, {"d.ODS", ".xlsx"}, {"d.zsav", ".sav"}};
  for (const auto& [name, ending] : cases) {
    AnalysisRun run;
    run.Write(name, name == "d.zsav" ? std::string("$FL3@(#)\2\0\0\0\n", 13) : zip);
    EXPECT_EQ(run.Analyze(SpecificationFor(name)), 1);
    EXPECT_THAT(run.Screen(), HasSubstr("Conversion failed: " + name +
                                        ": such files are not read. Please save it as " + ending +
                                        ".\n\"" + name + "\" Invalid file format: "));
    EXPECT_THAT(run.Report(), HasSubstr("Error F44\n"));
  }
  // A text may be called so.
  AnalysisRun run;
  run.Write("d.ods", kMarks);
  EXPECT_EQ(run.Analyze(SpecificationFor("d.ods")), 0) << run.Screen();
}

// In a sheet of which only a row far below has a cell more, the rows above it are not as wide: the
// responses that they lack are missing all the same, and only uncounted.
TEST(ImportData, AWideRowFarBelowChangesNoResponse) {
  std::string narrow, wide;
  for (int row = 1; row <= 60; ++row) {
    const std::string cells = "1-3," + std::to_string(row % 9 + 1) + "," + std::to_string(row % 6) +
                              "," + std::to_string(row % 5);
    narrow += cells + (row == 58 ? ",4\n" : "\n");
    wide += cells + (row == 58 ? ",4\n" : ",\n");
  }
  AnalysisRun sheet, text;
  sheet.Write("d.xlsx", XlsxBytes(BookOf("A", TableOf(narrow))));
  ASSERT_EQ(sheet.Analyze(SpecificationFor("d.xlsx")), 0) << sheet.Screen();
  text.Write("d.txt", wide);
  ASSERT_EQ(text.Analyze(SpecificationFor("d.txt")), 0) << text.Screen();
  // 60 rows less that of the fourth cell: all lack a response, the last two with a cell for it.
  EXPECT_THAT(text.Report(), HasSubstr("Number of missing-null observations = 59 "));
  EXPECT_THAT(sheet.Report(), HasSubstr("Number of missing-null observations = 2 "));
  const auto measures = [](const AnalysisRun& run) {
    const std::string report = run.Report();
    return report.substr(report.find("Table 3"));
  };
  EXPECT_EQ(measures(sheet), measures(text));
}

TEST(ImportData, RowsWithReplicationsMayLackTheirResponses) {
  std::string rows;
  for (int row = 0; row < 60; ++row) rows += "R2,1,1,\n";
  AnalysisRun run;
  run.Write("d.xlsx",
            XlsxBytes(BookOf("A", TableOf(rows + "R2,1,1,3\nR2,1,2,2\nR2,2,1,4\nR2,2,2,1\n"))));
  ASSERT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 0) << run.Screen();
  EXPECT_THAT(run.Report(), HasSubstr("Number of missing-null observations = 60 "));
}

TEST(ImportData, ColumnsAreThoseOfTheFileWithDvaluesAndReplications) {
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(BookOf("A", TableOf("1,3\nR2,x,3\n"))));
  EXPECT_EQ(run.Analyze(kTwoFlanks + "Dvalues=\n1,1\n*\nData=d.xlsx\n"), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("See row 2, column B of sheet \"A\".\n"));
  // A value of Dvalues= has no column; all fields of a lone cell have its column.
  EXPECT_EQ(run.Analyze(kTwoFlanks + "Dvalues=\n1,x\n*\nData=d.xlsx\n"), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("See row 1 of sheet \"A\".\n"));
  run.Write("d.xlsx", XlsxBytes(BookOf("A", {{"1 x 3"}})));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("See row 1, column A of sheet \"A\".\n"));
}

TEST(ImportData, AStarEndsTheDataAndLinesBehindItAreTold) {
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(BookOf("A", TableOf(kMarks + "*\n9,9,9\n"))));
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx")), 0) << run.Screen();
  EXPECT_THAT(run.Screen(), HasSubstr("The data end at \"*\" in line 11 of \"d.xlsx\""));
  EXPECT_THAT(run.Report(), HasSubstr("Valid responses used for estimation = 10\n"));
}

TEST(ImportData, TheDataAreNoOutputFile) {
  AnalysisRun run;
  const std::string bytes = XlsxBytes(BookOf("A", TableOf(kMarks)));
  run.Write("d.xlsx", bytes);
  EXPECT_EQ(run.Analyze(SpecificationFor("d.xlsx(1)"), run.folder.file("d.xlsx")), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("Error F37"));
  EXPECT_EQ(run.folder.read("d.xlsx"), bytes);
}

TEST(ImportData, TheUserMayEndIt) {
  AnalysisRun run;
  run.Write("d.xlsx", XlsxBytes(BookOf("A", TableOf(kMarks))));
  run.Analyze(SpecificationFor("d.xlsx"));
  int waiting = 0;  // the pump behind the line that says so
  AnalysisRun counted;
  counted.Write("d.xlsx", run.folder.read("d.xlsx"));
  for (int pump = 1; pump < 200; ++pump)
    counted.shell.ActionAtPump(pump, [&counted, &waiting, pump] {
      if (waiting == 0 && counted.Screen().find("Waiting for imported") != std::string::npos) {
        waiting = pump;
        counted.process.control.CancelRequested = true;
      }
    });
  EXPECT_EQ(counted.Analyze(SpecificationFor("d.xlsx")), kExitCancelled);
  EXPECT_THAT(counted.Screen(), Not(HasSubstr("Assigning models")));
  EXPECT_THAT(counted.Screen(), Not(HasSubstr("Conversion failed")));
}

TEST(ImportData, ALibraryThatIsNotThereIsNamed) {
  SpecRun run;
  EXPECT_FALSE(TellConversionEnd(run.run, "d.xlsx", WithoutModule("libzip")));
  EXPECT_THAT(
      run.shell.Screen(),
      HasSubstr("F63 Module flankinput.exe not found. Flanks is not installed correctly.\n"
                "This build of Flanks cannot read \"d.xlsx\": it was made without libzip.\n"));
  EXPECT_EQ(run.FaultText(), "\"d.xlsx\" Required file not found: Error F57");
}

// ---- the child

ConversionEnd InChild(const std::function<ConversionEnd(const ConversionWatch&)>& conversion,
                      const ChildLimits& limits = {}) {
  return RunInChild(
      conversion, {}, [] { return false; }, limits);
}

TEST(ConversionChild, TellsRowsLinesAndItsEnd) {
  std::vector<std::string> told;
  std::int64_t rows = 0;
  ConversionWatch watch;
  watch.tell = [&](const std::string& line) { told.push_back(line); };
  watch.rows = [&](std::int64_t count) { rows = count; };
  const ConversionEnd end = RunInChild(
      [](const ConversionWatch& inner) {
        for (int i = 1; i <= 100000; ++i) inner.rows(i);
        inner.tell(std::string(200000, 'x'));
        return ConversionEnd{ConversionEnd::Kind::badCell, "C7"};
      },
      watch, [] { return false; }, {});
  EXPECT_EQ(end.kind, ConversionEnd::Kind::badCell);
  EXPECT_EQ(end.text, "C7");
  EXPECT_EQ(rows, 100000);
  EXPECT_THAT(told, testing::ElementsAre(std::string(200000, 'x')));
}

TEST(ConversionChild, ACrashIsAConversionThatFailed) {
  const ConversionEnd end = InChild([](const ConversionWatch&) -> ConversionEnd { std::abort(); });
  EXPECT_EQ(end.text, "reading it broke off; it must be damaged, or too large");
  EXPECT_EQ(InChild([](const ConversionWatch&) -> ConversionEnd { throw std::bad_alloc(); }).text,
            "there is not enough memory for it");
}

TEST(ConversionChild, OneThatRunsAwayIsEnded) {
  ChildLimits limits;
  limits.secondsWithoutRows = 0;
  const ConversionEnd end = InChild(
      [](const ConversionWatch&) -> ConversionEnd {
        volatile bool more = true;
        while (more) {
        }
        return {};
      },
      limits);
  EXPECT_EQ(end.text, "reading it took too long; it must be damaged");
}

TEST(ConversionChild, TheParentMayEndItAtOnce) {
  int pumps = 0;
  const auto start = std::chrono::steady_clock::now();
  const ConversionEnd end = RunInChild(
      [](const ConversionWatch&) -> ConversionEnd {
        for (;;) pause();
      },
      {}, [&] { return ++pumps == 3; }, {});
  EXPECT_FALSE(end.done());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace flanks
