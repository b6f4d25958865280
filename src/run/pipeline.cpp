#include "run/pipeline.h"

#include <locale>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "base/text.h"
#include "data/data_pass.h"
#include "data/table2.h"
#include "estimate/iteration.h"
#include "import/import_data.h"
#include "output/anchor_file.h"
#include "output/graph_file.h"
#include "output/residual_file.h"
#include "output/score_file.h"
#include "output/simulate.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/table4.h"
#include "report/table5.h"
#include "report/table6.h"
#include "report/table7.h"
#include "report/table8.h"
#include "run/fault_cures.h"
#include "run/guard.h"
#include "run/messages.h"
#include "run/pipeline_bias.h"
#include "run/program_mark.h"
#include "run/report_page.h"
#include "run/run.h"
#include "spec/command_line.h"
#include "spec/delements.h"
#include "spec/dvalues.h"
#include "spec/flank_maps.h"
#include "spec/label_loader.h"
#include "spec/list_reading.h"
#include "spec/models.h"
#include "spec/output_names.h"
#include "spec/scales.h"
#include "spec/specification_reader.h"
#include "spec/table1.h"
#include "stats/agreement.h"
#include "stats/fit_pass.h"
#include "stats/point_biserial.h"

namespace flanks {
namespace {

constexpr std::string_view kFlanksAmongExtras =
    "Put Flanks= and the number in front of it among the Extra specifications: they are read "
    "before the file.";

// Every setting to its default, the Flank counts to 0, no model and no scale.  The fresh state is
// made off the stack, which it would strain.
void ResetDefaults(Analysis& analysis) {
  analysis = std::move(*std::make_unique<Analysis>());
}

// `line 3 of "more.txt"`, or the whole file when the line is not known.
std::string SpecificationPlace(const Analysis& analysis, std::int64_t lineNumber) {
  FilePlace place;
  if (analysis.specification.source) place = analysis.specification.source->PlaceOf(lineNumber);
  if (place.line == 0)
    return "the Specification file \"" + analysis.settings.specificationFile + "\"";
  return "line " + std::to_string(place.line) + " of \"" + place.file + "\"";
}

// The fault's own cure, but for a "%" line: it is read as it stands only behind the limits of
// include files, and then its fields are not what is wrong with it.  And but for an Extra in need
// of Flanks=: it is read before the file.
std::string_view CureOf(const ReadState& reading) {
  const bool ofLine = reading.FaultCode == Fault::notSpecificationValue ||
                      reading.FaultCode == Fault::tooFewDataFields;
  if (ofLine && Trim(reading.SourceLine).starts_with('%'))
    return "Include files nest more than 20 deep here (or are more than 10,000), so that this line "
           "includes nothing: see whether a file includes itself.";
  if (reading.FaultCode == Fault::flanksFirst && reading.fault.name == kExtraSpecificationsName)
    return kFlanksAmongExtras;
  return FaultCure(reading.FaultCode);
}

// The row of the spreadsheet, or of another file, that a fault of an imported line came from.
std::string PlaceOfImported(Run& run) {
  const ReadState& reading = run.analysis.reading;
  const bool ofCell = reading.FaultCode == Fault::invalidElementNumberInData;
  return ImportedPlace(run, reading.fault.lineNumber,
                       ofCell ? static_cast<int>(reading.fault.number) : 0);
}

// The one line that tells the pending fault, on the screen and in the report, and then where its
// line is found and what can be done.
void ReportFault(Run& run) {
  Console& console = run.console;
  const Analysis& analysis = run.analysis;
  const ReadState& reading = analysis.reading;
  console.WarnLine(FaultLine(reading.FaultCode, reading.fault));
  if (reading.fault.name == kSpecificationName)
    console.WarnLine("  See " + SpecificationPlace(analysis, reading.fault.lineNumber) + ".");
  if (const std::string place = PlaceOfImported(run); !place.empty())
    console.WarnLine("  See " + place + ".");
  if (const std::string_view cure = CureOf(reading); !cure.empty())
    console.WarnLine("  To mend it: " + std::string(cure));
}

// Messages name the user's file where the data were converted from one.
void ReadDataOfRun(Run& run) {
  ReadImportedData(run, [&run](std::int64_t lineNumber, int field) {
    return ImportedPlace(run, lineNumber, field);
  });
}

struct Step {
  const char* name;
  void (*procedure)(Run&);
};

// Group anchors that a former analysis in the same process left without a group number.  Kept:
// asked before LoadLabels, which sets it for the next run (docs/quirks.md).
void WarnOfFormerGroups(Run& run) {
  const int flank = run.process.former.groupAnchoredFlankWithoutGroup;
  if (flank == 0) return;
  run.console.WarnLine(JoinNumber(message::kGroupAnchorWithoutGroup, flank) +
                       " without a group number");
  run.process.former.groupAnchoredFlankWithoutGroup = 0;
}

// A fault of the Specification as a whole, which no line is to blame for.
void SetSpecificationFault(Run& run, Fault fault, const std::string& value = "") {
  FaultParticulars particulars;
  particulars.name = kSpecificationName;
  particulars.value = value;
  particulars.lineNumber = kNoLineNumber;
  SetFault(run.analysis.reading, fault, std::move(particulars));
}

void NeedData(Run& run) {
  if (run.analysis.settings.dataSource == DataSource::none)
    SetSpecificationFault(run, Fault::dataNotSpecified);
}

void OpenReportFile(Run& run) {
  const Settings& settings = run.analysis.settings;
  run.console.ShowLine("Writing specifications to output file: \"" + settings.OutputFile + "\"");
  std::string reason;
  if (OpenReport(run.console, settings.OutputFile, reason)) return;
  run.console.WarnLine("The output file \"" + settings.OutputFile +
                       "\" cannot be written: " + reason + ".");
  SetSpecificationFault(run, Fault::incompatibleFileUse, "\"" + settings.OutputFile + "\"");
}

void NeedFlanks(Run& run) {
  if (run.analysis.design.FlankCount == 0) SetSpecificationFault(run, Fault::flanksFirst);
}

void WriteBanner(Run& run) {
  SelectTable(run.console, 1);
  run.analysis.report.runHeading =
      run.analysis.settings.Title.empty() ? "" : run.analysis.settings.Title + " ";
  run.console.WriteOutput(ProgramAndDate());
}

constexpr Step kOpeningSteps[] = {
    {"ReadCommandLine", ReadCommandLine},
};

constexpr Step kAnalysisSteps[] = {
    {"ApplyExtraSpecifications", ApplyExtraSpecifications},
    {"ReadSpecification", ReadSpecification},
    {"BuildModelTable", BuildModelTable},
    {"WarnOfFormerGroups", WarnOfFormerGroups},
    {"LoadScales", LoadScales},
    {"LoadLabels", LoadLabels},
    {"PrepareDelements", PrepareDelements},
    {"PrepareDvalues", PrepareDvalues},
    {"CheckFault", CheckFault},
    {"NeedData", NeedData},
    {"SettleOutputNames", SettleOutputNames},
    {"OpenReportFile", OpenReportFile},
    {"OpenFurtherOutputFiles", OpenFurtherOutputFiles},
    {"NeedFlanks", NeedFlanks},
    {"MakeDefaultMaps", MakeDefaultMaps},
    {"MatchElementsToModels", MatchElementsToModels},
    {"WriteBanner", WriteBanner},
    {"WriteTable1", WriteTable1},
    {"OpenWorkFiles", OpenWorkFiles},
    {"WriteTable2Head", WriteTable2Head},
    {"ImportData", ImportData},
    {"ReadData", ReadDataOfRun},
    {"WriteTable2Body", WriteTable2Body},
    {"PrepareEstimates", PrepareEstimates},
    {"CorrelatePointBiserial", CorrelatePointBiserial},
    {"Iterate", Iterate},
    {"CalculateFit", CalculateFit},
    {"ComputeAgreement", ComputeAgreement},
    {"WriteTable5", WriteTable5},
    {"WriteAnchorFile", WriteAnchorFile},
    {"SummarizeFit", SummarizeFit},
    {"WriteScoreFiles", WriteScoreFiles},
    {"WriteGraphFile", WriteGraphFile},
    {"WriteResiduals", WriteResiduals},
    {"WriteSimulatedData", WriteSimulatedData},
    {"WriteTable6", WriteTable6},
    {"TellSubsets", TellSubsets},
    {"WriteTable7", WriteTable7},
    {"WriteTable8", WriteTable8},
    {"WriteTable4", WriteTable4},
    {"AnalyzeBias", AnalyzeBias},
};

// The process ends at a number that cannot be computed: the user is told where it stands.
void TellPlaceOfEnd(Run& run) {
  const Analysis& analysis = run.analysis;
  const bool inExtras = analysis.specification.ReadingExtras;
  run.console.ShowFlagged("  See " +
                          (inExtras ? "the Extra specification " + analysis.reading.SourceLine
                                    : SpecificationPlace(analysis, analysis.reading.LineNumber)) +
                          ".");
}

void RunSteps(std::span<const Step> steps, Run& run) {
  for (const Step& step : steps) {
    try {
      Guarded(step.name, run, step.procedure);
    } catch (const ProcessEnd&) {
      if (step.procedure != ReadDataOfRun) TellPlaceOfEnd(run);  // it reads other lines
      throw;
    }
    if (Halted(run)) return;
  }
}

// "Analyzed in time of " and hours, minutes and seconds, each in two places.
std::string TimeOfRun(std::int64_t milliseconds) {
  const std::int64_t seconds = milliseconds / 1000;
  const auto field = [](std::int64_t value) {
    return FixedField(static_cast<double>(value), 2, 0);
  };
  return "Analyzed in time of " + field(seconds / 3600) + ":" + field(seconds / 60 % 60) + ":" +
         field(seconds % 60);
}

void CloseRun(Run& run, std::int64_t milliseconds) {
  ReportState& report = run.analysis.report;
  report.switchedOff = false;
  const std::string time = TimeOfRun(milliseconds);
  run.console.ShowLine(time);
  if (run.analysis.settings.Write) run.console.WriteOutput(time);
  for (const std::string& note : report.closingNotes) run.console.WarnLine(note);
  CloseReport(run.console);
  run.console.ShowLine("Output to " + report.fileName);
  if (report.writeFailed)
    run.console.ShowFlagged("The report \"" + report.fileName + "\" is not complete.");
}

// `Beep=`: the end of the run is heard as well.
void SoundBell(Run& run) {
  if (run.analysis.settings.Beep) run.console.ShowPart("\a");
}

// A run that a fault or the user ended: the fault is reported once, the estimates are not offered.
int HaltRun(Run& run) {
  ReadState& reading = run.analysis.reading;
  RunControl& control = run.process.control;
  int exitCode = kExitFault;
  if (control.CancelRequested) {
    reading.FaultCode = Fault::cancelled;
    reading.fault = {};
    exitCode = kExitCancelled;
    control.CancelRequested = false;  // what follows is to be written
  }
  run.analysis.report.switchedOff = false;
  ReportFault(run);
  reading.FaultCode = Fault::none;
  run.analysis.report.closingNotes.clear();
  run.console.ShowLine("Execution halted");
  CloseReport(run.console);
  return exitCode;
}

// Whether the system writes numbers with a comma; a system without locales does not.
bool SystemDecimalComma() {
  try {
    return std::use_facet<std::numpunct<char>>(std::locale("")).decimal_point() == ',';
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

// Kept: the loop over the steps ends the run at a pending fault before this can meet one
// (docs/quirks.md).
void CheckFault(Run& run) {
  const ReadState& reading = run.analysis.reading;
  if (reading.faulty()) {
    ReportFault(run);
    if (!run.analysis.settings.Batch) run.console.FailureStop(reading.CurrentLine);
  }
  run.console.YieldToWindow();
}

int RunAnalysis(Process& process, Analysis& analysis, World world, const std::string& commandLine) {
  ResetDefaults(analysis);
  process.control.StopState = 0;
  process.control.CancelRequested = false;
  process.control.ExitCode = 0;
  process.DecimalComma = SystemDecimalComma();
  process.commandLine = commandLine;
  Console console(world.shell, world.dialogs, process.control, analysis.settings, analysis.report);
  Run run{process, analysis, console, world.dialogs, world.launcher};
  analysis.report.closingNotes.emplace_back(message::kSubsetsNotVerified);
  const std::int64_t start = world.shell.Milliseconds();
  RunSteps(kOpeningSteps, run);
  const bool noFileNamed = !Halted(run) && analysis.settings.specificationFile.empty();
  if (noFileNamed) return 0;  // without a window nobody can choose one
  if (!Halted(run)) RunSteps(kAnalysisSteps, run);
  if (IsStopping(process.control)) return kExitFault;
  if (Halted(run)) {
    const int exitCode = HaltRun(run);
    SoundBell(run);
    return exitCode;
  }
  CloseRun(run, world.shell.Milliseconds() - start);
  SoundBell(run);
  // A script must see that the report or another file is not what it should be.
  return analysis.report.writeFailed ? kExitFault : process.control.ExitCode;
}

}  // namespace flanks
