#include "support/other_programs.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

#include "support/program_runner.h"

namespace flanks {
namespace {

std::string PathOf(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string_view rest = path == nullptr ? "" : path;
  while (!rest.empty()) {
    const std::size_t end = rest.find(':');
    const std::string found = std::string(rest.substr(0, end)) + "/" + name;
    if (access(found.c_str(), X_OK) == 0) return found;
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  }
  return "";
}

std::string Run(const ScratchFolder& folder, const std::string& program,
                std::vector<std::string> arguments) {
  ProgramCall call;
  call.program = PathOf(program);
  call.arguments = std::move(arguments);
  call.folder = folder.folder();
  call.environment = {{"LC_ALL", "C.UTF-8"}, {"HOME", folder.folder()}};
  call.timeLimit = std::chrono::minutes(5);  // on a machine with much else to do
  const ProgramResult result = RunProgram(call);
  if (result.exitStatus != 0)
    throw std::runtime_error(program + " failed: " + result.output + result.errors);
  return result.output;
}

// Cells between the commas of one record; `at` moves behind its end.
std::vector<std::string> ReadRecord(std::string_view text, std::size_t& at) {
  std::vector<std::string> cells(1);
  bool inQuotes = false;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (inQuotes && c == '"' && at + 1 < text.size() && text[at + 1] == '"')
      cells.back() += text[at++];
    else if (c == '"')
      inQuotes = !inQuotes;
    else if (c == ',' && !inQuotes)
      cells.emplace_back();
    else if (c == '\n' && !inQuotes)
      break;
    else
      cells.back() += c;
  }
  ++at;
  return cells;
}

}  // namespace

bool HasProgram(const std::string& name) {
  return !PathOf(name).empty();
}

TableCells ReadCommaSeparated(std::string_view text) {
  TableCells cells;
  for (std::size_t at = 0; at < text.size();) cells.push_back(ReadRecord(text, at));
  return cells;
}

std::map<std::string, TableCells> SheetsInLibreOffice(const ScratchFolder& folder,
                                                      const std::vector<std::string>& names) {
  // Comma, double quote, UTF-8, from line 1; quotes around texts; cells as shown; all sheets.
  std::vector<std::string> arguments = {
      "-env:UserInstallation=file://" + folder.file("profile"), "--headless", "--convert-to",
      "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,true,true,false,false,-1"};
  arguments.insert(arguments.end(), names.begin(), names.end());
  Run(folder, "soffice", arguments);
  std::map<std::string, TableCells> sheets;
  for (const std::string& name : folder.names())
    if (name.ends_with(".csv"))
      sheets[name.substr(0, name.size() - 4)] = ReadCommaSeparated(folder.read(name));
  return sheets;
}

std::string FlatFormInLibreOffice(const ScratchFolder& folder, const std::string& name) {
  Run(folder, "soffice",
      {"-env:UserInstallation=file://" + folder.file("profile"), "--headless", "--convert-to",
       "fods", name});
  return folder.read(std::filesystem::path(name).stem().string() + ".fods");
}

TableCells CasesInPspp(const ScratchFolder& folder, const std::string& name) {
  Run(folder, "pspp-convert", {name, name + ".csv"});
  return ReadCommaSeparated(folder.read(name + ".csv"));
}

std::string OutputOfPspp(const ScratchFolder& folder, const std::string& syntax) {
  folder.write("syntax.sps", syntax);
  return Run(folder, "pspp", {"-O", "format=csv", "syntax.sps"});
}

std::string OutputOfR(const ScratchFolder& folder, const std::string& script) {
  folder.write("script.R", script);
  return Run(folder, "R", {"--no-echo", "--no-restore", "--no-save", "--file=script.R"});
}

TableCells FrameInR(const ScratchFolder& folder, const std::string& name,
                    const std::string& objectName) {
  return ReadCommaSeparated(OutputOfR(folder, "stopifnot(load('" + name + "') == '" + objectName +
                                                  "')\nframe <- " + objectName + R"(
shown <- lapply(frame, function(x)
  if (is.numeric(x)) ifelse(is.na(x), 'NA', sprintf('%.17g', x)) else x)
quoted <- function(x) paste0('"', gsub('"', '""', x, fixed = TRUE), '"')
line <- function(x) cat(quoted(x), sep = ',', fill = FALSE)
line(names(frame)); cat('\n')
line(vapply(frame, function(x) class(x)[1], '')); cat('\n')
for (row in seq_len(nrow(frame))) {
  line(vapply(shown, function(x) x[row], '')); cat('\n')
}
)"));
}

}  // namespace flanks
