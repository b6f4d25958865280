#include "spec/output_names.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "base/text.h"
#include "spec/file_names.h"
#include "spec/included_files.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

// The Specification file or one of the files that it includes.
bool ReplacesSpecification(const Run& run, const std::string& output) {
  if (SameFile(output, run.analysis.settings.specificationFile)) return true;
  const std::vector<std::string>& included = run.analysis.specification.includedFiles;
  return std::any_of(included.begin(), included.end(),
                     [&output](const std::string& name) { return SameFile(output, name); });
}

bool ReplacesData(const Settings& settings, const std::string& output) {
  return settings.dataSource == DataSource::file &&
         SameFile(output, FindFileToRead(std::string(WithoutSheetList(settings.dataFile)),
                                         settings.specificationFile));
}

// What a report begins with, unless it is a webpage.
constexpr std::string_view kReportStart = "Flanks (Many-Flank Rasch Measurement) Version";

// Whether a file stands there that could be lost: one that holds something and is no former report.
bool HoldsOtherText(const std::string& name) {
  std::error_code notThere;
  if (!std::filesystem::is_regular_file(name, notThere)) return false;
  if (std::filesystem::file_size(name, notThere) == 0) return false;
  std::string start(kReportStart.size(), '\0');
  std::ifstream(name, std::ios::binary)
      .read(start.data(), static_cast<std::streamsize>(start.size()));
  return start != kReportStart;
}

// The first name that is an include file of the data, or nothing.  The data are read later, so they
// are looked through here; a run that only replaces its former report is spared that.
const std::string* ReplacedInclude(const Settings& settings,
                                   const std::vector<std::string>& names) {
  std::vector<const std::string*> inDanger;
  for (const std::string& name : names)
    if (HoldsOtherText(name)) inDanger.push_back(&name);
  if (inDanger.empty()) return nullptr;
  const std::string top = settings.dataSource == DataSource::file
                              ? FindFileToRead(settings.dataFile, settings.specificationFile)
                              : settings.specificationFile;
  for (const std::string& included : FindIncludedFiles(top, settings.specificationFile))
    for (const std::string* name : inDanger)
      if (SameFile(*name, included)) return name;
  return nullptr;
}

// The files that are written, as they stand on disk: a Score file for each Flank, and workbooks in
// their newer form.
std::vector<std::string> OutputNames(const Settings& settings, int flanks) {
  std::vector<std::string> names;
  for (const std::string* name :
       {&settings.OutputFile, &settings.AnchorFile, &settings.SimulatedFile})
    if (!name->empty()) names.push_back(*name);
  for (const std::string* name : {&settings.ResidualFile, &settings.GraphFile})
    if (!name->empty()) names.push_back(WorkbookName(*name));
  for (int flank = 1; flank <= flanks && !settings.ScoreFile.empty(); ++flank)
    names.push_back(WorkbookName(MakeOutputFileName(settings.ScoreFile, flank)));
  return names;
}

// The names as they were given may not be those of the Specification and the data either.
bool ReplacesInput(const Run& run, const std::string& name) {
  return ReplacesData(run.analysis.settings, name) || ReplacesSpecification(run, name);
}

const std::string* GivenNameOfInput(const Run& run) {
  const Settings& settings = run.analysis.settings;
  for (const std::string* name : {&settings.ResidualFile, &settings.GraphFile})
    if (!name->empty() && ReplacesInput(run, *name)) return name;
  return nullptr;
}

void SetIncompatible(ReadState& reading, const std::string& name) {
  FaultParticulars particulars;
  particulars.name = kSpecificationName;
  particulars.value = InQuotes(name);
  particulars.lineNumber = kNoLineNumber;  // the two names stand in different lines
  SetFault(reading, Fault::incompatibleFileUse, std::move(particulars));
}

// Whether the file can be written, with the system's words when it cannot.  Its contents stay, and
// a file that was not there is not left behind: what will be written is written later.
bool CanBeWritten(const std::string& name, std::string& reason) {
  std::error_code ignored;
  const bool wasThere = std::filesystem::exists(name, ignored);
  // Who reads a pipe would take this for the end of it.
  const bool isPipe = std::filesystem::is_fifo(name, ignored);
  errno = 0;
  std::ofstream file;
  if (!isPipe) file.open(name, std::ios::binary | std::ios::app);
  if (isPipe ? access(name.c_str(), W_OK) != 0 : !file.is_open()) {
    reason = std::strerror(errno);
    return false;
  }
  file.close();
  if (!wasThere) std::filesystem::remove(name, ignored);
  return true;
}

// The file is not written: a script must see that.
void TellNotWritten(Run& run, const std::string& message) {
  run.console.ShowFlagged(message);
  // The report is open, but its first line is still to come: Table 1 tells it.
  run.analysis.report.deferredMessages.push_back(message);
  run.process.control.ExitCode = kExitFault;
}

void TellNotOpened(Run& run, const std::string& name, const std::string& reason) {
  TellNotWritten(run, "Failure opening output file: " + InQuotes(name) + " (" + reason + ")");
}

// Not to be told at the end of a long run only.  Of the Score files the first stands for all.
void CheckScoreAndSimulatedFiles(Run& run) {
  Settings& settings = run.analysis.settings;
  std::string reason;
  if (!settings.ScoreFile.empty()) {
    const std::string first = WorkbookName(MakeOutputFileName(settings.ScoreFile, 1));
    if (!CanBeWritten(first, reason)) {
      TellNotOpened(run, first, reason);
      settings.ScoreFile.clear();
    }
  }
  if (!settings.SimulatedFile.empty() && !CanBeWritten(settings.SimulatedFile, reason)) {
    TellNotOpened(run, settings.SimulatedFile, reason);
    settings.SimulatedFile.clear();
  }
}

}  // namespace

void SettleOutputNames(Run& run) {
  Settings& settings = run.analysis.settings;
  if (settings.OutputFile.empty())
    settings.OutputFile = DefaultOutputName(settings.specificationFile);
  const std::vector<std::string> names = OutputNames(settings, run.analysis.design.FlankCount);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string& name = names[i];
    const bool replacesOutput =
        std::any_of(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(i),
                    [&name](const std::string& former) { return SameFile(name, former); });
    if (replacesOutput || ReplacesInput(run, name))
      return SetIncompatible(run.analysis.reading, name);
  }
  if (const std::string* name = GivenNameOfInput(run))
    return SetIncompatible(run.analysis.reading, *name);
  if (const std::string* name = ReplacedInclude(settings, names))
    SetIncompatible(run.analysis.reading, *name);
}

void OpenFurtherOutputFiles(Run& run) {
  struct Output {
    std::string_view words;
    std::string& name;
  };
  Settings& settings = run.analysis.settings;
  const Output outputs[] = {{"Opening residual output file: ", settings.ResidualFile},
                            {"Opening anchor output file: ", settings.AnchorFile},
                            {"Validating graphing output file=", settings.GraphFile}};
  for (const Output& output : outputs) {
    if (output.name.empty()) continue;
    run.console.ShowLine(std::string(output.words) + InQuotes(output.name));
    std::string reason;
    if (&output.name == &settings.GraphFile && UpperCase(output.name).ends_with(".SAV"))
      TellNotWritten(
          run, "There is no SPSS form of this file: " + InQuotes(output.name) + " is not written.");
    else if (!CanBeWritten(output.name, reason))
      TellNotOpened(run, output.name, reason);
    else
      continue;
    output.name.clear();
  }
  CheckScoreAndSimulatedFiles(run);
}

}  // namespace flanks
