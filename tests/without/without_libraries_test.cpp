// A build without the libraries for other programs' files: each form says that it is missing, the
// former file stays, and the run goes on.  The files that use a library are compiled for this
// program without it (tests/CMakeLists.txt).

#include <gtest/gtest.h>
#include <string>

#include "output/hand_offs.h"
#include "output/xlsx_charts.h"
#include "support/recording_shell.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

TEST(WithoutLibraries, TellsEachFormThatIsMissing) {
  const ScratchFolder folder;
  Process process;
  Analysis analysis;
  RecordingShell shell(process.control);
  RecordingDialogs dialogs;
  Launcher launcher;
  Console console(shell, dialogs, process.control, analysis.settings, analysis.report);
  flanks::Run run{process, analysis, console, dialogs, launcher};
  const std::string text = folder.write("a.txt", "Measure\n1\n");
  const std::string workbook = folder.write("a.xlsx", "former");
  EXPECT_FALSE(LaunchExcel(run, text, workbook, {}));
  EXPECT_FALSE(WriteChartWorkbook(run, workbook, {}));
  EXPECT_FALSE(LaunchSpss(run, "Score", text, folder.file("a.sav")));
  EXPECT_FALSE(RunRStatistics(run, text, folder.file("a.rda"), {"SCFILE.1", {}}, false));
  EXPECT_EQ(shell.Screen(),
            "Launching Excel ....\n"
            "F63 Module gridexcel.exe not found. Flanks is not installed correctly.\n"
            "This build of Flanks cannot write .xlsx files: it was made without their library.\n"
            "Launching Excel ....\n"
            "F63 Module gridexcel.exe not found. Flanks is not installed correctly.\n"
            "This build of Flanks cannot write .xlsx files: it was made without their library.\n"
            "F63 Module gridspss.exe not found. Flanks is not installed correctly.\n"
            "This build of Flanks cannot write .sav files: it was made without their library.\n"
            "F63 Module R not found. Flanks is not installed correctly.\n"
            "This build of Flanks cannot write .rda files: it was made without their library.\n");
  EXPECT_EQ(folder.read("a.xlsx"), "former");
  EXPECT_EQ(folder.names().size(), 2u) << "nothing else is left behind";
}

}  // namespace
}  // namespace flanks
