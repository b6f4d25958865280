#include "spec/command_line.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

#include "base/text.h"
#include "spec/file_names.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr char kQuote = '"';
constexpr std::string_view kCommandLineName = "Command line";

// Takes the next token off `rest`.  False when its quote does not close.
bool TakeToken(std::string_view& rest, std::string& token) {
  const bool quoted = rest.front() == kQuote;
  const std::string_view body = quoted ? rest.substr(1) : rest;
  const std::size_t end = body.find(quoted ? kQuote : ' ');
  if (quoted && end == std::string_view::npos) return false;
  token = body.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view{} : Trim(body.substr(end + 1));
  return true;
}

bool IsSpecification(std::string_view token) {
  return token.find('=') != std::string_view::npos;
}

// "Batch=Y", however it is spelled.
bool AsksForBatch(std::string_view token) {
  const std::string upper = UpperCase(token);
  return upper.starts_with("BAT") && upper.find('Y', upper.find('=')) != std::string::npos;
}

void AddExtra(CommandLine& line, const std::string& token) {
  if (!line.ExtraSpecifications.empty()) line.ExtraSpecifications += ' ';
  line.ExtraSpecifications += token;
  line.batch = line.batch || AsksForBatch(token);
}

void SetCommandLineFault(Run& run, Fault fault, std::string_view text) {
  FaultParticulars particulars = TextAtFault(text);
  particulars.name = kCommandLineName;
  SetFault(run.analysis.reading, fault, std::move(particulars));
}

// The files in their order; further names are dropped.
void TakeFileNames(Run& run, const std::vector<std::string>& names) {
  Settings& settings = run.analysis.settings;
  std::string* const places[] = {&settings.specificationFile, &settings.OutputFile,
                                 &settings.AnchorFile, &settings.ResidualFile, &settings.GraphFile};
  for (std::size_t i = 0; i < names.size() && i < std::size(places); ++i) {
    if (names[i].empty()) continue;
    if (const Fault fault = CheckFileName(names[i]); fault != Fault::none)
      return SetCommandLineFault(run, fault, InQuotes(names[i]));
    *places[i] = names[i];
  }
}

void LookForSpecification(Run& run) {
  const std::string& name = run.analysis.settings.specificationFile;
  std::error_code ignored;
  if (!std::filesystem::exists(name, ignored)) {
    const bool batch = run.analysis.settings.Batch;
    return SetCommandLineFault(run, batch ? Fault::fileNotFoundInBatch : Fault::fileNotFound,
                               InQuotes(name));
  }
  run.console.ShowLine("Processing specifications from " + InQuotes(name));
  run.console.shell().SetCaption(name);
}

void ApplyExtra(SpecContext& context, const std::string& specification) {
  ReadState& reading = context.reading;
  reading.SourceLine = specification;
  SplitIntoFields(context, specification);
  if (reading.Fields[0].empty())
    SetFault(reading, Fault::notSpecificationValue);
  else
    ApplySpecification(context);
  if (!reading.faulty()) return;
  ShowLineOfFault(reading);
  reading.fault.name = kExtraSpecificationsName;
}

}  // namespace

CommandLine ParseCommandLine(std::string_view text) {
  CommandLine line;
  std::string token;
  for (std::string_view rest = Trim(text); !rest.empty();) {
    const std::string_view from = rest;
    if (!TakeToken(rest, token)) {
      line.fault = Fault::missingQuote;
      line.faultText = from;
      return line;
    }
    if (IsSpecification(token)) {
      AddExtra(line, token);
      continue;
    }
    token = Trim(token);
    if (token.find(' ') != std::string::npos) {
      line.fault = Fault::extraNotSpecification;
      line.faultText = token;
      return line;
    }
    line.fileNames.push_back(token);
  }
  return line;
}

ExtraList CutExtraSpecifications(std::string_view text) {
  ExtraList list;
  FieldCursor cursor(text, ' ');
  std::string_view token;
  while (cursor.Next(token)) {
    if (token.empty()) continue;
    if (IsSpecification(token)) {
      list.specifications.emplace_back(token);
    } else if (list.specifications.empty()) {
      list.fault = Fault::extraNotSpecification;
      list.faultText = token;
      return list;
    } else {
      list.specifications.back() += " " + std::string(token);
    }
  }
  return list;
}

void ReadCommandLine(Run& run) {
  const CommandLine line = ParseCommandLine(run.process.commandLine);
  run.analysis.settings.Batch = line.batch;
  if (line.fault != Fault::none) return SetCommandLineFault(run, line.fault, line.faultText);
  run.analysis.specification.ExtraSpecifications = line.ExtraSpecifications;
  TakeFileNames(run, line.fileNames);
  if (run.analysis.reading.faulty() || run.analysis.settings.specificationFile.empty()) return;
  if (!run.analysis.settings.OutputFile.empty())
    MarkSeen(run.analysis.specification, keyword_code::kOutput, SeenIn::extras);
  LookForSpecification(run);
}

void ApplyExtraSpecifications(Run& run) {
  SpecContext context = SpecContextOf(run.analysis, run.process, run.console);
  const std::string& text = context.state.ExtraSpecifications;
  if (text.empty()) return;
  run.console.ShowLine("Extra specifications: " + text);
  const ExtraList list = CutExtraSpecifications(text);
  if (list.fault != Fault::none) {
    FaultParticulars particulars = TextAtFault(list.faultText);
    particulars.name = kExtraSpecificationsName;
    return SetFault(context.reading, list.fault, std::move(particulars));
  }
  context.state.ReadingExtras = true;
  for (const std::string& specification : list.specifications)
    if (!context.reading.faulty()) ApplyExtra(context, specification);
  context.state.ReadingExtras = false;
  context.reading.SourceLine.clear();
}

}  // namespace flanks
