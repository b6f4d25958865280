#include "output/hand_offs.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "import/conversion.h"
#include "output/r_program.h"
#include "output/rda_writer.h"
#include "output/sav_writer.h"
#include "output/tab_text.h"
#include "output/xlsx_charts.h"
#include "output/xlsx_writer.h"
#include "support/run_bench.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(FormOfName, IsToldByTheEndInAnyCase) {
  const std::vector<std::pair<std::string_view, OutputForm>> cases = {
      {"a.xls", OutputForm::excel},    {"a.XLSX", OutputForm::excel},
      {"a.sav", OutputForm::spss},     {"a.Sav", OutputForm::spss},
      {"a.rda", OutputForm::rstat},    {"a.RData", OutputForm::rstat},
      {"a.htm", OutputForm::webpage},  {"a.html", OutputForm::webpage},
      {"a.txt", OutputForm::text},     {"xlsx", OutputForm::text},
      {"a.xls.txt", OutputForm::text}, {"a.xlsm", OutputForm::text},
      {"", OutputForm::text}};
  for (const auto& [name, form] : cases) EXPECT_EQ(FormOfName(name), form) << name;
}

TEST(IsExcelName, WantsAllOfTheEnding) {
  EXPECT_EQ(IsExcelName("SCORES.XLSX"), "Excel");
  EXPECT_EQ(IsExcelName("a.xls"), "Excel");
  EXPECT_EQ(IsExcelName("a.xl"), "N");
  EXPECT_EQ(IsExcelName("axls"), "N");
}

TEST(CellNumber, IsAllOfTheCell) {
  EXPECT_EQ(CellNumber("0.05"), 0.05);
  EXPECT_EQ(CellNumber("-.5"), -0.5);
  EXPECT_EQ(CellNumber("+7"), 7.0);
  EXPECT_EQ(CellNumber("1E+2"), 100.0);
  for (const std::string_view text : {"", "-", "+", ".", "1 ", " 1", "1,5", "12-3", "+-1", "--1",
                                      "inf", "nan", "0x10", "1e", "???", "1\xC2\xA0"})
    EXPECT_FALSE(CellNumber(text)) << text;
}

TEST(TabText, GivesTheCellsAsTheyStand) {
  const ScratchFolder folder;
  TabText text({.name = folder.write("a.txt", "\"a\"\t b \t\"\n\n'd'\t7")});
  ASSERT_TRUE(text.ReadRow());
  EXPECT_THAT(text.cells(), ElementsAre("\"a\"", " b ", "\""));
  ASSERT_TRUE(text.ReadRow());
  EXPECT_THAT(text.cells(), ElementsAre(""));
  ASSERT_TRUE(text.ReadRow());
  EXPECT_THAT(text.cells(), ElementsAre("'d'", "7"));
  EXPECT_EQ(text.cell(5), "");
  EXPECT_FALSE(text.ReadRow());
}

TEST(MeasureTable, TellsWhatEachColumnHolds) {
  const ScratchFolder folder;
  const TableSource source{
      .name = folder.write("a.txt", "Long heading\tN\n0.05\tM\xFC\n-1.5\t\n???\t1\n7\tx\tmore\n")};
  const TableShape shape = MeasureTable(source, 1);
  EXPECT_EQ(shape.rows, 4);
  ASSERT_EQ(shape.columns.size(), 3u);
  EXPECT_TRUE(shape.columns[0].isNumber) << "a number too large for its form is one";
  EXPECT_EQ(shape.columns[0].decimals, 2);
  EXPECT_EQ(shape.columns[0].heading, "Long heading");
  EXPECT_FALSE(shape.columns[1].isNumber);
  EXPECT_EQ(shape.columns[1].bytes, 3u);
  EXPECT_EQ(shape.columns[1].columns, 2);
  EXPECT_EQ(shape.columns[2].heading, "");
}

TEST(SheetName, IsOneThatASpreadsheetTakes) {
  EXPECT_EQ(SheetName("results.1"), "results.1");
  EXPECT_EQ(SheetName("a[b]:c*?/\\d"), "a_b__c____d");
  EXPECT_EQ(SheetName("'q'"), "q");
  EXPECT_EQ(SheetName(""), "Data");
  EXPECT_EQ(SheetName("''"), "Data");
  EXPECT_EQ(SheetName(std::string(40, 'x')), std::string(31, 'x'));
}

TEST(SavName, HasNoHyphen) {
  EXPECT_EQ(SavName("F1-Measure"), "F1_Measure");
  EXPECT_EQ(SavName("S.E."), "S.E.");
}

TEST(SavFileLabel, NamesTheAnalysisIn64Bytes) {
  FileStamp stamp{"Painters", "Flanks 1.2.3", 0};
  const std::string end = "Flanks 1.2.3, " + StampDate(stamp);
  EXPECT_EQ(SavFileLabel(stamp), "Painters; " + end);
  stamp.title = std::string(70, 'x');
  EXPECT_EQ(SavFileLabel(stamp), std::string(64 - 2 - end.size(), 'x') + "; " + end);
  stamp.title.clear();
  EXPECT_EQ(SavFileLabel(stamp), end);
}

TEST(RScript, DoublesBackslashes) {
  EXPECT_EQ(RScript("C:\\Temp\\Sc1.txt", "D:\\my data\\a.rda", "SCFILE.1"),
            "SCFILE.1 <- utils::read.delim(\"C:\\\\Temp\\\\Sc1.txt\", header = TRUE)\n"
            "save(SCFILE.1, file = \"D:\\\\my data\\\\a.rda\")\n");
}

TEST(RScript, KeepsLabelsTexts) {
  EXPECT_EQ(RScript("t", "a", "x", {false, true, false}),
            "x <- utils::read.delim(\"t\", header = TRUE, colClasses = c(NA, \"character\", NA))\n"
            "save(x, file = \"a\")\n");
}

// As R 4 gives them for make.unique.
TEST(DistinctNames, AreThoseOfR) {
  EXPECT_THAT(DistinctNames({"Status", "E1", "Status", "Status"}),
              ElementsAre("Status", "E1", "Status.1", "Status.2"));
  EXPECT_THAT(DistinctNames({"a", "a", "a.1", "a.1"}), ElementsAre("a", "a.2", "a.1", "a.1.1"));
}

// A tab-separated text in a scratch folder and a run to hand it over.
struct Bench : RunBench {
  std::string text = folder.write("text.txt", "Measure\tE-Label\n0.05\tAnn\n-1.50\tBen\n");
  std::string spssText = folder.write(
      "spss.txt", "1\nMeasure\tE-Label\nLogit Measure\tElement Label\n-4\t3\n0.05\tAnn\n");

  bool Excel(const std::string& name, ExcelSource source = ExcelSource::run) {
    return LaunchExcel(run, text, folder.file(name), {source});
  }
  bool Spss(const std::string& name) {
    return LaunchSpss(run, "Score", spssText, folder.file(name));
  }
  bool R(const std::string& name, bool show = false) {
    return RunRStatistics(run, text, folder.file(name), {"SCFILE.1", {}}, show);
  }
  // The files beside the two texts.
  std::vector<std::string> Files() const {
    std::vector<std::string> names = folder.names();
    std::erase_if(names, [](const std::string& name) { return name.ends_with(".txt"); });
    std::sort(names.begin(), names.end());
    return names;
  }
};

// What each form begins with: a zip archive, SPSS's "$FL2", R's "RDX2" or "RDX3".
TEST(HandOffs, MakeTheirFilesAndSaySo) {
  Bench bench;
  EXPECT_TRUE(bench.Excel("a.xlsx"));
  EXPECT_TRUE(bench.Spss("a.sav"));
  EXPECT_TRUE(bench.R("a.rda"));
  EXPECT_EQ(bench.folder.read("a.xlsx").substr(0, 4), "PK\x03\x04");
  EXPECT_EQ(bench.folder.read("a.sav").substr(0, 4), "$FL2");
  EXPECT_EQ(bench.folder.read("a.rda").substr(0, 3), "RDX");
  EXPECT_EQ(bench.shell.Screen(), "Launching Excel ....\nReady ....\nSPSS Score file created: " +
                                      bench.folder.file("a.sav") + "\n");
  EXPECT_THAT(bench.Files(), ElementsAre("a.rda", "a.sav", "a.xlsx"));
}

TEST(HandOffs, WriteTheNewFormForANameOfTheOldOne) {
  Bench bench;
  EXPECT_TRUE(bench.Excel("a.xls"));
  EXPECT_TRUE(bench.Excel("B.XLS"));
  EXPECT_THAT(bench.shell.Screen(),
              HasSubstr("Excel file is written as \"" + bench.folder.file("a.xlsx") + "\".\n"));
  EXPECT_THAT(bench.Files(), ElementsAre("B.XLSX", "a.xlsx"));
}

TEST(HandOffs, TellAFolderThatIsNotThere) {
  Bench bench;
  EXPECT_FALSE(bench.Excel("none/a.xlsx"));
  EXPECT_FALSE(bench.Spss("none/a.sav"));
  EXPECT_FALSE(bench.R("none/a.rda"));
  const std::string screen = bench.shell.Screen();
  for (const char* name : {"none/a.xlsx", "none/a.sav", "none/a.rda"})
    EXPECT_THAT(screen, HasSubstr("Failure opening output file: \"" + bench.folder.file(name) +
                                  "\" (No such file or directory)"));
  EXPECT_THAT(screen, HasSubstr("F64 SPSS Score file creation failed\n"));
  EXPECT_THAT(screen, Not(HasSubstr("Ready")));
}

TEST(HandOffs, LeaveTheFormerFileWhenTheTextCannotBeRead) {
  Bench bench;
  for (const char* name : {"a.xlsx", "a.sav", "a.rda"}) bench.folder.write(name, "former");
  bench.text = bench.spssText = bench.folder.file("gone.txt");
  EXPECT_FALSE(bench.Excel("a.xlsx"));
  EXPECT_FALSE(bench.Spss("a.sav"));
  EXPECT_FALSE(bench.R("a.rda"));
  for (const char* name : {"a.xlsx", "a.sav", "a.rda"})
    EXPECT_EQ(bench.folder.read(name), "former") << name;
  EXPECT_THAT(bench.Files(), ElementsAre("a.rda", "a.sav", "a.xlsx"));
  for (const char* routine : {"LaunchExcel", "LaunchSpss", "RunRStatistics"})
    EXPECT_THAT(bench.shell.Screen(),
                AllOf(HasSubstr(std::string(routine) + " failed: \""),
                      HasSubstr("\" is not written. File read failure for " + bench.text)));
}

// Files of this process end at `bytes` while it lasts, as on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{bytes, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit former_{};
  void (*handler_)(int);
};

// Some 400,000 bytes of rows: .xlsx is formatted in temporary files of twice that, then packed.
std::string ManyRows(const std::string& head) {
  std::string text = head;
  for (int row = 0; row < 20'000; ++row)
    text += std::to_string(row * 7919 % 1000) + ".25\tperson\n";
  return text;
}

TEST(HandOffs, LeaveTheFormerFileWhenTheDiskIsFull) {
  Bench bench;
  bench.text = bench.folder.write("many.txt", ManyRows("Measure\tE-Label\n"));
  bench.spssText =
      bench.folder.write("many-spss.txt", ManyRows("1\nMeasure\tE-Label\na\tb\n-4\t6\n"));
  for (const char* name : {"a.xlsx", "a.sav", "a.rda"}) bench.folder.write(name, "former");
  // From no room at all up to nearly enough for the sheet.
  for (const rlim_t bytes : {0, 1000, 100'000, 1'000'000, 1'900'000}) {
    const FileSizeLimit limit(bytes);
    EXPECT_FALSE(bench.Excel("a.xlsx")) << bytes;
  }
  for (const rlim_t bytes : {0, 1000, 100'000}) {
    const FileSizeLimit limit(bytes);
    EXPECT_FALSE(bench.Spss("a.sav")) << bytes;
    EXPECT_FALSE(bench.R("a.rda")) << bytes;
  }
  for (const char* name : {"a.xlsx", "a.sav", "a.rda"})
    EXPECT_EQ(bench.folder.read(name), "former") << name;
  EXPECT_THAT(bench.Files(), ElementsAre("a.rda", "a.sav", "a.xlsx"));
  const std::string screen = bench.shell.Screen();
  EXPECT_THAT(screen, HasSubstr("LaunchExcel failed: \"" + bench.folder.file("a.xlsx") +
                                "\" is not written. File write failure for "))
      << "the file asked for, then the temporary one";
  EXPECT_EQ(bench.process.control.ExitCode, kExitFault);
  EXPECT_THAT(screen, HasSubstr("LaunchSpss failed: File write failure for " +
                                bench.folder.file("a.sav") + ": File too large"));
  EXPECT_THAT(screen, HasSubstr("RunRStatistics failed: File write failure for " +
                                bench.folder.file("a.rda") + ": File too large"));
  EXPECT_TRUE(bench.Excel("a.xlsx")) << "with room again";
}

// Where the file is to stand, with room for the temporary ones.
TEST(HandOffs, TellThatTheDiskOfTheWorkbookIsFull) {
  Bench bench;
  std::filesystem::create_symlink("/dev/full", bench.folder.file("full.xlsx"));
  testing::internal::CaptureStderr();
  EXPECT_FALSE(bench.Excel("full.xlsx"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the library tells nobody";
  EXPECT_THAT(bench.shell.Screen(),
              HasSubstr("LaunchExcel failed: File write failure for " +
                        bench.folder.file("full.xlsx") + ": No space left on device."));
}

// The length of the first sheet before it was packed, as the archive's directory has it.
std::uint32_t SheetLength(const std::string& archive) {
  constexpr std::size_t kLengthAt = 24, kNameAt = 46;  // of a directory entry
  for (std::size_t at = archive.find("PK\x01\x02"); at != std::string::npos;
       at = archive.find("PK\x01\x02", at + 1))
    if (archive.compare(at + kNameAt, 24, "xl/worksheets/sheet1.xml") == 0) {
      std::uint32_t length = 0;
      std::memcpy(&length, archive.data() + at + kLengthAt, sizeof length);
      return length;
    }
  return 0;
}

// The library does not look at whether its temporary files could be written.  With the least room
// that is taken for enough, the sheet is as long as with plenty.
TEST(HandOffs, AWorkbookIsCompleteWithTheLeastRoomThatIsEnough) {
  Bench bench;
  std::string rows = "Measure\tE-Label\n";
  for (int row = 0; row < 2000; ++row) rows += std::to_string(row * 7919 % 1000) + ".25\tperson\n";
  bench.text = bench.folder.write("some.txt", rows);
  ASSERT_TRUE(bench.Excel("plenty.xlsx"));
  const std::uint32_t length = SheetLength(bench.folder.read("plenty.xlsx"));
  ASSERT_GT(length, rows.size());
  rlim_t tooLittle = 0, enough = 8 << 20;
  while (enough - tooLittle > 1) {
    const rlim_t middle = (tooLittle + enough) / 2;
    const FileSizeLimit limit(middle);
    (bench.Excel("least.xlsx") ? enough : tooLittle) = middle;
  }
  ASSERT_GT(enough, 1u);
  EXPECT_EQ(SheetLength(bench.folder.read("least.xlsx")), length);
}

// There is room again when the workbook is put together, but not all rows came to the disk.
TEST(HandOffs, AWorkbookThatLostRowsOnTheWayIsNotWritten) {
  Bench bench;
  bench.text = bench.folder.write("many.txt", ManyRows("Measure\tE-Label\n"));
  std::optional<FileSizeLimit> full;
  bench.shell.ActionAtPump(25, [&full] { full.emplace(1000); });
  bench.shell.ActionAtPump(30, [&full] { full.reset(); });
  EXPECT_FALSE(bench.Excel("a.xlsx"));
  EXPECT_THAT(bench.Files(), IsEmpty());
  EXPECT_THAT(bench.shell.Screen(), HasSubstr("\" is not written. File write failure for "));
}

TEST(HandOffs, EndWhenTheUserBreaksTheRunOff) {
  Bench bench;
  bench.text = bench.folder.write("many.txt", ManyRows("Measure\tE-Label\n"));
  bench.folder.write("a.xlsx", "former");
  bench.shell.ActionAtPump(25, [&bench] { bench.process.control.CancelRequested = true; });
  EXPECT_FALSE(bench.Excel("a.xlsx"));
  EXPECT_EQ(bench.folder.read("a.xlsx"), "former");
  EXPECT_THAT(bench.Files(), ElementsAre("a.xlsx"));
  EXPECT_THAT(bench.shell.Screen(),
              HasSubstr("\"" + bench.folder.file("a.xlsx") + "\" was not written.\n"));
}

TEST(HandOffs, CutALabelThatNoCellTakesAndSaySo) {
  Bench bench;
  const std::string longest(40'000, 'x');
  std::string umlauts;
  for (int i = 0; i < 20'000; ++i) umlauts += "\xC3\xA4";
  bench.text = bench.folder.write("long.txt", "E-Label\n" + longest + "\n" + umlauts + "\n");
  bench.spssText = bench.folder.write("long-spss.txt", "1\nE-Label\nl\n40000\n" + longest + "\n");
  const std::string words = "Labels cut: 1, since a cell takes no more than 32767 characters.\n";
  EXPECT_TRUE(bench.Excel("a.xlsx"));
  EXPECT_EQ(bench.shell.Screen(), "Launching Excel ....\n" + words + "Ready ....\n");
  bench.shell.statuses.clear();
  EXPECT_TRUE(bench.Spss("a.sav"));
  EXPECT_EQ(bench.shell.Screen(),
            words + "SPSS Score file created: " + bench.folder.file("a.sav") + "\n");
}

TEST(HandOffs, RefuseMoreColumnsThanASheetHas) {
  Bench bench;
  bench.text = bench.folder.write("wide.txt", std::string(16'384, '\t') + "\n");
  EXPECT_FALSE(bench.Excel("a.xlsx"));
  EXPECT_THAT(bench.shell.Screen(),
              HasSubstr("is not written. 16385 columns, and a sheet takes 16384."));
}

TEST(HandOffs, OpenWhatADialogAsksFor) {
  Bench bench;
  bench.launcher.works = true;
  EXPECT_TRUE(bench.Excel("a.xlsx"));
  EXPECT_THAT(bench.launcher.asked, IsEmpty());
  EXPECT_TRUE(bench.Excel("b.xlsx", ExcelSource::dialog));
  EXPECT_TRUE(bench.Excel("c.xlsx", ExcelSource::temporary));
  EXPECT_THAT(bench.launcher.asked,
              ElementsAre(bench.folder.file("b.xlsx"), bench.folder.file("c.xlsx")));
}

TEST(WriteChartWorkbook, WritesAndTellsOfSeriesBeyondTheChart) {
  Bench bench;
  ChartSheet sheet;
  sheet.name = "AM";
  sheet.categories = {"1", "2"};
  sheet.series.assign(256, {"1 Ann: Absolute Measure", {0.5, {}}});
  EXPECT_TRUE(WriteChartWorkbook(bench.run, bench.folder.file("a.xls"), {sheet, ChartSheet()}));
  EXPECT_EQ(bench.folder.read("a.xlsx").substr(0, 4), "PK\x03\x04");
  EXPECT_THAT(bench.shell.Screen(),
              HasSubstr("The chart of sheet AM shows the first 255 series; its table has all of "
                        "them.\nReady ....\n"));
  EXPECT_FALSE(WriteChartWorkbook(bench.run, bench.folder.file("none/a.xlsx"), {sheet}));
  EXPECT_THAT(bench.shell.Screen(), HasSubstr("Failure opening output file: "));
}

// The library's file as the importer reads it: texts stay as they are, numbers would be 1 and 1000.
TEST(RunRStatistics, LabelsAreTextsAndNamesDistinct) {
  Bench bench;
  const std::string text =
      bench.folder.write("labels.txt", "Status\tF-Label\tStatus\n7\t001\t8\n9\t1E+3\t10\n");
  const std::string name = bench.folder.file("a.rda");
  ASSERT_TRUE(RunRStatistics(bench.run, text, name, {"L", {false, true, false}}, false));
  ConversionRequest request;
  request.name = ReadImportName(name);
  request.textFile = bench.folder.write("read.txt", "");
  request.scratchFile = bench.folder.write("scratch.txt", "");
  const ConversionEnd end = ConvertFile(request, {});
  if (end.kind == ConversionEnd::Kind::missingModule) GTEST_SKIP() << end.text;
  ASSERT_TRUE(end.done()) << end.text;
  EXPECT_THAT(bench.folder.read("read.txt"),
              testing::MatchesRegex("; ?Status\tF-Label\tStatus.1\n7\t001\t8\n9\t1E.3\t10\n"));
}

// A program named R, alone on PATH or in R_HOME while it lasts.
class FakeR {
 public:
  explicit FakeR(const std::string& path, const std::string& home = "") {
    for (const char* name : {"PATH", "R_HOME"})
      if (const char* value = std::getenv(name)) former_.emplace_back(name, value);
    setenv("PATH", path.c_str(), 1);
    setenv("R_HOME", home.c_str(), 1);
  }
  ~FakeR() {
    unsetenv("R_HOME");
    for (const auto& [name, value] : former_) setenv(name.c_str(), value.c_str(), 1);
  }
  FakeR(const FakeR&) = delete;
  FakeR& operator=(const FakeR&) = delete;

 private:
  std::vector<std::pair<std::string, std::string>> former_;
};

void WriteProgram(const ScratchFolder& folder, const std::string& name, const std::string& lines) {
  std::filesystem::create_directories(std::filesystem::path(folder.file(name)).parent_path());
  std::filesystem::permissions(folder.write(name, "#!/bin/sh\n" + lines),
                               std::filesystem::perms::owner_all);
}

TEST(FindR, LooksOnThePathThenInRHome) {
  const ScratchFolder folder;
  WriteProgram(folder, "path/R", "");
  WriteProgram(folder, "home/bin/R", "");
  std::filesystem::create_directory(folder.file("other"));
  const std::string both = folder.file("other") + ":" + folder.file("path");
  EXPECT_EQ((FakeR(both, folder.file("home")), FindR()), folder.file("path/R"));
  EXPECT_EQ((FakeR(folder.file("other"), folder.file("home")), FindR()), folder.file("home/bin/R"));
  EXPECT_EQ((FakeR(folder.file("other")), FindR()), "");
}

TEST(RunRStatistics, WithoutRTheFileIsMadeAndNotShown) {
  Bench bench;
  const FakeR none(bench.folder.folder());
  EXPECT_TRUE(bench.R("a.rda", true));
  EXPECT_EQ(bench.shell.Screen(), " R Statistics not found\n");
  EXPECT_THAT(bench.Files(), ElementsAre("a.rda"));
}

// Stands for R: keeps what it was given, and writes the file that the script saves to.
std::string LikeR(const std::string& seen) {
  return "echo \"$*\" > " + seen + "; while read -r line; do echo \"$line\" >> " + seen +
         "\ncase $line in save*) line=${line#*file = \\\"}; echo made > \"${line%\\\")}\";; "
         "esac; done\n";
}

TEST(RunRStatistics, HasRMakeTheFileToShow) {
  Bench bench;
  WriteProgram(bench.folder, "bin/R", LikeR(bench.folder.file("seen.txt")));
  const FakeR fake(bench.folder.file("bin"));
  EXPECT_TRUE(bench.R("a.rda", true));
  EXPECT_EQ(bench.folder.read("a.rda"), "made\n");
  EXPECT_THAT(bench.folder.read("seen.txt"),
              HasSubstr("--no-restore --no-save\nSCFILE.1 <- utils::read.delim(\"" + bench.text +
                        "\", header = TRUE)\nsave(SCFILE.1, file = \""));
  EXPECT_EQ(bench.shell.Screen(),
            "No program opens \"" + bench.folder.file("a.rda") + "\" here.\n");
  EXPECT_THAT(bench.Files(), ElementsAre("a.rda", "bin")) << "no profile, no script stays";
}

TEST(RunRStatistics, TellsRWhichColumnsAreTexts) {
  Bench bench;
  WriteProgram(bench.folder, "bin/R", LikeR(bench.folder.file("seen.txt")));
  const FakeR fake(bench.folder.file("bin"));
  EXPECT_TRUE(RunRStatistics(bench.run, bench.text, bench.folder.file("a.rda"),
                             {"L", {false, true}}, true));
  EXPECT_THAT(bench.folder.read("seen.txt"), HasSubstr("colClasses = c(NA, \"character\"))"));
}

TEST(RunRStatistics, TellsWhatRSays) {
  Bench bench;
  bench.folder.write("a.rda", "former");
  WriteProgram(bench.folder, "bin/R", "echo Error: no such thing; echo; exit 3\n");
  const FakeR fake(bench.folder.file("bin"));
  EXPECT_FALSE(bench.R("a.rda", true));
  EXPECT_EQ(bench.folder.read("a.rda"), "former");
  EXPECT_EQ(bench.shell.Screen(),
            "RunRStatistics failed: \"" + bench.folder.file("a.rda") +
                "\" is not written. R ended with exit status 3: Error: no such thing.\n");
  WriteProgram(bench.folder, "bin/R", "exit 0\n");
  EXPECT_FALSE(bench.R("a.rda", true)) << "it has written nothing";
  EXPECT_EQ(bench.folder.read("a.rda"), "former");
}

TEST(RunRStatistics, LeavesAProfileForAnRThatOpens) {
  Bench bench;
  bench.launcher.works = true;
  WriteProgram(bench.folder, "bin/R", LikeR(bench.folder.file("seen.txt")));
  const FakeR fake(bench.folder.file("bin"));
  const std::string target = bench.folder.file("a.rda"), profile = bench.folder.file(".Rprofile");
  EXPECT_TRUE(bench.R("a.rda", true));
  EXPECT_THAT(bench.launcher.asked, ElementsAre(target));
  EXPECT_EQ(bench.folder.read(".Rprofile"), "sink(nullfile())\nload(\"" + target +
                                                "\", envir = globalenv())\nsink()\n" +
                                                "file.remove(\"" + profile + "\")\n");
  bench.folder.write(".Rprofile", "the user's own");
  EXPECT_TRUE(bench.R("a.rda", true));
  EXPECT_EQ(bench.folder.read(".Rprofile"), "the user's own");
}

}  // namespace
}  // namespace flanks
